#pragma once

#include "Platform/archive/KeyedArchive.h"
#include "Platform/graphics/Color.h"
#include "Platform/graphics/Gradient.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QUrl>

#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

namespace qm {

/// Reads an archive in the platform's keyed-archive form (see KeyedArchiver).
///
/// Construction checks the whole file: a file that is not a binary keyed archive, a truncated or
/// corrupted one, reference cycles inside the property list, or sizes beyond the limits make
/// isValid() false with errorString() naming what was wrong. Past that point nothing fails as a
/// whole: every accessor answers an empty value (0, false, 0.0, nil, empty string) for a missing
/// key, a wrong type, a UID out of range or a reference cycle between records.
class KeyedUnarchiver
{
public:
    /// Largest archive read, in bytes.
    static constexpr qsizetype maxArchiveSize = 64 * 1024 * 1024;
    /// Largest image decoded from an archive, in pixels per side (the largest texture; glyph
    /// pictures are far smaller).
    static constexpr int maxImageSide = 4096;
    /// Keyed records with more keys than this are not decoded.
    static constexpr uint32_t maxRecordKeys = 1024;
    static constexpr qsizetype unlimited = std::numeric_limits<qsizetype>::max();

    explicit KeyedUnarchiver(const QByteArray& data);
    ~KeyedUnarchiver();
    KeyedUnarchiver(const KeyedUnarchiver&) = delete;
    KeyedUnarchiver& operator=(const KeyedUnarchiver&) = delete;

    bool isValid() const;
    QString errorString() const;

    /// The object under "$top" {"root": ...}; nil when there is none.
    ArchiveRef rootObject() const;
    /// Number of entries of "$objects"; valid UIDs are below it.
    int objectCount() const;

    // Keyed decoders: read `key` of the record being decoded (inside decodeRecord(); elsewhere
    // every key is missing). Numbers convert between integer, real and boolean; an integer
    // outside the 32-bit range, and any other type, reads as missing.

    bool containsValue(const QString& key) const;
    int32_t decodeInt(const QString& key) const;
    bool decodeBool(const QString& key) const;
    float decodeFloat(const QString& key) const;
    /// Inline data (or an inline string's UTF-8 bytes).
    QByteArray decodeBytes(const QString& key) const;
    /// The object whose UID is stored under `key`.
    ArchiveRef decodeObject(const QString& key) const;
    QString decodeString(const QString& key) const { return stringValue(decodeObject(key)); }
    QUrl decodeUrl(const QString& key) const { return urlValue(decodeObject(key)); }
    Color decodeColor(const QString& key) const { return colorValue(decodeObject(key)); }
    Gradient decodeGradient(const QString& key) const { return gradientValue(decodeObject(key)); }
    QImage decodeImage(const QString& key) const { return imageValue(decodeObject(key)); }

    /// Makes `record` (a keyed record: a dictionary in "$objects" with a "$class") the record the
    /// keyed decoders read while `decode` runs. Answers false without calling `decode` when the
    /// object is not a keyed record or is already being decoded further out (a cycle).
    bool decodeRecord(ArchiveRef record, const std::function<void(KeyedUnarchiver&)>& decode);

    // Objects by reference. An object of another kind answers the empty value.

    /// "$classname" of a keyed record; empty for plain values and nil.
    QString className(ArchiveRef object) const;
    /// "$classes" of a keyed record: its class and superclasses.
    QStringList classChain(ArchiveRef object) const;
    /// A plain string, or a record holding one under "NS.string". Null for other objects.
    QString stringValue(ArchiveRef object) const;
    /// A plain integer, real or boolean.
    std::optional<double> numberValue(ArchiveRef object) const;
    /// An NSURL record: "NS.relative" resolved against "NS.base" when that is a URL too.
    QUrl urlValue(ArchiveRef object) const;
    /// An NSColor record. Reads "NSComponents" when present, else "NSRGB" or "NSWhite" (spaces 1
    /// to 4), "NSCMYK" (5) as RGB, a catalog colour (6) through its fallback under "NSColor", and
    /// components of a custom colour space by their count (1-2 grey, 3-4 RGB). Components may end
    /// with a NUL byte or not.
    Color colorValue(ArchiveRef object) const;
    /// An NSGradient record: colours from "NSColors" and locations from "NSLocations"; records
    /// that use other keys are searched for an array of colours and one of numbers. Without
    /// locations the colours are spread evenly. Invalid (no stops) when no colours are found.
    Gradient gradientValue(ArchiveRef object) const;
    /// An NSImage record whose first bitmap representation holds "NSTIFFRepresentation" bytes
    /// (also accepted: those bytes or a bitmap rep directly). Null when unreadable or larger
    /// than maxImageSide.
    QImage imageValue(ArchiveRef object) const;
    /// The UIDs of an array or set record's "NS.objects"; elements that are not valid UIDs read
    /// as nil. Empty when there are more than `maxCount`: callers that may meet the same large
    /// array many times (one shared by many records) bound their work with it.
    QList<ArchiveRef> arrayElements(ArchiveRef object, qsizetype maxCount = unlimited) const;
    /// The number of elements of an array or set record's "NS.objects"; 0 for other objects.
    qsizetype elementCount(ArchiveRef object) const;
    /// The pairs of a dictionary record's "NS.keys" and "NS.objects", as many as both have;
    /// empty when either has more than `maxCount`.
    QList<std::pair<ArchiveRef, ArchiveRef>> dictionaryEntries(ArchiveRef object,
                                                               qsizetype maxCount = unlimited) const;

private:
    QString uncachedString(ArchiveRef object) const;
    Color uncachedColor(ArchiveRef object) const;
    Gradient uncachedGradient(ArchiveRef object) const;
    QImage uncachedImage(ArchiveRef object) const;

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace qm
