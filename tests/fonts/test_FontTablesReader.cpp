// The font tables reader: on fonts built here, where every expected entry is derived by hand
// from the bytes written; on DejaVu Sans, against FreeType's own character map; on random and
// damaged tables, against a plain transcription of the reading rules (tests/support/
// CmapReference.h) and for memory safety (run these under the sanitizer build too).

#include "Classes/fonts/FontTablesReader.h"
#include "Classes/model/sharedAppState.h"
#include "Platform/text/Font.h"
#include "Platform/text/FontManager.h"
#include "tests/support/CmapReference.h"
#include "tests/support/TinyFont.h"

#include <QSet>
#include <QTemporaryDir>

#include <cstring>
#include <random>

#include <gtest/gtest.h>

using namespace qm;
using namespace qm::test;

namespace {

/// Tiny fonts (glyphs 1 A, 2 V, 3 T, 4 o, 5 space) registered for this process, each family
/// under a name of its own.
class TinyFamilies
{
public:
    QString add(const QMap<QByteArray, QByteArray>& rawTables, QString family = {},
                const QString& style = QStringLiteral("Regular"))
    {
        if (family.isEmpty())
            family = QStringLiteral("QM Tables %1").arg(++m_count);
        TinyFontOptions o;
        o.family = family;
        o.style = style;
        o.postScriptName = QString(family).remove(QLatin1Char(' ')) + QLatin1Char('-') + style;
        o.weightClass = style == QLatin1String("Bold") ? 700 : 400;
        o.glyphs = defaultTinyGlyphs();
        o.rawTables = rawTables;
        const QString path = m_dir.filePath(o.postScriptName + QStringLiteral(".ttf"));
        EXPECT_TRUE(writeTinyFont(path, o));
        EXPECT_TRUE(FontManager::registerFontsForFile(path));
        return family;
    }

private:
    QTemporaryDir m_dir;
    int m_count = 0;
};

TinyFamilies& families()
{
    static TinyFamilies f;
    return f;
}

QString tinyFamily(const QMap<QByteArray, QByteArray>& rawTables)
{
    return families().add(rawTables);
}

/// What the tiny fonts' own cmap reads as: each glyph's character, and under glyph 0 the code
/// 0xFFFF of the closing segment (0xFFFF + idDelta 1 = glyph 0).
CmapTable tinyCmap()
{
    return {{0, 0xFFFF}, {1, u'A'}, {2, u'V'}, {3, u'T'}, {4, u'o'}, {5, u' '}};
}

QByteArray tinyFormat4()
{
    return cmapFormat4Mapping({{u'A', 1}, {u'V', 2}, {u'T', 3}, {u'o', 4}, {u' ', 5}});
}

CmapTable cmapOf(const QByteArray& cmap)
{
    CmapTable t;
    FontTablesReader::readCmap(cmap, t);
    return t;
}

KerningTable kerningOf(const QByteArray& kern, const CmapTable& cmap = tinyCmap())
{
    KerningTable t;
    FontTablesReader::readKerning(kern, cmap, t);
    return t;
}

/// Settings and a reader working on them, with the project's font set to `family`.
struct Project
{
    sharedAppState state;
    FontTablesReader reader{state};
    explicit Project(const QString& family) { state.setFontName(family); }
    /// The font selection's calling order: ask, empty both tables, fill when there is kerning.
    void select(const QString& family)
    {
        state.setFontName(family);
        const bool kerning = reader.hasKernings(family);
        state.setKerningTable({});
        state.setCmapTable({});
        if (kerning)
            reader.fillKerningTable(family);
    }
};

void putU16(QByteArray& bytes, qsizetype at, int value)
{
    bytes[at] = char(quint8(value >> 8));
    bytes[at + 1] = char(quint8(value));
}

} // namespace

TEST(SwapMuttableData, ConvertsBigEndianWordsInPlace)
{
    const unsigned char bytes[] = {0x12, 0x34, 0xAB, 0xCD, 0x01, 0x02};
    quint16 words[3];
    std::memcpy(words, bytes, sizeof bytes);
    quint16 untouched;
    std::memcpy(&untouched, bytes + 4, 2);

    FontTablesReader::SwapMuttableData(words, 0);
    FontTablesReader::SwapMuttableData(words, -5);
    EXPECT_EQ(std::memcmp(words, bytes, sizeof bytes), 0);

    FontTablesReader::SwapMuttableData(words, 2);
    EXPECT_EQ(words[0], 0x1234);
    EXPECT_EQ(words[1], 0xABCD);
    EXPECT_EQ(words[2], untouched);
}

// ---- cmap on tiny fonts, through the font service ----

TEST(CmapOnTinyFonts, Format4WithClosingSegmentPutsFFFFUnderGlyph0)
{
    const QString family = tinyFamily({});
    Project p(family);
    p.reader.loadCmapTable(family);
    EXPECT_EQ(p.state.cmapTable(), tinyCmap());
    EXPECT_TRUE(p.state.kerningTable().isEmpty());

    const Font font = Font::fromName(family, 50);
    const CmapTable expected = tinyCmap();
    for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
        if (it.key() != 0) {
            EXPECT_EQ(font.glyphForCharacter(it.value()), it.key());
        }
    }
}

TEST(CmapOnTinyFonts, LaterEncodingRecordsOverwriteEarlierOnes)
{
    // Format 0 maps A -> 2, V -> 1, B -> 3, every other code of 0..255 to glyph 0.
    const QByteArray format0 = cmapFormat0({{'A', 2}, {'V', 1}, {'B', 3}});

    // 3/1 format 4 first: the format 0 walk then rewrites glyphs 1, 2, 3, and glyph 0 with
    // its last unmapped code, 255. Glyphs 4 and 5 keep their format 4 characters.
    const QString fourThenZero = tinyFamily({{"cmap", cmapTable({{3, 1, tinyFormat4()}, {1, 0, format0}})}});
    Project a(fourThenZero);
    a.reader.loadCmapTable(fourThenZero);
    EXPECT_EQ(a.state.cmapTable(),
              CmapTable({{0, 0xFF}, {1, u'V'}, {2, u'A'}, {3, u'B'}, {4, u'o'}, {5, u' '}}));

    // The other order: format 4 has the last word everywhere it reaches.
    const QString zeroThenFour = tinyFamily({{"cmap", cmapTable({{1, 0, format0}, {3, 1, tinyFormat4()}})}});
    Project b(zeroThenFour);
    b.reader.loadCmapTable(zeroThenFour);
    EXPECT_EQ(b.state.cmapTable(), tinyCmap());

    // Platform and encoding are not looked at, and a subtable shared by two records is walked
    // at each: here the 0/3 and 3/1 records share the format 4 bytes, and 3/1 comes last.
    EXPECT_EQ(cmapOf(cmapTable({{0, 3, tinyFormat4()}, {1, 0, format0}, {3, 1, tinyFormat4()}})), tinyCmap());
    EXPECT_EQ(cmapOf(cmapTable({{7, 99, tinyFormat4()}})), tinyCmap());
}

TEST(CmapOnTinyFonts, TwoCharactersOnOneGlyphKeepTheOneWalkedLast)
{
    // A and a both map to glyph 1; segments ascend, so a (0x61) is walked after A.
    const QByteArray cmap = cmapTable({{3, 1, cmapFormat4Mapping({{u'A', 1}, {u'V', 2}, {u'a', 1}})}});
    const QByteArray kern = kernTable({kernFormat0({{1, 2, -70}})});
    const QString family = tinyFamily({{"cmap", cmap}, {"kern", kern}});
    Project p(family);
    p.select(family);
    EXPECT_EQ(p.state.cmapTable(), CmapTable({{0, 0xFFFF}, {1, u'a'}, {2, u'V'}}));
    EXPECT_EQ(p.state.kerningTable(), KerningTable({{{u'a', u'V'}, -70}}));
}

// ---- cmap bytes ----

TEST(CmapBytes, GlyphIdArraySegmentsAddIdDeltaToNonZeroEntries)
{
    // '0'..'1' -> entries {5, 0} + idDelta 10: '0' -> 15, '1' -> 0 (an entry 0 stays 0).
    // 'x'..'z' -> entries {7, 0, 9}: 'y' -> 0. The closing segment then puts U+FFFF under 0.
    const QByteArray sub = cmapFormat4(
        QList<CmapSegment>{{u'0', u'1', 10, {5, 0}}, {u'x', u'z', 0, {7, 0, 9}}, {0xFFFF, 0xFFFF, 1, {}}});
    EXPECT_EQ(cmapOf(cmapTable({{3, 1, sub}})), CmapTable({{15, u'0'}, {7, u'x'}, {9, u'z'}, {0, 0xFFFF}}));

    // Without the closing segment, key 0 keeps the last code that mapped to glyph 0.
    const QByteArray open =
        cmapFormat4(QList<CmapSegment>{{u'0', u'1', 10, {5, 0}}, {u'x', u'z', 0, {7, 0, 9}}});
    EXPECT_EQ(cmapOf(cmapTable({{3, 1, open}})), CmapTable({{15, u'0'}, {7, u'x'}, {9, u'z'}, {0, u'y'}}));
}

TEST(CmapBytes, IndexOutsideGlyphIdArrayIsGlyph0)
{
    // One segment 'x'..'z' with entries {7, 8, 9}, two segments in all.
    QByteArray sub = cmapFormat4(QList<CmapSegment>{{u'x', u'z', 0, {7, 8, 9}}, {0xFFFF, 0xFFFF, 1, {}}});
    // The length field decides the entry count: claim 1 entry, so 'y' and 'z' index past it
    // although their bytes are there.
    putU16(sub, 2, 16 + 8 * 2 + 2);
    EXPECT_EQ(cmapOf(cmapTable({{3, 1, sub}})), CmapTable({{7, u'x'}, {0, 0xFFFF}}));

    // An idRangeOffset far past the array (0xFFFE bytes on) reads glyph 0 for every code.
    QByteArray far = cmapFormat4(QList<CmapSegment>{{u'x', u'z', 0, {7, 8, 9}}});
    putU16(far, 16 + 6 * 1, 0xFFFE);
    EXPECT_EQ(cmapOf(cmapTable({{3, 1, far}})), CmapTable({{0, u'z'}}));
}

TEST(CmapBytes, EachCodeTakesTheFirstSegmentHoldingIt)
{
    // Overlap: B lies in both segments; the look-up finds segment 0 (B + 100) both times it is
    // walked, so no glyph B + 200 appears.
    const QByteArray overlap = cmapFormat4(QList<CmapSegment>{{u'A', u'C', 100, {}}, {u'B', u'B', 200, {}}});
    EXPECT_EQ(cmapOf(cmapTable({{3, 1, overlap}})),
              CmapTable({{0x41 + 100, u'A'}, {0x42 + 100, u'B'}, {0x43 + 100, u'C'}}));

    // Walk order, not code order, decides: segment 1's '@' (0x40 + 0x10 = glyph 0x50) is walked
    // after segment 0's 'P' (glyph 0x50), so the lower code wins. A start above its end walks
    // nothing.
    const QByteArray order =
        cmapFormat4(QList<CmapSegment>{{u'P', u'Q', 0, {}}, {u'@', u'@', 0x10, {}}, {u'Z', u'Y', 0, {}}});
    EXPECT_EQ(cmapOf(cmapTable({{3, 1, order}})), CmapTable({{0x50, u'@'}, {0x51, u'Q'}}));
}

TEST(CmapBytes, OtherFormatsAreSkippedAndNothingIsEmptied)
{
    BigEndian format6; // trimmed-table mapping: codes 0x41.. -> glyphs 9, 9
    format6.u16(6).u16(14).u16(0).u16(0x41).u16(2).u16(9).u16(9);
    BigEndian format12; // one group 0x41..0x42 -> 9..10
    format12.u16(12).u16(0).u32(28).u32(0).u32(1).u32(0x41).u32(0x42).u32(9);
    const QByteArray cmap =
        cmapTable({{1, 0, format6.bytes()}, {3, 10, format12.bytes()}, {3, 1, tinyFormat4()}});

    CmapTable table{{100, u'Z'}, {1, u'Q'}};
    FontTablesReader::readCmap(cmap, table);
    CmapTable expected = tinyCmap();
    expected.insert(100, u'Z');
    EXPECT_EQ(table, expected);

    CmapTable untouched{{100, u'Z'}};
    FontTablesReader::readCmap(cmapTable({}), untouched);
    FontTablesReader::readCmap(QByteArray(), untouched);
    EXPECT_EQ(untouched, CmapTable({{100, u'Z'}}));
}

TEST(CmapBytes, MatchesThePlainWalkOnRandomAndDamagedTables)
{
    std::mt19937 rng(20240517);
    auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
    auto code = [&] { return pick(0, 3) == 0 ? pick(0xFFF0, 0xFFFF) : pick(0, 60); };
    int compared = 0;
    for (int round = 0; round < 3000; ++round) {
        QList<CmapRecord> records;
        const int count = pick(1, 4);
        for (int r = 0; r < count; ++r) {
            const int kind = pick(0, 5);
            if (kind == 0) {
                QMap<quint8, quint8> map;
                for (int k = pick(0, 10); k > 0; --k)
                    map.insert(quint8(pick(0, 255)), quint8(pick(0, 20)));
                records.append({1, 0, cmapFormat0(map)});
            } else if (kind == 1 && !records.isEmpty()) {
                records.append(records[pick(0, int(records.size()) - 1)]);
            } else {
                QList<CmapSegment> segments;
                for (int s = pick(1, 6); s > 0; --s) {
                    CmapSegment seg;
                    seg.start = char16_t(code());
                    seg.end = char16_t(pick(0, 4) == 0 ? std::max(0, seg.start - pick(1, 3))
                                                       : std::min(0xFFFF, seg.start + pick(0, 8)));
                    seg.idDelta = qint16(pick(0, 3) == 0 ? pick(-32768, 32767) : pick(-30, 30));
                    if (pick(0, 2) == 0)
                        for (int g = std::max(0, seg.end - seg.start + 1 + pick(-2, 2)); g > 0; --g)
                            seg.glyphIds.append(quint16(pick(0, 20)));
                    segments.append(seg);
                }
                QByteArray sub = cmapFormat4(segments);
                const int segCount = int(segments.size());
                if (pick(0, 4) == 0) // any idRangeOffset, odd ones included
                    putU16(sub, 16 + 6 * segCount + 2 * pick(0, segCount - 1), pick(0, 0xFFFF));
                if (pick(0, 4) == 0) // any length
                    putU16(sub, 2, pick(0, 0xFFFF));
                records.append({3, 1, sub});
            }
        }
        QByteArray cmap = cmapTable(records);
        if (pick(0, 3) == 0)
            cmap.truncate(pick(0, int(cmap.size())));
        if (pick(0, 3) == 0)
            for (int k = pick(1, 4); k > 0 && !cmap.isEmpty(); --k)
                cmap[pick(0, int(cmap.size()) - 1)] = char(pick(0, 255));
        if (referenceCmapCost(cmap, 300'000) > 300'000)
            continue;

        const CmapTable before{{3, u'q'}, {40000, u'r'}};
        CmapTable expected = before, actual = before;
        referenceReadCmap(cmap, expected);
        FontTablesReader::readCmap(cmap, actual);
        ASSERT_EQ(actual, expected) << "round " << round << ", bytes " << cmap.toHex().constData();
        ++compared;
    }
    EXPECT_GT(compared, 2500);
}

TEST(CmapBytes, HostileTablesReadSafely)
{
    // Record counts, offsets and segment counts far beyond the bytes.
    BigEndian manyRecords;
    manyRecords.u16(0).u16(0xFFFF).u16(3).u16(1).u32(0xFFFFFFF0);
    CmapTable t;
    FontTablesReader::readCmap(manyRecords.bytes(), t);
    // Record 0's subtable lies past the end: its format reads 0, and its 256 glyphs read 0.
    // Later records lie past the end themselves and read offset 0, where the table's version
    // 0 reads as format 0: codes 0..5 take the glyphs 00 01 FF FF FF F0 of bytes 6..11, every
    // later code glyph 0.
    EXPECT_EQ(t, CmapTable({{0x00, 0xFF}, {0x01, 1}, {0xFF, 4}, {0xF0, 5}}));

    BigEndian bigSegments;
    bigSegments.u16(0).u16(1).u16(3).u16(1).u32(12).u16(4).u16(0xFFFF).u16(0).u16(0xFFFE);
    t.clear();
    FontTablesReader::readCmap(bigSegments.bytes(), t);
    // 32767 segments whose fields all lie past the end: each reads 0..0 with idDelta 0.
    EXPECT_EQ(t, CmapTable({{0, 0}}));

    // Many segments each covering every code: walking codes x segments would take minutes.
    QList<CmapSegment> everything(4000, CmapSegment{0, 0xFFFF, 1, {}});
    t.clear();
    FontTablesReader::readCmap(cmapTable({{3, 1, cmapFormat4(everything)}}), t);
    ASSERT_EQ(t.size(), 0x10000);
    EXPECT_EQ(t.value(0), char16_t(0xFFFF));
    EXPECT_EQ(t.value(1), char16_t(0));

    // Every truncation of a well-formed table.
    const QByteArray full =
        cmapTable({{0, 3, tinyFormat4()}, {1, 0, cmapFormat0({{'A', 2}})}, {3, 1, tinyFormat4()}});
    for (qsizetype n = 0; n <= full.size(); ++n) {
        CmapTable expected, actual;
        referenceReadCmap(full.first(n), expected);
        FontTablesReader::readCmap(full.first(n), actual);
        EXPECT_EQ(actual, expected) << n;
    }
}

// ---- kern ----

TEST(KernBytes, HasKerningsLooksAtEverySixthByteFromOffset8)
{
    EXPECT_TRUE(FontTablesReader::kernHasFormat0(kernTable({kernFormat0({{1, 2, -80}})})));
    EXPECT_FALSE(FontTablesReader::kernHasFormat0(kernTable({})));
    EXPECT_FALSE(FontTablesReader::kernHasFormat0(QByteArray()));
    EXPECT_FALSE(FontTablesReader::kernHasFormat0(kernTable({kernFormat0({{1, 2, -80}}, 0x0101)})));
    // The 32-bit header: version 0x00010000 reads as version 1 with 0 subtables.
    EXPECT_FALSE(FontTablesReader::kernHasFormat0(kernTableVersion1({{1, 2, -80}})));

    // One format 2 subtable: coverage 0x0201 at offset 8, no.
    const QByteArray format2 = kernFormat2(1, 1, 2, 1, -50);
    EXPECT_FALSE(FontTablesReader::kernHasFormat0(kernTable({format2})));
    // Two: the second word looked at, offset 14, is byte 10 of the first subtable (its right
    // class table offset, 20), which reads as format 0.
    EXPECT_TRUE(FontTablesReader::kernHasFormat0(kernTable({format2, format2})));
    // A count beyond the bytes: the second coverage word, at 14, lies past the end and reads
    // 0, format 0.
    BigEndian claimsTwo;
    claimsTwo.u16(0).u16(2).u16(0).u16(6).u16(0x0101);
    EXPECT_TRUE(FontTablesReader::kernHasFormat0(claimsTwo.bytes()));
    claimsTwo.putU16(2, 1);
    EXPECT_FALSE(FontTablesReader::kernHasFormat0(claimsTwo.bytes()));
}

TEST(KernBytes, LaterPairsOverwriteAndCoverageFlagsAreIgnored)
{
    const QByteArray kern = kernTable({
        kernFormat0({{1, 2, -80}, {3, 4, -30}}),
        kernFormat0({}),                    // no pairs: the next subtable starts 14 bytes on
        kernFormat0({{1, 2, -40}}, 0x0004), // cross-stream, still read
        kernFormat0({{1, 9, -10}, {9, 2, -10}, {2, 1, 25}}),
    });
    // Glyph 9 has no character: its pairs are dropped. A positive value is kept as it is.
    EXPECT_EQ(kerningOf(kern), KerningTable({{{u'A', u'V'}, -40}, {{u'T', u'o'}, -30}, {{u'V', u'A'}, 25}}));

    KerningTable kept{{{u'x', u'y'}, 5}};
    FontTablesReader::readKerning(kern, tinyCmap(), kept);
    EXPECT_EQ(kept.value({u'x', u'y'}), 5);
    EXPECT_EQ(kept.size(), 4);
}

TEST(KernBytes, HostileTablesReadSafely)
{
    BigEndian manySubtables;
    manySubtables.u16(0).u16(0xFFFF).u32(0).u16(0).u16(0xFFFF);
    EXPECT_TRUE(kerningOf(manySubtables.bytes()).isEmpty());

    const QByteArray full = kernTable({kernFormat2(1, 2, 3, 2, -5), kernFormat0({{1, 2, -80}, {3, 4, -30}})});
    std::mt19937 rng(7);
    for (qsizetype n = 0; n <= full.size(); ++n) {
        QByteArray damaged = full.first(n);
        kerningOf(damaged);
        FontTablesReader::kernHasFormat0(damaged);
        for (int k = 0; k < 20 && !damaged.isEmpty(); ++k) {
            damaged[std::uniform_int_distribution<qsizetype>(0, damaged.size() - 1)(rng)] = char(rng());
            const KerningTable t = kerningOf(damaged);
            for (int value : t)
                EXPECT_NE(value, 0);
        }
    }
}

TEST(KerningOnTinyFonts, Format0PairsAreStoredUnderCharactersExceptZeros)
{
    const QString family = tinyFamily({{"kern", kernTable({kernFormat0({{1, 2, -80}, {3, 4, 0}})})}});
    Project p(family);
    p.select(family);
    EXPECT_EQ(p.state.kerningTable(), KerningTable({{{u'A', u'V'}, -80}}));
    EXPECT_EQ(p.state.cmapTable(), tinyCmap());
}

TEST(KerningOnTinyFonts, FontWithoutKernTableLeavesBothTablesEmptyAtSelection)
{
    const QString family = tinyFamily({});
    Project p(family);
    EXPECT_FALSE(p.reader.hasKernings(family));
    p.select(family);
    EXPECT_TRUE(p.state.kerningTable().isEmpty());
    EXPECT_TRUE(p.state.cmapTable().isEmpty());

    // Called anyway, fillKerningTable still reads the cmap and leaves the kerning alone.
    p.state.setKerningTable({{{u'x', u'y'}, 5}});
    p.reader.fillKerningTable(family);
    EXPECT_EQ(p.state.cmapTable(), tinyCmap());
    EXPECT_EQ(p.state.kerningTable(), KerningTable({{{u'x', u'y'}, 5}}));
}

TEST(KerningOnTinyFonts, FirstSubtableOfFormat2IsSteppedOver6Bytes)
{
    // kern (58 bytes): header 0000 0002; at 4 the format 2 subtable (34 bytes)
    //   0000 0022 0201 | 0004 000E 0014 001A | 0001 0001 001E | 0002 0001 0002 | 0000 0000 0000 FFCE
    // and at 38 the format 0 subtable 0000 0014 0001 0001 0006 0000 0000 | 0001 0002 FFB0.
    // Subtable 1: coverage 0x0201 at 8, so subtable 2 is taken to start at 10. Its coverage,
    // at 14, is 0x0014 (format 0); nPairs, at 16, is 0x001A; the pairs start at 24:
    //   24: 0002 0001 0002  -> V, A: 2
    //   30: 0000 0000 0000  -> value 0, dropped
    //   36: FFCE 0000 0014  -> glyph 0xFFCE has no character, dropped
    //   42: 0001 0001 0006  -> A, A: 6
    //   48: 0000 0000 0001  -> glyph 0 (U+FFFF), glyph 0: 1
    //   54: 0002 FFB0 ....  -> the value lies past the end: 0, and so are all later ones.
    // The real A/V pair (-80) is never seen.
    const QByteArray kern = kernTable({kernFormat2(1, 1, 2, 1, -50), kernFormat0({{1, 2, -80}})});
    ASSERT_EQ(kern.size(), 58);
    const QString family = tinyFamily({{"kern", kern}});
    Project p(family);
    EXPECT_TRUE(p.reader.hasKernings(family));
    p.select(family);
    EXPECT_EQ(
        p.state.kerningTable(),
        KerningTable({{{u'V', u'A'}, 2}, {{u'A', u'A'}, 6}, {{char16_t(0xFFFF), char16_t(0xFFFF)}, 1}}));
}

TEST(KerningOnTinyFonts, ThirtyTwoBitHeaderYieldsNoKerning)
{
    const QString family = tinyFamily({{"kern", kernTableVersion1({{1, 2, -80}})}});
    Project p(family);
    EXPECT_FALSE(p.reader.hasKernings(family));
    p.reader.fillKerningTable(family);
    EXPECT_TRUE(p.state.kerningTable().isEmpty());
    EXPECT_EQ(p.state.cmapTable(), tinyCmap());
}

TEST(FontTablesReader, CmapComesFromTheProjectFontAndKerningFromTheArgument)
{
    // Font 1 maps A -> 1, V -> 2; font 2 maps T -> 1, o -> 2 and kerns glyphs 1, 2 by -30.
    const QString first =
        tinyFamily({{"cmap", cmapTable({{3, 1, cmapFormat4Mapping({{u'A', 1}, {u'V', 2}})}})}});
    const QString second =
        tinyFamily({{"cmap", cmapTable({{3, 1, cmapFormat4Mapping({{u'T', 1}, {u'o', 2}})}})},
                    {"kern", kernTable({kernFormat0({{1, 2, -30}})})}});
    Project p(first);
    p.reader.fillKerningTable(second);
    EXPECT_EQ(p.state.cmapTable(), CmapTable({{0, 0xFFFF}, {1, u'A'}, {2, u'V'}}));
    EXPECT_EQ(p.state.kerningTable(), KerningTable({{{u'A', u'V'}, -30}}));
}

TEST(FontTablesReader, TheFamilysFirstMemberDecides)
{
    // Members are listed regular before bold, whatever the registration order.
    const QByteArray kern = kernTable({kernFormat0({{1, 2, -80}})});
    const QString boldKerns = QStringLiteral("QM Tables Bold Kerns");
    families().add({{"kern", kern}}, boldKerns, QStringLiteral("Bold"));
    families().add({}, boldKerns);
    const QString regularKerns = QStringLiteral("QM Tables Regular Kerns");
    families().add({}, regularKerns, QStringLiteral("Bold"));
    families().add({{"kern", kern}}, regularKerns);

    Project p(boldKerns);
    EXPECT_FALSE(p.reader.hasKernings(boldKerns));
    EXPECT_TRUE(p.reader.hasKernings(regularKerns));
}

TEST(FontTablesReader, UnknownFamilyTouchesNothing)
{
    const QString unknown = QStringLiteral("No Such Family 5d21");
    Project p(unknown);
    const CmapTable cmap{{1, u'A'}};
    const KerningTable kerning{{{u'A', u'V'}, -1}};
    p.state.setCmapTable(cmap);
    p.state.setKerningTable(kerning);
    EXPECT_FALSE(p.reader.hasKernings(unknown));
    p.reader.loadCmapTable(unknown);
    p.reader.fillKerningTable(unknown);
    EXPECT_EQ(p.state.cmapTable(), cmap);
    EXPECT_EQ(p.state.kerningTable(), kerning);
    EXPECT_TRUE(FontTablesReader::familyTable(unknown, 50, "cmap").isEmpty());
}

// ---- DejaVu Sans ----

TEST(DejaVuSans, CmapAgreesWithFreeTypesCharacterMap)
{
    const QString family = QStringLiteral("DejaVu Sans");
    const QList<FontMember> members = FontManager::availableMembersOfFontFamily(family);
    ASSERT_FALSE(members.isEmpty());
    const Font font = Font::fromName(members.first().postScriptName, 50);
    ASSERT_FALSE(font.isNull());

    Project p(family);
    p.reader.loadCmapTable(family);
    const CmapTable& table = p.state.cmapTable();
    ASSERT_GT(table.size(), 1500);
    EXPECT_EQ(table.value(0), char16_t(0xFFFF));

    // FreeType's map (its own reading of the Unicode subtable): the character kept for each
    // glyph is the highest code that reaches it, since the segments ascend; every glyph that
    // a code reaches has an entry.
    QMap<quint16, char16_t> highest;
    for (int c = 0; c < 0x10000; ++c) {
        const quint32 glyph = font.glyphForCharacter(char16_t(c));
        if (glyph != 0)
            highest[quint16(glyph)] = char16_t(c);
    }
    CmapTable withoutMissing = table;
    withoutMissing.remove(0);
    EXPECT_EQ(withoutMissing, highest);
}

TEST(DejaVuSans, KernsKnownPairsNegatively)
{
    const QString family = QStringLiteral("DejaVu Sans");
    Project p(family);
    ASSERT_TRUE(p.reader.hasKernings(family));
    p.select(family);
    const KerningTable& kerning = p.state.kerningTable();
    ASSERT_GT(kerning.size(), 1000);
    EXPECT_LT(kerning.value({u'A', u'V'}), -50);
    EXPECT_LT(kerning.value({u'V', u'A'}), -50);
    EXPECT_LT(kerning.value({u'T', u'o'}), -50);
    EXPECT_FALSE(kerning.contains({u'o', u'o'}));

    const QList<char16_t> values = p.state.cmapTable().values();
    const QSet<char16_t> characters(values.cbegin(), values.cend());
    for (auto it = kerning.cbegin(); it != kerning.cend(); ++it) {
        ASSERT_NE(it.value(), 0);
        ASSERT_TRUE(characters.contains(it.key().first) && characters.contains(it.key().second));
    }
}
