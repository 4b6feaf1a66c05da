// Texture output: the atlas image at any scale, one image per glyph, and the alpha crop.

#include "Classes/atlas/TextureView.h"

namespace qm {

QImage TextureView::getTexture(float, int, float)
{
    return {};
}

bool TextureView::getMultipleTexture(float, int, const QString&, const QString&, float)
{
    return false;
}

QRectF TextureView::GetCroppedRectFromCGImage(const QImage&, const QRectF& rect) const
{
    return rect;
}

} // namespace qm
