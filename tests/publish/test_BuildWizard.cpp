// The build-settings wizard: the presets' records, the two alerts and what they leave alone,
// and the format choice of the resources presets.

#include "Classes/model/sharedAppState.h"
#include "Classes/publish/BuildWizard.h"
#include "Classes/publish/PublishPanel.h"
#include "tests/publish/RecordingController.h"

#include <gtest/gtest.h>

using namespace qm;
using qm::test::RecordingController;

namespace {

class BuildWizardTest : public ::testing::Test
{
protected:
    sharedAppState state;
    RecordingController controller;
    PublishPanel panel{state, &controller};
    BuildWizard wizard{state, panel, &controller};

    void SetUp() override
    {
        panel.loadPublishSettings();
        panel.selectRow(0);
        state.setConfigchanged(false);
    }

    bool build(int preset, int format, const QString& directory = QStringLiteral("/out"))
    {
        wizard.fields().wizDirectory = directory;
        wizard.fields().wizFontName = QStringLiteral("Title");
        wizard.wizOption(preset);
        wizard.fields().wizFormat = format;
        return wizard.wizBuild();
    }

    /// A wizard record: everything on, quality 1, no face, file = the font name.
    static PublishTarget made(const char* name, const char* suffix, const char* scale, const QString& path,
                              int format)
    {
        PublishTarget t;
        t.mainname = QString::fromUtf8(name);
        t.path = path;
        t.file = QStringLiteral("Title");
        t.suffix = QString::fromUtf8(suffix);
        t.fontface = QString();
        t.scale = QString::fromUtf8(scale);
        t.quality = 1;
        t.format = format;
        t.texture = true;
        t.coords = true;
        t.redraw = true;
        return t;
    }

    void expectTargets(const QList<PublishTarget>& expected)
    {
        QStringList names;
        PublishTargets records;
        for (const PublishTarget& t : expected) {
            names.append(t.mainname);
            records.insert(t.mainname, t);
        }
        EXPECT_EQ(panel.targetArray(), names);
        EXPECT_EQ(state.targetsPublish(), records);
    }
};

TEST_F(BuildWizardTest, PresetOneReplacesAllTargetsAfterConfirmation)
{
    panel.targetPlus();
    ASSERT_TRUE(build(1, 0));

    ASSERT_EQ(controller.alerts.size(), 1);
    EXPECT_EQ(controller.alerts[0].message, QStringLiteral("Build Settings ?"));
    EXPECT_EQ(controller.alerts[0].informativeText,
              QStringLiteral("Warning! Your existing publish configuration will be replaced by a new one. "
                             "Are you sure ?"));
    EXPECT_EQ(controller.alerts[0].buttons, QStringList({QStringLiteral("yes"), QStringLiteral("no")}));

    const QString d = QStringLiteral("/out");
    expectTargets({made("@4x", "@4x", "100.0000", d, 0), made("@2x", "@2x", "50.0000", d, 0),
                   made("sd", "", "25.0000", d, 0)});
    EXPECT_TRUE(state.configchanged());
    EXPECT_EQ(panel.fields().targetExtension, QStringLiteral("@4x"));
}

TEST_F(BuildWizardTest, PresetFourWritesBelowTheFontsBmfontDirectoryInFormatOne)
{
    wizard.fields().wizFormat = 3;
    wizard.wizOption(4);
    EXPECT_EQ(wizard.fields().wizFormat, 1);
    ASSERT_TRUE(wizard.wizFormatItemVisible(0));
    EXPECT_EQ(BuildWizard::wizFormatItems().at(0), 1);
    for (int i = 1; i < 7; ++i)
        EXPECT_FALSE(wizard.wizFormatItemVisible(i)) << i;

    wizard.fields().wizDirectory = QStringLiteral("/out/");
    wizard.fields().wizFontName = QStringLiteral("Title");
    ASSERT_TRUE(wizard.wizBuild());
    const auto dir = [](const char* resources) { return QStringLiteral("/out/Title.bmfont/") + resources; };
    expectTargets({made("tabletHD", "", "100.0000", dir("resources-tablethd"), 1),
                   made("tablet", "", "50.0000", dir("resources-tablet"), 1),
                   made("phoneHD", "", "50.0000", dir("resources-phonehd"), 1),
                   made("phone", "", "25.0000", dir("resources-phone"), 1)});

    // Another preset shows the format choices again.
    wizard.wizOption(7);
    for (int i = 0; i < 7; ++i)
        EXPECT_TRUE(wizard.wizFormatItemVisible(i)) << i;
}

TEST_F(BuildWizardTest, PresetSevenHasNoSDTarget)
{
    ASSERT_TRUE(build(7, 5));
    const QString d = QStringLiteral("/out");
    expectTargets({made("@3x", "@3x", "100.0000", d, 5), made("@2x", "@2x", "66.6667", d, 5)});
}

TEST_F(BuildWizardTest, PresetZeroKeepsItsRoundedScales)
{
    ASSERT_TRUE(build(0, 2));
    EXPECT_EQ(state.targetsPublish().value(QStringLiteral("hd")).scale, QStringLiteral("46.8000"));
    EXPECT_EQ(state.targetsPublish().value(QStringLiteral("sd")).scale, QStringLiteral("23.4000"));
}

TEST_F(BuildWizardTest, FileUrlDirectoryIsUsedAsItsPath)
{
    ASSERT_TRUE(build(5, 1, QStringLiteral("file:///my%20fonts")));
    EXPECT_EQ(state.targetsPublish().value(QStringLiteral("phoneHD")).path,
              QStringLiteral("/my fonts/Title.bmfont/resources-phonehd"));
    EXPECT_EQ(state.targetsPublish().value(QStringLiteral("tabletHD")).path,
              state.targetsPublish().value(QStringLiteral("tablet")).path);
}

TEST_F(BuildWizardTest, EmptyDirectoryShowsTheIncompleteAlertAndChangesNothing)
{
    const PublishTargets before = state.targetsPublish();
    EXPECT_FALSE(build(1, 0, QString()));
    ASSERT_EQ(controller.alerts.size(), 1);
    EXPECT_EQ(controller.alerts[0].message, QStringLiteral("Incomplete settings"));
    EXPECT_EQ(controller.alerts[0].informativeText,
              QStringLiteral("Please enter a Directory AND a Font Name."));
    EXPECT_EQ(controller.alerts[0].buttons, QStringList{QStringLiteral("Ok")});
    EXPECT_EQ(state.targetsPublish(), before);
    EXPECT_EQ(panel.targetArray(), QStringList{QStringLiteral("Default")});
    EXPECT_FALSE(state.configchanged());

    // An empty font name is no reason to refuse.
    controller.alerts.clear();
    wizard.fields().wizDirectory = QStringLiteral("/out");
    wizard.fields().wizFontName = QStringLiteral("");
    EXPECT_TRUE(wizard.wizBuild());
    EXPECT_EQ(controller.alerts.size(), 1);
}

TEST_F(BuildWizardTest, AnsweringNoLeavesTheTargetsUntouched)
{
    panel.targetPlus();
    const PublishTargets before = state.targetsPublish();
    const QStringList names = panel.targetArray();
    controller.answer = 1;
    EXPECT_FALSE(build(2, 0));
    EXPECT_EQ(state.targetsPublish(), before);
    EXPECT_EQ(panel.targetArray(), names);
    EXPECT_FALSE(state.configchanged());
}

} // namespace
