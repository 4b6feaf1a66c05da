#pragma once

#include <QByteArray>
#include <QPainterPath>
#include <QRectF>
#include <QString>

#include <memory>

namespace qm {

class FontFace;

/// A font face at a size, made from a name (family, full or PostScript name) or a font file.
/// 1 point = 1 pixel. All metrics are unhinted and unrounded, in pixels, y up, so that every
/// measurement made from them is reproducible. Copies share one cached FreeType face.
class Font
{
public:
    /// The null font.
    Font() = default;

    /// Looks the name up as a PostScript name, a full name and a family name (exact matches,
    /// in that order), then through the metric-compatible aliases the system configures (so
    /// "Arial" finds "Liberation Sans" when Arial is absent). An unknown name gives the null font
    /// and a warning in the log.
    static Font fromName(const QString& name, double size);
    /// The face at `faceIndex` of a font file; a missing or unreadable file gives the null font.
    static Font fromFile(const QString& path, double size, int faceIndex = 0);
    /// Forgets every cached face and name look-up (benchmarks, and after fonts change).
    static void clearCache();

    bool isNull() const { return !m_face; }
    double size() const { return m_size; }
    QString familyName() const;
    QString styleName() const;
    QString postScriptName() const;
    QString filePath() const;
    int unitsPerEm() const;

    /// True when the font maps the character to a glyph. Lone surrogates are never covered.
    bool coversCharacter(char32_t character) const;
    /// Glyph id for one UTF-16 code unit; 0 (the missing glyph) when the font has none.
    quint32 glyphForCharacter(char16_t codeUnit) const;

    /// Exact bounding box of the glyph's unhinted outline, y up; empty for an empty glyph.
    QRectF glyphBoundingBox(quint32 glyph) const;
    /// Unhinted horizontal advance of the glyph.
    double advance(quint32 glyph) const;
    /// The face's bounding box over all glyphs, y up.
    QRectF fontBoundingBox() const;
    double maxAdvance() const;
    double ascender() const;
    /// Negative for faces whose descent lies below the base line.
    double descender() const;
    bool isFixedPitch() const;
    /// The glyph's outline with its pen origin at `origin`, y up, with the outline's own fill rule.
    QPainterPath glyphPath(quint32 glyph, QPointF origin = {}) const;
    /// The raw bytes of an sfnt table (tag as four characters, e.g. "kern"); empty when absent.
    QByteArray tableData(const char tag[4]) const;

    bool operator==(const Font& other) const { return m_face == other.m_face && m_size == other.m_size; }

private:
    Font(std::shared_ptr<FontFace> face, double size) : m_face(std::move(face)), m_size(size) {}
    double scale() const;

    std::shared_ptr<FontFace> m_face;
    double m_size = 0;
};

} // namespace qm
