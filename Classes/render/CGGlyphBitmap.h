#pragma once

#include "Classes/model/SettingsExtensions.h"
#include "Classes/model/sharedAppState.h"
#include "Platform/graphics/Color.h"
#include "Platform/graphics/Gradient.h"

#include <QImage>
#include <QRectF>
#include <QString>

namespace qm {

class DrawingContext;
class KeyedArchiver;
class KeyedUnarchiver;

/// The record fields: (type, name, setter, default of a new glyph). Every field has a plain
/// getter and setter without side effects.
#define QM_CGGLYPHBITMAP_FIELDS(X)                                                                           \
    X(QImage, glyphImage, setGlyphImage, QImage())                                                         \
    X(QRectF, glyphRect, setGlyphRect, QRectF())                                                           \
    X(QRectF, glyphFrame, setGlyphFrame, QRectF())                                                         \
    X(QRectF, frameImage, setFrameImage, QRectF())                                                         \
    X(QString, txtName, setTxtName, QString())                                                             \
    X(QString, fntName, setFntName, QStringLiteral("Arial"))                                               \
    X(bool, loadedFontName, setLoadedFontName, false)                                                      \
    X(char16_t, charname, setCharname, 0)                                                                  \
    X(int, trait, setTrait, 1)                                                                             \
    X(int, fontweight, setFontweight, 5)                                                                   \
    X(int, glyphsize, setGlyphsize, 50)                                                                    \
    X(bool, stroke, setStroke, true)                                                                       \
    X(Color, strokeColor, setStrokeColor, Color())                                                         \
    X(Color, shadowColor, setShadowColor, Color())                                                         \
    X(float, strokesize, setStrokesize, 2.0f)                                                              \
    X(bool, glossy, setGlossy, false)                                                                      \
    X(bool, antialias, setAntialias, true)                                                                 \
    X(Color, startGradiantColor, setStartGradiantColor, Color())                                           \
    X(Color, endGradiantColor, setEndGradiantColor, Color())                                               \
    X(int, gradiantAngle, setGradiantAngle, 0)                                                             \
    X(Color, strokestartGradiantColor, setStrokestartGradiantColor, Color())                               \
    X(Color, strokeendGradiantColor, setStrokeendGradiantColor, Color())                                   \
    X(Gradient, colorGradient, setColorGradient, Gradient::twoColor(Color::orange(), Color::yellow()))     \
    X(Gradient, strokeGradient, setStrokeGradient, Gradient::twoColor(Color::orange(), Color::yellow()))   \
    X(int, strokegradiantAngle, setStrokegradiantAngle, 0)                                                 \
    X(int, strokeMode, setStrokeMode, 0)                                                                   \
    X(int, miterlimit, setMiterlimit, 10)                                                                  \
    X(bool, shadow, setShadow, false)                                                                      \
    X(float, shadowxoffset, setShadowxoffset, 2.0f)                                                        \
    X(float, shadowyoffset, setShadowyoffset, -2.0f)                                                       \
    X(float, shadowblurradius, setShadowblurradius, 2.0f)                                                  \
    X(int, fillGMode, setFillGMode, 0)                                                                     \
    X(Color, glyphColor, setGlyphColor, Color())                                                           \
    X(int, maxxad, setMaxxad, 0)                                                                           \
    X(int, xadvanced, setXadvanced, 0)                                                                     \
    X(int, xoffset, setXoffset, 0)                                                                         \
    X(int, yoffset, setYoffset, 0)                                                                         \
    X(int, yoffsetPreview, setYoffsetPreview, 0)                                                           \
    X(int, lineHeight, setLineHeight, 0)                                                                   \
    X(int, descender, setDescender, 0)                                                                     \
    X(int, boundingPadding, setBoundingPadding, 0)                                                         \
    X(int, shadowhowmode, setShadowhowmode, 0)                                                             \
    X(int, strokehowmode, setStrokehowmode, 0)                                                             \
    X(int, forceWidth, setForceWidth, 0)                                                                   \
    X(int, forceHeight, setForceHeight, 0)                                                                 \
    X(bool, ongrid, setOngrid, false)                                                                      \
    X(bool, ongridAuto, setOngridAuto, true)                                                               \
    X(bool, autoxy, setAutoxy, false)                                                                      \
    X(float, gradialX, setGradialX, 0.0f)                                                                  \
    X(float, gradialY, setGradialY, 0.0f)                                                                  \
    X(bool, hasCustomPicture, setHasCustomPicture, false)                                                  \
    X(bool, fitImage, setFitImage, true)                                                                   \
    X(int, addXOffset, setAddXOffset, 0)                                                                   \
    X(int, addYOffset, setAddYOffset, 0)                                                                   \
    X(int, addXAdvance, setAddXAdvance, 0)

/// One glyph of the project: its character, its own copy of the style settings, the metrics
/// measured from the font, and its rendered bitmap. The per-glyph corrections (`addXOffset`,
/// `addYOffset`, `addXAdvance`) are carried here and applied by the descriptors and the preview.
class CGGlyphBitmap
{
public:
    /// A new glyph for one UTF-16 code unit, with the defaults; neither measured nor rendered.
    explicit CGGlyphBitmap(char16_t character);
    /// All fields zero, false and none: the state a project file is decoded into.
    explicit CGGlyphBitmap(InitialValues initial = InitialValues::Empty);

#define QM_DECLARE_FIELD(Type, name, Setter, Default)                                                        \
    const Type& name() const { return m_##name; }                                                             \
    void Setter(const Type& value) { m_##name = value; }
    QM_CGGLYPHBITMAP_FIELDS(QM_DECLARE_FIELD)
#undef QM_DECLARE_FIELD

    /// The project's settings beyond the classic behaviour, as the glyph is measured and drawn
    /// with them. Not archived with the glyph: the project's apply to every glyph.
    const SettingsExtensions& extensions() const { return m_extensions; }
    void setExtensions(const SettingsExtensions& extensions) { m_extensions = extensions; }

    void setGlyphSize(int size) { m_glyphsize = size; }
    /// Outline width from a whole number of points.
    void setStrokeSize(int size) { m_strokesize = float(size); }

    /// The constant rectangle (0, 0, 512, 512).
    static QRectF nativeRect() { return QRectF(0, 0, 512, 512); }

    /// Measures the glyph at `fntName` and `glyphsize` with its outline, shadow, padding and
    /// grid settings: bitmap size, offsets, advance, line height, descender. False, changing
    /// nothing, when the font lacks the character.
    bool setNewSize();
    /// Renders the glyph into a new `glyphImage` of the measured size. A zero size keeps the
    /// previous image.
    void getImage();
    /// Paints the glyph into `context`, which covers `glyphRect`. False for a null context.
    bool drawGlyphInContext(DrawingContext* context) const;

    /// True when every field is equal (images compared by pixels).
    bool operator==(const CGGlyphBitmap& other) const;

    // Keyed archiving: one element of a project file's "allglyphs" (CGGlyphBitmapCoding.cpp).
    /// Writes the archived fields, in the file's key order, into the record being encoded; the
    /// custom picture only when there is one and the glyph has a bitmap.
    void encodeWithCoder(KeyedArchiver& coder) const;
    /// Reads the record being decoded into this glyph, which starts empty
    /// (InitialValues::Empty). A custom picture becomes the bitmap and sets `frameImage`; without
    /// both gradients, both are made from the legacy two-colour fields.
    void initWithCoder(const KeyedUnarchiver& coder);

private:
#define QM_DECLARE_MEMBER(Type, name, Setter, Default) Type m_##name{};
    QM_CGGLYPHBITMAP_FIELDS(QM_DECLARE_MEMBER)
#undef QM_DECLARE_MEMBER
    SettingsExtensions m_extensions;
};

} // namespace qm
