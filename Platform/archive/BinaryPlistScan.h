#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <cstdint>

namespace qm::archive_detail {

/// Limits a binary property list must keep before it is handed to the C parser. The parser copies
/// an object once per reference and recurses once per nesting level, so a small hostile file can
/// otherwise expand to gigabytes or overflow the stack. Keyed archives are flat (objects refer to
/// each other by UID, not by nesting), so real files stay far below every limit.
/// The expanded limits must stay below 2^32.
struct PlistLimits
{
    qsizetype maxFileSize = 64 * 1024 * 1024;
    int maxDepth = 32;
    uint64_t maxExpandedObjects = 4'000'000;
    uint64_t maxExpandedBytes = 256ull * 1024 * 1024;
};

/// Result of checking the structure of a binary property list ("bplist00") without building it.
struct PlistScan
{
    bool ok = false;
    QString error; ///< what was wrong, when !ok

    /// Object-table indices of the entries of the top dictionary's "$objects" array, in order
    /// (empty when there is no such array).
    QList<uint64_t> archiveObjects;
    /// UTF-16 strings holding an unpaired surrogate, by object-table index. The C parser drops such
    /// code units while converting to UTF-8, but a glyph record's character may be exactly one.
    QHash<uint64_t, QString> loneSurrogateStrings;
};

/// Checks the trailer, offset table, every reachable object's bounds, reference cycles, nesting
/// depth and the expanded size. Runs in time linear in the file size and never recurses.
PlistScan scanBinaryPlist(const QByteArray& data, const PlistLimits& limits = {});

} // namespace qm::archive_detail
