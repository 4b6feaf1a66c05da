#pragma once

#include <QMap>
#include <QPair>

namespace qm {

/// Glyph id -> the character (one UTF-16 code unit) that maps to it. When several characters
/// map to one glyph, the last one read wins.
using CmapTable = QMap<quint16, char16_t>;

/// (left character, right character) -> kerning in font design units, unscaled and never 0.
/// Ordered by left then right code, which is also the order the descriptors write pairs in.
using KerningTable = QMap<QPair<char16_t, char16_t>, int>;

} // namespace qm
