#pragma once

#include "Classes/model/FontTableTypes.h"

#include <QByteArray>
#include <QString>

namespace qm {

class sharedAppState;

/// Reads the character map (`cmap`) and the kerning pairs (`kern`) of a font family into the
/// project settings, for the descriptor writers and the text preview.
///
/// The readers keep the established reading rules to the byte, odd ones included (a fixed 6-byte
/// subtable stride when looking for kerning, subtable lengths never used, every cmap record
/// walked in table order), so a font gives the same tables, and descriptors the same kerning,
/// as it always has. Every read is bounds-checked: a field that lies outside the table,
/// and an index outside glyphIdArray, reads as 0, so a damaged or hostile font yields odd
/// tables but never a crash.
class FontTablesReader
{
public:
    /// Works on `state`'s `cmapTable`, `kerningTable`, `fontName` and `glyphSize`.
    explicit FontTablesReader(sharedAppState& state) : m_state(state) {}

    /// True when the family's first member has a `kern` table with a format 0 subtable by
    /// kernHasFormat0(). False for an unknown family or a font without `kern`.
    bool hasKernings(const QString& family) const;
    /// Runs loadCmapTable() on the project's `fontName` (not on `family`), then adds the
    /// family's kerning pairs to `kerningTable` by readKerning(). Empties nothing.
    void fillKerningTable(const QString& family);
    /// Adds the family's character map to `cmapTable` by readCmap(). Empties nothing.
    void loadCmapTable(const QString& family);

    /// Converts `count` 16-bit words from big-endian to host order in place; a count of zero or
    /// less does nothing.
    static void SwapMuttableData(quint16* words, int count);

    /// The bytes of a table (tag as four characters) of the family's first member, opened by
    /// its PostScript name at `size`; empty when the family has no member or the font no table.
    static QByteArray familyTable(const QString& family, int size, const char tag[4]);

    /// The `hasKernings` rule on raw `kern` bytes: a 16-bit subtable count at offset 2, then the
    /// coverage words at 8, 14, 20, ... (a fixed 6-byte stride, whatever the subtables' sizes);
    /// true when one of them is below 0x0100 (format 0). A coverage word past the end reads 0.
    static bool kernHasFormat0(const QByteArray& kern);
    /// Walks every encoding record of raw `cmap` bytes in table order and writes each code of
    /// its format 0 or format 4 subtable under the glyph it maps to (glyph 0 included), later
    /// writes overwriting earlier ones; other formats are skipped. Keys not written keep their
    /// values.
    static void readCmap(const QByteArray& cmap, CmapTable& table);
    /// Adds the non-zero pairs of every format 0 subtable of raw `kern` bytes whose glyphs both
    /// appear in `cmap`, under their characters; a later pair overwrites an earlier one. A
    /// subtable of another format is taken to be 6 bytes long.
    static void readKerning(const QByteArray& kern, const CmapTable& cmap, KerningTable& table);

private:
    sharedAppState& m_state;
};

} // namespace qm
