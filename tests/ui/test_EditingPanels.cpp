// The editing panels over a real project: each switch enables and greys its dependent controls,
// the controls reach the settings and the glyphs, the glyph-size slider rebuilds once per drag,
// the fill matrix's first row means no fill, and the colour wells and gradient editors share
// the colour dialog one at a time.

#include "Classes/render/CAGlyphLayer.h"
#include "Classes/ui/AngleDial.h"
#include "Classes/ui/ColorPanel.h"
#include "Classes/ui/ColorToolsPanel.h"
#include "Classes/ui/ColorWell.h"
#include "Classes/ui/FontMetricsPanel.h"
#include "Classes/ui/OutputPanel.h"
#include "Classes/ui/PackingPanel.h"
#include "Classes/ui/TexturePanel.h"
#include "Classes/ui/gradientEditor.h"
#include "tests/ui/PanelTestSupport.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QColorDialog>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>

using namespace qm;
using namespace qm::test;

namespace {

/// Every control and caption in the list is enabled (or disabled) as expected.
void expectEnabled(std::initializer_list<QWidget*> controls, bool enabled)
{
    for (QWidget* w : controls) {
        ASSERT_NE(w, nullptr);
        EXPECT_EQ(w->isEnabled(), enabled) << w->objectName().toStdString();
    }
}

/// Whether any pixel of the packed texture is visible.
bool textureHasInk(TextureView& view)
{
    const QImage texture = view.getTexture(100, 1, 100).convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < texture.height(); ++y)
        for (int x = 0; x < texture.width(); ++x)
            if (qAlpha(texture.pixel(x, y)) > 0)
                return true;
    return false;
}

} // namespace

TEST(TexturePanel, BackgroundWellOnlyWhileTheCheckerboardIsOff)
{
    Project p;
    TexturePanel panel(p.state, p.wells);
    present(panel);
    ASSERT_TRUE(p.state.checkerBoard());
    expectEnabled({panel.backgroundColor(), panel.bgColorText()}, false);

    click(panel.checkerboardButton());
    EXPECT_FALSE(p.state.checkerBoard());
    EXPECT_TRUE(p.state.configchanged());
    expectEnabled({panel.backgroundColor(), panel.bgColorText()}, true);

    // A well that owns the colour dialog lets go of it when the checkerboard comes back.
    click(panel.backgroundColor());
    ASSERT_TRUE(panel.backgroundColor()->isActive());
    ColorPanel::shared()->dialog()->setCurrentColor(QColor(255, 0, 0));
    EXPECT_EQ(p.state.bgColor(), Color::calibratedRGB(1, 0, 0));
    click(panel.checkerboardButton());
    EXPECT_TRUE(p.state.checkerBoard());
    expectEnabled({panel.backgroundColor(), panel.bgColorText()}, false);
    EXPECT_FALSE(panel.backgroundColor()->isActive());
    EXPECT_EQ(ColorPanel::shared()->target(), nullptr);
    ColorPanel::shared()->close();
}

TEST(TexturePanel, SizePopupsSetTheTextureByHandAndFollowTheAutomaticSize)
{
    Project p;
    TexturePanel panel(p.state, p.wells);
    present(panel);
    ASSERT_TRUE(p.state.autoSize());
    EXPECT_FALSE(panel.widthButton()->isEnabled());

    click(panel.checkAutoSize());
    EXPECT_FALSE(p.state.autoSize());
    ASSERT_TRUE(panel.widthButton()->isEnabled());
    choose(panel.widthButton(), 1024);
    choose(panel.heightButton(), 256);
    EXPECT_EQ(p.state.width(), 1024);
    EXPECT_EQ(p.state.height(), 256);
    EXPECT_EQ(p.view.frameSize(), QSizeF(1024, 256));

    // Back to automatic: four small glyphs fit the smallest automatic texture, which the
    // pop-ups then show although it is not one of their sizes.
    click(panel.checkAutoSize());
    EXPECT_EQ(p.state.width(), 128);
    EXPECT_EQ(panel.widthButton()->currentText(), QStringLiteral("128"));
    click(panel.checkPower2());
    EXPECT_TRUE(p.state.power2());
    const int side = p.state.width();
    EXPECT_TRUE(side >= 32 && (side & (side - 1)) == 0) << side;
    EXPECT_EQ(panel.widthButton()->currentData().toInt(), side);
}

TEST(ColorToolsPanel, OutlineSwitchEnablesItsControlsAndCaptions)
{
    Project p;
    ColorToolsPanel panel(p.state, p.wells, &p.controller);
    present(panel);
    const auto outline = {static_cast<QWidget*>(panel.strokeSize()),
                          static_cast<QWidget*>(panel.strokeSizeStepper()),
                          static_cast<QWidget*>(panel.strokehowmode()),
                          static_cast<QWidget*>(panel.miterlimit()),
                          static_cast<QWidget*>(panel.miterlimitstepper()),
                          static_cast<QWidget*>(panel.strokeGradientAngle()),
                          static_cast<QWidget*>(panel.labelStrokeGradientAngle()),
                          static_cast<QWidget*>(panel.strokeGradientEditor()),
                          static_cast<QWidget*>(panel.strokesizeText()),
                          static_cast<QWidget*>(panel.strokemodeText()),
                          static_cast<QWidget*>(panel.strokemiterText()),
                          static_cast<QWidget*>(panel.strokedegreeText())};
    ASSERT_TRUE(p.state.stroke());
    for (QWidget* w : outline)
        EXPECT_TRUE(w->isEnabled()) << w->objectName().toStdString();

    click(panel.checkStroke());
    EXPECT_FALSE(p.state.stroke());
    EXPECT_FALSE(p.view.getCAGlyphLayer(u'A')->glyphBitmap().stroke());
    for (QWidget* w : outline)
        EXPECT_FALSE(w->isEnabled()) << w->objectName().toStdString();
    // Greyed captions are drawn in the disabled text colour.
    EXPECT_NE(panel.strokesizeText()->palette().color(QPalette::Disabled, QPalette::WindowText),
              panel.strokesizeText()->palette().color(QPalette::Active, QPalette::WindowText));

    click(panel.checkStroke());
    EXPECT_TRUE(p.state.stroke());
    for (QWidget* w : outline)
        EXPECT_TRUE(w->isEnabled()) << w->objectName().toStdString();

    // Size typed or stepped, field and stepper kept equal; the position by tag.
    type(panel.strokeSize(), QStringLiteral("2.5"));
    EXPECT_FLOAT_EQ(p.state.strokeSize(), 2.5f);
    EXPECT_FLOAT_EQ(p.view.getCAGlyphLayer(u'B')->glyphBitmap().strokesize(), 2.5f);
    step(panel.strokeSizeStepper(), 2);
    EXPECT_FLOAT_EQ(p.state.strokeSize(), 5.0f) << "2.5 shows as 3 on the stepper, two steps up is 5";
    EXPECT_EQ(panel.strokeSize()->text(), QStringLiteral("5"));
    choose(panel.strokehowmode(), 2);
    EXPECT_EQ(p.state.strokehowmode(), 2);
    step(panel.miterlimitstepper(), -3);
    EXPECT_EQ(p.state.miterlimit(), 7);
    EXPECT_EQ(panel.miterlimit()->text(), QStringLiteral("7"));
}

TEST(ColorToolsPanel, ShadowSwitchEnablesItsControlsAndTheValuesReachTheGlyphs)
{
    Project p;
    ColorToolsPanel panel(p.state, p.wells, &p.controller);
    present(panel);
    const auto shadow = {static_cast<QWidget*>(panel.shadowX()),
                         static_cast<QWidget*>(panel.shadowY()),
                         static_cast<QWidget*>(panel.shadowRadius()),
                         static_cast<QWidget*>(panel.shadowXStepperControl()),
                         static_cast<QWidget*>(panel.shadowYStepperControl()),
                         static_cast<QWidget*>(panel.shadowhowmode()),
                         static_cast<QWidget*>(panel.shadowColor()),
                         static_cast<QWidget*>(panel.shadowXText()),
                         static_cast<QWidget*>(panel.shadowYText()),
                         static_cast<QWidget*>(panel.shadowRadiusText()),
                         static_cast<QWidget*>(panel.shadowModeText()),
                         static_cast<QWidget*>(panel.shadowColorText())};
    ASSERT_FALSE(p.state.shadow());
    for (QWidget* w : shadow)
        EXPECT_FALSE(w->isEnabled()) << w->objectName().toStdString();

    click(panel.checkShadow());
    EXPECT_TRUE(p.state.shadow());
    for (QWidget* w : shadow)
        EXPECT_TRUE(w->isEnabled()) << w->objectName().toStdString();

    type(panel.shadowX(), QStringLiteral("5"));
    step(panel.shadowYStepperControl(), -1);
    type(panel.shadowRadius(), QStringLiteral("1.5"));
    choose(panel.shadowhowmode(), 1);
    EXPECT_FLOAT_EQ(p.state.shadowXOffset(), 5.0f);
    EXPECT_EQ(panel.shadowXStepperControl()->value(), 5);
    EXPECT_FLOAT_EQ(p.state.shadowYOffset(), -3.0f);
    EXPECT_EQ(panel.shadowY()->text(), QStringLiteral("-3"));
    EXPECT_FLOAT_EQ(p.state.shadowBlurRadius(), 1.5f);
    EXPECT_EQ(p.state.shadowhowmode(), 1);
    const CGGlyphBitmap& g = p.view.getCAGlyphLayer(u'C')->glyphBitmap();
    EXPECT_TRUE(g.shadow());
    EXPECT_FLOAT_EQ(g.shadowxoffset(), 5.0f);
    EXPECT_FLOAT_EQ(g.shadowyoffset(), -3.0f);
    EXPECT_EQ(g.shadowhowmode(), 1);

    click(panel.checkShadow());
    EXPECT_FALSE(p.state.shadow());
    for (QWidget* w : shadow)
        EXPECT_FALSE(w->isEnabled()) << w->objectName().toStdString();
}

TEST(ColorToolsPanel, FillRowZeroMeansNoFill)
{
    Project p;
    ColorToolsPanel panel(p.state, p.wells, &p.controller);
    present(panel);
    click(panel.checkStroke()); // outline off: only the fill draws
    ASSERT_FALSE(p.state.stroke());

    click(panel.colorOrGradientRow(0));
    EXPECT_EQ(p.state.fillGMode(), 0);
    EXPECT_EQ(p.view.getCAGlyphLayer(u'A')->glyphBitmap().fillGMode(), 0);
    EXPECT_FALSE(textureHasInk(p.view)) << "no fill and no outline draw nothing";

    click(panel.colorOrGradientRow(1));
    EXPECT_EQ(p.state.fillGMode(), 1);
    EXPECT_TRUE(textureHasInk(p.view));
    click(panel.colorOrGradientRow(4));
    EXPECT_EQ(p.state.fillGMode(), 4);
    EXPECT_EQ(p.view.getCAGlyphLayer(u'B')->glyphBitmap().fillGMode(), 4);

    // The radial centre, typed and stepped in hundredths.
    type(panel.gradialX(), QStringLiteral("0.5"));
    step(panel.radialYStepperControl(), -2);
    EXPECT_FLOAT_EQ(p.state.gradialX(), 0.5f);
    EXPECT_FLOAT_EQ(p.state.gradialY(), -0.1f);
    EXPECT_EQ(panel.gradialY()->text(), QStringLiteral("-0.1"));
    EXPECT_FLOAT_EQ(p.view.getCAGlyphLayer(u'B')->glyphBitmap().gradialX(), 0.5f);
}

TEST(ColorToolsPanel, AngleFieldsKeepToZeroToThreeHundredSixty)
{
    Project p;
    ColorToolsPanel panel(p.state, p.wells, &p.controller);
    QSignalSpy previews(&panel, &ColorToolsPanel::previewNeedsUpdate);
    present(panel);

    enter(panel.labelGradiantAngle(), QStringLiteral("45"));
    EXPECT_EQ(p.state.gradiantAngle(), 45);
    EXPECT_EQ(panel.grandiantAngle()->value(), 45);
    enter(panel.labelGradiantAngle(), QStringLiteral("400"));
    EXPECT_EQ(panel.labelGradiantAngle()->text(), QStringLiteral("0"));
    EXPECT_EQ(p.state.gradiantAngle(), 0);
    enter(panel.labelGradiantAngle(), QStringLiteral("-5"));
    EXPECT_EQ(panel.labelGradiantAngle()->text(), QStringLiteral("0"));
    enter(panel.labelGradiantAngle(), QStringLiteral("360"));
    EXPECT_EQ(p.state.gradiantAngle(), 360);
    EXPECT_GE(previews.count(), 4);

    // The dial: a click straight above the centre points up, 90 degrees; the field follows.
    AngleDial* dial = panel.grandiantAngle();
    QTest::mouseClick(dial, Qt::LeftButton, {}, QPoint(dial->width() / 2, 1));
    EXPECT_EQ(p.state.gradiantAngle(), 90);
    EXPECT_EQ(panel.labelGradiantAngle()->text(), QStringLiteral("90"));

    // The outline gradient: its angle applies with the editor's gradient once gradient is chosen.
    enter(panel.labelStrokeGradientAngle(), QStringLiteral("120"));
    EXPECT_EQ(p.state.strokegradiantAngle(), 120);
    click(panel.strokePlainOrGradient()->button(1));
    EXPECT_EQ(p.state.strokeMode(), 1);
    EXPECT_EQ(p.state.strokeGradient(), panel.strokeGradientEditor()->gradient());
    click(panel.strokePlainOrGradient()->button(0));
    EXPECT_EQ(p.state.strokeMode(), 0);
}

TEST(ColorWellGroup, OneControlAtATimeOwnsTheColourDialog)
{
    Project p;
    ColorToolsPanel panel(p.state, p.wells, &p.controller);
    present(panel);
    ColorPanel* dialog = ColorPanel::shared();

    click(panel.fillGColor());
    EXPECT_TRUE(panel.fillGColor()->isActive());
    EXPECT_EQ(dialog->target(), panel.fillGColor());
    // Its own edits keep the well attached: a drag in the dialog delivers many colours.
    dialog->dialog()->setCurrentColor(QColor(0, 0, 255));
    dialog->dialog()->setCurrentColor(QColor(0, 255, 0));
    EXPECT_TRUE(panel.fillGColor()->isActive());
    EXPECT_EQ(p.state.glyphColor(), Color::deviceRGB(0, 1, 0));

    click(panel.strokeColor());
    EXPECT_FALSE(panel.fillGColor()->isActive());
    EXPECT_TRUE(panel.strokeColor()->isActive());
    dialog->dialog()->setCurrentColor(QColor(255, 0, 0));
    EXPECT_EQ(p.state.strokeColor(), Color::calibratedRGB(1, 0, 0));
    EXPECT_EQ(p.state.glyphColor(), Color::deviceRGB(0, 1, 0)) << "the fill well let go";

    // A gradient knob takes the dialog from the wells...
    gradientEditor* editor = panel.colorGradientEditor();
    const QPoint knob = editor->_viewPointFromGradientLocation(editor->gradient().stop(0).location).toPoint();
    doubleClick(editor, knob);
    EXPECT_EQ(editor->_editingKnobAtIndex(), 0);
    EXPECT_EQ(p.wells.activeWell(), nullptr);
    dialog->dialog()->setCurrentColor(QColor(255, 255, 255));
    EXPECT_EQ(p.state.colorGradient().stop(0).color.toQColor(), QColor(255, 255, 255));
    EXPECT_EQ(p.state.strokeColor(), Color::calibratedRGB(1, 0, 0));

    // ...and a well takes it back, ending the knob's editing.
    click(panel.previewBgColor());
    EXPECT_EQ(editor->_editingKnobAtIndex(), -1);
    dialog->dialog()->setCurrentColor(QColor(0, 0, 0));
    EXPECT_EQ(p.state.colorGradient().stop(0).color.toQColor(), QColor(255, 255, 255));
    EXPECT_EQ(p.state.prevBgColor(), Color::calibratedRGB(0, 0, 0));

    // Changing the fill mode releases the wells; a second click on a well releases it too.
    click(panel.colorOrGradientRow(1));
    EXPECT_EQ(p.wells.activeWell(), nullptr);
    click(panel.strokeColor());
    click(panel.strokeColor());
    EXPECT_EQ(p.wells.activeWell(), nullptr);
    EXPECT_EQ(dialog->target(), nullptr);
    dialog->close();
}

TEST(FontMetricsPanel, SliderDragRebuildsOnceAfterTheLastEvent)
{
    Project p;
    FontMetricsPanel panel(p.state, p.view);
    QSignalSpy previews(&panel, &FontMetricsPanel::previewNeedsUpdate);
    present(panel);
    type(panel.lineHeight(), QStringLiteral("99"));
    type(panel.spaceWidth(), QStringLiteral("77"));
    ASSERT_EQ(p.state.lineHeight(), 99);
    ASSERT_EQ(p.state.spaceWidth(), 77);

    QSlider* slider = panel.glyphSize();
    ASSERT_EQ(slider->value(), 50);
    slider->setFocus();
    for (int i = 0; i < 20; ++i)
        QTest::keyClick(slider, Qt::Key_Right);
    EXPECT_EQ(panel.glyphSizeText()->text(), QStringLiteral("70"));
    EXPECT_EQ(p.view.sizeChanges, 0) << "nothing is rebuilt while events keep coming";
    EXPECT_TRUE(panel.glyphSizeChangePending());

    ASSERT_TRUE(waitUntil([&] { return !panel.glyphSizeChangePending(); }));
    EXPECT_EQ(p.view.sizeChanges, 1);
    EXPECT_EQ(p.state.glyphSize(), 70);
    EXPECT_EQ(p.view.getCAGlyphLayer(u'A')->glyphBitmap().glyphsize(), 70);
    // The hand-set line height and space width give way to the new size's defaults.
    EXPECT_EQ(p.state.lineHeight(), p.view.getDefaultLineHeight());
    EXPECT_GT(p.state.lineHeight(), 70) << "DejaVu Sans's line is taller than its size";
    EXPECT_EQ(p.state.spaceWidth(), p.view.getSpaceWidth());
    EXPECT_EQ(panel.lineHeight()->text().toInt(), p.state.lineHeight());
    EXPECT_EQ(panel.spaceWidth()->text().toInt(), p.state.spaceWidth());
    EXPECT_EQ(previews.count(), 1);
}

TEST(FontMetricsPanel, RebuildWhileOpeningAProjectLeavesItUnchanged)
{
    Project p;
    FontMetricsPanel panel(p.state, p.view);
    panel.setJustLoading(true);
    panel.glyphSize()->setValue(40);
    ASSERT_TRUE(waitUntil([&] { return !panel.glyphSizeChangePending(); }));
    EXPECT_FALSE(panel.justLoading());
    EXPECT_FALSE(p.state.configchanged());
    panel.glyphSize()->setValue(41);
    ASSERT_TRUE(waitUntil([&] { return !panel.glyphSizeChangePending(); }));
    EXPECT_TRUE(p.state.configchanged());
}

TEST(FontMetricsPanel, OffsetsFixedAdvanceAndSwitches)
{
    Project p;
    FontMetricsPanel panel(p.state, p.view);
    present(panel);
    type(panel.postXOffset(), QStringLiteral("-4"));
    step(panel.postYOffsetStepperControl(), 3);
    EXPECT_EQ(p.state.postXOffset(), -4);
    EXPECT_EQ(panel.postXOffsetStepperControl()->value(), -4);
    EXPECT_EQ(p.state.postYOffset(), 3);
    EXPECT_EQ(panel.postYOffset()->text(), QStringLiteral("3"));

    EXPECT_FALSE(panel.fixedxadvance()->isEnabled());
    click(panel.fixedadvancecheckbox());
    EXPECT_TRUE(p.state.fixedadvance());
    ASSERT_TRUE(panel.fixedxadvance()->isEnabled());
    type(panel.fixedxadvance(), QStringLiteral("30"));
    step(panel.fixedxadvancestepper(), 1);
    EXPECT_EQ(p.state.fixedadvancevalue(), 31);
    EXPECT_EQ(panel.fixedxadvance()->text(), QStringLiteral("31"));

    panel.xadvancedSlider()->setValue(-3);
    EXPECT_EQ(p.state.xadvancedOffset(), -3);
    EXPECT_EQ(panel.xadvancedLabel()->text(), QStringLiteral("-3"));
    type(panel.boundingPadding(), QStringLiteral("4"));
    EXPECT_EQ(p.state.boundingPadding(), 4);
    EXPECT_EQ(p.view.getCAGlyphLayer(u'A')->glyphBitmap().boundingPadding(), 4);

    click(panel.kernings());
    EXPECT_FALSE(p.state.kernings());
    click(panel.autoxy());
    EXPECT_TRUE(p.state.autoxy());
    EXPECT_TRUE(p.view.getCAGlyphLayer(u'A')->glyphBitmap().autoxy());

    p.state.setConfigchanged(false);
    enter(panel.forcefontface(), QStringLiteral("Title"));
    EXPECT_EQ(p.state.forcefontface(), QStringLiteral("Title"));
    EXPECT_TRUE(p.state.configchanged());
}

TEST(PackingPanel, GridControlsFollowTheGridSwitch)
{
    Project p;
    PackingPanel panel(p.state);
    present(panel);
    EXPECT_FALSE(panel.gridButtonAuto()->isEnabled());
    EXPECT_FALSE(panel.gridWidth()->isEnabled());

    click(panel.gridButton());
    EXPECT_TRUE(p.state.grid());
    EXPECT_TRUE(panel.gridButtonAuto()->isEnabled());
    EXPECT_FALSE(panel.gridWidth()->isEnabled()) << "the cell size is automatic";
    click(panel.gridButtonAuto());
    EXPECT_FALSE(p.state.gridAuto());
    ASSERT_TRUE(panel.gridWidth()->isEnabled());
    type(panel.gridWidth(), QStringLiteral("40"));
    type(panel.gridHeight(), QStringLiteral("50"));
    EXPECT_EQ(p.state.gridWidth(), 40);
    EXPECT_EQ(p.state.gridHeight(), 50);

    choose(panel.paddingButton(), 5);
    choose(panel.methodButton(), 5);
    click(panel.reversedButton());
    EXPECT_EQ(p.state.paddingSize(), 5);
    EXPECT_EQ(p.state.paddingMethod(), 5);
    EXPECT_FALSE(p.state.packingReversed());
}

TEST(OutputPanel, QualityOnlyForAReducedSizeLevel)
{
    Project p;
    OutputPanel panel(p.state, &p.controller);
    present(panel);
    ASSERT_EQ(p.state.autoSDLevel(), 1);
    EXPECT_TRUE(panel.popSDQuality()->isEnabled());

    choose(panel.autoSDButton(), 0);
    EXPECT_EQ(p.state.autoSDLevel(), 0);
    EXPECT_FALSE(panel.popSDQuality()->isEnabled());
    EXPECT_FALSE(panel.sdQualityText()->isEnabled());
    choose(panel.autoSDButton(), 2);
    EXPECT_EQ(p.state.autoSDLevel(), 2);
    EXPECT_TRUE(panel.popSDQuality()->isEnabled());
    EXPECT_TRUE(panel.sdQualityText()->isEnabled());

    choose(panel.popSDQuality(), 4);
    choose(panel.outputFormatFile(), 8);
    click(panel.checkredrawwhendownscaling());
    type(panel.textureName(), QStringLiteral("title"));
    p.controller.directories.append(QStringLiteral("/tmp/out"));
    click(panel.chooseDirectoryButton());
    EXPECT_EQ(p.state.SDQuality(), 4);
    EXPECT_EQ(p.state.fontFormat(), 8);
    EXPECT_TRUE(p.state.downscalerecalc());
    EXPECT_EQ(p.state.publishName(), QStringLiteral("title"));
    EXPECT_EQ(p.state.publishDirectory(), QStringLiteral("/tmp/out"));
    EXPECT_TRUE(p.state.configchanged());
}

TEST(EditingPanels, ReloadShowsAnotherProjectsSettings)
{
    Project p;
    TexturePanel texture(p.state, p.wells);
    ColorToolsPanel colours(p.state, p.wells, &p.controller);
    FontMetricsPanel metrics(p.state, p.view);
    OutputPanel output(p.state, nullptr);

    p.state.setCheckerBoard(false);
    p.state.setStrokeInfo(false, 3, Color::red(), 1);
    p.state.setShadowInfo(true, 4, -4, 2, 1);
    p.state.setFillMode(0, Color::red(), Gradient());
    p.state.setGradiant(200, p.state.colorGradient());
    p.state.setXadvancedOffset(7);
    p.state.setAutoSDLevel(0);
    texture.reloadFromSettings();
    colours.reloadFromSettings();
    metrics.reloadFromSettings();
    output.reloadFromSettings();

    EXPECT_FALSE(texture.checkerboardButton()->isChecked());
    EXPECT_TRUE(texture.backgroundColor()->isEnabled());
    EXPECT_FALSE(colours.checkStroke()->isChecked());
    EXPECT_FALSE(colours.strokeSize()->isEnabled());
    EXPECT_EQ(colours.strokeSize()->text(), QStringLiteral("3"));
    EXPECT_EQ(colours.strokehowmode()->currentData().toInt(), 1);
    EXPECT_TRUE(colours.shadowX()->isEnabled());
    EXPECT_EQ(colours.shadowY()->text(), QStringLiteral("-4"));
    EXPECT_TRUE(colours.colorOrGradientRow(0)->isChecked());
    EXPECT_EQ(colours.grandiantAngle()->value(), 200);
    EXPECT_EQ(colours.labelGradiantAngle()->text(), QStringLiteral("200"));
    EXPECT_EQ(metrics.xadvancedSlider()->value(), 7);
    EXPECT_FALSE(metrics.glyphSizeChangePending()) << "showing a value is no user change";
    EXPECT_FALSE(output.popSDQuality()->isEnabled());
}
