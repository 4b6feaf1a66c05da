#pragma once

#include "Platform/graphics/Color.h"

#include <QPainterPath>
#include <QPointF>
#include <QRectF>

namespace qm {

class DrawingContext;

/// Strokes only the part of the outline inside the path: the context's line width w becomes the
/// width of a band inside the contour. The graphics state and line width are as before afterwards.
void strokeInside(DrawingContext& context, const QPainterPath& path);
/// The same, further clipped to `rect` when it has a positive width and height.
void strokeInsideWithinRect(DrawingContext& context, const QPainterPath& path, const QRectF& rect);
/// Doubles the line width and saves the graphics state, nothing more; the caller restores.
void strokeOutside(DrawingContext& context, const QPainterPath& path);

/// Makes a shadow with this offset (y up), blur radius and colour the current shadow.
void setShadowWithOffset(DrawingContext& context, QPointF offset, double blurRadius, const Color& color);
/// Makes the default shadow current: later drawing casts none.
void clearShadow(DrawingContext& context);

} // namespace qm
