// The glyph rasteriser on real glyphs of DejaVu Sans. Most cases use the black square U+25A0,
// whose outline is one rectangle: outline bands, gradients and shadows can then be checked
// against plain geometry. Rows are counted upward from the bottom, as the bitmap's y axis runs.

#include "Classes/render/CGGlyphBitmap.h"
#include "Classes/render/PathHelpers.h"
#include "Classes/render/RRGlossCausticShader.h"
#include "Platform/graphics/DrawingContext.h"
#include "Platform/text/Font.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>

using namespace qm;

namespace {

constexpr char16_t kSquare = u'\u25A0';

struct Px
{
    int r, g, b, a;
};

Px at(const QImage& image, int x, int yUp)
{
    const uchar* p = image.constScanLine(image.height() - 1 - yUp) + 4 * x;
    return {p[0], p[1], p[2], p[3]};
}

CGGlyphBitmap glyph(char16_t c = kSquare)
{
    CGGlyphBitmap g(c);
    g.setFntName(QStringLiteral("DejaVu Sans"));
    g.setGlyphsize(50);
    g.setStroke(false);
    g.setShadow(false);
    g.setFillGMode(1);
    g.setGlyphColor(Color::deviceRGB(1, 0, 0));
    g.setStrokeColor(Color::deviceRGB(0, 0, 1));
    g.setShadowColor(Color::deviceRGB(0, 0, 0));
    return g;
}

QImage render(CGGlyphBitmap g)
{
    EXPECT_TRUE(g.setNewSize());
    g.getImage();
    EXPECT_EQ(g.glyphImage().size(), g.glyphRect().size().toSize());
    return g.glyphImage();
}

/// Columns and rows (y up) holding any ink of at least `minAlpha`.
QRect inkBounds(const QImage& image, int minAlpha = 1)
{
    QRect r;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (at(image, x, y).a >= minAlpha)
                r |= QRect(x, y, 1, 1);
    return r;
}

/// Ink width along row y and ink height along column x, in pixels of full coverage.
QSizeF coverage(const QImage& image, int x, int y)
{
    double w = 0, h = 0;
    for (int i = 0; i < image.width(); ++i)
        w += at(image, i, y).a / 255.0;
    for (int i = 0; i < image.height(); ++i)
        h += at(image, x, i).a / 255.0;
    return {w, h};
}

} // namespace

TEST(GlyphRasteriser, NullContextDrawsNothing)
{
    EXPECT_FALSE(glyph().drawGlyphInContext(nullptr));
}

TEST(GlyphRasteriser, PlainFillSitsInsideOnePixelMargin)
{
    const Font font = Font::fromName(QStringLiteral("DejaVu Sans"), 50);
    const QRectF box = font.glyphBoundingBox(font.glyphForCharacter(kSquare));
    const QImage image = render(glyph());
    // The square's edges land at pen origin + box. With no effects the origin puts the box's
    // left edge within the second column and its bottom one pixel above floor(-y) (so a box
    // reaching below the base line starts inside the first row).
    const double left = 1 + (box.x() - std::floor(box.x()));
    const double bottom = 1 + std::floor(-box.y()) + box.y();
    ASSERT_GT(bottom, 0);
    const QRect ink = inkBounds(image);
    EXPECT_EQ(ink.left(), int(std::floor(left)));
    EXPECT_EQ(ink.top(), int(std::floor(bottom)));
    EXPECT_EQ(ink.right(), int(std::ceil(left + box.width())) - 1);
    EXPECT_EQ(ink.bottom(), int(std::ceil(bottom + box.height())) - 1);
    EXPECT_LT(ink.right(), image.width() - 1);
    EXPECT_LT(ink.bottom(), image.height() - 1);
    const Px centre = at(image, ink.center().x(), ink.center().y());
    EXPECT_EQ(centre.r, 255);
    EXPECT_EQ(centre.g, 0);
    EXPECT_EQ(centre.a, 255);
}

TEST(GlyphRasteriser, NoFillNoOutlineIsEmpty)
{
    CGGlyphBitmap g = glyph(u'g');
    g.setFillGMode(0);
    EXPECT_TRUE(inkBounds(render(g)).isEmpty());
}

TEST(GlyphRasteriser, AntialiasingOffGivesOnlyWholeCoverage)
{
    for (char16_t c : {u'g', u'@', u'S'}) {
        CGGlyphBitmap g = glyph(c);
        g.setAntialias(false);
        const QImage image = render(g);
        int opaque = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                const int a = at(image, x, y).a;
                ASSERT_TRUE(a == 0 || a == 255) << x << "," << y << " alpha " << a;
                opaque += a == 255;
            }
        EXPECT_GT(opaque, 100);
        g.setAntialias(true);
        const QImage smooth = render(g);
        int partial = 0;
        for (int y = 0; y < smooth.height(); ++y)
            for (int x = 0; x < smooth.width(); ++x)
                partial += at(smooth, x, y).a % 255 != 0;
        EXPECT_GT(partial, 20);
    }
}

TEST(GlyphRasteriser, GlossFollowsTheShaderDownTheWholeBitmap)
{
    CGGlyphBitmap g = glyph();
    g.setGlossy(true);
    g.setGlyphColor(Color::calibratedWhite(0.5));
    const QImage image = render(g);
    RRGlossCausticShader shader; // same base and gloss values as the glossy fill
    shader.setNoncausticColor(Color::calibratedWhite(0.5));
    shader.update();
    const QRect ink = inkBounds(image);
    const int x = ink.center().x();
    const int h = image.height();
    for (int y = ink.top() + 1; y < ink.bottom(); ++y) {
        // t runs from the bitmap's top edge (0) to its bottom edge (1).
        const auto v = shader.shadingValue((h - y - 0.5) / h);
        const Px p = at(image, x, y);
        ASSERT_NEAR(p.r, 255 * v[0], 1) << y;
        ASSERT_NEAR(p.b, 255 * v[2], 1) << y;
        ASSERT_EQ(p.a, 255);
    }
    // The step at the middle: washed above, the plain base just below.
    const int mid = h / 2;
    EXPECT_GT(at(image, x, mid).r, at(image, x, mid - 1).r + 15);
    EXPECT_NEAR(at(image, x, mid - 1).r, 128, 5);
    // Nothing outside the glyph.
    EXPECT_EQ(at(image, ink.left() - 1, ink.center().y()).a, 0);
    EXPECT_EQ(at(image, x, ink.bottom() + 1).a, 0);
}

TEST(GlyphRasteriser, GlossyOnlyMattersForColourFill)
{
    for (int mode : {3, 4}) {
        CGGlyphBitmap g = glyph(u'R');
        g.setFillGMode(mode);
        const QImage plain = render(g);
        g.setGlossy(true);
        EXPECT_EQ(render(g), plain) << mode;
    }
}

TEST(GlyphRasteriser, TextureStretchesOverTheWholeBitmap)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("halves.png"));
    QImage texture(32, 32, QImage::Format_RGBA8888);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 32; ++x)
            texture.setPixelColor(x, y, y < 16 ? Qt::green : Qt::blue); // top half green
    ASSERT_TRUE(texture.save(path));

    // A drop shadow 20 pixels down makes the bitmap's middle lie 10 pixels below the glyph's.
    CGGlyphBitmap g = glyph(u'I');
    g.setFillGMode(2);
    g.setTxtName(path);
    g.setShadow(true);
    g.setShadowxoffset(0);
    g.setShadowyoffset(-20);
    g.setShadowblurradius(0);
    const QImage image = render(g);
    const int h = image.height();
    const QRect ink = inkBounds(image, 255);
    const int x = ink.center().x();
    const int glyphMiddle = (ink.top() + ink.bottom()) / 2;
    ASSERT_GE(glyphMiddle - h / 2, 8);
    for (int y = h / 2 + 2; y <= ink.bottom() - 1; ++y) {
        EXPECT_EQ(at(image, x, y).g, 255) << y; // above the bitmap's middle: the texture's top half
        EXPECT_EQ(at(image, x, y).b, 0) << y;
    }
    EXPECT_EQ(at(image, x, h / 2 - 2).b, 255);

    // An unreadable file leaves the glyph unfilled: only the shadow pass's paint remains.
    g.setTxtName(dir.filePath(QStringLiteral("missing.png")));
    const QImage unfilled = render(g);
    EXPECT_EQ(at(unfilled, x, glyphMiddle).g, 0);
    g.setShadow(false);
    EXPECT_TRUE(inkBounds(render(g)).isEmpty());
    g.setTxtName(QString());
    EXPECT_TRUE(inkBounds(render(g)).isEmpty());
}

TEST(GlyphRasteriser, LinearGradientAngles)
{
    const Gradient ramp = Gradient::twoColor(Color::deviceRGB(0, 0, 0), Color::deviceRGB(1, 1, 1));
    for (int angle : {0, 90, 30}) {
        CGGlyphBitmap g = glyph();
        g.setFillGMode(3);
        g.setColorGradient(ramp);
        g.setGradiantAngle(angle);
        const QImage image = render(g);
        // The square's exact edges, found from its partial edge coverage in a plain fill.
        CGGlyphBitmap plain = glyph();
        const QImage flat = render(plain);
        const QRect ink = inkBounds(flat);
        auto edge = [&](int x, int y) { return at(flat, x, y).a / 255.0; };
        const double left = ink.left() + 1 - edge(ink.left(), ink.center().y());
        const double right = ink.right() + edge(ink.right(), ink.center().y());
        const double bottom = ink.top() + 1 - edge(ink.center().x(), ink.top());
        const double top = ink.bottom() + edge(ink.center().x(), ink.bottom());
        // The gradient's own angle is the setting minus 90: 0 runs top to bottom, 90 left to right.
        const double a = (angle - 90) * M_PI / 180;
        const QPointF d(std::cos(a), std::sin(a));
        const QPointF c((left + right) / 2, (bottom + top) / 2);
        const double span = std::abs((right - left) * d.x()) + std::abs((top - bottom) * d.y());
        for (int y = ink.top() + 2; y < ink.bottom() - 1; y += 3)
            for (int x = ink.left() + 2; x < ink.right() - 1; x += 3) {
                const double t = ((x + 0.5 - c.x()) * d.x() + (y + 0.5 - c.y()) * d.y()) / span + 0.5;
                ASSERT_NEAR(at(image, x, y).r, 255 * t, 2.5) << angle << " at " << x << "," << y;
            }
        if (angle == 0) { // black at the top
            EXPECT_LT(at(image, ink.center().x(), ink.bottom() - 1).r, 12);
        }
        if (angle == 90) { // black at the left
            EXPECT_LT(at(image, ink.left() + 1, ink.center().y()).r, 12);
        }
    }
}

TEST(GlyphRasteriser, RadialGradientAroundAnOffCentreCentre)
{
    CGGlyphBitmap g = glyph();
    g.setFillGMode(4);
    g.setColorGradient(Gradient::twoColor(Color::deviceRGB(0, 0, 0), Color::deviceRGB(1, 1, 1)));
    g.setGradialX(0.5f);
    g.setGradialY(-0.5f);
    const QImage image = render(g);
    const QRect ink = inkBounds(image, 255);
    // First colour at the square's centre; the end circle, around the point halfway to the
    // bottom-right corner, reaches the farthest corner: the top-left one is (nearly) white.
    const Px centre = at(image, ink.center().x(), ink.center().y());
    EXPECT_LT(centre.r, 20);
    EXPECT_GT(at(image, ink.left() + 1, ink.bottom() - 1).r, 220);
    // Along the diagonal toward the end centre the gradient reaches farther before it ends:
    // equal distances from the centre are darker there than toward the top-left.
    const QPoint c = ink.center();
    EXPECT_LT(at(image, c.x() + 8, c.y() - 8).r, at(image, c.x() - 8, c.y() + 8).r - 20);
}

TEST(GlyphRasteriser, OutlineModesPlaceTheBand)
{
    const double w = 4;
    const QImage plain = render(glyph());
    const QRect plainInk = inkBounds(plain);
    const QSizeF plainSize = coverage(plain, plainInk.center().x(), plainInk.center().y());
    struct
    {
        int how;
        int grow;  // ink grows by this many pixels on each side
        int inner; // fill colour starts this many pixels inside the ink
    } modes[] = {{0, 2, 4}, {1, 0, 4}, {2, 4, 4}};
    for (const auto& m : modes) {
        CGGlyphBitmap g = glyph();
        g.setStroke(true);
        g.setStrokesize(float(w));
        g.setStrokehowmode(m.how);
        const QImage image = render(g);
        const QRect ink = inkBounds(image, 77);
        // An inside band's clipped edge adds its anti-aliased coverage to the fill's: allow for it.
        const QSizeF size = coverage(image, ink.center().x(), ink.center().y());
        EXPECT_NEAR(size.width(), plainSize.width() + 2 * m.grow, 0.6) << m.how;
        EXPECT_NEAR(size.height(), plainSize.height() + 2 * m.grow, 0.6) << m.how;
        const int y = ink.center().y();
        for (int i = 1; i < m.inner - 1; ++i) { // the band in the stroke colour
            EXPECT_EQ(at(image, ink.left() + i, y).b, 255) << m.how << " " << i;
            EXPECT_EQ(at(image, ink.left() + i, y).r, 0) << m.how << " " << i;
        }
        EXPECT_EQ(at(image, ink.left() + m.inner + 1, y).r, 255) << m.how; // then the fill
        EXPECT_EQ(at(image, ink.left() + m.inner + 1, y).b, 0) << m.how;
    }
}

TEST(GlyphRasteriser, OutsideOutlineAloneIsAHollowRing)
{
    CGGlyphBitmap g = glyph(u'O');
    g.setFillGMode(0);
    g.setStroke(true);
    g.setStrokesize(3);
    g.setStrokehowmode(2);
    const QImage ring = render(g);
    // The filled letter, placed with the same margins, marks the interior.
    g.setStroke(false);
    g.setFillGMode(1);
    g.setBoundingPadding(0);
    CGGlyphBitmap filled = g;
    filled.setStroke(true);
    filled.setStrokeColor(Color::deviceRGB(0, 0, 0, 0));
    const QImage solid = render(filled);
    ASSERT_EQ(ring.size(), solid.size());
    int interior = 0, band = 0;
    for (int y = 0; y < ring.height(); ++y)
        for (int x = 0; x < ring.width(); ++x) {
            if (at(solid, x, y).a == 255) {
                ASSERT_EQ(at(ring, x, y).a, 0) << x << "," << y;
                ++interior;
            } else if (at(ring, x, y).a == 255) {
                EXPECT_EQ(at(ring, x, y).b, 255);
                ++band;
            }
        }
    EXPECT_GT(interior, 200);
    EXPECT_GT(band, 200);
}

TEST(GlyphRasteriser, GradientOutlineReplacesOnlyTheStroke)
{
    for (int how : {0, 1, 2}) {
        CGGlyphBitmap g = glyph();
        g.setStroke(true);
        g.setStrokesize(4);
        g.setStrokehowmode(how);
        g.setStrokeMode(1);
        g.setStrokeGradient(Gradient::twoColor(Color::deviceRGB(0, 0, 0), Color::deviceRGB(0, 1, 0)));
        g.setStrokegradiantAngle(90); // left to right over the whole bitmap
        const QImage image = render(g);
        const QRect ink = inkBounds(image, 128);
        const double width = image.width();
        const int y = ink.center().y();
        for (int x : {ink.left() + 1, ink.right() - 1}) {
            const Px p = at(image, x, y);
            EXPECT_EQ(p.a, 255) << how;
            EXPECT_EQ(p.r, 0) << how;
            EXPECT_NEAR(p.g, 255 * (x + 0.5) / width, 2) << how << " at " << x;
        }
        EXPECT_EQ(at(image, ink.center().x(), y).r, 255) << how; // the fill is untouched
        EXPECT_EQ(at(image, ink.center().x(), y).g, 0) << how;
        EXPECT_EQ(at(image, ink.left() - 2, y).a, 0) << how; // no gradient beyond the stroke
    }
}

TEST(GlyphRasteriser, DropShadowDirectionAndBlur)
{
    auto shadowed = [](float dx, float dy, float blur) {
        CGGlyphBitmap g = glyph(u'I');
        g.setShadow(true);
        g.setShadowxoffset(dx);
        g.setShadowyoffset(dy);
        g.setShadowblurradius(blur);
        return render(g);
    };
    // Opaque red glyph pixels and opaque dark shadow pixels (0.9 alpha over nothing).
    auto regions = [](const QImage& image) {
        QRect red, dark;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                const Px p = at(image, x, y);
                if (p.a > 200 && p.r > 200)
                    red |= QRect(x, y, 1, 1);
                else if (p.a > 200 && p.r < 30)
                    dark |= QRect(x, y, 1, 1);
            }
        return std::make_pair(red, dark);
    };
    // A positive y offset moves the shadow up: toward the top row of the image file.
    const QImage up = shadowed(0, 8, 0);
    const auto [red, dark] = regions(up);
    EXPECT_EQ(dark.bottom(), red.bottom() + 8);
    EXPECT_EQ(dark.left(), red.left());
    EXPECT_EQ(up.pixelColor(red.center().x(), up.height() - 1 - (red.bottom() + 4)).alpha(), 230); // 0.9
    // A negative one moves it down.
    const QImage down = shadowed(0, -8, 0);
    const auto [downRed, downDark] = regions(down);
    EXPECT_EQ(downDark.top(), downRed.top() - 8);
    EXPECT_LT(downDark.bottom(), downRed.top());
    EXPECT_EQ(at(down, downRed.center().x(), downRed.top() - 4).a, 230);

    // Blur softens the shadow's far edge over about two sigmas (sigma = blur / 2) each way.
    const QImage soft = shadowed(0, 8, 6);
    const QRect softInk = inkBounds(soft, 255); // the glyph only: the shadow is at most 0.9
    const int x = softInk.center().x();
    int rising = 0;
    int last = 0;
    for (int y = softInk.bottom() + 1; y < soft.height(); ++y) {
        const int a = at(soft, x, y).a;
        if (a > 0 && a < 229)
            ++rising;
        if (y > softInk.bottom() + 8) {
            EXPECT_LE(a, last) << y; // fading out past the offset edge
        }
        last = a;
    }
    EXPECT_GE(rising, 8);
}

TEST(GlyphRasteriser, InnerShadowStaysInsideTheGlyph)
{
    CGGlyphBitmap g = glyph(u'O');
    g.setGlyphColor(Color::deviceRGB(1, 1, 1));
    const QImage plain = render(g);
    g.setShadow(true);
    g.setShadowhowmode(1);
    g.setShadowxoffset(3);
    g.setShadowyoffset(-3);
    g.setShadowblurradius(2);
    g.setShadowColor(Color::deviceRGB(0, 0, 0.5));
    const QImage shaded = render(g);
    ASSERT_EQ(shaded.size(), plain.size()); // an inner shadow needs no margin
    int darkened = 0;
    for (int y = 0; y < plain.height(); ++y)
        for (int x = 0; x < plain.width(); ++x) {
            const Px before = at(plain, x, y), after = at(shaded, x, y);
            if (before.a == 0) {
                ASSERT_EQ(after.a, 0) << x << "," << y; // nothing outside the glyph
            }
            if (before.a == 255 && after.r < 200)
                ++darkened;
        }
    EXPECT_GT(darkened, 200);
}

TEST(GlyphRasteriser, NothingIsCutOffAtTheEdges)
{
    // With bevelled joins every effect lies within the margins that measuring reserves: the
    // same glyph rendered with 12 more pixels of padding on each side shows exactly the same
    // picture and nothing in the extra border. (Mitred joins of wide outlines can reach beyond
    // the outline margin at sharp corners; the margin rule does not count them.)
    auto heavy = std::vector<std::function<void(CGGlyphBitmap&)>>{
        [](CGGlyphBitmap& g) { g.setStroke(true), g.setStrokesize(9), g.setStrokehowmode(2); },
        [](CGGlyphBitmap& g) { g.setStroke(true), g.setStrokesize(7.5f), g.setStrokehowmode(0); },
        [](CGGlyphBitmap& g) {
            g.setStroke(true), g.setStrokesize(6), g.setStrokehowmode(2), g.setFillGMode(0);
            g.setShadow(true), g.setShadowxoffset(-7), g.setShadowyoffset(-7), g.setShadowblurradius(0);
        },
        [](CGGlyphBitmap& g) {
            g.setStroke(true), g.setStrokesize(5), g.setShadow(true), g.setShadowxoffset(9),
                g.setShadowyoffset(9);
            g.setShadowblurradius(1);
        },
        [](CGGlyphBitmap& g) {
            g.setShadow(true), g.setShadowxoffset(-6), g.setShadowyoffset(6), g.setShadowblurradius(4);
        },
        [](CGGlyphBitmap& g) {
            g.setOngrid(true), g.setStroke(true), g.setStrokesize(6), g.setStrokehowmode(2),
                g.setShadow(true);
        },
    };
    const int pad = 12;
    for (size_t i = 0; i < heavy.size(); ++i)
        for (char16_t c : {u'A', u'g', u'Q', u'j', u'@', u'W'}) {
            CGGlyphBitmap g = glyph(c);
            g.setMiterlimit(1);
            heavy[i](g);
            const QImage tight = render(g);
            g.setBoundingPadding(pad);
            const QImage padded = render(g);
            ASSERT_EQ(padded.size(), tight.size() + QSize(2 * pad, 2 * pad));
            int worst = 0;
            for (int y = 0; y < padded.height(); ++y)
                for (int x = 0; x < padded.width(); ++x) {
                    const Px p = at(padded, x, y);
                    const bool border =
                        x < pad || y < pad || x >= padded.width() - pad || y >= padded.height() - pad;
                    if (border) {
                        worst = std::max(worst, p.a);
                    } else {
                        const Px q = at(tight, x - pad, y - pad);
                        ASSERT_NEAR(p.a, q.a, 1)
                            << "case " << i << " glyph " << char(c) << " at " << x << "," << y;
                    }
                }
            // At most a rounding step of a blurred shadow's far tail.
            EXPECT_LE(worst, 1) << "case " << i << " glyph " << char(c);
        }
}

TEST(PathHelpers, StrokeInsideKeepsTheState)
{
    QPainterPath square;
    square.addRect(5, 5, 20, 20);
    QImage a(30, 30, QImage::Format_RGBA8888_Premultiplied);
    a.fill(0);
    QImage b = a.copy();
    {
        DrawingContext ctx(a);
        ctx.setLineWidth(3);
        strokeInside(ctx, square);
        EXPECT_EQ(ctx.lineWidth(), 3);
        EXPECT_EQ(ctx.clipBoundingBox(), QRectF(0, 0, 30, 30));
        EXPECT_FALSE(ctx.shadow().isVisible());
    }
    {
        DrawingContext ctx(b);
        ctx.setLineWidth(3);
        strokeInsideWithinRect(ctx, square, QRectF(0, 0, 0, 30)); // zero width: the path only
        strokeInsideWithinRect(ctx, square, QRectF(0, 0, 30, 0));
    }
    EXPECT_EQ(a, b);
    // A band of width 3 inside the contour only.
    EXPECT_EQ(a.pixelColor(6, 15).alpha(), 255);
    EXPECT_EQ(a.pixelColor(7, 15).alpha(), 255);
    EXPECT_EQ(a.pixelColor(8, 15).alpha(), 0);
    EXPECT_EQ(a.pixelColor(4, 15).alpha(), 0);

    // A rectangle limits it further.
    QImage c(30, 30, QImage::Format_RGBA8888_Premultiplied);
    c.fill(0);
    {
        DrawingContext ctx(c);
        ctx.setLineWidth(3);
        strokeInsideWithinRect(ctx, square, QRectF(0, 0, 15, 30));
    }
    EXPECT_EQ(c.pixelColor(6, 15).alpha(), 255);
    EXPECT_EQ(c.pixelColor(23, 15).alpha(), 0);
    EXPECT_EQ(a.pixelColor(23, 15).alpha(), 255);
}

TEST(PathHelpers, ShadowOnAndOff)
{
    QImage image(10, 10, QImage::Format_RGBA8888_Premultiplied);
    DrawingContext ctx(image);
    setShadowWithOffset(ctx, QPointF(2, -3), 4, Color::black());
    EXPECT_EQ(ctx.shadow().offset, QPointF(2, -3));
    EXPECT_EQ(ctx.shadow().blurRadius, 4);
    EXPECT_TRUE(ctx.shadow().isVisible());
    clearShadow(ctx);
    EXPECT_FALSE(ctx.shadow().isVisible());
    // The outside stroke only doubles the width and saves the state.
    ctx.setLineWidth(2);
    strokeOutside(ctx, QPainterPath());
    EXPECT_EQ(ctx.lineWidth(), 4);
    ctx.setLineWidth(7);
    ctx.restoreGState();
    EXPECT_EQ(ctx.lineWidth(), 4);
}
