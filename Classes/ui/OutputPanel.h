#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace qm {

class TextureController;
class sharedAppState;

/// The project's single-output settings: descriptor format (codes 0..8), publish name and
/// directory, the reduced-size level with its scaling quality, and whether reduced sizes are
/// redrawn. Projects without publish targets derive their first targets from these.
class OutputPanel : public QWidget
{
    Q_OBJECT
public:
    /// `controller` answers the directory chooser; without one the button does nothing.
    OutputPanel(sharedAppState& state, TextureController* controller, QWidget* parent = nullptr);

    /// Shows the settings again (after a project was opened into the window).
    void reloadFromSettings();

    // Handlers, one per control.
    void outputFormatChanged();
    /// The name and directory fields, as they are typed.
    void publishSettingsChanged();
    void chooseDirectory();
    void autoSDClicked();
    void SDQualityChanged();
    void checkRedrawwhendown();

    QComboBox* outputFormatFile() const { return m_outputFormatFile; }
    QLineEdit* textureName() const { return m_textureName; }
    QLineEdit* textureFileText() const { return m_textureFileText; }
    QPushButton* chooseDirectoryButton() const { return m_chooseDirectory; }
    QComboBox* autoSDButton() const { return m_autoSDButton; }
    QComboBox* popSDQuality() const { return m_popSDQuality; }
    QLabel* sdQualityText() const { return m_sdQualityText; }
    QCheckBox* checkredrawwhendownscaling() const { return m_checkredrawwhendownscaling; }

private:
    /// The quality pop-up only for a reduced-size level of 1 or more.
    void updateEnabling();

    sharedAppState& m_state;
    TextureController* m_controller;
    QComboBox* m_outputFormatFile;
    QLineEdit* m_textureName;
    QLineEdit* m_textureFileText;
    QPushButton* m_chooseDirectory;
    QComboBox* m_autoSDButton;
    QComboBox* m_popSDQuality;
    QLabel* m_sdQualityText;
    QCheckBox* m_checkredrawwhendownscaling;
};

} // namespace qm
