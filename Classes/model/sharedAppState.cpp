#include "Classes/model/sharedAppState.h"

#include "Classes/atlas/TextureView.h"
#include "Classes/model/Format.h"
#include "Classes/model/TextureController.h"

namespace qm {

const char* const kCantFitWarning =
    "Warning! Can't fit all letters, please reduce the 'glyph size' or the letters count.";

sharedAppState::sharedAppState(InitialValues initial)
{
    if (initial == InitialValues::Empty)
        return; // every member is value-initialised: 0, false, none
#define QM_SET_DEFAULT(Type, name, Setter, Default) m_##name = Default;
    QM_SHAREDAPPSTATE_PLAIN_FIELDS(QM_SET_DEFAULT)
#undef QM_SET_DEFAULT
#define QM_SET_DEFAULT(Type, name, Default) m_##name = Default;
    QM_SHAREDAPPSTATE_INFORMED_FIELDS(QM_SET_DEFAULT)
#undef QM_SET_DEFAULT
}

bool sharedAppState::sameSettings(const sharedAppState& other) const
{
#define QM_COMPARE(Type, name, ...)                                                                           \
    if (!(m_##name == other.m_##name))                                                                        \
        return false;
    QM_SHAREDAPPSTATE_PLAIN_FIELDS(QM_COMPARE)
    QM_SHAREDAPPSTATE_INFORMED_FIELDS(QM_COMPARE)
#undef QM_COMPARE
    return true;
}

void sharedAppState::setAntiAlias(bool on)
{
    markChanged();
    m_antialias = on;
    if (m_txtView)
        m_txtView->setAntiAlias(on);
}

void sharedAppState::setTextureSize(double width, double height)
{
    markChanged();
    m_width = static_cast<int>(width);
    m_height = static_cast<int>(height);
    // While the preview is shown the canvas is the preview's; the size waits for the texture.
    if (m_txtView && !m_isinpreviewmode) {
        m_txtView->setFrameSize(QSizeF(m_width, m_height));
        m_txtView->updateCheckerboardAndColor(m_checkerBoard, m_bgColor);
        m_txtView->Packing(m_paddingSize, m_paddingMethod, m_packingReversed, m_grid);
    }
}

void sharedAppState::setCheckerBoard(bool on)
{
    markChanged();
    m_checkerBoard = on;
    if (m_txtView)
        m_txtView->updateCheckerboardAndColor(m_checkerBoard, m_bgColor);
}

void sharedAppState::setBackgroundColor(const Color& color)
{
    markChanged();
    m_bgColor = color.toCalibratedRGB();
    if (m_txtView)
        m_txtView->updateCheckerboardAndColor(m_checkerBoard, m_bgColor);
}

void sharedAppState::setPackingOptions(int padding, int method, bool reversed, bool grid)
{
    markChanged();
    m_paddingSize = padding;
    m_paddingMethod = method;
    m_packingReversed = reversed;
    m_grid = grid;
    if (m_txtView)
        m_txtView->Packing(m_paddingSize, m_paddingMethod, m_packingReversed, m_grid);
}

// The grid and post-offset setters leave `configchanged` alone, as the program always has.
void sharedAppState::gridChanged(bool on)
{
    m_grid = on;
    if (m_txtView)
        m_txtView->setGlyphGrid(on);
}

void sharedAppState::gridSizeChanged(int width, int height)
{
    m_gridWidth = width;
    m_gridHeight = height;
    gridAutoChanged(m_gridAuto);
}

void sharedAppState::gridAutoChanged(bool automatic)
{
    m_gridAuto = automatic;
    if (m_txtView)
        m_txtView->setGlyphGridSize(m_gridWidth, m_gridHeight, m_gridAuto);
}

void sharedAppState::postOffsetChanged(int x, int y)
{
    m_postXOffset = x;
    m_postYOffset = y;
    if (m_txtView)
        m_txtView->updatePreviewPos();
}

void sharedAppState::setGlyphSize(int size)
{
    markChanged();
    m_glyphSize = size;
    if (m_txtView)
        m_txtView->changeAllGlyphsSize(size);
}

void sharedAppState::setLineHeight(int lineHeight)
{
    markChanged();
    m_lineHeight = lineHeight;
    if (m_txtView && m_isinpreviewmode)
        m_txtView->changeLineHeight(lineHeight);
}

void sharedAppState::setGlyphTrait(int index)
{
    markChanged();
    m_trait = index;
    if (m_txtView)
        m_txtView->setGlyphTrait(index);
}

void sharedAppState::setShadowInfo(bool on, float x, float y, float blur, int howMode)
{
    markChanged();
    m_shadow = on;
    m_shadowXOffset = x;
    m_shadowYOffset = y;
    m_shadowBlurRadius = blur;
    m_shadowhowmode = howMode;
    if (m_txtView)
        m_txtView->glyphShadow(on, x, y, blur, howMode);
}

void sharedAppState::setStrokeInfo(bool on, float size, const Color& color, int howMode)
{
    markChanged();
    m_stroke = on;
    m_strokeSize = size;
    m_strokeColor = color.toCalibratedRGB();
    m_strokehowmode = howMode;
    if (m_txtView)
        m_txtView->glyphStroke(on, size, m_strokeColor, howMode);
}

void sharedAppState::setRadialX(float x, float y)
{
    markChanged();
    m_gradialX = x;
    m_gradialY = y;
    if (m_txtView)
        m_txtView->setRadialX(x, y);
}

void sharedAppState::setShadowColor(const Color& color)
{
    // Picking a shadow colour does not count as a change of the project.
    m_shadowColor = color.toCalibratedRGB();
    if (m_txtView)
        m_txtView->shadowColorChanged(m_shadowColor);
}

void sharedAppState::setGlossy(bool on)
{
    markChanged();
    m_glossy = on;
    if (m_txtView)
        m_txtView->glyphGlossy(on);
}

void sharedAppState::setGradiant(int angle, const Gradient& gradient)
{
    markChanged();
    m_gradiantAngle = angle;
    m_colorGradient = gradient;
    if (m_txtView)
        m_txtView->setGradiant(angle, gradient);
}

void sharedAppState::setStrokeGradiant(int angle, const Gradient& gradient)
{
    markChanged();
    m_strokegradiantAngle = angle;
    m_strokeGradient = gradient;
    if (m_txtView)
        m_txtView->setStrokeGradiant(angle, gradient);
}

void sharedAppState::forcefontface(const QString& face)
{
    markChanged();
    m_forcefontface = face;
}

void sharedAppState::setTextGlyph(const QString& text)
{
    markChanged();
    m_textGlyph = text;
    if (m_txtView)
        m_txtView->refreshGlyphLetters(text);
}

void sharedAppState::setFillMode(int mode, const Color& color, const Gradient&)
{
    markChanged();
    m_fillGMode = mode;
    m_glyphColor = color.toDeviceRGB();
    if (m_txtView)
        m_txtView->updateFillGlyph(mode, m_glyphColor, Gradient());
}

void sharedAppState::setmStrokeMode(int mode)
{
    markChanged();
    m_strokeMode = mode;
    if (m_txtView)
        m_txtView->updateStrokeMode(mode);
}

void sharedAppState::setFontName(const QString& name)
{
    markChanged();
    m_fontName = name;
    if (m_txtView)
        m_txtView->setGlyphFont(name);
}

void sharedAppState::LoadFontName(const QString& name)
{
    markChanged();
    m_fontName = name;
    m_loadedFontName = true;
    if (m_txtView)
        m_txtView->setGlyphFont(name);
}

void sharedAppState::setTextureName(const QString& path)
{
    markChanged();
    m_textureName = path;
    if (m_txtView)
        m_txtView->setGlyphTexture();
}

void sharedAppState::setNewBoundingPadding(int padding)
{
    markChanged();
    m_boundingPadding = padding;
    if (m_txtView)
        m_txtView->setBoundingPadding(padding);
}

void sharedAppState::updatemiterlimit(int limit)
{
    markChanged();
    m_miterlimit = limit;
    if (m_txtView)
        m_txtView->setMiterLimit(limit);
}

void sharedAppState::updatefixedadvance(bool on, int value)
{
    markChanged();
    m_fixedadvance = on;
    m_fixedadvancevalue = value;
}

void sharedAppState::updateGlyph(char16_t character, int xOffset, int yOffset, int xAdvance)
{
    markChanged();
    if (m_txtView)
        m_txtView->updateGlyph(character, xOffset, yOffset, xAdvance);
}

void sharedAppState::updateGlyphImage(char16_t character, bool custom, bool fitImage)
{
    markChanged();
    if (m_txtView)
        m_txtView->updateGlyphImage(character, custom, fitImage);
}

void sharedAppState::canfitall(bool allFit)
{
    if (m_txtCont)
        m_txtCont->updateWarningMessage(allFit ? QString() : QString::fromUtf8(kCantFitWarning));
}

void sharedAppState::scaleCustomImage(float scale)
{
    if (m_txtView)
        m_txtView->scaleCustomImage(scale);
}

void sharedAppState::restoreOriScaleImage()
{
    if (m_txtView)
        m_txtView->restoreOriScaleImage();
}

void sharedAppState::showGlyphDetails(CAGlyphLayer* layer)
{
    if (m_txtCont)
        m_txtCont->showGlyphDetails(layer);
}

void sharedAppState::updatelastclickedglyph(char16_t character, const QString& suffix)
{
    if (m_txtCont)
        m_txtCont->updateClickedGlyph(
            format("Last clicked: %@ - %i (0x%lX) %@", {character, int(character), int(character), suffix}));
}

CAGlyphLayer* sharedAppState::getCAGlyphLayer(char16_t character)
{
    return m_txtView ? m_txtView->getCAGlyphLayer(character & 0xFFFF) : nullptr;
}

void sharedAppState::changeExtensions(const SettingsExtensions& extensions)
{
    markChanged();
    m_extensions = extensions;
    if (m_txtView)
        m_txtView->setExtensions(extensions);
}

} // namespace qm
