#pragma once

#include "Classes/model/FontTableTypes.h"
#include "Classes/model/PublishTarget.h"
#include "Classes/model/SettingsExtensions.h"
#include "Platform/graphics/Color.h"
#include "Platform/graphics/Gradient.h"

#include <QMap>
#include <QString>
#include <QUrl>

namespace qm {

class CAGlyphLayer;
class KeyedArchiver;
class KeyedUnarchiver;
class TextureController;
class TextureView;

/// How a record starts: with the defaults of a new project, or all zero, false and none (the
/// state a project file is decoded into).
enum class InitialValues { Defaults, Empty };

/// The settings fields that have a plain getter and setter: (type, name, setter, default).
/// Declaration order within each group follows the settings table.
#define QM_SHAREDAPPSTATE_PLAIN_FIELDS(X)                                                                    \
    /* texture and canvas */                                                                                \
    X(int, version, setVersion, 200)                                                                       \
    X(int, width, setWidth, 512)                                                                           \
    X(int, height, setHeight, 512)                                                                         \
    X(Color, bgColor, setBgColor, Color::white().toCalibratedRGB())                                        \
    X(int, cropAlpha, setCropAlpha, 0)                                                                     \
    X(bool, autoSize, setAutoSize, true)                                                                   \
    X(bool, power2, setPower2, false)                                                                      \
    /* packing */                                                                                           \
    X(int, paddingSize, setPaddingSize, 2)                                                                 \
    X(int, paddingMethod, setPaddingMethod, 3)                                                             \
    X(bool, packingReversed, setPackingReversed, true)                                                     \
    X(bool, grid, setGrid, false)                                                                          \
    X(bool, gridAuto, setGridAuto, true)                                                                   \
    X(int, gridWidth, setGridWidth, 0)                                                                     \
    X(int, gridHeight, setGridHeight, 0)                                                                   \
    /* font and glyph metrics */                                                                            \
    X(int, trait, setTrait, 1)                                                                             \
    X(int, fontweight, setFontweight, 5)                                                                   \
    X(bool, loadedFontName, setLoadedFontName, false)                                                      \
    X(QString, loadedFontPath, setLoadedFontPath, QStringLiteral(""))                                      \
    X(QString, forcefontface, setForcefontface, QString())                                                 \
    X(int, spaceWidth, setSpaceWidth, 0)                                                                   \
    X(int, boundingPadding, setBoundingPadding, 0)                                                         \
    X(int, xadvancedOffset, setXadvancedOffset, 0)                                                         \
    X(bool, fixedadvance, setFixedadvance, false)                                                          \
    X(int, fixedadvancevalue, setFixedadvancevalue, 20)                                                    \
    X(int, postXOffset, setPostXOffset, 0)                                                                 \
    X(int, postYOffset, setPostYOffset, 0)                                                                 \
    X(bool, autoxy, setAutoxy, false)                                                                      \
    X(bool, kernings, setKernings, true)                                                                   \
    X(KerningTable, kerningTable, setKerningTable, KerningTable())                                         \
    X(CmapTable, cmapTable, setCmapTable, CmapTable())                                                     \
    /* fill */                                                                                              \
    X(int, fillGMode, setFillGMode, 3)                                                                     \
    X(Color, glyphColor, setGlyphColor, Color::darkGray().toCalibratedRGB())                               \
    X(int, gradiantAngle, setGradiantAngle, 30)                                                            \
    X(Color, startGradiantColor, setStartGradiantColor, Color::orange())                                   \
    X(Color, endGradiantColor, setEndGradiantColor, Color::yellow())                                       \
    X(Gradient, colorGradient, setColorGradient, Gradient::twoColor(Color::orange(), Color::yellow()))     \
    X(float, gradialX, setGradialX, 0.0f)                                                                  \
    X(float, gradialY, setGradialY, 0.0f)                                                                  \
    X(bool, antialias, setAntialias, true)                                                                 \
    /* stroke */                                                                                            \
    X(bool, stroke, setStroke, true)                                                                       \
    X(float, strokeSize, setStrokeSize, 1.0f)                                                              \
    X(Color, strokeColor, setStrokeColor, Color::black().toCalibratedRGB())                                \
    X(int, strokeMode, setStrokeMode, 0)                                                                   \
    X(int, strokehowmode, setStrokehowmode, 0)                                                             \
    X(int, strokegradiantAngle, setStrokegradiantAngle, 30)                                                \
    X(Color, startStrokeGradiantColor, setStartStrokeGradiantColor, Color::yellow())                       \
    X(Color, endStrokeGradiantColor, setEndStrokeGradiantColor, Color::red())                              \
    X(Gradient, strokeGradient, setStrokeGradient, Gradient::twoColor(Color::orange(), Color::yellow()))   \
    X(int, miterlimit, setMiterlimit, 10)                                                                  \
    /* shadow */                                                                                            \
    X(bool, shadow, setShadow, false)                                                                      \
    X(float, shadowXOffset, setShadowXOffset, 2.0f)                                                        \
    X(float, shadowYOffset, setShadowYOffset, -2.0f)                                                       \
    X(float, shadowBlurRadius, setShadowBlurRadius, 3.0f)                                                  \
    X(int, shadowhowmode, setShadowhowmode, 0)                                                             \
    /* preview */                                                                                           \
    X(QString, previewText, setPreviewText, QStringLiteral(""))                                            \
    X(QString, previewTextString, setPreviewTextString, QStringLiteral(""))                                \
    X(Color, prevBgColor, setPrevBgColor, Color::darkGray().toCalibratedRGB())                             \
    X(bool, isinpreviewmode, setIsinpreviewmode, false)                                                    \
    /* output and publishing */                                                                             \
    X(int, fontFormat, setFontFormat, 1)                                                                   \
    X(QString, publishName, setPublishName, QStringLiteral(""))                                            \
    X(QString, publishDirectory, setPublishDirectory, QStringLiteral(""))                                  \
    X(PublishTargets, targetsPublish, setTargetsPublish, PublishTargets())                                 \
    X(bool, publishautoclose, setPublishautoclose, false)                                                  \
    X(bool, autoSD, setAutoSD, true)                                                                       \
    X(int, autoSDLevel, setAutoSDLevel, 1)                                                                 \
    X(int, SDQuality, setSDQuality, 1)                                                                     \
    X(bool, downscalerecalc, setDownscalerecalc, false)                                                    \
    /* beyond the classic behaviour; the defaults are classic */                                            \
    X(SettingsExtensions, extensions, setExtensions, SettingsExtensions())                                 \
    /* editing state */                                                                                     \
    X(bool, workOnSelectionOnly, setWorkOnSelectionOnly, false)                                            \
    X(QUrl, projectName, setProjectName, QUrl())                                                           \
    X(bool, configchanged, setConfigchanged, false)                                                        \
    X(bool, blockredrawandpack, setBlockredrawandpack, false)

/// Fields whose setter of the same name is an informing setter: (type, name, default).
#define QM_SHAREDAPPSTATE_INFORMED_FIELDS(X)                                                                 \
    X(bool, checkerBoard, true)                                                                            \
    X(QString, fontName, QStringLiteral("Arial"))                                                          \
    X(int, glyphSize, 50)                                                                                  \
    X(int, lineHeight, 0)                                                                                  \
    X(QString, textGlyph, QStringLiteral(""))                                                              \
    X(QString, textureName, QStringLiteral(""))                                                            \
    X(bool, glossy, false)                                                                                 \
    X(Color, shadowColor, Color::calibratedWhite(0.0, 0.9))

using PublishTargets = QMap<QString, PublishTarget>;

/// The settings of one project. Informing setters store a value, mark the project changed
/// (`configchanged`) where the program does, and forward the change to the canvas (`txtView`) or
/// the window controller (`txtCont`); a missing back reference skips the forwarding. Plain
/// accessors only store and return.
class sharedAppState
{
public:
    explicit sharedAppState(InitialValues initial = InitialValues::Defaults);

    // Non-owning back references; either may be null.
    TextureView* txtView() const { return m_txtView; }
    void setTxtView(TextureView* view) { m_txtView = view; }
    TextureController* txtCont() const { return m_txtCont; }
    void setTxtCont(TextureController* controller) { m_txtCont = controller; }

#define QM_DECLARE_PLAIN(Type, name, Setter, Default)                                                         \
    const Type& name() const { return m_##name; }                                                             \
    void Setter(const Type& value) { m_##name = value; }
    QM_SHAREDAPPSTATE_PLAIN_FIELDS(QM_DECLARE_PLAIN)
#undef QM_DECLARE_PLAIN
#define QM_DECLARE_GETTER(Type, name, Default) const Type& name() const { return m_##name; }
    QM_SHAREDAPPSTATE_INFORMED_FIELDS(QM_DECLARE_GETTER)
#undef QM_DECLARE_GETTER

    // Informing setters.
    void setAntiAlias(bool on);
    /// Stores the size truncated toward zero.
    void setTextureSize(double width, double height);
    void setCheckerBoard(bool on);
    void setBackgroundColor(const Color& color);
    void setPackingOptions(int padding, int method, bool reversed, bool grid);
    void gridChanged(bool on);
    void gridSizeChanged(int width, int height);
    void gridAutoChanged(bool automatic);
    void postOffsetChanged(int x, int y);
    void setGlyphSize(int size);
    void setLineHeight(int lineHeight);
    void setGlyphTrait(int index);
    void setShadowInfo(bool on, float x, float y, float blur, int howMode);
    void setStrokeInfo(bool on, float size, const Color& color, int howMode);
    void setRadialX(float x, float y);
    void setShadowColor(const Color& color);
    void setGlossy(bool on);
    void setGradiant(int angle, const Gradient& gradient);
    void setStrokeGradiant(int angle, const Gradient& gradient);
    void forcefontface(const QString& face);
    void setTextGlyph(const QString& text);
    /// The gradient argument is ignored: the fill gradient only changes through setGradiant().
    void setFillMode(int mode, const Color& color, const Gradient& gradient);
    void setmStrokeMode(int mode);
    void setFontName(const QString& name);
    void LoadFontName(const QString& name);
    void setTextureName(const QString& path);
    void setNewBoundingPadding(int padding);
    void updatemiterlimit(int limit);
    void updatefixedadvance(bool on, int value);
    void updateGlyph(char16_t character, int xOffset, int yOffset, int xAdvance);
    void updateGlyphImage(char16_t character, bool custom, bool fitImage);
    /// Settings beyond the classic behaviour: stored, marked changed, and pushed to every glyph.
    void changeExtensions(const SettingsExtensions& extensions);

    // Relays: store nothing, mark nothing.
    void canfitall(bool allFit);
    void scaleCustomImage(float scale);
    void restoreOriScaleImage();
    void showGlyphDetails(CAGlyphLayer* layer);
    void updatelastclickedglyph(char16_t character, const QString& suffix);
    CAGlyphLayer* getCAGlyphLayer(char16_t character);
    void increaseSize() {}
    void fontweightChanged() {}

    /// True when every settings field (not the back references) is equal.
    bool sameSettings(const sharedAppState& other) const;

    // Keyed archiving: the "interface" record of a project file (sharedAppStateCoding.cpp).
    /// Writes the archived fields, in the file's key order, into the record being encoded.
    void encodeWithCoder(KeyedArchiver& coder) const;
    /// Reads the record being decoded into this object, which starts empty
    /// (InitialValues::Empty): missing keys stay 0, false or none, except the two stroke
    /// gradient colours, which fall back to yellow and red. Informs nobody, marks nothing.
    void initWithCoder(const KeyedUnarchiver& coder);

private:
    void markChanged() { m_configchanged = true; }

    TextureView* m_txtView = nullptr;
    TextureController* m_txtCont = nullptr;
#define QM_DECLARE_MEMBER(Type, name, Setter, Default) Type m_##name{};
    QM_SHAREDAPPSTATE_PLAIN_FIELDS(QM_DECLARE_MEMBER)
#undef QM_DECLARE_MEMBER
#define QM_DECLARE_MEMBER(Type, name, Default) Type m_##name{};
    QM_SHAREDAPPSTATE_INFORMED_FIELDS(QM_DECLARE_MEMBER)
#undef QM_DECLARE_MEMBER
};

/// The can't-fit warning shown through the controller.
extern const char* const kCantFitWarning;

} // namespace qm
