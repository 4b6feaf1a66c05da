#pragma once

// Minimal TrueType fonts built in memory, and the big-endian pieces to give them odd tables, so
// that tests can feed the font service and the table readers exactly the bytes they need.

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QRect>
#include <QString>

namespace qm::test {

/// Appends big-endian fields to a growing byte array.
class BigEndian
{
public:
    BigEndian& u8(int value);
    BigEndian& u16(int value);
    BigEndian& s16(int value) { return u16(value); }
    BigEndian& u32(quint32 value);
    /// A four-character table tag.
    BigEndian& tag(const char tag[4]);
    BigEndian& raw(const QByteArray& bytes);
    /// Zero bytes up to the next multiple of four.
    BigEndian& pad4();
    /// Overwrites an already written field.
    void putU16(qsizetype at, int value);
    void putU32(qsizetype at, quint32 value);

    qsizetype size() const { return m_bytes.size(); }
    const QByteArray& bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

/// One glyph of a tiny font: a filled rectangle in font units covering x .. x + width and
/// y .. y + height (y up, so box.y() is the bottom), and an advance. An empty box makes an empty
/// glyph (a space).
struct TinyGlyph
{
    char16_t character = 0;
    QRect box;
    int advance = 0;
};

struct TinyFontOptions
{
    QString family = QStringLiteral("Quillmark Tiny");
    QString style = QStringLiteral("Regular");
    QString postScriptName = QStringLiteral("QuillmarkTiny-Regular");
    int weightClass = 400;
    int unitsPerEm = 1000;
    int ascender = 800;
    int descender = -200;
    /// Glyphs 1, 2, ... in this order; glyph 0 is the missing glyph, a plain box.
    QList<TinyGlyph> glyphs;
    /// Tables added to or replacing the generated ones, by tag ("cmap", "kern", ...). An empty
    /// value removes the table.
    QMap<QByteArray, QByteArray> rawTables;
};

/// The glyphs "A", "V", "T", "o" and the space, in that order (glyphs 1 to 5).
QList<TinyGlyph> defaultTinyGlyphs();

/// A complete font file with the tables head, hhea, maxp, OS/2, name, cmap (a 3/1 format 4
/// subtable of the glyphs' characters), post, loca, glyf and hmtx, checksums included.
QByteArray buildTinyFont(const TinyFontOptions& options);
/// Writes buildTinyFont(options) to `path`; false when the file cannot be written.
bool writeTinyFont(const QString& path, const TinyFontOptions& options);

// ---- cmap pieces ----

/// A format 0 subtable: codes 0..255 to glyphs; codes not listed map to glyph 0.
QByteArray cmapFormat0(const QMap<quint8, quint8>& codeToGlyph);

/// One segment of a format 4 subtable. With `glyphIds` empty the segment maps by idDelta alone
/// (idRangeOffset 0); otherwise it indexes these entries of glyphIdArray, one per code.
struct CmapSegment
{
    char16_t start = 0;
    char16_t end = 0;
    qint16 idDelta = 0;
    QList<quint16> glyphIds;
};
/// A format 4 subtable of exactly these segments, in this order (add the closing 0xFFFF
/// segment yourself when you want one).
QByteArray cmapFormat4(const QList<CmapSegment>& segments);
/// A format 4 subtable mapping these codes: one idDelta segment per run of consecutive codes
/// and glyphs, then the usual closing segment 0xFFFF..0xFFFF with idDelta 1.
QByteArray cmapFormat4Mapping(const QMap<char16_t, quint16>& codeToGlyph);

struct CmapRecord
{
    quint16 platformId = 3;
    quint16 encodingId = 1;
    QByteArray subtable;
};
/// A cmap table with these encoding records in this order; records with identical subtable
/// bytes share one copy.
QByteArray cmapTable(const QList<CmapRecord>& records);

// ---- kern pieces ----

struct KernPair
{
    quint16 left = 0;
    quint16 right = 0;
    qint16 value = 0;
};
/// A format 0 subtable in the version-0 layout (6-byte header, then nPairs, searchRange,
/// entrySelector, rangeShift and the pairs, sorted as written). Coverage 0x0001: horizontal.
QByteArray kernFormat0(const QList<KernPair>& pairs, quint16 coverage = 0x0001);
/// A format 2 (class array) subtable in the version-0 layout: the glyphs firstLeft ..
/// firstLeft + leftCount - 1 before firstRight .. firstRight + rightCount - 1 kern by `value`.
QByteArray kernFormat2(quint16 firstLeft, int leftCount, quint16 firstRight, int rightCount, qint16 value);
/// A version-0 kern table: 16-bit version 0, 16-bit subtable count, the subtables.
QByteArray kernTable(const QList<QByteArray>& subtables);
/// A kern table in the 32-bit-header layout ("version 1.0": 0x00010000, 32-bit count) with one
/// format 0 subtable of these pairs (8-byte subtable header: length, coverage, tuple index).
QByteArray kernTableVersion1(const QList<KernPair>& pairs);

} // namespace qm::test
