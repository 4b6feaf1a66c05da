#include "Classes/ui/WizardSheet.h"

#include "Classes/publish/BuildWizard.h"
#include "Classes/ui/PanelControls.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>

namespace qm {

namespace {
struct Preset
{
    int tag;
    const char* title;
};
// What each preset creates, so the choice needs no manual: target names and scales.
constexpr Preset kPresets[] = {
    {0, QT_TRANSLATE_NOOP("WizardSheet", "ipadhd, ipad, hd, sd (100, 50, 46.8, 23.4 %)")},
    {1, QT_TRANSLATE_NOOP("WizardSheet", "@4x, @2x, sd (100, 50, 25 %)")},
    {2, QT_TRANSLATE_NOOP("WizardSheet", "hd, sd (100, 50 %)")},
    {3, QT_TRANSLATE_NOOP("WizardSheet", "@2x, sd (100, 50 %)")},
    {4, QT_TRANSLATE_NOOP("WizardSheet", "Tablet and phone folders (100, 50, 50, 25 %)")},
    {5, QT_TRANSLATE_NOOP("WizardSheet", "Tablet and phone folders (100, 50, 100, 50 %)")},
    {6, QT_TRANSLATE_NOOP("WizardSheet", "@3x, @2x, sd (100, 66.7, 33.3 %)")},
    {7, QT_TRANSLATE_NOOP("WizardSheet", "@3x, @2x (100, 66.7 %)")},
};
} // namespace

WizardSheet::WizardSheet(BuildWizard& wizard, QWidget* parent) : QDialog(parent), m_wizard(wizard)
{
    setObjectName(QStringLiteral("wizardWindow"));
    setWindowTitle(tr("Publish Targets Wizard"));
    setWindowModality(Qt::WindowModal);

    auto* intro = new QLabel(tr("Replaces every publish target by a ready-made set of sizes. Each target "
                                "draws the glyphs again at its own scale."),
                             this);
    intro->setObjectName(QStringLiteral("wizIntro"));
    intro->setWordWrap(true);

    m_wizDirectory = new QLineEdit(this);
    m_wizDirectory->setObjectName(QStringLiteral("wizDirectory"));
    m_wizDirectory->setToolTip(tr("The directory every target writes into"));
    m_wizDirectory->setMinimumWidth(260);
    m_wizDirectoryButton = new QPushButton(tr("Set…"), this);
    m_wizDirectoryButton->setObjectName(QStringLiteral("wizDirectoryButton"));
    m_wizDirectoryButton->setToolTip(tr("Choose the directory"));
    auto* directoryCaption = makeCaption(this, QStringLiteral("wizDirectoryText"), tr("Directory:"));
    directoryCaption->setBuddy(m_wizDirectory);

    m_wizFontName = new QLineEdit(this);
    m_wizFontName->setObjectName(QStringLiteral("wizFontName"));
    m_wizFontName->setToolTip(tr("Base name of the texture and descriptor files"));
    auto* nameCaption = makeCaption(this, QStringLiteral("wizFontNameText"), tr("File name:"));
    nameCaption->setBuddy(m_wizFontName);

    m_wizOption = new QComboBox(this);
    m_wizOption->setObjectName(QStringLiteral("wizOption"));
    m_wizOption->setToolTip(tr("The targets to create: names and scales"));
    for (const Preset& preset : kPresets)
        addTaggedItem(m_wizOption, tr(preset.title), preset.tag);
    auto* presetCaption = makeCaption(this, QStringLiteral("wizOptionText"), tr("Targets:"));
    presetCaption->setBuddy(m_wizOption);

    m_wizFormat = new QComboBox(this);
    m_wizFormat->setObjectName(QStringLiteral("wizFormat"));
    m_wizFormat->setToolTip(tr("The descriptor format of every target"));
    for (int code : BuildWizard::wizFormatItems())
        addTaggedItem(m_wizFormat, descriptorFormatTitle(code), code);
    auto* formatCaption = makeCaption(this, QStringLiteral("wizFormatText"), tr("Format:"));
    formatCaption->setBuddy(m_wizFormat);

    m_build = new QPushButton(tr("Build"), this);
    m_build->setObjectName(QStringLiteral("wizBuild"));
    m_build->setToolTip(tr("Replace the publish targets by the chosen set"));
    m_build->setDefault(true);
    m_close = new QPushButton(tr("Close"), this);
    m_close->setObjectName(QStringLiteral("wizClose"));
    m_close->setToolTip(tr("Back to the publish targets without changing them"));

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(14, 12, 14, 12);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(8);
    const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
    grid->addWidget(intro, 0, 0, 1, 2);
    grid->addWidget(directoryCaption, 1, 0, right);
    auto* directory = new QHBoxLayout;
    directory->setSpacing(6);
    directory->addWidget(m_wizDirectory, 1);
    directory->addWidget(m_wizDirectoryButton);
    grid->addLayout(directory, 1, 1);
    grid->addWidget(nameCaption, 2, 0, right);
    grid->addWidget(m_wizFontName, 2, 1);
    grid->addWidget(presetCaption, 3, 0, right);
    grid->addWidget(m_wizOption, 3, 1);
    grid->addWidget(formatCaption, 4, 0, right);
    grid->addWidget(m_wizFormat, 4, 1, Qt::AlignLeft);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_close);
    buttons->addWidget(m_build);
    grid->setRowMinimumHeight(5, 4);
    grid->addLayout(buttons, 6, 0, 1, 2);
    grid->setColumnStretch(1, 1);

    connect(m_wizDirectory, &QLineEdit::textEdited, this,
            [this](const QString& text) { m_wizard.fields().wizDirectory = text; });
    connect(m_wizFontName, &QLineEdit::textEdited, this,
            [this](const QString& text) { m_wizard.fields().wizFontName = text; });
    connect(m_wizDirectoryButton, &QPushButton::clicked, this, &WizardSheet::wizDirectoryButton);
    connect(m_wizOption, &QComboBox::activated, this, &WizardSheet::wizOption);
    connect(m_wizFormat, &QComboBox::activated, this,
            [this] { m_wizard.fields().wizFormat = selectedTag(m_wizFormat); });
    connect(m_build, &QPushButton::clicked, this, &WizardSheet::wizBuild);
    connect(m_close, &QPushButton::clicked, this, &WizardSheet::wizClose);

    reloadFromSettings();
}

void WizardSheet::reloadFromSettings()
{
    const BuildWizard::Fields& f = m_wizard.fields();
    m_wizDirectory->setText(f.wizDirectory);
    m_wizFontName->setText(f.wizFontName);
    selectTag(m_wizOption, f.wizOption);
    showFormatItems();
}

void WizardSheet::showFormatItems()
{
    auto* list = qobject_cast<QListView*>(m_wizFormat->view());
    for (int i = 0; i < m_wizFormat->count(); ++i)
        if (list)
            list->setRowHidden(i, !m_wizard.wizFormatItemVisible(i));
    selectTag(m_wizFormat, m_wizard.fields().wizFormat);
}

void WizardSheet::openSheet()
{
    reloadFromSettings();
    open();
}

void WizardSheet::wizDirectoryButton()
{
    m_wizard.wizDirectoryButton();
    m_wizDirectory->setText(m_wizard.fields().wizDirectory);
}

void WizardSheet::wizOption()
{
    m_wizard.wizOption(selectedTag(m_wizOption));
    showFormatItems();
}

void WizardSheet::wizBuild()
{
    if (m_wizard.wizBuild())
        endSheet();
}

void WizardSheet::wizClose()
{
    m_wizard.wizClose();
    endSheet();
}

void WizardSheet::reject()
{
    // Escape and the window's close box go back to the publish sheet, as Close does.
    wizClose();
}

void WizardSheet::endSheet()
{
    QDialog::done(QDialog::Accepted);
    emit wizardClosed();
}

} // namespace qm
