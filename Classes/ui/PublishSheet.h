#pragma once

#include <QDialog>
#include <QPointer>

class QAbstractButton;
class QCheckBox;
class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QTableWidget;

namespace qm {

class BuildWizard;
class PublishPanel;
class PublishRun;
class TextureController;
class WizardSheet;
class sharedAppState;

/// The publish sheet of a document window (window-modal): the table of publish targets with
/// editable names, the selected target's settings, buttons that add, remove and duplicate
/// targets or add scaled copies, the wizard, the publish log, a progress bar, auto-close and
/// Publish. The targets and their operations are the publish panel's (PublishPanel); the run
/// is PublishRun's. The wizard button ends this sheet and begins the wizard sheet, which
/// begins this one again when it closes.
///
/// The run's log lines and the panel's messages reach the controller, not the sheet: the
/// window forwards TextureController::appendPublishLog to appendPublishLog().
class PublishSheet : public QDialog
{
    Q_OBJECT
public:
    /// `controller` answers the directory chooser; it may be null. The wizard sheet is made
    /// with the same parent as this one.
    PublishSheet(PublishPanel& panel, BuildWizard& wizard, PublishRun& run, sharedAppState& state,
                 TextureController* controller, QWidget* parent = nullptr);
    ~PublishSheet() override;

    /// After a project was opened into the window: the targets are read again (deriving them
    /// for projects that have none) and the auto-close box shows the project's choice.
    void reloadFromSettings();
    /// Shows the targets and begins the sheet on its window.
    void openSheet();

public slots:
    /// Appends text to the log and scrolls to its end.
    void appendPublishLog(const QString& text);

public:
    // Actions of the sheet's buttons.
    void targetPlus();
    void targetMinus();
    void targetDuplicate();
    void target50();
    void target25();
    void target46();
    void target23();
    /// Ends this sheet and begins the wizard sheet.
    void targetWizard();
    void chooseTargetDirectory();
    void publishAutoClose();
    /// Runs the publish run; the sheet closes afterwards when the project asks for it.
    void buttonPublish();

    WizardSheet* wizardSheet() const { return m_wizardSheet; }
    QTableWidget* targetTable() const { return m_targetTable; }
    QLineEdit* targetPath() const { return m_targetPath; }
    QLineEdit* targetFile() const { return m_targetFile; }
    QLineEdit* targetExtension() const { return m_targetExtension; }
    QLineEdit* targetFontFace() const { return m_targetFontFace; }
    QLineEdit* targetScale() const { return m_targetScale; }
    QComboBox* targetScaleQuality() const { return m_targetScaleQuality; }
    QComboBox* targetFormat() const { return m_targetFormat; }
    QCheckBox* targetCheckTexture() const { return m_targetCheckTexture; }
    QCheckBox* targetCheckCoords() const { return m_targetCheckCoords; }
    QCheckBox* targetRedraw() const { return m_targetRedraw; }
    QPlainTextEdit* targetLog() const { return m_targetLog; }
    QCheckBox* targetAutoClose() const { return m_targetAutoClose; }
    QProgressBar* progress() const { return m_progress; }
    /// A button of the sheet by its objectName ("targetPlus", "buttonPublish", ...).
    QAbstractButton* button(const QString& objectName) const;

signals:
    /// A publish run is about to start (the window may change the canvas zoom for it).
    void publishStarted();
    /// A publish run ended; `succeeded` when the targets passed the check and no file failed.
    void publishFinished(bool succeeded);

private:
    /// The table shows the panel's names; the panel's selected row stays selected.
    void reloadTable();
    /// The fields show the panel's fields.
    void displayFields();
    /// The fields go to the panel, which stores them as the selected target.
    void updateTargetVisibleDetails();
    void tableSelectionChanged();
    void nameEdited(int row, int column);
    void showProgress(int done, int total);

    PublishPanel& m_panel;
    PublishRun& m_run;
    sharedAppState& m_state;
    TextureController* m_controller;
    QPointer<WizardSheet> m_wizardSheet;
    QTableWidget* m_targetTable;
    QLineEdit* m_targetPath;
    QPushButton* m_chooseTargetPath;
    QLineEdit* m_targetFile;
    QLineEdit* m_targetExtension;
    QLineEdit* m_targetFontFace;
    QLineEdit* m_targetScale;
    QComboBox* m_targetScaleQuality;
    QComboBox* m_targetFormat;
    QCheckBox* m_targetCheckTexture;
    QCheckBox* m_targetCheckCoords;
    QCheckBox* m_targetRedraw;
    QPlainTextEdit* m_targetLog;
    QProgressBar* m_progress;
    QCheckBox* m_targetAutoClose;
    QPushButton* m_publish;
    bool m_showing = false;
};

} // namespace qm
