#pragma once

#include "Classes/atlas/TreeNode.h"
#include "Platform/graphics/Color.h"
#include "Platform/graphics/Gradient.h"
#include "Platform/layers/Layer.h"

#include <QList>
#include <QSizeF>
#include <QString>

#include <functional>
#include <memory>

namespace qm {

class CAGlyphLayer;
class CGGlyphBitmap;
class sharedAppState;

/// The texture canvas as headless logic over a layer tree: the glyph set (the glyph layers in
/// `backgroundLayer`), the effect operations that push settings down to the glyphs, packing,
/// output and the preview. A desktop widget shows the tree and turns events into these
/// operations. The operations the settings forward to are virtual so the forwarding can be
/// observed in tests.
class TextureView
{
public:
    /// A canvas of the given size with an empty glyph set.
    explicit TextureView(const QSizeF& frameSize = QSizeF(512, 512));
    virtual ~TextureView();
    TextureView(const TextureView&) = delete;
    TextureView& operator=(const TextureView&) = delete;

    sharedAppState* sharedState() const { return m_sharedState; }
    void setSharedState(sharedAppState* state) { m_sharedState = state; }

    /// The layer shown in texture mode; `backgroundLayer` is its only sublayer.
    Layer* checkerboardLayer() const { return m_checkerboardLayer.get(); }
    /// Holds the glyph set: one CAGlyphLayer per glyph, in set order.
    Layer* backgroundLayer() const { return m_backgroundLayer; }
    /// The glyph layers in set order.
    QList<CAGlyphLayer*> glyphLayers() const;

    QSizeF frameSize() const { return m_frameSize; }
    virtual void setFrameSize(const QSizeF& size);

    // Effect operations: copy a setting into the records of all glyphs, or of the selected
    // ones when the project works on the selection only; redraw; repack where sizes can change.
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

    // The glyph set.
    /// Adds one glyph with the project's settings at the end of the set and repacks.
    bool addGlyphWithChar(char16_t character);
    /// A sample set "abcdefghijklmnopqrs" with the records' own defaults, packed once.
    void addGlyph();
    /// Brings the set in line with the text: one glyph per distinct UTF-16 code unit, new ones
    /// appended in first-occurrence order, surviving ones keeping their places.
    virtual void refreshGlyphLetters(const QString& text);
    /// Applies a stored record to the glyph of the same character, then repacks.
    void resetGlyphParam(const CGGlyphBitmap& record);
    virtual void changeAllGlyphsSize(int size);
    virtual void setGlyphGrid(bool on);
    virtual void setGlyphGridSize(int width, int height, bool automatic);
    void setAutoxy(bool on);
    /// Re-measures and redisplays every glyph, whatever `blockredrawandpack` says.
    void redrawAllGlyphs();
    void setSpaceWidth(int width);
    int getSpaceWidth() const;
    virtual void scaleCustomImage(float scale);
    virtual void restoreOriScaleImage();
    /// The line height of the first glyph that has one; 0 when that glyph is a custom picture.
    int getDefaultLineHeight() const;
    virtual void changeLineHeight(int lineHeight);

    // Packing.
    /// Places every glyph, choosing the texture size when the project sizes it automatically;
    /// answers whether every glyph fits and reports it through the settings.
    virtual bool Packing(int padding, int method, bool reversed, bool grid);
    /// A place for a box of the rectangle's size in the current tree, or (-1, -1).
    QPointF FindCoords(const QRectF& rect);
    const TreeNode* Nodes() const { return m_Nodes.get(); }

    // Output.
    /// The packed texture at a scale in percent: every placed glyph re-rendered and drawn at its
    /// place; transparent elsewhere. `quality` (0 none .. 4 high) picks the resampling when the
    /// scale is not 100. `oriScale` is not used.
    QImage getTexture(float scale, int quality, float oriScale);
    /// One PNG per placed glyph, "<dir>/<code><suffix>.png", at a scale in percent, into `dir`
    /// (created with its parents). False when the folder or a file cannot be written.
    bool getMultipleTexture(float scale, int quality, const QString& dir, const QString& suffix, float oriScale);
    /// The part of `rect` (top-left image coordinates) that holds pixels with alpha above the
    /// project's `cropAlpha`.
    QRectF GetCroppedRectFromCGImage(const QImage& image, const QRectF& rect) const;
    void cropSelectedImage() {}

    // Descriptors.
    /// The descriptor text for a format code at a scale in percent, naming the texture file and
    /// the face; `oriScale` (percent) scales custom-picture glyphs.
    QString getFontplist(float scale, const QString& textureName, int output, const QString& fontFace,
                         float oriScale) const;
    /// The sprite-sheet property list: full size for 2, half size otherwise.
    QString getplist(int kind) const;

    // The on-screen texture.
    virtual void updateCheckerboardAndColor(bool checkerBoard, const Color& backgroundColor);

    // Preview and single glyphs.
    /// Lays the text out with the glyph set's glyphs ("\\n" pairs are line breaks).
    virtual void updatePreview(const QString& text);
    virtual void updatePreviewPos();
    virtual void updateGlyph(char16_t character, int xOffset, int yOffset, int xAdvance);
    virtual void updateGlyphImage(char16_t character, bool custom, bool fitImage);
    /// The first glyph layer whose glyph has the character, or null.
    virtual CAGlyphLayer* getCAGlyphLayer(char16_t character) const;

private:
    /// Calls `apply` for every glyph layer the selection rule takes: all, or only the selected
    /// ones while the project works on the selection only.
    void forSelection(const std::function<void(CAGlyphLayer&)>& apply);
    void forAll(const std::function<void(CAGlyphLayer&)>& apply);
    bool redrawBlocked() const;
    /// Packs with the project's current packing settings.
    bool repack();
    /// Finds the automatic tree-mode texture size for boxes of the given sizes.
    QSizeF searchTextureSize(const QList<QSizeF>& boxes, int padding) const;

    sharedAppState* m_sharedState = nullptr;
    QSizeF m_frameSize;
    std::unique_ptr<Layer> m_checkerboardLayer;
    Layer* m_backgroundLayer = nullptr;
    std::unique_ptr<TreeNode> m_Nodes;
};

} // namespace qm
