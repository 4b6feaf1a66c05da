// The publish run: the target check and its alerts, the files each target writes, the scaled
// redraw and the project being the same afterwards, per-file failures.

#include "Classes/model/ProjectDocument.h"
#include "Classes/publish/PublishRun.h"
#include "Classes/render/CAGlyphLayer.h"
#include "tests/publish/RecordingController.h"

#include <QDir>
#include <QImageReader>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace qm;

namespace {

const QString pathsText =
    QStringLiteral("Please check all the targets and fill the Directory Path & File Name");
const QString suffixText = QStringLiteral(
    "Please check all the targets and set the suffixes (ex: 'empty', -ipad, -ipadhd, -hd, @4x, @2x ...)");
const QString refusedLine = QStringLiteral("\n[error] Incomplete targets settings.");

/// Records the project's redraw-affected settings each time a texture starts, i.e. while the
/// target's scale is in effect.
class ObservingController : public test::RecordingController
{
public:
    sharedAppState* state = nullptr;
    struct Seen
    {
        int glyphSize, paddingSize, boundingPadding, postXOffset, postYOffset, xadvancedOffset;
        float strokeSize, shadowBlurRadius;
        int firstGlyphSize;
    };
    QList<Seen> seen;
    TextureView* view = nullptr;

    void appendPublishLog(const QString& text) override
    {
        RecordingController::appendPublishLog(text);
        if (state && text.startsWith(QLatin1String("\nProcessing texture")))
            seen.append(
                {state->glyphSize(), state->paddingSize(), state->boundingPadding(), state->postXOffset(),
                 state->postYOffset(), state->xadvancedOffset(), state->strokeSize(),
                 state->shadowBlurRadius(),
                 view->glyphLayers().isEmpty() ? 0 : view->glyphLayers().first()->glyphBitmap().glyphsize()});
    }
};

/// The names of the settings fields that differ, for failure messages.
QString differingFields(const sharedAppState& a, const sharedAppState& b)
{
    QStringList names;
#define QM_COMPARE_FIELD(Type, name, ...)                                                                    \
    if (!(a.name() == b.name()))                                                                             \
        names.append(QStringLiteral(#name));
    QM_SHAREDAPPSTATE_PLAIN_FIELDS(QM_COMPARE_FIELD)
    QM_SHAREDAPPSTATE_INFORMED_FIELDS(QM_COMPARE_FIELD)
#undef QM_COMPARE_FIELD
    return names.join(QStringLiteral(", "));
}

PublishTarget target(const QString& name, const QString& path, const QString& file, const QString& suffix)
{
    PublishTarget t;
    t.mainname = name;
    t.path = path;
    t.file = file;
    t.suffix = suffix;
    return t;
}

class PublishRunTest : public ::testing::Test
{
protected:
    ObservingController controller;
    ProjectDocument session{&controller};
    sharedAppState& state = session.state();
    QTemporaryDir dir;

    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        controller.state = &state;
        controller.view = &session.view();
    }

    void setTargets(const QList<PublishTarget>& list)
    {
        PublishTargets targets;
        for (const PublishTarget& t : list)
            targets.insert(t.mainname, t);
        state.setTargetsPublish(targets);
    }

    PublishResult publish()
    {
        PublishRun run(state, session.view(), &controller);
        return run.buttonPublish();
    }

    QStringList writtenFiles() const
    {
        return QDir(dir.path()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    }

    /// A small DejaVu Sans set with every redraw-affected setting away from its default.
    void buildGlyphSet()
    {
        state.setBlockredrawandpack(true);
        session.chooseFamily(QStringLiteral("DejaVu Sans"), false);
        state.setTextGlyph(QStringLiteral(" AVWgj"));
        state.setBlockredrawandpack(false);
        session.reallyChangeGlyphSize(25);
        state.setPackingOptions(3, 3, true, false);
        state.setXadvancedOffset(5);
        state.updatefixedadvance(false, 21);
        state.setNewBoundingPadding(3);
        state.setStrokeInfo(true, 1.5f, Color::black(), 0);
        state.setShadowInfo(true, 3.0f, -5.0f, 2.5f, 0);
        state.postOffsetChanged(-3, 5);
        state.setConfigchanged(false);
    }
};

TEST_F(PublishRunTest, PathsAlertWinsOverSuffixAlertAndNothingIsWritten)
{
    setTargets({target("a", dir.path(), "font", "CHANGE ME"), target("b", QString(), "font", "-hd")});
    const PublishResult result = publish();

    EXPECT_FALSE(result.validated);
    EXPECT_FALSE(result.succeeded());
    ASSERT_EQ(controller.alerts.size(), 1);
    EXPECT_EQ(controller.alerts[0].message, QStringLiteral("Publish settings"));
    EXPECT_EQ(controller.alerts[0].informativeText, pathsText);
    EXPECT_EQ(controller.alerts[0].buttons, QStringList{QStringLiteral("Ok")});
    EXPECT_EQ(controller.log, refusedLine);
    EXPECT_TRUE(writtenFiles().isEmpty());
}

TEST_F(PublishRunTest, UnsetSuffixBlocksTheRunEvenWithEveryPathSet)
{
    setTargets({target("a", dir.path(), "font", ""), target("b", dir.path(), "font", "CHANGE ME")});
    publish();
    ASSERT_EQ(controller.alerts.size(), 1);
    EXPECT_EQ(controller.alerts[0].message, QStringLiteral("Publish settings"));
    EXPECT_EQ(controller.alerts[0].informativeText, suffixText);
    EXPECT_EQ(controller.log, refusedLine);
    EXPECT_TRUE(writtenFiles().isEmpty());
}

TEST_F(PublishRunTest, TheCheckLooksOnlyAtWhatATargetWrites)
{
    PublishTarget textureOnly = target("t", dir.path(), QString(), "-hd");
    textureOnly.coords = false;
    PublishTarget coordsOnly = target("c", QString(), "font", "");
    coordsOnly.texture = false;
    PublishTarget nothing = target("n", QString(), QString(), "CHANGE ME");
    nothing.texture = nothing.coords = false;
    EXPECT_EQ(PublishRun::validate({textureOnly, coordsOnly, nothing}), PublishRun::Check::Passed);

    PublishTarget needsFile = target("f", dir.path(), QString(), "");
    needsFile.texture = false;
    EXPECT_EQ(PublishRun::validate({needsFile}), PublishRun::Check::Paths);
    // A target that writes nothing still needs its paths.
    nothing.path = QString();
    nothing.texture = true;
    EXPECT_EQ(PublishRun::validate({nothing}), PublishRun::Check::Paths);
}

TEST_F(PublishRunTest, TextureOnlyTargetWithoutFileNameIsNamedByItsSuffix)
{
    PublishTarget t = target("t", dir.path(), QString(), "-hd");
    t.coords = false;
    setTargets({t});
    const PublishResult result = publish();

    EXPECT_TRUE(result.validated);
    EXPECT_TRUE(controller.alerts.isEmpty());
    EXPECT_TRUE(controller.log.startsWith(QStringLiteral("\nProcessing texture: ") + dir.path() +
                                          QStringLiteral("/-hd.png ")))
        << qPrintable(controller.log);
    EXPECT_FALSE(controller.log.contains(QLatin1String("coordinates")));
    EXPECT_TRUE(controller.log.endsWith(QLatin1String("[Ok]\n"))) << qPrintable(controller.log);
    EXPECT_EQ(result.filesOk, 1);
    EXPECT_EQ(result.filesFailed, 0);
    EXPECT_EQ(QImageReader(dir.filePath(QStringLiteral("-hd.png"))).size(), QSize(state.width(), state.height()));
}

TEST_F(PublishRunTest, FileNamesFollowTheFormat)
{
    PublishRun run(state, session.view(), &controller);
    PublishTarget t = target("t", QStringLiteral("/out"), QStringLiteral("Title"), QStringLiteral("@2x"));
    const auto files = [&](int format) {
        t.format = format;
        return run.filesOf(t);
    };
    EXPECT_EQ(files(0).texture, QStringLiteral("/out/Title@2x.png"));
    EXPECT_EQ(files(0).descriptor, QStringLiteral("/out/Title@2x.fnt"));
    EXPECT_EQ(files(3).descriptor, QStringLiteral("/out/Title@2x.fnt")); // XML in a .fnt file
    EXPECT_EQ(files(4).descriptor, QStringLiteral("/out/Title@2x.txt"));
    EXPECT_EQ(files(6).descriptor, QStringLiteral("/out/Title@2x.fnt"));
    EXPECT_EQ(files(8).descriptor, QStringLiteral("/out/Title@2x.lua"));
    EXPECT_EQ(files(7).texture, QStringLiteral("/out/Title.atlas")); // no suffix on the directory
    EXPECT_EQ(files(7).descriptor, QStringLiteral("/out/Title@2x.xml"));
    EXPECT_EQ(files(7).textureName, QStringLiteral("Title@2x.png"));
}

TEST_F(PublishRunTest, RelativeDirectoriesAreTakenFromTheProjectFolder)
{
    PublishRun run(state, session.view(), &controller);
    const PublishTarget t = target("t", QStringLiteral("out/../hd"), QStringLiteral("f"), QString());
    state.setProjectName(QUrl::fromLocalFile(dir.filePath(QStringLiteral("demo.quillmark"))));
    EXPECT_EQ(run.directoryOf(t), dir.filePath(QStringLiteral("hd")));
    state.setProjectName(QUrl());
    EXPECT_EQ(run.directoryOf(t), QDir::current().filePath(QStringLiteral("hd")));
    EXPECT_EQ(run.directoryOf(target("t", QStringLiteral("/abs"), "f", "")), QStringLiteral("/abs"));
}

TEST_F(PublishRunTest, RedrawnHalfSizeTargetScalesSettingsAndRestoresTheProject)
{
    buildGlyphSet();
    QList<QRectF> framesBefore;
    for (CAGlyphLayer* layer : session.view().glyphLayers())
        framesBefore.append(layer->frame());
    PublishTarget half = target("half", dir.path(), QStringLiteral("font"), QStringLiteral("-sd"));
    half.scale = QStringLiteral("50.0000");
    half.redraw = true;
    PublishTarget full = target("full", dir.path(), QStringLiteral("font"), QString());
    full.redraw = true; // at 100 % redrawing changes nothing
    setTargets({half, full});
    const sharedAppState before = state;
    publish();

    // Map order: "full" runs first, at the project's own values.
    ASSERT_EQ(controller.seen.size(), 2);
    EXPECT_EQ(controller.seen[0].glyphSize, 25);
    EXPECT_EQ(controller.seen[0].postXOffset, -3);
    const auto& scaled = controller.seen[1];
    EXPECT_EQ(scaled.glyphSize, 12);      // floor(12.5)
    EXPECT_EQ(scaled.firstGlyphSize, 12); // the glyphs themselves are re-rendered at it
    EXPECT_EQ(scaled.postXOffset, -1);    // trunc(-1.5): toward zero, not floor
    EXPECT_EQ(scaled.postYOffset, 2);
    EXPECT_EQ(scaled.paddingSize, 1);
    EXPECT_EQ(scaled.boundingPadding, 1);
    EXPECT_EQ(scaled.xadvancedOffset, 2);
    EXPECT_FLOAT_EQ(scaled.strokeSize, 0.75f);
    EXPECT_FLOAT_EQ(scaled.shadowBlurRadius, 1.25f);

    EXPECT_TRUE(state.sameSettings(before)) << qPrintable(differingFields(state, before));
    const QList<CAGlyphLayer*> layers = session.view().glyphLayers();
    for (int i = 0; i < layers.size(); ++i) {
        EXPECT_EQ(layers[i]->glyphBitmap().glyphsize(), 25);
        EXPECT_EQ(layers[i]->glyphBitmap().boundingPadding(), 3);
        EXPECT_FLOAT_EQ(layers[i]->glyphBitmap().strokesize(), 1.5f);
        EXPECT_EQ(layers[i]->frame(), framesBefore[i]) << i;
    }
}

TEST_F(PublishRunTest, UnwritableFolderFailsItsFilesWhileLaterTargetsStillRun)
{
    QFile blocker(dir.filePath(QStringLiteral("not-a-folder")));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    PublishTarget broken =
        target("a", blocker.fileName() + QStringLiteral("/out"), QStringLiteral("font"), "");
    broken.texture = false;
    PublishTarget good = target("b", dir.filePath(QStringLiteral("good")), QStringLiteral("font"), "");
    good.texture = false;
    setTargets({broken, good});
    QList<std::pair<int, int>> progress;
    PublishRun run(state, session.view(), &controller);
    run.setProgressHandler([&](int done, int total) { progress.append({done, total}); });
    const PublishResult result = run.buttonPublish();

    EXPECT_TRUE(result.validated);
    EXPECT_EQ(result.filesFailed, 1);
    EXPECT_EQ(result.filesOk, 1);
    EXPECT_FALSE(result.succeeded());
    const QString expected = QStringLiteral("\nProcessing coordinates: ") + blocker.fileName() +
                             QStringLiteral("/out/font.fnt[Failed]\nProcessing coordinates: ") +
                             dir.filePath(QStringLiteral("good/font.fnt")) + QStringLiteral("[Ok]\n");
    EXPECT_EQ(controller.log, expected);
    EXPECT_TRUE(QFile::exists(dir.filePath(QStringLiteral("good/font.fnt"))));
    EXPECT_EQ(progress, (QList<std::pair<int, int>>{{0, 2}, {1, 2}, {2, 2}}));
}

TEST_F(PublishRunTest, AutoCloseIsReportedEvenWhenFilesFailed)
{
    PublishTarget t = target("t", QStringLiteral("/proc/no-such-folder"), QStringLiteral("f"), "");
    t.texture = false;
    setTargets({t});
    state.setPublishautoclose(true);
    const PublishResult result = publish();
    EXPECT_EQ(result.filesFailed, 1);
    EXPECT_TRUE(result.autoClose);
}

} // namespace
