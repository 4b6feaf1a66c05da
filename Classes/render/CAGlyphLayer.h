#pragma once

#include "Classes/render/CGGlyphBitmap.h"
#include "Platform/layers/Layer.h"

namespace qm {

/// The canvas layer of one glyph. It owns the glyph's record, takes the record's measured size,
/// shows the rendered glyph (or the glyph's custom picture) and marks selection and highlight
/// with its border.
class CAGlyphLayer : public Layer
{
public:
    explicit CAGlyphLayer(char16_t character);

    bool selected() const { return m_selected; }
    void setSelected(bool selected) { m_selected = selected; }
    bool canfit() const { return m_canfit; }
    void setCanfit(bool canfit) { m_canfit = canfit; }
    bool highlight() const { return m_highlight; }
    /// Green 2-unit border while on; off brings back the selection border, if any.
    void highlight(bool on);

    CGGlyphBitmap& glyphBitmap() { return m_glyphBitmap; }
    const CGGlyphBitmap& glyphBitmap() const { return m_glyphBitmap; }

    /// The constant rectangle (0, 0, 512, 512).
    static QRectF nativeRect() { return QRectF(0, 0, 512, 512); }

    /// Renders the record's bitmap, unless the glyph shows a custom picture.
    void createBitmap();
    /// Re-measures and asks for redisplay; a glyph the font lacks becomes empty with a zero
    /// frame. A custom picture keeps its picture frame and is not redisplayed.
    void needsRedraw();
    /// Asks for redisplay only, for changes that cannot alter the size.
    void needsRedrawWithOutResize() { setNeedsDisplay(); }

    void makeSelected();
    void makeUnselected();

protected:
    void drawInContext(QImage& bitmap) override;

private:
    bool m_selected = false;
    bool m_canfit = false;
    bool m_highlight = false;
    CGGlyphBitmap m_glyphBitmap;
};

} // namespace qm
