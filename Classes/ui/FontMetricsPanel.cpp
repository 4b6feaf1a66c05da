#include "Classes/ui/FontMetricsPanel.h"

#include "Classes/atlas/TextureView.h"
#include "Classes/fonts/GlyphSizeChange.h"
#include "Classes/model/Format.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/ui/PanelControls.h"
#include "Classes/ui/Stepper.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>

namespace qm {

namespace {
constexpr int kSmallestGlyphSize = 6;
constexpr int kLargestGlyphSize = 300;
constexpr int kAdvanceRange = 50;
constexpr int kOffsetRange = 200;
constexpr int kFixedAdvanceLimit = 1000;
} // namespace

FontMetricsPanel::FontMetricsPanel(sharedAppState& state, TextureView& view, QWidget* parent)
    : QWidget(parent), m_state(state), m_view(view)
{
    setObjectName(QStringLiteral("fontMetricsPanel"));
    m_glyphSizeTimer.setSingleShot(true);
    m_glyphSizeTimer.setInterval(0);
    connect(&m_glyphSizeTimer, &QTimer::timeout, this, &FontMetricsPanel::reallyChangeGlyphSize);

    const auto valueLabel = [this](const QString& name, const QString& widest) {
        auto* label = makeCaption(this, name, QString());
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        label->setMinimumWidth(label->fontMetrics().horizontalAdvance(widest));
        return label;
    };

    m_glyphSize = new QSlider(Qt::Horizontal, this);
    m_glyphSize->setObjectName(QStringLiteral("glyphSize"));
    m_glyphSize->setToolTip(tr("The size the glyphs are drawn at, in pixels"));
    m_glyphSize->setRange(kSmallestGlyphSize, kLargestGlyphSize);
    m_glyphSize->setPageStep(10);
    m_glyphSizeText = valueLabel(QStringLiteral("glyphSizeText"), QStringLiteral("0000"));
    auto* glyphSizeCaption = makeCaption(this, QStringLiteral("glyphSizeCaption"), tr("Glyph size:"));
    glyphSizeCaption->setBuddy(m_glyphSize);

    m_lineHeight =
        makeNumberField(this, QStringLiteral("lineHeight"),
                        tr("Distance between lines in the descriptor and the preview"), -9999, 9999);
    m_spaceWidth = makeNumberField(this, QStringLiteral("spaceWidth"), tr("Advance of the space character"),
                                   -9999, 9999);
    auto* lineHeightCaption = makeCaption(this, QStringLiteral("lineHeightText"), tr("Line height:"));
    lineHeightCaption->setBuddy(m_lineHeight);
    auto* spaceWidthCaption = makeCaption(this, QStringLiteral("spaceWidthText"), tr("Space width:"));
    spaceWidthCaption->setBuddy(m_spaceWidth);

    m_boundingPadding =
        makeNumberField(this, QStringLiteral("boundingPadding"),
                        tr("Pixels added around every glyph's box, room for effects"), 0, 200);
    auto* paddingCaption = makeCaption(this, QStringLiteral("boundingPaddingText"), tr("Glyph padding:"));
    paddingCaption->setBuddy(m_boundingPadding);

    m_xadvancedSlider = new QSlider(Qt::Horizontal, this);
    m_xadvancedSlider->setObjectName(QStringLiteral("xadvancedSlider"));
    m_xadvancedSlider->setToolTip(tr("Pixels added to every glyph's advance"));
    m_xadvancedSlider->setRange(-kAdvanceRange, kAdvanceRange);
    m_xadvancedLabel = valueLabel(QStringLiteral("xadvancedLabel"), QStringLiteral("-000"));
    auto* advanceCaption = makeCaption(this, QStringLiteral("xadvancedText"), tr("Extra advance:"));
    advanceCaption->setBuddy(m_xadvancedSlider);

    m_postXOffset =
        makeNumberField(this, QStringLiteral("postXOffset"), tr("Pixels added to every glyph's x offset"),
                        -kOffsetRange, kOffsetRange);
    m_postYOffset =
        makeNumberField(this, QStringLiteral("postYOffset"), tr("Pixels added to every glyph's y offset"),
                        -kOffsetRange, kOffsetRange);
    m_postXOffsetStepper = makeStepper(this, QStringLiteral("postXOffsetStepper"), tr("Step the x offset"),
                                       -kOffsetRange, kOffsetRange);
    m_postYOffsetStepper = makeStepper(this, QStringLiteral("postYOffsetStepper"), tr("Step the y offset"),
                                       -kOffsetRange, kOffsetRange);
    auto* offsetCaption = makeCaption(this, QStringLiteral("postOffsetText"), tr("Offset x:"));
    offsetCaption->setBuddy(m_postXOffset);
    auto* offsetYCaption = makeCaption(this, QStringLiteral("postYOffsetText"), tr("y:"));

    m_fixedadvancecheckbox = new QCheckBox(tr("Fixed advance:"), this);
    m_fixedadvancecheckbox->setObjectName(QStringLiteral("fixedadvancecheckbox"));
    m_fixedadvancecheckbox->setToolTip(tr("Give every glyph the same advance (monospaced output)"));
    m_fixedxadvance = makeNumberField(this, QStringLiteral("fixedxadvance"), tr("The advance of every glyph"),
                                      0, kFixedAdvanceLimit);
    m_fixedxadvancestepper = makeStepper(this, QStringLiteral("fixedxadvancestepper"),
                                         tr("Step the fixed advance"), 0, kFixedAdvanceLimit);
    m_fixedadvanceUnit = makeCaption(this, QStringLiteral("fixedadvanceUnitText"), tr("px"));

    m_forcefontface = new QLineEdit(this);
    m_forcefontface->setObjectName(QStringLiteral("forcefontface"));
    m_forcefontface->setToolTip(tr("Face name written into the descriptors; empty: the family's name"));
    m_forcefontface->setPlaceholderText(tr("family name"));
    auto* faceCaption = makeCaption(this, QStringLiteral("forcefontfaceText"), tr("Face name:"));
    faceCaption->setBuddy(m_forcefontface);

    m_kernings = new QCheckBox(tr("Kerning"), this);
    m_kernings->setObjectName(QStringLiteral("kernings"));
    m_kernings->setToolTip(tr("Apply the font's kerning pairs in the preview and the descriptors"));
    m_autoxy = new QCheckBox(tr("Automatic x/y offsets"), this);
    m_autoxy->setObjectName(QStringLiteral("autoxy"));
    m_autoxy->setToolTip(tr("Compute the glyph offsets from the font's metrics"));

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(8, 6, 8, 6);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(6);
    const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
    const auto row = [](std::initializer_list<QWidget*> widgets, bool stretch = true) {
        auto* box = new QHBoxLayout;
        box->setSpacing(4);
        for (QWidget* w : widgets)
            box->addWidget(w);
        if (stretch)
            box->addStretch(1);
        return box;
    };
    const auto unit = [this](const char* name) {
        return makeCaption(this, QString::fromLatin1(name), tr("px"));
    };
    grid->addWidget(glyphSizeCaption, 0, 0, right);
    grid->addLayout(row({m_glyphSize, m_glyphSizeText}, false), 0, 1);
    grid->addWidget(lineHeightCaption, 1, 0, right);
    grid->addLayout(row({m_lineHeight, unit("lineHeightUnitText")}), 1, 1);
    grid->addWidget(spaceWidthCaption, 2, 0, right);
    grid->addLayout(row({m_spaceWidth, unit("spaceWidthUnitText")}), 2, 1);
    grid->addWidget(paddingCaption, 3, 0, right);
    grid->addLayout(row({m_boundingPadding, unit("boundingPaddingUnitText")}), 3, 1);
    grid->addWidget(advanceCaption, 4, 0, right);
    grid->addLayout(row({m_xadvancedSlider, m_xadvancedLabel}, false), 4, 1);
    grid->addWidget(offsetCaption, 5, 0, right);
    auto* offsets = row({m_postXOffset, m_postXOffsetStepper});
    offsets->insertSpacing(2, 8);
    offsets->insertWidget(3, offsetYCaption);
    offsets->insertWidget(4, m_postYOffset);
    offsets->insertWidget(5, m_postYOffsetStepper);
    grid->addLayout(offsets, 5, 1);
    grid->addWidget(m_fixedadvancecheckbox, 6, 0, right);
    grid->addLayout(row({m_fixedxadvance, m_fixedxadvancestepper, m_fixedadvanceUnit}), 6, 1);
    grid->addWidget(faceCaption, 7, 0, right);
    grid->addWidget(m_forcefontface, 7, 1);
    auto* switches = row({m_kernings, m_autoxy});
    switches->insertSpacing(1, 12);
    grid->addLayout(switches, 8, 0, 1, 2);
    grid->setColumnStretch(1, 1);

    connect(m_glyphSize, &QSlider::valueChanged, this, &FontMetricsPanel::glyphSizeChanged);
    connect(m_lineHeight, &QLineEdit::textEdited, this, &FontMetricsPanel::lineHeightChanged);
    connect(m_spaceWidth, &QLineEdit::textEdited, this, &FontMetricsPanel::spaceWidthChanged);
    connect(m_boundingPadding, &QLineEdit::textEdited, this, &FontMetricsPanel::boundingPaddingChanged);
    connect(m_xadvancedSlider, &QSlider::valueChanged, this, &FontMetricsPanel::xadvancedSliderChanged);
    connect(m_postXOffset, &QLineEdit::textEdited, this, &FontMetricsPanel::postXOffsetChanged);
    connect(m_postYOffset, &QLineEdit::textEdited, this, &FontMetricsPanel::postYOffsetChanged);
    connect(m_postXOffsetStepper, &Stepper::clicked, this, &FontMetricsPanel::postXOffsetStepper);
    connect(m_postYOffsetStepper, &Stepper::clicked, this, &FontMetricsPanel::postYOffsetStepper);
    connect(m_fixedadvancecheckbox, &QCheckBox::clicked, this,
            &FontMetricsPanel::fixedadvancecheckboxclicked);
    connect(m_fixedxadvance, &QLineEdit::textEdited, this, &FontMetricsPanel::fixedadvancetextchanged);
    connect(m_fixedxadvancestepper, &Stepper::clicked, this, &FontMetricsPanel::fixedadvancestepperclicked);
    connect(m_forcefontface, &QLineEdit::editingFinished, this, &FontMetricsPanel::forcefontfaceChanged);
    connect(m_kernings, &QCheckBox::clicked, this, &FontMetricsPanel::kerningsClicked);
    connect(m_autoxy, &QCheckBox::clicked, this, &FontMetricsPanel::autoxyChanged);

    reloadFromSettings();
}

void FontMetricsPanel::reloadFromSettings()
{
    m_glyphSizeTimer.stop();
    {
        const QSignalBlocker block(m_glyphSize);
        m_glyphSize->setValue(m_state.glyphSize());
    }
    m_glyphSizeText->setText(format("%d", {m_state.glyphSize()}));
    showLineMetrics();
    m_boundingPadding->setText(QString::number(m_state.boundingPadding()));
    {
        const QSignalBlocker block(m_xadvancedSlider);
        m_xadvancedSlider->setValue(m_state.xadvancedOffset());
    }
    m_xadvancedLabel->setText(format("%d", {m_state.xadvancedOffset()}));
    m_postXOffset->setText(QString::number(m_state.postXOffset()));
    m_postYOffset->setText(QString::number(m_state.postYOffset()));
    m_postXOffsetStepper->setValue(m_state.postXOffset());
    m_postYOffsetStepper->setValue(m_state.postYOffset());
    m_fixedadvancecheckbox->setChecked(m_state.fixedadvance());
    m_fixedxadvance->setText(QString::number(m_state.fixedadvancevalue()));
    m_fixedxadvancestepper->setValue(m_state.fixedadvancevalue());
    m_forcefontface->setText(m_state.forcefontface());
    m_kernings->setChecked(m_state.kernings());
    m_autoxy->setChecked(m_state.autoxy());
    updateEnabling();
}

void FontMetricsPanel::showLineMetrics()
{
    m_lineHeight->setText(QString::number(m_state.lineHeight()));
    m_spaceWidth->setText(QString::number(m_state.spaceWidth()));
}

void FontMetricsPanel::updateEnabling()
{
    setControlsEnabled({m_fixedxadvance, m_fixedxadvancestepper, m_fixedadvanceUnit},
                       m_fixedadvancecheckbox->isChecked());
}

void FontMetricsPanel::glyphSizeChanged()
{
    m_glyphSizeText->setText(format("%d", {m_glyphSize->value()}));
    // Restarting cancels the rebuild still pending: a drag rebuilds once, after its last event.
    m_glyphSizeTimer.start();
}

void FontMetricsPanel::reallyChangeGlyphSize()
{
    m_glyphSizeTimer.stop();
    const int size = m_glyphSize->value();
    const GlyphSizeDefaults defaults = qm::reallyChangeGlyphSize(m_state, m_view, size);
    m_lineHeight->setText(QString::number(defaults.lineHeight));
    m_spaceWidth->setText(QString::number(defaults.spaceWidth));
    lineHeightChanged();
    spaceWidthChanged();
    emit previewNeedsUpdate();
    if (m_justLoading) {
        m_justLoading = false;
        m_state.setConfigchanged(false);
    }
    emit glyphSizeApplied(size);
}

void FontMetricsPanel::lineHeightChanged()
{
    m_state.setLineHeight(intFieldValue(m_lineHeight->text()));
}

void FontMetricsPanel::spaceWidthChanged()
{
    m_state.setSpaceWidth(intFieldValue(m_spaceWidth->text()));
}

void FontMetricsPanel::boundingPaddingChanged()
{
    m_state.setNewBoundingPadding(intFieldValue(m_boundingPadding->text()));
    emit previewNeedsUpdate();
}

void FontMetricsPanel::xadvancedSliderChanged()
{
    const int value = m_xadvancedSlider->value();
    m_state.setXadvancedOffset(value);
    m_xadvancedLabel->setText(format("%d", {value}));
    m_view.updatePreviewPos();
}

void FontMetricsPanel::postOffsetChanged()
{
    m_state.postOffsetChanged(intFieldValue(m_postXOffset->text()), intFieldValue(m_postYOffset->text()));
}

void FontMetricsPanel::postXOffsetChanged()
{
    m_postXOffsetStepper->setValue(intFieldValue(m_postXOffset->text()));
    postOffsetChanged();
}

void FontMetricsPanel::postYOffsetChanged()
{
    m_postYOffsetStepper->setValue(intFieldValue(m_postYOffset->text()));
    postOffsetChanged();
}

void FontMetricsPanel::postXOffsetStepper()
{
    m_postXOffset->setText(QString::number(m_postXOffsetStepper->value()));
    postOffsetChanged();
}

void FontMetricsPanel::postYOffsetStepper()
{
    m_postYOffset->setText(QString::number(m_postYOffsetStepper->value()));
    postOffsetChanged();
}

void FontMetricsPanel::fixedadvancecheckboxclicked()
{
    m_state.updatefixedadvance(m_fixedadvancecheckbox->isChecked(), intFieldValue(m_fixedxadvance->text()));
    updateEnabling();
    emit previewNeedsUpdate();
}

void FontMetricsPanel::fixedadvancestepperclicked()
{
    const int value = m_fixedxadvancestepper->value();
    m_fixedxadvance->setText(QString::number(value));
    m_state.setFixedadvancevalue(value);
    m_state.updatefixedadvance(m_fixedadvancecheckbox->isChecked(), value);
    emit previewNeedsUpdate();
}

void FontMetricsPanel::fixedadvancetextchanged()
{
    const int value = intFieldValue(m_fixedxadvance->text());
    m_fixedxadvancestepper->setValue(value);
    m_state.setFixedadvancevalue(value);
    m_state.updatefixedadvance(m_fixedadvancecheckbox->isChecked(), value);
    emit previewNeedsUpdate();
}

void FontMetricsPanel::forcefontfaceChanged()
{
    // Leaving the field without an edit is no change of the project.
    if (m_forcefontface->text() == m_state.forcefontface())
        return;
    m_state.forcefontface(m_forcefontface->text());
}

void FontMetricsPanel::kerningsClicked()
{
    m_state.setKernings(m_kernings->isChecked());
    emit previewNeedsUpdate();
}

void FontMetricsPanel::autoxyChanged()
{
    const bool on = m_autoxy->isChecked();
    m_state.setAutoxy(on);
    m_view.setAutoxy(on);
    emit previewNeedsUpdate();
}

} // namespace qm
