#include "Classes/atlas/TextureView.h"

#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Platform/text/FontManager.h"

namespace qm {

TextureView::TextureView(const QSizeF& frameSize)
    : m_frameSize(frameSize), m_checkerboardLayer(std::make_unique<Layer>())
{
    m_checkerboardLayer->setName(QStringLiteral("checkerboard"));
    m_checkerboardLayer->setBackgroundPattern(QImage(QStringLiteral(":/quillmark/checker.png")));
    m_checkerboardLayer->setFrame(QRectF(QPointF(0, 0), frameSize));
    auto background = std::make_unique<Layer>();
    background->setName(QStringLiteral("background"));
    background->setFrame(QRectF(QPointF(0, 0), frameSize));
    m_backgroundLayer = m_checkerboardLayer->addSublayer(std::move(background));

    // The preview's two fixed sublayers: the background picture and the text's bounding box.
    m_previewLayer = std::make_unique<Layer>();
    m_previewLayer->setName(QStringLiteral("preview"));
    m_previewLayer->setFrame(QRectF(0, 0, 4096, 4096));
    auto bg = std::make_unique<Layer>();
    bg->setName(QStringLiteral("previewBackground"));
    m_previewLayer->addSublayer(std::move(bg));
    auto box = std::make_unique<Layer>();
    box->setName(QStringLiteral("boundingBox"));
    box->setBorderWidth(1);
    box->setBorderColor(Color::calibratedRGB(1, 1, 1, 0.5));
    m_previewLayer->addSublayer(std::move(box));
}

TextureView::~TextureView() = default;

QList<CAGlyphLayer*> TextureView::glyphLayers() const
{
    QList<CAGlyphLayer*> layers;
    layers.reserve(qsizetype(m_backgroundLayer->sublayers().size()));
    for (const auto& layer : m_backgroundLayer->sublayers())
        layers.append(static_cast<CAGlyphLayer*>(layer.get()));
    return layers;
}

void TextureView::setFrameSize(const QSizeF& size)
{
    m_frameSize = size;
}

bool TextureView::redrawBlocked() const
{
    return m_sharedState && m_sharedState->blockredrawandpack();
}

bool TextureView::repack()
{
    if (!m_sharedState)
        return true;
    return Packing(m_sharedState->paddingSize(), m_sharedState->paddingMethod(), m_sharedState->packingReversed(),
                   m_sharedState->grid());
}

void TextureView::forAll(const std::function<void(CAGlyphLayer&)>& apply)
{
    for (const auto& layer : m_backgroundLayer->sublayers())
        apply(static_cast<CAGlyphLayer&>(*layer));
}

void TextureView::forSelection(const std::function<void(CAGlyphLayer&)>& apply)
{
    const bool selectionOnly = m_sharedState && m_sharedState->workOnSelectionOnly();
    for (const auto& layer : m_backgroundLayer->sublayers()) {
        auto& glyph = static_cast<CAGlyphLayer&>(*layer);
        if (!selectionOnly || glyph.selected())
            apply(glyph);
    }
}

// The operations below follow one pattern: set the record fields, redraw unless bulk changes
// block it, and repack when glyph sizes may have changed (requested even while blocked; the
// packer then ignores it).

void TextureView::setMiterLimit(int limit)
{
    forAll([&](CAGlyphLayer& layer) {
        layer.glyphBitmap().setMiterlimit(limit);
        if (!redrawBlocked())
            layer.needsRedraw();
    });
    repack();
}

void TextureView::setGlyphTrait(int index)
{
    // The face is picked by its position in the family's member list; past the end the last
    // member serves, and a family without members leaves no face at all.
    const QList<FontMember> members =
        FontManager::availableMembersOfFontFamily(m_sharedState ? m_sharedState->fontName() : QString());
    FontMember chosen;
    chosen.weight = 0;
    if (!members.isEmpty())
        chosen = members.value(index, members.last());
    forAll([&](CAGlyphLayer& layer) {
        CGGlyphBitmap& g = layer.glyphBitmap();
        g.setTrait(chosen.traits);
        g.setFontweight(chosen.weight);
        g.setFntName(chosen.postScriptName);
        if (!redrawBlocked())
            layer.needsRedraw();
    });
    repack();
}

void TextureView::glyphShadow(bool on, float x, float y, float radius, int howMode)
{
    forAll([&](CAGlyphLayer& layer) {
        CGGlyphBitmap& g = layer.glyphBitmap();
        g.setShadow(on);
        g.setShadowxoffset(x);
        g.setShadowyoffset(y);
        g.setShadowblurradius(radius);
        g.setShadowhowmode(howMode);
        if (!redrawBlocked())
            layer.needsRedraw();
    });
    repack();
}

void TextureView::shadowColorChanged(const Color& color)
{
    forAll([&](CAGlyphLayer& layer) {
        layer.glyphBitmap().setShadowColor(color);
        if (!redrawBlocked() && layer.glyphBitmap().shadow())
            layer.needsRedrawWithOutResize();
    });
}

void TextureView::setBoundingPadding(int padding)
{
    forAll([&](CAGlyphLayer& layer) {
        layer.glyphBitmap().setBoundingPadding(padding);
        if (!redrawBlocked())
            layer.needsRedraw();
    });
    repack();
}

void TextureView::glyphStroke(bool on, float size, const Color& color, int howMode)
{
    forAll([&](CAGlyphLayer& layer) {
        CGGlyphBitmap& g = layer.glyphBitmap();
        g.setStroke(on);
        g.setStrokesize(size);
        g.setStrokeColor(color);
        g.setStrokehowmode(howMode);
        if (!redrawBlocked())
            layer.needsRedraw();
    });
    repack();
}

void TextureView::updateStrokeMode(int mode)
{
    forSelection([&](CAGlyphLayer& layer) {
        layer.glyphBitmap().setStrokeMode(mode);
        if (!redrawBlocked() && m_sharedState && m_sharedState->stroke())
            layer.needsRedrawWithOutResize();
    });
}

void TextureView::glyphGlossy(bool on)
{
    forSelection([&](CAGlyphLayer& layer) {
        layer.glyphBitmap().setGlossy(on);
        if (!redrawBlocked() && m_sharedState && m_sharedState->fillGMode() == 1)
            layer.needsRedrawWithOutResize();
    });
}

void TextureView::setAntiAlias(bool on)
{
    forSelection([&](CAGlyphLayer& layer) {
        layer.glyphBitmap().setAntialias(on);
        if (!redrawBlocked())
            layer.needsRedraw();
    });
    repack();
}

void TextureView::setRadialX(float x, float y)
{
    forSelection([&](CAGlyphLayer& layer) {
        layer.glyphBitmap().setGradialX(x);
        layer.glyphBitmap().setGradialY(y);
        if (!redrawBlocked() && m_sharedState && m_sharedState->fillGMode() == 4)
            layer.needsRedrawWithOutResize();
    });
}

void TextureView::setGradiant(int angle, const Gradient& gradient)
{
    forSelection([&](CAGlyphLayer& layer) {
        layer.glyphBitmap().setGradiantAngle(angle);
        layer.glyphBitmap().setColorGradient(gradient);
        const int mode = m_sharedState ? m_sharedState->fillGMode() : 0;
        if (!redrawBlocked() && (mode == 3 || mode == 4))
            layer.needsRedrawWithOutResize();
    });
}

void TextureView::setStrokeGradiant(int angle, const Gradient& gradient)
{
    forSelection([&](CAGlyphLayer& layer) {
        layer.glyphBitmap().setStrokegradiantAngle(angle);
        layer.glyphBitmap().setStrokeGradient(gradient);
        if (!redrawBlocked() && m_sharedState && m_sharedState->strokeMode() == 1)
            layer.needsRedrawWithOutResize();
    });
}

void TextureView::setGlyphTexture()
{
    forSelection([&](CAGlyphLayer& layer) {
        layer.glyphBitmap().setTxtName(m_sharedState ? m_sharedState->textureName() : QString());
        if (!redrawBlocked() && m_sharedState && m_sharedState->fillGMode() == 2)
            layer.needsRedrawWithOutResize();
    });
}

void TextureView::updateFillGlyph(int mode, const Color& color, const Gradient&)
{
    forSelection([&](CAGlyphLayer& layer) {
        CGGlyphBitmap& g = layer.glyphBitmap();
        g.setFillGMode(mode);
        g.setGlyphColor(color);
        if (m_sharedState) {
            g.setGradiantAngle(m_sharedState->gradiantAngle());
            g.setColorGradient(m_sharedState->colorGradient());
            g.setGlossy(m_sharedState->glossy());
            g.setTxtName(m_sharedState->textureName());
        }
        if (!redrawBlocked())
            layer.needsRedrawWithOutResize();
    });
}

void TextureView::setGlyphFont(const QString& fontName)
{
    forAll([&](CAGlyphLayer& layer) {
        CGGlyphBitmap& g = layer.glyphBitmap();
        g.setFntName(fontName);
        g.setLoadedFontName(m_sharedState && m_sharedState->loadedFontName());
        g.setNewSize();
        if (!redrawBlocked())
            layer.needsRedraw();
    });
    repack();
}

CAGlyphLayer* TextureView::getCAGlyphLayer(char16_t character) const
{
    for (const auto& layer : m_backgroundLayer->sublayers()) {
        auto* glyph = static_cast<CAGlyphLayer*>(layer.get());
        if (glyph->glyphBitmap().charname() == character)
            return glyph;
    }
    return nullptr;
}


} // namespace qm
