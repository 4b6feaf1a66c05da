// Saving and opening a project of 3000 glyphs through the document, as the Save and Open
// commands of a window do: the file written or read, and on opening the panels refreshed, the
// glyph set rebuilt, every glyph record applied, and the set rendered and packed once.

#include "Classes/model/ProjectDocument.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Platform/text/Font.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>

using namespace qm;

namespace {

constexpr int kGlyphs = 3000;
const QString kFamily = QStringLiteral("DejaVu Sans");

/// The first 3000 characters the font covers from "!" on: every glyph has an outline.
QString coveredCharacters()
{
    const Font font = Font::fromName(kFamily, 20);
    QString text;
    for (char16_t c = 0x21; text.size() < kGlyphs && c < 0xD800; ++c)
        if (font.coversCharacter(c))
            text += QChar(c);
    return text;
}

/// A styled project at 20 pixels (outline, gradient fill), one glyph in a hundred with its own
/// offsets and one in five hundred with a custom picture, saved once.
struct Workload
{
    QTemporaryDir dir;
    QString path;
    qint64 fileBytes = 0;
    ProjectDocument document;

    Workload()
    {
        document.chooseFamily(kFamily, false);
        document.state().setStrokeInfo(true, 1.5f, Color::black().toCalibratedRGB(), 0);
        document.applyCharacters(coveredCharacters());
        document.reallyChangeGlyphSize(20);
        QImage picture(24, 24, QImage::Format_RGBA8888_Premultiplied);
        picture.fill(QColor(200, 100, 50));
        int i = 0;
        for (CAGlyphLayer* layer : document.view().glyphLayers()) {
            CGGlyphBitmap& g = layer->glyphBitmap();
            if (i % 100 == 0)
                g.setAddXOffset(i % 7 - 3);
            if (i % 500 == 0) {
                g.setGlyphImage(picture);
                g.setFrameImage(QRectF(0, 0, 24, 24));
                g.setHasCustomPicture(true);
            }
            ++i;
        }
        path = dir.filePath(QStringLiteral("big.quillmark"));
        document.writeProjectFile(path, nullptr);
        fileBytes = QFileInfo(path).size();
    }
};

Workload& workload()
{
    static Workload w;
    return w;
}

void BM_SaveDocument3000(benchmark::State& state)
{
    Workload& w = workload();
    const QString path = w.dir.filePath(QStringLiteral("saved.quillmark"));
    for (auto _ : state) {
        if (!w.document.writeProjectFile(path, nullptr)) {
            state.SkipWithError("saving failed");
            break;
        }
    }
    state.counters["glyphs"] = w.document.glyphCount();
    state.counters["file_bytes"] = double(w.fileBytes);
}
BENCHMARK(BM_SaveDocument3000)->Unit(benchmark::kMillisecond);

/// Opening into a window that shows another project (the glyph set is replaced).
void BM_OpenDocument3000InAWindow(benchmark::State& state)
{
    Workload& w = workload();
    ProjectDocument window;
    window.setUpWindow();
    int glyphs = 0, placed = 0;
    for (auto _ : state) {
        if (!window.openfileproject(w.path)) {
            state.SkipWithError("opening failed");
            break;
        }
        state.PauseTiming();
        glyphs = window.glyphCount();
        placed = window.placedGlyphCount();
        window.applyCharacters(QStringLiteral("ab"));
        state.ResumeTiming();
    }
    state.counters["glyphs"] = glyphs;
    state.counters["placed"] = placed;
}
BENCHMARK(BM_OpenDocument3000InAWindow)->Unit(benchmark::kMillisecond);

/// Opening without a window, as the command line does before publishing.
void BM_OpenDocument3000Headless(benchmark::State& state)
{
    Workload& w = workload();
    for (auto _ : state) {
        ProjectDocument document;
        document.setRefusesMissingFonts(true);
        if (!document.openfileproject(w.path)) {
            state.SkipWithError("opening failed");
            break;
        }
        benchmark::DoNotOptimize(document.glyphCount());
    }
}
BENCHMARK(BM_OpenDocument3000Headless)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
