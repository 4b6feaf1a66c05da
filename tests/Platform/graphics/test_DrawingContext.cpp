// The drawing context against geometry worked out independently: coverage of shapes placed on
// pixel boundaries, the Gaussian integral of a blurred box, and the colour a gradient must have
// at a point by its definition.

#include "Platform/graphics/DrawingContext.h"

#include <QPainterPath>
#include <QSet>

#include <gtest/gtest.h>

#include <cmath>

using namespace qm;

namespace {

QImage blank(int w, int h)
{
    QImage image(w, h, QImage::Format_RGBA8888_Premultiplied);
    image.fill(0);
    return image;
}

/// Bytes R, G, B, A of the pixel at column x and row y counted upward from the bottom.
struct Px
{
    int r, g, b, a;
};
Px at(const QImage& image, int x, int yUp)
{
    const uchar* p = image.constScanLine(image.height() - 1 - yUp) + 4 * x;
    return {p[0], p[1], p[2], p[3]};
}

QPainterPath rectPath(double x, double y, double w, double h)
{
    QPainterPath path;
    path.addRect(x, y, w, h);
    return path;
}

double phi(double x)
{
    return 0.5 * (1 + std::erf(x / std::sqrt(2.0)));
}

} // namespace

TEST(DrawingContextGeometry, YUpOriginBottomLeftAndByteOrder)
{
    QImage image = blank(10, 10);
    {
        DrawingContext ctx(image);
        ctx.setFillColor(Color::deviceRGB(1, 0, 0));
        ctx.fillRect(QRectF(0, 0, 4, 2));
    }
    // Row 0 of the image is the top: the filled band is the two last rows.
    const uchar* bottom = image.constScanLine(9);
    EXPECT_EQ(bottom[0], 255);
    EXPECT_EQ(bottom[1], 0);
    EXPECT_EQ(bottom[2], 0);
    EXPECT_EQ(bottom[3], 255);
    EXPECT_EQ(image.constScanLine(8)[3], 255);
    EXPECT_EQ(image.constScanLine(7)[3], 0);
    EXPECT_EQ(at(image, 3, 0).a, 255);
    EXPECT_EQ(at(image, 4, 0).a, 0);
}

TEST(DrawingContextGeometry, ConvertsOtherFormats)
{
    QImage image(4, 4, QImage::Format_ARGB32);
    image.fill(0);
    DrawingContext ctx(image);
    EXPECT_EQ(image.format(), QImage::Format_RGBA8888_Premultiplied);
    ctx.fillRect(QRectF(0, 0, 4, 4));
    EXPECT_EQ(at(image, 2, 2).a, 255);
}

TEST(DrawingContextGeometry, FillFollowsThePathsOwnRule)
{
    QPainterPath ring;
    ring.addRect(1, 1, 8, 8);
    ring.addRect(3, 3, 4, 4);
    for (Qt::FillRule rule : {Qt::OddEvenFill, Qt::WindingFill}) {
        ring.setFillRule(rule);
        QImage image = blank(10, 10);
        DrawingContext ctx(image);
        ctx.fillPath(ring);
        EXPECT_EQ(at(image, 2, 2).a, 255);
        EXPECT_EQ(at(image, 5, 5).a, rule == Qt::OddEvenFill ? 0 : 255);
    }
}

TEST(DrawingContextGeometry, AntialiasingSwitch)
{
    QPainterPath circle;
    circle.addEllipse(QPointF(10, 10), 7.3, 7.3);
    for (bool aa : {true, false}) {
        QImage image = blank(20, 20);
        DrawingContext ctx(image);
        ctx.setShouldAntialias(aa);
        ctx.fillPath(circle);
        int partial = 0;
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 20; ++x)
                partial += at(image, x, y).a % 255 != 0;
        if (aa)
            EXPECT_GT(partial, 10);
        else
            EXPECT_EQ(partial, 0);
    }
    // Allowing is not part of the state and overrides wanting.
    QImage image = blank(20, 20);
    DrawingContext ctx(image);
    ctx.setAllowsAntialiasing(false);
    ctx.fillPath(circle);
    for (int x = 0; x < 20; ++x)
        EXPECT_EQ(at(image, x, 10).a % 255, 0);
}

TEST(DrawingContextGeometry, StrokeWidthAndMiterLimit)
{
    // A square stroked with width 4 covers 2 pixels on either side of its edges.
    QImage image = blank(20, 20);
    {
        DrawingContext ctx(image);
        ctx.setLineWidth(4);
        ctx.strokePath(rectPath(5, 5, 10, 10));
    }
    EXPECT_EQ(at(image, 3, 10).a, 255);
    EXPECT_EQ(at(image, 6, 10).a, 255);
    EXPECT_EQ(at(image, 2, 10).a, 0);
    EXPECT_EQ(at(image, 7, 10).a, 0);

    // A 30-degree corner needs a ratio of 1 / sin(15 deg) = 3.86: a limit of 4 keeps the mitre,
    // 3.5 bevels it.
    QPainterPath wedge;
    wedge.moveTo(2, 10);
    wedge.lineTo(30, 10);
    wedge.lineTo(30 - 28 * std::cos(M_PI / 6), 10 + 28 * std::sin(M_PI / 6));
    auto reach = [&](double limit) {
        QImage img = blank(50, 30);
        DrawingContext ctx(img);
        ctx.setLineWidth(4);
        ctx.setMiterLimit(limit);
        ctx.setShouldAntialias(false);
        ctx.strokePath(wedge);
        int right = 0;
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 50; ++x)
                if (at(img, x, y).a)
                    right = std::max(right, x);
        return right;
    };
    // The tip lies 2 / sin(15 deg) = 7.7 beyond the vertex along the bisector, at x = 37.46; the
    // bevel ends at x = 31.
    EXPECT_GE(reach(4), 36);
    EXPECT_LE(reach(3.5), 32);
}

TEST(DrawingContextClip, PathClipAndStateStack)
{
    QImage image = blank(10, 10);
    DrawingContext ctx(image);
    ctx.saveGState();
    ctx.clipToPath(rectPath(0, 0, 5, 10));
    EXPECT_EQ(ctx.clipBoundingBox(), QRectF(0, 0, 5, 10));
    ctx.setFillColor(Color::deviceRGB(0, 1, 0));
    ctx.setLineWidth(3);
    ctx.fillRect(QRectF(0, 0, 10, 10));
    ctx.restoreGState();
    EXPECT_EQ(ctx.clipBoundingBox(), QRectF(0, 0, 10, 10));
    EXPECT_EQ(ctx.lineWidth(), 1);
    EXPECT_EQ(ctx.fillColor(), Color::deviceRGB(0, 0, 0));
    EXPECT_EQ(at(image, 4, 5).g, 255);
    EXPECT_EQ(at(image, 5, 5).a, 0);
    ctx.restoreGState(); // unbalanced: ignored
    ctx.fillRect(QRectF(5, 0, 5, 10));
    EXPECT_EQ(at(image, 9, 5).a, 255);
}

TEST(DrawingContextClip, SoftMaskGivesPartialCoverage)
{
    QImage mask = blank(10, 10);
    mask.fill(QColor(0, 0, 0, 128));
    QImage image = blank(20, 20);
    DrawingContext ctx(image);
    ctx.clipToMask(QRectF(0, 0, 10, 10), mask);
    ctx.setFillColor(Color::deviceRGB(1, 1, 1));
    ctx.fillRect(QRectF(0, 0, 20, 20));
    EXPECT_NEAR(at(image, 5, 5).a, 128, 1);
    EXPECT_NEAR(at(image, 5, 5).r, 128, 1);
    EXPECT_EQ(at(image, 15, 5).a, 0); // outside the mask's rectangle
    EXPECT_EQ(at(image, 5, 15).a, 0);

    // Clips intersect: a path clip over the mask keeps its partial coverage inside the path only.
    ctx.clipToPath(rectPath(0, 0, 3, 20));
    ctx.fillRect(QRectF(0, 0, 20, 20));
    EXPECT_NEAR(at(image, 1, 5).a, 128 + 127 * 128 / 255, 2);
    EXPECT_NEAR(at(image, 5, 5).a, 128, 1);
}

TEST(DrawingContextClip, MaskIsPlacedUpright)
{
    // Top half of the mask opaque: only the upper half of the rectangle shows.
    QImage mask = blank(4, 4);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 4; ++x)
            mask.setPixelColor(x, y, Qt::black);
    QImage image = blank(4, 4);
    DrawingContext ctx(image);
    ctx.clipToMask(QRectF(0, 0, 4, 4), mask);
    ctx.fillRect(QRectF(0, 0, 4, 4));
    EXPECT_EQ(at(image, 1, 3).a, 255);
    EXPECT_EQ(at(image, 1, 0).a, 0);
}

TEST(DrawingContextClip, ClearRectRespectsClip)
{
    QImage image = blank(10, 10);
    DrawingContext ctx(image);
    ctx.fillRect(QRectF(0, 0, 10, 10));
    ctx.setShadow(QPointF(2, 2), 0, Color::deviceRGB(1, 0, 0)); // clearing casts no shadow
    ctx.setBlendMode(BlendMode::Multiply);                      // nor blends
    ctx.clipToRect(QRectF(0, 0, 5, 10));
    ctx.clearRect(QRectF(0, 0, 10, 10));
    EXPECT_EQ(at(image, 2, 5).a, 0);
    EXPECT_EQ(at(image, 7, 5).a, 255);
    EXPECT_EQ(at(image, 7, 5).r, 0);
}

TEST(DrawingContextShadow, OffsetIsYUp)
{
    QImage image = blank(20, 20);
    DrawingContext ctx(image);
    ctx.setShadow(QPointF(4, 6), 0, Color::deviceRGB(0, 0, 1));
    ctx.setFillColor(Color::deviceRGB(1, 0, 0));
    ctx.fillRect(QRectF(2, 2, 4, 4));
    EXPECT_EQ(at(image, 3, 3).r, 255); // the object stays where it is, above its shadow
    EXPECT_EQ(at(image, 3, 3).b, 0);
    EXPECT_EQ(at(image, 8, 10).b, 255); // (2..6) + (4, 6) = x 6..10, y 8..12
    EXPECT_EQ(at(image, 8, 10).a, 255);
    EXPECT_EQ(at(image, 8, 7).a, 0);
    EXPECT_EQ(at(image, 8, 12).a, 0);
    // Toward the top row of the image.
    EXPECT_EQ(image.pixelColor(8, 19 - 10).blue(), 255);
}

TEST(DrawingContextShadow, BlurIsGaussianWithSigmaHalfTheRadius)
{
    const double blur = 6, sigma = blur / 2;
    const QRectF box(20, 24, 10, 8);
    const QPointF offset(3, -5);
    QImage image = blank(60, 60);
    {
        DrawingContext ctx(image);
        ctx.setShouldAntialias(false);
        ctx.setShadow(offset, blur, Color::deviceRGB(0, 0, 0, 0.8));
        ctx.fillPath(rectPath(box.x(), box.y(), box.width(), box.height()));
    }
    auto expected = [&](int x, int y) {
        const double px = x + 0.5 - offset.x(), py = y + 0.5 - offset.y();
        const double fx = phi((px - box.left()) / sigma) - phi((px - box.right()) / sigma);
        const double fy = phi((py - box.top()) / sigma) - phi((py - box.bottom()) / sigma);
        return 0.8 * 255 * fx * fy;
    };
    int checked = 0;
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 60; ++x) {
            if (box.contains(x + 0.5, y + 0.5))
                continue;
            ASSERT_NEAR(at(image, x, y).a, expected(x, y), 2.0) << x << "," << y;
            ++checked;
        }
    EXPECT_GT(checked, 3000);
}

TEST(DrawingContextShadow, ClipAppliesToObjectAndShadow)
{
    // The inner-shadow construction: the stroke outside the clip still throws its shadow inside.
    QImage image = blank(30, 30);
    DrawingContext ctx(image);
    ctx.clipToRect(QRectF(10, 10, 10, 10));
    ctx.setLineWidth(2);
    ctx.setShadow(QPointF(3, 0), 0, Color::deviceRGB(0, 0, 0));
    ctx.setStrokeColor(Color::deviceRGB(1, 1, 1));
    ctx.strokePath(rectPath(8, 8, 14, 14)); // lies wholly outside the clip
    EXPECT_EQ(at(image, 11, 15).a, 255);    // its left side's shadow: x 10..12
    EXPECT_EQ(at(image, 14, 15).a, 0);
    EXPECT_EQ(at(image, 22, 15).a, 0); // the right side's shadow falls outside the clip
}

TEST(DrawingContextLayers, GroupCastsOneShadowBeneathEverything)
{
    auto draw = [](bool grouped) {
        QImage image = blank(30, 20);
        DrawingContext ctx(image);
        ctx.setShadow(QPointF(-6, 0), 0, Color::deviceRGB(0, 0, 0));
        ctx.setFillColor(Color::deviceRGB(1, 0, 0));
        if (grouped)
            ctx.beginTransparencyLayer();
        ctx.fillRect(QRectF(2, 5, 10, 10));
        ctx.fillRect(QRectF(12, 5, 10, 10)); // its shadow lands on the first square
        if (grouped) {
            EXPECT_EQ(ctx.shadow().isVisible(), false);
            ctx.endTransparencyLayer();
            EXPECT_TRUE(ctx.shadow().isVisible());
        }
        return image;
    };
    const QImage separate = draw(false);
    EXPECT_EQ(at(separate, 8, 10).r, 0); // the second shadow darkens the first square
    const QImage grouped = draw(true);
    EXPECT_EQ(at(grouped, 8, 10).r, 255);
    EXPECT_EQ(at(grouped, 8, 10).a, 255);
    EXPECT_EQ(at(grouped, 0, 10).a, 255); // the group's shadow, left of it
    EXPECT_EQ(at(grouped, 17, 10).r, 255);
}

TEST(DrawingContextLayers, SourceInReplacesColourKeepingCoverage)
{
    QPainterPath circle;
    circle.addEllipse(QPointF(10, 10), 6, 6);
    QImage image = blank(20, 20);
    DrawingContext ctx(image);
    ctx.fillRect(QRectF(0, 0, 3, 3)); // outside the layer's drawing: must survive
    ctx.beginTransparencyLayer();
    ctx.setFillColor(Color::deviceWhite(0.5));
    ctx.fillPath(circle);
    ctx.setBlendMode(BlendMode::SourceIn);
    ctx.setFillColor(Color::deviceRGB(0, 0, 1));
    ctx.fillRect(ctx.clipBoundingBox());
    ctx.endTransparencyLayer();
    EXPECT_EQ(ctx.blendMode(), BlendMode::Normal);
    const Px centre = at(image, 10, 10);
    EXPECT_EQ(centre.b, 255);
    EXPECT_EQ(centre.r, 0);
    EXPECT_EQ(centre.a, 255);
    EXPECT_EQ(at(image, 18, 18).a, 0);
    EXPECT_EQ(at(image, 1, 1).a, 255);
    // Edge pixels keep the circle's partial coverage.
    const Px edge = at(image, 14, 14);
    EXPECT_GT(edge.a, 0);
    EXPECT_LT(edge.a, 255);
    EXPECT_EQ(edge.b, edge.a);
}

TEST(DrawingContextImages, DrawImageUprightAndSnapshot)
{
    QImage picture(2, 2, QImage::Format_RGBA8888);
    picture.setPixelColor(0, 0, Qt::red);
    picture.setPixelColor(1, 0, Qt::red);
    picture.setPixelColor(0, 1, Qt::blue);
    picture.setPixelColor(1, 1, Qt::blue);
    QImage image = blank(8, 8);
    DrawingContext ctx(image);
    ctx.setInterpolationQuality(InterpolationQuality::None);
    ctx.drawImage(QRectF(0, 0, 8, 8), picture);
    EXPECT_EQ(at(image, 3, 7).r, 255); // the picture's top row at the top
    EXPECT_EQ(at(image, 3, 0).b, 255);
    const QImage snap = ctx.snapshot();
    EXPECT_EQ(snap, image);
    ctx.fillRect(QRectF(0, 0, 8, 8));
    EXPECT_NE(snap, image); // a copy, not a view
}

TEST(DrawingContextImages, InterpolationQuality)
{
    QImage picture(2, 1, QImage::Format_RGBA8888);
    picture.setPixelColor(0, 0, Qt::black);
    picture.setPixelColor(1, 0, Qt::white);
    auto distinctGreys = [&](InterpolationQuality q) {
        QImage image = blank(16, 1);
        DrawingContext ctx(image);
        ctx.setInterpolationQuality(q);
        ctx.drawImage(QRectF(0, 0, 16, 1), picture);
        QSet<int> greys;
        for (int x = 0; x < 16; ++x)
            greys.insert(at(image, x, 0).r);
        return greys.size();
    };
    EXPECT_EQ(distinctGreys(InterpolationQuality::None), 2);
    EXPECT_GT(distinctGreys(InterpolationQuality::Default), 4);

    // High quality averages areas when shrinking: a 1-pixel checkerboard becomes even grey.
    QImage checker(64, 64, QImage::Format_RGBA8888);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            checker.setPixelColor(x, y, (x + y) % 2 ? Qt::white : Qt::black);
    QImage image = blank(8, 8);
    DrawingContext ctx(image);
    ctx.setInterpolationQuality(InterpolationQuality::High);
    ctx.drawImage(QRectF(0, 0, 8, 8), checker);
    for (int x = 0; x < 8; ++x)
        EXPECT_NEAR(at(image, x, 4).r, 128, 2);
}

TEST(DrawingContextGradients, LinearAtAnAngleSpansTheBounds)
{
    const Gradient ramp = Gradient::twoColor(Color::deviceRGB(0, 0, 0), Color::deviceRGB(1, 1, 1));
    const QRectF rect(0, 0, 40, 20);
    for (double angle : {0.0, 90.0, 30.0, 210.0}) {
        QImage image = blank(40, 20);
        DrawingContext ctx(image);
        ctx.drawLinearGradient(ramp, rect, angle);
        const double a = angle * M_PI / 180;
        const QPointF d(std::cos(a), std::sin(a));
        const double span = std::abs(40 * d.x()) + std::abs(20 * d.y());
        for (int y = 0; y < 20; y += 3)
            for (int x = 0; x < 40; x += 3) {
                const double t = ((x + 0.5 - 20) * d.x() + (y + 0.5 - 10) * d.y()) / span + 0.5;
                ASSERT_NEAR(at(image, x, y).r, 255 * t, 2.0) << angle << " at " << x << "," << y;
            }
    }
}

TEST(DrawingContextGradients, MultiStopInPathHoldsEndColours)
{
    const Gradient three({{Color::deviceRGB(1, 0, 0), 0.25},
                          {Color::deviceRGB(0, 1, 0), 0.5},
                          {Color::deviceRGB(0, 0, 1), 0.75}},
                         Color::Space::DeviceRGB);
    QPainterPath path = rectPath(10, 0, 40, 10);
    QImage image = blank(60, 10);
    DrawingContext ctx(image);
    ctx.drawLinearGradient(three, path, 0);
    EXPECT_EQ(at(image, 5, 5).a, 0); // outside the path
    EXPECT_EQ(at(image, 12, 5).r, 255);
    EXPECT_EQ(at(image, 47, 5).b, 255);
    EXPECT_NEAR(at(image, 30, 5).g, 255 * (1 - 0.5 / 40 * 4), 3); // near the middle stop
}

TEST(DrawingContextGradients, RadialAroundARelativeCentre)
{
    const Gradient ramp = Gradient::twoColor(Color::deviceRGB(0, 0, 0), Color::deviceRGB(1, 1, 1));
    const QRectF bounds(0, 0, 40, 40);
    const QPointF relative(0.5, -0.5);
    QImage image = blank(40, 40);
    DrawingContext ctx(image);
    ctx.drawRadialGradient(ramp, rectPath(0, 0, 40, 40), relative);
    // Start circle: the bounds' centre c0 with radius 0; end circle around c1 reaching the
    // farthest corner. A point's t solves |p - (c0 + t (c1 - c0))| = t r1.
    const QPointF c0 = bounds.center();
    const QPointF c1(c0.x() + relative.x() * 20, c0.y() + relative.y() * 20);
    const double r1 = std::hypot(c1.x() - 0, c1.y() - 40);
    auto tAt = [&](QPointF p) {
        const QPointF d = c1 - c0, q = p - c0;
        const double A = d.x() * d.x() + d.y() * d.y() - r1 * r1;
        const double B = -2 * (q.x() * d.x() + q.y() * d.y());
        const double C = q.x() * q.x() + q.y() * q.y();
        return (-B - std::sqrt(B * B - 4 * A * C)) / (2 * A);
    };
    EXPECT_LE(at(image, 20, 20).r, 8);
    for (QPoint p : {QPoint(5, 5), QPoint(35, 5), QPoint(5, 35), QPoint(30, 12), QPoint(12, 30)}) {
        const double t = std::clamp(tAt(QPointF(p.x() + 0.5, p.y() + 0.5)), 0.0, 1.0);
        EXPECT_NEAR(at(image, p.x(), p.y()).r, 255 * t, 3) << p.x() << "," << p.y();
    }
}

TEST(DrawingContextGradients, AxialShadingHasNoExtension)
{
    QImage image = blank(6, 20);
    DrawingContext ctx(image);
    ctx.drawAxialShading(QPointF(0, 15), QPointF(0, 5), [](double t) {
        return std::array<double, 4>{t, 0, 1 - t, 1};
    });
    EXPECT_EQ(at(image, 2, 17).a, 0); // beyond the start
    EXPECT_EQ(at(image, 2, 2).a, 0);  // beyond the end
    for (int y = 5; y < 15; ++y) {
        const double t = (15 - (y + 0.5)) / 10;
        EXPECT_NEAR(at(image, 2, y).r, 255 * t, 1);
        EXPECT_NEAR(at(image, 2, y).b, 255 * (1 - t), 1);
        EXPECT_EQ(at(image, 2, y).a, 255);
    }
    // A slanted axis samples the function along its projection.
    QImage slanted = blank(20, 20);
    DrawingContext sctx(slanted);
    sctx.drawAxialShading(QPointF(0, 0), QPointF(20, 20), [](double t) {
        return std::array<double, 4>{t, t, t, 1};
    });
    EXPECT_NEAR(at(slanted, 9, 10).r, 255 * 0.5, 1.5);
    EXPECT_NEAR(at(slanted, 15, 4).r, 255 * 0.5, 1.5);
    EXPECT_NEAR(at(slanted, 2, 2).r, 255 * 0.125, 1.5);
}

TEST(DrawingContextBlend, ModesFollowTheirFormulas)
{
    // Source (1, 0.5, 0) over an opaque grey of 0.5: the separable modes combine the colours
    // component by component, the Porter-Duff modes the coverage.
    struct Case
    {
        BlendMode mode;
        int r, g, b, a;
    } cases[] = {
        {BlendMode::Normal, 255, 128, 0, 255},
        {BlendMode::Multiply, 128, 64, 0, 255},
        {BlendMode::Screen, 255, 192, 128, 255},
        {BlendMode::Darken, 128, 128, 0, 255},
        {BlendMode::Lighten, 255, 128, 128, 255},
        {BlendMode::Difference, 127, 0, 128, 255},
        {BlendMode::Exclusion, 127, 128, 128, 255},
        {BlendMode::SourceIn, 255, 128, 0, 255},
        {BlendMode::DestinationOver, 128, 128, 128, 255},
        {BlendMode::XOR, 0, 0, 0, 0},
        {BlendMode::Clear, 0, 0, 0, 0},
        {BlendMode::DestinationOut, 0, 0, 0, 0},
    };
    for (const Case& c : cases) {
        QImage image = blank(4, 4);
        DrawingContext ctx(image);
        ctx.setFillColor(Color::deviceWhite(0.5));
        ctx.fillRect(QRectF(0, 0, 4, 4));
        ctx.setBlendMode(c.mode);
        ctx.setFillColor(Color::deviceRGB(1, 0.5, 0));
        ctx.fillRect(QRectF(0, 0, 2, 4));
        const Px p = at(image, 0, 1);
        EXPECT_NEAR(p.r, c.r, 1) << int(c.mode);
        EXPECT_NEAR(p.g, c.g, 1) << int(c.mode);
        EXPECT_NEAR(p.b, c.b, 1) << int(c.mode);
        EXPECT_NEAR(p.a, c.a, 1) << int(c.mode);
        EXPECT_EQ(at(image, 3, 1).r, 128) << int(c.mode); // outside the shape nothing changes
    }
}

TEST(DrawingContextBlend, ClipCoverageMixesOldAndNew)
{
    // Copying a transparent colour through a half-open soft clip keeps half of the old pixel.
    QImage mask = blank(4, 4);
    mask.fill(QColor(0, 0, 0, 128));
    QImage image = blank(4, 4);
    DrawingContext ctx(image);
    ctx.setFillColor(Color::deviceRGB(0, 0, 1));
    ctx.fillRect(QRectF(0, 0, 4, 4));
    ctx.clipToMask(QRectF(0, 0, 4, 4), mask);
    ctx.setBlendMode(BlendMode::Copy);
    ctx.setFillColor(Color::deviceRGB(0, 0, 0, 0));
    ctx.fillRect(QRectF(0, 0, 4, 4));
    EXPECT_NEAR(at(image, 1, 1).b, 127, 1);
    EXPECT_NEAR(at(image, 1, 1).a, 127, 1);
}
