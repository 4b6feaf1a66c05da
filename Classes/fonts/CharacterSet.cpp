#include "Classes/fonts/CharacterSet.h"

#include "Classes/atlas/TextureView.h"
#include "Classes/model/sharedAppState.h"

namespace qm {

namespace {

/// Shared by every window on purpose: adding "the selected block" adds the block selected last
/// in any window.
CodeRange rememberedRange;

} // namespace

CodeRange CharacterSet::rememberedBlock()
{
    return rememberedRange;
}

void CharacterSet::rangeTableSelected(int row)
{
    const QList<UnicodeBlock>& blocks = UnicodeRanges::blocks();
    if (row < 0 || row >= blocks.size())
        return;
    rememberedRange = UnicodeRanges::parseRange(blocks[row].range);
    m_rangeTextField = UnicodeRanges::codesText(rememberedRange.start, rememberedRange.end);
}

void CharacterSet::rangepopadd()
{
    majrange(rememberedRange.start, rememberedRange.end);
}

void CharacterSet::majrange(quint32 start, quint32 end)
{
    m_rangestart = UnicodeRanges::hexFieldText(start);
    m_rangeend = UnicodeRanges::hexFieldText(end);
    charsetaddrange();
}

void CharacterSet::charsetaddrange()
{
    const quint32 start = UnicodeRanges::readHexField(m_rangestart);
    const quint32 end = UnicodeRanges::readHexField(m_rangeend);
    m_rangestart = UnicodeRanges::hexFieldText(start);
    m_rangeend = UnicodeRanges::hexFieldText(end);
    if (end >= start && end - start < UnicodeRanges::kRangeLimit)
        appendAndApply(start, end);
}

void CharacterSet::addCharSet(int tag)
{
    const CodeRange set = UnicodeRanges::quickSet(tag);
    appendAndApply(set.start, set.end);
}

void CharacterSet::appendAndApply(quint32 start, quint32 end)
{
    m_allLetters += UnicodeRanges::codesText(start, end);
    allLettersChanged();
}

void CharacterSet::allLettersChanged()
{
    if (!m_allLetters.contains(u' '))
        m_allLetters.prepend(u' ');
    // One rebuild for the whole text: the glyphs are added unrendered and unpacked, then
    // rendered and packed together. A caller that holds the block itself (opening a project)
    // renders and packs once it lifts it.
    const bool callerBlocks = m_state.blockredrawandpack();
    m_state.setBlockredrawandpack(true);
    m_state.setTextGlyph(m_allLetters);
    m_state.setBlockredrawandpack(callerBlocks);
    if (callerBlocks)
        return;
    m_view.redrawAllGlyphs();
    m_view.Packing(m_state.paddingSize(), m_state.paddingMethod(), m_state.packingReversed(), m_state.grid());
    m_view.updatePreview(m_state.previewTextString());
}

void CharacterSet::refreshDefaultLettersClicker()
{
    m_allLetters = QStringLiteral(" ");
    allLettersChanged();
}

void CharacterSet::selectLettersClicked(const QString& selectedText)
{
    m_view.selectLetters(selectedText);
}

} // namespace qm
