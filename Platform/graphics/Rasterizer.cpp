#include "Platform/graphics/Rasterizer.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace qm {

namespace {

// Largest distance between a flattened curve and the curve itself, in pixels.
constexpr double kFlatness = 0.1;

/// Calls line(p, q) for every edge of the path's polygons after the affine `transform`, closing
/// each subpath, curves split into chords.
template <class LineFn> void flatten(const QPainterPath& path, const QTransform& transform, LineFn&& line)
{
    const double m11 = transform.m11(), m12 = transform.m12(), m21 = transform.m21(), m22 = transform.m22();
    const double dx = transform.dx(), dy = transform.dy();
    auto map = [=](const QPainterPath::Element& e) {
        return QPointF(m11 * e.x + m21 * e.y + dx, m12 * e.x + m22 * e.y + dy);
    };
    QPointF start, last;
    bool open = false;
    const int count = path.elementCount();
    for (int i = 0; i < count; ++i) {
        const QPainterPath::Element& e = path.elementAt(i);
        switch (e.type) {
        case QPainterPath::MoveToElement:
            if (open && last != start)
                line(last, start);
            start = last = map(e);
            open = true;
            break;
        case QPainterPath::LineToElement: {
            const QPointF p = map(e);
            line(last, p);
            last = p;
            break;
        }
        case QPainterPath::CurveToElement: {
            if (i + 2 >= count)
                return;
            const QPointF p0 = last;
            const QPointF c1 = map(e);
            const QPointF c2 = map(path.elementAt(i + 1));
            const QPointF p3 = map(path.elementAt(i + 2));
            i += 2;
            // A cubic's distance from its n-chord polygon is at most |B''| / (8 n^2), and |B''| is
            // at most 6 times the larger second difference of its control points.
            const QPointF d1 = p0 - 2 * c1 + c2;
            const QPointF d2 = c1 - 2 * c2 + p3;
            const double m2 = std::max(QPointF::dotProduct(d1, d1), QPointF::dotProduct(d2, d2));
            const int n = std::clamp(int(std::ceil(std::sqrt(0.75 / kFlatness * std::sqrt(m2)))), 1, 256);
            QPointF prev = p0;
            for (int k = 1; k <= n; ++k) {
                const double t = double(k) / n, u = 1 - t;
                const QPointF p =
                    k == n ? p3 : u * u * u * p0 + 3 * u * u * t * c1 + 3 * u * t * t * c2 + t * t * t * p3;
                line(prev, p);
                prev = p;
            }
            last = p3;
            break;
        }
        default:
            break;
        }
    }
    if (open && last != start)
        line(last, start);
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
    for (int i = 0; i < count; ++i) {
        const QPainterPath::Element& e = path.elementAt(i);
        if (e.type != (i == 0 ? QPainterPath::MoveToElement : QPainterPath::LineToElement))
            return false;
        const QPointF p = transform.map(QPointF(e.x, e.y));
        if ((p.x() != mapped.left() && p.x() != mapped.right()) ||
            (p.y() != mapped.top() && p.y() != mapped.bottom()))
            return false;
    }
    return true;
}

} // namespace

CoverageMask rasterizePath(const QPainterPath& path, const QTransform& transform, const QRect& limit,
                           bool antialias)
{
    CoverageMask mask;
    if (path.isEmpty() || limit.isEmpty())
        return mask;
    const QRectF mapped = transform.mapRect(path.controlPointRect());
    const QRect rect = mapped.toAlignedRect() & limit;
    if (rect.isEmpty())
        return mask;
    if (isPixelAlignedRect(path, transform, mapped))
        return CoverageMask::filled(rect);
    mask.rect = rect;
    mask.values.assign(size_t(rect.width()) * rect.height(), 0);
    const QTransform toMask = transform * QTransform::fromTranslate(-rect.x(), -rect.y());
    if (antialias) {
        AreaAccumulator acc(rect.width(), rect.height());
        flatten(path, toMask, [&](QPointF p, QPointF q) { acc.line(p, q); });
        acc.resolve(path.fillRule(), mask.values.data());
    } else {
        std::vector<Edge> edges;
        flatten(path, toMask, [&](QPointF p, QPointF q) {
            if (p.y() < q.y())
                edges.push_back({p.x(), p.y(), q.x(), q.y(), 1});
            else if (p.y() > q.y())
                edges.push_back({q.x(), q.y(), p.x(), p.y(), -1});
        });
        sampleCentres(edges, path.fillRule(), rect.width(), rect.height(), mask.values.data());
    }
    return mask;
}

} // namespace qm
