// The cmap and kern readers on arbitrary bytes. Input: a 16-bit big-endian length n, then n
// bytes of cmap (fewer when the input ends first), then the kern bytes. Besides memory safety
// it checks the cmap reader against the plain walk of the reading rules when that walk is
// cheap enough, and that no stored kerning value is 0.

#include "Classes/fonts/FontTablesReader.h"
#include "tests/support/CmapReference.h"

#include <QByteArray>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

void fail(const char* what)
{
    std::fprintf(stderr, "fuzz_font_tables: %s\n", what);
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // Real tables run to hundreds of kilobytes, but every interesting shape fits in far less.
    if (size < 2 || size > 64 * 1024)
        return 0;
    const QByteArray input = QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
    const qsizetype cmapLength =
        std::min<qsizetype>((quint8(input[0]) << 8) | quint8(input[1]), input.size() - 2);
    // Separate copies, so neither part can be read through the other.
    const QByteArray cmap(input.constData() + 2, cmapLength);
    const QByteArray kern(input.constData() + 2 + cmapLength, input.size() - 2 - cmapLength);

    qm::CmapTable table;
    qm::FontTablesReader::readCmap(cmap, table);
    if (qm::test::referenceCmapCost(cmap, 50'000) <= 50'000) {
        qm::CmapTable expected;
        qm::test::referenceReadCmap(cmap, expected);
        if (table != expected)
            fail("the cmap reader differs from the plain walk");
    }

    // The fuzzed map rarely reaches many glyphs; an identity map of the first 256 lets pairs
    // through as well.
    static const qm::CmapTable identity = [] {
        qm::CmapTable t;
        for (int glyph = 0; glyph < 256; ++glyph)
            t.insert(quint16(glyph), char16_t(glyph));
        return t;
    }();
    qm::FontTablesReader::kernHasFormat0(kern);
    for (const qm::CmapTable* map : {static_cast<const qm::CmapTable*>(&table), &identity}) {
        qm::KerningTable kerning;
        qm::FontTablesReader::readKerning(kern, *map, kerning);
        for (int value : kerning)
            if (value == 0)
                fail("a kerning value of 0 was stored");
    }
    return 0;
}
