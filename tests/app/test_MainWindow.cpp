// The desktop program's document windows, driven through their actions and real input events
// on the offscreen platform; alerts and file choosers are answered by the test.

#include "Classes/app/MainWindowController.h"
#include "Classes/app/TopMenuController.h"
#include "Classes/atlas/TextureView.h"
#include "Classes/model/ProjectDocument.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Classes/ui/CanvasWidget.h"
#include "Platform/defaults/UserDefaults.h"

#include <QAction>
#include <QApplication>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace qm;

namespace {

/// Scripted answers for the window's alerts and file choosers, reset for every test.
class Answers : public ::testing::Test
{
protected:
    QTemporaryDir dir;
    QStringList alerts;
    QList<int> alertAnswers;
    QStringList files;

    void SetUp() override
    {
        UserDefaults::setStandardStoreFile(dir.filePath(QStringLiteral("defaults.ini")));
        auto& prompts = MainWindowController::testPrompts();
        prompts.alert = [this](const QString& message, const QStringList&) {
            alerts.append(message);
            return alertAnswers.isEmpty() ? 0 : alertAnswers.takeFirst();
        };
        prompts.file = [this](const QString&, const QStringList&, bool) {
            return files.isEmpty() ? QString() : files.takeFirst();
        };
    }
    void TearDown() override
    {
        MainWindowController::testPrompts() = {};
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* window = qobject_cast<MainWindowController*>(w)) {
                window->document().state().setConfigchanged(false);
                window->close();
            }
        QApplication::processEvents();
        UserDefaults::setStandardStoreFile(QString());
    }

    /// A saved project: DejaVu Sans 40 px, "AB", a corrected glyph.
    QString savedProject()
    {
        ProjectDocument doc;
        doc.chooseFamily(QStringLiteral("DejaVu Sans"), false);
        doc.applyCharacters(QStringLiteral("AB"));
        doc.reallyChangeGlyphSize(40);
        doc.state().updateGlyph(u'A', 3, 0, 1);
        const QString path = dir.filePath(QStringLiteral("saved.quillmark"));
        QString error;
        EXPECT_TRUE(doc.writeProjectFile(path, &error)) << qPrintable(error);
        return path;
    }

    static QPointF onGlyph(MainWindowController* w, char16_t c)
    {
        return w->canvas()->widgetPoint(w->document().view().getCAGlyphLayer(c)->position());
    }
};

} // namespace

TEST_F(Answers, NewWindowStartsFromTheDefaults)
{
    TopMenuController top;
    top.applicationDidFinishLaunching();
    ASSERT_EQ(top.windows().size(), 1);
    MainWindowController* w = top.windows().first();
    const sharedAppState& s = w->document().state();
    EXPECT_EQ(s.glyphSize(), 50);
    EXPECT_FALSE(s.configchanged());
    EXPECT_EQ(w->document().view().glyphLayers().size(), 1); // the ever-present space
    EXPECT_TRUE(w->windowTitle().startsWith(QStringLiteral("Quillmark")));
    for (QAction* a : w->findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly))
        EXPECT_FALSE(a->objectName().isEmpty()) << qPrintable(a->text());
}

TEST_F(Answers, FilesHandedOverOpenOneWindowEachAndNoEmptyOne)
{
    const QString path = savedProject();
    TopMenuController top;
    top.openFile(path);
    top.applicationDidFinishLaunching();
    ASSERT_EQ(top.windows().size(), 1);
    MainWindowController* w = top.windows().first();
    const sharedAppState& s = w->document().state();
    EXPECT_EQ(s.fontName(), QStringLiteral("DejaVu Sans"));
    EXPECT_EQ(s.glyphSize(), 40);
    EXPECT_EQ(w->document().view().getCAGlyphLayer(u'A')->glyphBitmap().addXOffset(), 3);
    EXPECT_EQ(w->windowTitle(), QStringLiteral("Quillmark - saved.quillmark[*]"));

    // Opening from the File menu leaves this window alone and opens another.
    TopMenuController::chooseProjectToOpen = [](QWidget*) { return QString(); };
    top.FileNew();
    EXPECT_EQ(top.windows().size(), 2);
    EXPECT_EQ(w->document().state().glyphSize(), 40);
}

TEST_F(Answers, SaveAsCopyOpensASecondWindowAndKeepsThisOnItsFile)
{
    const QString path = savedProject();
    TopMenuController top;
    top.openFile(path);
    MainWindowController* w = top.windows().first();
    const QString copy = dir.filePath(QStringLiteral("copy.quillmark"));
    files = {copy};
    w->action(QStringLiteral("actionSaveAsCopy"))->trigger();
    QApplication::processEvents();
    ASSERT_TRUE(QFileInfo::exists(copy));
    ASSERT_EQ(top.windows().size(), 2);
    EXPECT_EQ(w->document().state().projectName().toLocalFile(), QFileInfo(path).absoluteFilePath());
    EXPECT_EQ(top.windows().last()->document().state().projectName().toLocalFile(), QFileInfo(copy).absoluteFilePath());
    EXPECT_EQ(top.recentDocuments().first(), QFileInfo(copy).absoluteFilePath());
}

TEST_F(Answers, CloseGuardAnswers)
{
    const QString path = savedProject();
    TopMenuController top;
    top.openFile(path);
    MainWindowController* w = top.windows().first();
    QPointer<MainWindowController> alive(w);

    w->document().state().setGlyphSize(41); // an unsaved change
    alertAnswers = {2};                      // "Don't close"
    EXPECT_FALSE(w->close());
    EXPECT_EQ(alerts.last(), QStringLiteral("Do you want to save your project before closing ?"));

    alertAnswers = {0}; // "Save Document": saved, then closed
    EXPECT_TRUE(w->close());
    QApplication::processEvents();
    ProjectDocument reread;
    ASSERT_TRUE(reread.openfileproject(path));
    EXPECT_EQ(reread.state().glyphSize(), 41);

    top.openFile(path);
    MainWindowController* second = top.windows().last();
    second->document().state().setGlyphSize(60);
    alertAnswers = {1}; // "Close" without saving
    EXPECT_TRUE(second->close());
    ProjectDocument again;
    ASSERT_TRUE(again.openfileproject(path));
    EXPECT_EQ(again.state().glyphSize(), 41);
}

TEST_F(Answers, ClickingSelectsAndDeleteRemovesOnTheCanvas)
{
    const QString path = savedProject();
    TopMenuController top;
    top.openFile(path);
    MainWindowController* w = top.windows().first();
    CanvasWidget* canvas = w->canvas();
    QTest::mouseClick(canvas, Qt::LeftButton, Qt::NoModifier, onGlyph(w, u'B').toPoint());
    EXPECT_TRUE(w->document().view().getCAGlyphLayer(u'B')->selected());
    QTest::keyClick(canvas, Qt::Key_Delete);
    EXPECT_EQ(w->document().view().getCAGlyphLayer(u'B'), nullptr);
    EXPECT_NE(w->document().view().getCAGlyphLayer(u'A'), nullptr);
}

TEST_F(Answers, DroppingAPictureOnAGlyph)
{
    const QString path = savedProject();
    TopMenuController top;
    top.openFile(path);
    MainWindowController* w = top.windows().first();
    QImage picture(40, 60, QImage::Format_ARGB32);
    picture.fill(Qt::magenta);
    const QString file = dir.filePath(QStringLiteral("picture.png"));
    ASSERT_TRUE(picture.save(file));

    QMimeData mime;
    mime.setUrls({QUrl::fromLocalFile(file)});
    const QPoint at = onGlyph(w, u'A').toPoint();
    QDragEnterEvent enter(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(w->canvas(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDragMoveEvent move(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(w->canvas(), &move);
    QDropEvent drop(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(w->canvas(), &drop);

    const CGGlyphBitmap& a = w->document().view().getCAGlyphLayer(u'A')->glyphBitmap();
    EXPECT_TRUE(a.hasCustomPicture());
    EXPECT_EQ(a.frameImage(), QRectF(0, 0, 40, 60));
    EXPECT_EQ(a.addXAdvance(), 40);
}
