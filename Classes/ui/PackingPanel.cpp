#include "Classes/ui/PackingPanel.h"

#include "Classes/model/sharedAppState.h"
#include "Classes/ui/PanelControls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace qm {

namespace {
constexpr int kPaddings[] = {0, 1, 2, 3, 4, 5, 6, 8, 10, 12, 16, 20};

QString paddingTitle(int pixels)
{
    return QCoreApplication::translate("PackingPanel", "%1 px").arg(pixels);
}
} // namespace

PackingPanel::PackingPanel(sharedAppState& state, QWidget* parent) : QWidget(parent), m_state(state)
{
    setObjectName(QStringLiteral("packingPanel"));

    m_paddingButton = new QComboBox(this);
    m_paddingButton->setObjectName(QStringLiteral("paddingButton"));
    m_paddingButton->setToolTip(tr("Pixels left free between packed glyphs"));
    for (int padding : kPaddings)
        addTaggedItem(m_paddingButton, paddingTitle(padding), padding);
    auto* paddingText = makeCaption(this, QStringLiteral("paddingText"), tr("Padding:"));
    paddingText->setBuddy(m_paddingButton);

    m_methodButton = new QComboBox(this);
    m_methodButton->setObjectName(QStringLiteral("methodButton"));
    m_methodButton->setToolTip(tr("The order in which glyphs are placed, smallest first"));
    addTaggedItem(m_methodButton, tr("Glyph order"), 0);
    addTaggedItem(m_methodButton, tr("Width"), 1);
    addTaggedItem(m_methodButton, tr("Height"), 2);
    addTaggedItem(m_methodButton, tr("Area"), 3);
    addTaggedItem(m_methodButton, tr("Longer side"), 4);
    addTaggedItem(m_methodButton, tr("Character code"), 5);
    auto* methodText = makeCaption(this, QStringLiteral("methodText"), tr("Sort by:"));
    methodText->setBuddy(m_methodButton);

    m_reversedButton = new QCheckBox(tr("Reverse order (largest first)"), this);
    m_reversedButton->setObjectName(QStringLiteral("reversedButton"));
    m_reversedButton->setToolTip(tr("Place the glyphs in the opposite order"));

    m_gridButton = new QCheckBox(tr("Grid"), this);
    m_gridButton->setObjectName(QStringLiteral("gridButton"));
    m_gridButton->setToolTip(tr("Place the glyphs in cells of one size instead of packing them tightly"));
    m_gridButtonAuto = new QCheckBox(tr("Automatic cell size"), this);
    m_gridButtonAuto->setObjectName(QStringLiteral("gridButtonAuto"));
    m_gridButtonAuto->setToolTip(tr("Make the cells as large as the largest glyph"));
    m_gridWidth = makeNumberField(this, QStringLiteral("gridWidth"), tr("Cell width in pixels"), 0, 4096);
    m_gridHeight = makeNumberField(this, QStringLiteral("gridHeight"), tr("Cell height in pixels"), 0, 4096);
    m_gridSizeText = makeCaption(this, QStringLiteral("gridSizeText"), tr("Cell:"));
    m_gridSizeText->setBuddy(m_gridWidth);
    m_gridTimesText = makeCaption(this, QStringLiteral("gridTimesText"), QStringLiteral("×"));

    m_refresh = new QPushButton(tr("Pack Again"), this);
    m_refresh->setObjectName(QStringLiteral("buttonRefresh"));
    m_refresh->setToolTip(tr("Pack every glyph again with these settings"));

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(8, 6, 8, 6);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(6);
    const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
    grid->addWidget(paddingText, 0, 0, right);
    grid->addWidget(m_paddingButton, 0, 1, Qt::AlignLeft);
    grid->addWidget(methodText, 1, 0, right);
    grid->addWidget(m_methodButton, 1, 1, Qt::AlignLeft);
    grid->addWidget(m_reversedButton, 2, 1);
    grid->addWidget(m_gridButton, 3, 1);
    grid->addWidget(m_gridButtonAuto, 4, 1);
    auto* cell = new QHBoxLayout;
    cell->setSpacing(4);
    cell->addWidget(m_gridWidth);
    cell->addWidget(m_gridTimesText);
    cell->addWidget(m_gridHeight);
    cell->addWidget(makeCaption(this, QStringLiteral("gridUnitText"), tr("px")));
    cell->addStretch(1);
    grid->addWidget(m_gridSizeText, 5, 0, right);
    grid->addLayout(cell, 5, 1);
    grid->addWidget(m_refresh, 6, 1, Qt::AlignLeft);
    grid->setColumnStretch(1, 1);

    connect(m_paddingButton, &QComboBox::activated, this, &PackingPanel::DoPacking);
    connect(m_methodButton, &QComboBox::activated, this, &PackingPanel::DoPacking);
    connect(m_reversedButton, &QCheckBox::clicked, this, &PackingPanel::DoPacking);
    connect(m_gridButton, &QCheckBox::clicked, this, &PackingPanel::gridChanged);
    connect(m_gridButtonAuto, &QCheckBox::clicked, this, &PackingPanel::gridAutoChanged);
    connect(m_gridWidth, &QLineEdit::textEdited, this, &PackingPanel::gridSizeChanged);
    connect(m_gridHeight, &QLineEdit::textEdited, this, &PackingPanel::gridSizeChanged);
    connect(m_refresh, &QPushButton::clicked, this, &PackingPanel::buttonRefresh);

    reloadFromSettings();
}

void PackingPanel::reloadFromSettings()
{
    selectOrInsertTag(m_paddingButton, m_state.paddingSize(), paddingTitle(m_state.paddingSize()));
    if (!selectTag(m_methodButton, m_state.paddingMethod()))
        selectTag(m_methodButton, 0); // any other code packs in glyph order too
    m_reversedButton->setChecked(m_state.packingReversed());
    m_gridButton->setChecked(m_state.grid());
    m_gridButtonAuto->setChecked(m_state.gridAuto());
    m_gridWidth->setText(QString::number(m_state.gridWidth()));
    m_gridHeight->setText(QString::number(m_state.gridHeight()));
    updateEnabling();
}

void PackingPanel::updateEnabling()
{
    const bool grid = m_gridButton->isChecked();
    m_gridButtonAuto->setEnabled(grid);
    setControlsEnabled({m_gridWidth, m_gridHeight, m_gridSizeText, m_gridTimesText},
                       grid && !m_gridButtonAuto->isChecked());
}

void PackingPanel::DoPacking()
{
    m_state.setPackingOptions(selectedTag(m_paddingButton), selectedTag(m_methodButton),
                              m_reversedButton->isChecked(), m_gridButton->isChecked());
}

void PackingPanel::buttonRefresh()
{
    DoPacking();
}

void PackingPanel::gridChanged()
{
    m_state.gridChanged(m_gridButton->isChecked());
    updateEnabling();
    DoPacking();
    emit previewNeedsUpdate();
}

void PackingPanel::gridAutoChanged()
{
    m_state.gridAutoChanged(m_gridButtonAuto->isChecked());
    updateEnabling();
    DoPacking();
}

void PackingPanel::gridSizeChanged()
{
    m_state.gridSizeChanged(intFieldValue(m_gridWidth->text()), intFieldValue(m_gridHeight->text()));
    emit previewNeedsUpdate();
}

} // namespace qm
