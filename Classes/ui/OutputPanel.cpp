#include "Classes/ui/OutputPanel.h"

#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/ui/PanelControls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace qm {

OutputPanel::OutputPanel(sharedAppState& state, TextureController* controller, QWidget* parent)
    : QWidget(parent), m_state(state), m_controller(controller)
{
    setObjectName(QStringLiteral("outputPanel"));

    m_outputFormatFile = new QComboBox(this);
    m_outputFormatFile->setObjectName(QStringLiteral("outputFormatFile"));
    m_outputFormatFile->setToolTip(tr("The descriptor format of the project's output"));
    for (int code = 0; code <= 8; ++code)
        addTaggedItem(m_outputFormatFile, descriptorFormatTitle(code), code);
    auto* formatCaption = makeCaption(this, QStringLiteral("outputFormatText"), tr("Format:"));
    formatCaption->setBuddy(m_outputFormatFile);

    m_textureName = new QLineEdit(this);
    m_textureName->setObjectName(QStringLiteral("textureName"));
    m_textureName->setToolTip(tr("Base name of the texture and descriptor files"));
    m_textureName->setPlaceholderText(tr("file name"));
    auto* nameCaption = makeCaption(this, QStringLiteral("textureNameText"), tr("Name:"));
    nameCaption->setBuddy(m_textureName);

    m_textureFileText = new QLineEdit(this);
    m_textureFileText->setObjectName(QStringLiteral("textureFileText"));
    m_textureFileText->setToolTip(tr("The directory the files are written to"));
    m_textureFileText->setPlaceholderText(tr("directory"));
    auto* directoryCaption = makeCaption(this, QStringLiteral("textureFileTextText"), tr("Directory:"));
    directoryCaption->setBuddy(m_textureFileText);
    m_chooseDirectory = new QPushButton(tr("Choose…"), this);
    m_chooseDirectory->setObjectName(QStringLiteral("chooseDirectory"));
    m_chooseDirectory->setToolTip(tr("Choose the output directory"));

    m_autoSDButton = new QComboBox(this);
    m_autoSDButton->setObjectName(QStringLiteral("autoSDButton"));
    m_autoSDButton->setToolTip(tr("Which reduced-size copies a project without publish targets starts with"));
    addTaggedItem(m_autoSDButton, tr("Full size only"), 0);
    addTaggedItem(m_autoSDButton, tr("Full and half size"), 1);
    addTaggedItem(m_autoSDButton, tr("Full, half and quarter size"), 2);
    auto* levelCaption = makeCaption(this, QStringLiteral("autoSDText"), tr("Reduced sizes:"));
    levelCaption->setBuddy(m_autoSDButton);

    m_popSDQuality = new QComboBox(this);
    m_popSDQuality->setObjectName(QStringLiteral("popSDQuality"));
    m_popSDQuality->setToolTip(tr("How the texture is resampled for the reduced sizes"));
    for (int code = 0; code <= 4; ++code)
        addTaggedItem(m_popSDQuality, scaleQualityTitle(code), code);
    m_sdQualityText = makeCaption(this, QStringLiteral("sdQualityText"), tr("Quality:"));
    m_sdQualityText->setBuddy(m_popSDQuality);

    m_checkredrawwhendownscaling = new QCheckBox(tr("Redraw glyphs for reduced sizes"), this);
    m_checkredrawwhendownscaling->setObjectName(QStringLiteral("checkredrawwhendownscaling"));
    m_checkredrawwhendownscaling->setToolTip(
        tr("Draw the glyphs again at the reduced size instead of scaling the finished texture down"));

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(8, 6, 8, 6);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(6);
    const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
    grid->addWidget(formatCaption, 0, 0, right);
    grid->addWidget(m_outputFormatFile, 0, 1);
    grid->addWidget(nameCaption, 1, 0, right);
    grid->addWidget(m_textureName, 1, 1);
    grid->addWidget(directoryCaption, 2, 0, right);
    auto* directory = new QHBoxLayout;
    directory->setSpacing(4);
    directory->addWidget(m_textureFileText, 1);
    directory->addWidget(m_chooseDirectory);
    grid->addLayout(directory, 2, 1);
    grid->addWidget(levelCaption, 3, 0, right);
    grid->addWidget(m_autoSDButton, 3, 1);
    grid->addWidget(m_sdQualityText, 4, 0, right);
    grid->addWidget(m_popSDQuality, 4, 1, Qt::AlignLeft);
    grid->addWidget(m_checkredrawwhendownscaling, 5, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    // The pop-ups take the column's width instead of their longest title's.
    for (QComboBox* popup : {m_outputFormatFile, m_autoSDButton}) {
        popup->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        popup->setMinimumContentsLength(12);
        popup->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }

    connect(m_outputFormatFile, &QComboBox::activated, this, &OutputPanel::outputFormatChanged);
    connect(m_textureName, &QLineEdit::textEdited, this, &OutputPanel::publishSettingsChanged);
    connect(m_textureFileText, &QLineEdit::textEdited, this, &OutputPanel::publishSettingsChanged);
    connect(m_chooseDirectory, &QPushButton::clicked, this, &OutputPanel::chooseDirectory);
    connect(m_autoSDButton, &QComboBox::activated, this, &OutputPanel::autoSDClicked);
    connect(m_popSDQuality, &QComboBox::activated, this, &OutputPanel::SDQualityChanged);
    connect(m_checkredrawwhendownscaling, &QCheckBox::clicked, this, &OutputPanel::checkRedrawwhendown);

    reloadFromSettings();
}

void OutputPanel::reloadFromSettings()
{
    selectOrInsertTag(m_outputFormatFile, m_state.fontFormat(), descriptorFormatTitle(m_state.fontFormat()));
    m_textureName->setText(m_state.publishName());
    m_textureFileText->setText(m_state.publishDirectory());
    selectOrInsertTag(m_autoSDButton, m_state.autoSDLevel(), tr("Level %1").arg(m_state.autoSDLevel()));
    selectOrInsertTag(m_popSDQuality, m_state.SDQuality(), scaleQualityTitle(m_state.SDQuality()));
    m_checkredrawwhendownscaling->setChecked(m_state.downscalerecalc());
    updateEnabling();
}

void OutputPanel::updateEnabling()
{
    setControlsEnabled({m_popSDQuality, m_sdQualityText}, selectedTag(m_autoSDButton) >= 1);
}

void OutputPanel::outputFormatChanged()
{
    m_state.setFontFormat(selectedTag(m_outputFormatFile));
}

void OutputPanel::publishSettingsChanged()
{
    m_state.setPublishName(m_textureName->text());
    m_state.setPublishDirectory(m_textureFileText->text());
    m_state.setConfigchanged(true);
}

void OutputPanel::chooseDirectory()
{
    if (!m_controller)
        return;
    const QString directory = m_controller->chooseDirectory(tr("Output directory"));
    if (directory.isEmpty())
        return;
    m_textureFileText->setText(directory);
    publishSettingsChanged();
}

void OutputPanel::autoSDClicked()
{
    m_state.setAutoSDLevel(selectedTag(m_autoSDButton));
    updateEnabling();
}

void OutputPanel::SDQualityChanged()
{
    m_state.setSDQuality(selectedTag(m_popSDQuality));
}

void OutputPanel::checkRedrawwhendown()
{
    m_state.setDownscalerecalc(m_checkredrawwhendownscaling->isChecked());
}

} // namespace qm
