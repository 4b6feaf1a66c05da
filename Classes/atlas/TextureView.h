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
struct SettingsExtensions;

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
    /// Gives every glyph the project's settings beyond the classic behaviour; redraws and repacks.
    virtual void setExtensions(const SettingsExtensions& extensions);
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

    // The text preview.
    /// The preview's container: the background picture, the text's bounding box, then one
    /// glyph layer per character of the preview text.
    Layer* previewLayer() const { return m_previewLayer.get(); }
    Layer* bgpreviewLayer() const;
    Layer* boundingBoxPreview() const;
    /// The layer the canvas shows: the preview or the checkerboard with the texture.
    Layer* displayedLayer() const { return m_showsPreview ? m_previewLayer.get() : m_checkerboardLayer.get(); }
    bool showsPreview() const { return m_showsPreview; }
    /// Lays the text out with the glyph set's glyphs, spaced as a game would space them from the
    /// descriptor; the two characters backslash and n make a line break.
    virtual void updatePreview(const QString& text);
    /// Places the existing preview glyphs again for the stored preview text, without animation.
    virtual void updatePreviewPos();
    /// The canvas shows the preview, on a 4096 x 4096 canvas.
    void switchToPreview();
    /// The canvas shows the texture again, at the texture's size.
    void switchToTexture();
    /// A preview background of a screen size, filled with a colour and centred.
    void loadpreviewbgSizeAndColor(const QSizeF& size, const Color& color);
    /// The screen size of a preview-background selector tag.
    static QSizeF previewBackgroundSize(int tag);
    /// The laid-out preview as one picture: the visible glyphs on the preview background colour,
    /// cropped to the text's bounding box plus a margin. Null when nothing is laid out.
    QImage getPreviewImg();
    QPointF previewXYOffset() const { return m_previewXYOffset; }
    void setPreviewXYOffset(QPointF offset) { m_previewXYOffset = offset; }
    /// The scroll view's magnification in preview mode, used when hit-testing preview clicks.
    void setPreviewMagnification(double m) { m_previewMagnification = m; }

    // Canvas interaction: points are in canvas coordinates (y up); in preview mode they are in
    // the preview scroll view's content coordinates.
    void mouseDown(QPointF point);
    void mouseDragged(QPointF point);
    void mouseUp(QPointF point);
    void rightMouseUp(QPointF point);
    /// A key: `commandOnly` when Command is the only modifier held, `character` the key's first
    /// character (a space allows multiple selection, U+007F deletes the selection).
    void keyDown(bool commandOnly, QChar character);
    void keyUp(bool commandOnly, QChar character);
    bool allowMultipleSelection() const { return m_allowMultipleSelection; }
    bool previewMouseDragging() const { return m_previewMouseDragging; }
    void removeSelectedLayers();
    void selectAll();
    /// Inverts every glyph's selection.
    void selectNone();
    /// Selects exactly the glyphs whose character occurs in the text.
    void selectLetters(const QString& text);
    CAGlyphLayer* getOneLayer() const;
    QList<CAGlyphLayer*> getAllLayers() const { return glyphLayers(); }
    virtual void updateGlyph(char16_t character, int xOffset, int yOffset, int xAdvance);
    virtual void updateGlyphImage(char16_t character, bool custom, bool fitImage);
    /// The first glyph layer whose glyph has the character, or null.
    virtual CAGlyphLayer* getCAGlyphLayer(char16_t character) const;

    // Dropping pictures: onto a glyph on the canvas, or as the preview's background.
    /// A drag enters; accepted (and the canvas highlighted) when it carries an image.
    bool draggingEntered(bool carriesImage);
    /// The pointer moved: on the canvas the glyph under it is highlighted.
    void draggingUpdated(QPointF point);
    void draggingExited();
    bool prepareForDragOperation(bool carriesImage);
    /// Drops files: exactly one is accepted; its first image becomes the highlighted glyph's
    /// custom picture, or in preview mode the preview's background picture.
    bool performDragOperation(const QStringList& files);
    /// A picture is being dragged over the canvas (drawn as a red frame).
    bool highlight() const { return m_highlight; }

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

    /// Hit-tests glyph layers: the texture's, or the preview's from the third sublayer on.
    CAGlyphLayer* hitGlyph(QPointF point) const;
    /// The preview placement pass for the current preview layers.
    void placePreview(int totalWidth, bool animated);
    int previewTotalWidth() const;

    sharedAppState* m_sharedState = nullptr;
    QSizeF m_frameSize;
    std::unique_ptr<Layer> m_checkerboardLayer;
    Layer* m_backgroundLayer = nullptr;
    std::unique_ptr<TreeNode> m_Nodes;

    std::unique_ptr<Layer> m_previewLayer;
    bool m_showsPreview = false;
    QString m_previewGlyphs; ///< the preview text without its line breaks, one character per glyph
    QPointF m_previewXYOffset;
    QPointF m_previewLastP;
    QPointF m_previewtmpoff;
    double m_previewMagnification = 1.0;
    bool m_previewMouseDragging = false;
    bool m_allowMultipleSelection = false;
    bool m_highlight = false;
};

} // namespace qm
