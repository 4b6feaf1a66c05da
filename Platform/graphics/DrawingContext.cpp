#include "Platform/graphics/DrawingContext.h"

#include "Platform/graphics/ShadowBlur.h"

#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace qm {

namespace {

constexpr QImage::Format kTargetFormat = QImage::Format_RGBA8888_Premultiplied;
// Scratch images use Qt's native format: its fastest to paint on and to composite from.
constexpr QImage::Format kScratchFormat = QImage::Format_ARGB32_Premultiplied;
constexpr int kScratchAlphaByte = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? 3 : 0;

QPainter::CompositionMode compositionMode(BlendMode mode)
{
    switch (mode) {
    case BlendMode::Normal:
        return QPainter::CompositionMode_SourceOver;
    case BlendMode::Multiply:
        return QPainter::CompositionMode_Multiply;
    case BlendMode::Screen:
        return QPainter::CompositionMode_Screen;
    case BlendMode::Overlay:
        return QPainter::CompositionMode_Overlay;
    case BlendMode::Darken:
        return QPainter::CompositionMode_Darken;
    case BlendMode::Lighten:
        return QPainter::CompositionMode_Lighten;
    case BlendMode::ColorDodge:
        return QPainter::CompositionMode_ColorDodge;
    case BlendMode::ColorBurn:
        return QPainter::CompositionMode_ColorBurn;
    case BlendMode::SoftLight:
        return QPainter::CompositionMode_SoftLight;
    case BlendMode::HardLight:
        return QPainter::CompositionMode_HardLight;
    case BlendMode::Difference:
        return QPainter::CompositionMode_Difference;
    case BlendMode::Exclusion:
        return QPainter::CompositionMode_Exclusion;
    case BlendMode::Clear:
        return QPainter::CompositionMode_Clear;
    case BlendMode::Copy:
        return QPainter::CompositionMode_Source;
    case BlendMode::SourceIn:
        return QPainter::CompositionMode_SourceIn;
    case BlendMode::SourceOut:
        return QPainter::CompositionMode_SourceOut;
    case BlendMode::SourceAtop:
        return QPainter::CompositionMode_SourceAtop;
    case BlendMode::DestinationOver:
        return QPainter::CompositionMode_DestinationOver;
    case BlendMode::DestinationIn:
        return QPainter::CompositionMode_DestinationIn;
    case BlendMode::DestinationOut:
        return QPainter::CompositionMode_DestinationOut;
    case BlendMode::DestinationAtop:
        return QPainter::CompositionMode_DestinationAtop;
    case BlendMode::XOR:
        return QPainter::CompositionMode_Xor;
    case BlendMode::PlusLighter:
        return QPainter::CompositionMode_Plus;
    }
    return QPainter::CompositionMode_SourceOver;
}

/// Each byte of a premultiplied pixel times a / 255, rounded.
inline quint32 byteMul(quint32 x, quint32 a)
{
    quint32 t = (x & 0xff00ff) * a;
    t = ((t + ((t >> 8) & 0xff00ff) + 0x800080) >> 8) & 0xff00ff;
    x = ((x >> 8) & 0xff00ff) * a;
    x = (x + ((x >> 8) & 0xff00ff) + 0x800080) & 0xff00ff00;
    return x | t;
}

/// Premultiplied scratch pixel of an unpremultiplied colour.
quint32 premultipliedPixel(double r, double g, double b, double a)
{
    auto unit = [](double v) { return std::clamp(v, 0.0, 1.0); };
    a = unit(a);
    auto byte = [a, unit](double v) { return int(std::lround(unit(v) * a * 255.0)); };
    return qRgba(byte(r), byte(g), byte(b), int(std::lround(a * 255.0)));
}

QGradientStops gradientStops(const Gradient& gradient)
{
    QGradientStops stops;
    for (const GradientStop& stop : gradient.stops())
        stops.append({std::clamp(stop.location, 0.0, 1.0), stop.color.toQColor()});
    // Qt keeps one colour per position; a hard step (two stops at one location) survives as a
    // step one millionth wide.
    for (qsizetype i = stops.size() - 2; i >= 0; --i) {
        if (stops[i].first >= stops[i + 1].first)
            stops[i].first = stops[i + 1].first - 1e-6;
    }
    while (!stops.isEmpty() && stops.first().first < 0)
        stops.removeFirst();
    return stops;
}

template <class G> void setUpGradient(G& g, const Gradient& gradient)
{
    g.setStops(gradientStops(gradient));
    g.setSpread(QGradient::PadSpread);
    g.setInterpolationMode(QGradient::ComponentInterpolation); // unpremultiplied, as the stops
}

/// The axis through the rectangle's centre at the angle, long enough to span the rectangle.
QLinearGradient linearGradientOver(const Gradient& gradient, const QRectF& rect, double angleDegrees)
{
    const double radians = qDegreesToRadians(angleDegrees);
    const QPointF direction(std::cos(radians), std::sin(radians));
    const double half = std::max(
        (std::abs(rect.width() * direction.x()) + std::abs(rect.height() * direction.y())) / 2, 1e-9);
    QLinearGradient g(rect.center() - direction * half, rect.center() + direction * half);
    setUpGradient(g, gradient);
    return g;
}

/// Draws an image upright (its first row at the top of `rect` in y-up space).
void drawUpright(QPainter& painter, const QRectF& rect, const QImage& image)
{
    const QTransform flipInRect(1, 0, 0, -1, 0, rect.top() + rect.bottom());
    painter.setTransform(flipInRect * painter.transform());
    painter.drawImage(rect, image);
}

QRect alignedDeviceRect(const QTransform& toDevice, const QRectF& user)
{
    return toDevice.mapRect(user).toAlignedRect();
}

} // namespace

struct DrawingContext::State
{
    std::shared_ptr<const QImage> clipMask; // Alpha8 coverage over the whole bitmap; null = unclipped
    QRect clipDevice;                       // in image rows; coverage is zero outside it
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
    QImage owned; // the pixels of a transparency layer
    QPainter painter;
    size_t stateDepth = 1; // states in force when the target became current
};

DrawingContext::DrawingContext(QImage& image) : m_image(image)
{
    if (!m_image.isNull() && m_image.format() != kTargetFormat)
        m_image.convertTo(kTargetFormat);
    m_flip = QTransform(1, 0, 0, -1, 0, m_image.height());
    State s;
    s.clipDevice = m_image.rect();
    s.clipUser = QRectF(0, 0, m_image.width(), m_image.height());
    m_states.push_back(s);
    auto base = std::make_unique<Target>();
    base->image = &m_image;
    if (!m_image.isNull())
        base->painter.begin(&m_image);
    m_targets.push_back(std::move(base));
}

DrawingContext::~DrawingContext()
{
    while (!m_targets.empty()) {
        if (m_targets.back()->painter.isActive())
            m_targets.back()->painter.end();
        m_targets.pop_back();
    }
}

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

// ---- Graphics state ---------------------------------------------------------------------------

void DrawingContext::saveGState()
{
    m_states.push_back(m_states.back());
}

void DrawingContext::restoreGState()
{
    if (m_states.size() > m_targets.back()->stateDepth)
        m_states.pop_back();
}

void DrawingContext::intersectClip(QImage coverage, const QRect& deviceBounds, const QRectF& userBounds)
{
    State& s = state();
    const QRect bounds = deviceBounds & m_image.rect();
    if (s.clipMask) {
        const QImage& old = *s.clipMask;
        for (int y = bounds.top(); y <= bounds.bottom(); ++y) {
            uchar* to = coverage.scanLine(y);
            const uchar* from = old.constScanLine(y);
            for (int x = bounds.left(); x <= bounds.right(); ++x)
                to[x] = uchar((to[x] * from[x] + 127) / 255);
        }
    }
    s.clipMask = std::make_shared<const QImage>(std::move(coverage));
    s.clipDevice = bounds & s.clipDevice;
    s.clipUser = s.clipUser.intersected(userBounds);
}

void DrawingContext::clipToPath(const QPainterPath& path)
{
    if (m_image.isNull())
        return;
    QImage coverage(m_image.size(), QImage::Format_Alpha8);
    coverage.fill(0);
    const QRect bounds =
        alignedDeviceRect(m_flip, path.boundingRect()).adjusted(-1, -1, 1, 1) & m_image.rect();
    if (!bounds.isEmpty()) {
        QPainter p(&coverage);
        p.setTransform(m_flip);
        p.setRenderHint(QPainter::Antialiasing, m_allowsAntialiasing && state().antialias);
        p.fillPath(path, Qt::black);
    }
    intersectClip(std::move(coverage), bounds, path.boundingRect());
}

void DrawingContext::clipToRect(const QRectF& rect)
{
    QPainterPath path;
    path.addRect(rect);
    clipToPath(path);
}

void DrawingContext::clipToMask(const QRectF& rect, const QImage& mask)
{
    if (m_image.isNull())
        return;
    QImage alpha;
    if (mask.hasAlphaChannel()) {
        alpha = mask.convertToFormat(QImage::Format_Alpha8);
    } else {
        // A mask without alpha lets its grey level through: white shows, black hides.
        const QImage grey = mask.convertToFormat(QImage::Format_Grayscale8);
        alpha =
            QImage(grey.constBits(), grey.width(), grey.height(), grey.bytesPerLine(), QImage::Format_Alpha8)
                .copy();
    }
    const QRectF deviceRect = m_flip.mapRect(rect);
    const QRect bounds = deviceRect.toAlignedRect() & m_image.rect();
    QImage coverage;
    if (deviceRect == QRectF(m_image.rect()) && alpha.size() == m_image.size()) {
        coverage = std::move(alpha);
    } else {
        coverage = QImage(m_image.size(), QImage::Format_Alpha8);
        coverage.fill(0);
        if (!bounds.isEmpty()) {
            QPainter p(&coverage);
            p.setRenderHint(QPainter::SmoothPixmapTransform, true);
            p.drawImage(deviceRect, alpha);
        }
    }
    intersectClip(std::move(coverage), bounds, rect);
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

// ---- The drawing pipeline ---------------------------------------------------------------------

void DrawingContext::preparePainter(QPainter& painter, const QTransform& transform) const
{
    const State& s = state();
    painter.setTransform(transform);
    painter.setClipping(false);
    painter.setOpacity(1.0);
    painter.setRenderHint(QPainter::Antialiasing, m_allowsAntialiasing && s.antialias);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, s.interpolation != InterpolationQuality::None);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

/// Runs one drawing operation. `paint` draws in user space on the painter it is given;
/// `userBounds` must hold everything it can touch. Without clip and shadow it paints straight
/// onto the target. Otherwise it paints into a scratch image, adds the blurred shadow of that
/// image beneath it, applies the clip coverage and composites the result with the blend mode.
template <class PaintFn>
void DrawingContext::perform(const QRectF& userBounds, bool castsShadow, PaintFn&& paint)
{
    Target& t = target();
    if (!t.painter.isActive())
        return;
    const State& s = state();
    const bool shadow = castsShadow && s.shadow.isVisible();
    if (!s.clipMask && !shadow) {
        preparePainter(t.painter, m_flip);
        t.painter.setCompositionMode(compositionMode(s.blend));
        paint(t.painter);
        return;
    }

    const QRect visible = s.clipDevice;
    if (visible.isEmpty())
        return;
    const QRect opRect = alignedDeviceRect(m_flip, userBounds).adjusted(-1, -1, 1, 1);
    const QPointF shift(s.shadow.offset.x(), -s.shadow.offset.y()); // y up -> image rows
    const double sigma = std::max(0.0, s.shadow.blurRadius) / 2;
    // Outside the visible area the object matters only for the shadow it throws into it.
    const QRect objRect = opRect & (shadow ? (visible | blurSources(visible, sigma, shift)) : visible);
    if (objRect.isEmpty())
        return;
    QImage layer(objRect.size(), kScratchFormat);
    layer.fill(0);
    {
        QPainter lp(&layer);
        preparePainter(lp, m_flip * QTransform::fromTranslate(-objRect.x(), -objRect.y()));
        paint(lp);
    }

    QRect outRect = objRect & visible;
    QImage result;
    if (shadow) {
        outRect = (objRect | blurReach(objRect, sigma, shift)) & visible;
        if (outRect.isEmpty())
            return;
        std::vector<uchar> blurred(size_t(outRect.width()) * outRect.height());
        const AlphaView alpha{layer.constBits() + kScratchAlphaByte, layer.bytesPerLine(), 4, objRect};
        blurShifted(alpha, sigma, shift, outRect, blurred.data(), outRect.width());
        const Color c = s.shadow.color;
        const quint32 full =
            premultipliedPixel(c.redComponent(), c.greenComponent(), c.blueComponent(), c.alphaComponent());
        quint32 tint[256];
        for (quint32 v = 0; v < 256; ++v)
            tint[v] = byteMul(full, v);
        result = QImage(outRect.size(), kScratchFormat);
        for (int y = 0; y < outRect.height(); ++y) {
            auto* row = reinterpret_cast<quint32*>(result.scanLine(y));
            const uchar* b = blurred.data() + size_t(y) * outRect.width();
            for (int x = 0; x < outRect.width(); ++x)
                row[x] = tint[b[x]];
        }
        QPainter rp(&result);
        rp.drawImage(objRect.topLeft() - outRect.topLeft(), layer);
    } else if (outRect == objRect) {
        result = std::move(layer);
    } else {
        result = layer.copy(outRect.translated(-objRect.topLeft()));
    }

    QPainter& p = t.painter;
    p.setTransform(QTransform());
    p.setClipping(false);
    p.setOpacity(1.0);
    const QPainter::CompositionMode mode = compositionMode(s.blend);
    if (s.clipMask && s.blend != BlendMode::Normal) {
        // Blend into a copy, then let the clip coverage choose between old and new pixels: the
        // clip bounds what any mode may change.
        const QImage before = t.image->copy(outRect).convertToFormat(kScratchFormat);
        QImage after = before.copy();
        {
            QPainter bp(&after);
            bp.setCompositionMode(mode);
            bp.drawImage(0, 0, result);
        }
        const QImage& mask = *s.clipMask;
        for (int y = 0; y < outRect.height(); ++y) {
            const auto* old = reinterpret_cast<const quint32*>(before.constScanLine(y));
            auto* now = reinterpret_cast<quint32*>(after.scanLine(y));
            const uchar* m = mask.constScanLine(outRect.top() + y) + outRect.left();
            for (int x = 0; x < outRect.width(); ++x)
                now[x] = byteMul(now[x], m[x]) + byteMul(old[x], 255 - m[x]);
        }
        p.setCompositionMode(QPainter::CompositionMode_Source);
        p.drawImage(outRect.topLeft(), after);
        return;
    }
    if (s.clipMask) {
        const QImage& mask = *s.clipMask;
        for (int y = 0; y < outRect.height(); ++y) {
            auto* row = reinterpret_cast<quint32*>(result.scanLine(y));
            const uchar* m = mask.constScanLine(outRect.top() + y) + outRect.left();
            for (int x = 0; x < outRect.width(); ++x)
                row[x] = byteMul(row[x], m[x]);
        }
    }
    p.setCompositionMode(mode);
    p.drawImage(outRect.topLeft(), result);
}

// ---- Drawing ----------------------------------------------------------------------------------

void DrawingContext::fillPath(const QPainterPath& path)
{
    const QBrush brush(state().fill.toQColor());
    perform(path.boundingRect(), true, [&](QPainter& p) { p.fillPath(path, brush); });
}

void DrawingContext::strokePath(const QPainterPath& path)
{
    const State& s = state();
    QPen pen(QBrush(s.stroke.toQColor()), s.lineWidth, Qt::SolidLine, Qt::FlatCap, Qt::SvgMiterJoin);
    pen.setMiterLimit(s.miterLimit);
    // A mitred join reaches at most miterLimit half-widths from its vertex.
    const double reach = std::max(s.lineWidth, 1.0) / 2 * std::max(s.miterLimit, 1.0) + 1;
    perform(path.boundingRect().adjusted(-reach, -reach, reach, reach), true,
            [&](QPainter& p) { p.strokePath(path, pen); });
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
    State& s = state();
    const BlendMode saved = s.blend;
    s.blend = BlendMode::DestinationOut;
    perform(rect, false, [&](QPainter& p) { p.fillRect(rect, Qt::black); });
    state().blend = saved;
}

void DrawingContext::drawImage(const QRectF& rect, const QImage& image)
{
    if (image.isNull() || rect.isEmpty())
        return;
    QImage source = image;
    if (state().interpolation == InterpolationQuality::High) {
        const QSize deviceSize = m_flip.mapRect(rect).size().toSize();
        if (deviceSize.isValid() &&
            (deviceSize.width() < image.width() || deviceSize.height() < image.height()))
            source = image.scaled(deviceSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    perform(rect, true, [&](QPainter& p) { drawUpright(p, rect, source); });
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
        layer->owned = QImage(m_image.size(), kScratchFormat);
        layer->owned.fill(0);
        layer->painter.begin(&layer->owned);
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
    if (layer->painter.isActive())
        layer->painter.end();
    m_states.resize(layer->stateDepth - 1); // the layer's own saves and the save of its begin
    const QRectF whole(0, 0, m_image.width(), m_image.height());
    const QImage& pixels = layer->owned;
    perform(whole, true, [&](QPainter& p) { drawUpright(p, whole, pixels); });
}

void DrawingContext::drawLinearGradient(const Gradient& gradient, const QRectF& rect, double angleDegrees)
{
    if (!gradient.isValid() || rect.isEmpty())
        return;
    const QBrush brush(linearGradientOver(gradient, rect, angleDegrees));
    perform(rect, true, [&](QPainter& p) { p.fillRect(rect, brush); });
}

void DrawingContext::drawLinearGradient(const Gradient& gradient, const QPainterPath& path,
                                        double angleDegrees)
{
    const QRectF bounds = path.boundingRect();
    if (!gradient.isValid() || bounds.isEmpty())
        return;
    const QBrush brush(linearGradientOver(gradient, bounds, angleDegrees));
    perform(bounds, true, [&](QPainter& p) { p.fillPath(path, brush); });
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
    QRadialGradient g(end, radius, start, 0);
    setUpGradient(g, gradient);
    const QBrush brush(g);
    perform(bounds, true, [&](QPainter& p) { p.fillPath(path, brush); });
}

void DrawingContext::drawAxialShading(QPointF start, QPointF end, const ShadingFunction& function)
{
    const QRect region = state().clipDevice & m_image.rect();
    const QPointF axis = end - start;
    const double length2 = QPointF::dotProduct(axis, axis);
    if (region.isEmpty() || length2 <= 0 || !function)
        return;

    QImage pixels(region.size(), kScratchFormat);
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
        return premultipliedPixel(c[0], c[1], c[2], c[3]);
    };
    if (axis.x() == 0) { // vertical axis: one evaluation per row
        for (int y = 0; y < region.height(); ++y) {
            auto* row = reinterpret_cast<quint32*>(pixels.scanLine(y));
            std::fill_n(row, region.width(), colour(along(region.left(), region.top() + y)));
        }
    } else if (axis.y() == 0) { // horizontal axis: one evaluation per column
        auto* first = reinterpret_cast<quint32*>(pixels.scanLine(0));
        for (int x = 0; x < region.width(); ++x)
            first[x] = colour(along(region.left() + x, region.top()));
        for (int y = 1; y < region.height(); ++y)
            std::copy_n(first, region.width(), reinterpret_cast<quint32*>(pixels.scanLine(y)));
    } else {
        // Any other direction samples the function eight times per pixel of axis length; an even
        // count keeps t = 0.5 an exact sample.
        const int steps = std::max(256, 8 * int(std::ceil(std::sqrt(length2))));
        std::vector<quint32> table(size_t(steps) + 1);
        for (int i = 0; i <= steps; ++i)
            table[i] = colour(double(i) / steps);
        for (int y = 0; y < region.height(); ++y) {
            auto* row = reinterpret_cast<quint32*>(pixels.scanLine(y));
            for (int x = 0; x < region.width(); ++x) {
                const double t = along(region.left() + x, region.top() + y);
                row[x] = (t < 0 || t > 1) ? 0 : table[size_t(std::lround(t * steps))];
            }
        }
    }
    const QRectF userRegion = m_flip.inverted().mapRect(QRectF(region));
    perform(userRegion, true, [&](QPainter& p) { drawUpright(p, userRegion, pixels); });
}

} // namespace qm
