#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>

namespace qm {

/// An object of a keyed archive, named by its UID: its index in the archive's "$objects".
/// UID 0 is the "$null" entry and means nil.
struct ArchiveRef
{
    uint32_t uid = 0;
    bool isNil() const { return uid == 0; }
    bool operator==(const ArchiveRef&) const = default;
};

/// The class of a keyed record: its name, then its superclasses from nearest to farthest.
/// "NSObject", which ends every chain, is left out here and added when written.
struct ArchiveClass
{
    QString name;
    QStringList superclasses;

    static ArchiveClass array() { return {QStringLiteral("NSArray"), {}}; }
    static ArchiveClass mutableArray()
    {
        return {QStringLiteral("NSMutableArray"), {QStringLiteral("NSArray")}};
    }
    static ArchiveClass dictionary() { return {QStringLiteral("NSDictionary"), {}}; }
    static ArchiveClass mutableDictionary()
    {
        return {QStringLiteral("NSMutableDictionary"), {QStringLiteral("NSDictionary")}};
    }
};

/// Format constants of the keyed-archive form.
namespace keyed_archive {
inline constexpr const char* archiverName = "NSKeyedArchiver";
inline constexpr int64_t version = 100000;
} // namespace keyed_archive

} // namespace qm
