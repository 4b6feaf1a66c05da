// How long the desktop window keeps its user waiting, on the offscreen platform: every figure
// runs from the last input event to the end of the first paint of the canvas that shows the
// result, with the window's own handlers, timers and painting in between.
//   - glyph-size slider drag on a 95-glyph project (goal: 100 ms after the last slider event);
//   - the same drag and opening, on a 3000-glyph project (goal: nothing blocks 2 s);
//   - a preview rebuild of a 200-character text on a 95-glyph set.

#include "Classes/app/MainWindowController.h"
#include "Classes/app/TopMenuController.h"
#include "Classes/atlas/TextureView.h"
#include "Classes/model/ProjectDocument.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Classes/ui/CanvasWidget.h"
#include "Platform/defaults/UserDefaults.h"
#include "Platform/text/Font.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QSlider>
#include <QTemporaryDir>

using namespace qm;

namespace {

QString ascii()
{
    QString s;
    for (char16_t c = 0x20; c <= 0x7E; ++c)
        s += QChar(c);
    return s;
}

QString ideographs(int count)
{
    QString s;
    for (int i = 0; i < count; ++i)
        s += QChar(char16_t(0x4E00 + i));
    return s;
}

/// A shown window holding a project of `family` at 50 px with `characters`, in the style a new
/// project starts with (gradient fill, 1 px outline).
struct Window
{
    QTemporaryDir dir;
    TopMenuController top;
    MainWindowController* window = nullptr;
    QSlider* slider = nullptr;

    Window(const QString& family, const QString& characters)
    {
        UserDefaults::setStandardStoreFile(dir.filePath(QStringLiteral("defaults.ini")));
        window = top.FileNew();
        window->resize(1280, 860);
        window->show();
        ProjectDocument& d = window->document();
        d.chooseFamily(family, false);
        d.applyCharacters(characters);
        d.reallyChangeGlyphSize(50);
        slider = window->findChild<QSlider*>(QStringLiteral("glyphSize"));
        settle();
    }
    ~Window()
    {
        window->document().state().setConfigchanged(false);
        window->close();
        QApplication::processEvents();
        UserDefaults::setStandardStoreFile(QString());
    }

    /// Runs the window's pending handlers and timers, then paints the canvas once.
    void settle()
    {
        QApplication::processEvents();
        QApplication::processEvents();
        window->canvas()->refresh();
        window->canvas()->repaint();
    }

    /// A drag over the slider: several value changes, one rebuild after the last of them.
    void drag(int from, int to)
    {
        const int step = from < to ? 1 : -1;
        for (int v = from; v != to + step; v += step)
            slider->setValue(v);
        settle();
    }
};

void slider(benchmark::State& state, const QString& family, const QString& characters)
{
    Window w(family, characters);
    bool up = true;
    for (auto _ : state) {
        // Alternating directions: every iteration ends on a size that differs from the last.
        w.drag(up ? 46 : 50, up ? 50 : 46);
        up = !up;
    }
    state.counters["glyphs"] = double(w.window->document().view().glyphLayers().size());
    // The figure only counts if the paint really drew every glyph at the new size.
    for (CAGlyphLayer* layer : w.window->document().view().glyphLayers())
        if (layer->needsDisplay() || (layer->contents().isNull() && !layer->bounds().isEmpty()))
            state.SkipWithError("a glyph was left unrendered");
}

void BM_GlyphSizeSlider95(benchmark::State& state)
{
    slider(state, QStringLiteral("DejaVu Sans"), ascii());
}
BENCHMARK(BM_GlyphSizeSlider95)->Unit(benchmark::kMillisecond);

void BM_GlyphSizeSlider3000(benchmark::State& state)
{
    slider(state, QStringLiteral("WenQuanYi Micro Hei"), ideographs(3000));
}
BENCHMARK(BM_GlyphSizeSlider3000)->Unit(benchmark::kMillisecond)->Iterations(3);

/// Opening a saved 3000-glyph project in a shown window, to its first painted frame.
void BM_Open3000InAWindow(benchmark::State& state)
{
    QString path;
    QTemporaryDir dir;
    {
        Window made(QStringLiteral("WenQuanYi Micro Hei"), ideographs(3000));
        path = dir.filePath(QStringLiteral("big.quillmark"));
        if (!made.window->document().writeProjectFile(path, nullptr)) {
            state.SkipWithError("cannot save the project");
            return;
        }
    }
    Window w(QStringLiteral("DejaVu Sans"), QStringLiteral("A"));
    for (auto _ : state) {
        w.window->document().openfileproject(path, nullptr);
        w.settle();
    }
}
BENCHMARK(BM_Open3000InAWindow)->Unit(benchmark::kMillisecond)->Iterations(3);

/// Typing one more character into the preview field of a 200-character text, in preview mode.
void BM_PreviewRebuild200(benchmark::State& state)
{
    Window w(QStringLiteral("DejaVu Sans"), ascii());
    const QString sentence = QStringLiteral("The quick brown fox jumps over the lazy dog, 0123456789!\\n");
    QString text;
    while (text.size() < 200)
        text += sentence;
    text.truncate(200);
    ProjectDocument& d = w.window->document();
    d.previewTextChanged(text);
    d.previewOrTextureChanged(true);
    w.settle();
    bool longer = true;
    for (auto _ : state) {
        d.previewTextChanged(longer ? text + QLatin1Char('x') : text);
        longer = !longer;
        w.settle();
    }
}
BENCHMARK(BM_PreviewRebuild200)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
