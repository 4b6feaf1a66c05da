#include "Classes/render/CAGlyphLayer.h"

#include <QPainter>

namespace qm {

CAGlyphLayer::CAGlyphLayer(char16_t character) : m_glyphBitmap(character) {}

void CAGlyphLayer::highlight(bool on)
{
    if (on) {
        m_highlight = true;
        setBorderColor(Color::calibratedRGB(0.1, 0.8, 0.1));
        setBorderWidth(2.0);
    } else {
        m_highlight = false;
        if (m_selected)
            makeSelected();
        else
            makeUnselected();
    }
}

void CAGlyphLayer::makeSelected()
{
    m_selected = true;
    setBorderColor(Color::calibratedRGB(1.0, 0.0, 0.0));
    setBorderWidth(1.0);
}

void CAGlyphLayer::makeUnselected()
{
    m_selected = false;
    setBorderWidth(0);
}

void CAGlyphLayer::createBitmap()
{
    if (!m_glyphBitmap.hasCustomPicture())
        m_glyphBitmap.getImage();
}

void CAGlyphLayer::needsRedraw()
{
    const QPointF origin = frame().topLeft(); // bottom-left corner in y-up coordinates
    if (m_glyphBitmap.hasCustomPicture()) {
        const QSizeF size = m_glyphBitmap.frameImage().size();
        setFrame(QRectF(origin, size));
        setBounds(QRectF(QPointF(0, 0), size));
        return;
    }
    if (!m_glyphBitmap.setNewSize()) {
        setContents(QImage());
        setFrame(QRectF());
        return;
    }
    const QSizeF size = m_glyphBitmap.glyphRect().size();
    setFrame(QRectF(origin, size));
    setBounds(QRectF(QPointF(0, 0), size));
    setNeedsDisplay();
}

void CAGlyphLayer::drawInContext(QImage& bitmap)
{
    if (m_glyphBitmap.hasCustomPicture()) {
        // The picture fills the picture frame; QImage rows run top down, like the picture's.
        QPainter painter(&bitmap);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRectF(QPointF(0, 0), m_glyphBitmap.frameImage().size()), m_glyphBitmap.glyphImage());
        return;
    }
    m_glyphBitmap.getImage();
    const QImage& rendered = m_glyphBitmap.glyphImage();
    if (rendered.size() == bitmap.size())
        bitmap = rendered;
}

} // namespace qm
