#include "Classes/ui/TexturePanel.h"

#include "Classes/model/sharedAppState.h"
#include "Classes/ui/ColorWell.h"
#include "Classes/ui/ColorWellGroup.h"
#include "Classes/ui/PanelControls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>

namespace qm {

namespace {
/// The sides offered; automatic sizing may choose others (multiples of 64), which the pop-ups
/// then list too.
constexpr int kSides[] = {32, 64, 128, 256, 512, 1024, 2048, 4096};

QString sideTitle(int pixels)
{
    return QString::number(pixels);
}
} // namespace

TexturePanel::TexturePanel(sharedAppState& state, ColorWellGroup& wells, QWidget* parent)
    : QWidget(parent), m_state(state)
{
    setObjectName(QStringLiteral("texturePanel"));

    const auto sizePopup = [this](const QString& name, const QString& toolTip) {
        auto* popup = new QComboBox(this);
        popup->setObjectName(name);
        popup->setToolTip(toolTip);
        for (int side : kSides)
            addTaggedItem(popup, sideTitle(side), side);
        connect(popup, &QComboBox::activated, this, &TexturePanel::sizeChanged);
        return popup;
    };
    m_widthButton = sizePopup(QStringLiteral("widthButton"), tr("Texture width in pixels"));
    m_heightButton = sizePopup(QStringLiteral("heightButton"), tr("Texture height in pixels"));
    m_sizeText = makeCaption(this, QStringLiteral("sizeText"), tr("Size:"));
    m_sizeText->setBuddy(m_widthButton);
    m_timesText = makeCaption(this, QStringLiteral("timesText"), QStringLiteral("×"));
    m_sizeUnitText = makeCaption(this, QStringLiteral("sizeUnitText"), tr("px"));

    m_checkAutoSize = new QCheckBox(tr("Automatic size"), this);
    m_checkAutoSize->setObjectName(QStringLiteral("checkAutoSize"));
    m_checkAutoSize->setToolTip(tr("Choose the smallest texture that holds every glyph"));
    m_checkPower2 = new QCheckBox(tr("Power of two"), this);
    m_checkPower2->setObjectName(QStringLiteral("checkPower2"));
    m_checkPower2->setToolTip(tr("Keep the automatic texture sides at powers of two"));

    m_checkerboardButton = new QCheckBox(tr("Checkerboard"), this);
    m_checkerboardButton->setObjectName(QStringLiteral("checkerboardButton"));
    m_checkerboardButton->setToolTip(tr("Show a checkerboard behind the texture instead of a colour"));
    m_backgroundColor = new ColorWell(this);
    m_backgroundColor->setObjectName(QStringLiteral("backgroundColor"));
    m_backgroundColor->setToolTip(tr("The colour behind the texture while the checkerboard is off"));
    m_bgColorText = makeCaption(this, QStringLiteral("bgColorText"), tr("Background:"));
    m_bgColorText->setBuddy(m_backgroundColor);
    wells.addWell(m_backgroundColor);

    m_antialias = new QCheckBox(tr("Antialiasing"), this);
    m_antialias->setObjectName(QStringLiteral("antialias"));
    m_antialias->setToolTip(tr("Smooth the glyph edges; off gives hard pixel edges"));

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(8, 6, 8, 6);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(6);
    auto* size = new QHBoxLayout;
    size->setSpacing(4);
    size->addWidget(m_widthButton);
    size->addWidget(m_timesText);
    size->addWidget(m_heightButton);
    size->addWidget(m_sizeUnitText);
    size->addStretch(1);
    grid->addWidget(m_sizeText, 0, 0, Qt::AlignRight | Qt::AlignVCenter);
    grid->addLayout(size, 0, 1, 1, 2);
    grid->addWidget(m_checkAutoSize, 1, 1);
    grid->addWidget(m_checkPower2, 1, 2);
    grid->addWidget(m_checkerboardButton, 2, 1);
    auto* background = new QHBoxLayout;
    background->setSpacing(6);
    background->addWidget(m_bgColorText);
    background->addWidget(m_backgroundColor);
    background->addStretch(1);
    grid->addLayout(background, 2, 2);
    grid->addWidget(m_antialias, 3, 1, 1, 2);
    grid->setColumnStretch(2, 1);

    connect(m_checkAutoSize, &QCheckBox::clicked, this, &TexturePanel::checkAutoSizeChanged);
    connect(m_checkPower2, &QCheckBox::clicked, this, &TexturePanel::checkPower2Changed);
    connect(m_checkerboardButton, &QCheckBox::clicked, this, &TexturePanel::checkerboardChanged);
    connect(m_backgroundColor, &ColorWell::colorChanged, this, &TexturePanel::backgroundColorChanged);
    connect(m_antialias, &QCheckBox::clicked, this, &TexturePanel::antialiasChanged);

    reloadFromSettings();
}

void TexturePanel::reloadFromSettings()
{
    showTextureSize();
    m_checkAutoSize->setChecked(m_state.autoSize());
    m_checkPower2->setChecked(m_state.power2());
    m_checkerboardButton->setChecked(m_state.checkerBoard());
    m_backgroundColor->setColor(m_state.bgColor());
    m_antialias->setChecked(m_state.antialias());
    updateEnabling();
}

void TexturePanel::showTextureSize()
{
    selectOrInsertTag(m_widthButton, m_state.width(), sideTitle(m_state.width()));
    selectOrInsertTag(m_heightButton, m_state.height(), sideTitle(m_state.height()));
}

void TexturePanel::updateEnabling()
{
    const bool checker = m_checkerboardButton->isChecked();
    setControlsEnabled({m_backgroundColor, m_bgColorText}, !checker);
    const bool byHand = !m_checkAutoSize->isChecked();
    setControlsEnabled({m_widthButton, m_heightButton, m_sizeText, m_timesText, m_sizeUnitText}, byHand);
}

void TexturePanel::sizeChanged()
{
    m_state.setTextureSize(selectedTag(m_widthButton), selectedTag(m_heightButton));
    showTextureSize();
    emit previewNeedsUpdate();
}

void TexturePanel::checkPower2Changed()
{
    m_state.setPower2(m_checkPower2->isChecked());
    sizeChanged();
}

void TexturePanel::checkAutoSizeChanged()
{
    m_state.setAutoSize(m_checkAutoSize->isChecked());
    m_state.setWidth(selectedTag(m_widthButton));
    m_state.setHeight(selectedTag(m_heightButton));
    updateEnabling();
    sizeChanged();
    checkPower2Changed();
}

void TexturePanel::backgroundColorChanged()
{
    m_state.setBackgroundColor(m_backgroundColor->color());
}

void TexturePanel::checkerboardChanged()
{
    m_state.setCheckerBoard(m_checkerboardButton->isChecked());
    updateEnabling();
}

void TexturePanel::antialiasChanged()
{
    m_state.setAntiAlias(m_antialias->isChecked());
    emit previewNeedsUpdate();
}

} // namespace qm
