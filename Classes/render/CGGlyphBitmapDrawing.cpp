#include "Classes/render/CGGlyphBitmap.h"

#include <cmath>

namespace qm {

void CGGlyphBitmap::getImage()
{
    const int width = int(std::ceil(m_glyphRect.width()));
    const int height = int(std::ceil(m_glyphRect.height()));
    if (width <= 0 || height <= 0)
        return; // no bitmap can be made; the previous image stays
    QImage image(width, height, QImage::Format_RGBA8888_Premultiplied);
    if (image.isNull())
        return;
    image.fill(Qt::transparent);
    m_glyphImage = image;
}

bool CGGlyphBitmap::drawGlyphInContext(DrawingContext* context) const
{
    return context != nullptr;
}

} // namespace qm
