#include "Classes/model/ProjectArchive.h"

#include "Platform/archive/KeyedArchiver.h"
#include "Platform/archive/KeyedUnarchiver.h"
#include "Platform/files/SaveFile.h"

#include <QFile>
#include <QSet>

namespace qm {

namespace {

/// The root dictionary has two entries; a few unknown ones are tolerated.
constexpr qsizetype kMaxRootEntries = 64;

void setError(QString* error, const QString& message)
{
    if (error)
        *error = message;
}

} // namespace

QByteArray ProjectArchive::encode(const sharedAppState& settings, const QList<const CGGlyphBitmap*>& glyphs,
                                  QString* error)
{
    KeyedArchiver coder;
    const ArchiveRef interface = coder.record({QString::fromLatin1(settingsClassName), {}},
                                              [&settings](KeyedArchiver& c) { settings.encodeWithCoder(c); });
    QList<ArchiveRef> records;
    records.reserve(glyphs.size());
    for (const CGGlyphBitmap* glyph : glyphs) {
        if (glyph)
            records.append(coder.record({QString::fromLatin1(glyphClassName), {}},
                                        [glyph](KeyedArchiver& c) { glyph->encodeWithCoder(c); }));
    }
    const ArchiveRef allglyphs = coder.array(records, ArchiveClass::mutableArray());
    const ArchiveRef root = coder.dictionary(
        {coder.string(QStringLiteral("interface")), coder.string(QStringLiteral("allglyphs"))},
        {interface, allglyphs});
    QByteArray bytes = coder.finish(root);
    if (bytes.isEmpty())
        setError(error, coder.errorString());
    return bytes;
}

bool ProjectArchive::decode(const QByteArray& bytes, ProjectData* project, QString* error)
{
    KeyedUnarchiver coder(bytes);
    if (!coder.isValid()) {
        setError(error, coder.errorString());
        return false;
    }
    ArchiveRef interface, allglyphs;
    bool haveGlyphs = false;
    for (const auto& [key, value] : coder.dictionaryEntries(coder.rootObject(), kMaxRootEntries)) {
        const QString name = coder.stringValue(key);
        if (name == QLatin1String("interface") && interface.isNil()) {
            interface = value;
        } else if (name == QLatin1String("allglyphs") && !haveGlyphs) {
            allglyphs = value;
            haveGlyphs = true;
        }
    }

    ProjectData loaded;
    if (!coder.decodeRecord(interface, [&loaded](KeyedUnarchiver& c) { loaded.settings.initWithCoder(c); })) {
        setError(error, QStringLiteral("the archive holds no project settings (\"interface\")"));
        return false;
    }
    if (coder.elementCount(allglyphs) > maxGlyphs) {
        setError(error, QStringLiteral("the archive holds more than %1 glyph records").arg(maxGlyphs));
        return false;
    }
    const QList<ArchiveRef> records = coder.arrayElements(allglyphs, maxGlyphs);
    QSet<uint32_t> seen;
    loaded.glyphs.reserve(records.size());
    for (ArchiveRef record : records) {
        if (record.isNil() || seen.contains(record.uid))
            continue;
        seen.insert(record.uid);
        CGGlyphBitmap glyph(InitialValues::Empty);
        if (coder.decodeRecord(record, [&glyph](KeyedUnarchiver& c) { glyph.initWithCoder(c); }))
            loaded.glyphs.append(std::move(glyph));
    }
    *project = std::move(loaded);
    return true;
}

bool ProjectArchive::writeFile(const QString& path, const sharedAppState& settings,
                               const QList<const CGGlyphBitmap*>& glyphs, QString* error)
{
    QString reason;
    const QByteArray bytes = encode(settings, glyphs, &reason);
    if (bytes.isEmpty()) {
        setError(error, QStringLiteral("%1: %2").arg(path, reason));
        return false;
    }
    // The previous project stays whole whatever happens: never written in place.
    return saveFile(path, bytes, InPlace::Never, error);
}

bool ProjectArchive::readFile(const QString& path, ProjectData* project, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        setError(error, QStringLiteral("%1: %2").arg(path, file.errorString()));
        return false;
    }
    if (file.size() > KeyedUnarchiver::maxArchiveSize) {
        setError(error, QStringLiteral("%1: file is too large (%2 bytes)").arg(path).arg(file.size()));
        return false;
    }
    const QByteArray bytes = file.read(KeyedUnarchiver::maxArchiveSize + 1);
    QString reason;
    if (!decode(bytes, project, &reason)) {
        setError(error, QStringLiteral("%1: %2").arg(path, reason));
        return false;
    }
    return true;
}

void ProjectArchive::upgradeLoadedSettings(sharedAppState& settings)
{
    if (settings.version() <= 192) {
        settings.setAutoxy(true);
        settings.setVersion(200);
    }
    if (settings.autoSD())
        settings.setAutoSDLevel(1);
}

} // namespace qm
