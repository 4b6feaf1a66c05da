#pragma once

// The character-map reading rules transcribed as plainly as they read: every record in order,
// every code of every format 4 segment walked and its segment looked up from segment 0 (so the
// cost is codes x segments), every write straight into the table. An oracle for the reader's
// faster walk, in tests and in the fuzz target; header-only so the fuzz target can use it.

#include "Classes/model/FontTableTypes.h"

#include <QByteArray>

#include <algorithm>

namespace qm::test {

namespace cmapreference {

/// A field that does not lie wholly inside the bytes reads as 0.
inline quint32 field(const QByteArray& b, qint64 offset, int size)
{
    if (offset < 0 || offset > b.size() - size)
        return 0;
    quint32 v = 0;
    for (int k = 0; k < size; ++k)
        v = v << 8 | quint8(b[offset + k]);
    return v;
}

} // namespace cmapreference

inline void referenceReadCmap(const QByteArray& cmap, CmapTable& table)
{
    using cmapreference::field;
    const int records = int(field(cmap, 2, 2));
    for (int r = 0; r < records; ++r) {
        const qint64 o = field(cmap, 4 + 8 * qint64(r) + 4, 4);
        const quint32 format = field(cmap, o, 2);
        if (format == 0) {
            for (int c = 0; c < 256; ++c)
                table[quint16(field(cmap, o + 6 + c, 1))] = char16_t(c);
        } else if (format == 4) {
            const int length = int(field(cmap, o + 2, 2));
            const int segCount = int(field(cmap, o + 6, 2)) / 2;
            auto endCode = [&](int i) { return int(field(cmap, o + 14 + 2 * i, 2)); };
            auto startCode = [&](int i) { return int(field(cmap, o + 16 + 2 * segCount + 2 * i, 2)); };
            auto idDelta = [&](int i) { return int(field(cmap, o + 16 + 4 * segCount + 2 * i, 2)); };
            auto idRangeOffset = [&](int i) {
                return quint32(field(cmap, o + 16 + 6 * segCount + 2 * i, 2));
            };
            const int glyphCount = (length - 16 - 8 * segCount) / 2;
            auto glyphId = [&](quint32 k) {
                return int(k) < glyphCount ? int(field(cmap, o + 16 + 8 * segCount + 2 * qint64(k), 2)) : 0;
            };
            for (int i = 0; i < segCount; ++i) {
                for (int c = startCode(i); c <= endCode(i); ++c) {
                    int j = 0;
                    while (j < segCount && !(startCode(j) <= c && c <= endCode(j)))
                        ++j;
                    int glyph = 0;
                    if (j < segCount) {
                        if (idRangeOffset(j) == 0) {
                            glyph = (c + idDelta(j)) % 65536;
                        } else {
                            const quint32 index =
                                ((((idRangeOffset(j) + 2 * j - 2 * segCount) & 0xFFFFFFFFu) >> 1) & 0x7FFF) +
                                quint32(c - startCode(j));
                            const int entry = glyphId(index % 65536);
                            glyph = entry == 0 ? 0 : (entry + idDelta(j)) % 65536;
                        }
                    }
                    table[quint16(glyph)] = char16_t(c);
                }
            }
        }
    }
}

/// Roughly how many steps referenceReadCmap() takes, to keep it to small inputs; counting stops
/// soon after `limit`.
inline qint64 referenceCmapCost(const QByteArray& cmap, qint64 limit)
{
    using cmapreference::field;
    const int records = int(field(cmap, 2, 2));
    qint64 cost = 0;
    for (int r = 0; r < records && cost <= limit; ++r) {
        const qint64 o = field(cmap, 4 + 8 * qint64(r) + 4, 4);
        cost += 256;
        if (field(cmap, o, 2) != 4)
            continue;
        const int segCount = int(field(cmap, o + 6, 2)) / 2;
        cost += segCount;
        for (int i = 0; i < segCount && cost <= limit; ++i) {
            const qint64 start = field(cmap, o + 16 + 2 * segCount + 2 * i, 2);
            const qint64 end = field(cmap, o + 14 + 2 * i, 2);
            cost += std::max<qint64>(0, end - start + 1) * (segCount + 1);
        }
    }
    return cost;
}

} // namespace qm::test
