#include "Classes/atlas/TextureView.h"

// The canvas operations are filled in with the glyph layers and the packer; until then they
// accept every change and hold no glyphs.

namespace qm {

void TextureView::setAntiAlias(bool) {}
void TextureView::setMiterLimit(int) {}
void TextureView::setGlyphTrait(int) {}
void TextureView::glyphShadow(bool, float, float, float, int) {}
void TextureView::shadowColorChanged(const Color&) {}
void TextureView::setBoundingPadding(int) {}
void TextureView::glyphStroke(bool, float, const Color&, int) {}
void TextureView::updateStrokeMode(int) {}
void TextureView::glyphGlossy(bool) {}
void TextureView::setRadialX(float, float) {}
void TextureView::setGradiant(int, const Gradient&) {}
void TextureView::setStrokeGradiant(int, const Gradient&) {}
void TextureView::setGlyphTexture() {}
void TextureView::updateFillGlyph(int, const Color&, const Gradient&) {}
void TextureView::setGlyphFont(const QString&) {}
void TextureView::refreshGlyphLetters(const QString&) {}
void TextureView::changeAllGlyphsSize(int) {}
void TextureView::setGlyphGrid(bool) {}
void TextureView::setGlyphGridSize(int, int, bool) {}
void TextureView::changeLineHeight(int) {}
void TextureView::scaleCustomImage(float) {}
void TextureView::restoreOriScaleImage() {}
bool TextureView::Packing(int, int, bool, bool)
{
    return true;
}
void TextureView::setFrameSize(const QSizeF&) {}
void TextureView::updateCheckerboardAndColor(bool, const Color&) {}
void TextureView::updatePreviewPos() {}
void TextureView::updateGlyph(char16_t, int, int, int) {}
void TextureView::updateGlyphImage(char16_t, bool, bool) {}
CAGlyphLayer* TextureView::getCAGlyphLayer(char16_t)
{
    return nullptr;
}

} // namespace qm
