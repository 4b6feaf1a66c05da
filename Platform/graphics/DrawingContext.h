#pragma once

#include "Platform/graphics/Color.h"
#include "Platform/graphics/Gradient.h"

#include <QImage>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QTransform>

#include <array>
#include <functional>
#include <memory>
#include <vector>

namespace qm {

struct CoverageMask;

/// How a drawing operation combines with what is already there. The numbers are the platform's
/// blend mode numbers (source-in is 18); the non-separable modes (hue, saturation, colour,
/// luminosity) and plus-darker have no counterpart here.
enum class BlendMode {
    Normal = 0,
    Multiply = 1,
    Screen = 2,
    Overlay = 3,
    Darken = 4,
    Lighten = 5,
    ColorDodge = 6,
    ColorBurn = 7,
    SoftLight = 8,
    HardLight = 9,
    Difference = 10,
    Exclusion = 11,
    Clear = 16,
    Copy = 17,
    SourceIn = 18,
    SourceOut = 19,
    SourceAtop = 20,
    DestinationOver = 21,
    DestinationIn = 22,
    DestinationOut = 23,
    DestinationAtop = 24,
    XOR = 25,
    PlusLighter = 27,
};

/// Image sampling when an image is drawn scaled: None is nearest neighbour, Default, Low and
/// Medium are bilinear, High downscales with area averaging. Numbered as the platform numbers them.
enum class InterpolationQuality { Default = 0, None = 1, Low = 2, High = 3, Medium = 4 };

/// A shadow as the graphics state holds it. Offsets are in the y-up user space; the blur is a
/// Gaussian of standard deviation blurRadius / 2. A shadow without a visible colour casts nothing.
struct Shadow
{
    QPointF offset;
    double blurRadius = 0;
    Color color;
    bool isVisible() const { return color.isValid() && color.alphaComponent() > 0; }
};

/// Colour of an axial shading at t (0 at the start point, 1 at the end): unpremultiplied RGBA, 0..1.
using ShadingFunction = std::function<std::array<double, 4>(double t)>;

/// A 2-D drawing context over a bitmap of RGBA8888 premultiplied pixels (bytes R, G, B, A).
/// Paths are rasterised with exact-area anti-aliasing, stroked and composited by the context
/// itself; QPainter draws scaled images.
/// User space is y up with the origin at the bottom-left corner, one unit per pixel; the image
/// keeps its usual row order (row 0 is the top). Every drawing operation honours the graphics
/// state: clip (paths and soft masks), shadow, colours, line width, miter limit, blend mode,
/// anti-aliasing and interpolation quality.
///
/// While a shadow is set, each operation also paints the shadow of its own (unclipped) coverage
/// beneath itself; the clip then applies to both. A transparency layer collects the operations
/// between begin and end and is composited as one group, casting one shadow.
class DrawingContext
{
public:
    /// Draws into `image`, which is converted to RGBA8888 premultiplied first when it has another
    /// format. The image must outlive the context; its pixels are current after every operation.
    explicit DrawingContext(QImage& image);
    ~DrawingContext();
    DrawingContext(const DrawingContext&) = delete;
    DrawingContext& operator=(const DrawingContext&) = delete;

    int width() const;
    int height() const;
    const QImage& image() const { return m_image; }

    // ---- Graphics state -----------------------------------------------------------------------
    void saveGState();
    /// Restores the last saved state; an unbalanced restore is ignored.
    void restoreGState();

    /// Intersects the clip with the path's interior (the path's own fill rule), anti-aliased when
    /// anti-aliasing is on.
    void clipToPath(const QPainterPath& path);
    void clipToRect(const QRectF& rect);
    /// Intersects the clip with the alpha of `mask` placed into `rect` (upright, scaled to fit);
    /// partial alpha gives partial coverage and nothing outside `rect` stays visible.
    void clipToMask(const QRectF& rect, const QImage& mask);
    /// Bounding box of the clip in user space (the whole bitmap when unclipped).
    QRectF clipBoundingBox() const;

    void setShadow(QPointF offset, double blurRadius, const Color& color);
    void clearShadow();
    Shadow shadow() const;

    /// An invalid colour paints nothing.
    void setFillColor(const Color& color);
    void setStrokeColor(const Color& color);
    Color fillColor() const;
    Color strokeColor() const;
    /// Outline width; 0 strokes the thinnest visible line.
    void setLineWidth(double width);
    double lineWidth() const;
    /// Joins are mitred until miter length / line width exceeds the limit, then bevelled.
    void setMiterLimit(double limit);
    double miterLimit() const;
    void setBlendMode(BlendMode mode);
    BlendMode blendMode() const;
    void setShouldAntialias(bool on);
    bool shouldAntialias() const;
    /// Not part of the graphics state: anti-aliasing happens only while allowed and wanted.
    void setAllowsAntialiasing(bool allowed);
    void setInterpolationQuality(InterpolationQuality quality);
    InterpolationQuality interpolationQuality() const;

    // ---- Drawing ------------------------------------------------------------------------------
    void fillPath(const QPainterPath& path);
    /// Strokes with the current stroke colour, line width and miter limit, butt caps, mitred joins.
    void strokePath(const QPainterPath& path);
    void fillRect(const QRectF& rect);
    /// Makes the rectangle transparent inside the clip; ignores shadow and blend mode.
    void clearRect(const QRectF& rect);
    /// Draws the image upright, scaled into `rect`.
    void drawImage(const QRectF& rect, const QImage& image);
    /// A copy of the bitmap (transparency layers in progress are not part of it).
    QImage snapshot() const;

    /// Starts collecting drawing in a transparent layer. Inside it the shadow is off and the
    /// blend mode normal; the clip stays. Implies a save of the graphics state.
    void beginTransparencyLayer();
    /// Composites the layer with the graphics state of its begin (clip, shadow, blend mode) and
    /// restores that state. Ignored without a matching begin.
    void endTransparencyLayer();

    /// The gradient along the axis through the centre of `rect` at `angleDegrees` (counter-
    /// clockwise from the x axis), spanning the rectangle's projection on that axis, so the first
    /// and last colours reach opposite corners; filled into the rectangle.
    void drawLinearGradient(const Gradient& gradient, const QRectF& rect, double angleDegrees);
    /// The same, laid out over the path's bounds and filled into the path.
    void drawLinearGradient(const Gradient& gradient, const QPainterPath& path, double angleDegrees);
    /// A radial gradient filled into the path: its first colour at the centre of the path's bounds
    /// (a point), its last colour on a circle around centre + relativeCenter × half the bounds'
    /// size (each coordinate −1 … 1) that reaches the bounds' farthest corner. Colours are held
    /// beyond both ends.
    void drawRadialGradient(const Gradient& gradient, const QPainterPath& path, QPointF relativeCenter);
    /// Paints the clip area with colours from `function` along the axis from `start` to `end`;
    /// nothing is painted before the start or past the end.
    void drawAxialShading(QPointF start, QPointF end, const ShadingFunction& function);

private:
    struct State;
    struct Target;
    struct Paint;

    State& state();
    const State& state() const;
    Target& target();
    bool antialiasing() const;
    /// Image pixels an operation's coverage can matter in: the clip's bounds, and with a shadow
    /// also what can throw a shadow into them.
    QRect drawLimit(bool castsShadow) const;
    void intersectClip(CoverageMask coverage, const QRectF& userBounds);
    /// The path's coverage within `limit`. The last few are kept: a glyph's outline is filled
    /// and clipped to more than once.
    std::shared_ptr<const CoverageMask> coverageOf(const QPainterPath& path, const QRect& limit);
    /// Paints `paint` through `shape` onto the current target with the clip, the shadow (when
    /// cast) and `mode`.
    void composite(const Paint& paint, const CoverageMask& shape, BlendMode mode, bool castsShadow);

    QImage& m_image;
    QTransform m_flip; // user space -> image rows
    bool m_allowsAntialiasing = true;
    std::vector<State> m_states;
    std::vector<std::unique_ptr<Target>> m_targets;
    struct CachedCoverage
    {
        QPainterPath path;
        QRect rect;
        bool antialias = false;
        std::shared_ptr<const CoverageMask> coverage;
    };
    std::vector<CachedCoverage> m_coverageCache; // most recent last
};

} // namespace qm
