#include "Classes/fonts/FontList.h"

#include "Classes/atlas/TextureView.h"
#include "Classes/fonts/FontTablesReader.h"
#include "Classes/fonts/GlyphSizeChange.h"
#include "Classes/model/Format.h"
#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"
#include "Platform/text/FontManager.h"

#include <QSet>

namespace qm {

FontList::FontList(sharedAppState& state, TextureView& view, TextureController& controller)
    : m_state(state), m_view(view), m_controller(controller)
{
}

FontList::~FontList()
{
    if (m_observerId)
        FontManager::removeFontsChangedObserver(m_observerId);
}

void FontList::setUp()
{
    m_systemFonts = FontManager::availableFontFamilies();
    if (!m_observerId)
        m_observerId = FontManager::addFontsChangedObserver([this] { fontsChanged(); });
    reloadFontTableView();
}

FontList* FontList::s_loadingList = nullptr;

bool FontList::familyHasKernings(const QString& family)
{
    auto cached = m_kerningCache.constFind(family);
    if (cached != m_kerningCache.constEnd())
        return *cached;
    const bool has = FontTablesReader(m_state).hasKernings(family);
    m_kerningCache.insert(family, has);
    return has;
}

void FontList::reloadFontTableView(bool applyFace)
{
    QSet<QString> listed;
    for (const FontRow& row : m_fontArray)
        listed.insert(row.familyName);
    const QString search = m_searchText.toLower();
    for (const QString& family : FontManager::availableFontFamilies()) {
        if (listed.contains(family))
            continue;
        if (!search.isEmpty() && !family.toLower().contains(search))
            continue;
        m_fontArray.append({family, familyHasKernings(family)});
        listed.insert(family);
    }
    notifyChanged();
    updateFamilyNames(applyFace);
}

void FontList::searchFieldChanged(const QString& text)
{
    m_searchText = text;
    m_fontArray.clear();
    m_selectedRow = -1;
    reloadFontTableView(false);
    // Keep the project's family highlighted when it is still listed; it is already applied,
    // so the row is selected without choosing it again.
    for (int row = 0; row < m_fontArray.size(); ++row)
        if (m_fontArray[row].familyName == m_state.fontName()) {
            m_selectedRow = row;
            break;
        }
    notifyChanged();
}

void FontList::selectRow(int row)
{
    if (row < 0 || row >= m_fontArray.size())
        row = -1;
    if (row == m_selectedRow)
        return;
    m_selectedRow = row;
    notifyChanged();
    fontTableSelectionChanged();
}

void FontList::fontTableSelectionChanged()
{
    if (m_selectedRow >= 0) {
        const QString family = m_fontArray[m_selectedRow].familyName;
        m_state.setFontName(family);
        m_state.setLoadedFontName(!m_systemFonts.contains(family));
        const bool hasKernings = familyHasKernings(family);
        m_state.setKerningTable({});
        m_state.setCmapTable({});
        // Without a format 0 kerning subtable both tables stay empty, the character map too.
        if (hasKernings)
            FontTablesReader(m_state).fillKerningTable(family);
        reallyChangeGlyphSize(m_state, m_view, m_state.glyphSize());
    }
    updateFamilyNames();
}

void FontList::updateFamilyNames(bool apply)
{
    m_glyphTraitItems.clear();
    QList<FontMember> members = FontManager::availableMembersOfFontFamily(m_state.fontName());
    if (members.isEmpty()) {
        warnFontNotFound();
        members = FontManager::availableMembersOfFontFamily(QStringLiteral("Arial"));
        m_state.setFontName(QStringLiteral("Arial"));
    }
    for (int i = 0; i < members.size(); ++i)
        m_glyphTraitItems.append({members[i].styleName, i});
    // A pop-up whose items were all replaced selects its first item unless told otherwise.
    int tag = 0;
    for (const FaceItem& item : m_glyphTraitItems)
        if (item.tag == m_state.trait())
            tag = item.tag;
    if (apply) {
        glyphTraitChanged(tag);
    } else {
        m_selectedTraitTag = tag;
        notifyChanged();
    }
}

void FontList::glyphTraitChanged(int tag)
{
    m_selectedTraitTag = tag;
    m_state.setGlyphTrait(tag);
    refreshPreview();
    notifyChanged();
}

void FontList::autoSelFont()
{
    for (int row = 0; row < m_fontArray.size(); ++row)
        if (m_fontArray[row].familyName == m_state.fontName()) {
            selectRow(row);
            break;
        }
    refreshPreview();
}

void FontList::autoSelLastFont()
{
    if (m_fontArray.isEmpty())
        return;
    m_state.setFontName(m_fontArray.last().familyName);
    autoSelFont();
}

void FontList::warnFontNotFound()
{
    m_controller.runAlert(
        QStringLiteral("Font"),
        format("The Font '%@' has not been found on your system, please install it and re-open your project",
               {m_state.fontName()}),
        {QStringLiteral("Ok")});
}

void FontList::loadFontClicked()
{
    const QString path =
        m_controller.chooseFileToOpen(QString(), {QStringLiteral("ttf"), QStringLiteral("otf")});
    if (path.isEmpty())
        return;
    // Observers hear of the new fonts during the registration: every window's list grows, and
    // this one (only) chooses its last row, before the flags below are set.
    s_loadingList = this;
    FontManager::registerFontsForFile(path);
    s_loadingList = nullptr;
    m_state.setLoadedFontName(true);
    m_state.setLoadedFontPath(path);
    m_state.setConfigchanged(true);
}

void FontList::fontsChanged()
{
    m_kerningCache.clear();
    reloadFontTableView();
    // A font loaded in one window becomes that window's font; the others only list it, so no
    // other project changes behind its user's back.
    if (s_loadingList == this)
        autoSelLastFont();
}

void FontList::refreshPreview()
{
    m_view.updatePreview(m_state.previewTextString());
}

void FontList::notifyChanged()
{
    if (m_changed)
        m_changed();
}

} // namespace qm
