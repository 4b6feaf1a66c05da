#include "Classes/ui/ColorToolsPanel.h"

#include "Classes/model/Format.h"
#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/ui/AngleDial.h"
#include "Classes/ui/ColorWell.h"
#include "Classes/ui/ColorWellGroup.h"
#include "Classes/ui/ImageWell.h"
#include "Classes/ui/PanelControls.h"
#include "Classes/ui/Stepper.h"
#include "Classes/ui/gradientEditor.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

#include <cmath>

namespace qm {

namespace {

constexpr int kRadialSteps = 100; ///< the radial steppers count hundredths of the -1..1 centre
constexpr int kShadowRange = 100;
constexpr int kStrokeLimit = 100;
constexpr int kMiterLimit = 100;

QHBoxLayout* hbox(std::initializer_list<QWidget*> widgets, bool stretch = true)
{
    auto* box = new QHBoxLayout;
    box->setSpacing(4);
    for (QWidget* w : widgets)
        box->addWidget(w);
    if (stretch)
        box->addStretch(1);
    return box;
}

QFrame* separator(QWidget* parent)
{
    auto* line = new QFrame(parent);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    return line;
}

/// A stepper shows a field's number rounded to its steps.
int stepsOf(float value, int stepsPerUnit = 1)
{
    return int(std::lround(double(value) * stepsPerUnit));
}

} // namespace

ColorToolsPanel::ColorToolsPanel(sharedAppState& state, ColorWellGroup& wells, TextureController* controller,
                                 QWidget* parent)
    : QWidget(parent), m_state(state), m_wells(wells), m_controller(controller)
{
    setObjectName(QStringLiteral("colorToolsPanel"));

    m_workonselButton = new QCheckBox(tr("Apply to selected glyphs only"), this);
    m_workonselButton->setObjectName(QStringLiteral("workonselButton"));
    m_workonselButton->setToolTip(tr("Style changes apply only to the glyphs selected on the texture"));
    connect(m_workonselButton, &QCheckBox::clicked, this, &ColorToolsPanel::workonselChanged);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(8, 6, 8, 6);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(6);
    grid->setColumnStretch(1, 1);
    int row = 0;
    grid->addWidget(m_workonselButton, row++, 0, 1, 2);
    grid->addWidget(separator(this), row++, 0, 1, 2);
    buildFill(grid, row);
    grid->addWidget(separator(this), row++, 0, 1, 2);
    buildStroke(grid, row);
    grid->addWidget(separator(this), row++, 0, 1, 2);
    buildShadow(grid, row);
    grid->addWidget(separator(this), row++, 0, 1, 2);

    m_previewBgColor = new ColorWell(this);
    m_previewBgColor->setObjectName(QStringLiteral("previewBgColor"));
    m_previewBgColor->setToolTip(tr("The colour behind the text preview"));
    wells.addWell(m_previewBgColor);
    connect(m_previewBgColor, &ColorWell::colorChanged, this, &ColorToolsPanel::prevBgColorChanged);
    auto* previewCaption = makeCaption(this, QStringLiteral("previewBgColorText"), tr("Preview background:"));
    previewCaption->setBuddy(m_previewBgColor);
    grid->addLayout(hbox({previewCaption, m_previewBgColor}), row++, 0, 1, 2);
    grid->setRowStretch(row, 1);

    reloadFromSettings();
}

void ColorToolsPanel::buildFill(QGridLayout* grid, int& row)
{
    const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
    grid->addWidget(makeSectionTitle(this, tr("Fill")), row++, 0, 1, 2);

    m_colorOrGradient = new QButtonGroup(this);
    m_colorOrGradient->setObjectName(QStringLiteral("colorOrGradient"));
    const char* titles[] = {QT_TR_NOOP("No fill"), QT_TR_NOOP("Colour"), QT_TR_NOOP("Picture"),
                            QT_TR_NOOP("Linear gradient"), QT_TR_NOOP("Radial gradient")};
    const char* tips[] = {QT_TR_NOOP("Draw no fill: only the outline and the shadow"),
                          QT_TR_NOOP("Fill with one colour, glossy if you like"),
                          QT_TR_NOOP("Fill with a picture"),
                          QT_TR_NOOP("Fill with the gradient at the angle below"),
                          QT_TR_NOOP("Fill with the gradient in circles around the centre below")};
    QRadioButton* rows[5];
    for (int i = 0; i < 5; ++i) {
        rows[i] = new QRadioButton(tr(titles[i]), this);
        rows[i]->setObjectName(QStringLiteral("colorOrGradientRow%1").arg(i));
        rows[i]->setToolTip(tr(tips[i]));
        m_colorOrGradient->addButton(rows[i], i);
    }
    connect(m_colorOrGradient, &QButtonGroup::idClicked, this, &ColorToolsPanel::colorOrGradientChanged);

    m_fillGColor = new ColorWell(this);
    m_fillGColor->setObjectName(QStringLiteral("fillGColor"));
    m_fillGColor->setToolTip(tr("The fill colour"));
    m_wells.addWell(m_fillGColor);
    // The well's own edits keep it attached to the colour dialog.
    connect(m_fillGColor, &ColorWell::colorChanged, this, &ColorToolsPanel::applyFillMode);
    m_checkGlossy = new QCheckBox(tr("Glossy"), this);
    m_checkGlossy->setObjectName(QStringLiteral("checkGlossy"));
    m_checkGlossy->setToolTip(tr("Add a glossy highlight to the colour fill"));
    connect(m_checkGlossy, &QCheckBox::clicked, this, &ColorToolsPanel::checkGlossyChanged);

    m_imageTexture = new ImageWell(this);
    m_imageTexture->setObjectName(QStringLiteral("imageTexture"));
    m_imageTexture->setChooser([this]() -> QString {
        return m_controller ? m_controller->chooseFileToOpen(tr("Fill picture"), ImageWell::extensions())
                            : QString();
    });
    connect(m_imageTexture, &ImageWell::imageChanged, this, &ColorToolsPanel::textureChanged);

    grid->addWidget(rows[0], row++, 0, 1, 2);
    grid->addWidget(rows[1], row, 0);
    grid->addLayout(hbox({m_fillGColor, m_checkGlossy}), row++, 1);
    grid->addWidget(rows[2], row, 0);
    grid->addLayout(hbox({m_imageTexture}), row++, 1);
    grid->addWidget(rows[3], row++, 0, 1, 2);
    grid->addWidget(rows[4], row++, 0, 1, 2);

    m_gradialX = makeNumberField(this, QStringLiteral("gradialX"),
                                 tr("Centre of the radial gradient across the glyph, -1 to 1"), -1, 1, true);
    m_gradialY = makeNumberField(this, QStringLiteral("gradialY"),
                                 tr("Centre of the radial gradient up the glyph, -1 to 1"), -1, 1, true);
    m_radialStepper = makeStepper(this, QStringLiteral("radialStepper"), tr("Move the centre by 0.05"),
                                  -kRadialSteps, kRadialSteps, 5);
    m_radialYStepper = makeStepper(this, QStringLiteral("radialYStepper"), tr("Move the centre by 0.05"),
                                   -kRadialSteps, kRadialSteps, 5);
    connect(m_gradialX, &QLineEdit::textEdited, this, &ColorToolsPanel::radialSettingsChanged);
    connect(m_gradialY, &QLineEdit::textEdited, this, &ColorToolsPanel::radialSettingsChanged);
    connect(m_radialStepper, &Stepper::clicked, this, &ColorToolsPanel::radialStepper);
    connect(m_radialYStepper, &Stepper::clicked, this, &ColorToolsPanel::radialYStepper);
    auto* centreCaption = makeCaption(this, QStringLiteral("gradialText"), tr("Centre x:"));
    centreCaption->setBuddy(m_gradialX);
    auto* centre = hbox({m_gradialX, m_radialStepper});
    centre->insertSpacing(2, 6);
    centre->insertWidget(3, makeCaption(this, QStringLiteral("gradialYText"), tr("y:")));
    centre->insertWidget(4, m_gradialY);
    centre->insertWidget(5, m_radialYStepper);
    grid->addWidget(centreCaption, row, 0, right);
    grid->addLayout(centre, row++, 1);

    m_colorGradientEditor = new gradientEditor(this);
    m_colorGradientEditor->setObjectName(QStringLiteral("colorGradientEditor"));
    m_wells.addGradientEditor(m_colorGradientEditor);
    connect(m_colorGradientEditor, &gradientEditor::gradientChanged, this,
            &ColorToolsPanel::startendangleGradiantChanged);
    auto* gradientCaption = makeCaption(this, QStringLiteral("colorGradientText"), tr("Gradient:"));
    grid->addWidget(gradientCaption, row, 0, right);
    grid->addWidget(m_colorGradientEditor, row++, 1);

    m_grandiantAngle = new AngleDial(this);
    m_grandiantAngle->setObjectName(QStringLiteral("grandiantAngle"));
    m_grandiantAngle->setToolTip(tr("The direction of the linear gradient"));
    connect(m_grandiantAngle, &AngleDial::valueChanged, this, &ColorToolsPanel::startendangleGradiantChanged);
    m_labelGradiantAngle = makeNumberField(this, QStringLiteral("labelGradiantAngle"),
                                           tr("The gradient's angle in degrees, 0 to 360"), -999, 999);
    connect(m_labelGradiantAngle, &QLineEdit::editingFinished, this, &ColorToolsPanel::labelGradientChanged);
    auto* angleCaption = makeCaption(this, QStringLiteral("gradientDegreeText"), tr("Angle:"));
    angleCaption->setBuddy(m_labelGradiantAngle);
    grid->addWidget(angleCaption, row, 0, right);
    grid->addLayout(hbox({m_grandiantAngle, m_labelGradiantAngle,
                          makeCaption(this, QStringLiteral("gradientDegreeUnit"), QStringLiteral("°"))}),
                    row++, 1);
}

void ColorToolsPanel::buildStroke(QGridLayout* grid, int& row)
{
    const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
    m_checkStroke = new QCheckBox(tr("Outline"), this);
    m_checkStroke->setObjectName(QStringLiteral("checkStroke"));
    m_checkStroke->setToolTip(tr("Draw an outline around the glyphs"));
    QFont bold = m_checkStroke->font();
    bold.setBold(true);
    m_checkStroke->setFont(bold);
    connect(m_checkStroke, &QCheckBox::clicked, this, &ColorToolsPanel::strokeSettingsChanged);
    grid->addWidget(m_checkStroke, row++, 0, 1, 2);

    m_strokeSize = makeNumberField(this, QStringLiteral("strokeSize"), tr("Outline width in pixels"), 0,
                                   kStrokeLimit, true);
    m_strokeSizeStepper =
        makeStepper(this, QStringLiteral("strokeSizeStepper"), tr("Step the outline width"), 0, kStrokeLimit);
    m_strokesizeText = makeCaption(this, QStringLiteral("strokesizeText"), tr("Size:"));
    m_strokesizeText->setBuddy(m_strokeSize);
    m_strokeUnitText = makeCaption(this, QStringLiteral("strokeUnitText"), tr("px"));
    connect(m_strokeSize, &QLineEdit::textEdited, this, &ColorToolsPanel::strokeSettingsChanged);
    connect(m_strokeSizeStepper, &Stepper::clicked, this, &ColorToolsPanel::strokerStepper);
    grid->addWidget(m_strokesizeText, row, 0, right);
    grid->addLayout(hbox({m_strokeSize, m_strokeSizeStepper, m_strokeUnitText}), row++, 1);

    m_strokehowmode = new QComboBox(this);
    m_strokehowmode->setObjectName(QStringLiteral("strokehowmode"));
    m_strokehowmode->setToolTip(tr("Where the outline lies relative to the glyph's edge"));
    addTaggedItem(m_strokehowmode, tr("Centred"), 0);
    addTaggedItem(m_strokehowmode, tr("Inside"), 1);
    addTaggedItem(m_strokehowmode, tr("Outside"), 2);
    connect(m_strokehowmode, &QComboBox::activated, this, &ColorToolsPanel::strokeSettingsChanged);
    m_strokemodeText = makeCaption(this, QStringLiteral("strokemodeText"), tr("Position:"));
    m_strokemodeText->setBuddy(m_strokehowmode);
    grid->addWidget(m_strokemodeText, row, 0, right);
    grid->addWidget(m_strokehowmode, row++, 1, Qt::AlignLeft);

    m_strokePlainOrGradient = new QButtonGroup(this);
    m_strokePlainOrGradient->setObjectName(QStringLiteral("strokePlainOrGradient"));
    auto* plain = new QRadioButton(tr("Plain"), this);
    plain->setObjectName(QStringLiteral("strokePlainOrGradientRow0"));
    plain->setToolTip(tr("Draw the outline in one colour"));
    auto* gradient = new QRadioButton(tr("Gradient"), this);
    gradient->setObjectName(QStringLiteral("strokePlainOrGradientRow1"));
    gradient->setToolTip(tr("Draw the outline with the gradient below"));
    m_strokePlainOrGradient->addButton(plain, 0);
    m_strokePlainOrGradient->addButton(gradient, 1);
    connect(m_strokePlainOrGradient, &QButtonGroup::idClicked, this,
            &ColorToolsPanel::strokePlainOrGradientChanged);
    m_strokeColor = new ColorWell(this);
    m_strokeColor->setObjectName(QStringLiteral("strokeColor"));
    m_strokeColor->setToolTip(tr("The plain outline colour"));
    m_wells.addWell(m_strokeColor);
    // The well's own edits keep it attached to the colour dialog.
    connect(m_strokeColor, &ColorWell::colorChanged, this, &ColorToolsPanel::applyStrokeSettings);
    m_strokeColorText = makeCaption(this, QStringLiteral("strokeColorText"), tr("Colour:"));
    auto* colour = hbox({plain, m_strokeColor});
    colour->insertSpacing(2, 8);
    colour->insertWidget(3, gradient);
    grid->addWidget(m_strokeColorText, row, 0, right);
    grid->addLayout(colour, row++, 1);

    m_strokeGradientEditor = new gradientEditor(this);
    m_strokeGradientEditor->setObjectName(QStringLiteral("strokeGradientEditor"));
    m_wells.addGradientEditor(m_strokeGradientEditor);
    connect(m_strokeGradientEditor, &gradientEditor::gradientChanged, this,
            &ColorToolsPanel::strokeGradientColorChanged);
    m_strokeGradientText = makeCaption(this, QStringLiteral("strokeGradientText"), tr("Gradient:"));
    grid->addWidget(m_strokeGradientText, row, 0, right);
    grid->addWidget(m_strokeGradientEditor, row++, 1);

    m_strokeGradientAngle = new AngleDial(this);
    m_strokeGradientAngle->setObjectName(QStringLiteral("strokeGradientAngle"));
    m_strokeGradientAngle->setToolTip(tr("The direction of the outline gradient"));
    connect(m_strokeGradientAngle, &AngleDial::valueChanged, this,
            &ColorToolsPanel::strokeGradientColorChanged);
    m_labelStrokeGradientAngle = makeNumberField(this, QStringLiteral("labelStrokeGradientAngle"),
                                                 tr("The outline gradient's angle in degrees"), 0, 360);
    connect(m_labelStrokeGradientAngle, &QLineEdit::editingFinished, this,
            &ColorToolsPanel::labelStrokeGradientAngleChanged);
    m_strokedegreeText = makeCaption(this, QStringLiteral("strokedegreeText"), tr("Angle:"));
    m_strokedegreeText->setBuddy(m_labelStrokeGradientAngle);
    m_strokeDegreeUnit = makeCaption(this, QStringLiteral("strokeDegreeUnit"), QStringLiteral("°"));
    grid->addWidget(m_strokedegreeText, row, 0, right);
    grid->addLayout(hbox({m_strokeGradientAngle, m_labelStrokeGradientAngle, m_strokeDegreeUnit}), row++, 1);

    m_miterlimit = makeNumberField(this, QStringLiteral("miterlimit"),
                                   tr("How far sharp outline corners may reach before they are cut off"), 0,
                                   kMiterLimit);
    m_miterlimitstepper =
        makeStepper(this, QStringLiteral("miterlimitstepper"), tr("Step the miter limit"), 0, kMiterLimit);
    connect(m_miterlimit, &QLineEdit::textEdited, this, &ColorToolsPanel::miterlimitchanged);
    connect(m_miterlimitstepper, &Stepper::clicked, this, &ColorToolsPanel::miterlimitestepperclicked);
    m_strokemiterText = makeCaption(this, QStringLiteral("strokemiterText"), tr("Miter limit:"));
    m_strokemiterText->setBuddy(m_miterlimit);
    grid->addWidget(m_strokemiterText, row, 0, right);
    grid->addLayout(hbox({m_miterlimit, m_miterlimitstepper}), row++, 1);
}

void ColorToolsPanel::buildShadow(QGridLayout* grid, int& row)
{
    const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
    m_checkShadow = new QCheckBox(tr("Shadow"), this);
    m_checkShadow->setObjectName(QStringLiteral("checkShadow"));
    m_checkShadow->setToolTip(tr("Draw a shadow with the glyphs"));
    QFont bold = m_checkShadow->font();
    bold.setBold(true);
    m_checkShadow->setFont(bold);
    connect(m_checkShadow, &QCheckBox::clicked, this, &ColorToolsPanel::shadowSettingsChanged);
    grid->addWidget(m_checkShadow, row++, 0, 1, 2);

    m_shadowX = makeNumberField(this, QStringLiteral("shadowX"), tr("Shadow offset to the right, in pixels"),
                                -kShadowRange, kShadowRange, true);
    m_shadowY = makeNumberField(this, QStringLiteral("shadowY"), tr("Shadow offset upwards, in pixels"),
                                -kShadowRange, kShadowRange, true);
    m_shadowRadius = makeNumberField(this, QStringLiteral("shadowRadius"), tr("Blur radius of the shadow"), 0,
                                     kShadowRange, true);
    m_shadowXStepper = makeStepper(this, QStringLiteral("shadowXStepper"), tr("Step the x offset"),
                                   -kShadowRange, kShadowRange);
    m_shadowYStepper = makeStepper(this, QStringLiteral("shadowYStepper"), tr("Step the y offset"),
                                   -kShadowRange, kShadowRange);
    m_shadowRadiusStepper =
        makeStepper(this, QStringLiteral("shadowRadiusStepper"), tr("Step the blur radius"), 0, kShadowRange);
    for (QLineEdit* field : {m_shadowX, m_shadowY, m_shadowRadius})
        connect(field, &QLineEdit::textEdited, this, &ColorToolsPanel::shadowSettingsChanged);
    connect(m_shadowXStepper, &Stepper::clicked, this, &ColorToolsPanel::shadowXStepper);
    connect(m_shadowYStepper, &Stepper::clicked, this, &ColorToolsPanel::shadowYStepper);
    connect(m_shadowRadiusStepper, &Stepper::clicked, this, &ColorToolsPanel::shadowRadiusStepper);
    m_shadowXText = makeCaption(this, QStringLiteral("shadowXText"), tr("Offset x:"));
    m_shadowXText->setBuddy(m_shadowX);
    m_shadowYText = makeCaption(this, QStringLiteral("shadowYText"), tr("y:"));
    m_shadowYText->setBuddy(m_shadowY);
    m_shadowRadiusText = makeCaption(this, QStringLiteral("shadowRadiusText"), tr("Blur:"));
    m_shadowRadiusText->setBuddy(m_shadowRadius);
    auto* offset = hbox({m_shadowX, m_shadowXStepper});
    offset->insertSpacing(2, 6);
    offset->insertWidget(3, m_shadowYText);
    offset->insertWidget(4, m_shadowY);
    offset->insertWidget(5, m_shadowYStepper);
    grid->addWidget(m_shadowXText, row, 0, right);
    grid->addLayout(offset, row++, 1);
    grid->addWidget(m_shadowRadiusText, row, 0, right);
    grid->addLayout(hbox({m_shadowRadius, m_shadowRadiusStepper}), row++, 1);

    m_shadowhowmode = new QComboBox(this);
    m_shadowhowmode->setObjectName(QStringLiteral("shadowhowmode"));
    m_shadowhowmode->setToolTip(tr("A shadow cast behind the glyph, or one inside it"));
    addTaggedItem(m_shadowhowmode, tr("Drop shadow"), 0);
    addTaggedItem(m_shadowhowmode, tr("Inner shadow"), 1);
    connect(m_shadowhowmode, &QComboBox::activated, this, &ColorToolsPanel::shadowSettingsChanged);
    m_shadowModeText = makeCaption(this, QStringLiteral("shadowModeText"), tr("Type:"));
    m_shadowModeText->setBuddy(m_shadowhowmode);
    grid->addWidget(m_shadowModeText, row, 0, right);
    grid->addWidget(m_shadowhowmode, row++, 1, Qt::AlignLeft);

    m_shadowColor = new ColorWell(this);
    m_shadowColor->setObjectName(QStringLiteral("shadowColor"));
    m_shadowColor->setToolTip(tr("The shadow colour; its opacity sets the shadow's strength"));
    m_wells.addWell(m_shadowColor);
    connect(m_shadowColor, &ColorWell::colorChanged, this, &ColorToolsPanel::shadowColorChanged);
    m_shadowColorText = makeCaption(this, QStringLiteral("shadowColorText"), tr("Colour:"));
    m_shadowColorText->setBuddy(m_shadowColor);
    grid->addWidget(m_shadowColorText, row, 0, right);
    grid->addLayout(hbox({m_shadowColor}), row++, 1);
}

QRadioButton* ColorToolsPanel::colorOrGradientRow(int row) const
{
    return qobject_cast<QRadioButton*>(m_colorOrGradient->button(row));
}

void ColorToolsPanel::reloadFromSettings()
{
    const sharedAppState& s = m_state;
    m_workonselButton->setChecked(s.workOnSelectionOnly());

    const int fill = s.fillGMode() >= 1 && s.fillGMode() <= 4 ? s.fillGMode() : 0;
    m_colorOrGradient->button(fill)->setChecked(true);
    m_fillGColor->setColor(s.glyphColor());
    m_checkGlossy->setChecked(s.glossy());
    m_imageTexture->setPath(s.textureName());
    m_colorGradientEditor->setGradient(s.colorGradient());
    {
        const QSignalBlocker block(m_grandiantAngle);
        m_grandiantAngle->setValue(s.gradiantAngle());
    }
    m_labelGradiantAngle->setText(format("%d", {s.gradiantAngle()}));
    m_gradialX->setText(floatFieldText(s.gradialX()));
    m_gradialY->setText(floatFieldText(s.gradialY()));
    m_radialStepper->setValue(stepsOf(s.gradialX(), kRadialSteps));
    m_radialYStepper->setValue(stepsOf(s.gradialY(), kRadialSteps));

    m_checkStroke->setChecked(s.stroke());
    m_strokeSize->setText(floatFieldText(s.strokeSize()));
    m_strokeSizeStepper->setValue(stepsOf(s.strokeSize()));
    selectTag(m_strokehowmode, s.strokehowmode());
    m_strokeColor->setColor(s.strokeColor());
    m_strokePlainOrGradient->button(s.strokeMode() == 0 ? 0 : 1)->setChecked(true);
    m_strokeGradientEditor->setGradient(s.strokeGradient());
    {
        const QSignalBlocker block(m_strokeGradientAngle);
        m_strokeGradientAngle->setValue(s.strokegradiantAngle());
    }
    m_labelStrokeGradientAngle->setText(format("%d", {s.strokegradiantAngle()}));
    m_miterlimit->setText(QString::number(s.miterlimit()));
    m_miterlimitstepper->setValue(s.miterlimit());

    m_checkShadow->setChecked(s.shadow());
    m_shadowX->setText(floatFieldText(s.shadowXOffset()));
    m_shadowY->setText(floatFieldText(s.shadowYOffset()));
    m_shadowRadius->setText(floatFieldText(s.shadowBlurRadius()));
    m_shadowXStepper->setValue(stepsOf(s.shadowXOffset()));
    m_shadowYStepper->setValue(stepsOf(s.shadowYOffset()));
    m_shadowRadiusStepper->setValue(stepsOf(s.shadowBlurRadius()));
    selectTag(m_shadowhowmode, s.shadowhowmode());
    m_shadowColor->setColor(s.shadowColor());

    m_previewBgColor->setColor(s.prevBgColor());
    updateStrokeEnabling();
    updateShadowEnabling();
}

void ColorToolsPanel::updateStrokeEnabling()
{
    setControlsEnabled({m_strokeSize, m_strokeSizeStepper, m_strokeUnitText, m_strokehowmode, m_miterlimit,
                        m_miterlimitstepper, m_strokeGradientAngle, m_labelStrokeGradientAngle,
                        m_strokeDegreeUnit, m_strokeGradientEditor, m_strokeColor, m_strokesizeText,
                        m_strokemodeText, m_strokemiterText, m_strokedegreeText, m_strokeColorText,
                        m_strokeGradientText},
                       m_checkStroke->isChecked());
    for (QAbstractButton* button : m_strokePlainOrGradient->buttons())
        button->setEnabled(m_checkStroke->isChecked());
}

void ColorToolsPanel::updateShadowEnabling()
{
    setControlsEnabled({m_shadowX, m_shadowY, m_shadowRadius, m_shadowXStepper, m_shadowYStepper,
                        m_shadowRadiusStepper, m_shadowhowmode, m_shadowColor, m_shadowXText, m_shadowYText,
                        m_shadowRadiusText, m_shadowModeText, m_shadowColorText},
                       m_checkShadow->isChecked());
}

void ColorToolsPanel::workonselChanged()
{
    m_state.setWorkOnSelectionOnly(m_workonselButton->isChecked());
}

void ColorToolsPanel::colorOrGradientChanged()
{
    m_wells.deactivategradientWells();
    applyFillMode();
}

void ColorToolsPanel::applyFillMode()
{
    const int row = m_colorOrGradient->checkedId();
    const int mode = row >= 1 && row <= 4 ? row : 0;
    m_state.setFillMode(mode, m_fillGColor->color(), Gradient());
    emit previewNeedsUpdate();
}

void ColorToolsPanel::checkGlossyChanged()
{
    m_state.setGlossy(m_checkGlossy->isChecked());
    emit previewNeedsUpdate();
}

void ColorToolsPanel::textureChanged()
{
    m_state.setTextureName(m_imageTexture->path());
    emit previewNeedsUpdate();
}

void ColorToolsPanel::startendangleGradiantChanged()
{
    const int angle = m_grandiantAngle->value();
    m_state.setGradiant(angle, m_colorGradientEditor->gradient());
    m_labelGradiantAngle->setText(format("%d", {angle}));
    emit previewNeedsUpdate();
}

void ColorToolsPanel::labelGradientChanged()
{
    int angle = intFieldValue(m_labelGradiantAngle->text());
    // Compared unsigned, so a negative angle is out of range too.
    if (unsigned(angle) > 360u) {
        angle = 0;
        m_labelGradiantAngle->setText(QStringLiteral("0"));
    }
    {
        const QSignalBlocker block(m_grandiantAngle);
        m_grandiantAngle->setValue(angle);
    }
    startendangleGradiantChanged();
}

void ColorToolsPanel::radialSettingsChanged()
{
    const float x = floatFieldValue(m_gradialX->text());
    const float y = floatFieldValue(m_gradialY->text());
    m_radialStepper->setValue(stepsOf(x, kRadialSteps));
    m_radialYStepper->setValue(stepsOf(y, kRadialSteps));
    m_state.setRadialX(x, y);
    emit previewNeedsUpdate();
}

void ColorToolsPanel::radialStepper()
{
    const float x = float(m_radialStepper->value()) / kRadialSteps;
    m_state.setGradialX(x);
    m_gradialX->setText(floatFieldText(x));
    radialSettingsChanged();
}

void ColorToolsPanel::radialYStepper()
{
    const float y = float(m_radialYStepper->value()) / kRadialSteps;
    m_state.setGradialY(y);
    m_gradialY->setText(floatFieldText(y));
    radialSettingsChanged();
}

void ColorToolsPanel::shadowSettingsChanged()
{
    const float x = floatFieldValue(m_shadowX->text());
    const float y = floatFieldValue(m_shadowY->text());
    const float radius = floatFieldValue(m_shadowRadius->text());
    m_shadowXStepper->setValue(stepsOf(x));
    m_shadowYStepper->setValue(stepsOf(y));
    m_shadowRadiusStepper->setValue(stepsOf(radius));
    m_state.setShadowInfo(m_checkShadow->isChecked(), x, y, radius, selectedTag(m_shadowhowmode));
    updateShadowEnabling();
    emit previewNeedsUpdate();
}

void ColorToolsPanel::shadowXStepper()
{
    m_state.setShadowXOffset(float(m_shadowXStepper->value()));
    m_shadowX->setText(QString::number(m_shadowXStepper->value()));
    shadowSettingsChanged();
}

void ColorToolsPanel::shadowYStepper()
{
    m_state.setShadowYOffset(float(m_shadowYStepper->value()));
    m_shadowY->setText(QString::number(m_shadowYStepper->value()));
    shadowSettingsChanged();
}

void ColorToolsPanel::shadowRadiusStepper()
{
    m_state.setShadowBlurRadius(float(m_shadowRadiusStepper->value()));
    m_shadowRadius->setText(QString::number(m_shadowRadiusStepper->value()));
    shadowSettingsChanged();
}

void ColorToolsPanel::shadowColorChanged()
{
    m_state.setShadowColor(m_shadowColor->color());
    emit previewNeedsUpdate();
}

void ColorToolsPanel::strokeSettingsChanged()
{
    m_wells.deactivategradientWells();
    applyStrokeSettings();
}

void ColorToolsPanel::applyStrokeSettings()
{
    const float size = floatFieldValue(m_strokeSize->text());
    m_strokeSizeStepper->setValue(stepsOf(size));
    m_state.setStrokeInfo(m_checkStroke->isChecked(), size, m_strokeColor->color(),
                          selectedTag(m_strokehowmode));
    updateStrokeEnabling();
    emit previewNeedsUpdate();
}

void ColorToolsPanel::strokerStepper()
{
    m_state.setStrokeSize(float(m_strokeSizeStepper->value()));
    m_strokeSize->setText(QString::number(m_strokeSizeStepper->value()));
    strokeSettingsChanged();
}

void ColorToolsPanel::strokePlainOrGradientChanged()
{
    const int row = m_strokePlainOrGradient->checkedId();
    m_state.setmStrokeMode(row == 1 ? 1 : 0);
    if (row == 1)
        strokeGradientColorChanged();
    emit previewNeedsUpdate();
}

void ColorToolsPanel::strokeGradientColorChanged()
{
    const int angle = m_strokeGradientAngle->value();
    m_state.setStrokeGradiant(angle, m_strokeGradientEditor->gradient());
    m_labelStrokeGradientAngle->setText(format("%d", {angle}));
    emit previewNeedsUpdate();
}

void ColorToolsPanel::labelStrokeGradientAngleChanged()
{
    {
        const QSignalBlocker block(m_strokeGradientAngle);
        m_strokeGradientAngle->setValue(intFieldValue(m_labelStrokeGradientAngle->text()));
    }
    strokeGradientColorChanged();
}

void ColorToolsPanel::miterlimitchanged()
{
    const int limit = intFieldValue(m_miterlimit->text());
    m_miterlimitstepper->setValue(limit);
    m_state.updatemiterlimit(limit);
}

void ColorToolsPanel::miterlimitestepperclicked()
{
    m_miterlimit->setText(QString::number(m_miterlimitstepper->value()));
    m_state.updatemiterlimit(m_miterlimitstepper->value());
}

void ColorToolsPanel::prevBgColorChanged()
{
    m_state.setPrevBgColor(m_previewBgColor->color());
    emit previewBackgroundColorChanged(m_previewBgColor->color());
}

} // namespace qm
