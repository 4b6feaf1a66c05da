// The canvas core: rebuilding a glyph set and packing large sets.

#include "Classes/atlas/TextureView.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"

#include <benchmark/benchmark.h>

using namespace qm;

namespace {

QString range(char16_t first, char16_t last)
{
    QString s;
    for (char32_t c = first; c <= last; ++c)
        s += QChar(char16_t(c));
    return s;
}

struct Canvas
{
    sharedAppState state;
    TextureView view;
    Canvas(const QString& font, int size, const QString& text)
    {
        state.setTxtView(&view);
        view.setSharedState(&state);
        state.setFontName(font);
        state.setGlyphSize(size);
        state.setBlockredrawandpack(true);
        state.setTextGlyph(text);
        state.setBlockredrawandpack(false);
    }
    bool pack() { return view.Packing(state.paddingSize(), state.paddingMethod(), state.packingReversed(), state.grid()); }
};

// (a) What a change of the glyph set costs: build the set, measure, render and pack.
void BM_RefreshAscii50Outline(benchmark::State& state)
{
    for (auto _ : state) {
        Canvas c(QStringLiteral("DejaVu Sans"), 50, range(0x20, 0x7E)); // centred 1 px outline by default
        c.view.redrawAllGlyphs();
        c.pack();
        for (CAGlyphLayer* layer : c.view.glyphLayers())
            layer->createBitmap();
        benchmark::DoNotOptimize(c.state.width());
    }
}
BENCHMARK(BM_RefreshAscii50Outline)->Unit(benchmark::kMillisecond);

// (b), (c) Automatic-size packing alone of 3000 ideographs.
void BM_PackCjk3000(benchmark::State& state)
{
    Canvas c(QStringLiteral("WenQuanYi Micro Hei"), 32, range(0x4E00, 0x4E00 + 2999));
    c.state.setPower2(state.range(0) != 0);
    c.view.redrawAllGlyphs();
    for (auto _ : state)
        benchmark::DoNotOptimize(c.pack());
    state.counters["width"] = c.state.width();
    state.counters["height"] = c.state.height();
}
BENCHMARK(BM_PackCjk3000)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
