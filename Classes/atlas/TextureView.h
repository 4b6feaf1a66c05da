#pragma once

#include "Platform/graphics/Color.h"
#include "Platform/graphics/Gradient.h"

#include <QSizeF>
#include <QString>

namespace qm {

class CAGlyphLayer;
class sharedAppState;

/// The texture canvas: the glyph set, its packing, output, descriptors and preview, as headless
/// logic over a layer tree. The settings forward their changes to it; those operations are
/// virtual so that the forwarding can be observed.
class TextureView
{
public:
    TextureView() = default;
    virtual ~TextureView() = default;
    TextureView(const TextureView&) = delete;
    TextureView& operator=(const TextureView&) = delete;

    sharedAppState* sharedState() const { return m_sharedState; }
    void setSharedState(sharedAppState* state) { m_sharedState = state; }

    // Effect operations: copy a setting into the glyph records, redraw, repack where needed.
    virtual void setAntiAlias(bool on);
    virtual void setMiterLimit(int limit);
    virtual void setGlyphTrait(int index);
    virtual void glyphShadow(bool on, float x, float y, float radius, int howMode);
    virtual void shadowColorChanged(const Color& color);
    virtual void setBoundingPadding(int padding);
    virtual void glyphStroke(bool on, float size, const Color& color, int howMode);
    virtual void updateStrokeMode(int mode);
    virtual void glyphGlossy(bool on);
    virtual void setRadialX(float x, float y);
    virtual void setGradiant(int angle, const Gradient& gradient);
    virtual void setStrokeGradiant(int angle, const Gradient& gradient);
    virtual void setGlyphTexture();
    virtual void updateFillGlyph(int mode, const Color& color, const Gradient& gradient);
    virtual void setGlyphFont(const QString& fontName);

    // Glyph set.
    virtual void refreshGlyphLetters(const QString& text);
    virtual void changeAllGlyphsSize(int size);
    virtual void setGlyphGrid(bool on);
    virtual void setGlyphGridSize(int width, int height, bool automatic);
    virtual void changeLineHeight(int lineHeight);
    virtual void scaleCustomImage(float scale);
    virtual void restoreOriScaleImage();

    // Packing and the on-screen texture.
    virtual bool Packing(int padding, int method, bool reversed, bool grid);
    virtual void setFrameSize(const QSizeF& size);
    virtual void updateCheckerboardAndColor(bool checkerBoard, const Color& backgroundColor);

    // Preview and single glyphs.
    virtual void updatePreviewPos();
    virtual void updateGlyph(char16_t character, int xOffset, int yOffset, int xAdvance);
    virtual void updateGlyphImage(char16_t character, bool custom, bool fitImage);
    virtual CAGlyphLayer* getCAGlyphLayer(char16_t character);

private:
    sharedAppState* m_sharedState = nullptr;
};

} // namespace qm
