// The glyph rasteriser: paints one record's glyph with its fill, outline and shadow into a bitmap
// of the size that setNewSize measured, placed so that the margins reserved there hold every
// effect.

#include "Classes/render/CGGlyphBitmap.h"

#include "Classes/render/PathHelpers.h"
#include "Classes/render/RRGlossCausticShader.h"
#include "Platform/graphics/DrawingContext.h"
#include "Platform/text/Font.h"

#include <QDateTime>
#include <QFileInfo>

#include <cmath>

namespace qm {

namespace {

/// Makes the colour the fill and stroke colour; a missing colour leaves both as they were.
void setPaint(DrawingContext& context, const Color& color)
{
    if (!color.isValid())
        return;
    context.setFillColor(color);
    context.setStrokeColor(color);
}

/// The texture file's pixels. Every glyph of a project shares one texture, so the last file read
/// is kept until it changes on disk.
QImage textureImage(const QString& path)
{
    static QString cachedPath;
    static QDateTime cachedModified;
    static QImage cached;
    const QDateTime modified = QFileInfo(path).lastModified();
    if (path != cachedPath || modified != cachedModified) {
        cached = QImage(path);
        cachedPath = path;
        cachedModified = modified;
    }
    return cached;
}

enum class OutlineKind { Centred, Inside, None };

} // namespace

void CGGlyphBitmap::getImage()
{
    const int width = int(std::ceil(m_glyphRect.width()));
    const int height = int(std::ceil(m_glyphRect.height()));
    if (width <= 0 || height <= 0)
        return; // no bitmap can be made; the previous image stays
    QImage image(width, height, QImage::Format_RGBA8888_Premultiplied);
    if (image.isNull())
        return;
    image.fill(Qt::transparent);
    {
        DrawingContext context(image);
        drawGlyphInContext(&context);
    }
    m_glyphImage = image;
}

bool CGGlyphBitmap::drawGlyphInContext(DrawingContext* context) const
{
    if (!context)
        return false;
    DrawingContext& ctx = *context;
    ctx.saveGState();
    ctx.setAllowsAntialiasing(m_antialias);
    ctx.setShouldAntialias(m_antialias);

    const Font font = Font::fromName(m_fntName, m_glyphsize);
    const quint32 glyph = font.isNull() ? 0 : font.glyphForCharacter(m_charname);
    const QRectF B = font.isNull() ? QRectF() : font.glyphBoundingBox(glyph);

    // Left and bottom margins, mirroring the measuring: the outline's reach beyond the contour
    // (a whole half-width is nudged so that it lands inside the reserved pixels) and a drop
    // shadow's offset and blur.
    const float h = m_strokehowmode == 1 ? 0.0f : m_strokehowmode == 0 ? m_strokesize * 0.5f : m_strokesize;
    float left = 0, bottom = 0;
    if (m_stroke) {
        const bool whole = h == std::floor(h);
        left = std::floor(whole ? h - 0.1f : h);
        bottom = -std::ceil(whole ? h + 0.1f : h);
    }
    const bool dropShadow = m_shadow && m_shadowhowmode == 0;
    if (dropShadow) {
        if (m_shadowxoffset < 0)
            left -= m_shadowxoffset;
        if (m_shadowyoffset < 0)
            bottom += m_shadowyoffset;
        left += m_shadowblurradius;
        bottom -= m_shadowblurradius;
    }

    // Pen origin; a grid cell stands on the font's descender instead of the glyph's own box.
    const double originX = m_boundingPadding + (double(left) - std::floor(B.x())) + 1;
    const double originY = m_ongrid ? m_boundingPadding + (-double(bottom) - font.descender()) + 1
                                    : m_boundingPadding + std::floor(-B.y() - double(bottom)) + 1;
    const QPainterPath path =
        font.isNull() ? QPainterPath() : font.glyphPath(glyph, QPointF(originX, originY));
    ctx.setLineWidth(1.0);
    ctx.setMiterLimit(m_miterlimit);

    const QPointF shadowOffset(m_shadowxoffset, m_shadowyoffset);
    const Color shadowStyleColor = m_shadowColor.isValid() ? m_shadowColor.withAlpha(0.9) : Color();
    const Color shadowPaint = m_shadowColor.isValid() ? m_shadowColor.withAlpha(1.0) : Color();

    // The glyph's silhouette, for the passes that clip to the glyph rather than to its path.
    QImage mask;
    if ((m_fillGMode == 1 && m_glossy) || m_fillGMode == 2 ||
        (m_fillGMode == 0 && m_stroke && m_strokehowmode == 2)) {
        setPaint(ctx, m_glyphColor);
        ctx.fillPath(path);
        mask = ctx.snapshot();
        ctx.clearRect(m_glyphRect);
    }

    auto strokeAs = [&](OutlineKind kind) {
        if (kind == OutlineKind::Inside)
            strokeInside(ctx, path);
        else if (kind == OutlineKind::Centred)
            ctx.strokePath(path);
    };
    // Plain outlines take the stroke colour. A gradient outline is stroked in grey inside a
    // layer, and the gradient replaces the grey where the stroke has coverage.
    auto paintOutline = [&](OutlineKind kind) {
        if (m_strokeMode == 0) {
            setPaint(ctx, m_strokeColor);
            strokeAs(kind);
            return;
        }
        ctx.saveGState();
        ctx.beginTransparencyLayer();
        setPaint(ctx, Color::deviceWhite(0.5));
        strokeAs(kind);
        const QRectF box = ctx.clipBoundingBox();
        ctx.setBlendMode(BlendMode::SourceIn);
        ctx.drawLinearGradient(m_strokeGradient, box, m_strokegradiantAngle - 90.0);
        ctx.endTransparencyLayer();
        ctx.restoreGState();
    };

    // Drop shadow, cast by the fill or, for an outline-only glyph, by a thin stroke of the contour.
    if (dropShadow) {
        setShadowWithOffset(ctx, shadowOffset, m_shadowblurradius, shadowStyleColor);
        setPaint(ctx, shadowPaint);
        if (m_fillGMode != 0)
            ctx.fillPath(path);
        else if (m_stroke)
            ctx.strokePath(path);
        clearShadow(ctx);
    }

    // Outside outline: a doubled stroke whose inner half the fill covers, or, with no fill, is
    // cut away so the glyph stays hollow.
    if (m_stroke && m_strokehowmode == 2) {
        ctx.setLineWidth(2.0 * m_strokesize);
        paintOutline(OutlineKind::Centred);
        if (m_fillGMode == 0) {
            ctx.saveGState();
            ctx.clipToMask(m_glyphRect, mask);
            ctx.clearRect(m_glyphRect);
            ctx.restoreGState();
            mask = QImage();
        }
    }

    switch (m_fillGMode) {
    case 1:
        if (m_glossy) {
            ctx.saveGState();
            RRGlossCausticShader shader;
            shader.setGlossReflectionPower(0.2);
            shader.setGlossStartingWhite(0.6);
            shader.setGlossEndingWhite(0.2);
            shader.setExponentialCoefficient(1.2f);
            if (m_glyphColor.isValid())
                shader.setNoncausticColor(m_glyphColor);
            shader.update();
            ctx.clipToMask(m_glyphRect, mask);
            // From the top edge (t = 0, the gloss) down to the bottom edge (the caustic).
            shader.drawShadingFromPoint(QPointF(0, m_glyphRect.height()), QPointF(0, 0), &ctx);
            ctx.restoreGState();
            mask = QImage();
        } else {
            setPaint(ctx, m_glyphColor);
            ctx.fillPath(path);
        }
        break;
    case 2:
        if (!m_txtName.isEmpty()) {
            ctx.saveGState();
            const QImage texture = textureImage(m_txtName);
            ctx.clipToMask(m_glyphRect, mask);
            if (!texture.isNull())
                ctx.drawImage(m_glyphRect, texture); // the whole picture over the whole bitmap
            ctx.restoreGState();
            mask = QImage();
        }
        break;
    case 3:
        // An angle of 90 runs along the x axis.
        ctx.drawLinearGradient(m_colorGradient, path, m_gradiantAngle - 90.0);
        break;
    case 4:
        ctx.drawRadialGradient(m_colorGradient, path, QPointF(m_gradialX, m_gradialY));
        break;
    default:
        break;
    }

    // Inner shadow: a stroke along the contour, clipped to the glyph, whose offset shadow falls
    // inside it.
    if (m_shadow && m_shadowhowmode == 1) {
        ctx.saveGState();
        ctx.clipToPath(path);
        ctx.setLineWidth(std::fabs(m_shadowxoffset) + std::fabs(m_shadowyoffset));
        setShadowWithOffset(ctx, shadowOffset, m_shadowblurradius, shadowStyleColor);
        setPaint(ctx, shadowPaint);
        ctx.strokePath(path);
        clearShadow(ctx);
        ctx.restoreGState();
    }

    if (m_stroke && m_strokehowmode != 2) {
        ctx.setLineWidth(m_strokesize);
        paintOutline(m_strokehowmode == 1   ? OutlineKind::Inside
                     : m_strokehowmode == 0 ? OutlineKind::Centred
                                            : OutlineKind::None);
    }

    ctx.restoreGState();
    return true;
}

} // namespace qm
