// A user's way through a real document window from a new project to published files, without
// touching a file by hand: choose DejaVu Sans, add Basic Latin, a gradient fill and an outline,
// two targets from the wizard (100 % and 50 %), publish, and find the four files. Every step
// goes through the window's own selector bar, panels, menu action and sheets.

#include "Classes/app/MainWindowController.h"
#include "Classes/app/TopMenuController.h"
#include "Classes/atlas/TextureView.h"
#include "Classes/model/ProjectDocument.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Classes/ui/CharacterPanel.h"
#include "Classes/ui/ColorToolsPanel.h"
#include "Classes/ui/FontPanel.h"
#include "Classes/ui/PublishSheet.h"
#include "Classes/ui/SFBViewSelectorBar.h"
#include "Classes/ui/SFBViewSelectorBarItem.h"
#include "Classes/ui/WizardSheet.h"
#include "Platform/defaults/UserDefaults.h"
#include "tests/ui/PanelTestSupport.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QPushButton>
#include <QRadioButton>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QListView>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTemporaryDir>

using namespace qm;
using namespace qm::test;

namespace {

QString readText(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

int headerValue(const QString& descriptor, const char* key)
{
    const QRegularExpression re(QStringLiteral("\\b%1=(\\d+)").arg(QLatin1String(key)));
    const QRegularExpressionMatch m = re.match(descriptor);
    return m.hasMatch() ? m.captured(1).toInt() : -1;
}

/// The rectangle a text descriptor gives a character.
QRect charRect(const QString& descriptor, int id)
{
    const QRegularExpression re(
        QStringLiteral("char id=%1 +x=(\\d+) +y=(\\d+) +width=(\\d+) +height=(\\d+)").arg(id));
    const QRegularExpressionMatch m = re.match(descriptor);
    return m.hasMatch() ? QRect(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt(),
                                m.captured(4).toInt())
                        : QRect();
}

/// Shows an inspector page by clicking its item in the window's selector bar.
void showPage(MainWindowController* w, const QString& identifier)
{
    auto* bar = w->findChild<SFBViewSelectorBar*>(QStringLiteral("viewSelector"));
    ASSERT_NE(bar, nullptr);
    click(bar->itemWithIdentifier(identifier));
    ASSERT_EQ(bar->selectedItem(), bar->itemWithIdentifier(identifier));
}

} // namespace

TEST(WindowEndToEnd, NewWindowToFourPublishedFiles)
{
    QTemporaryDir home;
    QTemporaryDir out;
    ASSERT_TRUE(home.isValid() && out.isValid());
    UserDefaults::setStandardStoreFile(home.filePath(QStringLiteral("defaults.ini")));
    QStringList alerts;
    auto& prompts = MainWindowController::testPrompts();
    prompts.alert = [&alerts](const QString& message, const QStringList&) {
        alerts.append(message);
        return 0;
    };
    prompts.directory = [&out](const QString&) { return out.path(); };

    TopMenuController top;
    top.applicationDidFinishLaunching();
    ASSERT_EQ(top.windows().size(), 1);
    MainWindowController* w = top.windows().first();
    w->resize(1280, 860);
    present(*w);
    const sharedAppState& state = w->document().state();

    // DejaVu Sans, found with the search field of the Font page.
    auto* fontPanel = w->findChild<FontPanel*>();
    ASSERT_NE(fontPanel, nullptr);
    ASSERT_TRUE(fontPanel->isVisible());
    type(fontPanel->searchField(), QStringLiteral("dejavu"));
    QListView* families = fontPanel->fontTableView();
    const QModelIndexList sans = families->model()->match(families->model()->index(0, 0), Qt::DisplayRole,
                                                          QStringLiteral("DejaVu Sans"), 1, Qt::MatchExactly);
    ASSERT_EQ(sans.size(), 1);
    families->scrollTo(sans.first());
    QTest::mouseClick(families->viewport(), Qt::LeftButton, {}, families->visualRect(sans.first()).center());
    ASSERT_EQ(state.fontName(), QStringLiteral("DejaVu Sans"));

    // Basic Latin, from the block table of the Characters page.
    showPage(w, QStringLiteral("characters"));
    auto* characterPanel = w->findChild<CharacterPanel*>();
    ASSERT_TRUE(characterPanel->isVisible());
    QTableWidget* blocks = characterPanel->rangeTableView();
    QTest::mouseClick(blocks->viewport(), Qt::LeftButton, {}, blocks->visualItemRect(blocks->item(0, 0)).center());
    click(characterPanel->addBlockButton());
    ASSERT_EQ(w->document().view().glyphLayers().size(), 96);

    // A linear gradient fill and a two-pixel outline on the Style page.
    showPage(w, QStringLiteral("style"));
    auto* colourPanel = w->findChild<ColorToolsPanel*>();
    ASSERT_TRUE(colourPanel->isVisible());
    click(colourPanel->colorOrGradientRow(3));
    if (!colourPanel->checkStroke()->isChecked())
        click(colourPanel->checkStroke());
    type(colourPanel->strokeSize(), QStringLiteral("2"));
    ASSERT_EQ(state.fillGMode(), 3);
    ASSERT_TRUE(state.stroke());
    ASSERT_FLOAT_EQ(state.strokeSize(), 2.0f);

    // Two targets from the wizard of the publish sheet, opened from the Publish menu.
    w->action(QStringLiteral("actionPublish"))->trigger();
    auto* sheet = w->findChild<PublishSheet*>();
    ASSERT_NE(sheet, nullptr);
    ASSERT_TRUE(sheet->isVisible());
    click(sheet->button(QStringLiteral("targetWizard")));
    WizardSheet* wizard = sheet->wizardSheet();
    ASSERT_TRUE(wizard->isVisible());
    click(wizard->wizDirectoryChooser());
    type(wizard->wizFontName(), QStringLiteral("Title"));
    choose(wizard->wizOptionPopup(), 2);
    choose(wizard->wizFormat(), 1);
    click(wizard->buildButton());
    ASSERT_TRUE(sheet->isVisible());
    ASSERT_EQ(state.targetsPublish().keys(), QStringList({QStringLiteral("hd"), QStringLiteral("sd")}));

    click(sheet->button(QStringLiteral("buttonPublish")));
    const QString log = sheet->targetLog()->toPlainText();
    EXPECT_EQ(log.count(QStringLiteral("[Ok]")), 4) << qPrintable(log);
    EXPECT_FALSE(log.contains(QStringLiteral("[Failed]"))) << qPrintable(log);

    const QDir dir(out.path());
    EXPECT_EQ(dir.entryList(QDir::Files, QDir::Name),
              QStringList({"Title-hd.fnt", "Title-hd.png", "Title.fnt", "Title.png"}));
    const QString hdFnt = readText(dir.filePath(QStringLiteral("Title-hd.fnt")));
    const QString sdFnt = readText(dir.filePath(QStringLiteral("Title.fnt")));
    const QSize hdPng = QImageReader(dir.filePath(QStringLiteral("Title-hd.png"))).size();
    const QSize sdPng = QImageReader(dir.filePath(QStringLiteral("Title.png"))).size();
    ASSERT_TRUE(hdPng.isValid() && sdPng.isValid());
    EXPECT_EQ(headerValue(hdFnt, "size"), 50);
    EXPECT_EQ(headerValue(sdFnt, "size"), 25) << "sd redraws the glyphs at half size";
    EXPECT_EQ(headerValue(hdFnt, "scaleW"), hdPng.width());
    EXPECT_EQ(headerValue(sdFnt, "scaleW"), sdPng.width());
    EXPECT_LT(sdPng.width() * sdPng.height(), hdPng.width() * hdPng.height());
    EXPECT_TRUE(hdFnt.contains(QStringLiteral("file=\"Title-hd.png\"")));
    EXPECT_EQ(headerValue(hdFnt, "count"), 96);

    // The published "M" carries the style: a black outline around an orange-to-yellow fill.
    const QImage hd(dir.filePath(QStringLiteral("Title-hd.png")));
    const QRect m = charRect(hdFnt, 'M');
    ASSERT_TRUE(!m.isEmpty() && hd.rect().contains(m)) << qPrintable(hdFnt.left(400));
    int outline = 0, orange = 0, yellow = 0;
    for (int y = m.top(); y <= m.bottom(); ++y)
        for (int x = m.left(); x <= m.right(); ++x) {
            const QColor c = hd.pixelColor(x, y);
            if (c.alpha() < 250)
                continue;
            outline += c.red() < 40 && c.green() < 40 && c.blue() < 40;
            orange += c.red() > 230 && c.green() > 140 && c.green() < 200 && c.blue() < 40;
            yellow += c.red() > 230 && c.green() > 235 && c.blue() < 40;
        }
    EXPECT_GT(outline, 50);
    EXPECT_GT(orange, 5);
    EXPECT_GT(yellow, 5);
    // Publishing leaves the project as it was; the project is still to be saved.
    EXPECT_EQ(state.glyphSize(), 50);
    EXPECT_EQ(w->document().view().getCAGlyphLayer(u'A')->glyphBitmap().glyphsize(), 50);
    EXPECT_TRUE(state.configchanged());
    // The wizard's one question, answered with its first button (build).
    EXPECT_EQ(alerts, QStringList({QStringLiteral("Build Settings ?")}));

    w->document().state().setConfigchanged(false);
    w->close();
    QApplication::processEvents();
    MainWindowController::testPrompts() = {};
    UserDefaults::setStandardStoreFile(QString());
}
