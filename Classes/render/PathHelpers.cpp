#include "Classes/render/PathHelpers.h"

#include "Platform/graphics/DrawingContext.h"

namespace qm {

void strokeInside(DrawingContext& context, const QPainterPath& path)
{
    strokeInsideWithinRect(context, path, QRectF());
}

void strokeInsideWithinRect(DrawingContext& context, const QPainterPath& path, const QRectF& rect)
{
    // A stroke of twice the width is centred on the contour; the clip to the interior keeps the
    // inner half.
    const double width = context.lineWidth();
    context.saveGState();
    context.setLineWidth(2 * width);
    context.clipToPath(path);
    if (rect.width() > 0 && rect.height() > 0)
        context.clipToRect(rect);
    context.strokePath(path);
    context.restoreGState();
    context.setLineWidth(width);
}

void strokeOutside(DrawingContext& context, const QPainterPath&)
{
    context.setLineWidth(2 * context.lineWidth());
    context.saveGState();
}

void setShadowWithOffset(DrawingContext& context, QPointF offset, double blurRadius, const Color& color)
{
    context.setShadow(offset, blurRadius, color);
}

void clearShadow(DrawingContext& context)
{
    context.clearShadow();
}

} // namespace qm
