// The publish target list: adding, removing, duplicating, renaming, scaled copies, the panel
// fields, and the targets derived for projects saved before targets existed.

#include "Classes/model/sharedAppState.h"
#include "Classes/publish/PublishPanel.h"
#include "tests/publish/RecordingController.h"

#include <gtest/gtest.h>

using namespace qm;
using qm::test::RecordingController;

namespace {

QString exists(const QString& name)
{
    return QStringLiteral("\n[error] Target '") + name + QStringLiteral("' already exists.");
}

class PublishPanelTest : public ::testing::Test
{
protected:
    sharedAppState state;
    RecordingController controller;
    PublishPanel panel{state, &controller};
    int reloads = 0;

    void SetUp() override
    {
        panel.setReloadHandler([this] { ++reloads; });
    }

    PublishTarget record(const QString& name) const { return state.targetsPublish().value(name); }

    /// A project without targets and without the older output settings: one "Default" row,
    /// selected, whose record the selection creates.
    void startWithDefault()
    {
        panel.loadPublishSettings();
        panel.selectRow(0);
    }

    /// Sets the selected target's scale as the user types it.
    void typeScale(const QString& scale)
    {
        panel.fields().targetScale = scale;
        panel.updateTargetVisibleDetails();
    }
};

TEST_F(PublishPanelTest, NewTargetRecordIsMadeOnFirstSelectionWithTheProjectFileName)
{
    state.setProjectName(QUrl(QStringLiteral("file:///projects/Title.v2.quillmark")));
    startWithDefault();
    panel.targetPlus();
    EXPECT_FALSE(state.targetsPublish().contains(QStringLiteral("New")));

    panel.selectRow(1);
    PublishTarget expected;
    expected.mainname = QStringLiteral("New");
    expected.file = QStringLiteral("Title.v2");
    EXPECT_EQ(record(QStringLiteral("New")), expected);
    EXPECT_EQ(panel.fields().targetFile, QStringLiteral("Title.v2"));
    EXPECT_EQ(panel.fields().targetExtension, QStringLiteral("CHANGE ME"));

    // An unsaved project has no file name to offer.
    sharedAppState unsaved;
    PublishPanel other(unsaved, nullptr);
    other.loadPublishSettings();
    other.targetselectionchanged();
    EXPECT_EQ(unsaved.targetsPublish().value(QStringLiteral("Default")).file, QString());
}

TEST_F(PublishPanelTest, AddingTwiceReportsNewAndAddsNothing)
{
    startWithDefault();
    panel.targetPlus();
    panel.targetPlus();
    EXPECT_EQ(panel.targetArray(), QStringList({QStringLiteral("Default"), QStringLiteral("New")}));
    EXPECT_EQ(controller.log, exists(QStringLiteral("New")));
}

TEST_F(PublishPanelTest, RemovalNeverTakesTheFirstRow)
{
    startWithDefault();
    panel.targetPlus();
    panel.selectRow(1);
    panel.selectRow(0);
    panel.targetMinus();
    EXPECT_EQ(panel.targetArray().size(), 2);
    EXPECT_EQ(state.targetsPublish().size(), 2);

    panel.setSelectedRow(PublishPanel::noSelection);
    panel.targetMinus();
    EXPECT_EQ(panel.targetArray().size(), 2);

    panel.selectRow(1);
    panel.targetMinus();
    EXPECT_EQ(panel.targetArray(), QStringList{QStringLiteral("Default")});
    EXPECT_FALSE(state.targetsPublish().contains(QStringLiteral("New")));
    EXPECT_EQ(panel.selectedRow(), PublishPanel::noSelection);
}

TEST_F(PublishPanelTest, DuplicatingTwiceReportsTheCopyName)
{
    startWithDefault();
    panel.setObjectValue(QStringLiteral("HD"), 0);
    panel.fields().targetPath = QStringLiteral("out");
    panel.fields().targetExtension = QStringLiteral("-hd");
    panel.fields().targetFormat = 3;
    panel.fields().targetRedraw = true;
    panel.updateTargetVisibleDetails();

    panel.targetDuplicate();
    panel.targetDuplicate();
    EXPECT_EQ(panel.targetArray(), QStringList({QStringLiteral("HD"), QStringLiteral("HD copy")}));
    EXPECT_EQ(controller.log, exists(QStringLiteral("HD copy")));

    PublishTarget expected = record(QStringLiteral("HD"));
    expected.mainname = QStringLiteral("HD copy");
    expected.suffix = QStringLiteral("CHANGE ME");
    EXPECT_EQ(record(QStringLiteral("HD copy")), expected);
}

TEST_F(PublishPanelTest, ScaledCopiesUseExactFactorsAndAnUnsetSuffix)
{
    startWithDefault();
    panel.fields().targetPath = QStringLiteral("out");
    panel.fields().targetFile = QStringLiteral("title");
    panel.fields().targetExtension = QStringLiteral("@2x");
    panel.fields().targetFontFace = QStringLiteral("Face");
    panel.fields().targetScaleQuality = 3;
    panel.fields().targetFormat = 8;
    panel.fields().targetCheckCoords = false;
    panel.fields().targetRedraw = true;
    panel.updateTargetVisibleDetails();

    panel.target46();
    panel.target23();
    panel.target25();
    EXPECT_EQ(record(QStringLiteral("46.8%")).scale, QStringLiteral("46.8750"));
    EXPECT_EQ(record(QStringLiteral("23.4%")).scale, QStringLiteral("23.4375"));
    EXPECT_EQ(record(QStringLiteral("25%")).scale, QStringLiteral("25.0000"));

    PublishTarget expected = record(QStringLiteral("Default"));
    expected.mainname = QStringLiteral("23.4%");
    expected.suffix = QStringLiteral("CHANGE ME");
    expected.scale = QStringLiteral("23.4375");
    EXPECT_EQ(record(QStringLiteral("23.4%")), expected);

    // The factor applies to the selected target's scale, not to 100.
    typeScale(QStringLiteral("50.0000"));
    panel.target50();
    EXPECT_EQ(record(QStringLiteral("50%")).scale, QStringLiteral("25.0000"));
    panel.target50();
    EXPECT_EQ(controller.log, exists(QStringLiteral("50%")));
    EXPECT_EQ(panel.targetArray().size(), 5);
}

TEST_F(PublishPanelTest, ScaledCopiesReadTheScaleTextAsAFloat)
{
    startWithDefault();
    // 33.3333 as a float is 33.33330154..., whose half shows as 16.6667; a double would give
    // 16.6666.
    typeScale(QStringLiteral("33.3333"));
    panel.target50();
    EXPECT_EQ(record(QStringLiteral("50%")).scale, QStringLiteral("16.6667"));

    // Text after the number is ignored; text without a leading number reads as 0.
    panel.selectRow(0);
    typeScale(QStringLiteral(" 80% of it"));
    panel.target25();
    EXPECT_EQ(record(QStringLiteral("25%")).scale, QStringLiteral("20.0000"));
    panel.selectRow(0);
    typeScale(QStringLiteral("half"));
    panel.target46();
    EXPECT_EQ(record(QStringLiteral("46.8%")).scale, QStringLiteral("0.0000"));
}

TEST_F(PublishPanelTest, ScaledCopiesNeedASelection)
{
    startWithDefault();
    panel.setSelectedRow(PublishPanel::noSelection);
    panel.target50();
    panel.targetDuplicate();
    EXPECT_EQ(panel.targetArray(), QStringList{QStringLiteral("Default")});
}

TEST_F(PublishPanelTest, RenamingMovesTheRecordUnlessTheNameIsTaken)
{
    startWithDefault();
    panel.targetDuplicate();
    panel.selectRow(1);
    panel.fields().targetFile = QStringLiteral("copyfile");
    panel.updateTargetVisibleDetails();

    const int before = reloads;
    panel.setObjectValue(QStringLiteral("Default"), 1);
    EXPECT_EQ(controller.log, exists(QStringLiteral("Default")));
    EXPECT_EQ(panel.targetArray().at(1), QStringLiteral("Default copy"));
    EXPECT_GT(reloads, before);

    panel.setObjectValue(QStringLiteral("Phone"), 1);
    EXPECT_EQ(panel.targetArray(), QStringList({QStringLiteral("Default"), QStringLiteral("Phone")}));
    EXPECT_FALSE(state.targetsPublish().contains(QStringLiteral("Default copy")));
    EXPECT_EQ(record(QStringLiteral("Phone")).mainname, QStringLiteral("Phone"));
    EXPECT_EQ(record(QStringLiteral("Phone")).file, QStringLiteral("copyfile"));

    // Only stored records count: a listed name that was never selected has none yet.
    panel.targetPlus();
    panel.setObjectValue(QStringLiteral("New"), 1);
    EXPECT_EQ(panel.targetArray(),
              QStringList({QStringLiteral("Default"), QStringLiteral("New"), QStringLiteral("New")}));
}

TEST_F(PublishPanelTest, EditsStoreTheFieldsUnderTheSelectedRowAndMarkTheProjectChanged)
{
    startWithDefault();
    panel.targetPlus();
    panel.selectRow(1);
    state.setConfigchanged(false);
    panel.fields().targetScale = QStringLiteral("75");
    panel.fields().targetCheckTexture = false;
    panel.updateTargetVisibleDetails();
    EXPECT_TRUE(state.configchanged());
    EXPECT_EQ(record(QStringLiteral("New")).scale, QStringLiteral("75"));
    EXPECT_FALSE(record(QStringLiteral("New")).texture);
    EXPECT_EQ(record(QStringLiteral("New")).mainname, QStringLiteral("New"));

    panel.selectRow(0);
    EXPECT_EQ(panel.fields().targetScale, QStringLiteral("100.0000"));
    EXPECT_TRUE(panel.fields().targetCheckTexture);

    panel.fields().targetAutoClose = true;
    panel.publishAutoClose();
    EXPECT_TRUE(state.publishautoclose());
}

class LegacyTargets : public PublishPanelTest
{
protected:
    void openOldProject(int autoSDLevel, bool downscalerecalc)
    {
        state.setPublishDirectory(QStringLiteral("/old/out"));
        state.setPublishName(QStringLiteral("oldfont"));
        state.setAutoSDLevel(autoSDLevel);
        state.setDownscalerecalc(downscalerecalc);
        panel.loadPublishSettings();
    }

    /// The record every derived target starts from: the old output's directory and name.
    PublishTarget derived(const QString& name, const QString& scale, bool redraw) const
    {
        PublishTarget expected;
        expected.mainname = name;
        expected.path = QStringLiteral("/old/out");
        expected.file = QStringLiteral("oldfont");
        expected.scale = scale;
        expected.redraw = redraw;
        return expected;
    }
};

TEST_F(LegacyTargets, LevelOneGivesHDAndAHalfSizeSD)
{
    openOldProject(1, true);
    EXPECT_EQ(panel.targetArray(), QStringList({QStringLiteral("HD"), QStringLiteral("SD")}));
    EXPECT_EQ(record(QStringLiteral("HD")), derived(QStringLiteral("HD"), QStringLiteral("100.0000"), true));
    EXPECT_EQ(record(QStringLiteral("SD")), derived(QStringLiteral("SD"), QStringLiteral("50.0000"), true));
}

TEST_F(LegacyTargets, LevelTwoGivesIPadHDWithHDAtHalfAndSDAtAQuarter)
{
    openOldProject(2, false);
    EXPECT_EQ(panel.targetArray(),
              QStringList({QStringLiteral("iPadHD"), QStringLiteral("HD"), QStringLiteral("SD")}));
    EXPECT_EQ(record(QStringLiteral("iPadHD")),
              derived(QStringLiteral("iPadHD"), QStringLiteral("100.0000"), false));
    EXPECT_EQ(record(QStringLiteral("HD")), derived(QStringLiteral("HD"), QStringLiteral("50.0000"), false));
    EXPECT_EQ(record(QStringLiteral("SD")), derived(QStringLiteral("SD"), QStringLiteral("25.0000"), false));
    EXPECT_TRUE(state.configchanged());
}

TEST_F(LegacyTargets, OtherLevelsGiveDefaultFromTheOldOutputAndAnEmptyHD)
{
    // Whatever an earlier project left in the fields does not reach the derived record.
    panel.fields().targetExtension = QStringLiteral("-left-over");
    openOldProject(0, false);
    EXPECT_EQ(panel.targetArray(), QStringList({QStringLiteral("Default"), QStringLiteral("HD")}));
    EXPECT_EQ(record(QStringLiteral("Default")),
              derived(QStringLiteral("Default"), QStringLiteral("100.0000"), false));
    EXPECT_FALSE(state.targetsPublish().contains(QStringLiteral("HD")));
}

TEST_F(LegacyTargets, MissingOldOutputGivesOnlyDefaultAndStoredTargetsAreListed)
{
    state.setPublishName(QStringLiteral("oldfont"));
    panel.loadPublishSettings();
    EXPECT_EQ(panel.targetArray(), QStringList{QStringLiteral("Default")});
    EXPECT_TRUE(state.targetsPublish().isEmpty());

    PublishTargets stored;
    for (const char* name : {"phone", "Tablet"}) {
        PublishTarget target;
        target.mainname = QString::fromUtf8(name);
        stored.insert(target.mainname, target);
    }
    state.setTargetsPublish(stored);
    state.setPublishDirectory(QStringLiteral("/old/out"));
    panel.loadPublishSettings();
    EXPECT_EQ(panel.targetArray(), QStringList({QStringLiteral("Tablet"), QStringLiteral("phone")}));
    EXPECT_EQ(state.targetsPublish(), stored);
}

} // namespace
