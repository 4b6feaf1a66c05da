#include "Classes/publish/ProjectSession.h"

#include "Classes/fonts/CharacterSet.h"
#include "Classes/fonts/FontTablesReader.h"
#include "Classes/fonts/GlyphSizeChange.h"
#include "Classes/model/TextureController.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Platform/text/FontManager.h"

#include <tuple>

namespace qm {

ProjectSession::ProjectSession(TextureController* controller) : m_controller(controller)
{
    m_state.setTxtView(&m_view);
    m_state.setTxtCont(controller);
    m_view.setSharedState(&m_state);
}

void ProjectSession::chooseFamily(const QString& family, bool loadedFromFile)
{
    if (loadedFromFile)
        m_state.LoadFontName(family);
    else
        m_state.setFontName(family);
    m_state.setLoadedFontName(loadedFromFile);
    loadFontTables();
}

void ProjectSession::loadFontTables()
{
    FontTablesReader reader(m_state);
    const bool hasKernings = reader.hasKernings(m_state.fontName());
    m_state.setKerningTable({});
    m_state.setCmapTable({});
    // Without a format 0 kerning subtable both tables stay empty, the character map too.
    if (hasKernings)
        reader.fillKerningTable(m_state.fontName());
}

void ProjectSession::reallyChangeGlyphSize(int size)
{
    qm::reallyChangeGlyphSize(m_state, m_view, size);
}

void ProjectSession::applyCharacters(const QString& text)
{
    CharacterSet characters(m_state, m_view);
    characters.setAllLetters(text);
    characters.allLettersChanged();
}

int ProjectSession::regularMember(const QList<FontMember>& members)
{
    // Upright first, then normal width, then the weight nearest to regular (5).
    const auto key = [](const FontMember& m) {
        const int widthTraits = NarrowTrait | ExpandedTrait | CondensedTrait;
        return std::make_tuple((m.traits & ItalicTrait) != 0, (m.traits & widthTraits) != 0,
                               std::abs(m.weight - 5));
    };
    int best = 0;
    for (int i = 1; i < members.size(); ++i)
        if (key(members.at(i)) < key(members.at(best)))
            best = i;
    return best;
}

int ProjectSession::glyphCount() const
{
    return int(m_view.glyphLayers().size());
}

int ProjectSession::placedGlyphCount() const
{
    int placed = 0;
    for (const CAGlyphLayer* layer : m_view.glyphLayers())
        placed += layer->canfit() ? 1 : 0;
    return placed;
}

} // namespace qm
