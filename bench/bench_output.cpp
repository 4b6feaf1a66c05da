// Texture output: the atlas image of 500 glyphs on a 1024 x 1024 texture at 100 % and at 50 %
// with high quality, and the PNG encoding of it, measured apart so the split is visible.

#include "Classes/atlas/TextureView.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"

#include <QBuffer>
#include <QImageWriter>

#include <benchmark/benchmark.h>

using namespace qm;

namespace {

struct Atlas500
{
    sharedAppState state;
    TextureView view;
    Atlas500()
    {
        state.setTxtView(&view);
        view.setSharedState(&state);
        state.setFontName(QStringLiteral("DejaVu Sans"));
        state.setGlyphSize(36);
        state.setAutoSize(false);
        state.setTextureSize(1024, 1024);
        QString text;
        for (char16_t c = 0x21; text.size() < 500; ++c)
            if (c < 0x7F || (c >= 0xA1 && c != 0xAD) || c >= 0x100)
                text += QChar(c);
        state.setBlockredrawandpack(true);
        state.setTextGlyph(text);
        state.setBlockredrawandpack(false);
        view.redrawAllGlyphs();
        view.Packing(state.paddingSize(), state.paddingMethod(), state.packingReversed(), state.grid());
    }
};

Atlas500& atlas()
{
    static Atlas500 a;
    return a;
}

QByteArray encodePng(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    writer.write(image);
    return bytes;
}

void BM_AtlasImage(benchmark::State& state)
{
    const float scale = float(state.range(0));
    int placed = 0;
    for (CAGlyphLayer* l : atlas().view.glyphLayers())
        placed += l->canfit();
    for (auto _ : state)
        benchmark::DoNotOptimize(atlas().view.getTexture(scale, 4, scale));
    state.counters["glyphs"] = placed;
}
BENCHMARK(BM_AtlasImage)->Arg(100)->Arg(50)->Unit(benchmark::kMillisecond);

void BM_PngEncode(benchmark::State& state)
{
    const float scale = float(state.range(0));
    const QImage image = atlas().view.getTexture(scale, 4, scale);
    size_t bytes = 0;
    for (auto _ : state)
        bytes = size_t(encodePng(image).size());
    state.counters["bytes"] = double(bytes);
}
BENCHMARK(BM_PngEncode)->Arg(100)->Arg(50)->Unit(benchmark::kMillisecond);

void BM_AtlasImageAndPng(benchmark::State& state)
{
    const float scale = float(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(encodePng(atlas().view.getTexture(scale, 4, scale)));
}
BENCHMARK(BM_AtlasImageAndPng)->Arg(100)->Arg(50)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
