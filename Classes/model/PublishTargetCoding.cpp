#include "Classes/model/PublishTargetCoding.h"

#include "Platform/archive/KeyedArchiver.h"
#include "Platform/archive/KeyedUnarchiver.h"

#include <cmath>
#include <optional>

namespace qm {

namespace {

/// Far more targets than anyone keeps; bounds the work on hostile files.
constexpr qsizetype kMaxTargets = 4096;
/// A target record has eleven keys; a few more are tolerated.
constexpr qsizetype kMaxTargetKeys = 64;

int intFromNumber(std::optional<double> v)
{
    if (!v || !std::isfinite(*v) || *v <= double(INT32_MIN) - 1.0 || *v >= double(INT32_MAX) + 1.0)
        return 0;
    return int(*v);
}

} // namespace

ArchiveRef encodePublishTargets(KeyedArchiver& coder, const QMap<QString, PublishTarget>& targets)
{
    QList<ArchiveRef> names, records;
    for (auto it = targets.cbegin(); it != targets.cend(); ++it) {
        const PublishTarget& t = it.value();
        const QList<ArchiveRef> keys = {
            coder.string(QStringLiteral("mainname")), coder.string(QStringLiteral("path")),
            coder.string(QStringLiteral("file")),     coder.string(QStringLiteral("suffix")),
            coder.string(QStringLiteral("fontface")), coder.string(QStringLiteral("scale")),
            coder.string(QStringLiteral("quality")),  coder.string(QStringLiteral("format")),
            coder.string(QStringLiteral("texture")),  coder.string(QStringLiteral("coords")),
            coder.string(QStringLiteral("redraw")),
        };
        // A dictionary cannot hold nil: a null string is stored as an empty one.
        auto text = [&coder](const QString& s) { return coder.string(s.isNull() ? QStringLiteral("") : s); };
        const QList<ArchiveRef> values = {
            text(t.mainname),
            text(t.path),
            text(t.file),
            text(t.suffix),
            text(t.fontface),
            text(t.scale),
            coder.number(int64_t(t.quality)),
            coder.number(int64_t(t.format)),
            coder.boolean(t.texture),
            coder.boolean(t.coords),
            coder.boolean(t.redraw),
        };
        names.append(coder.string(it.key()));
        records.append(coder.dictionary(keys, values, ArchiveClass::mutableDictionary()));
    }
    return coder.dictionary(names, records, ArchiveClass::mutableDictionary());
}

QMap<QString, PublishTarget> decodePublishTargets(const KeyedUnarchiver& coder, ArchiveRef dictionary)
{
    QMap<QString, PublishTarget> targets;
    for (const auto& [nameRef, recordRef] : coder.dictionaryEntries(dictionary, kMaxTargets)) {
        const QString name = coder.stringValue(nameRef);
        if (name.isNull() || coder.className(recordRef).isEmpty())
            continue;
        PublishTarget t;
        t.mainname = t.path = t.file = t.suffix = t.fontface = t.scale = QString();
        t.quality = t.format = 0;
        t.texture = t.coords = t.redraw = false;
        for (const auto& [keyRef, valueRef] : coder.dictionaryEntries(recordRef, kMaxTargetKeys)) {
            const QString key = coder.stringValue(keyRef);
            const std::optional<double> number = coder.numberValue(valueRef);
            if (key == QLatin1String("mainname"))
                t.mainname = coder.stringValue(valueRef);
            else if (key == QLatin1String("path"))
                t.path = coder.stringValue(valueRef);
            else if (key == QLatin1String("file"))
                t.file = coder.stringValue(valueRef);
            else if (key == QLatin1String("suffix"))
                t.suffix = coder.stringValue(valueRef);
            else if (key == QLatin1String("fontface"))
                t.fontface = coder.stringValue(valueRef);
            else if (key == QLatin1String("scale"))
                t.scale = coder.stringValue(valueRef);
            else if (key == QLatin1String("quality"))
                t.quality = intFromNumber(number);
            else if (key == QLatin1String("format"))
                t.format = intFromNumber(number);
            else if (key == QLatin1String("texture"))
                t.texture = number && *number != 0.0;
            else if (key == QLatin1String("coords"))
                t.coords = number && *number != 0.0;
            else if (key == QLatin1String("redraw"))
                t.redraw = number && *number != 0.0;
        }
        targets.insert(name, t);
    }
    return targets;
}

} // namespace qm
