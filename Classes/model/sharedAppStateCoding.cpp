// The "interface" record of a project file: the settings' keys, coders and order are part of
// the file format, including the spellings that differ from the glyph record's.

#include "Classes/model/sharedAppState.h"

#include "Classes/model/PublishTargetCoding.h"
#include "Platform/archive/KeyedArchiver.h"
#include "Platform/archive/KeyedUnarchiver.h"

namespace qm {

void sharedAppState::encodeWithCoder(KeyedArchiver& coder) const
{
    coder.encodeInt(m_version, QStringLiteral("version"));
    coder.encodeInt(m_cropAlpha, QStringLiteral("cropAlpha"));
    coder.encodeInt(m_width, QStringLiteral("width"));
    coder.encodeInt(m_height, QStringLiteral("height"));
    coder.encodeBool(m_checkerBoard, QStringLiteral("checkerBoard"));
    coder.encodeInt(m_fixedadvancevalue, QStringLiteral("fixedadvancevalue"));
    coder.encodeInt(m_miterlimit, QStringLiteral("miterlimit"));
    coder.encodeBool(m_fixedadvance, QStringLiteral("fixedadvance"));
    coder.encodeBool(m_publishautoclose, QStringLiteral("publishautoclose"));
    coder.encodeObject(m_bgColor, QStringLiteral("bgColor"));
    coder.encodeInt(m_paddingSize, QStringLiteral("paddingSize"));
    coder.encodeInt(m_paddingMethod, QStringLiteral("paddingMethod"));
    coder.encodeBool(m_packingReversed, QStringLiteral("packingReversed"));
    coder.encodeBool(m_grid, QStringLiteral("grid"));
    coder.encodeBool(m_gridAuto, QStringLiteral("gridAuto"));
    coder.encodeInt(m_gridWidth, QStringLiteral("gridWidth"));
    coder.encodeInt(m_gridHeight, QStringLiteral("gridHeight"));
    coder.encodeInt(m_postXOffset, QStringLiteral("postXOffset"));
    coder.encodeInt(m_postYOffset, QStringLiteral("postYOffset"));
    coder.encodeObject(m_forcefontface, QStringLiteral("forcefontface"));
    coder.encodeObject(m_previewTextString, QStringLiteral("previewTextString"));
    coder.encodeInt(m_boundingPadding, QStringLiteral("boundingPadding"));
    coder.encodeInt(m_glyphSize, QStringLiteral("glyphSize"));
    coder.encodeInt(m_lineHeight, QStringLiteral("lineHeight"));
    coder.encodeInt(m_spaceWidth, QStringLiteral("spaceWidth"));
    coder.encodeInt(m_trait, QStringLiteral("trait"));
    coder.encodeInt(m_fontweight, QStringLiteral("fontweight"));
    coder.encodeBool(m_glossy, QStringLiteral("glossy"));
    coder.encodeBool(m_stroke, QStringLiteral("stroke"));
    coder.encodeObject(m_strokeColor, QStringLiteral("strokeColor"));
    coder.encodeObject(m_shadowColor, QStringLiteral("shadowColor"));
    coder.encodeBool(m_shadow, QStringLiteral("shadow"));
    coder.encodeFloat(m_strokeSize, QStringLiteral("strokeSize"));
    coder.encodeFloat(m_gradialX, QStringLiteral("gradialX"));
    coder.encodeFloat(m_gradialY, QStringLiteral("gradialY"));
    coder.encodeFloat(m_shadowXOffset, QStringLiteral("shadowXOffset"));
    coder.encodeFloat(m_shadowYOffset, QStringLiteral("shadowYOffset"));
    coder.encodeFloat(m_shadowBlurRadius, QStringLiteral("shadowBlurRadius"));
    coder.encodeInt(m_fillGMode, QStringLiteral("fillGMode"));
    coder.encodeObject(m_glyphColor, QStringLiteral("glyphColor"));
    coder.encodeObject(m_textGlyph, QStringLiteral("textGlyph"));
    coder.encodeObject(m_fontName, QStringLiteral("fontName"));
    coder.encodeObject(m_loadedFontPath, QStringLiteral("loadedFontPath"));
    coder.encodeBool(m_loadedFontName, QStringLiteral("loadedFontName"));
    coder.encodeObject(m_textureName, QStringLiteral("textureName"));
    coder.encodeObject(m_projectName, QStringLiteral("projectName"));
    coder.encodeBool(m_autoSize, QStringLiteral("autoSize"));
    coder.encodeBool(m_power2, QStringLiteral("power2"));
    coder.encodeBool(m_autoxy, QStringLiteral("autoxy"));
    coder.encodeInt(m_autoSDLevel, QStringLiteral("autoSDLevel"));
    coder.encodeBool(m_kernings, QStringLiteral("kernings"));
    coder.encodeObject(m_startGradiantColor, QStringLiteral("startGradiantColor"));
    coder.encodeObject(m_endGradiantColor, QStringLiteral("endGradiantColor"));
    coder.encodeInt(m_gradiantAngle, QStringLiteral("gradiantAngle"));
    coder.encodeBool(m_workOnSelectionOnly, QStringLiteral("workOnSelectionOnly"));
    coder.encodeBool(m_antialias, QStringLiteral("antialias"));
    coder.encodeObject(m_publishName, QStringLiteral("publishName"));
    coder.encodeObject(m_publishDirectory, QStringLiteral("publishDirectory"));
    coder.encodeInt(m_xadvancedOffset, QStringLiteral("xadvancedOffset"));
    coder.encodeInt(m_fontFormat, QStringLiteral("fontFormat"));
    coder.encodeInt(m_SDQuality, QStringLiteral("SDQuality"));
    coder.encodeObject(m_startStrokeGradiantColor, QStringLiteral("startStrokeGradiantColor"));
    coder.encodeObject(m_endStrokeGradiantColor, QStringLiteral("endStrokeGradiantColor"));
    coder.encodeInt(m_strokegradiantAngle, QStringLiteral("strokegradiantAngle"));
    coder.encodeInt(m_strokeMode, QStringLiteral("strokeMode"));
    coder.encodeInt(m_strokehowmode, QStringLiteral("strokehowmode"));
    coder.encodeInt(m_shadowhowmode, QStringLiteral("shadowhowmode"));
    coder.encodeObject(m_strokeGradient, QStringLiteral("strokeGradient"));
    coder.encodeObject(m_colorGradient, QStringLiteral("colorGradient"));
    coder.encodeBool(m_downscalerecalc, QStringLiteral("downscalerecalc"));
    coder.encodeObject(encodePublishTargets(coder, m_targetsPublish), QStringLiteral("targetsPublish"));
    // "autoSD" is read from older files but never written.
    m_extensions.encodeWithCoder(coder);
}

void sharedAppState::initWithCoder(const KeyedUnarchiver& coder)
{
    m_version = coder.decodeInt(QStringLiteral("version"));
    m_cropAlpha = coder.decodeInt(QStringLiteral("cropAlpha"));
    m_width = coder.decodeInt(QStringLiteral("width"));
    m_height = coder.decodeInt(QStringLiteral("height"));
    m_checkerBoard = coder.decodeBool(QStringLiteral("checkerBoard"));
    m_fixedadvancevalue = coder.decodeInt(QStringLiteral("fixedadvancevalue"));
    m_miterlimit = coder.decodeInt(QStringLiteral("miterlimit"));
    m_fixedadvance = coder.decodeBool(QStringLiteral("fixedadvance"));
    m_publishautoclose = coder.decodeBool(QStringLiteral("publishautoclose"));
    m_bgColor = coder.decodeColor(QStringLiteral("bgColor"));
    m_paddingSize = coder.decodeInt(QStringLiteral("paddingSize"));
    m_paddingMethod = coder.decodeInt(QStringLiteral("paddingMethod"));
    m_packingReversed = coder.decodeBool(QStringLiteral("packingReversed"));
    m_grid = coder.decodeBool(QStringLiteral("grid"));
    m_gridAuto = coder.decodeBool(QStringLiteral("gridAuto"));
    m_gridWidth = coder.decodeInt(QStringLiteral("gridWidth"));
    m_gridHeight = coder.decodeInt(QStringLiteral("gridHeight"));
    m_postXOffset = coder.decodeInt(QStringLiteral("postXOffset"));
    m_postYOffset = coder.decodeInt(QStringLiteral("postYOffset"));
    m_forcefontface = coder.decodeString(QStringLiteral("forcefontface"));
    m_previewTextString = coder.decodeString(QStringLiteral("previewTextString"));
    m_boundingPadding = coder.decodeInt(QStringLiteral("boundingPadding"));
    m_glyphSize = coder.decodeInt(QStringLiteral("glyphSize"));
    m_lineHeight = coder.decodeInt(QStringLiteral("lineHeight"));
    m_spaceWidth = coder.decodeInt(QStringLiteral("spaceWidth"));
    m_trait = coder.decodeInt(QStringLiteral("trait"));
    m_fontweight = coder.decodeInt(QStringLiteral("fontweight"));
    m_glossy = coder.decodeBool(QStringLiteral("glossy"));
    m_stroke = coder.decodeBool(QStringLiteral("stroke"));
    m_strokeColor = coder.decodeColor(QStringLiteral("strokeColor"));
    m_shadowColor = coder.decodeColor(QStringLiteral("shadowColor"));
    m_shadow = coder.decodeBool(QStringLiteral("shadow"));
    m_strokeSize = coder.decodeFloat(QStringLiteral("strokeSize"));
    m_gradialX = coder.decodeFloat(QStringLiteral("gradialX"));
    m_gradialY = coder.decodeFloat(QStringLiteral("gradialY"));
    m_shadowXOffset = coder.decodeFloat(QStringLiteral("shadowXOffset"));
    m_shadowYOffset = coder.decodeFloat(QStringLiteral("shadowYOffset"));
    m_shadowBlurRadius = coder.decodeFloat(QStringLiteral("shadowBlurRadius"));
    m_fillGMode = coder.decodeInt(QStringLiteral("fillGMode"));
    m_glyphColor = coder.decodeColor(QStringLiteral("glyphColor"));
    m_textGlyph = coder.decodeString(QStringLiteral("textGlyph"));
    m_fontName = coder.decodeString(QStringLiteral("fontName"));
    m_loadedFontPath = coder.decodeString(QStringLiteral("loadedFontPath"));
    m_loadedFontName = coder.decodeBool(QStringLiteral("loadedFontName"));
    m_textureName = coder.decodeString(QStringLiteral("textureName"));
    m_projectName = coder.decodeUrl(QStringLiteral("projectName"));
    m_autoSize = coder.decodeBool(QStringLiteral("autoSize"));
    m_power2 = coder.decodeBool(QStringLiteral("power2"));
    m_autoxy = coder.decodeBool(QStringLiteral("autoxy"));
    m_autoSDLevel = coder.decodeInt(QStringLiteral("autoSDLevel"));
    m_kernings = coder.decodeBool(QStringLiteral("kernings"));
    m_startGradiantColor = coder.decodeColor(QStringLiteral("startGradiantColor"));
    m_endGradiantColor = coder.decodeColor(QStringLiteral("endGradiantColor"));
    m_gradiantAngle = coder.decodeInt(QStringLiteral("gradiantAngle"));
    m_workOnSelectionOnly = coder.decodeBool(QStringLiteral("workOnSelectionOnly"));
    m_antialias = coder.decodeBool(QStringLiteral("antialias"));
    m_publishName = coder.decodeString(QStringLiteral("publishName"));
    m_publishDirectory = coder.decodeString(QStringLiteral("publishDirectory"));
    m_xadvancedOffset = coder.decodeInt(QStringLiteral("xadvancedOffset"));
    m_fontFormat = coder.decodeInt(QStringLiteral("fontFormat"));
    m_SDQuality = coder.decodeInt(QStringLiteral("SDQuality"));
    m_startStrokeGradiantColor = coder.decodeColor(QStringLiteral("startStrokeGradiantColor"));
    m_endStrokeGradiantColor = coder.decodeColor(QStringLiteral("endStrokeGradiantColor"));
    m_strokegradiantAngle = coder.decodeInt(QStringLiteral("strokegradiantAngle"));
    m_strokeMode = coder.decodeInt(QStringLiteral("strokeMode"));
    m_strokehowmode = coder.decodeInt(QStringLiteral("strokehowmode"));
    m_shadowhowmode = coder.decodeInt(QStringLiteral("shadowhowmode"));
    m_strokeGradient = coder.decodeGradient(QStringLiteral("strokeGradient"));
    m_colorGradient = coder.decodeGradient(QStringLiteral("colorGradient"));
    m_downscalerecalc = coder.decodeBool(QStringLiteral("downscalerecalc"));
    m_targetsPublish = decodePublishTargets(coder, coder.decodeObject(QStringLiteral("targetsPublish")));
    m_autoSD = coder.decodeBool(QStringLiteral("autoSD"));
    m_extensions.initWithCoder(coder);

    // Older files lack the stroke gradient colours; their defaults were yellow to red.
    if (!m_startStrokeGradiantColor.isValid())
        m_startStrokeGradiantColor = Color::yellow();
    if (!m_endStrokeGradiantColor.isValid())
        m_endStrokeGradiantColor = Color::red();
    m_kerningTable = KerningTable();
    m_cmapTable = CmapTable();
}

} // namespace qm
