#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;

namespace qm {

class ColorWell;
class ColorWellGroup;
class sharedAppState;

/// The texture settings of a document window: width and height pop-ups (tags are pixels),
/// automatic size, power-of-two sides, the checkerboard or a background colour behind the
/// texture, and anti-aliasing. Each control makes its settings call at once.
class TexturePanel : public QWidget
{
    Q_OBJECT
public:
    /// The background colour well joins `wells`, which keeps the colour dialog to one control.
    TexturePanel(sharedAppState& state, ColorWellGroup& wells, QWidget* parent = nullptr);

    /// Shows the settings again (after a project was opened into the window).
    void reloadFromSettings();
    /// Shows the texture size the project has now. Automatic sizing changes it on every packing
    /// run, so the window calls this when packing has reported (the can't-fit message).
    void showTextureSize();

    // Handlers, one per control.
    void sizeChanged();
    void checkPower2Changed();
    void checkAutoSizeChanged();
    void backgroundColorChanged();
    void checkerboardChanged();
    void antialiasChanged();

    QComboBox* widthButton() const { return m_widthButton; }
    QComboBox* heightButton() const { return m_heightButton; }
    QCheckBox* checkAutoSize() const { return m_checkAutoSize; }
    QCheckBox* checkPower2() const { return m_checkPower2; }
    QCheckBox* checkerboardButton() const { return m_checkerboardButton; }
    ColorWell* backgroundColor() const { return m_backgroundColor; }
    QLabel* bgColorText() const { return m_bgColorText; }
    QCheckBox* antialias() const { return m_antialias; }

signals:
    /// The text preview has to be laid out again.
    void previewNeedsUpdate();

private:
    /// The background well only while the checkerboard is off; the size pop-ups only while the
    /// size is chosen by hand.
    void updateEnabling();

    sharedAppState& m_state;
    QComboBox* m_widthButton;
    QComboBox* m_heightButton;
    QLabel* m_sizeText;
    QLabel* m_timesText;
    QLabel* m_sizeUnitText;
    QCheckBox* m_checkAutoSize;
    QCheckBox* m_checkPower2;
    QCheckBox* m_checkerboardButton;
    ColorWell* m_backgroundColor;
    QLabel* m_bgColorText;
    QCheckBox* m_antialias;
};

} // namespace qm
