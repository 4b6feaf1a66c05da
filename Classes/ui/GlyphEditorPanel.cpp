#include "Classes/ui/GlyphEditorPanel.h"

#include "Classes/model/Format.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Classes/ui/Stepper.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

#include <limits>

namespace qm {

namespace {
const char* const kInactiveText = "(Right click on a glyph)";
// Corrections beyond a glyph's own size make no sense; the glyph canvas is at most 512.
constexpr int kStepperLimit = 512;
} // namespace

GlyphEditorPanel::GlyphEditorPanel(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("glyphEditor"));

    const auto caption = [this](const char* name, const QString& text) {
        auto* label = new QLabel(text, this);
        label->setObjectName(QString::fromLatin1(name));
        m_captions.append(label);
        return label;
    };
    QLabel* geA = caption("geA", tr("Glyph:"));
    QLabel* geB = caption("geB", tr("Width:"));
    QLabel* geC = caption("geC", tr("Height:"));
    QLabel* geD = caption("geD", tr("X offset:"));
    QLabel* geE = caption("geE", tr("Y offset:"));
    QLabel* geF = caption("geF", tr("X advance:"));
    QLabel* geG = caption("geG", tr("px"));
    QLabel* geH = caption("geH", tr("px"));
    QLabel* geI = caption("geI", tr("px"));

    m_geCharInfo = new QLabel(this);
    m_geCharInfo->setObjectName(QStringLiteral("geCharInfo"));
    m_geCharInfo->setToolTip(tr("The glyph being edited: character, code in decimal and hexadecimal"));
    m_geCharInfo->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_geWidth = new QLabel(this);
    m_geWidth->setObjectName(QStringLiteral("geWidth"));
    m_geWidth->setToolTip(tr("Measured width of the glyph's bitmap"));
    m_geHeight = new QLabel(this);
    m_geHeight->setObjectName(QStringLiteral("geHeight"));
    m_geHeight->setToolTip(tr("Measured height of the glyph's bitmap"));
    // Room for any size, so the height caption does not move when the sizes are cleared.
    const int sizeWidth = fontMetrics().horizontalAdvance(QStringLiteral("000 px"));
    m_geWidth->setMinimumWidth(sizeWidth);
    m_geHeight->setMinimumWidth(sizeWidth);

    m_gexOffset =
        makeField(QStringLiteral("gexOffset"), tr("Pixels added to the glyph's x offset in the descriptor"));
    m_geyOffset =
        makeField(QStringLiteral("geyOffset"), tr("Pixels added to the glyph's y offset in the descriptor"));
    m_gexAdvance = makeField(QStringLiteral("gexAdvance"),
                             tr("Pixels added to the glyph's x advance in the descriptor"));
    m_gexOffsetStepper = makeStepper(QStringLiteral("gexOffsetStepper"), tr("Step the extra x offset"));
    m_geyOffsetStepper = makeStepper(QStringLiteral("geyOffsetStepper"), tr("Step the extra y offset"));
    m_gexAdvanceStepper = makeStepper(QStringLiteral("gexAdvanceStepper"), tr("Step the extra x advance"));

    m_geCustomImage = new QCheckBox(tr("Use custom picture"), this);
    m_geCustomImage->setObjectName(QStringLiteral("geCustomImage"));
    m_geCustomImage->setToolTip(tr("Draw the picture dropped onto this glyph instead of the glyph. Once "
                                   "off, drop a picture again to turn it back on."));
    m_geFitImage = new QCheckBox(tr("Fit picture to glyph"), this);
    m_geFitImage->setObjectName(QStringLiteral("geFitImage"));
    m_geFitImage->setToolTip(tr("Scale the custom picture to the glyph's size"));
    connect(m_geCustomImage, &QCheckBox::clicked, this, &GlyphEditorPanel::geCustomImageClicked);
    connect(m_geFitImage, &QCheckBox::clicked, this, &GlyphEditorPanel::geFitImageClicked);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(8, 6, 8, 6);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(5);
    const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
    grid->addWidget(geA, 0, 0, right);
    grid->addWidget(m_geCharInfo, 0, 1, 1, 3);

    auto* size = new QHBoxLayout;
    size->setSpacing(6);
    size->addWidget(m_geWidth);
    size->addSpacing(8);
    size->addWidget(geC);
    size->addWidget(m_geHeight);
    size->addStretch(1);
    grid->addWidget(geB, 1, 0, right);
    grid->addLayout(size, 1, 1, 1, 3);

    const auto fieldRow = [&](int row, QLabel* label, QLineEdit* field, Stepper* stepper, QLabel* unit) {
        grid->addWidget(label, row, 0, right);
        grid->addWidget(field, row, 1);
        grid->addWidget(stepper, row, 2);
        grid->addWidget(unit, row, 3);
    };
    fieldRow(2, geD, m_gexOffset, m_gexOffsetStepper, geG);
    fieldRow(3, geE, m_geyOffset, m_geyOffsetStepper, geH);
    fieldRow(4, geF, m_gexAdvance, m_gexAdvanceStepper, geI);
    grid->addWidget(m_geCustomImage, 5, 1, 1, 3);
    grid->addWidget(m_geFitImage, 6, 1, 1, 3);
    grid->setColumnStretch(3, 1);
    grid->setRowStretch(7, 1);

    m_gexOffset->setText(QStringLiteral("0"));
    m_geyOffset->setText(QStringLiteral("0"));
    m_gexAdvance->setText(QStringLiteral("0"));
    deactivateGlyphEditor();
}

GlyphEditorPanel::~GlyphEditorPanel()
{
    // A field with the focus finishes editing as the children go, after this panel is gone.
    for (QLineEdit* field : {m_gexOffset, m_geyOffset, m_gexAdvance})
        field->disconnect(this);
}

QLineEdit* GlyphEditorPanel::makeField(const QString& name, const QString& toolTip)
{
    auto* field = new QLineEdit(this);
    field->setObjectName(name);
    field->setToolTip(toolTip);
    field->setAlignment(Qt::AlignRight);
    field->setMaxLength(11);
    field->setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("-00000")) + 14);
    // Edits count as they are typed, as the other panels' fields do.
    connect(field, &QLineEdit::textEdited, this, &GlyphEditorPanel::geOffsetChanged);
    connect(field, &QLineEdit::editingFinished, this, [this] { normaliseFields(nullptr); });
    return field;
}

Stepper* GlyphEditorPanel::makeStepper(const QString& name, const QString& toolTip)
{
    auto* stepper = new Stepper(this);
    stepper->setObjectName(name);
    stepper->setToolTip(toolTip);
    stepper->setRange(-kStepperLimit, kStepperLimit);
    connect(stepper, &Stepper::clicked, this, &GlyphEditorPanel::geOffsetStepperClicked);
    return stepper;
}

int GlyphEditorPanel::intValue(const QString& text)
{
    qsizetype i = 0;
    while (i < text.size() && text[i].isSpace())
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+'))
        negative = text[i++] == u'-';
    long long value = 0;
    constexpr long long limit = std::numeric_limits<int>::max() + 1LL;
    for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i)
        value = std::min(value * 10 + (text[i].unicode() - u'0'), limit);
    if (negative)
        return int(-value);
    return int(std::min<long long>(value, std::numeric_limits<int>::max()));
}

void GlyphEditorPanel::showGlyphDetails(CAGlyphLayer* layer)
{
    if (!layer) {
        deactivateGlyphEditor();
        return;
    }
    activateGlyphEditor();
    const CGGlyphBitmap& g = layer->glyphBitmap();
    const char16_t c = g.charname();
    m_geCharInfo->setText(format("%@ (%i - 0x%lX)", {c, int(c), int(c)}));
    m_geWidth->setText(format("%i px", {int(g.glyphRect().width())}));
    m_geHeight->setText(format("%i px", {int(g.glyphRect().height())}));

    m_gexOffset->setText(format("%i", {g.addXOffset()}));
    m_geyOffset->setText(format("%i", {g.addYOffset()}));
    m_gexAdvance->setText(format("%i", {g.addXAdvance()}));
    m_gexOffsetStepper->setValue(g.addXOffset());
    m_geyOffsetStepper->setValue(g.addYOffset());
    m_gexAdvanceStepper->setValue(g.addXAdvance());

    const bool custom = g.hasCustomPicture();
    m_geCustomImage->setChecked(custom);
    m_geCustomImage->setEnabled(custom);
    m_geFitImage->setEnabled(custom);
    m_geFitImage->setChecked(g.fitImage());
}

void GlyphEditorPanel::activateGlyphEditor()
{
    for (QWidget* w : std::initializer_list<QWidget*>{
             m_gexOffset, m_geyOffset, m_gexAdvance, m_gexOffsetStepper, m_geyOffsetStepper,
             m_gexAdvanceStepper, m_geCustomImage, m_geFitImage, m_geCharInfo, m_geWidth, m_geHeight})
        w->setEnabled(true);
    for (QLabel* label : m_captions)
        label->setEnabled(true);
}

void GlyphEditorPanel::deactivateGlyphEditor()
{
    m_geCharInfo->setText(QString::fromLatin1(kInactiveText));
    m_geCharInfo->setEnabled(false);
    m_geWidth->clear();
    m_geHeight->clear();
    for (QWidget* w : std::initializer_list<QWidget*>{m_gexOffset, m_geyOffset, m_gexAdvance,
                                                      m_gexOffsetStepper, m_geyOffsetStepper,
                                                      m_gexAdvanceStepper, m_geCustomImage, m_geFitImage})
        w->setEnabled(false);
    for (QLabel* label : m_captions)
        label->setEnabled(false);
}

void GlyphEditorPanel::normaliseFields(QLineEdit* editing)
{
    for (QLineEdit* field : {m_gexOffset, m_geyOffset, m_gexAdvance}) {
        const QString text = field->text();
        const QString normalised = format("%i", {intValue(text)});
        if (text == normalised)
            continue;
        const QString typed = text.trimmed();
        if (field == editing && (typed.isEmpty() || typed == u"-" || typed == u"+"))
            continue;
        field->setText(normalised);
    }
}

void GlyphEditorPanel::geOffsetChanged()
{
    normaliseFields(qobject_cast<QLineEdit*>(sender()));
    m_gexOffsetStepper->setValue(intValue(m_gexOffset->text()));
    m_geyOffsetStepper->setValue(intValue(m_geyOffset->text()));
    m_gexAdvanceStepper->setValue(intValue(m_gexAdvance->text()));
    updateGlyph();
}

void GlyphEditorPanel::geOffsetStepperClicked()
{
    m_gexOffset->setText(format("%i", {m_gexOffsetStepper->value()}));
    m_geyOffset->setText(format("%i", {m_geyOffsetStepper->value()}));
    m_gexAdvance->setText(format("%i", {m_gexAdvanceStepper->value()}));
    updateGlyph();
}

void GlyphEditorPanel::geCustomImageClicked()
{
    if (m_geCustomImage->isChecked()) {
        m_geFitImage->setEnabled(true);
    } else {
        m_geFitImage->setEnabled(false);
        m_geCustomImage->setEnabled(false);
    }
    updateGlyphImage();
}

void GlyphEditorPanel::geFitImageClicked()
{
    updateGlyphImage();
}

bool GlyphEditorPanel::editedCharacter(char16_t* character) const
{
    const QString info = m_geCharInfo->text();
    if (info.isEmpty())
        return false;
    *character = info.at(0).unicode();
    return true;
}

void GlyphEditorPanel::updateGlyph()
{
    char16_t c = 0;
    if (!editedCharacter(&c))
        return;
    if (m_state)
        m_state->updateGlyph(c, intValue(m_gexOffset->text()), intValue(m_geyOffset->text()),
                             intValue(m_gexAdvance->text()));
    emit glyphEdited();
}

void GlyphEditorPanel::updateGlyphImage()
{
    char16_t c = 0;
    if (!editedCharacter(&c))
        return;
    if (m_state)
        m_state->updateGlyphImage(c, m_geCustomImage->isChecked(), m_geFitImage->isChecked());
    emit glyphEdited();
}

void GlyphEditorPanel::updateCurrentGlyphDetails()
{
    const QString info = m_geCharInfo->text();
    if (info.size() > 1 && m_state) {
        // The second character: in a loaded panel the space after the glyph's character. What
        // the lookup loads lasts only until the deactivation below: a re-read always leaves the
        // panel inactive, so a stale glyph is never edited by mistake.
        if (CAGlyphLayer* layer = m_state->getCAGlyphLayer(info.at(1).unicode()))
            showGlyphDetails(layer);
    }
    deactivateGlyphEditor();
}

} // namespace qm
