// The font tables reader. The font list asks hasKernings() for every installed family, so its
// cost per family matters most; it is measured over all families with the font service's caches
// warm and cold, and split into its steps (members look-up, opening the face, the kern bytes).
// Filling both tables for DejaVu Sans is the cost of one font selection.

#include "Classes/fonts/FontTablesReader.h"
#include "Classes/model/sharedAppState.h"
#include "Platform/text/Font.h"
#include "Platform/text/FontManager.h"

#include <benchmark/benchmark.h>

using namespace qm;

namespace {

const QStringList& families()
{
    static const QStringList list = FontManager::availableFontFamilies();
    return list;
}

void perFamily(benchmark::State& state)
{
    state.counters["families"] = double(families().size());
    state.counters["per family"] =
        benchmark::Counter(double(state.iterations() * families().size()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_HasKerningsAllFamilies(benchmark::State& state)
{
    sharedAppState settings;
    FontTablesReader reader(settings);
    for (const QString& family : families()) // fill the caches
        reader.hasKernings(family);
    int withKerning = 0;
    for (auto _ : state) {
        withKerning = 0;
        for (const QString& family : families())
            withKerning += reader.hasKernings(family) ? 1 : 0;
    }
    perFamily(state);
    state.counters["with kerning"] = withKerning;
}
BENCHMARK(BM_HasKerningsAllFamilies)->Unit(benchmark::kMillisecond);

// As the first listing after start-up sees it: no face open, no name looked up yet (fontconfig's
// own caches stay warm).
void BM_HasKerningsAllFamiliesCold(benchmark::State& state)
{
    sharedAppState settings;
    FontTablesReader reader(settings);
    for (auto _ : state) {
        Font::clearCache();
        for (const QString& family : families())
            benchmark::DoNotOptimize(reader.hasKernings(family));
    }
    perFamily(state);
}
BENCHMARK(BM_HasKerningsAllFamiliesCold)->Unit(benchmark::kMillisecond);

// The steps of one hasKernings() call, each over all families.
void BM_StepMembersLookUp(benchmark::State& state)
{
    for (auto _ : state)
        for (const QString& family : families())
            benchmark::DoNotOptimize(FontManager::availableMembersOfFontFamily(family));
    perFamily(state);
}
BENCHMARK(BM_StepMembersLookUp)->Unit(benchmark::kMillisecond);

QStringList firstMembers()
{
    QStringList names;
    for (const QString& family : families())
        names.append(FontManager::availableMembersOfFontFamily(family).value(0).postScriptName);
    return names;
}

void BM_StepOpenByPostScriptNameCold(benchmark::State& state)
{
    const QStringList names = firstMembers();
    for (auto _ : state) {
        Font::clearCache();
        for (const QString& name : names)
            benchmark::DoNotOptimize(Font::fromName(name, 50));
    }
    perFamily(state);
}
BENCHMARK(BM_StepOpenByPostScriptNameCold)->Unit(benchmark::kMillisecond);

void BM_StepKernBytes(benchmark::State& state)
{
    QList<Font> fonts;
    for (const QString& name : firstMembers())
        fonts.append(Font::fromName(name, 50));
    for (auto _ : state)
        for (const Font& font : fonts)
            benchmark::DoNotOptimize(font.tableData("kern"));
    perFamily(state);
}
BENCHMARK(BM_StepKernBytes)->Unit(benchmark::kMillisecond);

void BM_SelectDejaVuSans(benchmark::State& state)
{
    const QString family = QStringLiteral("DejaVu Sans");
    sharedAppState settings;
    settings.setFontName(family);
    FontTablesReader reader(settings);
    for (auto _ : state) {
        settings.setCmapTable({});
        settings.setKerningTable({});
        if (reader.hasKernings(family))
            reader.fillKerningTable(family);
    }
    state.counters["cmap entries"] = double(settings.cmapTable().size());
    state.counters["kerning pairs"] = double(settings.kerningTable().size());
}
BENCHMARK(BM_SelectDejaVuSans)->Unit(benchmark::kMillisecond);

void BM_ReadCmapDejaVuSans(benchmark::State& state)
{
    const QByteArray cmap = FontTablesReader::familyTable(QStringLiteral("DejaVu Sans"), 50, "cmap");
    for (auto _ : state) {
        CmapTable table;
        FontTablesReader::readCmap(cmap, table);
        benchmark::DoNotOptimize(table);
    }
    state.SetBytesProcessed(state.iterations() * cmap.size());
}
BENCHMARK(BM_ReadCmapDejaVuSans)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
