// One glyph record of a project file's "allglyphs". Keys, coders and order are part of the file
// format; note the spellings that differ from the settings record ("glyphsize", "strokesize",
// "shadowxoffset", "strokestartGradiantColor", ...).

#include "Classes/render/CGGlyphBitmap.h"

#include "Platform/archive/KeyedArchiver.h"
#include "Platform/archive/KeyedUnarchiver.h"

namespace qm {

void CGGlyphBitmap::encodeWithCoder(KeyedArchiver& coder) const
{
    coder.encodeObject(QString(QChar(m_charname)), QStringLiteral("charname"));
    coder.encodeInt(m_glyphsize, QStringLiteral("glyphsize"));
    coder.encodeInt(m_trait, QStringLiteral("trait"));
    coder.encodeInt(m_fontweight, QStringLiteral("fontweight"));
    coder.encodeInt(m_forceWidth, QStringLiteral("forceWidth"));
    coder.encodeInt(m_forceHeight, QStringLiteral("forceHeight"));
    coder.encodeBool(m_ongrid, QStringLiteral("ongrid"));
    coder.encodeBool(m_ongridAuto, QStringLiteral("ongridAuto"));
    coder.encodeInt(m_addXOffset, QStringLiteral("addXOffset"));
    coder.encodeInt(m_addYOffset, QStringLiteral("addYOffset"));
    coder.encodeInt(m_addXAdvance, QStringLiteral("addXAdvance"));
    coder.encodeBool(m_hasCustomPicture, QStringLiteral("hasCustomPicture"));
    coder.encodeBool(m_fitImage, QStringLiteral("fitImage"));
    if (m_hasCustomPicture && !m_glyphImage.isNull())
        coder.encodeObject(coder.image(m_glyphImage, m_frameImage.size()), QStringLiteral("image"));
    coder.encodeBool(m_glossy, QStringLiteral("glossy"));
    coder.encodeBool(m_stroke, QStringLiteral("stroke"));
    coder.encodeObject(m_strokeColor, QStringLiteral("strokeColor"));
    coder.encodeObject(m_shadowColor, QStringLiteral("shadowColor"));
    coder.encodeBool(m_shadow, QStringLiteral("shadow"));
    coder.encodeFloat(m_strokesize, QStringLiteral("strokesize"));
    coder.encodeFloat(m_shadowxoffset, QStringLiteral("shadowxoffset"));
    coder.encodeFloat(m_shadowyoffset, QStringLiteral("shadowyoffset"));
    coder.encodeFloat(m_shadowblurradius, QStringLiteral("shadowblurradius"));
    coder.encodeInt(m_fillGMode, QStringLiteral("fillGMode"));
    coder.encodeObject(m_glyphColor, QStringLiteral("glyphColor"));
    coder.encodeFloat(m_gradialX, QStringLiteral("gradialX"));
    coder.encodeFloat(m_gradialY, QStringLiteral("gradialY"));
    coder.encodeObject(m_fntName, QStringLiteral("fntName"));
    coder.encodeBool(m_loadedFontName, QStringLiteral("loadedFontName"));
    coder.encodeObject(m_txtName, QStringLiteral("txtName"));
    coder.encodeInt(m_gradiantAngle, QStringLiteral("gradiantAngle"));
    coder.encodeBool(m_antialias, QStringLiteral("antialias"));
    coder.encodeInt(m_strokegradiantAngle, QStringLiteral("strokegradiantAngle"));
    coder.encodeInt(m_strokeMode, QStringLiteral("strokeMode"));
    coder.encodeInt(m_strokehowmode, QStringLiteral("strokehowmode"));
    coder.encodeInt(m_shadowhowmode, QStringLiteral("shadowhowmode"));
    coder.encodeInt(m_boundingPadding, QStringLiteral("boundingPadding"));
    coder.encodeObject(m_colorGradient, QStringLiteral("colorGradient"));
    coder.encodeObject(m_strokeGradient, QStringLiteral("strokeGradient"));
    // The four two-colour gradient fields are read from older files but never written.
}

void CGGlyphBitmap::initWithCoder(const KeyedUnarchiver& coder)
{
    const QString character = coder.decodeString(QStringLiteral("charname"));
    m_charname = character.isEmpty() ? char16_t(0) : character.front().unicode();
    m_glyphsize = coder.decodeInt(QStringLiteral("glyphsize"));
    m_trait = coder.decodeInt(QStringLiteral("trait"));
    m_fontweight = coder.decodeInt(QStringLiteral("fontweight"));
    m_forceWidth = coder.decodeInt(QStringLiteral("forceWidth"));
    m_forceHeight = coder.decodeInt(QStringLiteral("forceHeight"));
    m_ongrid = coder.decodeBool(QStringLiteral("ongrid"));
    m_ongridAuto = coder.decodeBool(QStringLiteral("ongridAuto"));
    m_addXOffset = coder.decodeInt(QStringLiteral("addXOffset"));
    m_addYOffset = coder.decodeInt(QStringLiteral("addYOffset"));
    m_addXAdvance = coder.decodeInt(QStringLiteral("addXAdvance"));
    m_hasCustomPicture = coder.decodeBool(QStringLiteral("hasCustomPicture"));
    m_fitImage = coder.decodeBool(QStringLiteral("fitImage"));
    if (m_hasCustomPicture) {
        const QImage picture = coder.decodeImage(QStringLiteral("image"));
        if (!picture.isNull()) {
            // The picture becomes the glyph's bitmap, in the format every rendered glyph has.
            m_glyphImage = picture.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
            m_frameImage = QRectF(0, 0, m_glyphImage.width(), m_glyphImage.height());
        }
    }
    m_glossy = coder.decodeBool(QStringLiteral("glossy"));
    m_stroke = coder.decodeBool(QStringLiteral("stroke"));
    m_strokeColor = coder.decodeColor(QStringLiteral("strokeColor"));
    m_shadowColor = coder.decodeColor(QStringLiteral("shadowColor"));
    m_shadow = coder.decodeBool(QStringLiteral("shadow"));
    m_strokesize = coder.decodeFloat(QStringLiteral("strokesize"));
    m_shadowxoffset = coder.decodeFloat(QStringLiteral("shadowxoffset"));
    m_shadowyoffset = coder.decodeFloat(QStringLiteral("shadowyoffset"));
    m_shadowblurradius = coder.decodeFloat(QStringLiteral("shadowblurradius"));
    m_fillGMode = coder.decodeInt(QStringLiteral("fillGMode"));
    m_glyphColor = coder.decodeColor(QStringLiteral("glyphColor"));
    m_gradialX = coder.decodeFloat(QStringLiteral("gradialX"));
    m_gradialY = coder.decodeFloat(QStringLiteral("gradialY"));
    m_fntName = coder.decodeString(QStringLiteral("fntName"));
    m_loadedFontName = coder.decodeBool(QStringLiteral("loadedFontName"));
    m_txtName = coder.decodeString(QStringLiteral("txtName"));
    m_gradiantAngle = coder.decodeInt(QStringLiteral("gradiantAngle"));
    m_antialias = coder.decodeBool(QStringLiteral("antialias"));
    m_strokegradiantAngle = coder.decodeInt(QStringLiteral("strokegradiantAngle"));
    m_strokeMode = coder.decodeInt(QStringLiteral("strokeMode"));
    m_strokehowmode = coder.decodeInt(QStringLiteral("strokehowmode"));
    m_shadowhowmode = coder.decodeInt(QStringLiteral("shadowhowmode"));
    m_boundingPadding = coder.decodeInt(QStringLiteral("boundingPadding"));
    m_startGradiantColor = coder.decodeColor(QStringLiteral("startGradiantColor"));
    m_endGradiantColor = coder.decodeColor(QStringLiteral("endGradiantColor"));
    m_strokestartGradiantColor = coder.decodeColor(QStringLiteral("strokestartGradiantColor"));
    m_strokeendGradiantColor = coder.decodeColor(QStringLiteral("strokeendGradiantColor"));
    m_colorGradient = coder.decodeGradient(QStringLiteral("colorGradient"));
    m_strokeGradient = coder.decodeGradient(QStringLiteral("strokeGradient"));

    // Records from before multi-stop gradients carry only the two-colour fields. A gradient that
    // is present but unreadable counts as missing here, so the glyph still gets a fill.
    if (!m_colorGradient.isValid() && !m_strokeGradient.isValid()) {
        m_colorGradient = Gradient::twoColor(m_startGradiantColor, m_endGradiantColor);
        m_strokeGradient = Gradient::twoColor(m_strokestartGradiantColor, m_strokeendGradiantColor);
    }
}

} // namespace qm
