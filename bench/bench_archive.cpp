// Saving and opening a project of 3000 glyph records (plus the settings): the keyed archive's
// encoding and decoding, without file I/O. One glyph in a hundred carries a custom picture.

#include "Classes/model/ProjectArchive.h"

#include <benchmark/benchmark.h>

#include <QImage>

using namespace qm;

namespace {

constexpr int kGlyphs = 3000;

struct Workload
{
    sharedAppState settings;
    QList<CGGlyphBitmap> glyphs;
    QList<const CGGlyphBitmap*> pointers;

    Workload()
    {
        PublishTargets targets;
        for (const char* name : {"hd", "sd", "retina"}) {
            PublishTarget t;
            t.mainname = QString::fromLatin1(name);
            targets.insert(t.mainname, t);
        }
        settings.setTargetsPublish(targets);
        QImage picture(48, 48, QImage::Format_RGBA8888_Premultiplied);
        picture.fill(QColor(200, 100, 50, 255));
        glyphs.reserve(kGlyphs);
        for (int i = 0; i < kGlyphs; ++i) {
            CGGlyphBitmap g(char16_t(0x20 + i));
            g.setStrokeColor(Color::black().toCalibratedRGB());
            g.setShadowColor(Color::calibratedWhite(0, 0.9));
            g.setGlyphColor(Color::darkGray().toDeviceRGB());
            g.setAddXOffset(i % 5 - 2);
            g.setAddXAdvance(i % 3);
            if (i % 100 == 0) {
                g.setHasCustomPicture(true);
                g.setGlyphImage(picture);
                g.setFrameImage(QRectF(0, 0, 48, 48));
            }
            glyphs.append(g);
        }
        for (const CGGlyphBitmap& g : glyphs)
            pointers.append(&g);
    }
};

const Workload& workload()
{
    static const Workload w;
    return w;
}

void BM_EncodeProject(benchmark::State& state)
{
    const Workload& w = workload();
    qsizetype bytes = 0;
    for (auto _ : state) {
        const QByteArray data = ProjectArchive::encode(w.settings, w.pointers);
        bytes = data.size();
        benchmark::DoNotOptimize(data.constData());
    }
    state.counters["file_bytes"] = double(bytes);
    state.counters["glyphs"] = kGlyphs;
}
BENCHMARK(BM_EncodeProject)->Unit(benchmark::kMillisecond);

void BM_DecodeProject(benchmark::State& state)
{
    const Workload& w = workload();
    const QByteArray data = ProjectArchive::encode(w.settings, w.pointers);
    for (auto _ : state) {
        ProjectData project;
        if (!ProjectArchive::decode(data, &project) || project.glyphs.size() != kGlyphs) {
            state.SkipWithError("decoding failed");
            break;
        }
        benchmark::DoNotOptimize(project.glyphs.data());
    }
    state.counters["file_bytes"] = double(data.size());
    state.counters["glyphs"] = kGlyphs;
}
BENCHMARK(BM_DecodeProject)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
