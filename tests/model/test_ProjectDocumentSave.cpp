// Saving a document, Save As, Save As Copy, and the prompts that guard unsaved changes.

#include "Classes/model/ProjectArchive.h"
#include "Classes/model/ProjectDocument.h"
#include "Classes/render/CAGlyphLayer.h"
#include "tests/model/ScriptedController.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

using namespace qm;
using qm::test::ScriptedController;

namespace {

const QString kCloseQuestion = QStringLiteral("Do you want to save your project before closing ?");
const QString kOpenQuestion = QStringLiteral("Do you want to save your project before opening a new one ?");
const QString kLoseWork = QStringLiteral("If you don't save, your work in this window will be lost.");

QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The project name a file stores for itself.
QUrl storedProjectName(const QString& path)
{
    ProjectData project;
    return ProjectArchive::readFile(path, &project) ? project.settings.projectName() : QUrl();
}

/// Holds the process's file-size limit at `bytes` while it lives, so writes past it fail
/// (EFBIG) as on a full disk; the signal that would end the process is ignored meanwhile.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &m_previous);
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit = m_previous;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_previous{};
    void (*m_handler)(int) = nullptr;
};

class ProjectDocumentSave : public ::testing::Test
{
protected:
    QTemporaryDir dir;
    ScriptedController ui;
    ProjectDocument d{&ui};

    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        d.setUpWindow();
        d.chooseFamily(QStringLiteral("DejaVu Sans"), false);
        d.applyCharacters(QStringLiteral("AB"));
        d.reallyChangeGlyphSize(30);
        ui.titles.clear();
        ui.panelReloads = 0;
    }
    QString path(const QString& name) const { return dir.filePath(name); }
    /// Saves the project as `name` through Save As; the document then belongs to that file.
    void saveAs(const QString& name)
    {
        ui.filesToSave = {path(name)};
        ASSERT_TRUE(d.clickSaveAs());
        ui.titles.clear();
        ui.recentDocuments.clear();
        ui.panelReloads = 0;
    }
};

TEST_F(ProjectDocumentSave, SavingANeverSavedProjectThatTheUserCancelsChangesNothing)
{
    ASSERT_TRUE(d.state().configchanged());
    EXPECT_FALSE(d.buttonSave());
    EXPECT_EQ(ui.saveChoosers, 1);
    EXPECT_EQ(ui.lastExtensions, QStringList{QStringLiteral("quillmark")});
    EXPECT_TRUE(ui.titles.isEmpty());
    EXPECT_TRUE(d.state().configchanged());
    EXPECT_TRUE(d.state().projectName().isEmpty());
    EXPECT_TRUE(QDir(dir.path()).isEmpty());
}

TEST_F(ProjectDocumentSave, SavingANeverSavedProjectRunsSaveAsAndTitlesTheWindow)
{
    d.previewTextChanged(QStringLiteral("typed"));
    ui.filesToSave = {path(QStringLiteral("first"))}; // the extension is added
    ASSERT_TRUE(d.buttonSave());
    const QString file = path(QStringLiteral("first.quillmark"));
    EXPECT_TRUE(QFile::exists(file));
    EXPECT_EQ(d.state().projectName(), QUrl::fromLocalFile(file));
    EXPECT_EQ(storedProjectName(file), QUrl::fromLocalFile(file));
    EXPECT_EQ(ui.titles.last(), QStringLiteral("Quillmark - first.quillmark"));
    EXPECT_EQ(ui.recentDocuments.first(), file);
    EXPECT_EQ(d.previewText(), QStringLiteral("typed"));

    // Saving again writes the same file without asking; the project is then unchanged.
    d.state().setGlossy(true);
    ASSERT_TRUE(d.buttonSave());
    EXPECT_EQ(ui.saveChoosers, 1);
    EXPECT_FALSE(d.state().configchanged());
    ProjectData saved;
    ASSERT_TRUE(ProjectArchive::readFile(file, &saved));
    EXPECT_TRUE(saved.settings.glossy());
    EXPECT_EQ(saved.settings.previewTextString(), QStringLiteral("typed"));
}

TEST_F(ProjectDocumentSave, SaveAsCopyLeavesTheDocumentOnItsFileAndOpensTheCopyElsewhere)
{
    saveAs(QStringLiteral("mine.quillmark"));
    d.state().setGlossy(true);
    const bool changed = d.state().configchanged();
    ui.filesToSave = {path(QStringLiteral("copy.quillmark"))};
    ASSERT_TRUE(d.clickSaveAsCopy());
    EXPECT_TRUE(d.saveAsCopy());
    EXPECT_EQ(d.state().projectName(), QUrl::fromLocalFile(path(QStringLiteral("mine.quillmark"))));
    EXPECT_EQ(d.state().configchanged(), changed);
    EXPECT_EQ(ui.newWindows, QStringList{path(QStringLiteral("copy.quillmark"))});
    EXPECT_TRUE(ui.titles.isEmpty());
    EXPECT_EQ(ui.panelReloads, 0); // this document was not reopened
    // The copy names itself, and opens in a document of its own.
    EXPECT_EQ(storedProjectName(path(QStringLiteral("copy.quillmark"))),
              QUrl::fromLocalFile(path(QStringLiteral("copy.quillmark"))));
    ProjectDocument other;
    ASSERT_TRUE(other.openfileproject(ui.newWindows.first()));
    EXPECT_TRUE(other.state().glossy());
}

TEST_F(ProjectDocumentSave, SaveAsMovesTheDocumentToTheNewFile)
{
    saveAs(QStringLiteral("mine.quillmark"));
    d.previewOrTextureChanged(true);
    ui.filesToSave = {path(QStringLiteral("moved.quillmark"))};
    ASSERT_TRUE(d.clickSaveAs());
    EXPECT_FALSE(d.saveAsCopy());
    EXPECT_EQ(d.state().projectName(), QUrl::fromLocalFile(path(QStringLiteral("moved.quillmark"))));
    EXPECT_EQ(ui.titles.last(), QStringLiteral("Quillmark - moved.quillmark"));
    EXPECT_EQ(ui.panelReloads, 1);
    EXPECT_TRUE(d.state().isinpreviewmode());
    EXPECT_TRUE(ui.newWindows.isEmpty());
}

TEST_F(ProjectDocumentSave, AFailedSaveAsReportsItAndKeepsTheChosenFile)
{
    saveAs(QStringLiteral("mine.quillmark"));
    d.state().setGlossy(true);
    const QString unreachable = path(QStringLiteral("no-such-folder/other.quillmark"));
    ui.filesToSave = {unreachable};
    EXPECT_FALSE(d.clickSaveAs());
    ASSERT_EQ(ui.alerts.size(), 1);
    EXPECT_EQ(ui.alerts[0].message, QStringLiteral("Save project problem !"));
    EXPECT_EQ(ui.alerts[0].informativeText, QStringLiteral("Can't save file '%1'").arg(unreachable));
    EXPECT_EQ(ui.alerts[0].buttons, QStringList{QStringLiteral("Ok")});
    // Kept as it always was: the project now names the file that could not be written.
    EXPECT_EQ(d.state().projectName(), QUrl::fromLocalFile(unreachable));
    EXPECT_TRUE(d.state().configchanged());
    EXPECT_TRUE(ui.recentDocuments.isEmpty());
}

TEST_F(ProjectDocumentSave, AFailedSaveKeepsThePreviousFileAndTheChangedMark)
{
    saveAs(QStringLiteral("mine.quillmark"));
    const QString file = path(QStringLiteral("mine.quillmark"));
    const QByteArray previous = readBytes(file);
    ASSERT_FALSE(previous.isEmpty());
    d.applyCharacters(QStringLiteral("ABCDEFGHIJ"));
    ASSERT_TRUE(d.state().configchanged());

    { // the disk refuses the write part-way
        FileSizeLimit limit(256);
        EXPECT_FALSE(d.buttonSave());
    }
    ASSERT_EQ(ui.alerts.size(), 1);
    EXPECT_EQ(ui.alerts[0].message, QStringLiteral("Save project problem !"));
    EXPECT_EQ(ui.alerts[0].informativeText, QStringLiteral("Can't save file '%1'").arg(file));
    EXPECT_TRUE(d.state().configchanged());
    EXPECT_EQ(readBytes(file), previous);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
              QStringList{QStringLiteral("mine.quillmark")});

    if (geteuid() != 0) { // the owner of a read-only folder cannot replace files in it; root can
        ASSERT_TRUE(QFile::setPermissions(dir.path(), QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        EXPECT_FALSE(d.buttonSave());
        QFile::setPermissions(dir.path(),
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        EXPECT_EQ(readBytes(file), previous);
    }

    // The folder is gone: the same alert, and the project stays changed.
    d.state().setProjectName(QUrl::fromLocalFile(path(QStringLiteral("gone/mine.quillmark"))));
    ui.alerts.clear();
    EXPECT_FALSE(d.buttonSave());
    ASSERT_EQ(ui.alerts.size(), 1);
    EXPECT_TRUE(d.state().configchanged());

    // Once the disk takes the write, the save goes through.
    d.state().setProjectName(QUrl::fromLocalFile(file));
    ASSERT_TRUE(d.buttonSave());
    ProjectDocument reopened;
    ASSERT_TRUE(reopened.openfileproject(file));
    EXPECT_EQ(reopened.glyphCount(), 11);
}

TEST_F(ProjectDocumentSave, TheCloseGuardAsksOnlyWithUnsavedChangesAndHonoursEachAnswer)
{
    saveAs(QStringLiteral("mine.quillmark"));
    d.state().setConfigchanged(false);
    EXPECT_TRUE(d.windowShouldClose());
    EXPECT_TRUE(ui.alerts.isEmpty());

    const QString file = path(QStringLiteral("mine.quillmark"));
    const QByteArray saved = readBytes(file);
    d.applyCharacters(QStringLiteral("ABC"));

    ui.alertAnswers = {2}; // "Don't close"
    EXPECT_FALSE(d.windowShouldClose());
    ASSERT_EQ(ui.alerts.size(), 1);
    EXPECT_EQ(ui.alerts[0].message, kCloseQuestion);
    EXPECT_EQ(ui.alerts[0].informativeText, kLoseWork);
    EXPECT_EQ(ui.alerts[0].buttons, (QStringList{QStringLiteral("Save Document"), QStringLiteral("Close"),
                                                 QStringLiteral("Don't close")}));
    EXPECT_TRUE(d.state().configchanged());

    ui.alertAnswers = {1}; // "Close" without saving
    EXPECT_TRUE(d.windowShouldClose());
    EXPECT_EQ(readBytes(file), saved);
    EXPECT_TRUE(d.state().configchanged());

    ui.alertAnswers = {0}; // "Save Document"
    EXPECT_TRUE(d.windowShouldClose());
    EXPECT_NE(readBytes(file), saved);
    EXPECT_FALSE(d.state().configchanged());
    EXPECT_EQ(ui.saveChoosers, 1); // only the Save As of the set-up
}

TEST_F(ProjectDocumentSave, SavingANeverSavedProjectOnCloseStillClosesWhenThePanelIsCancelled)
{
    ui.alertAnswers = {0}; // "Save Document"; the save panel is then cancelled
    EXPECT_TRUE(d.windowShouldClose());
    EXPECT_EQ(ui.saveChoosers, 1);
    EXPECT_TRUE(QDir(dir.path()).isEmpty());
    EXPECT_TRUE(d.state().configchanged());
}

TEST_F(ProjectDocumentSave, OpenAsksToSaveFirstThenReplacesTheProject)
{
    ProjectDocument other;
    other.chooseFamily(QStringLiteral("DejaVu Sans"), false);
    other.applyCharacters(QStringLiteral("xyz"));
    other.reallyChangeGlyphSize(20);
    const QString otherFile = path(QStringLiteral("other.quillmark"));
    ASSERT_TRUE(other.writeProjectFile(otherFile, nullptr));
    saveAs(QStringLiteral("mine.quillmark"));
    const QByteArray saved = readBytes(path(QStringLiteral("mine.quillmark")));

    // Changed: "Don't save" goes on without saving; the panel asks for projects only.
    d.applyCharacters(QStringLiteral("ABC"));
    ui.alertAnswers = {1};
    ui.filesToOpen = {otherFile};
    d.buttonOpen();
    ASSERT_EQ(ui.alerts.size(), 1);
    EXPECT_EQ(ui.alerts[0].message, kOpenQuestion);
    EXPECT_EQ(ui.alerts[0].informativeText, kLoseWork);
    EXPECT_EQ(ui.alerts[0].buttons,
              (QStringList{QStringLiteral("Save Document"), QStringLiteral("Don't save")}));
    EXPECT_EQ(ui.lastExtensions, QStringList{QStringLiteral("quillmark")});
    EXPECT_EQ(readBytes(path(QStringLiteral("mine.quillmark"))), saved);
    EXPECT_EQ(d.state().projectName(), QUrl::fromLocalFile(otherFile));
    EXPECT_EQ(d.glyphCount(), 4);
    EXPECT_EQ(d.state().glyphSize(), 20);

    // Changed again: "Save Document" saves to the current file first; a cancelled panel then
    // leaves the project where it is.
    d.applyCharacters(QStringLiteral("xyzw"));
    ui.alerts.clear();
    ui.alertAnswers = {0};
    d.buttonOpen();
    EXPECT_EQ(ui.alerts.size(), 1);
    EXPECT_FALSE(d.state().configchanged());
    EXPECT_EQ(d.state().projectName(), QUrl::fromLocalFile(otherFile));
    ProjectDocument check;
    ASSERT_TRUE(check.openfileproject(otherFile));
    EXPECT_EQ(check.glyphCount(), 5);
}

} // namespace
