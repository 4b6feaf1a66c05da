// Texture output: the atlas image at any scale, one image per glyph, the on-screen background
// and the alpha crop.

#include "Classes/atlas/TextureView.h"

#include "Classes/model/Format.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Platform/files/SaveFile.h"

#include <QDir>
#include <QPainter>

#include <cmath>

namespace qm {

namespace {

QImage transparentBitmap(int width, int height)
{
    QImage image(width, height, QImage::Format_RGBA8888_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

/// Draws `image` scaled into `target` (top-down image coordinates) with the resampling of a
/// quality code: 0 nearest, 1..3 bilinear, 4 the best downscaling Qt has (area averaging, then
/// a bilinear step for the fractional remainder).
void drawScaled(QPainter& painter, const QRectF& target, const QImage& image, int quality)
{
    if (quality == 4) {
        const QSize size(std::max(1, qRound(target.width())), std::max(1, qRound(target.height())));
        const QImage scaled = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        painter.setRenderHint(QPainter::SmoothPixmapTransform, true);
        painter.drawImage(target, scaled);
        return;
    }
    painter.drawImage(target, image);
}

} // namespace

QImage TextureView::getTexture(float scale, int quality, float)
{
    const float s = scale / 100.0f;
    const int width = m_sharedState ? m_sharedState->width() : int(m_frameSize.width());
    const int height = m_sharedState ? m_sharedState->height() : int(m_frameSize.height());
    const int outW = int(std::ceil(float(width) * s));
    const int outH = int(std::ceil(float(height) * s));
    if (outW <= 0 || outH <= 0)
        return transparentBitmap(std::max(outW, 0), std::max(outH, 0));
    QImage texture = transparentBitmap(outW, outH);
    QPainter painter(&texture);
    painter.setRenderHint(QPainter::Antialiasing, false);
    // At 100 % the glyphs are copied pixel for pixel and the resampling setting is left alone.
    int resampling = 1;
    if ((s != 1.0f || std::isnan(s)) && quality >= 0 && quality <= 4)
        resampling = quality;
    painter.setRenderHint(QPainter::SmoothPixmapTransform, resampling != 0);

    for (CAGlyphLayer* layer : glyphLayers()) {
        if (!layer->canfit())
            continue;
        layer->createBitmap();
        const QImage& glyph = layer->glyphBitmap().glyphImage();
        if (glyph.isNull())
            continue;
        const double w = layer->bounds().width(), h = layer->bounds().height();
        // The origin snaps to whole pixels; the size is scaled but not rounded.
        const int x = int(std::floor((layer->position().x() - w * 0.5) * s));
        const int y = int(std::floor((layer->position().y() - h * 0.5) * s)); // from the bottom
        const QRectF target(x, outH - y - h * s, w * s, h * s);
        drawScaled(painter, target, glyph, resampling);
    }
    painter.end();
    return texture;
}

bool TextureView::getMultipleTexture(float scale, int, const QString& dir, const QString& suffix, float)
{
    if (!QDir().mkpath(dir))
        return false;
    const float s = scale / 100.0f;
    bool result = true;
    for (CAGlyphLayer* layer : glyphLayers()) {
        if (!layer->canfit())
            continue;
        layer->createBitmap();
        const int w = int(std::ceil(layer->bounds().width() * s));
        const int h = int(std::ceil(layer->bounds().height() * s));
        if (w > 0 && h > 0) {
            QImage image = transparentBitmap(w, h);
            QPainter painter(&image);
            painter.setRenderHint(QPainter::Antialiasing, false);
            painter.setRenderHint(QPainter::SmoothPixmapTransform, true);
            painter.drawImage(QRectF(0, 0, w, h), layer->glyphBitmap().glyphImage());
            painter.end();
            result = savePngFile(image, format("%@/%i%@.png", {dir, int(layer->glyphBitmap().charname()), suffix}));
        }
        if (!result)
            return false;
    }
    return result;
}

void TextureView::updateCheckerboardAndColor(bool checkerBoard, const Color& backgroundColor)
{
    // With the checkerboard on, the background is see-through so the pattern behind it shows.
    const Color rgb = backgroundColor.isValid() ? backgroundColor.toCalibratedRGB() : Color::calibratedRGB(1, 1, 1);
    m_backgroundLayer->setBackgroundColor(Color::calibratedRGB(rgb.redComponent(), rgb.greenComponent(),
                                                               rgb.blueComponent(), checkerBoard ? 0.0 : 1.0));
    // The background covers the whole canvas: its frame, not only its size, follows the canvas,
    // or the glyphs placed inside it would shift when the texture size changes.
    m_backgroundLayer->setFrame(QRectF(QPointF(0, 0), m_frameSize));
    m_checkerboardLayer->setFrame(QRectF(QPointF(0, 0), m_frameSize));
    m_checkerboardLayer->setNeedsDisplay();
}

QRectF TextureView::GetCroppedRectFromCGImage(const QImage& image, const QRectF& rect) const
{
    const int threshold = m_sharedState ? m_sharedState->cropAlpha() : 0;
    const QImage rgba = image.format() == QImage::Format_RGBA8888_Premultiplied ||
                                image.format() == QImage::Format_RGBA8888
                            ? image
                            : image.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    const uchar* bytes = rgba.constBits();
    const qsizetype size = rgba.sizeInBytes();
    const int w = int(rect.width()), h = int(rect.height());
    // The pixels are read as rows of the rectangle's width from the start of the image, which
    // is what callers hand in: an image of exactly the rectangle. Bytes past the end count as
    // transparent.
    auto visible = [&](int i, int j) {
        const qsizetype at = (qsizetype(j) * w + i) * 4 + 3;
        return at >= 0 && at < size && bytes[at] > threshold;
    };
    auto rowEmpty = [&](int j) {
        for (int i = 0; i < w; ++i)
            if (visible(i, j))
                return false;
        return true;
    };
    auto columnEmpty = [&](int i) {
        for (int j = 0; j < h; ++j)
            if (visible(i, j))
                return false;
        return true;
    };
    double x = rect.x(), y = rect.y(), cw = rect.width(), ch = rect.height();
    for (int j = 0; j < h && rowEmpty(j); ++j)
        y += 1, ch -= 1;
    for (int j = h - 1; j >= 0 && rowEmpty(j); --j)
        ch -= 1;
    for (int i = 0; i < w && columnEmpty(i); ++i)
        x += 1, cw -= 1;
    for (int i = w - 1; i >= 0 && columnEmpty(i); --i)
        cw -= 1;
    if (cw <= 0 || ch <= 0)
        return QRectF(); // nothing visible
    return QRectF(x, y, cw, ch);
}

} // namespace qm
