// Canvas interaction: selection by click and key, the preview drag, glyph lookups, per-glyph
// corrections and pictures dropped onto glyphs or the preview.

#include "Classes/atlas/TextureView.h"

#include "Classes/model/Format.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"

#include <QImageReader>

#include <cmath>

namespace qm {

namespace {

constexpr int kFixedSublayers = 2;
constexpr double kPreviewHalf = 2048;

QImage firstImage(const QString& path)
{
    QImageReader reader(path);
    QImage image = reader.read();
    if (image.isNull())
        return {};
    return image.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
}

} // namespace

CAGlyphLayer* TextureView::hitGlyph(QPointF point) const
{
    if (m_showsPreview) {
        // The preview canvas is 4096 pixels a side around its centre; a magnified scroll view
        // shifts the content point by the part of that half-side the magnification hides.
        const double m = m_previewMagnification;
        const QPointF shifted = point - QPointF(kPreviewHalf - kPreviewHalf * m, kPreviewHalf - kPreviewHalf * m);
        const auto& layers = m_previewLayer->sublayers();
        for (size_t i = kFixedSublayers; i < layers.size(); ++i)
            if (!layers[i]->isHidden() && layers[i]->frame().contains(shifted))
                return static_cast<CAGlyphLayer*>(layers[i].get());
        return nullptr;
    }
    for (CAGlyphLayer* layer : glyphLayers())
        if (!layer->isHidden() && layer->frame().contains(point))
            return layer;
    return nullptr;
}

void TextureView::mouseDown(QPointF point)
{
    CAGlyphLayer* hit = hitGlyph(point);
    if (!hit)
        return;
    if (m_showsPreview) {
        m_previewMouseDragging = true;
        m_previewtmpoff = point;
        return;
    }
    if (hit->selected())
        hit->makeUnselected();
    else
        hit->makeSelected();
    const CGGlyphBitmap& g = hit->glyphBitmap();
    const QRectF size = g.hasCustomPicture() ? g.frameImage() : g.glyphRect();
    const QString report = format("(WxH: %ix%i) (Coords: %ix%i)", {int(size.width()), int(size.height()),
                                                                     int(hit->frame().x()), int(hit->frame().y())});
    if (m_sharedState)
        m_sharedState->updatelastclickedglyph(g.charname(), report);
}

void TextureView::mouseDragged(QPointF point)
{
    if (!m_showsPreview || !m_previewMouseDragging)
        return;
    m_previewXYOffset = point + m_previewLastP - m_previewtmpoff;
    updatePreviewPos();
}

void TextureView::mouseUp(QPointF)
{
    if (!m_previewMouseDragging)
        return;
    m_previewMouseDragging = false;
    m_previewLastP = m_previewXYOffset;
}

void TextureView::rightMouseUp(QPointF point)
{
    if (CAGlyphLayer* hit = hitGlyph(point); hit && m_sharedState)
        m_sharedState->showGlyphDetails(hit);
}

void TextureView::keyDown(bool commandOnly, QChar character)
{
    if (commandOnly || character == QLatin1Char(' '))
        m_allowMultipleSelection = true;
    if (character == QChar(0x7F))
        removeSelectedLayers();
}

void TextureView::keyUp(bool commandOnly, QChar character)
{
    if (commandOnly || character == QLatin1Char(' '))
        m_allowMultipleSelection = false;
    if (character == QChar(0x7F))
        removeSelectedLayers(); // finds nothing selected after the key went down
}

void TextureView::removeSelectedLayers()
{
    QList<CAGlyphLayer*> selected;
    for (CAGlyphLayer* layer : glyphLayers())
        if (layer->selected())
            selected.append(layer);
    for (CAGlyphLayer* layer : selected)
        layer->removeFromSuperlayer();
    if (!selected.isEmpty())
        repack();
}

void TextureView::selectAll()
{
    for (CAGlyphLayer* layer : glyphLayers())
        if (!layer->selected())
            layer->makeSelected();
}

void TextureView::selectNone()
{
    for (CAGlyphLayer* layer : glyphLayers()) {
        if (layer->selected())
            layer->makeUnselected();
        else
            layer->makeSelected();
    }
}

void TextureView::selectLetters(const QString& text)
{
    for (CAGlyphLayer* layer : glyphLayers())
        layer->makeUnselected();
    for (CAGlyphLayer* layer : glyphLayers())
        if (text.contains(QChar(layer->glyphBitmap().charname())))
            layer->makeSelected();
}

CAGlyphLayer* TextureView::getOneLayer() const
{
    const auto& layers = m_backgroundLayer->sublayers();
    return layers.empty() ? nullptr : static_cast<CAGlyphLayer*>(layers.back().get());
}

void TextureView::updateGlyph(char16_t character, int xOffset, int yOffset, int xAdvance)
{
    CAGlyphLayer* layer = getCAGlyphLayer(character); // a character has one glyph in the set
    if (!layer)
        return;
    CGGlyphBitmap& g = layer->glyphBitmap();
    g.setAddXOffset(xOffset);
    g.setAddYOffset(yOffset);
    g.setAddXAdvance(xAdvance);
    layer->needsRedraw();
    repack();
}

void TextureView::updateGlyphImage(char16_t character, bool custom, bool fitImage)
{
    CAGlyphLayer* layer = getCAGlyphLayer(character);
    if (!layer)
        return;
    CGGlyphBitmap& g = layer->glyphBitmap();
    g.setHasCustomPicture(custom);
    g.setFitImage(fitImage);
    layer->needsRedraw();
    repack();
}

bool TextureView::draggingEntered(bool carriesImage)
{
    if (!carriesImage)
        return false;
    m_highlight = true;
    m_checkerboardLayer->setNeedsDisplay();
    return true;
}

void TextureView::draggingUpdated(QPointF point)
{
    if (m_showsPreview)
        return;
    for (CAGlyphLayer* layer : glyphLayers())
        layer->highlight(layer->frame().contains(point));
}

void TextureView::draggingExited()
{
    m_highlight = false;
    for (CAGlyphLayer* layer : glyphLayers())
        layer->highlight(false);
    m_checkerboardLayer->setNeedsDisplay();
}

bool TextureView::prepareForDragOperation(bool carriesImage)
{
    m_highlight = false;
    m_checkerboardLayer->setNeedsDisplay();
    return carriesImage;
}

bool TextureView::performDragOperation(const QStringList& files)
{
    if (files.isEmpty())
        return true;
    if (files.size() != 1)
        return false;
    const QImage image = firstImage(files.first());
    if (image.isNull())
        return false; // not a picture: nothing changes
    if (m_showsPreview) {
        // The picture replaces the preview's background, centred on the preview.
        auto bg = std::make_unique<Layer>();
        bg->setName(files.first());
        bg->setContents(image);
        bg->setFrame(QRectF(0, 0, image.width(), image.height()));
        bg->setPosition(QPointF(std::ceil(m_previewLayer->bounds().width() / 2),
                                std::ceil(m_previewLayer->bounds().height() / 2)));
        bgpreviewLayer()->removeFromSuperlayer();
        m_previewLayer->insertSublayer(std::move(bg), 0);
        updatePreviewPos();
        return true;
    }
    CAGlyphLayer* target = nullptr;
    for (CAGlyphLayer* layer : glyphLayers())
        if (layer->highlight()) {
            target = layer;
            break;
        }
    if (!target)
        return true;
    CGGlyphBitmap& g = target->glyphBitmap();
    g.setHasCustomPicture(true);
    g.setFitImage(true);
    g.setGlyphImage(image);
    const QRectF frame(0, 0, image.width(), image.height());
    target->setFrame(frame);
    target->setBounds(frame);
    g.setFrameImage(frame);
    g.setAddXAdvance(image.width());
    target->setName(QStringLiteral("custom"));
    target->setNeedsDisplay();
    for (CAGlyphLayer* layer : glyphLayers())
        layer->highlight(false);
    repack();
    return true;
}

} // namespace qm
