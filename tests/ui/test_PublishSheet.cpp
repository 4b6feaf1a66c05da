// The publish and wizard sheets over a real project: the target table and its buttons, names
// edited in the table, the detail fields stored as typed, the wizard's build through the sheet
// and its alerts, and a publish run with its log, progress bar and auto-close.

#include "Classes/publish/BuildWizard.h"
#include "Classes/publish/PublishPanel.h"
#include "Classes/publish/PublishRun.h"
#include "Classes/ui/PublishSheet.h"
#include "Classes/ui/WizardSheet.h"
#include "tests/ui/PanelTestSupport.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QListView>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>

using namespace qm;
using namespace qm::test;

namespace {

struct Sheets
{
    Project p;
    PublishPanel panel{p.state, &p.controller};
    BuildWizard wizard{p.state, panel, &p.controller};
    PublishRun run{p.state, p.view, &p.controller};
    PublishSheet sheet{panel, wizard, run, p.state, &p.controller};

    Sheets()
    {
        p.controller.forwardLog = [this](const QString& text) { sheet.appendPublishLog(text); };
        sheet.reloadFromSettings();
        sheet.openSheet();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&sheet));
    }
    QStringList names() const
    {
        QStringList list;
        for (int row = 0; row < sheet.targetTable()->rowCount(); ++row)
            list.append(sheet.targetTable()->item(row, 0)->text());
        return list;
    }
    void press(const char* name) { click(sheet.button(QString::fromLatin1(name))); }
    void selectRow(int row)
    {
        QTableWidget* table = sheet.targetTable();
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualItemRect(table->item(row, 0)).center());
    }
    /// Edits a name in the table as the user does: the cell's editor, typing, Return.
    void rename(int row, const QString& name)
    {
        QTableWidget* table = sheet.targetTable();
        table->editItem(table->item(row, 0));
        auto* editor = table->viewport()->findChild<QLineEdit*>();
        ASSERT_NE(editor, nullptr);
        editor->selectAll();
        QTest::keyClicks(editor, name);
        QTest::keyClick(editor, Qt::Key_Return);
        // The view commits a Return from its event loop.
        EXPECT_TRUE(
            waitUntil([editor = QPointer<QLineEdit>(editor)] { return !editor || !editor->isVisible(); }));
    }
    PublishTarget record(const QString& name) const { return p.state.targetsPublish().value(name); }
    QString log() const { return sheet.targetLog()->toPlainText(); }
};

} // namespace

TEST(PublishSheet, AddingTwiceLogsTheErrorLine)
{
    Sheets s;
    ASSERT_EQ(s.names(), QStringList{QStringLiteral("Default")});
    s.press("targetPlus");
    EXPECT_EQ(s.names(), QStringList({QStringLiteral("Default"), QStringLiteral("New")}));
    EXPECT_TRUE(s.log().isEmpty());
    s.press("targetPlus");
    EXPECT_EQ(s.names().size(), 2);
    EXPECT_EQ(s.p.controller.log, QStringLiteral("\n[error] Target 'New' already exists."));
    EXPECT_TRUE(s.log().endsWith(QStringLiteral("[error] Target 'New' already exists.")));
}

TEST(PublishSheet, SelectedTargetsFieldsAreStoredAsTyped)
{
    Sheets s;
    s.press("targetPlus");
    s.selectRow(1);
    EXPECT_EQ(s.sheet.targetExtension()->text(), QStringLiteral("CHANGE ME"));
    EXPECT_EQ(s.sheet.targetScale()->text(), QStringLiteral("100.0000"));
    EXPECT_TRUE(s.p.state.targetsPublish().contains(QStringLiteral("New")));

    s.p.state.setConfigchanged(false);
    type(s.sheet.targetPath(), QStringLiteral("/tmp/out"));
    type(s.sheet.targetExtension(), QStringLiteral("@2x"));
    type(s.sheet.targetScale(), QStringLiteral("50"));
    choose(s.sheet.targetFormat(), 3);
    choose(s.sheet.targetScaleQuality(), 4);
    click(s.sheet.targetCheckTexture());
    click(s.sheet.targetRedraw());
    const PublishTarget t = s.record(QStringLiteral("New"));
    EXPECT_EQ(t.mainname, QStringLiteral("New"));
    EXPECT_EQ(t.path, QStringLiteral("/tmp/out"));
    EXPECT_EQ(t.suffix, QStringLiteral("@2x"));
    EXPECT_EQ(t.scale, QStringLiteral("50"));
    EXPECT_EQ(t.format, 3);
    EXPECT_EQ(t.quality, 4);
    EXPECT_FALSE(t.texture);
    EXPECT_TRUE(t.coords);
    EXPECT_TRUE(t.redraw);
    EXPECT_TRUE(s.p.state.configchanged());

    // Another row shows its own record; coming back shows the edits.
    s.selectRow(0);
    EXPECT_EQ(s.sheet.targetPath()->text(), QString());
    s.selectRow(1);
    EXPECT_EQ(s.sheet.targetPath()->text(), QStringLiteral("/tmp/out"));
    EXPECT_FALSE(s.sheet.targetCheckTexture()->isChecked());
    EXPECT_EQ(s.sheet.targetFormat()->currentData().toInt(), 3);
}

TEST(PublishSheet, NamesAreEditedInTheTable)
{
    Sheets s;
    s.press("targetPlus");
    s.selectRow(1);
    s.rename(1, QStringLiteral("HD"));
    EXPECT_EQ(s.names(), QStringList({QStringLiteral("Default"), QStringLiteral("HD")}));
    EXPECT_EQ(s.panel.targetArray(), s.names());
    EXPECT_EQ(s.record(QStringLiteral("HD")).mainname, QStringLiteral("HD"));
    EXPECT_FALSE(s.p.state.targetsPublish().contains(QStringLiteral("New")));

    // The same name again is no rename; a taken name is refused and logged.
    s.rename(1, QStringLiteral("HD"));
    EXPECT_TRUE(s.p.controller.log.isEmpty());
    s.selectRow(0);
    s.rename(0, QStringLiteral("HD"));
    EXPECT_EQ(s.names(), QStringList({QStringLiteral("Default"), QStringLiteral("HD")}));
    EXPECT_EQ(s.p.controller.log, QStringLiteral("\n[error] Target 'HD' already exists."));
}

TEST(PublishSheet, ScaledCopiesDuplicatesAndRemoval)
{
    Sheets s;
    s.selectRow(0);
    type(s.sheet.targetScale(), QStringLiteral("100.0000"));
    s.press("target50");
    s.selectRow(0);
    s.press("target46");
    s.selectRow(0);
    s.press("targetDuplicate");
    EXPECT_EQ(s.names(), QStringList({QStringLiteral("Default"), QStringLiteral("50%"),
                                      QStringLiteral("46.8%"), QStringLiteral("Default copy")}));
    EXPECT_EQ(s.record(QStringLiteral("50%")).scale, QStringLiteral("50.0000"));
    EXPECT_EQ(s.record(QStringLiteral("46.8%")).scale, QStringLiteral("46.8750"));
    EXPECT_EQ(s.record(QStringLiteral("46.8%")).suffix, QStringLiteral("CHANGE ME"));

    s.selectRow(0);
    s.press("targetMinus");
    EXPECT_EQ(s.names().size(), 4) << "the first target always stays";
    s.selectRow(3);
    s.press("targetMinus");
    EXPECT_EQ(s.names().size(), 3);
    EXPECT_FALSE(s.p.state.targetsPublish().contains(QStringLiteral("Default copy")));
}

TEST(PublishSheet, WizardBuildsPresetOneThroughTheSheet)
{
    Sheets s;
    WizardSheet* wizard = s.sheet.wizardSheet();
    s.press("targetWizard");
    EXPECT_FALSE(s.sheet.isVisible());
    ASSERT_TRUE(wizard->isVisible());

    // Without a directory: the incomplete-settings alert, and the wizard stays.
    click(wizard->buildButton());
    ASSERT_EQ(s.p.controller.alerts.size(), 1);
    EXPECT_EQ(s.p.controller.alerts[0].message, QStringLiteral("Incomplete settings"));
    EXPECT_EQ(s.p.controller.alerts[0].informativeText,
              QStringLiteral("Please enter a Directory AND a Font Name."));
    EXPECT_TRUE(wizard->isVisible());

    s.p.controller.directories.append(QStringLiteral("/out"));
    click(wizard->wizDirectoryChooser());
    EXPECT_EQ(wizard->wizDirectory()->text(), QStringLiteral("/out"));
    type(wizard->wizFontName(), QStringLiteral("Title"));
    choose(wizard->wizOptionPopup(), 1);
    choose(wizard->wizFormat(), 0);

    // "no" keeps the targets and the wizard.
    s.p.controller.answers = {1};
    click(wizard->buildButton());
    EXPECT_EQ(s.p.controller.alerts.last().message, QStringLiteral("Build Settings ?"));
    EXPECT_EQ(s.p.controller.alerts.last().buttons,
              QStringList({QStringLiteral("yes"), QStringLiteral("no")}));
    EXPECT_EQ(s.panel.targetArray(), QStringList{QStringLiteral("Default")});
    EXPECT_TRUE(wizard->isVisible());

    s.p.controller.answers = {0};
    click(wizard->buildButton());
    EXPECT_FALSE(wizard->isVisible());
    EXPECT_TRUE(s.sheet.isVisible()) << "the publish sheet comes back";
    EXPECT_EQ(s.names(), QStringList({QStringLiteral("@4x"), QStringLiteral("@2x"), QStringLiteral("sd")}));
    const PublishTarget sd = s.record(QStringLiteral("sd"));
    EXPECT_EQ(sd.scale, QStringLiteral("25.0000"));
    EXPECT_EQ(sd.suffix, QString());
    EXPECT_EQ(sd.path, QStringLiteral("/out"));
    EXPECT_EQ(sd.file, QStringLiteral("Title"));
    EXPECT_EQ(sd.format, 0);
    EXPECT_TRUE(sd.redraw);
    EXPECT_EQ(s.p.state.targetsPublish().size(), 3);
    EXPECT_TRUE(s.p.state.configchanged());
    // The sheet shows the first target.
    EXPECT_EQ(s.sheet.targetExtension()->text(), QStringLiteral("@4x"));
}

TEST(PublishSheet, WizardPresetsFourAndFiveAllowOnlyFormatOne)
{
    Sheets s;
    WizardSheet* wizard = s.sheet.wizardSheet();
    s.press("targetWizard");
    auto* list = qobject_cast<QListView*>(wizard->wizFormat()->view());
    ASSERT_NE(list, nullptr);
    choose(wizard->wizFormat(), 3);
    choose(wizard->wizOptionPopup(), 4);
    EXPECT_EQ(wizard->wizFormat()->currentData().toInt(), 1);
    EXPECT_EQ(s.wizard.fields().wizFormat, 1);
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(list->isRowHidden(i), i != 0) << i;
    choose(wizard->wizOptionPopup(), 2);
    for (int i = 0; i < wizard->wizFormat()->count(); ++i)
        EXPECT_FALSE(list->isRowHidden(i)) << i;

    // Close goes back to the publish sheet without touching the targets.
    click(wizard->closeButton());
    EXPECT_FALSE(wizard->isVisible());
    EXPECT_TRUE(s.sheet.isVisible());
    EXPECT_EQ(s.names(), QStringList{QStringLiteral("Default")});
}

TEST(PublishSheet, PublishWritesTheFilesLogsAndClosesWhenAsked)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    Sheets s;
    QSignalSpy finished(&s.sheet, &PublishSheet::publishFinished);
    s.selectRow(0);

    // An unset suffix refuses the run.
    type(s.sheet.targetPath(), dir.path());
    type(s.sheet.targetFile(), QStringLiteral("font"));
    s.press("buttonPublish");
    ASSERT_EQ(s.p.controller.alerts.size(), 1);
    EXPECT_EQ(s.p.controller.alerts[0].message, QStringLiteral("Publish settings"));
    EXPECT_TRUE(s.log().endsWith(QStringLiteral("[error] Incomplete targets settings.")));
    EXPECT_TRUE(s.sheet.isVisible());
    EXPECT_FALSE(finished.last().at(0).toBool());

    type(s.sheet.targetExtension(), QString());
    click(s.sheet.targetAutoClose());
    EXPECT_TRUE(s.p.state.publishautoclose());
    s.press("buttonPublish");
    EXPECT_TRUE(QFileInfo(QDir(dir.path()).filePath(QStringLiteral("font.png"))).size() > 0);
    EXPECT_TRUE(QFileInfo(QDir(dir.path()).filePath(QStringLiteral("font.fnt"))).size() > 0);
    EXPECT_TRUE(s.log().contains(QStringLiteral("Processing texture: ")));
    EXPECT_EQ(s.log().count(QStringLiteral("[Ok]")), 2);
    EXPECT_TRUE(finished.last().at(0).toBool());
    EXPECT_FALSE(s.sheet.progress()->isVisible());
    EXPECT_EQ(s.sheet.progress()->value(), 1);
    EXPECT_FALSE(s.sheet.isVisible()) << "auto-close";
}
