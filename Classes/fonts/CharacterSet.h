#pragma once

#include "Classes/fonts/UnicodeRanges.h"

#include <QString>

namespace qm {

class sharedAppState;
class TextureView;

/// The character-set side of the document window: the character-set field, the range fields,
/// the block preview field and the block table's selection, as plain data, and the operations
/// behind them. Every change of the character set is applied at once: the project's `textGlyph`
/// is replaced, the glyph set is rebuilt, redrawn and packed once, and the preview is refreshed.
///
/// A desktop panel copies its controls into the fields, calls the operation, then shows the
/// fields again. Characters are UTF-16 code units throughout.
class CharacterSet
{
public:
    CharacterSet(sharedAppState& state, TextureView& view) : m_state(state), m_view(view) {}

    // The controls' contents.
    /// The character-set field.
    const QString& allLetters() const { return m_allLetters; }
    void setAllLetters(const QString& text) { m_allLetters = text; }
    /// The start and end fields of a typed range (hexadecimal without prefix).
    const QString& rangestart() const { return m_rangestart; }
    void setRangestart(const QString& text) { m_rangestart = text; }
    const QString& rangeend() const { return m_rangeend; }
    void setRangeend(const QString& text) { m_rangeend = text; }
    /// The field that shows the characters of the block selected in the range table.
    const QString& rangeTextField() const { return m_rangeTextField; }

    /// The block last selected in any range table of the application: one pair for all
    /// windows, so the last selection anywhere wins.
    static CodeRange rememberedBlock();

    /// The range table's selection changed to `row` (-1: none): shows the block's characters in
    /// the preview field, however many, and remembers its start and end. A row outside the
    /// table changes nothing.
    void rangeTableSelected(int row);
    /// Adds the remembered block through majrange().
    void rangepopadd();
    /// Writes both codes into the range fields ("%lX") and adds the range (charsetaddrange()).
    void majrange(quint32 start, quint32 end);
    /// Reads the range fields ("0x%@"), rewrites them normalised ("%lX"), and appends every code
    /// from start to end to the character set when end >= start and the range spans fewer than
    /// UnicodeRanges::kRangeLimit codes; otherwise appends nothing, silently.
    void charsetaddrange();
    /// Appends the quick set of a menu tag (UnicodeRanges::quickSet()) and applies it.
    void addCharSet(int tag);
    /// Applies the character-set field to the project: a space is put in front when the text has
    /// none (the space glyph is always part of the set); `textGlyph` is replaced with redraws
    /// and packing suspended; then the set is redrawn and packed once and the preview refreshed
    /// with the project's preview text. While the caller holds `blockredrawandpack`, only
    /// `textGlyph` and the glyph set change; the caller redraws and packs.
    void allLettersChanged();
    /// Resets the character set to a single space and applies it.
    void refreshDefaultLettersClicker();
    /// Selects on the canvas the glyphs of the characters selected in the character-set field.
    void selectLettersClicked(const QString& selectedText);

private:
    /// Appends codes to the field and applies the result.
    void appendAndApply(quint32 start, quint32 end);

    sharedAppState& m_state;
    TextureView& m_view;
    QString m_allLetters;
    QString m_rangestart;
    QString m_rangeend;
    QString m_rangeTextField;
};

} // namespace qm
