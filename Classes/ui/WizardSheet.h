#pragma once

#include <QDialog>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace qm {

class BuildWizard;

/// The build-settings wizard as a window-modal sheet: output directory with a "Set" chooser,
/// font (file) name, preset and descriptor format pop-ups (presets 4 and 5 allow only format 1),
/// Build and Close. Building replaces every publish target; its alerts come from the wizard
/// through the window's controller. The sheet closes after a build or on Close and reports it,
/// so that the publish sheet can come back.
class WizardSheet : public QDialog
{
    Q_OBJECT
public:
    explicit WizardSheet(BuildWizard& wizard, QWidget* parent = nullptr);

    /// Shows the wizard's fields and begins the sheet on its window.
    void openSheet();
    /// Shows the wizard's fields again.
    void reloadFromSettings();

    void wizDirectoryButton();
    void wizOption();
    /// Builds; the sheet ends when the targets were replaced.
    void wizBuild();
    void wizClose();

    QLineEdit* wizDirectory() const { return m_wizDirectory; }
    QPushButton* wizDirectoryChooser() const { return m_wizDirectoryButton; }
    QLineEdit* wizFontName() const { return m_wizFontName; }
    QComboBox* wizOptionPopup() const { return m_wizOption; }
    QComboBox* wizFormat() const { return m_wizFormat; }
    QPushButton* buildButton() const { return m_build; }
    QPushButton* closeButton() const { return m_close; }

signals:
    /// The sheet ended (after a build or on Close); the publish sheet begins again.
    void wizardClosed();

protected:
    void reject() override;

private:
    /// The format items the preset allows, and the wizard's format selected.
    void showFormatItems();
    void endSheet();

    BuildWizard& m_wizard;
    QLineEdit* m_wizDirectory;
    QPushButton* m_wizDirectoryButton;
    QLineEdit* m_wizFontName;
    QComboBox* m_wizOption;
    QComboBox* m_wizFormat;
    QPushButton* m_build;
    QPushButton* m_close;
};

} // namespace qm
