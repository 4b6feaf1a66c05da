// The text preview: sample text set with the project's own glyphs, spaced exactly as a game
// spaces them from the descriptor (advances, offsets, kerning, line height).

#include "Classes/atlas/TextureView.h"

#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Platform/text/Font.h"

#include <QPainter>

#include <cmath>

namespace qm {

namespace {

constexpr double kPreviewSide = 4096;
constexpr int kFixedSublayers = 2; // background picture, bounding box

/// Style and metrics a preview glyph takes from the texture's glyph of the same character.
void copyGlyph(const CGGlyphBitmap& from, CGGlyphBitmap& to)
{
    to.setStroke(from.stroke());
    to.setShadow(from.shadow());
    to.setStrokesize(from.strokesize());
    to.setShadowxoffset(from.shadowxoffset());
    to.setShadowyoffset(from.shadowyoffset());
    to.setShadowblurradius(from.shadowblurradius());
    to.setFillGMode(from.fillGMode());
    to.setGlossy(from.glossy());
    to.setTxtName(from.txtName());
    to.setFntName(from.fntName());
    to.setLoadedFontName(from.loadedFontName());
    to.setGlyphsize(from.glyphsize());
    to.setTrait(from.trait());
    to.setMiterlimit(from.miterlimit());
    to.setFontweight(from.fontweight());
    to.setStrokeColor(from.strokeColor());
    to.setGlyphColor(from.glyphColor());
    to.setColorGradient(from.colorGradient());
    to.setStrokeGradient(from.strokeGradient());
    to.setGradiantAngle(from.gradiantAngle());
    to.setAntialias(from.antialias());
    to.setYoffset(from.yoffset());
    to.setXoffset(from.xoffset());
    to.setYoffsetPreview(from.yoffsetPreview());
    to.setShadowColor(from.shadowColor());
    to.setStrokegradiantAngle(from.strokegradiantAngle());
    to.setStrokeMode(from.strokeMode());
    to.setBoundingPadding(from.boundingPadding());
    to.setXadvanced(from.xadvanced());
    to.setStrokehowmode(from.strokehowmode());
    to.setShadowhowmode(from.shadowhowmode());
    to.setOngrid(from.ongrid());
    to.setOngridAuto(from.ongridAuto());
    to.setForceHeight(from.forceHeight());
    to.setForceWidth(from.forceWidth());
    to.setAutoxy(from.autoxy());
    to.setGradialX(from.gradialX());
    to.setGradialY(from.gradialY());
    to.setAddXOffset(from.addXOffset());
    to.setAddYOffset(from.addYOffset());
    to.setHasCustomPicture(from.hasCustomPicture());
    to.setFitImage(from.fitImage());
    to.setGlyphImage(from.glyphImage());
    to.setGlyphRect(from.glyphRect());
    to.setGlyphFrame(from.glyphFrame());
    to.setFrameImage(from.frameImage());
    to.setAddXAdvance(from.addXAdvance());
}

/// The preview text's glyphs (line breaks removed) and its lines (line breaks as line feeds).
QString glyphText(const QString& text)
{
    return QString(text).remove(QStringLiteral("\\n"));
}

QString lineText(const QString& text)
{
    return QString(text).replace(QStringLiteral("\\n"), QStringLiteral("\n"));
}

} // namespace

Layer* TextureView::bgpreviewLayer() const
{
    return m_previewLayer->sublayers()[0].get();
}

Layer* TextureView::boundingBoxPreview() const
{
    return m_previewLayer->sublayers()[1].get();
}

int TextureView::previewTotalWidth() const
{
    const sharedAppState fallback;
    const sharedAppState& st = m_sharedState ? *m_sharedState : fallback;
    int W = 0;
    const auto& layers = m_previewLayer->sublayers();
    for (size_t i = kFixedSublayers; i < layers.size(); ++i) {
        const auto& layer = static_cast<const CAGlyphLayer&>(*layers[i]);
        if (layer.isHidden())
            continue;
        const CGGlyphBitmap& g = layer.glyphBitmap();
        // The total width ignores kerning, unlike the line widths of the placement pass.
        int contribution;
        if (st.fixedadvance())
            contribution = st.fixedadvancevalue();
        else if (g.charname() == 32)
            contribution = st.spaceWidth();
        else
            contribution = g.xadvanced() + g.addXAdvance();
        W += contribution + st.xadvancedOffset();
    }
    return W;
}

void TextureView::updatePreview(const QString& text)
{
    const QString G = glyphText(text);
    m_previewGlyphs = G;
    if (m_sharedState)
        m_sharedState->setPreviewText(lineText(text));

    auto& layers = m_previewLayer->sublayers();
    while (layers.size() > size_t(G.size() + kFixedSublayers))
        layers.back()->removeFromSuperlayer();
    while (layers.size() < size_t(G.size() + kFixedSublayers))
        m_previewLayer->addSublayer(std::make_unique<CAGlyphLayer>(char16_t(0)));

    for (qsizetype i = 0; i < G.size(); ++i) {
        auto& layer = static_cast<CAGlyphLayer&>(*layers[size_t(i + kFixedSublayers)]);
        const char16_t c = G[i].unicode();
        const CAGlyphLayer* source = getCAGlyphLayer(c);
        if (!source) {
            layer.setHidden(true); // not in the glyph set: left out, the rest is still laid out
            continue;
        }
        copyGlyph(source->glyphBitmap(), layer.glyphBitmap());
        layer.setBounds(source->bounds());
        layer.setFrame(source->frame());
        layer.glyphBitmap().setCharname(c);
        if (!redrawBlocked())
            layer.needsRedraw();
        layer.setNeedsDisplay();
        layer.setHidden(false);
    }
    placePreview(previewTotalWidth(), true);
}

void TextureView::updatePreviewPos()
{
    placePreview(previewTotalWidth(), false);
}

void TextureView::placePreview(int W, bool animated)
{
    const sharedAppState fallback;
    const sharedAppState& st = m_sharedState ? *m_sharedState : fallback;
    const QString N = st.previewText();
    const QString& G = m_previewGlyphs;
    const auto& layers = m_previewLayer->sublayers();

    const int LH = st.lineHeight() != 0 ? st.lineHeight() : getDefaultLineHeight();
    const double H = m_frameSize.height();
    const bool kerning = st.kernings() && !st.kerningTable().isEmpty() && !st.cmapTable().isEmpty();
    const int X0 = static_cast<int>(m_frameSize.width() / 2 - (W / 2) + m_previewXYOffset.x());
    int P = X0;
    int Y = 0, L = 1, M = 0, Q = 0, D = 0;
    qsizetype j = 0;

    TransactionScope transaction;
    if (animated) {
        Transaction::setAnimationDuration(0.2);
        Transaction::setAnimationTimingFunction(TimingFunction::EaseInEaseOut);
    } else {
        Transaction::setDisableActions(true);
    }
    for (size_t index = kFixedSublayers; index < layers.size(); ++index) {
        auto& layer = static_cast<CAGlyphLayer&>(*layers[index]);
        const CGGlyphBitmap& g = layer.glyphBitmap();
        const qsizetype i = qsizetype(index - kFixedSublayers);
        if (j < N.size() && N[j] == QLatin1Char('\n')) {
            Y -= LH;
            ++j;
            ++L;
            P = X0;
        }
        D = g.descender();
        if (g.hasCustomPicture())
            D = static_cast<int>(Font::fromName(g.fntName(), g.glyphsize()).descender());
        // Kerning in a fixed 2048-unit em, as the descriptors write it.
        int K = 0;
        if (kerning && i + 1 < G.size()) {
            const auto it = st.kerningTable().constFind({g.charname(), G[i + 1].unicode()});
            if (it != st.kerningTable().cend())
                K = it.value() * st.glyphSize() / 2048;
        }
        ++j;
        const bool space = g.charname() == 32;
        Q += space ? st.spaceWidth() + K + st.xadvancedOffset() : g.xadvanced() + K + g.addXAdvance() + st.xadvancedOffset();
        if (j < N.size() && N[j] == QLatin1Char('\n')) {
            M = std::max(M, Q);
            Q = 0;
        }
        QPointF position;
        if (g.hasCustomPicture()) {
            position = QPointF(P + g.frameImage().width() / 2 + g.addXOffset(),
                               H / 2 - g.frameImage().height() / 2 + g.addYOffset() + m_previewXYOffset.y() + 2 * D + Y +
                                   LH + st.boundingPadding());
        } else {
            position = QPointF(P + g.glyphRect().width() / 2 + g.xoffset() + g.addXOffset(),
                               H / 2 + g.glyphRect().height() / 2 - g.yoffsetPreview() + g.addYOffset() +
                                   m_previewXYOffset.y() + Y);
        }
        layer.setPosition(position);
        int A;
        if (st.fixedadvance())
            A = st.fixedadvancevalue();
        else if (space)
            A = st.spaceWidth() + K;
        else if (g.hasCustomPicture())
            A = g.addXAdvance() + K;
        else
            A = g.xadvanced() + K + g.addXAdvance();
        P += A + st.xadvancedOffset();
    }

    // The text's bounding box, from the widest line; D and LH are those of the last glyph.
    const int Mx = std::max(M, Q);
    const int dx = (Mx - W) / 2;
    const int defaultLH = getDefaultLineHeight();
    auto boxX = [&](int from) { return m_frameSize.width() / 2 + m_previewXYOffset.x() + from + dx - Mx / 2; };
    double x = boxX(st.postXOffset());
    if (st.grid())
        x = boxX(st.postXOffset()) - st.boundingPadding();
    double y, height;
    if (L == 1) {
        y = st.postYOffset() + H / 2 + m_previewXYOffset.y() + 2 * D + (defaultLH - LH);
        height = LH;
    } else {
        y = st.postYOffset() + H / 2 + m_previewXYOffset.y() + 2 * D - LH * (L - 1) + (defaultLH - LH) * (L - 1);
        height = double(LH) * L;
    }
    boundingBoxPreview()->setFrame(QRectF(x, y, Mx, height));
}

void TextureView::switchToPreview()
{
    TransactionScope transaction;
    Transaction::setDisableActions(true);
    m_showsPreview = true;
    setFrameSize(QSizeF(kPreviewSide, kPreviewSide));
    m_previewLayer->setFrame(QRectF(0, 0, kPreviewSide, kPreviewSide));
}

void TextureView::switchToTexture()
{
    TransactionScope transaction;
    Transaction::setDisableActions(true);
    m_showsPreview = false;
    if (m_sharedState)
        setFrameSize(QSizeF(m_sharedState->width(), m_sharedState->height()));
}

QSizeF TextureView::previewBackgroundSize(int tag)
{
    switch (tag) {
    case 2: return QSizeF(640, 960);
    case 3: return QSizeF(640, 1136);
    case 4: return QSizeF(768, 1024);
    case 5: return QSizeF(1536, 2048);
    case 6: return QSizeF(750, 1334);
    case 7: return QSizeF(1242, 2208);
    default: return QSizeF(320, 480);
    }
}

void TextureView::loadpreviewbgSizeAndColor(const QSizeF& size, const Color& color)
{
    Layer* bg = bgpreviewLayer();
    bg->setContents(QImage());
    bg->setBackgroundColor(color);
    bg->setBounds(QRectF(QPointF(0, 0), size));
    bg->setPosition(QPointF(std::ceil(m_previewLayer->bounds().width() / 2), std::ceil(m_previewLayer->bounds().height() / 2)));
    updatePreviewPos();
}

QImage TextureView::getPreviewImg()
{
    QRectF area = boundingBoxPreview()->frame();
    QList<CAGlyphLayer*> visible;
    const auto& layers = m_previewLayer->sublayers();
    for (size_t i = kFixedSublayers; i < layers.size(); ++i) {
        auto* layer = static_cast<CAGlyphLayer*>(layers[i].get());
        if (layer->isHidden() || layer->bounds().isEmpty())
            continue;
        visible.append(layer);
        area = area.isEmpty() ? layer->frame() : area.united(layer->frame());
    }
    if (area.isEmpty())
        return {};
    constexpr int kMargin = 8;
    const QRect pixels = area.toAlignedRect().adjusted(-kMargin, -kMargin, kMargin, kMargin);
    QImage image(pixels.size(), QImage::Format_RGBA8888_Premultiplied);
    const Color background = m_sharedState ? m_sharedState->prevBgColor() : Color();
    image.fill(background.isValid() ? background.toQColor() : QColor(Qt::transparent));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (CAGlyphLayer* layer : visible) {
        layer->createBitmap(); // the preview glyph carries the style of its texture glyph
        const CGGlyphBitmap& g = layer->glyphBitmap();
        const QRectF f = layer->frame();
        // y up to image rows: the top edge of the frame is pixels.bottom() side of the area.
        const QRectF target(f.x() - pixels.x(), (pixels.y() + pixels.height()) - (f.y() + f.height()), f.width(),
                            f.height());
        painter.drawImage(target, g.glyphImage());
    }
    painter.end();
    return image;
}

} // namespace qm
