#pragma once

#include <QWidget>

class QComboBox;
class QLineEdit;
class QListView;
class QPushButton;

namespace qm {

class FontList;
class FontListModel;
class sharedAppState;

/// The font chooser of a document window: a search field, the list of families (each drawn in
/// its own typeface, in green when it carries usable kerning), the face pop-up and a button
/// that loads a TrueType or OpenType file. Everything it shows and does is the font list's
/// (FontList); the panel reports clicks to it and follows its changes, also those that start
/// elsewhere (a font file registered by another window). The missing-font alert comes from the
/// font list, through the window's controller.
///
/// The panel installs the font list's change callback; nobody else may set it.
class FontPanel : public QWidget
{
    Q_OBJECT
public:
    /// Sets the list up when nobody has yet (FontList::setUp).
    FontPanel(FontList& fonts, sharedAppState& state, QWidget* parent = nullptr);
    ~FontPanel() override;

    /// After a project was opened into the window: clears the search, which lists every family
    /// again, highlights the project's family and shows its faces with the project's face.
    void reloadFromSettings();

    QLineEdit* searchField() const { return m_searchField; }
    QListView* fontTableView() const { return m_fontTableView; }
    QComboBox* glyphTrait() const { return m_glyphTrait; }
    QPushButton* loadFontButton() const { return m_loadFont; }

signals:
    /// A family or a face was applied to the project: the glyphs, the line height and the space
    /// width changed.
    void fontChanged();

private:
    /// Shows the font list's rows, selection and faces.
    void followFontList();
    void rowClicked();
    void faceChosen(int index);
    void loadFontClicked();

    FontList& m_fonts;
    sharedAppState& m_state;
    FontListModel* m_model;
    QLineEdit* m_searchField;
    QListView* m_fontTableView;
    QComboBox* m_glyphTrait;
    QPushButton* m_loadFont;
    bool m_following = false;
};

} // namespace qm
