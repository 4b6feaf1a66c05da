#pragma once

#include "Classes/model/sharedAppState.h"
#include "Classes/render/CGGlyphBitmap.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace qm {

/// A project as a project file holds it: the settings and the glyph records in layer order.
struct ProjectData
{
    sharedAppState settings{InitialValues::Empty};
    QList<CGGlyphBitmap> glyphs;
};

/// The project file: a keyed archive whose root is a dictionary {"interface": the settings
/// record, "allglyphs": an array of glyph records}. Failures come back as a message naming the
/// file (where there is one) and what was wrong; nothing here talks to the user.
namespace ProjectArchive {

/// Class names of the two records.
inline constexpr const char* settingsClassName = "sharedAppState";
inline constexpr const char* glyphClassName = "CGGlyphBitmap";
/// More glyph records than UTF-16 code units cannot come from a real project.
inline constexpr qsizetype maxGlyphs = 65536;

/// The file's bytes; empty, with `error` set, when an object cannot be encoded.
QByteArray encode(const sharedAppState& settings, const QList<const CGGlyphBitmap*>& glyphs,
                  QString* error = nullptr);
/// Decodes the file's bytes into `project` (settings and glyphs start empty). False, leaving
/// `project` untouched, when the bytes are no keyed archive or hold no settings record; glyph
/// records that cannot be read and repeated references to one record are left out.
bool decode(const QByteArray& bytes, ProjectData* project, QString* error = nullptr);

/// Writes the file through a temporary file in the same folder that replaces `path` only once
/// it is completely written, so a failed save leaves the previous file as it was.
bool writeFile(const QString& path, const sharedAppState& settings, const QList<const CGGlyphBitmap*>& glyphs,
               QString* error = nullptr);
/// Reads and decodes a file (at most KeyedUnarchiver::maxArchiveSize bytes).
bool readFile(const QString& path, ProjectData* project, QString* error = nullptr);

/// The upgrade rules for freshly loaded settings that need no window: a `version` of 192 or
/// lower (0 for files without one) turns `autoxy` on and becomes 200; `autoSD` forces
/// `autoSDLevel` to 1.
void upgradeLoadedSettings(sharedAppState& settings);

} // namespace ProjectArchive

} // namespace qm
