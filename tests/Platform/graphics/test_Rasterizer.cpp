// The path rasteriser against independent computations: the exact area of a polygon inside each
// pixel (polygon clipping and the shoelace formula), QPainterPath's own point-in-path test for
// centre sampling, the area of a circle, and Qt's path stroker for stroke outlines.

#include "Platform/graphics/Rasterizer.h"
#include "Platform/text/Font.h"

#include <QPainterPath>
#include <QPainterPathStroker>
#include <QPolygonF>

#include <gtest/gtest.h>

#include <cmath>

using namespace qm;

namespace {

/// Area of a polygon clipped to the unit pixel at (px, py), Sutherland-Hodgman against each side.
double areaInPixel(const QPolygonF& polygon, int px, int py)
{
    QPolygonF poly = polygon;
    auto clip = [&](auto inside, auto cross) {
        QPolygonF out;
        for (int i = 0; i < poly.size(); ++i) {
            const QPointF a = poly[i], b = poly[(i + 1) % poly.size()];
            if (inside(b)) {
                if (!inside(a))
                    out << cross(a, b);
                out << b;
            } else if (inside(a)) {
                out << cross(a, b);
            }
        }
        poly = out;
    };
    auto atX = [](double x) {
        return [x](QPointF a, QPointF b) {
            return QPointF(x, a.y() + (b.y() - a.y()) * (x - a.x()) / (b.x() - a.x()));
        };
    };
    auto atY = [](double y) {
        return [y](QPointF a, QPointF b) {
            return QPointF(a.x() + (b.x() - a.x()) * (y - a.y()) / (b.y() - a.y()), y);
        };
    };
    clip([&](QPointF p) { return p.x() >= px; }, atX(px));
    clip([&](QPointF p) { return p.x() <= px + 1; }, atX(px + 1));
    clip([&](QPointF p) { return p.y() >= py; }, atY(py));
    clip([&](QPointF p) { return p.y() <= py + 1; }, atY(py + 1));
    double area = 0;
    for (int i = 0; i < poly.size(); ++i) {
        const QPointF a = poly[i], b = poly[(i + 1) % poly.size()];
        area += a.x() * b.y() - b.x() * a.y();
    }
    return std::abs(area) / 2;
}

int at(const CoverageMask& m, int x, int y)
{
    if (!m.rect.contains(x, y))
        return 0;
    return m.row(y)[x - m.rect.left()];
}

void expectExactArea(const QPolygonF& polygon, const QRect& limit)
{
    QPainterPath path;
    path.addPolygon(polygon);
    path.closeSubpath();
    const CoverageMask mask = rasterizePath(path, QTransform(), limit, true);
    for (int y = limit.top() - 1; y <= limit.bottom() + 1; ++y)
        for (int x = limit.left() - 1; x <= limit.right() + 1; ++x) {
            const double expected = limit.contains(x, y) ? 255 * areaInPixel(polygon, x, y) : 0;
            ASSERT_NEAR(at(mask, x, y), expected, 1.0) << "pixel " << x << "," << y;
        }
}

} // namespace

TEST(Rasterizer, ExactAreaOfPolygons)
{
    const QRect limit(0, 0, 24, 24);
    expectExactArea(QPolygonF({{2.3, 1.7}, {21.6, 5.2}, {9.1, 20.8}}), limit); // triangle
    expectExactArea(QPolygonF({{3, 3}, {20.5, 3.25}, {12.2, 9.9}, {20.1, 20.7}, {2.6, 18.4}}),
                    limit); // concave
    // A square turned by 30 degrees, clockwise this time.
    QPolygonF turned;
    for (int i = 0; i < 4; ++i) {
        const double a = M_PI / 6 - i * M_PI / 2;
        turned << QPointF(12 + 8 * std::cos(a), 12 + 8 * std::sin(a));
    }
    expectExactArea(turned, limit);
    // Nearly horizontal and nearly vertical edges, spanning many columns or rows in one.
    expectExactArea(QPolygonF({{0.5, 10.2}, {23.5, 11.1}, {23.4, 13.9}, {0.6, 12.3}}), limit);
}

TEST(Rasterizer, ClipsToTheLimitOnEverySide)
{
    // Parts outside the limit are cut off; what lies inside keeps its exact coverage.
    const QPolygonF wide({{-6.5, 4.3}, {30.2, 2.8}, {27.5, 30.4}, {-3.1, 18.6}});
    expectExactArea(wide, QRect(2, 3, 17, 15));
    expectExactArea(wide, QRect(0, 0, 24, 24));
}

TEST(Rasterizer, FillRules)
{
    QPainterPath nested; // both squares drawn the same way round
    nested.addRect(2, 2, 16, 16);
    nested.addRect(6, 6, 8, 8);
    const QRect limit(0, 0, 20, 20);
    for (bool aa : {true, false}) {
        nested.setFillRule(Qt::OddEvenFill);
        const CoverageMask oddEven = rasterizePath(nested, QTransform(), limit, aa);
        EXPECT_EQ(at(oddEven, 10, 10), 0);
        EXPECT_EQ(at(oddEven, 4, 10), 255);
        nested.setFillRule(Qt::WindingFill);
        const CoverageMask winding = rasterizePath(nested, QTransform(), limit, aa);
        EXPECT_EQ(at(winding, 10, 10), 255);
        EXPECT_EQ(at(winding, 4, 10), 255);
    }
    // Drawn the other way round, the inner square is a hole under either rule.
    QPainterPath hole;
    hole.setFillRule(Qt::WindingFill);
    hole.addRect(2, 2, 16, 16);
    hole.addPolygon(QPolygonF({{6, 6}, {6, 14}, {14, 14}, {14, 6}}));
    hole.closeSubpath();
    EXPECT_EQ(at(rasterizePath(hole, QTransform(), limit, true), 10, 10), 0);
}

TEST(Rasterizer, AliasedSamplesPixelCentres)
{
    // A pentagram: its centre is wound twice, a hole under the even-odd rule only.
    QPolygonF star;
    for (int i = 0; i < 5; ++i) {
        const double a = M_PI / 2 + i * 4 * M_PI / 5;
        star << QPointF(15.2 + 13.7 * std::cos(a), 14.9 + 13.3 * std::sin(a));
    }
    QPainterPath path;
    path.addPolygon(star);
    path.closeSubpath();
    for (Qt::FillRule rule : {Qt::OddEvenFill, Qt::WindingFill}) {
        path.setFillRule(rule);
        const QTransform t = QTransform::fromScale(1, -1) * QTransform::fromTranslate(0, 30); // y up
        const CoverageMask mask = rasterizePath(path, t, QRect(0, 0, 30, 30), false);
        const QPainterPath mapped = t.map(path);
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 30; ++x)
                ASSERT_EQ(at(mask, x, y) == 255, mapped.contains(QPointF(x + 0.5, y + 0.5)))
                    << int(rule) << " at " << x << "," << y;
        EXPECT_EQ(at(mask, 15, 15) == 255, rule == Qt::WindingFill);
    }
}

TEST(Rasterizer, CurvesAreFlattenedFinely)
{
    // Chords within a tenth of a pixel of the curve, as fine as FreeType's own rasteriser: the
    // area lost to them is at most the perimeter times that distance.
    const double r = 20;
    QPainterPath circle;
    circle.addEllipse(QPointF(25, 25), r, r);
    const CoverageMask mask = rasterizePath(circle, QTransform(), QRect(0, 0, 50, 50), true);
    double area = 0;
    for (uchar v : mask.values)
        area += v / 255.0;
    EXPECT_LE(area, M_PI * r * r * 1.001);
    EXPECT_GE(area, M_PI * r * r - 2 * M_PI * r * 0.1);
}

TEST(Rasterizer, RectanglesOnThePixelGridAndOff)
{
    QPainterPath aligned;
    aligned.addRect(3, 4, 5, 6);
    const CoverageMask full = rasterizePath(aligned, QTransform(), QRect(0, 0, 20, 20), true);
    EXPECT_EQ(full.rect, QRect(3, 4, 5, 6));
    for (uchar v : full.values)
        EXPECT_EQ(v, 255);
    QPainterPath offGrid;
    offGrid.addRect(3.25, 4, 5.5, 6);
    const CoverageMask partial = rasterizePath(offGrid, QTransform(), QRect(0, 0, 20, 20), true);
    EXPECT_EQ(at(partial, 3, 6), 191); // three quarters of the pixel
    EXPECT_EQ(at(partial, 8, 6), 191);
    EXPECT_EQ(at(partial, 5, 6), 255);
    EXPECT_TRUE(rasterizePath(aligned, QTransform(), QRect(10, 10, 5, 5), true).isEmpty());

    // Shapes whose points all sit on a grid rectangle's corners are not that rectangle: a
    // triangle closed back to its start, and a bow-tie, cover half of it.
    auto total = [](const CoverageMask& m) {
        long sum = 0;
        for (uchar v : m.values)
            sum += v;
        return sum;
    };
    QPainterPath triangle;
    triangle.moveTo(0, 0);
    triangle.lineTo(10, 0);
    triangle.lineTo(10, 10);
    triangle.closeSubpath();
    EXPECT_NEAR(total(rasterizePath(triangle, QTransform(), QRect(0, 0, 20, 20), true)), 50 * 255, 255);
    QPainterPath bowTie;
    bowTie.moveTo(0, 0);
    bowTie.lineTo(10, 10);
    bowTie.lineTo(10, 0);
    bowTie.lineTo(0, 10);
    bowTie.closeSubpath();
    EXPECT_NEAR(total(rasterizePath(bowTie, QTransform(), QRect(0, 0, 20, 20), true)), 50 * 255, 255);
}

TEST(Rasterizer, StrokesMatchQtsStroker)
{
    // Qt's path stroker is an independent construction of the same outline (butt caps, SVG-style
    // miters); both outlines are filled by the same rasteriser and compared pixel by pixel. Both
    // approximate the offsets of curves, each within about a tenth of a pixel: edges differ by a
    // few levels on average, and no pixel by much.
    const Font font = Font::fromName(QStringLiteral("DejaVu Sans"), 50);
    ASSERT_FALSE(font.isNull());
    QPainterPath open; // an open polyline with a sharp and a shallow corner
    open.moveTo(5, 5);
    open.lineTo(60, 12);
    open.lineTo(20, 30);
    open.lineTo(50, 58);
    std::vector<QPainterPath> paths = {open};
    for (char16_t c : {u'O', u'g', u'A', u'&', u'S', u'@'})
        paths.push_back(font.glyphPath(font.glyphForCharacter(c), QPointF(20, 25)));
    const QTransform flip(1, 0, 0, -1, 0, 100);
    const QRect limit(0, 0, 100, 100);
    for (double width : {1.0, 2.5, 6.0, 14.0})
        for (double miter : {10.0, 1.5}) {
            QPainterPathStroker stroker;
            stroker.setWidth(width);
            stroker.setCapStyle(Qt::FlatCap);
            stroker.setJoinStyle(Qt::SvgMiterJoin);
            stroker.setMiterLimit(miter);
            for (size_t i = 0; i < paths.size(); ++i) {
                const CoverageMask ours = rasterizeStroke(paths[i], width, miter, flip, limit, true);
                const CoverageMask qt = rasterizePath(stroker.createStroke(paths[i]), flip, limit, true);
                double total = 0;
                int large = 0, pixels = 0;
                for (int y = 0; y < 100; ++y)
                    for (int x = 0; x < 100; ++x) {
                        const int d = std::abs(at(ours, x, y) - at(qt, x, y));
                        total += d;
                        large += d > 64;
                        pixels += at(qt, x, y) > 0;
                    }
                EXPECT_LT(total / pixels, 3.0) << "path " << i << " width " << width << " miter " << miter;
                EXPECT_LE(large, 2) << "path " << i << " width " << width << " miter " << miter;
            }
        }
}
