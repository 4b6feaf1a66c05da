#include "Platform/archive/KeyedArchiver.h"

#include <QBuffer>
#include <QHash>
#include <QImageWriter>

#include <plist/plist.h>

#include <cstring>
#include <vector>

namespace qm {

namespace {

/// UTF-8 of a string, except that unpaired surrogates are written as three-byte sequences of
/// their own. The property-list writer turns those back into single UTF-16 code units, so a
/// glyph record's lone half of a surrogate pair is stored exactly.
QByteArray toPlistUtf8(const QString& text)
{
    bool lone = false;
    for (qsizetype i = 0; i < text.size() && !lone; ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (text[i].isSurrogate())
            lone = true;
    }
    if (!lone)
        return text.toUtf8();
    QByteArray out;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            out += QString(text.mid(i, 2)).toUtf8();
            ++i;
        } else if (c.isSurrogate()) {
            const char16_t u = c.unicode();
            out += char(0xE0 | (u >> 12));
            out += char(0x80 | ((u >> 6) & 0x3F));
            out += char(0x80 | (u & 0x3F));
        } else {
            out += QString(c).toUtf8();
        }
    }
    return out;
}

QByteArray formatComponent(double v)
{
    // QByteArray::number is locale-independent, unlike printf after Qt has set the C locale.
    return QByteArray::number(v, 'g', 10);
}

} // namespace

struct KeyedArchiver::Private
{
    plist_t objects = plist_new_array();
    uint32_t count = 0;
    std::vector<plist_t> records;       ///< records being encoded, innermost last
    QHash<QByteArray, uint32_t> shared; ///< value objects by content, stored once
    QHash<QString, uint32_t> classes;
    QString error;

    ~Private()
    {
        if (objects)
            plist_free(objects);
    }

    uint32_t append(plist_t node)
    {
        plist_array_append_item(objects, node);
        return count++;
    }

    plist_t current() const { return records.empty() ? nullptr : records.back(); }

    uint32_t classRecord(const ArchiveClass& cls)
    {
        auto it = classes.constFind(cls.name);
        if (it != classes.constEnd())
            return *it;
        plist_t record = plist_new_dict();
        plist_t chain = plist_new_array();
        plist_array_append_item(chain, plist_new_string(cls.name.toUtf8().constData()));
        for (const QString& super : cls.superclasses)
            plist_array_append_item(chain, plist_new_string(super.toUtf8().constData()));
        plist_array_append_item(chain, plist_new_string("NSObject"));
        plist_dict_set_item(record, "$classes", chain);
        plist_dict_set_item(record, "$classname", plist_new_string(cls.name.toUtf8().constData()));
        const uint32_t uid = append(record);
        classes.insert(cls.name, uid);
        return uid;
    }

    static plist_t uidArray(const QList<ArchiveRef>& refs, qsizetype count)
    {
        plist_t array = plist_new_array();
        for (qsizetype i = 0; i < count; ++i)
            plist_array_append_item(array, plist_new_uid(refs[i].uid));
        return array;
    }
};

KeyedArchiver::KeyedArchiver() : d(std::make_unique<Private>())
{
    d->append(plist_new_string("$null"));
}

KeyedArchiver::~KeyedArchiver() = default;

void KeyedArchiver::encodeInt(int32_t value, const QString& key)
{
    if (plist_t record = d->current())
        plist_dict_set_item(record, key.toUtf8().constData(), plist_new_uint(uint64_t(int64_t(value))));
}

void KeyedArchiver::encodeBool(bool value, const QString& key)
{
    if (plist_t record = d->current())
        plist_dict_set_item(record, key.toUtf8().constData(), plist_new_bool(value));
}

void KeyedArchiver::encodeFloat(float value, const QString& key)
{
    // The writer picks the 4-byte form for every value a float can hold exactly.
    if (plist_t record = d->current())
        plist_dict_set_item(record, key.toUtf8().constData(), plist_new_real(double(value)));
}

void KeyedArchiver::encodeBytes(const QByteArray& value, const QString& key)
{
    if (plist_t record = d->current())
        plist_dict_set_item(record, key.toUtf8().constData(),
                            plist_new_data(value.constData(), uint64_t(value.size())));
}

void KeyedArchiver::encodeObject(ArchiveRef object, const QString& key)
{
    if (plist_t record = d->current())
        plist_dict_set_item(record, key.toUtf8().constData(), plist_new_uid(object.uid));
}

ArchiveRef KeyedArchiver::string(const QString& value)
{
    if (value.isNull() || !d->objects)
        return {};
    const QByteArray key = "s" + QByteArray(reinterpret_cast<const char*>(value.utf16()), value.size() * 2);
    if (auto it = d->shared.constFind(key); it != d->shared.constEnd())
        return {*it};
    const uint32_t uid = d->append(plist_new_string(toPlistUtf8(value).constData()));
    d->shared.insert(key, uid);
    return {uid};
}

ArchiveRef KeyedArchiver::number(int64_t value)
{
    if (!d->objects)
        return {};
    const QByteArray key = "i" + QByteArray::number(qlonglong(value));
    if (auto it = d->shared.constFind(key); it != d->shared.constEnd())
        return {*it};
    const uint32_t uid = d->append(plist_new_uint(uint64_t(value)));
    d->shared.insert(key, uid);
    return {uid};
}

ArchiveRef KeyedArchiver::number(double value)
{
    if (!d->objects)
        return {};
    QByteArray key(1 + sizeof value, 'r');
    std::memcpy(key.data() + 1, &value, sizeof value);
    if (auto it = d->shared.constFind(key); it != d->shared.constEnd())
        return {*it};
    const uint32_t uid = d->append(plist_new_real(value));
    d->shared.insert(key, uid);
    return {uid};
}

ArchiveRef KeyedArchiver::boolean(bool value)
{
    if (!d->objects)
        return {};
    const QByteArray key = value ? "bYES" : "bNO";
    if (auto it = d->shared.constFind(key); it != d->shared.constEnd())
        return {*it};
    const uint32_t uid = d->append(plist_new_bool(value));
    d->shared.insert(key, uid);
    return {uid};
}

ArchiveRef KeyedArchiver::url(const QUrl& value)
{
    if (value.isEmpty() || !d->objects)
        return {};
    const QString text = value.toString(QUrl::FullyEncoded);
    const QByteArray key = "u" + text.toUtf8();
    if (auto it = d->shared.constFind(key); it != d->shared.constEnd())
        return {*it};
    const ArchiveRef ref = record({QStringLiteral("NSURL"), {}}, [&](KeyedArchiver& a) {
        a.encodeObject(ArchiveRef{}, QStringLiteral("NS.base"));
        a.encodeObject(text, QStringLiteral("NS.relative"));
    });
    d->shared.insert(key, ref.uid);
    return ref;
}

QByteArray KeyedArchiver::colorComponentsText(const Color& value)
{
    QByteArray text;
    if (value.isWhiteSpace()) {
        text = formatComponent(value.whiteComponent());
    } else {
        text = formatComponent(value.redComponent()) + ' ' + formatComponent(value.greenComponent()) + ' ' +
               formatComponent(value.blueComponent());
    }
    if (value.alphaComponent() != 1.0)
        text += ' ' + formatComponent(value.alphaComponent());
    text += '\0';
    return text;
}

ArchiveRef KeyedArchiver::color(const Color& value)
{
    if (!value.isValid() || !d->objects)
        return {};
    const int space = int(value.space()); // the enum follows the archive's codes 1..4
    const QByteArray components = colorComponentsText(value);
    const QByteArray key = "c" + QByteArray::number(space) + components;
    if (auto it = d->shared.constFind(key); it != d->shared.constEnd())
        return {*it};
    const ArchiveRef ref = record({QStringLiteral("NSColor"), {}}, [&](KeyedArchiver& a) {
        a.encodeInt(space, QStringLiteral("NSColorSpace"));
        a.encodeBytes(components, value.isWhiteSpace() ? QStringLiteral("NSWhite") : QStringLiteral("NSRGB"));
    });
    d->shared.insert(key, ref.uid);
    return ref;
}

ArchiveRef KeyedArchiver::gradient(const Gradient& value)
{
    if (!value.isValid() || !d->objects)
        return {};
    QByteArray key = "g" + QByteArray::number(int(value.colorSpace()));
    for (const GradientStop& stop : value.stops()) {
        key += '|' + QByteArray::number(int(stop.color.space())) + colorComponentsText(stop.color) + '@';
        key += QByteArray::number(stop.location, 'g', 17);
    }
    if (auto it = d->shared.constFind(key); it != d->shared.constEnd())
        return {*it};
    const ArchiveRef ref = record({QStringLiteral("NSGradient"), {}}, [&](KeyedArchiver& a) {
        QList<ArchiveRef> colors, locations;
        for (const GradientStop& stop : value.stops()) {
            colors.append(a.color(stop.color));
            locations.append(a.number(stop.location));
        }
        a.encodeObject(a.array(colors), QStringLiteral("NSColors"));
        a.encodeObject(a.array(locations), QStringLiteral("NSLocations"));
        a.encodeInt(int(value.colorSpace()), QStringLiteral("NSColorSpace"));
    });
    d->shared.insert(key, ref.uid);
    return ref;
}

ArchiveRef KeyedArchiver::image(const QImage& value, QSizeF size)
{
    if (value.isNull() || !d->objects)
        return {};
    QByteArray tiff;
    {
        QBuffer buffer(&tiff);
        buffer.open(QIODevice::WriteOnly);
        QImageWriter writer(&buffer, "tiff");
        // Stored at 72 dpi, one pixel per point as the platform's images have it. The picture's
        // own resolution is dropped: a value read from a broken file makes the TIFF writer fail.
        QImage pixels = value;
        pixels.setDotsPerMeterX(2835);
        pixels.setDotsPerMeterY(2835);
        if (!writer.write(pixels)) {
            if (d->error.isEmpty())
                d->error = QStringLiteral("cannot encode an image as TIFF: %1").arg(writer.errorString());
            return {};
        }
    }
    if (size.isEmpty())
        size = QSizeF(value.size());
    return record({QStringLiteral("NSImage"), {}}, [&](KeyedArchiver& a) {
        const QString sizeText = QStringLiteral("{%1, %2}").arg(size.width()).arg(size.height());
        plist_dict_set_item(a.d->current(), "NSSize", plist_new_string(sizeText.toUtf8().constData()));
        const ArchiveRef rep = a.record(
            {QStringLiteral("NSBitmapImageRep"), {QStringLiteral("NSImageRep")}}, [&](KeyedArchiver& r) {
                const uint32_t data = r.d->append(plist_new_data(tiff.constData(), uint64_t(tiff.size())));
                r.encodeObject(ArchiveRef{data}, QStringLiteral("NSTIFFRepresentation"));
            });
        const ArchiveRef pair = a.array({a.number(int64_t(0)), rep});
        a.encodeObject(a.array({pair}), QStringLiteral("NSReps"));
    });
}

ArchiveRef KeyedArchiver::array(const QList<ArchiveRef>& elements, const ArchiveClass& cls)
{
    if (!d->objects)
        return {};
    plist_t node = plist_new_dict();
    const uint32_t uid = d->append(node);
    plist_dict_set_item(node, "NS.objects", Private::uidArray(elements, elements.size()));
    plist_dict_set_item(node, "$class", plist_new_uid(d->classRecord(cls)));
    return {uid};
}

ArchiveRef KeyedArchiver::dictionary(const QList<ArchiveRef>& keys, const QList<ArchiveRef>& values,
                                     const ArchiveClass& cls)
{
    if (!d->objects)
        return {};
    const qsizetype n = std::min(keys.size(), values.size());
    plist_t node = plist_new_dict();
    const uint32_t uid = d->append(node);
    plist_dict_set_item(node, "NS.keys", Private::uidArray(keys, n));
    plist_dict_set_item(node, "NS.objects", Private::uidArray(values, n));
    plist_dict_set_item(node, "$class", plist_new_uid(d->classRecord(cls)));
    return {uid};
}

ArchiveRef KeyedArchiver::record(const ArchiveClass& cls, const std::function<void(KeyedArchiver&)>& encode)
{
    if (!d->objects)
        return {};
    plist_t node = plist_new_dict();
    const uint32_t uid = d->append(node);
    d->records.push_back(node);
    encode(*this);
    d->records.pop_back();
    plist_dict_set_item(node, "$class", plist_new_uid(d->classRecord(cls)));
    return {uid};
}

QByteArray KeyedArchiver::finish(ArchiveRef root)
{
    if (!d->objects) {
        if (d->error.isEmpty())
            d->error = QStringLiteral("the archive was already finished");
        return {};
    }
    plist_t top = plist_new_dict();
    plist_dict_set_item(top, "$version", plist_new_uint(uint64_t(keyed_archive::version)));
    plist_dict_set_item(top, "$archiver", plist_new_string(keyed_archive::archiverName));
    plist_t rootDict = plist_new_dict();
    plist_dict_set_item(rootDict, "root", plist_new_uid(root.uid));
    plist_dict_set_item(top, "$top", rootDict);
    plist_dict_set_item(top, "$objects", d->objects);
    d->objects = nullptr; // now owned by `top`

    QByteArray bytes;
    if (d->error.isEmpty()) {
        char* data = nullptr;
        uint32_t length = 0;
        plist_to_bin(top, &data, &length);
        if (data && length > 0)
            bytes = QByteArray(data, qsizetype(length));
        else
            d->error = QStringLiteral("the property list writer failed");
        plist_to_bin_free(data);
    }
    plist_free(top);
    return bytes;
}

QString KeyedArchiver::errorString() const
{
    return d->error;
}

} // namespace qm
