#pragma once

#include <QWidget>

class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTableWidget;

namespace qm {

class CharacterSet;
class sharedAppState;

/// The character-set chooser of a document window: the character-set field, applied as it is
/// typed; the table of Unicode blocks (name and range) whose selected row shows its characters
/// in a preview field; "Add Block"; start and end fields of a typed hexadecimal range with their
/// add button; the quick-set menu; "Reset to Space" and "Select These Letters". The character
/// set itself (CharacterSet) applies every change to the project at once.
///
/// The field's text is kept exactly as the character set holds it: an edit is applied as a
/// change of that text, so characters that a text view would alter (a no-break space, a lone
/// surrogate, U+0000) stay as they are.
class CharacterPanel : public QWidget
{
    Q_OBJECT
public:
    CharacterPanel(CharacterSet& charset, sharedAppState& state, QWidget* parent = nullptr);

    /// After a project was opened into the window: the field shows the project's characters.
    void reloadFromSettings();

    /// Appends the quick set of a menu tag (1..7; any other tag appends U+0000) and applies it.
    void addCharSet(int tag);
    /// Adds the range typed in the start and end fields.
    void charsetaddrange();
    /// Adds the block selected last in any block table.
    void rangepopadd();
    void refreshDefaultLettersClicker();
    /// Selects on the canvas the glyphs of the characters selected in the field.
    void selectLettersClicked();

    QPlainTextEdit* allLetters() const { return m_allLetters; }
    QTableWidget* rangeTableView() const { return m_rangeTableView; }
    QPlainTextEdit* rangeTextField() const { return m_rangeTextField; }
    QLineEdit* rangestart() const { return m_rangestart; }
    QLineEdit* rangeend() const { return m_rangeend; }
    QPushButton* addRangeButton() const { return m_addRange; }
    QPushButton* addBlockButton() const { return m_addBlock; }
    QPushButton* quickSetButton() const { return m_quickSets; }
    QPushButton* resetButton() const { return m_reset; }
    QPushButton* selectLettersButton() const { return m_selectLetters; }

signals:
    /// The character set was applied to the project.
    void charactersChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildRangeTable();
    void rangeTableSelected();
    /// An edit of the field: positions in the field's text are positions in the set's text.
    void lettersEdited(int position, int removed, int added);
    /// Shows the set's text in the field, the cursor at `cursor` (-1: the end).
    void showLetters(int cursor = -1);
    void showRangeFields();

    CharacterSet& m_charset;
    sharedAppState& m_state;
    QPlainTextEdit* m_allLetters;
    QTableWidget* m_rangeTableView;
    QPlainTextEdit* m_rangeTextField;
    QLineEdit* m_rangestart;
    QLineEdit* m_rangeend;
    QPushButton* m_addRange;
    QPushButton* m_addBlock;
    QPushButton* m_quickSets;
    QPushButton* m_reset;
    QPushButton* m_selectLetters;
    bool m_showing = false;
};

} // namespace qm
