#pragma once

#include "Classes/model/PublishTarget.h"
#include "Platform/archive/KeyedArchive.h"

#include <QMap>

namespace qm {

class KeyedArchiver;
class KeyedUnarchiver;

/// The settings' publish targets as archived: a mutable dictionary from target name to a mutable
/// dictionary with exactly the keys "mainname", "path", "file", "suffix", "fontface", "scale"
/// (strings), "quality", "format" (integers), "texture", "coords", "redraw" (booleans).
ArchiveRef encodePublishTargets(KeyedArchiver& coder, const QMap<QString, PublishTarget>& targets);
/// Reads that dictionary; entries whose name or record is unreadable are left out, and a
/// missing or mistyped key of a record reads as empty, 0 or false.
QMap<QString, PublishTarget> decodePublishTargets(const KeyedUnarchiver& coder, ArchiveRef dictionary);

} // namespace qm
