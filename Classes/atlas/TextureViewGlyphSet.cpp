// The glyph set: one layer per character of the project's character text.

#include "Classes/atlas/TextureView.h"

#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"

#include <QSet>

#include <cmath>

namespace qm {

namespace {

/// New glyphs take the project's style, in this order.
void copySettings(const sharedAppState& s, CGGlyphBitmap& g)
{
    g.setStroke(s.stroke());
    g.setShadow(s.shadow());
    g.setStrokesize(s.strokeSize());
    g.setShadowxoffset(s.shadowXOffset());
    g.setShadowyoffset(s.shadowYOffset());
    g.setShadowblurradius(s.shadowBlurRadius());
    g.setFillGMode(s.fillGMode());
    g.setGlossy(s.glossy());
    g.setTxtName(s.textureName());
    g.setFntName(s.fontName());
    g.setLoadedFontName(s.loadedFontName());
    g.setGlyphsize(s.glyphSize());
    g.setTrait(s.trait());
    g.setMiterlimit(s.miterlimit());
    g.setFontweight(s.fontweight());
    g.setStrokeColor(s.strokeColor());
    g.setGlyphColor(s.glyphColor());
    g.setStrokeGradient(s.strokeGradient());
    g.setColorGradient(s.colorGradient());
    g.setGradiantAngle(s.gradiantAngle());
    g.setAntialias(s.antialias());
    g.setShadowColor(s.shadowColor());
    g.setStrokegradiantAngle(s.strokegradiantAngle());
    g.setStrokeMode(s.strokeMode());
    g.setBoundingPadding(s.boundingPadding());
    g.setShadowhowmode(s.shadowhowmode());
    g.setStrokehowmode(s.strokehowmode());
    g.setOngrid(s.grid());
    g.setOngridAuto(s.gridAuto());
    g.setForceHeight(s.gridHeight());
    g.setForceWidth(s.gridWidth());
    g.setAutoxy(s.autoxy());
    g.setGradialY(s.gradialY());
    g.setGradialX(s.gradialX());
    g.setExtensions(s.extensions());
}

} // namespace

bool TextureView::addGlyphWithChar(char16_t character)
{
    auto layer = std::make_unique<CAGlyphLayer>(character);
    if (m_sharedState)
        copySettings(*m_sharedState, layer->glyphBitmap());
    CAGlyphLayer* added = static_cast<CAGlyphLayer*>(m_backgroundLayer->addSublayer(std::move(layer)));
    if (!redrawBlocked())
        added->needsRedraw();
    repack();
    return true;
}

void TextureView::addGlyph()
{
    for (char16_t c : u"abcdefghijklmnopqrs") {
        if (c == 0)
            break;
        auto* layer = static_cast<CAGlyphLayer*>(m_backgroundLayer->addSublayer(std::make_unique<CAGlyphLayer>(c)));
        if (!redrawBlocked())
            layer->needsRedraw();
    }
    repack();
}

void TextureView::refreshGlyphLetters(const QString& text)
{
    bool changed = false;
    // The characters already in the set, so each code unit of the text is looked up once
    // rather than by walking the layers (sets of thousands of glyphs are common).
    QSet<char16_t> present;
    for (CAGlyphLayer* layer : glyphLayers())
        present.insert(layer->glyphBitmap().charname());
    QSet<char16_t> wanted;
    for (QChar qc : text) {
        const char16_t c = qc.unicode();
        wanted.insert(c);
        if (present.contains(c))
            continue;
        // Each addition repacks; when many glyphs arrive at once callers suspend packing with
        // `blockredrawandpack` and pack once afterwards.
        addGlyphWithChar(c);
        present.insert(c);
        changed = true;
    }
    QList<CAGlyphLayer*> removed;
    for (CAGlyphLayer* layer : glyphLayers())
        if (!wanted.contains(layer->glyphBitmap().charname()))
            removed.append(layer);
    for (CAGlyphLayer* layer : removed) {
        layer->removeFromSuperlayer(); // the layer and its record go away here
        changed = true;
    }
    if (changed)
        repack();
}

void TextureView::resetGlyphParam(const CGGlyphBitmap& r)
{
    forAll([&](CAGlyphLayer& layer) {
        CGGlyphBitmap& g = layer.glyphBitmap();
        if (g.charname() != r.charname())
            return;
        g.setStroke(r.stroke());
        g.setShadow(r.shadow());
        g.setStrokesize(r.strokesize());
        g.setShadowxoffset(r.shadowxoffset());
        g.setShadowyoffset(r.shadowyoffset());
        g.setShadowblurradius(r.shadowblurradius());
        g.setFillGMode(r.fillGMode());
        g.setGlossy(r.glossy());
        g.setTxtName(r.txtName());
        g.setFntName(r.fntName());
        g.setLoadedFontName(r.loadedFontName());
        g.setGlyphsize(r.glyphsize());
        g.setTrait(r.trait());
        g.setMiterlimit(r.miterlimit());
        g.setFontweight(r.fontweight());
        g.setColorGradient(r.colorGradient());
        g.setStrokeGradient(r.strokeGradient());
        g.setStrokeColor(r.strokeColor());
        g.setShadowColor(r.shadowColor());
        g.setGlyphColor(r.glyphColor());
        g.setGradiantAngle(r.gradiantAngle());
        g.setAntialias(r.antialias());
        g.setStrokegradiantAngle(r.strokegradiantAngle());
        g.setStrokeMode(r.strokeMode());
        g.setBoundingPadding(r.boundingPadding());
        g.setShadowhowmode(r.shadowhowmode());
        g.setStrokehowmode(r.strokehowmode());
        g.setOngrid(r.ongrid());
        g.setOngridAuto(r.ongridAuto());
        g.setForceWidth(r.forceWidth());
        g.setForceHeight(r.forceHeight());
        g.setAutoxy(r.autoxy());
        g.setGradialX(r.gradialX());
        g.setGradialY(r.gradialY());
        g.setAddXOffset(r.addXOffset());
        g.setAddYOffset(r.addYOffset());
        g.setAddXAdvance(r.addXAdvance());
        g.setHasCustomPicture(r.hasCustomPicture());
        g.setFitImage(r.fitImage());
        g.setFrameImage(r.frameImage());
        g.setGlyphImage(r.glyphImage());
        if (!redrawBlocked())
            layer.needsRedraw();
    });
    repack();
}

void TextureView::changeAllGlyphsSize(int size)
{
    forAll([&](CAGlyphLayer& layer) {
        layer.glyphBitmap().setGlyphSize(size);
        if (!redrawBlocked())
            layer.needsRedraw();
    });
    repack();
}

void TextureView::setGlyphGrid(bool on)
{
    forAll([&](CAGlyphLayer& layer) { layer.glyphBitmap().setOngrid(on); });
    redrawAllGlyphs();
    repack();
}

void TextureView::setGlyphGridSize(int width, int height, bool automatic)
{
    forAll([&](CAGlyphLayer& layer) {
        CGGlyphBitmap& g = layer.glyphBitmap();
        g.setOngridAuto(automatic);
        g.setForceWidth(width);
        g.setForceHeight(height);
    });
    redrawAllGlyphs();
    repack();
}

void TextureView::setAutoxy(bool on)
{
    forAll([&](CAGlyphLayer& layer) {
        layer.glyphBitmap().setAutoxy(on);
        layer.glyphBitmap().setNewSize();
    });
    redrawAllGlyphs();
    repack();
}

void TextureView::redrawAllGlyphs()
{
    forAll([](CAGlyphLayer& layer) { layer.needsRedraw(); });
}

void TextureView::setSpaceWidth(int width)
{
    if (CAGlyphLayer* space = getCAGlyphLayer(u' '))
        space->glyphBitmap().setXadvanced(width);
    updatePreviewPos();
}

int TextureView::getSpaceWidth() const
{
    const CAGlyphLayer* space = getCAGlyphLayer(u' ');
    return space ? space->glyphBitmap().xadvanced() : 0;
}

void TextureView::scaleCustomImage(float scale)
{
    forAll([&](CAGlyphLayer& layer) {
        CGGlyphBitmap& g = layer.glyphBitmap();
        if (!g.hasCustomPicture())
            return;
        const QRectF frame = g.frameImage();
        g.setFrameImage(QRectF(0, 0, std::floor(frame.width() * scale), std::floor(frame.height() * scale)));
        layer.needsRedraw();
        layer.setNeedsDisplay();
    });
}

void TextureView::restoreOriScaleImage()
{
    forAll([&](CAGlyphLayer& layer) {
        CGGlyphBitmap& g = layer.glyphBitmap();
        if (!g.hasCustomPicture())
            return;
        g.setFrameImage(QRectF(0, 0, g.glyphImage().width(), g.glyphImage().height()));
        layer.needsRedraw();
    });
}

int TextureView::getDefaultLineHeight() const
{
    for (const auto& layer : m_backgroundLayer->sublayers()) {
        const CGGlyphBitmap& g = static_cast<const CAGlyphLayer&>(*layer).glyphBitmap();
        if (g.lineHeight() != 0)
            return g.hasCustomPicture() ? 0 : g.lineHeight();
    }
    return 0;
}

void TextureView::changeLineHeight(int)
{
    updatePreviewPos();
}

void TextureView::setExtensions(const SettingsExtensions& extensions)
{
    forAll([&](CAGlyphLayer& layer) { layer.glyphBitmap().setExtensions(extensions); });
    if (!redrawBlocked())
        redrawAllGlyphs();
    repack();
}

} // namespace qm
