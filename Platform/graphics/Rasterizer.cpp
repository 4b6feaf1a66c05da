#include "Platform/graphics/Rasterizer.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace qm {

namespace {

// Largest distance between a flattened curve and the curve itself, in pixels.
constexpr double kFlatness = 0.1;

/// A flattened subpath. For a stroke the true tangents at the path's own vertices count (chords
/// of a curve leave it at another angle): `in` and `out` hold them, zero at chord vertices.
struct Polyline
{
    std::vector<QPointF> points, in, out;
    void clear()
    {
        points.clear();
        in.clear();
        out.clear();
    }
    void add(QPointF p, QPointF tangentIn = {})
    {
        points.push_back(p);
        in.push_back(tangentIn);
        out.push_back({});
    }
};

inline QPointF firstNonZero(QPointF a, QPointF b, QPointF c)
{
    return !a.isNull() ? a : !b.isNull() ? b : c;
}

/// Calls subpath(polyline) for each subpath of the path after the affine `transform`, curves
/// split into chords; points[0] is the subpath's start. The buffer is reused between calls.
template <class SubpathFn>
void forEachSubpath(const QPainterPath& path, const QTransform& transform, SubpathFn&& subpath)
{
    const double m11 = transform.m11(), m12 = transform.m12(), m21 = transform.m21(), m22 = transform.m22();
    const double dx = transform.dx(), dy = transform.dy();
    auto map = [=](const QPainterPath::Element& e) {
        return QPointF(m11 * e.x + m21 * e.y + dx, m12 * e.x + m22 * e.y + dy);
    };
    thread_local Polyline line;
    line.clear();
    const int count = path.elementCount();
    for (int i = 0; i < count; ++i) {
        const QPainterPath::Element& e = path.elementAt(i);
        switch (e.type) {
        case QPainterPath::MoveToElement:
            if (!line.points.empty())
                subpath(line);
            line.clear();
            line.add(map(e));
            break;
        case QPainterPath::LineToElement: {
            if (line.points.empty())
                return;
            const QPointF p = map(e);
            line.out.back() = p - line.points.back();
            line.add(p, p - line.points.back());
            break;
        }
        case QPainterPath::CurveToElement: {
            if (i + 2 >= count || line.points.empty())
                return;
            const QPointF p0 = line.points.back();
            const QPointF c1 = map(e);
            const QPointF c2 = map(path.elementAt(i + 1));
            const QPointF p3 = map(path.elementAt(i + 2));
            i += 2;
            line.out.back() = firstNonZero(c1 - p0, c2 - p0, p3 - p0);
            // A cubic's distance from its n-chord polygon is at most |B''| / (8 n^2), and |B''| is
            // at most 6 times the larger second difference of its control points.
            const QPointF d1 = p0 - 2 * c1 + c2;
            const QPointF d2 = c1 - 2 * c2 + p3;
            const double m2 = std::max(QPointF::dotProduct(d1, d1), QPointF::dotProduct(d2, d2));
            const int n = std::clamp(int(std::ceil(std::sqrt(0.75 / kFlatness * std::sqrt(m2)))), 1, 256);
            // Forward differences of the cubic a t^3 + b t^2 + c t + p0 in steps of 1 / n.
            const double h = 1.0 / n;
            const QPointF a = 3 * (c1 - c2) + p3 - p0, b = 3 * (p0 - 2 * c1 + c2), c = 3 * (c1 - p0);
            QPointF p = p0, step = a * (h * h * h) + b * (h * h) + c * h;
            QPointF change = a * (6 * h * h * h) + b * (2 * h * h);
            const QPointF changeOfChange = a * (6 * h * h * h);
            for (int k = 1; k < n; ++k) {
                p += step;
                step += change;
                change += changeOfChange;
                line.add(p);
            }
            line.add(p3, firstNonZero(p3 - c2, p3 - c1, p3 - p0));
            break;
        }
        default:
            break;
        }
    }
    if (!line.points.empty())
        subpath(line);
}

/// Calls line(p, q) for every edge of a closed polygon.
template <class LineFn> void polygonEdges(const std::vector<QPointF>& points, LineFn&& line)
{
    for (size_t i = 0; i + 1 < points.size(); ++i)
        line(points[i], points[i + 1]);
    if (points.size() > 1 && points.back() != points.front())
        line(points.back(), points.front());
}

/// Calls line(p, q) for every edge of the path's polygons, each subpath closed.
template <class LineFn> void flatten(const QPainterPath& path, const QTransform& transform, LineFn&& line)
{
    forEachSubpath(path, transform, [&](const Polyline& sub) { polygonEdges(sub.points, line); });
}

/// The outline of a stroke of one flattened subpath, as closed polygons whose union (nonzero
/// winding) is the stroke: butt caps, mitred joins that turn into bevels where the miter would
/// reach further than `miterLimit` half-widths, inner corners routed through the vertex.
template <class PolygonFn>
void strokeSubpath(const Polyline& input, double halfWidth, double miterLimit, PolygonFn&& polygon)
{
    thread_local std::vector<QPointF> pts, tin, tout, dirs, left, right;
    thread_local std::vector<double> lengths;
    pts.clear();
    tin.clear();
    tout.clear();
    auto same = [](QPointF a, QPointF b) {
        return std::abs(a.x() - b.x()) + std::abs(a.y() - b.y()) <= 1e-9;
    };
    for (size_t i = 0; i < input.points.size(); ++i) {
        if (!pts.empty() && same(input.points[i], pts.back())) {
            tout.back() = input.out[i]; // a zero-length step: the vertex leaves the way the next one does
            continue;
        }
        pts.push_back(input.points[i]);
        tin.push_back(input.in[i]);
        tout.push_back(input.out[i]);
    }
    const bool closed = pts.size() > 2 && same(pts.back(), pts.front());
    if (closed) {
        tin.front() = tin.back();
        pts.pop_back();
        tin.pop_back();
        tout.pop_back();
    }
    const size_t n = pts.size();
    if (n < 2)
        return;
    const size_t segments = closed ? n : n - 1;
    dirs.resize(segments);
    for (size_t i = 0; i < segments; ++i) {
        const QPointF d = pts[(i + 1) % n] - pts[i];
        dirs[i] = d / std::sqrt(QPointF::dotProduct(d, d));
    }
    lengths.resize(segments);
    for (size_t i = 0; i < segments; ++i) {
        const QPointF d = pts[(i + 1) % n] - pts[i];
        lengths[i] = std::sqrt(QPointF::dotProduct(d, d));
    }
    auto normal = [](QPointF d) { return QPointF(-d.y(), d.x()); };
    const double h = halfWidth;
    auto unit = [](QPointF d) { return d / std::sqrt(QPointF::dotProduct(d, d)); };
    // The offset points at vertex j between segments ia and ib, on side s (+1 left, -1 right).
    auto join = [&](std::vector<QPointF>& out, size_t j, size_t ia, size_t ib, double s) {
        const QPointF p = pts[j];
        const QPointF a = tin[j].isNull() ? dirs[ia] : unit(tin[j]);
        const QPointF b = tout[j].isNull() ? dirs[ib] : unit(tout[j]);
        const QPointF na = normal(a), nb = normal(b);
        const QPointF o1 = p + s * h * na, o2 = p + s * h * nb;
        const double cross = a.x() * b.y() - a.y() * b.x();
        const double dot = QPointF::dotProduct(a, b);
        const double denom = 1 + dot;
        if (std::abs(cross) < 1e-12 && dot > 0) {
            out.push_back(o1);
        } else if (s * cross < 0) { // the outer side of the turn
            out.push_back(o1);
            // Miter length over line width is 1 / sin(half the corner angle) = sqrt(2 / (1 + a.b)).
            if (denom > 1e-12 && 2 / denom <= miterLimit * miterLimit)
                out.push_back(p + s * h * (na + nb) / denom);
            out.push_back(o2);
        } else if (denom > 1e-12 && h * std::abs(cross) / denom <= 0.5 * std::min(lengths[ia], lengths[ib])) {
            // The inner side: where the two offset edges cross, while that lies well within both.
            out.push_back(p + s * h * (na + nb) / denom);
        } else {
            // Otherwise through the vertex: the small loops this makes lie inside the stroke and
            // nonzero winding fills them.
            out.push_back(o1);
            out.push_back(p);
            out.push_back(o2);
        }
    };
    left.clear();
    right.clear();
    if (closed) {
        for (size_t j = 0; j < n; ++j) {
            join(left, j, (j + segments - 1) % segments, j, 1);
            join(right, j, (j + segments - 1) % segments, j, -1);
        }
        std::reverse(right.begin(), right.end());
        polygon(left);
        polygon(right);
        return;
    }
    const QPointF first = normal(tout[0].isNull() ? dirs[0] : unit(tout[0]));
    left.push_back(pts[0] + h * first);
    right.push_back(pts[0] - h * first);
    for (size_t j = 1; j + 1 < n; ++j) {
        join(left, j, j - 1, j, 1);
        join(right, j, j - 1, j, -1);
    }
    const QPointF last = normal(tin[n - 1].isNull() ? dirs[segments - 1] : unit(tin[n - 1]));
    left.push_back(pts[n - 1] + h * last);
    right.push_back(pts[n - 1] - h * last);
    left.insert(left.end(), right.rbegin(), right.rend());
    polygon(left);
}

/// Even-odd coverage of an accumulated winding: it folds back every two windings.
inline unsigned char evenOdd(float acc)
{
    float v = std::fabs(acc);
    v -= 2 * std::floor(v * 0.5f);
    if (v > 1)
        v = 2 - v;
    return static_cast<unsigned char>(v * 255.0f + 0.5f);
}

inline int ceilPositive(float v)
{
    const int i = int(v);
    return float(i) < v ? i + 1 : i;
}

/// Signed-area accumulation: each edge adds, to the cells of the rows it crosses, its share of
/// the pixel area to its right; a running sum along a row then gives each pixel's winding-
/// weighted coverage.
class AreaAccumulator
{
public:
    AreaAccumulator(int width, int height) : m_width(width), m_height(height), m_cells(buffers())
    {
        m_cells.assign(size_t(width + 2) * height, 0.0f);
    }

    /// An edge in coordinates relative to the mask; the parts left of it act as a vertical edge
    /// on its left border, the parts right of it do not matter.
    void line(QPointF p, QPointF q)
    {
        if (p.y() == q.y())
            return;
        const double w = m_width;
        if (p.x() <= 0 && q.x() <= 0) {
            accumulate(0, p.y(), 0, q.y());
            return;
        }
        if (p.x() >= w && q.x() >= w)
            return;
        if ((p.x() < 0) != (q.x() < 0)) {
            const QPointF m(0, p.y() + (q.y() - p.y()) * (0 - p.x()) / (q.x() - p.x()));
            line(p, m);
            line(m, q);
            return;
        }
        if ((p.x() > w) != (q.x() > w)) {
            const QPointF m(w, p.y() + (q.y() - p.y()) * (w - p.x()) / (q.x() - p.x()));
            line(p, m);
            line(m, q);
            return;
        }
        accumulate(p.x(), p.y(), q.x(), q.y());
    }

    void resolve(Qt::FillRule rule, unsigned char* out)
    {
        // Before the first touched cell the running sum is zero (`out` starts zeroed); after the
        // last it stays constant: zero for contours closed within the mask, full where an edge
        // beyond the right border was dropped. The sum runs in place; the conversion to bytes is
        // a separate loop that vectorises.
        const int first = m_first;
        const int end = std::min(m_width, m_last + 1);
        if (first >= end)
            return;
        for (int y = 0; y < m_height; ++y) {
            float* cells = m_cells.data() + size_t(y) * (m_width + 2);
            unsigned char* row = out + size_t(y) * m_width;
            float acc = 0;
            for (int x = first; x < end; ++x) {
                acc += cells[x];
                cells[x] = acc;
            }
            if (rule == Qt::OddEvenFill) {
                for (int x = first; x < end; ++x)
                    row[x] = evenOdd(cells[x]);
            } else {
                for (int x = first; x < end; ++x)
                    row[x] = static_cast<unsigned char>(std::min(std::fabs(cells[x]), 1.0f) * 255.0f + 0.5f);
            }
            if (end < m_width && acc != 0)
                std::fill(row + end, row + m_width,
                          rule == Qt::OddEvenFill
                              ? evenOdd(acc)
                              : static_cast<unsigned char>(std::min(std::fabs(acc), 1.0f) * 255.0f + 0.5f));
        }
    }

private:
    void accumulate(double fx0, double fy0, double fx1, double fy1)
    {
        // Single precision: positions within a few thousand pixels keep well under 1/1000 pixel.
        float x0 = float(fx0), y0 = float(fy0), x1 = float(fx1), y1 = float(fy1);
        float dir = 1;
        if (y0 > y1) {
            std::swap(x0, x1);
            std::swap(y0, y1);
            dir = -1;
        }
        if (y1 <= 0 || y0 >= m_height || y0 == y1)
            return;
        const float dxdy = (x1 - x0) / (y1 - y0);
        float x = x0;
        int y = int(y0); // floor: y0 >= 0 here, or replaced below
        if (y0 < 0) {
            x -= y0 * dxdy;
            y = 0;
        }
        const int yEnd = std::min(m_height, ceilPositive(y1));
        const float w = float(m_width);
        const int stride = m_width + 2;
        float* row = m_cells.data() + size_t(y) * stride;
        for (; y < yEnd; ++y, row += stride) {
            const float dy = std::min(float(y + 1), y1) - std::max(float(y), y0);
            const float xNext = x + dxdy * dy;
            const float d = dy * dir;
            // Clamped to 0 .. width, so truncation is the floor (library floor and ceil are slow
            // without SSE4.1, and this is the innermost loop).
            const float xa = std::clamp(std::min(x, xNext), 0.0f, w);
            const float xb = std::clamp(std::max(x, xNext), 0.0f, w);
            x = xNext;
            const int xai = int(xa);
            const int xbi = ceilPositive(xb);
            m_first = std::min(m_first, xai);
            m_last = std::max(m_last, xbi + 1);
            if (xbi <= xai + 1) {
                // Within one column: the area right of the edge is one minus its mean position.
                const float mid = 0.5f * (xa + xb) - float(xai);
                row[xai] += d - d * mid;
                row[xai + 1] += d * mid;
                continue;
            }
            const float s = 1 / (xb - xa);
            const float x0f = xa - float(xai);
            const float a0 = 0.5f * s * (1 - x0f) * (1 - x0f);
            const float x1f = xb - float(xbi) + 1;
            const float am = 0.5f * s * x1f * x1f;
            row[xai] += d * a0;
            if (xbi == xai + 2) {
                row[xai + 1] += d * (1 - a0 - am);
            } else {
                const float a1 = s * (1.5f - x0f);
                row[xai + 1] += d * (a1 - a0);
                for (int xi = xai + 2; xi < xbi - 1; ++xi)
                    row[xi] += d * s;
                const float a2 = a1 + float(xbi - xai - 3) * s;
                row[xbi - 1] += d * (1 - a2 - am);
            }
            row[xbi] += d * am;
        }
    }

    /// Working memory kept between calls: every glyph needs the same few kilobytes again.
    static std::vector<float>& buffers()
    {
        thread_local std::vector<float> cells;
        return cells;
    }

    int m_width;
    int m_height;
    std::vector<float>& m_cells; // width + 2 per row: the last edges may touch two cells past the end
    int m_first = INT_MAX;       // the first and last cell any edge touched, over all rows
    int m_last = -1;
};

struct Edge
{
    double x0, y0, x1, y1;
    int winding;
};

/// Pixel-centre sampling along each row.
void sampleCentres(const std::vector<Edge>& edges, Qt::FillRule rule, int width, int height,
                   unsigned char* out)
{
    std::vector<std::pair<double, int>> crossings;
    for (int y = 0; y < height; ++y) {
        const double yc = y + 0.5;
        crossings.clear();
        for (const Edge& e : edges) {
            if (yc < e.y0 || yc >= e.y1)
                continue;
            crossings.emplace_back(e.x0 + (yc - e.y0) * (e.x1 - e.x0) / (e.y1 - e.y0), e.winding);
        }
        if (crossings.empty())
            continue;
        std::sort(crossings.begin(), crossings.end());
        unsigned char* row = out + size_t(y) * width;
        int winding = 0;
        for (size_t i = 0; i + 1 < crossings.size(); ++i) {
            winding += crossings[i].second;
            const bool inside = rule == Qt::OddEvenFill ? (winding & 1) != 0 : winding != 0;
            if (!inside)
                continue;
            // Pixels whose centre x + 0.5 lies in [left, right).
            const int from = std::max(0, int(std::ceil(crossings[i].first - 0.5)));
            const int to = std::min(width, int(std::ceil(crossings[i + 1].first - 0.5)));
            if (from < to)
                std::fill(row + from, row + to, 255);
        }
    }
}

} // namespace

CoverageMask CoverageMask::filled(const QRect& rect)
{
    CoverageMask m;
    m.rect = rect;
    if (!rect.isEmpty())
        m.values.assign(size_t(rect.width()) * rect.height(), 255);
    return m;
}

namespace {

/// True when the path is one rectangle whose corners land on pixel corners: it covers whole
/// pixels, with no edge to compute.
bool isPixelAlignedRect(const QPainterPath& path, const QTransform& transform, const QRectF& mapped)
{
    const int count = path.elementCount();
    if ((count != 5 && count != 4) || !transform.isAffine() || transform.isRotating())
        return false;
    if (mapped != QRectF(mapped.toAlignedRect()))
        return false;
    QPointF p[5];
    for (int i = 0; i < count; ++i) {
        const QPainterPath::Element& e = path.elementAt(i);
        if (e.type != (i == 0 ? QPainterPath::MoveToElement : QPainterPath::LineToElement))
            return false;
        p[i] = transform.map(QPointF(e.x, e.y));
        if ((p[i].x() != mapped.left() && p[i].x() != mapped.right()) ||
            (p[i].y() != mapped.top() && p[i].y() != mapped.bottom()))
            return false;
    }
    if (count == 5 && p[4] != p[0])
        return false;
    // Corners alone do not make a rectangle (a triangle closed back to its start has them too):
    // every side, the closing one included, runs along exactly one axis, and the axes alternate.
    for (int i = 0; i < 4; ++i) {
        const QPointF a = p[i], b = p[(i + 1) % 4], c = p[(i + 2) % 4];
        const bool alongX = a.y() == b.y() && a.x() != b.x();
        const bool alongY = a.x() == b.x() && a.y() != b.y();
        const bool nextAlongX = b.y() == c.y() && b.x() != c.x();
        if (alongX == alongY || alongX == nextAlongX)
            return false;
    }
    return true;
}

} // namespace

namespace {

/// Coverage within `rect` of the edges that `edges(line)` produces in mask coordinates.
template <class EdgesFn>
CoverageMask rasterizeEdges(EdgesFn&& edges, Qt::FillRule rule, const QRect& rect, bool antialias)
{
    CoverageMask mask;
    mask.rect = rect;
    mask.values.assign(size_t(rect.width()) * rect.height(), 0);
    if (antialias) {
        AreaAccumulator acc(rect.width(), rect.height());
        edges([&](QPointF p, QPointF q) { acc.line(p, q); });
        acc.resolve(rule, mask.values.data());
    } else {
        std::vector<Edge> list;
        edges([&](QPointF p, QPointF q) {
            if (p.y() < q.y())
                list.push_back({p.x(), p.y(), q.x(), q.y(), 1});
            else if (p.y() > q.y())
                list.push_back({q.x(), q.y(), p.x(), p.y(), -1});
        });
        sampleCentres(list, rule, rect.width(), rect.height(), mask.values.data());
    }
    return mask;
}

} // namespace

CoverageMask rasterizePath(const QPainterPath& path, const QTransform& transform, const QRect& limit,
                           bool antialias)
{
    if (path.isEmpty() || limit.isEmpty())
        return {};
    const QRectF mapped = transform.mapRect(path.controlPointRect());
    const QRect rect = mapped.toAlignedRect() & limit;
    if (rect.isEmpty())
        return {};
    if (isPixelAlignedRect(path, transform, mapped))
        return CoverageMask::filled(rect);
    const QTransform toMask = transform * QTransform::fromTranslate(-rect.x(), -rect.y());
    return rasterizeEdges([&](auto&& line) { flatten(path, toMask, line); }, path.fillRule(), rect,
                          antialias);
}

CoverageMask rasterizeStroke(const QPainterPath& path, double width, double miterLimit,
                             const QTransform& transform, const QRect& limit, bool antialias)
{
    if (path.isEmpty() || limit.isEmpty() || width <= 0)
        return {};
    // A miter reaches at most miterLimit half-widths from its vertex, any other part one.
    const double reach = width / 2 * std::max(1.0, miterLimit) + 1;
    const QRect rect =
        transform.mapRect(path.controlPointRect().adjusted(-reach, -reach, reach, reach)).toAlignedRect() &
        limit;
    if (rect.isEmpty())
        return {};
    const QTransform toMask = transform * QTransform::fromTranslate(-rect.x(), -rect.y());
    auto edges = [&](auto&& line) {
        // Stroked in the path's own space, so that widths and miters are measured there.
        forEachSubpath(path, QTransform(), [&](const Polyline& sub) {
            strokeSubpath(sub, width / 2, miterLimit, [&](const std::vector<QPointF>& polygon) {
                thread_local std::vector<QPointF> mapped;
                mapped.resize(polygon.size());
                for (size_t i = 0; i < polygon.size(); ++i)
                    mapped[i] = toMask.map(polygon[i]);
                polygonEdges(mapped, line);
            });
        });
    };
    return rasterizeEdges(edges, Qt::WindingFill, rect, antialias);
}

} // namespace qm
