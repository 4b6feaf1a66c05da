// A user's way through the panels from a new project to published files, without touching a
// file by hand: choose DejaVu Sans, add Basic Latin, a gradient fill and an outline, two
// targets from the wizard (100 % and 50 %), publish, and find the four files.

#include "Classes/fonts/CharacterSet.h"
#include "Classes/fonts/FontList.h"
#include "Classes/publish/BuildWizard.h"
#include "Classes/publish/PublishPanel.h"
#include "Classes/publish/PublishRun.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Classes/ui/CharacterPanel.h"
#include "Classes/ui/ColorToolsPanel.h"
#include "Classes/ui/FontPanel.h"
#include "Classes/ui/PublishSheet.h"
#include "Classes/ui/WizardSheet.h"
#include "tests/ui/PanelTestSupport.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
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

} // namespace

TEST(PanelsEndToEnd, NewProjectToFourPublishedFiles)
{
    QTemporaryDir out;
    ASSERT_TRUE(out.isValid());

    // A new window's objects, as the document window makes them.
    QueueController controller;
    sharedAppState state;
    TextureView view;
    state.setTxtView(&view);
    state.setTxtCont(&controller);
    view.setSharedState(&state);
    ColorWellGroup wells;
    FontList fonts(state, view, controller);
    CharacterSet charset(state, view);
    PublishPanel targets(state, &controller);
    BuildWizard wizard(state, targets, &controller);
    PublishRun run(state, view, &controller);

    FontPanel fontPanel(fonts, state);
    CharacterPanel characterPanel(charset, state);
    ColorToolsPanel colourPanel(state, wells, &controller);
    PublishSheet sheet(targets, wizard, run, state, &controller);
    controller.forwardLog = [&sheet](const QString& text) { sheet.appendPublishLog(text); };
    for (QWidget* w : std::initializer_list<QWidget*>{&fontPanel, &characterPanel, &colourPanel})
        present(*w);
    sheet.reloadFromSettings();

    // DejaVu Sans, found with the search field.
    type(fontPanel.searchField(), QStringLiteral("dejavu"));
    QListView* families = fontPanel.fontTableView();
    const QModelIndexList sans = families->model()->match(families->model()->index(0, 0), Qt::DisplayRole,
                                                          QStringLiteral("DejaVu Sans"), 1, Qt::MatchExactly);
    ASSERT_EQ(sans.size(), 1);
    QTest::mouseClick(families->viewport(), Qt::LeftButton, {}, families->visualRect(sans.first()).center());
    ASSERT_EQ(state.fontName(), QStringLiteral("DejaVu Sans"));

    // Basic Latin.
    QTableWidget* blocks = characterPanel.rangeTableView();
    QTest::mouseClick(blocks->viewport(), Qt::LeftButton, {},
                      blocks->visualItemRect(blocks->item(0, 0)).center());
    click(characterPanel.addBlockButton());
    ASSERT_EQ(view.glyphLayers().size(), 96);

    // A linear gradient fill and a two-pixel outline.
    click(colourPanel.colorOrGradientRow(3));
    if (!colourPanel.checkStroke()->isChecked())
        click(colourPanel.checkStroke());
    type(colourPanel.strokeSize(), QStringLiteral("2"));
    ASSERT_EQ(state.fillGMode(), 3);
    ASSERT_TRUE(state.stroke());

    // Two targets from the wizard: hd at 100 % and sd at 50 %.
    sheet.openSheet();
    click(sheet.button(QStringLiteral("targetWizard")));
    WizardSheet* w = sheet.wizardSheet();
    ASSERT_TRUE(w->isVisible());
    controller.directories.append(out.path());
    click(w->wizDirectoryChooser());
    type(w->wizFontName(), QStringLiteral("Title"));
    choose(w->wizOptionPopup(), 2);
    choose(w->wizFormat(), 1);
    controller.answers = {0};
    click(w->buildButton());
    ASSERT_TRUE(sheet.isVisible());
    ASSERT_EQ(targets.targetArray(), QStringList({QStringLiteral("hd"), QStringLiteral("sd")}));

    click(sheet.button(QStringLiteral("buttonPublish")));
    EXPECT_EQ(sheet.targetLog()->toPlainText().count(QStringLiteral("[Ok]")), 4);
    EXPECT_FALSE(sheet.targetLog()->toPlainText().contains(QStringLiteral("[Failed]")));

    const QDir dir(out.path());
    const QString hdFnt = readText(dir.filePath(QStringLiteral("Title-hd.fnt")));
    const QString sdFnt = readText(dir.filePath(QStringLiteral("Title.fnt")));
    const QSize hdPng = QImageReader(dir.filePath(QStringLiteral("Title-hd.png"))).size();
    const QSize sdPng = QImageReader(dir.filePath(QStringLiteral("Title.png"))).size();
    ASSERT_FALSE(hdFnt.isEmpty());
    ASSERT_FALSE(sdFnt.isEmpty());
    ASSERT_TRUE(hdPng.isValid());
    ASSERT_TRUE(sdPng.isValid());
    EXPECT_EQ(headerValue(hdFnt, "size"), 50);
    EXPECT_EQ(headerValue(sdFnt, "size"), 25) << "sd redraws the glyphs at half size";
    EXPECT_EQ(headerValue(hdFnt, "scaleW"), hdPng.width());
    EXPECT_EQ(headerValue(sdFnt, "scaleW"), sdPng.width());
    EXPECT_LT(sdPng.width() * sdPng.height(), hdPng.width() * hdPng.height());
    EXPECT_TRUE(hdFnt.contains(QStringLiteral("file=\"Title-hd.png\"")));
    EXPECT_EQ(headerValue(hdFnt, "count"), 96);
    // The project is as it was before publishing.
    EXPECT_EQ(state.glyphSize(), 50);
    EXPECT_EQ(view.getCAGlyphLayer(u'A')->glyphBitmap().glyphsize(), 50);
}
