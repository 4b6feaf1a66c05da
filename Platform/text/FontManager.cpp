#include "Platform/text/FontManager.h"

#include "Platform/text/Font.h"
#include "Platform/text/FontCatalog.h"

#include <fontconfig/fontconfig.h>

#include <QFileInfo>
#include <QLoggingCategory>

#include <algorithm>
#include <map>

Q_DECLARE_LOGGING_CATEGORY(lcFont)

namespace qm {

void forgetFontNames(); // Font.cpp

namespace {

/// fontconfig's weight scale to the 0..15 scale of family members (5 regular, 9 bold).
int memberWeight(int fcWeight)
{
    static const std::pair<int, int> table[] = {
        {FC_WEIGHT_THIN, 2},      {FC_WEIGHT_EXTRALIGHT, 3}, {FC_WEIGHT_LIGHT, 3},  {FC_WEIGHT_DEMILIGHT, 4},
        {FC_WEIGHT_BOOK, 4},      {FC_WEIGHT_REGULAR, 5},    {FC_WEIGHT_MEDIUM, 6}, {FC_WEIGHT_DEMIBOLD, 8},
        {FC_WEIGHT_BOLD, 9},      {FC_WEIGHT_EXTRABOLD, 10}, {FC_WEIGHT_BLACK, 12}, {FC_WEIGHT_EXTRABLACK, 14},
    };
    int best = 5, bestDistance = 1 << 30;
    for (auto [fc, ns] : table) {
        const int d = std::abs(fc - fcWeight);
        if (d < bestDistance)
            best = ns, bestDistance = d;
    }
    return best;
}

FontMember toMember(const fontcatalog::Entry& e)
{
    FontMember m;
    m.postScriptName = e.postScriptName;
    m.styleName = e.style;
    m.weight = memberWeight(e.fcWeight);
    if (e.fcSlant != FC_SLANT_ROMAN)
        m.traits |= ItalicTrait;
    if (e.fcWeight >= FC_WEIGHT_DEMIBOLD)
        m.traits |= BoldTrait;
    if (e.fcWidth < FC_WIDTH_SEMICONDENSED)
        m.traits |= CondensedTrait;
    else if (e.fcWidth < FC_WIDTH_NORMAL)
        m.traits |= NarrowTrait;
    else if (e.fcWidth > FC_WIDTH_NORMAL)
        m.traits |= ExpandedTrait;
    if (e.monospace)
        m.traits |= FixedPitchTrait;
    m.filePath = e.filePath;
    m.faceIndex = e.faceIndex;
    return m;
}

std::map<int, std::function<void()>>& observers()
{
    static std::map<int, std::function<void()>> list;
    return list;
}

} // namespace

QStringList FontManager::availableFontFamilies()
{
    QStringList families;
    for (const fontcatalog::Entry& e : fontcatalog::all())
        if (!e.family.isEmpty() && !families.contains(e.family))
            families.append(e.family);
    std::stable_sort(families.begin(), families.end(),
                     [](const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) < 0; });
    return families;
}

QString FontManager::resolveFamily(const QString& family)
{
    if (family.isEmpty())
        return {};
    QList<fontcatalog::Entry> found = fontcatalog::list(fontcatalog::Key::Family, family);
    if (!found.isEmpty()) {
        // fontconfig matches any of a font's family names; report the one the caller asked for
        // when it is a primary name, else the primary name of the first match.
        for (const auto& e : found)
            if (e.family.compare(family, Qt::CaseInsensitive) == 0)
                return e.family;
        return family;
    }
    for (const QString& alias : fontcatalog::aliases(family))
        if (!fontcatalog::list(fontcatalog::Key::Family, alias).isEmpty())
            return alias;
    return {};
}

QList<FontMember> FontManager::availableMembersOfFontFamily(const QString& family)
{
    const QString resolved = resolveFamily(family);
    if (resolved.isEmpty())
        return {};
    QList<fontcatalog::Entry> entries = fontcatalog::list(fontcatalog::Key::Family, resolved);
    fontcatalog::sortMembers(entries);
    QList<FontMember> members;
    members.reserve(entries.size());
    for (const auto& e : entries)
        members.append(toMember(e));
    return members;
}

bool FontManager::registerFontsForFile(const QString& path)
{
    // Check the file with FreeType first: fontconfig accepts files it cannot use.
    if (!QFileInfo(path).isFile() || Font::fromFile(path, 12).isNull()) {
        qCWarning(lcFont).noquote() << "cannot register" << path << "as a font";
        return false;
    }
    if (!fontcatalog::addApplicationFont(path)) {
        qCWarning(lcFont).noquote() << "fontconfig refused to register" << path;
        return false;
    }
    forgetFontNames();
    // Copy first: an observer may add or remove observers.
    const auto current = observers();
    for (const auto& [id, observer] : current)
        observer();
    return true;
}

int FontManager::addFontsChangedObserver(std::function<void()> observer)
{
    static int nextId = 1;
    const int id = nextId++;
    observers().emplace(id, std::move(observer));
    return id;
}

void FontManager::removeFontsChangedObserver(int id)
{
    observers().erase(id);
}

} // namespace qm
