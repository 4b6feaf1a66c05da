#include "Platform/graphics/DrawingContext.h"

#include "Platform/graphics/Rasterizer.h"
#include "Platform/graphics/ShadowBlur.h"

#include <QPainter>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace qm {

// Pixels are handled as 32-bit words holding the bytes R, G, B, A in memory order, premultiplied.
// Per-byte arithmetic does not care about the order; only the alpha's position does.

namespace {

constexpr QImage::Format kFormat = QImage::Format_RGBA8888_Premultiplied;
constexpr int kAlphaShift = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? 24 : 0;
constexpr int kTableSize = 1024; // gradient colours per unit of t

inline quint32 alphaOf(quint32 p)
{
    return (p >> kAlphaShift) & 0xff;
}

inline quint32 pack(int r, int g, int b, int a)
{
    const uchar bytes[4] = {uchar(r), uchar(g), uchar(b), uchar(a)};
    quint32 p;
    std::memcpy(&p, bytes, 4);
    return p;
}

/// Each byte times a / 255, rounded.
inline quint32 byteMul(quint32 x, quint32 a)
{
    quint32 t = (x & 0xff00ff) * a;
    t = ((t + ((t >> 8) & 0xff00ff) + 0x800080) >> 8) & 0xff00ff;
    x = ((x >> 8) & 0xff00ff) * a;
    x = (x + ((x >> 8) & 0xff00ff) + 0x800080) & 0xff00ff00;
    return x | t;
}

inline uchar mul8(uint a, uint b)
{
    const uint t = a * b + 128;
    return uchar((t + (t >> 8)) >> 8);
}

/// Bytewise sum, each byte saturating at 255.
inline quint32 addSaturated(quint32 a, quint32 b)
{
    quint32 lo = (a & 0xff00ff) + (b & 0xff00ff);
    quint32 hi = ((a >> 8) & 0xff00ff) + ((b >> 8) & 0xff00ff);
    lo |= 0x01000100 - ((lo >> 8) & 0x00010001);
    hi |= 0x01000100 - ((hi >> 8) & 0x00010001);
    return (lo & 0xff00ff) | ((hi & 0xff00ff) << 8);
}

/// Premultiplied pixel of an unpremultiplied colour.
quint32 premultiplied(double r, double g, double b, double a)
{
    auto unit = [](double v) { return std::clamp(v, 0.0, 1.0); };
    a = unit(a);
    auto byte = [a, unit](double v) { return int(std::lround(unit(v) * a * 255.0)); };
    return pack(byte(r), byte(g), byte(b), int(std::lround(a * 255.0)));
}

quint32 premultiplied(const Color& c)
{
    if (!c.isValid())
        return 0;
    return premultiplied(c.redComponent(), c.greenComponent(), c.blueComponent(), c.alphaComponent());
}

// ---- Blending ---------------------------------------------------------------------------------

/// A separable blend function of unpremultiplied source and destination components.
double separable(BlendMode mode, double s, double d)
{
    switch (mode) {
    case BlendMode::Multiply:
        return s * d;
    case BlendMode::Screen:
        return s + d - s * d;
    case BlendMode::Overlay:
        return separable(BlendMode::HardLight, d, s);
    case BlendMode::Darken:
        return std::min(s, d);
    case BlendMode::Lighten:
        return std::max(s, d);
    case BlendMode::ColorDodge:
        return d <= 0 ? 0 : s >= 1 ? 1 : std::min(1.0, d / (1 - s));
    case BlendMode::ColorBurn:
        return d >= 1 ? 1 : s <= 0 ? 0 : 1 - std::min(1.0, (1 - d) / s);
    case BlendMode::HardLight:
        return s <= 0.5 ? d * 2 * s : separable(BlendMode::Screen, 2 * s - 1, d);
    case BlendMode::SoftLight: {
        if (s <= 0.5)
            return d - (1 - 2 * s) * d * (1 - d);
        const double dd = d <= 0.25 ? ((16 * d - 12) * d + 4) * d : std::sqrt(d);
        return d + (2 * s - 1) * (dd - d);
    }
    case BlendMode::Difference:
        return std::abs(s - d);
    case BlendMode::Exclusion:
        return s + d - 2 * s * d;
    default:
        return s;
    }
}

/// One pixel of a separable mode: both colours unpremultiplied, blended, then composited as
/// source-over with the blend result where both are present.
quint32 blendSeparable(BlendMode mode, quint32 s, quint32 d)
{
    uchar sb[4], db[4], out[4];
    std::memcpy(sb, &s, 4);
    std::memcpy(db, &d, 4);
    const double sa = sb[3] / 255.0, da = db[3] / 255.0;
    for (int i = 0; i < 3; ++i) {
        const double sc = sb[i] / 255.0, dc = db[i] / 255.0;
        const double b = (sa > 0 && da > 0) ? separable(mode, sc / sa, dc / da) : 0;
        const double v = (1 - da) * sc + (1 - sa) * dc + sa * da * b;
        out[i] = uchar(std::lround(std::clamp(v, 0.0, 1.0) * 255));
    }
    out[3] = uchar(std::lround(std::clamp(sa + da - sa * da, 0.0, 1.0) * 255));
    quint32 r;
    std::memcpy(&r, out, 4);
    return r;
}

/// The result of a Porter-Duff mode for fully covered pixels.
inline quint32 porterDuff(BlendMode mode, quint32 s, quint32 d)
{
    const quint32 sa = alphaOf(s), da = alphaOf(d);
    switch (mode) {
    case BlendMode::Clear:
        return 0;
    case BlendMode::Copy:
        return s;
    case BlendMode::SourceIn:
        return byteMul(s, da);
    case BlendMode::SourceOut:
        return byteMul(s, 255 - da);
    case BlendMode::SourceAtop:
        return addSaturated(byteMul(s, da), byteMul(d, 255 - sa));
    case BlendMode::DestinationOver:
        return addSaturated(d, byteMul(s, 255 - da));
    case BlendMode::DestinationIn:
        return byteMul(d, sa);
    case BlendMode::DestinationOut:
        return byteMul(d, 255 - sa);
    case BlendMode::DestinationAtop:
        return addSaturated(byteMul(d, sa), byteMul(s, 255 - da));
    case BlendMode::XOR:
        return addSaturated(byteMul(s, 255 - da), byteMul(d, 255 - sa));
    case BlendMode::PlusLighter:
        return addSaturated(s, d);
    case BlendMode::Normal:
        return addSaturated(s, byteMul(d, 255 - sa));
    default:
        return blendSeparable(mode, s, d);
    }
}

template <BlendMode Mode> void blendRowAs(quint32* dst, const quint32* src, const uchar* coverage, int n)
{
    for (int i = 0; i < n; ++i) {
        const quint32 c = coverage ? coverage[i] : 255;
        if (!c)
            continue;
        const quint32 r = porterDuff(Mode, src[i], dst[i]);
        dst[i] = c == 255 ? r : addSaturated(byteMul(r, c), byteMul(dst[i], 255 - c));
    }
}

/// Blends a row of source pixels onto the destination; `coverage` (null = full) limits what the
/// mode may change: each pixel becomes a mix of old and new by its coverage.
void blendRow(BlendMode mode, quint32* dst, const quint32* src, const uchar* coverage, int n)
{
    switch (mode) {
    case BlendMode::Normal:
        for (int i = 0; i < n; ++i) {
            const quint32 c = coverage ? coverage[i] : 255;
            if (!c || !src[i])
                continue;
            const quint32 s = c == 255 ? src[i] : byteMul(src[i], c);
            const quint32 sa = alphaOf(s);
            dst[i] = sa == 255 ? s : s + byteMul(dst[i], 255 - sa);
        }
        return;
    // The modes the glyphs use get loops of their own.
    case BlendMode::SourceIn:
        return blendRowAs<BlendMode::SourceIn>(dst, src, coverage, n);
    case BlendMode::DestinationOut:
        return blendRowAs<BlendMode::DestinationOut>(dst, src, coverage, n);
    default:
        for (int i = 0; i < n; ++i) {
            const quint32 c = coverage ? coverage[i] : 255;
            if (!c)
                continue;
            const quint32 r = porterDuff(mode, src[i], dst[i]);
            dst[i] = c == 255 ? r : addSaturated(byteMul(r, c), byteMul(dst[i], 255 - c));
        }
    }
}

// ---- Gradients --------------------------------------------------------------------------------

/// Premultiplied colours of the gradient at t = i / kTableSize. The last table is kept: a run
/// of glyphs shares one.
const std::vector<quint32>& gradientTable(const Gradient& gradient)
{
    thread_local Gradient cachedGradient;
    thread_local std::vector<quint32> cached;
    if (!cached.empty() && cachedGradient == gradient)
        return cached;
    cached.resize(kTableSize + 1);
    for (int i = 0; i <= kTableSize; ++i)
        cached[i] = premultiplied(gradient.interpolatedColorAtLocation(double(i) / kTableSize));
    cachedGradient = gradient;
    return cached;
}

inline quint32 lookUp(const std::vector<quint32>& table, double t)
{
    return table[size_t(std::clamp(t, 0.0, 1.0) * kTableSize + 0.5)];
}

} // namespace

// ---- Paint sources ----------------------------------------------------------------------------

/// What an operation paints, in image pixels: one colour, a gradient or a picture.
struct DrawingContext::Paint
{
    enum class Kind { Solid, Linear, Radial, Pixels } kind = Kind::Solid;
    quint32 color = 0;
    // Gradients: t along the axis from `origin` (linear), or the t whose circle passes through the
    // pixel, circles growing from radius 0 at `origin` to `radius` at origin + axis (radial).
    QPointF origin;
    QPointF axis;
    double radius = 0;
    const std::vector<quint32>* table = nullptr;
    // Pixels: a premultiplied RGBA image whose top-left pixel sits at `at`.
    const QImage* pixels = nullptr;
    QPoint at;

    static Paint solid(const Color& c)
    {
        Paint p;
        p.color = premultiplied(c);
        return p;
    }

    /// The picture's own pixels for image row y, columns x .. x + n - 1, when it has them all.
    const quint32* pixelsAt(int x, int y, int n) const
    {
        if (kind != Kind::Pixels || !pixels || y < at.y() || y >= at.y() + pixels->height() || x < at.x() ||
            x + n > at.x() + pixels->width())
            return nullptr;
        return reinterpret_cast<const quint32*>(pixels->constScanLine(y - at.y())) + (x - at.x());
    }

    /// Premultiplied colours of image row y, columns x .. x + n - 1.
    void fetch(int x, int y, int n, quint32* out) const
    {
        switch (kind) {
        case Kind::Solid:
            std::fill_n(out, n, color);
            return;
        case Kind::Linear: {
            const double length2 = QPointF::dotProduct(axis, axis);
            const double dt = axis.x() / length2;
            double t = ((x + 0.5 - origin.x()) * axis.x() + (y + 0.5 - origin.y()) * axis.y()) / length2;
            for (int i = 0; i < n; ++i, t += dt)
                out[i] = lookUp(*table, t);
            return;
        }
        case Kind::Radial: {
            // |q - t axis| = t radius  =>  a t^2 - 2 (q.axis) t + |q|^2 = 0, with a < 0 while the
            // start point lies inside the end circle; the root wanted is the non-negative one.
            const double a = QPointF::dotProduct(axis, axis) - radius * radius;
            const double qy = y + 0.5 - origin.y();
            for (int i = 0; i < n; ++i) {
                const double qx = x + i + 0.5 - origin.x();
                const double qd = qx * axis.x() + qy * axis.y();
                const double qq = qx * qx + qy * qy;
                double t = 1;
                if (std::abs(a) > 1e-12) {
                    const double disc = qd * qd - a * qq;
                    if (disc >= 0)
                        t = (qd - std::sqrt(disc)) / a;
                } else if (qd > 0) {
                    t = qq / (2 * qd);
                }
                out[i] = lookUp(*table, t);
            }
            return;
        }
        case Kind::Pixels: {
            std::fill_n(out, n, 0);
            const int row = y - at.y();
            if (!pixels || row < 0 || row >= pixels->height())
                return;
            const int from = std::max(x, at.x()), to = std::min(x + n, at.x() + pixels->width());
            if (from < to) {
                const auto* line = reinterpret_cast<const quint32*>(pixels->constScanLine(row));
                std::copy(line + (from - at.x()), line + (to - at.x()), out + (from - x));
            }
            return;
        }
        }
    }
};

// ---- State ------------------------------------------------------------------------------------

struct DrawingContext::State
{
    std::shared_ptr<const CoverageMask> clip; // null = unclipped
    QRect clipDevice;                         // image pixels the clip leaves open
    QRectF clipUser;
    Shadow shadow;
    Color fill = Color::deviceRGB(0, 0, 0);
    Color stroke = Color::deviceRGB(0, 0, 0);
    double lineWidth = 1;
    double miterLimit = 10;
    BlendMode blend = BlendMode::Normal;
    bool antialias = true;
    InterpolationQuality interpolation = InterpolationQuality::Default;
};

struct DrawingContext::Target
{
    QImage* image = nullptr;
    QImage owned;          // the pixels of a transparency layer
    QRect dirty;           // what has been drawn into it
    size_t stateDepth = 1; // states in force when the target became current
};

DrawingContext::DrawingContext(QImage& image) : m_image(image)
{
    if (!m_image.isNull() && m_image.format() != kFormat)
        m_image.convertTo(kFormat);
    m_flip = QTransform(1, 0, 0, -1, 0, m_image.height());
    State s;
    s.clipDevice = m_image.rect();
    s.clipUser = QRectF(0, 0, m_image.width(), m_image.height());
    m_states.push_back(s);
    auto base = std::make_unique<Target>();
    base->image = &m_image;
    m_targets.push_back(std::move(base));
}

DrawingContext::~DrawingContext() = default;

int DrawingContext::width() const
{
    return m_image.width();
}

int DrawingContext::height() const
{
    return m_image.height();
}

DrawingContext::State& DrawingContext::state()
{
    return m_states.back();
}

const DrawingContext::State& DrawingContext::state() const
{
    return m_states.back();
}

DrawingContext::Target& DrawingContext::target()
{
    return *m_targets.back();
}

bool DrawingContext::antialiasing() const
{
    return m_allowsAntialiasing && state().antialias;
}

void DrawingContext::saveGState()
{
    m_states.push_back(m_states.back());
}

void DrawingContext::restoreGState()
{
    if (m_states.size() > m_targets.back()->stateDepth)
        m_states.pop_back();
}

void DrawingContext::intersectClip(CoverageMask coverage, const QRectF& userBounds)
{
    State& s = state();
    if (s.clip && !coverage.isEmpty()) {
        // The new coverage lies within the old clip's rectangle.
        const CoverageMask& old = *s.clip;
        const int n = coverage.rect.width();
        for (int y = coverage.rect.top(); y <= coverage.rect.bottom(); ++y) {
            uchar* to = coverage.row(y);
            const uchar* from = old.row(y) + (coverage.rect.left() - old.rect.left());
            for (int i = 0; i < n; ++i)
                to[i] = mul8(to[i], from[i]);
        }
    }
    // Trim the rows and columns the clip closes entirely: later drawing need not visit them.
    if (!coverage.isEmpty()) {
        const QRect r = coverage.rect;
        int top = r.bottom() + 1, bottom = r.top() - 1, left = r.right() + 1, right = r.left() - 1;
        for (int y = r.top(); y <= r.bottom(); ++y) {
            const uchar* row = coverage.row(y);
            int first = 0, last = r.width() - 1;
            while (first <= last && !row[first])
                ++first;
            if (first > last)
                continue;
            while (!row[last])
                --last;
            top = std::min(top, y);
            bottom = y;
            left = std::min(left, r.left() + first);
            right = std::max(right, r.left() + last);
        }
        const QRect tight = top <= bottom ? QRect(QPoint(left, top), QPoint(right, bottom)) : QRect();
        if (tight != r) {
            CoverageMask trimmed;
            trimmed.rect = tight;
            trimmed.values.resize(size_t(tight.width()) * std::max(0, tight.height()));
            for (int y = tight.top(); y <= tight.bottom(); ++y)
                std::memcpy(trimmed.row(y), coverage.row(y) + (tight.left() - r.left()),
                            size_t(tight.width()));
            coverage = std::move(trimmed);
        }
    }
    s.clipDevice = coverage.isEmpty() ? QRect() : coverage.rect;
    s.clip = std::make_shared<const CoverageMask>(std::move(coverage));
    s.clipUser = s.clipUser.intersected(userBounds);
}

void DrawingContext::clipToPath(const QPainterPath& path)
{
    intersectClip(*coverageOf(path, state().clipDevice), path.boundingRect());
}

void DrawingContext::clipToRect(const QRectF& rect)
{
    QPainterPath path;
    path.addRect(rect);
    clipToPath(path);
}

void DrawingContext::clipToMask(const QRectF& rect, const QImage& mask)
{
    const QRectF deviceRect = m_flip.mapRect(rect);
    const QRect region = deviceRect.toAlignedRect() & state().clipDevice;
    CoverageMask coverage;
    if (!region.isEmpty() && !mask.isNull()) {
        coverage.rect = region;
        coverage.values.resize(size_t(region.width()) * region.height());
        const bool exact =
            deviceRect == QRectF(deviceRect.toAlignedRect()) && mask.size() == deviceRect.size().toSize();
        const QPoint origin = deviceRect.topLeft().toPoint(); // image pixel of the mask's first pixel
        if (exact && (mask.format() == QImage::Format_RGBA8888_Premultiplied ||
                      mask.format() == QImage::Format_RGBA8888)) {
            // The usual mask, a snapshot placed where it was taken: its alpha bytes are the coverage.
            for (int y = region.top(); y <= region.bottom(); ++y) {
                const uchar* from = mask.constScanLine(y - origin.y()) + 4 * (region.left() - origin.x()) + 3;
                uchar* to = coverage.row(y);
                for (int i = 0; i < region.width(); ++i)
                    to[i] = from[4 * i];
            }
        } else {
            QImage alpha;
            if (mask.hasAlphaChannel()) {
                alpha = mask.convertToFormat(QImage::Format_Alpha8);
            } else {
                // A mask without alpha lets its grey level through: white shows, black hides.
                const QImage grey = mask.convertToFormat(QImage::Format_Grayscale8);
                alpha = QImage(grey.constBits(), grey.width(), grey.height(), grey.bytesPerLine(),
                               QImage::Format_Alpha8)
                            .copy();
            }
            QPoint alphaOrigin = origin;
            if (!exact) {
                QImage placed(region.size(), QImage::Format_Alpha8);
                placed.fill(0);
                QPainter p(&placed);
                p.setRenderHint(QPainter::SmoothPixmapTransform, true);
                p.translate(-region.topLeft());
                p.drawImage(deviceRect, alpha);
                p.end();
                alpha = placed;
                alphaOrigin = region.topLeft();
            }
            for (int y = region.top(); y <= region.bottom(); ++y)
                std::memcpy(coverage.row(y),
                            alpha.constScanLine(y - alphaOrigin.y()) + (region.left() - alphaOrigin.x()),
                            size_t(region.width()));
        }
    }
    intersectClip(std::move(coverage), rect);
}

QRectF DrawingContext::clipBoundingBox() const
{
    return state().clipUser;
}

void DrawingContext::setShadow(QPointF offset, double blurRadius, const Color& color)
{
    state().shadow = Shadow{offset, blurRadius, color};
}

void DrawingContext::clearShadow()
{
    state().shadow = Shadow{};
}

Shadow DrawingContext::shadow() const
{
    return state().shadow;
}

void DrawingContext::setFillColor(const Color& color)
{
    state().fill = color;
}

void DrawingContext::setStrokeColor(const Color& color)
{
    state().stroke = color;
}

Color DrawingContext::fillColor() const
{
    return state().fill;
}

Color DrawingContext::strokeColor() const
{
    return state().stroke;
}

void DrawingContext::setLineWidth(double width)
{
    state().lineWidth = std::max(0.0, width);
}

double DrawingContext::lineWidth() const
{
    return state().lineWidth;
}

void DrawingContext::setMiterLimit(double limit)
{
    state().miterLimit = limit;
}

double DrawingContext::miterLimit() const
{
    return state().miterLimit;
}

void DrawingContext::setBlendMode(BlendMode mode)
{
    state().blend = mode;
}

BlendMode DrawingContext::blendMode() const
{
    return state().blend;
}

void DrawingContext::setShouldAntialias(bool on)
{
    state().antialias = on;
}

bool DrawingContext::shouldAntialias() const
{
    return state().antialias;
}

void DrawingContext::setAllowsAntialiasing(bool allowed)
{
    m_allowsAntialiasing = allowed;
}

void DrawingContext::setInterpolationQuality(InterpolationQuality quality)
{
    state().interpolation = quality;
}

InterpolationQuality DrawingContext::interpolationQuality() const
{
    return state().interpolation;
}

// ---- Compositing ------------------------------------------------------------------------------

std::shared_ptr<const CoverageMask> DrawingContext::coverageOf(const QPainterPath& path, const QRect& limit)
{
    const bool antialias = antialiasing();
    const QRect rect = m_flip.mapRect(path.controlPointRect()).toAlignedRect() & limit;
    for (auto it = m_coverageCache.begin(); it != m_coverageCache.end(); ++it) {
        if (it->antialias == antialias && it->rect == rect && it->path == path) {
            std::rotate(it, it + 1, m_coverageCache.end());
            return m_coverageCache.back().coverage;
        }
    }
    if (m_coverageCache.size() >= 3)
        m_coverageCache.erase(m_coverageCache.begin());
    auto coverage = std::make_shared<const CoverageMask>(rasterizePath(path, m_flip, rect, antialias));
    m_coverageCache.push_back({path, rect, antialias, coverage});
    return coverage;
}

QRect DrawingContext::drawLimit(bool castsShadow) const
{
    const State& s = state();
    if (!castsShadow || !s.shadow.isVisible())
        return s.clipDevice;
    const QPointF shift(s.shadow.offset.x(), -s.shadow.offset.y()); // y up -> image rows
    return s.clipDevice | blurSources(s.clipDevice, std::max(0.0, s.shadow.blurRadius) / 2, shift);
}

void DrawingContext::composite(const Paint& paint, const CoverageMask& shape, BlendMode mode,
                               bool castsShadow)
{
    Target& t = target();
    QImage& image = *t.image;
    const State& s = state();
    const QRect visible = s.clipDevice;
    if (image.isNull() || shape.isEmpty() || visible.isEmpty())
        return;
    const bool solid = paint.kind == Paint::Kind::Solid;
    auto clipRow = [&](int y, int x) -> const uchar* {
        return s.clip ? s.clip->row(y) + (x - s.clip->rect.left()) : nullptr;
    };
    uchar* const bits = image.bits(); // detaches once; scanLine() would check on every row
    const qsizetype stride = image.bytesPerLine();
    auto dstRow = [bits, stride](int y, int x) { return reinterpret_cast<quint32*>(bits + y * stride) + x; };

    if (!castsShadow || !s.shadow.isVisible()) {
        const QRect r = shape.rect & visible;
        if (r.isEmpty())
            return;
        // Modes that keep a transparent pixel transparent need only visit the row's drawn span.
        const bool keepsEmpty = mode == BlendMode::SourceIn || mode == BlendMode::DestinationIn ||
                                mode == BlendMode::DestinationOut || mode == BlendMode::Clear;
        const int width = r.width();
        std::vector<quint32> src(width, paint.color);
        std::vector<uchar> cov(width);
        // The common case, one colour drawn normally: its pixel at each coverage, looked up.
        const bool solidOver = solid && mode == BlendMode::Normal;
        quint32 scaled[256];
        if (solidOver)
            for (quint32 v = 0; v < 256; ++v)
                scaled[v] = byteMul(paint.color, v);
        // Removing an opaque colour everywhere it covers: the pixels go, whatever they were.
        const bool erase = solid && mode == BlendMode::DestinationOut && alphaOf(paint.color) == 255;
        auto run = [&](int y, int x, int n, quint32* dst) {
            const uchar* c = shape.row(y) + (x - shape.rect.left());
            if (const uchar* clip = clipRow(y, x)) {
                for (int i = 0; i < n; ++i)
                    cov[i] = mul8(c[i], clip[i]);
                c = cov.data();
            }
            if (solidOver) {
                for (int i = 0; i < n; ++i) {
                    const quint32 p = scaled[c[i]];
                    const quint32 pa = alphaOf(p);
                    if (pa == 255)
                        dst[i] = p;
                    else if (p)
                        dst[i] = p + byteMul(dst[i], 255 - pa);
                }
            } else if (erase) {
                for (int i = 0; i < n; ++i)
                    dst[i] = c[i] == 255 ? 0 : byteMul(dst[i], 255 - c[i]);
            } else {
                const quint32* from = src.data();
                if (const quint32* direct = paint.pixelsAt(x, y, n))
                    from = direct; // a picture's own row, no copy
                else if (!solid)
                    paint.fetch(x, y, n, src.data());
                blendRow(mode, dst, from, c, n);
            }
        };
        for (int y = r.top(); y <= r.bottom(); ++y) {
            quint32* row = dstRow(y, r.left());
            if (!keepsEmpty) {
                run(y, r.left(), width, row);
                continue;
            }
            // Only the runs of pixels that hold something.
            for (int i = 0; i < width;) {
                if (!row[i]) {
                    ++i;
                    while (i + 4 <= width && !(row[i] | row[i + 1] | row[i + 2] | row[i + 3]))
                        i += 4; // empty stretches four at a time
                    continue;
                }
                int j = i + 1;
                while (j < width && row[j])
                    ++j;
                run(y, r.left() + i, j - i, row + i);
                i = j;
            }
        }
        if (!keepsEmpty)
            t.dirty |= r;
        return;
    }

    // The object's own pixels over its whole shape: outside the clip they still throw a shadow.
    const QRect obj = shape.rect;
    const int ow = obj.width();
    std::vector<quint32> object(size_t(ow) * obj.height());
    std::vector<uchar> alpha(object.size());
    quint32 scaled[256];
    if (solid)
        for (quint32 v = 0; v < 256; ++v)
            scaled[v] = byteMul(paint.color, v);
    for (int y = obj.top(); y <= obj.bottom(); ++y) {
        quint32* o = object.data() + size_t(y - obj.top()) * ow;
        uchar* a = alpha.data() + size_t(y - obj.top()) * ow;
        const uchar* c = shape.row(y);
        if (solid) {
            for (int i = 0; i < ow; ++i)
                o[i] = scaled[c[i]];
        } else {
            paint.fetch(obj.left(), y, ow, o);
            for (int i = 0; i < ow; ++i)
                o[i] = byteMul(o[i], c[i]);
        }
        for (int i = 0; i < ow; ++i)
            a[i] = uchar(alphaOf(o[i]));
    }
    const QPointF shift(s.shadow.offset.x(), -s.shadow.offset.y());
    const double sigma = std::max(0.0, s.shadow.blurRadius) / 2;
    const QRect shadowRect = blurReach(obj, sigma, shift) & visible;
    std::vector<uchar> blurred(size_t(shadowRect.width()) * std::max(0, shadowRect.height()));
    if (!shadowRect.isEmpty())
        blurShifted(AlphaView{alpha.data(), ow, 1, obj}, sigma, shift, shadowRect, blurred.data(),
                    shadowRect.width());
    quint32 tint[256];
    const quint32 full = premultiplied(s.shadow.color);
    for (quint32 v = 0; v < 256; ++v)
        tint[v] = byteMul(full, v);

    const QRect out = ((obj & visible) | shadowRect) & visible;
    if (out.isEmpty())
        return;
    const int n = out.width();
    std::vector<quint32> row(n);
    for (int y = out.top(); y <= out.bottom(); ++y) {
        std::fill(row.begin(), row.end(), 0);
        if (y >= shadowRect.top() && y <= shadowRect.bottom()) {
            const uchar* b = blurred.data() + size_t(y - shadowRect.top()) * shadowRect.width();
            for (int x = shadowRect.left(); x <= shadowRect.right(); ++x)
                row[x - out.left()] = tint[b[x - shadowRect.left()]];
        }
        if (y >= obj.top() && y <= obj.bottom()) {
            const quint32* o = object.data() + size_t(y - obj.top()) * ow;
            const int from = std::max(obj.left(), out.left()), to = std::min(obj.right(), out.right());
            for (int x = from; x <= to; ++x) {
                const quint32 p = o[x - obj.left()];
                if (!p)
                    continue;
                const quint32 pa = alphaOf(p);
                quint32& d = row[x - out.left()];
                d = pa == 255 ? p : p + byteMul(d, 255 - pa); // the object over its shadow
            }
        }
        blendRow(mode, dstRow(y, out.left()), row.data(), clipRow(y, out.left()), n);
    }
    t.dirty |= out;
}

// ---- Drawing ----------------------------------------------------------------------------------

void DrawingContext::fillPath(const QPainterPath& path)
{
    composite(Paint::solid(state().fill), *coverageOf(path, drawLimit(true)), state().blend, true);
}

void DrawingContext::strokePath(const QPainterPath& path)
{
    const State& s = state();
    const CoverageMask shape = rasterizeStroke(path, s.lineWidth > 0 ? s.lineWidth : 1.0, s.miterLimit,
                                               m_flip, drawLimit(true), antialiasing());
    composite(Paint::solid(s.stroke), shape, s.blend, true);
}

void DrawingContext::fillRect(const QRectF& rect)
{
    QPainterPath path;
    path.addRect(rect);
    fillPath(path);
}

void DrawingContext::clearRect(const QRectF& rect)
{
    // Destination-out with an opaque source removes exactly the covered part of each pixel.
    QPainterPath path;
    path.addRect(rect);
    const CoverageMask shape = rasterizePath(path, m_flip, drawLimit(false), antialiasing());
    composite(Paint::solid(Color::deviceRGB(0, 0, 0)), shape, BlendMode::DestinationOut, false);
}

void DrawingContext::drawImage(const QRectF& rect, const QImage& image)
{
    if (image.isNull() || rect.isEmpty())
        return;
    const State& s = state();
    const QRectF deviceRect = m_flip.mapRect(rect);
    const QRect region = deviceRect.toAlignedRect() & drawLimit(true);
    if (region.isEmpty())
        return;
    QImage source = image;
    if (s.interpolation == InterpolationQuality::High) {
        const QSize deviceSize = deviceRect.size().toSize();
        if (deviceSize.isValid() &&
            (deviceSize.width() < image.width() || deviceSize.height() < image.height()))
            source = image.scaled(deviceSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    QImage placed(region.size(), kFormat);
    placed.fill(0);
    {
        QPainter p(&placed);
        p.setRenderHint(QPainter::SmoothPixmapTransform, s.interpolation != InterpolationQuality::None);
        p.setRenderHint(QPainter::Antialiasing, antialiasing());
        p.translate(-region.topLeft());
        p.drawImage(deviceRect, source);
    }
    Paint paint;
    paint.kind = Paint::Kind::Pixels;
    paint.pixels = &placed;
    paint.at = region.topLeft();
    composite(paint, CoverageMask::filled(region), s.blend, true);
}

QImage DrawingContext::snapshot() const
{
    return m_image.copy();
}

void DrawingContext::beginTransparencyLayer()
{
    saveGState();
    auto layer = std::make_unique<Target>();
    if (!m_image.isNull()) {
        layer->owned = QImage(m_image.size(), kFormat);
        layer->owned.fill(0);
    }
    layer->image = &layer->owned;
    layer->stateDepth = m_states.size();
    State& s = state();
    s.shadow = Shadow{};
    s.blend = BlendMode::Normal;
    m_targets.push_back(std::move(layer));
}

void DrawingContext::endTransparencyLayer()
{
    if (m_targets.size() < 2)
        return;
    std::unique_ptr<Target> layer = std::move(m_targets.back());
    m_targets.pop_back();
    m_states.resize(layer->stateDepth - 1); // the layer's own saves and the save of its begin
    Paint paint;
    paint.kind = Paint::Kind::Pixels;
    paint.pixels = &layer->owned;
    composite(paint, CoverageMask::filled(layer->dirty), state().blend, true);
}

void DrawingContext::drawLinearGradient(const Gradient& gradient, const QRectF& rect, double angleDegrees)
{
    QPainterPath path;
    path.addRect(rect);
    drawLinearGradient(gradient, path, angleDegrees);
}

void DrawingContext::drawLinearGradient(const Gradient& gradient, const QPainterPath& path,
                                        double angleDegrees)
{
    const QRectF bounds = path.boundingRect();
    if (!gradient.isValid() || bounds.isEmpty())
        return;
    // The axis through the centre at the angle, long enough to span the bounds.
    const double radians = qDegreesToRadians(angleDegrees);
    const QPointF direction(std::cos(radians), std::sin(radians));
    const double half = std::max(
        (std::abs(bounds.width() * direction.x()) + std::abs(bounds.height() * direction.y())) / 2, 1e-9);
    Paint paint;
    paint.kind = Paint::Kind::Linear;
    paint.origin = m_flip.map(bounds.center() - direction * half);
    paint.axis = m_flip.map(bounds.center() + direction * half) - paint.origin;
    paint.table = &gradientTable(gradient);
    composite(paint, *coverageOf(path, drawLimit(true)), state().blend, true);
}

void DrawingContext::drawRadialGradient(const Gradient& gradient, const QPainterPath& path,
                                        QPointF relativeCenter)
{
    const QRectF bounds = path.boundingRect();
    if (!gradient.isValid() || bounds.isEmpty())
        return;
    const QPointF start = bounds.center();
    const QPointF end(start.x() + relativeCenter.x() * bounds.width() / 2,
                      start.y() + relativeCenter.y() * bounds.height() / 2);
    double radius = 0;
    for (const QPointF& corner :
         {bounds.topLeft(), bounds.topRight(), bounds.bottomLeft(), bounds.bottomRight()})
        radius = std::max(radius, QLineF(end, corner).length());
    Paint paint;
    paint.kind = Paint::Kind::Radial;
    paint.origin = m_flip.map(start);
    paint.axis = m_flip.map(end) - paint.origin;
    paint.radius = radius;
    paint.table = &gradientTable(gradient);
    composite(paint, *coverageOf(path, drawLimit(true)), state().blend, true);
}

void DrawingContext::drawAxialShading(QPointF start, QPointF end, const ShadingFunction& function)
{
    const QRect region = state().clipDevice;
    const QPointF axis = end - start;
    const double length2 = QPointF::dotProduct(axis, axis);
    if (region.isEmpty() || length2 <= 0 || !function)
        return;

    QImage pixels(region.size(), kFormat);
    const int h = m_image.height();
    // Position along the axis of the centre of the pixel in image column x, row y.
    auto along = [&](int x, int y) {
        const QPointF p(x + 0.5 - start.x(), h - (y + 0.5) - start.y());
        return QPointF::dotProduct(p, axis) / length2;
    };
    auto colour = [&](double t) -> quint32 {
        if (t < 0 || t > 1)
            return 0;
        const std::array<double, 4> c = function(t);
        return premultiplied(c[0], c[1], c[2], c[3]);
    };
    auto line = [&](int y) { return reinterpret_cast<quint32*>(pixels.scanLine(y)); };
    if (axis.x() == 0) { // vertical axis: one evaluation per row
        for (int y = 0; y < region.height(); ++y)
            std::fill_n(line(y), region.width(), colour(along(region.left(), region.top() + y)));
    } else if (axis.y() == 0) { // horizontal axis: one evaluation per column
        for (int x = 0; x < region.width(); ++x)
            line(0)[x] = colour(along(region.left() + x, region.top()));
        for (int y = 1; y < region.height(); ++y)
            std::copy_n(line(0), region.width(), line(y));
    } else {
        // Any other direction samples the function eight times per pixel of axis length; an even
        // count keeps t = 0.5 an exact sample.
        const int steps = std::max(256, 8 * int(std::ceil(std::sqrt(length2))));
        std::vector<quint32> table(size_t(steps) + 1);
        for (int i = 0; i <= steps; ++i)
            table[i] = colour(double(i) / steps);
        for (int y = 0; y < region.height(); ++y)
            for (int x = 0; x < region.width(); ++x) {
                const double t = along(region.left() + x, region.top() + y);
                line(y)[x] = (t < 0 || t > 1) ? 0 : table[size_t(std::lround(t * steps))];
            }
    }
    Paint paint;
    paint.kind = Paint::Kind::Pixels;
    paint.pixels = &pixels;
    paint.at = region.topLeft();
    composite(paint, CoverageMask::filled(region), state().blend, true);
}

} // namespace qm
