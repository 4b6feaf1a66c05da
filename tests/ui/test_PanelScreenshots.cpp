// The panels and sheets laid out as a user sees them: every control gets the room it needs and
// stays inside its parent, at the width of an inspector column. With QUILLMARK_SCREENSHOT_DIR
// set, each is also saved as a PNG there for a look by eye.

#include "Classes/fonts/CharacterSet.h"
#include "Classes/fonts/FontList.h"
#include "Classes/publish/BuildWizard.h"
#include "Classes/publish/PublishPanel.h"
#include "Classes/publish/PublishRun.h"
#include "Classes/ui/CharacterPanel.h"
#include "Classes/ui/ColorToolsPanel.h"
#include "Classes/ui/FontMetricsPanel.h"
#include "Classes/ui/FontPanel.h"
#include "Classes/ui/OutputPanel.h"
#include "Classes/ui/PackingPanel.h"
#include "Classes/ui/PublishSheet.h"
#include "Classes/ui/SFBInspectorView.h"
#include "Classes/ui/TexturePanel.h"
#include "Classes/ui/WizardSheet.h"
#include "tests/ui/PanelTestSupport.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QScrollArea>
#include <QScrollBar>
#include <QTableWidget>
#include <QTemporaryDir>

using namespace qm;
using namespace qm::test;

namespace {

/// The width of the inspector column the panels live in.
constexpr int kInspectorWidth = 300;

void save(QWidget& w, const char* name)
{
    const QString dir = qEnvironmentVariable("QUILLMARK_SCREENSHOT_DIR");
    if (dir.isEmpty())
        return;
    QDir().mkpath(dir);
    EXPECT_TRUE(w.grab().save(QDir(dir).filePath(QString::fromLatin1(name) + QStringLiteral(".png"))));
}

/// Shows a widget at a width (its preferred height) and lets the layouts settle.
void presentAt(QWidget& w, int width = 0)
{
    const QSize hint = w.sizeHint();
    w.resize(width > 0 ? width : hint.width(),
             w.hasHeightForWidth() && width > 0 ? w.heightForWidth(width) : hint.height());
    w.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents();
}

/// A panel fits the inspector column.
void expectFitsInspector(const QWidget& panel)
{
    EXPECT_LE(panel.minimumSizeHint().width(), kInspectorWidth) << panel.objectName().toStdString();
    EXPECT_EQ(panel.width(), kInspectorWidth) << panel.objectName().toStdString();
}

/// Every visible control gets at least its minimum size, shows its whole text, and lies inside
/// its parent.
void expectNothingClipped(const QWidget& top)
{
    EXPECT_GE(top.width(), top.minimumSizeHint().width()) << top.objectName().toStdString();
    EXPECT_GE(top.height(), top.minimumSizeHint().height()) << top.objectName().toStdString();
    for (const QWidget* w : top.findChildren<QWidget*>()) {
        if (!w->isVisibleTo(&top) || w->isWindow())
            continue;
        const auto* button = qobject_cast<const QAbstractButton*>(w);
        const bool control = qobject_cast<const QLabel*>(w) || (button && !button->text().isEmpty()) ||
                             qobject_cast<const QLineEdit*>(w) || qobject_cast<const QComboBox*>(w);
        const QString name =
            w->objectName().isEmpty() ? QString::fromLatin1(w->metaObject()->className()) : w->objectName();
        if (control) {
            const QSize need = w->minimumSizeHint();
            EXPECT_GE(w->width(), need.width()) << name.toStdString();
            EXPECT_GE(w->height(), need.height()) << name.toStdString();
        }
        if (const auto* label = qobject_cast<const QLabel*>(w); label && !label->wordWrap()) {
            EXPECT_GE(w->width(), label->sizeHint().width()) << "text cut: " << name.toStdString();
        }
        if (button && !button->text().isEmpty()) {
            EXPECT_GE(w->width(), button->sizeHint().width()) << "text cut: " << name.toStdString();
        }
        EXPECT_TRUE(w->parentWidget()->rect().contains(w->geometry()))
            << "outside its parent: " << name.toStdString();
    }
}

/// A project with a styled look: gradient fill, outline, shadow.
struct Styled : Project
{
    Styled() : Project(QStringLiteral(" ABCabc123"))
    {
        state.setShadowInfo(true, 2, -2, 3, 0);
        state.setStrokeInfo(true, 2, Color::calibratedRGB(0.2, 0.1, 0.4), 2);
        state.setGradiant(75, Gradient({{Color::orange(), 0.0},
                                        {Color::calibratedRGB(0.9, 0.2, 0.4), 0.5},
                                        {Color::yellow(), 1.0}}));
        state.setConfigchanged(false);
    }
};

} // namespace

TEST(PanelScreenshots, EditingPanelsAtInspectorWidth)
{
    Styled p;
    TexturePanel texture(p.state, p.wells);
    presentAt(texture, kInspectorWidth);
    expectNothingClipped(texture);
    expectFitsInspector(texture);
    save(texture, "panelTexture");

    PackingPanel packing(p.state);
    presentAt(packing, kInspectorWidth);
    expectNothingClipped(packing);
    expectFitsInspector(packing);
    save(packing, "panelPacking");

    FontMetricsPanel metrics(p.state, p.view);
    presentAt(metrics, kInspectorWidth);
    expectNothingClipped(metrics);
    expectFitsInspector(metrics);
    save(metrics, "panelFontMetrics");

    ColorToolsPanel colours(p.state, p.wells, &p.controller);
    presentAt(colours, kInspectorWidth);
    expectNothingClipped(colours);
    expectFitsInspector(colours);
    save(colours, "panelColorTools");

    p.state.setStroke(false);
    p.state.setShadow(false);
    colours.reloadFromSettings();
    QCoreApplication::processEvents();
    save(colours, "panelColorToolsSwitchedOff");

    OutputPanel output(p.state, &p.controller);
    presentAt(output, kInspectorWidth);
    expectNothingClipped(output);
    expectFitsInspector(output);
    save(output, "panelOutput");
}

TEST(PanelScreenshots, FontAndCharacterPanels)
{
    Project p;
    FontList fonts(p.state, p.view, p.controller);
    FontPanel fontPanel(fonts, p.state);
    fontPanel.resize(kInspectorWidth, 420);
    presentAt(fontPanel, kInspectorWidth);
    fontPanel.reloadFromSettings();
    QCoreApplication::processEvents();
    expectNothingClipped(fontPanel);
    expectFitsInspector(fontPanel);
    save(fontPanel, "panelFont");

    CharacterSet charset(p.state, p.view);
    CharacterPanel characters(charset, p.state);
    presentAt(characters, kInspectorWidth);
    QTableWidget* table = characters.rangeTableView();
    table->selectRow(7);
    characters.rangestart()->setText(QStringLiteral("41"));
    characters.rangeend()->setText(QStringLiteral("5A"));
    QCoreApplication::processEvents();
    expectNothingClipped(characters);
    expectFitsInspector(characters);
    save(characters, "panelCharacters");
}

TEST(PanelScreenshots, InspectorWithEveryPane)
{
    Styled p;
    FontList fonts(p.state, p.view, p.controller);
    CharacterSet charset(p.state, p.view);
    auto* inspector = new SFBInspectorView;
    inspector->addPane(QStringLiteral("font"), QStringLiteral("Font"), new FontPanel(fonts, p.state));
    inspector->addPane(QStringLiteral("metrics"), QStringLiteral("Glyph Metrics"),
                       new FontMetricsPanel(p.state, p.view));
    inspector->addPane(QStringLiteral("texture"), QStringLiteral("Texture"),
                       new TexturePanel(p.state, p.wells));
    inspector->addPane(QStringLiteral("packing"), QStringLiteral("Packing"), new PackingPanel(p.state));
    inspector->addPane(QStringLiteral("characters"), QStringLiteral("Characters"),
                       new CharacterPanel(charset, p.state));
    inspector->setPaneExpanded(QStringLiteral("characters"), false);
    inspector->setPaneExpanded(QStringLiteral("font"), false);
    QScrollArea scroll;
    scroll.setWidgetResizable(true);
    scroll.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll.setWidget(inspector);
    scroll.resize(kInspectorWidth + scroll.verticalScrollBar()->sizeHint().width(), 900);
    scroll.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&scroll));
    QCoreApplication::processEvents();
    expectNothingClipped(*inspector);
    save(scroll, "inspectorPanes");
}

TEST(PanelScreenshots, PublishSheetAfterARunAndTheWizard)
{
    QTemporaryDir out;
    ASSERT_TRUE(out.isValid());
    Styled p;
    PublishPanel targets(p.state, &p.controller);
    BuildWizard wizard(p.state, targets, &p.controller);
    PublishRun run(p.state, p.view, &p.controller);
    PublishSheet sheet(targets, wizard, run, p.state, &p.controller);
    p.controller.forwardLog = [&sheet](const QString& text) { sheet.appendPublishLog(text); };
    wizard.fields().wizDirectory = out.path();
    wizard.fields().wizFontName = QStringLiteral("Title");
    wizard.fields().wizOption = 1;
    ASSERT_TRUE(wizard.wizBuild());
    sheet.reloadFromSettings();
    sheet.openSheet();
    presentAt(sheet);
    sheet.buttonPublish();
    QCoreApplication::processEvents();
    expectNothingClipped(sheet);
    save(sheet, "publishSheet");

    sheet.targetWizard();
    WizardSheet* w = sheet.wizardSheet();
    presentAt(*w);
    expectNothingClipped(*w);
    save(*w, "wizardSheet");
    w->wizClose();
}
