#pragma once

// Internal to Platform/text: fontconfig queries behind Font and FontManager.

#include <QList>
#include <QString>

namespace qm::fontcatalog {

/// A font file entry as fontconfig lists it, with the raw fontconfig style values.
struct Entry
{
    QString filePath;
    int faceIndex = 0;
    QString family; ///< first family name
    QString style;
    QString postScriptName;
    int fcWeight = 80; ///< fontconfig scale: 80 regular, 200 bold
    int fcSlant = 0;   ///< 0 roman, 100 italic, 110 oblique
    int fcWidth = 100; ///< 100 normal
    bool monospace = false;
};

enum class Key { Family, FullName, PostScriptName };

/// Every scalable font whose `key` equals `value` (fontconfig's case- and blank-insensitive
/// comparison), deduplicated by file and face, in fontconfig's order.
QList<Entry> list(Key key, const QString& value);
/// Every scalable font.
QList<Entry> all();
/// Families that the configuration binds to `family` as strong or same aliases (metric
/// compatible replacements), in configuration order, excluding `family` itself.
QStringList aliases(const QString& family);
/// Adds a font file to the application fonts of the current configuration.
bool addApplicationFont(const QString& path);

/// The stable member order: the most regular face first, then weight, upright before slanted,
/// width, style name.
void sortMembers(QList<Entry>& entries);
/// The member closest to a regular upright face of normal width.
const Entry* mostRegular(const QList<Entry>& entries);

} // namespace qm::fontcatalog
