// Rendering the 95 printable ASCII glyphs of DejaVu Sans at 50 px with three effect sets, next to
// the floor: FreeType alone loading and rendering the same glyphs.
//   (a) plain colour fill, no outline, no shadow, anti-aliased;
//   (b) linear gradient fill, centred 2 px outline, drop shadow with blur 3;
//   (c) glossy fill, outside 3 px gradient outline, inner shadow.

#include "Classes/render/CGGlyphBitmap.h"
#include "Platform/text/Font.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <benchmark/benchmark.h>

#include <functional>

using namespace qm;

namespace {

const QString kFamily = QStringLiteral("DejaVu Sans");
constexpr int kSize = 50;

QList<CGGlyphBitmap> asciiGlyphs(const std::function<void(CGGlyphBitmap&)>& style)
{
    QList<CGGlyphBitmap> glyphs;
    for (char16_t c = 0x20; c < 0x7F; ++c) {
        CGGlyphBitmap g(c);
        g.setFntName(kFamily);
        g.setGlyphsize(kSize);
        g.setStroke(false);
        g.setShadow(false);
        g.setGlyphColor(Color::calibratedRGB(0.15, 0.35, 0.85));
        g.setStrokeColor(Color::black());
        g.setShadowColor(Color::black());
        style(g);
        glyphs.append(g);
    }
    return glyphs;
}

void renderAll(benchmark::State& state, const std::function<void(CGGlyphBitmap&)>& style)
{
    QList<CGGlyphBitmap> glyphs = asciiGlyphs(style);
    for (auto _ : state) {
        for (CGGlyphBitmap& g : glyphs) {
            g.setNewSize();
            g.getImage();
            benchmark::DoNotOptimize(g.glyphImage().constBits());
        }
    }
    state.SetItemsProcessed(state.iterations() * glyphs.size());
}

void BM_FreeTypeFloor(benchmark::State& state)
{
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    const QByteArray path = Font::fromName(kFamily, kSize).filePath().toLocal8Bit();
    if (FT_Init_FreeType(&library) != 0 || FT_New_Face(library, path.constData(), 0, &face) != 0) {
        state.SkipWithError("FreeType cannot open DejaVu Sans");
        return;
    }
    FT_Set_Pixel_Sizes(face, 0, kSize);
    for (auto _ : state) {
        for (FT_ULong c = 0x20; c < 0x7F; ++c) {
            FT_Load_Char(face, c, FT_LOAD_RENDER);
            benchmark::DoNotOptimize(face->glyph->bitmap.buffer);
        }
    }
    state.SetItemsProcessed(state.iterations() * 95);
    FT_Done_Face(face);
    FT_Done_FreeType(library);
}
BENCHMARK(BM_FreeTypeFloor)->Unit(benchmark::kMicrosecond);

void BM_RenderPlainFill(benchmark::State& state)
{
    renderAll(state, [](CGGlyphBitmap& g) { g.setFillGMode(1); });
}
BENCHMARK(BM_RenderPlainFill)->Unit(benchmark::kMicrosecond);

void BM_RenderGradientOutlineDropShadow(benchmark::State& state)
{
    renderAll(state, [](CGGlyphBitmap& g) {
        g.setFillGMode(3);
        g.setGradiantAngle(30);
        g.setStroke(true);
        g.setStrokesize(2);
        g.setStrokehowmode(0);
        g.setShadow(true);
        g.setShadowhowmode(0);
        g.setShadowxoffset(2);
        g.setShadowyoffset(-2);
        g.setShadowblurradius(3);
    });
}
BENCHMARK(BM_RenderGradientOutlineDropShadow)->Unit(benchmark::kMicrosecond);

void BM_RenderGlossGradientOutsideInnerShadow(benchmark::State& state)
{
    renderAll(state, [](CGGlyphBitmap& g) {
        g.setFillGMode(1);
        g.setGlossy(true);
        g.setStroke(true);
        g.setStrokesize(3);
        g.setStrokehowmode(2);
        g.setStrokeMode(1);
        g.setShadow(true);
        g.setShadowhowmode(1);
    });
}
BENCHMARK(BM_RenderGlossGradientOutsideInnerShadow)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
