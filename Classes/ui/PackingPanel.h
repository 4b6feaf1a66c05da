#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace qm {

class sharedAppState;

/// The packing settings of a document window: padding, sort order (the method codes 0..5),
/// reversed order, the grid with automatic or typed cell size, and a button that packs again.
class PackingPanel : public QWidget
{
    Q_OBJECT
public:
    explicit PackingPanel(sharedAppState& state, QWidget* parent = nullptr);

    /// Shows the settings again (after a project was opened into the window).
    void reloadFromSettings();

    // Handlers, one per control.
    /// Padding, method, reversed and grid go to the settings, which pack again.
    void DoPacking();
    void buttonRefresh();
    void gridChanged();
    void gridAutoChanged();
    /// The cell fields, as they are typed.
    void gridSizeChanged();

    QComboBox* paddingButton() const { return m_paddingButton; }
    QComboBox* methodButton() const { return m_methodButton; }
    QCheckBox* reversedButton() const { return m_reversedButton; }
    QCheckBox* gridButton() const { return m_gridButton; }
    QCheckBox* gridButtonAuto() const { return m_gridButtonAuto; }
    QLineEdit* gridWidth() const { return m_gridWidth; }
    QLineEdit* gridHeight() const { return m_gridHeight; }
    QPushButton* refreshButton() const { return m_refresh; }

signals:
    /// The text preview has to be laid out again.
    void previewNeedsUpdate();

private:
    /// The cell controls only on the grid; the typed size only without the automatic one.
    void updateEnabling();

    sharedAppState& m_state;
    QComboBox* m_paddingButton;
    QComboBox* m_methodButton;
    QCheckBox* m_reversedButton;
    QCheckBox* m_gridButton;
    QCheckBox* m_gridButtonAuto;
    QLineEdit* m_gridWidth;
    QLineEdit* m_gridHeight;
    QLabel* m_gridSizeText;
    QLabel* m_gridTimesText;
    QPushButton* m_refresh;
};

} // namespace qm
