// Listing every installed family with its kerning flag: the cost of reading the flags from the
// fonts, and of building and filtering the font list with its per-family cache.

#include "Classes/atlas/TextureView.h"
#include "Classes/fonts/FontList.h"
#include "Classes/fonts/FontTablesReader.h"
#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"
#include "Platform/text/Font.h"
#include "Platform/text/FontManager.h"

#include <benchmark/benchmark.h>

using namespace qm;

namespace {

void reportFamilies(benchmark::State& state, qsizetype families)
{
    state.counters["families"] = double(families);
    state.counters["per_family"] =
        benchmark::Counter(double(families) * double(state.iterations()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

/// Every flag read from its font, with the font service's caches emptied first, as when the
/// list is filled for the first time.
void BM_KerningFlagsFromFontsCold(benchmark::State& state)
{
    sharedAppState settings;
    const QStringList families = FontManager::availableFontFamilies();
    for (auto _ : state) {
        state.PauseTiming();
        Font::clearCache();
        state.ResumeTiming();
        int withKerning = 0;
        for (const QString& family : families)
            withKerning += FontTablesReader(settings).hasKernings(family);
        benchmark::DoNotOptimize(withKerning);
    }
    reportFamilies(state, families.size());
}
BENCHMARK(BM_KerningFlagsFromFontsCold)->Unit(benchmark::kMillisecond);

/// The same with the font service's caches warm: what every list rebuild would cost without
/// a cache of the flags.
void BM_KerningFlagsFromFontsWarm(benchmark::State& state)
{
    sharedAppState settings;
    const QStringList families = FontManager::availableFontFamilies();
    for (auto _ : state) {
        int withKerning = 0;
        for (const QString& family : families)
            withKerning += FontTablesReader(settings).hasKernings(family);
        benchmark::DoNotOptimize(withKerning);
    }
    reportFamilies(state, families.size());
}
BENCHMARK(BM_KerningFlagsFromFontsWarm)->Unit(benchmark::kMillisecond);

/// A window's list filled from nothing: every flag read once into the list's cache.
void BM_FontListSetUp(benchmark::State& state)
{
    sharedAppState settings;
    TextureView view;
    TextureController controller;
    settings.setFontName(QStringLiteral("DejaVu Sans"));
    qsizetype rows = 0;
    for (auto _ : state) {
        FontList list(settings, view, controller);
        list.setUp();
        rows = list.fontArray().size();
    }
    reportFamilies(state, rows);
}
BENCHMARK(BM_FontListSetUp)->Unit(benchmark::kMillisecond);

/// Typing in the search field: the list rebuilt with the flags from the cache.
void BM_FontListSearchRebuild(benchmark::State& state)
{
    sharedAppState settings;
    TextureView view;
    TextureController controller;
    settings.setFontName(QStringLiteral("DejaVu Sans"));
    FontList list(settings, view, controller);
    list.setUp();
    bool filtered = false;
    for (auto _ : state) {
        list.searchFieldChanged(filtered ? QStringLiteral("sans") : QString());
        filtered = !filtered;
    }
    reportFamilies(state, FontManager::availableFontFamilies().size());
}
BENCHMARK(BM_FontListSearchRebuild)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
