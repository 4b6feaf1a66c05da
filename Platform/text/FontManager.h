#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace qm {

/// One member (face) of a font family, as the font manager lists it.
struct FontMember
{
    QString postScriptName;
    QString styleName;
    int weight = 5;  ///< 0..15, 5 = regular, 9 = bold
    int traits = 0;  ///< FontTrait bits
    QString filePath;
    int faceIndex = 0;
    bool operator==(const FontMember&) const = default;
};

/// Trait bits of a family member.
enum FontTrait : int {
    ItalicTrait = 0x1,
    BoldTrait = 0x2,
    NarrowTrait = 0x10,
    ExpandedTrait = 0x20,
    CondensedTrait = 0x40,
    FixedPitchTrait = 0x400,
};

/// The installed font families and fonts registered for this process, through fontconfig.
class FontManager
{
public:
    /// Every family name, each once, sorted case-insensitively.
    static QStringList availableFontFamilies();
    /// The members of a family in a stable order: the regular upright face first, then by weight,
    /// upright before slanted, width, style name. A family known only as a metric alias ("Arial" on a system with
    /// Liberation Sans) lists the members of the family it resolves to. Unknown: empty.
    static QList<FontMember> availableMembersOfFontFamily(const QString& family);
    /// The installed family a name resolves to: itself when installed, else the first installed
    /// metric-compatible alias; empty when there is none.
    static QString resolveFamily(const QString& family);

    /// Makes the fonts of a file available to this process only. False when the file holds no
    /// usable font. Observers hear of the change at once.
    static bool registerFontsForFile(const QString& path);

    /// Calls `observer` whenever the set of available fonts changes. Returns an id for removal.
    static int addFontsChangedObserver(std::function<void()> observer);
    static void removeFontsChangedObserver(int id);
};

} // namespace qm
