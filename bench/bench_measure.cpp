// Measuring glyphs and looking fonts up by name.

#include "Classes/render/CGGlyphBitmap.h"
#include "Platform/text/Font.h"

#include <benchmark/benchmark.h>

using namespace qm;

namespace {

QList<CGGlyphBitmap> asciiGlyphs(const QString& family, int size)
{
    QList<CGGlyphBitmap> glyphs;
    for (char16_t c = 0x20; c < 0x7F; ++c) {
        CGGlyphBitmap g(c);
        g.setFntName(family);
        g.setGlyphsize(size);
        glyphs.append(g);
    }
    return glyphs;
}

void BM_SetNewSizeAscii(benchmark::State& state)
{
    QList<CGGlyphBitmap> glyphs = asciiGlyphs(QStringLiteral("DejaVu Sans"), 50);
    for (auto _ : state)
        for (CGGlyphBitmap& g : glyphs)
            benchmark::DoNotOptimize(g.setNewSize());
    state.SetItemsProcessed(state.iterations() * glyphs.size());
}
BENCHMARK(BM_SetNewSizeAscii)->Unit(benchmark::kMicrosecond);

// The same with nothing cached: opening the font and reading every glyph's outline once.
void BM_SetNewSizeAsciiCold(benchmark::State& state)
{
    QList<CGGlyphBitmap> glyphs = asciiGlyphs(QStringLiteral("DejaVu Sans"), 50);
    for (auto _ : state) {
        Font::clearCache();
        for (CGGlyphBitmap& g : glyphs)
            benchmark::DoNotOptimize(g.setNewSize());
    }
    state.SetItemsProcessed(state.iterations() * glyphs.size());
}
BENCHMARK(BM_SetNewSizeAsciiCold)->Unit(benchmark::kMicrosecond);

void BM_FontByNameCached(benchmark::State& state)
{
    Font::fromName(QStringLiteral("DejaVu Sans"), 50);
    for (auto _ : state)
        benchmark::DoNotOptimize(Font::fromName(QStringLiteral("DejaVu Sans"), 50));
}
BENCHMARK(BM_FontByNameCached);

void BM_FontByNameUncached(benchmark::State& state)
{
    for (auto _ : state) {
        Font::clearCache();
        benchmark::DoNotOptimize(Font::fromName(QStringLiteral("DejaVu Sans"), 50));
    }
}
BENCHMARK(BM_FontByNameUncached)->Unit(benchmark::kMicrosecond);

void BM_FontByAliasUncached(benchmark::State& state)
{
    for (auto _ : state) {
        Font::clearCache();
        benchmark::DoNotOptimize(Font::fromName(QStringLiteral("Arial"), 50));
    }
}
BENCHMARK(BM_FontByAliasUncached)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
