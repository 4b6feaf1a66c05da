#include "Platform/archive/KeyedUnarchiver.h"

#include "Platform/archive/BinaryPlistScan.h"

#include <QBuffer>
#include <QHash>
#include <QImageReader>

#include <plist/plist.h>

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace qm {

namespace {

/// Colours refer to fallback colours, URLs to base URLs, gradients to colours: nested values are
/// followed this deep at most, which also ends reference cycles among them.
constexpr int kMaxValueNesting = 8;

/// Components hold a few numbers; anything longer is not a colour.
constexpr int kMaxComponents = 8;

/// Gradients have a handful of stops; longer arrays are not read as one, and a gradient record of
/// unknown keys is searched this far. Both keep the work per gradient small.
constexpr qsizetype kMaxGradientStops = 1024;
constexpr int kMaxGradientKeysSearched = 16;
constexpr qsizetype kMaxImageReps = 16;

plist_t dictItem(plist_t dict, const char* key)
{
    return dict && plist_get_node_type(dict) == PLIST_DICT ? plist_dict_get_item(dict, key) : nullptr;
}

/// Calls `visit` for each item of an array node, in order. The parser's arrays have no index,
/// so item access by position walks the list; iterating keeps whole-array reads linear.
template <typename Visit> void forEachItem(plist_t array, Visit visit)
{
    if (!array || plist_get_node_type(array) != PLIST_ARRAY)
        return;
    plist_array_iter it = nullptr;
    plist_array_new_iter(array, &it);
    for (;;) {
        plist_t item = nullptr;
        plist_array_next_item(array, it, &item);
        if (!item)
            break;
        visit(item);
    }
    free(it);
}

/// A number node as a double: integers (8-byte ones are signed), reals and booleans.
std::optional<double> nodeNumber(plist_t node)
{
    if (!node)
        return std::nullopt;
    switch (plist_get_node_type(node)) {
    case PLIST_UINT: {
        uint64_t v = 0;
        plist_get_uint_val(node, &v);
        return double(int64_t(v));
    }
    case PLIST_REAL: {
        double v = 0;
        plist_get_real_val(node, &v);
        return v;
    }
    case PLIST_BOOLEAN: {
        uint8_t v = 0;
        plist_get_bool_val(node, &v);
        return v ? 1.0 : 0.0;
    }
    default:
        return std::nullopt;
    }
}

QByteArray nodeBytes(plist_t node)
{
    if (!node)
        return {};
    uint64_t length = 0;
    const char* bytes = nullptr;
    switch (plist_get_node_type(node)) {
    case PLIST_DATA:
        bytes = plist_get_data_ptr(node, &length);
        break;
    case PLIST_STRING:
        bytes = plist_get_string_ptr(node, &length);
        break;
    default:
        return {};
    }
    return bytes ? QByteArray(bytes, qsizetype(length)) : QByteArray();
}

/// "0.5 0.25 1" with an optional NUL at the end; empty when it is not a short list of numbers.
QList<double> parseComponents(QByteArray text)
{
    if (const qsizetype nul = text.indexOf('\0'); nul >= 0)
        text.truncate(nul);
    QList<double> values;
    for (const QByteArray& token : text.simplified().split(' ')) {
        if (token.isEmpty())
            continue;
        bool ok = false;
        const double v = token.toDouble(&ok);
        if (!ok || !std::isfinite(v) || values.size() == kMaxComponents)
            return {};
        values.append(v);
    }
    return values;
}

} // namespace

struct KeyedUnarchiver::Private
{
    QString error;
    plist_t top = nullptr;
    std::vector<plist_t> objects;
    QHash<uint32_t, QString> loneSurrogateStrings;
    ArchiveRef root;

    /// A record being decoded, with its keys indexed (the parser's dictionaries search linearly).
    struct Record
    {
        uint32_t uid;
        QHash<QByteArray, plist_t> values;
    };
    std::vector<Record> records; ///< innermost last
    mutable int nesting = 0;

    // Decoded values by UID: an object referred to many times is decoded once, which keeps the
    // work linear in the file's size whatever the references.
    mutable QHash<uint32_t, QString> strings;
    mutable QHash<uint32_t, Color> colors;
    mutable QHash<uint32_t, Gradient> gradients;
    mutable QHash<uint32_t, QImage> images;

    /// Checks and parses the file; the error when it is no usable keyed archive, else empty.
    QString load(const QByteArray& data);

    ~Private()
    {
        if (top)
            plist_free(top);
    }

    plist_t object(ArchiveRef ref) const
    {
        return ref.uid > 0 && ref.uid < objects.size() ? objects[ref.uid] : nullptr;
    }

    /// A UID node as a reference; nil when it is no UID or out of range.
    ArchiveRef refFromNode(plist_t node) const
    {
        if (!node || plist_get_node_type(node) != PLIST_UID)
            return {};
        uint64_t uid = 0;
        plist_get_uid_val(node, &uid);
        return uid < objects.size() ? ArchiveRef{uint32_t(uid)} : ArchiveRef{};
    }

    plist_t currentValue(const QString& key) const
    {
        return records.empty() ? nullptr : records.back().values.value(key.toUtf8());
    }

    /// A value held either inline in a record or in "$objects" through a UID.
    plist_t inlineOrReferenced(plist_t node) const
    {
        if (node && plist_get_node_type(node) == PLIST_UID)
            return object(refFromNode(node));
        return node;
    }

    /// The UIDs of an inline array (held by a record under "NS.objects" or "NS.keys"); empty when
    /// it has more than `maxCount`.
    QList<ArchiveRef> uidList(plist_t array, qsizetype maxCount) const
    {
        QList<ArchiveRef> refs;
        if (!array || plist_get_node_type(array) != PLIST_ARRAY)
            return refs;
        const uint32_t n = plist_array_get_size(array);
        if (qsizetype(n) > maxCount)
            return refs;
        refs.reserve(n);
        forEachItem(array, [&](plist_t item) { refs.append(refFromNode(item)); });
        return refs;
    }

    struct Nesting
    {
        const Private* p;
        bool ok;
        explicit Nesting(const Private* owner) : p(owner), ok(++owner->nesting <= kMaxValueNesting) {}
        ~Nesting() { --p->nesting; }
    };
};

KeyedUnarchiver::KeyedUnarchiver(const QByteArray& data) : d(std::make_unique<Private>())
{
    d->error = d->load(data);
    if (!d->error.isEmpty()) {
        d->objects.clear();
        d->loneSurrogateStrings.clear();
        d->root = {};
        if (d->top)
            plist_free(d->top);
        d->top = nullptr;
    }
}

QString KeyedUnarchiver::Private::load(const QByteArray& data)
{
    archive_detail::PlistLimits limits;
    limits.maxFileSize = maxArchiveSize;
    const archive_detail::PlistScan scan = archive_detail::scanBinaryPlist(data, limits);
    if (!scan.ok)
        return scan.error;
    plist_from_bin(data.constData(), uint32_t(data.size()), &top);
    if (!top)
        return QStringLiteral("the property list cannot be parsed");
    if (plist_get_node_type(top) != PLIST_DICT)
        return QStringLiteral("not a keyed archive: the top object is not a dictionary");
    plist_t archiver = dictItem(top, "$archiver");
    if (!archiver || plist_get_node_type(archiver) != PLIST_STRING ||
        nodeBytes(archiver) != keyed_archive::archiverName)
        return QStringLiteral("not a keyed archive: \"$archiver\" is not \"%1\"")
            .arg(keyed_archive::archiverName);
    plist_t objectArray = dictItem(top, "$objects");
    if (!objectArray || plist_get_node_type(objectArray) != PLIST_ARRAY)
        return QStringLiteral("keyed archive without an \"$objects\" array");
    plist_t topRecord = dictItem(top, "$top");
    if (!topRecord || plist_get_node_type(topRecord) != PLIST_DICT)
        return QStringLiteral("keyed archive without a \"$top\" dictionary");

    const uint32_t count = plist_array_get_size(objectArray);
    objects.reserve(count);
    forEachItem(objectArray, [this](plist_t item) { objects.push_back(item); });
    if (objects.size() != count)
        return QStringLiteral("keyed archive whose \"$objects\" array cannot be read");
    if (!scan.loneSurrogateStrings.isEmpty() && scan.archiveObjects.size() == qsizetype(count)) {
        for (uint32_t i = 0; i < count; ++i) {
            auto it = scan.loneSurrogateStrings.constFind(scan.archiveObjects[i]);
            if (it != scan.loneSurrogateStrings.constEnd())
                loneSurrogateStrings.insert(i, *it);
        }
    }

    if (plist_t rootNode = dictItem(topRecord, "root")) {
        uint64_t uid = 0;
        if (plist_get_node_type(rootNode) == PLIST_UID)
            plist_get_uid_val(rootNode, &uid);
        if (plist_get_node_type(rootNode) != PLIST_UID || uid >= count)
            return QStringLiteral("keyed archive whose root is not a valid UID");
        root = {uint32_t(uid)};
    }
    return {};
}

KeyedUnarchiver::~KeyedUnarchiver() = default;

bool KeyedUnarchiver::isValid() const
{
    return d->top != nullptr;
}

QString KeyedUnarchiver::errorString() const
{
    return d->error;
}

ArchiveRef KeyedUnarchiver::rootObject() const
{
    return d->root;
}

int KeyedUnarchiver::objectCount() const
{
    return int(d->objects.size());
}

bool KeyedUnarchiver::containsValue(const QString& key) const
{
    return d->currentValue(key) != nullptr;
}

int32_t KeyedUnarchiver::decodeInt(const QString& key) const
{
    const std::optional<double> v = nodeNumber(d->currentValue(key));
    // Integers up to 2^53 are exact in a double, which covers the whole 32-bit range.
    if (!v || !std::isfinite(*v) || *v <= double(INT32_MIN) - 1.0 || *v >= double(INT32_MAX) + 1.0)
        return 0;
    return int32_t(*v);
}

bool KeyedUnarchiver::decodeBool(const QString& key) const
{
    const std::optional<double> v = nodeNumber(d->currentValue(key));
    return v && *v != 0.0;
}

float KeyedUnarchiver::decodeFloat(const QString& key) const
{
    const std::optional<double> v = nodeNumber(d->currentValue(key));
    if (!v || !std::isfinite(*v) || std::fabs(*v) > double(FLT_MAX))
        return 0.0f;
    return float(*v);
}

QByteArray KeyedUnarchiver::decodeBytes(const QString& key) const
{
    return nodeBytes(d->currentValue(key));
}

ArchiveRef KeyedUnarchiver::decodeObject(const QString& key) const
{
    return d->refFromNode(d->currentValue(key));
}

bool KeyedUnarchiver::decodeRecord(ArchiveRef record, const std::function<void(KeyedUnarchiver&)>& decode)
{
    plist_t node = d->object(record);
    if (!node || !dictItem(node, "$class") || plist_dict_get_size(node) > maxRecordKeys)
        return false;
    for (const Private::Record& active : d->records) {
        if (active.uid == record.uid)
            return false;
    }
    Private::Record entry{record.uid, {}};
    entry.values.reserve(plist_dict_get_size(node));
    plist_dict_iter it = nullptr;
    plist_dict_new_iter(node, &it);
    for (;;) {
        char* key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, it, &key, &value);
        if (!value) {
            free(key);
            break;
        }
        if (key && !entry.values.contains(key)) // the first of repeated keys, as the parser's lookup
            entry.values.insert(QByteArray(key), value);
        free(key);
    }
    free(it);
    d->records.push_back(std::move(entry));
    decode(*this);
    d->records.pop_back();
    return true;
}

QString KeyedUnarchiver::className(ArchiveRef object) const
{
    plist_t cls = d->object(d->refFromNode(dictItem(d->object(object), "$class")));
    plist_t name = dictItem(cls, "$classname");
    if (!name || plist_get_node_type(name) != PLIST_STRING)
        return {};
    return QString::fromUtf8(nodeBytes(name));
}

QStringList KeyedUnarchiver::classChain(ArchiveRef object) const
{
    plist_t cls = d->object(d->refFromNode(dictItem(d->object(object), "$class")));
    plist_t chain = dictItem(cls, "$classes");
    QStringList names;
    if (!chain || plist_get_node_type(chain) != PLIST_ARRAY)
        return names;
    forEachItem(chain, [&names](plist_t item) {
        if (plist_get_node_type(item) == PLIST_STRING)
            names.append(QString::fromUtf8(nodeBytes(item)));
    });
    return names;
}

QString KeyedUnarchiver::stringValue(ArchiveRef object) const
{
    if (auto it = d->strings.constFind(object.uid); it != d->strings.constEnd())
        return *it;
    const QString value = uncachedString(object);
    d->strings.insert(object.uid, value);
    return value;
}

QString KeyedUnarchiver::uncachedString(ArchiveRef object) const
{
    if (auto it = d->loneSurrogateStrings.constFind(object.uid); it != d->loneSurrogateStrings.constEnd())
        return *it;
    plist_t node = d->object(object);
    if (!node)
        return {};
    if (plist_get_node_type(node) == PLIST_STRING)
        return QString::fromUtf8(nodeBytes(node));
    // The record form of mutable strings; its text is inline or one plain string away.
    plist_t text = dictItem(node, "NS.string");
    if (text && plist_get_node_type(text) == PLIST_UID) {
        const ArchiveRef ref = d->refFromNode(text);
        if (auto it = d->loneSurrogateStrings.constFind(ref.uid); it != d->loneSurrogateStrings.constEnd())
            return *it;
        text = d->object(ref);
    }
    if (text && plist_get_node_type(text) == PLIST_STRING)
        return QString::fromUtf8(nodeBytes(text));
    return {};
}

std::optional<double> KeyedUnarchiver::numberValue(ArchiveRef object) const
{
    return nodeNumber(d->object(object));
}

QUrl KeyedUnarchiver::urlValue(ArchiveRef object) const
{
    plist_t node = d->object(object);
    plist_t relativeNode = dictItem(node, "NS.relative");
    if (!relativeNode)
        return {};
    const Private::Nesting nesting(d.get());
    if (!nesting.ok)
        return {};
    QString relative;
    if (plist_get_node_type(relativeNode) == PLIST_UID)
        relative = stringValue(d->refFromNode(relativeNode));
    else if (plist_get_node_type(relativeNode) == PLIST_STRING)
        relative = QString::fromUtf8(nodeBytes(relativeNode));
    if (relative.isNull())
        return {};
    const QUrl url(relative);
    const ArchiveRef base = d->refFromNode(dictItem(node, "NS.base"));
    if (base.isNil())
        return url;
    const QUrl baseUrl = urlValue(base);
    return baseUrl.isValid() && !baseUrl.isEmpty() ? baseUrl.resolved(url) : url;
}

Color KeyedUnarchiver::colorValue(ArchiveRef object) const
{
    if (auto it = d->colors.constFind(object.uid); it != d->colors.constEnd())
        return *it;
    const Color value = uncachedColor(object);
    d->colors.insert(object.uid, value);
    return value;
}

Color KeyedUnarchiver::uncachedColor(ArchiveRef object) const
{
    plist_t node = d->object(object);
    if (!node || plist_get_node_type(node) != PLIST_DICT)
        return {};
    const Private::Nesting nesting(d.get());
    if (!nesting.ok)
        return {};

    const std::optional<double> spaceNumber = nodeNumber(dictItem(node, "NSColorSpace"));
    const int space =
        spaceNumber && std::isfinite(*spaceNumber) && std::fabs(*spaceNumber) < 1e6 ? int(*spaceNumber) : 0;
    if (space == 6) {
        // A named catalog colour; the catalog is the platform's, so take the stored fallback.
        return colorValue(d->refFromNode(dictItem(node, "NSColor")));
    }

    auto components = [&](const char* key) {
        return parseComponents(nodeBytes(d->inlineOrReferenced(dictItem(node, key))));
    };
    QList<double> c = components("NSComponents");
    const bool haveComponents = !c.isEmpty();
    auto alphaAt = [&c](qsizetype i) { return c.size() > i ? c[i] : 1.0; };

    switch (space) {
    case 1:
    case 2:
        if (!haveComponents)
            c = components("NSRGB");
        if (c.size() < 3)
            return {};
        return space == 1 ? Color::calibratedRGB(c[0], c[1], c[2], alphaAt(3))
                          : Color::deviceRGB(c[0], c[1], c[2], alphaAt(3));
    case 3:
    case 4:
        if (!haveComponents)
            c = components("NSWhite");
        if (c.isEmpty())
            return {};
        return space == 3 ? Color::calibratedWhite(c[0], alphaAt(1)) : Color::deviceWhite(c[0], alphaAt(1));
    case 5:
        if (!haveComponents)
            c = components("NSCMYK");
        if (c.size() < 4)
            return {};
        return Color::deviceRGB((1 - c[0]) * (1 - c[3]), (1 - c[1]) * (1 - c[3]), (1 - c[2]) * (1 - c[3]),
                                alphaAt(4));
    default:
        // A custom colour space: the component count tells grey from RGB.
        if (c.size() == 1 || c.size() == 2)
            return Color::calibratedWhite(c[0], alphaAt(1));
        if (c.size() == 3 || c.size() == 4)
            return Color::calibratedRGB(c[0], c[1], c[2], alphaAt(3));
        return {};
    }
}

Gradient KeyedUnarchiver::gradientValue(ArchiveRef object) const
{
    if (auto it = d->gradients.constFind(object.uid); it != d->gradients.constEnd())
        return *it;
    const Gradient value = uncachedGradient(object);
    d->gradients.insert(object.uid, value);
    return value;
}

Gradient KeyedUnarchiver::uncachedGradient(ArchiveRef object) const
{
    plist_t node = d->object(object);
    if (!node || plist_get_node_type(node) != PLIST_DICT)
        return {};
    const Private::Nesting nesting(d.get());
    if (!nesting.ok)
        return {};

    // Colours and locations of one array record each; false when some element is of another kind.
    auto colorsOf = [&](ArchiveRef array, QList<Color>* colors) {
        QList<Color> found;
        for (ArchiveRef e : arrayElements(array, kMaxGradientStops)) {
            const Color c = colorValue(e);
            if (!c.isValid())
                return false;
            found.append(c);
        }
        *colors = found;
        return !found.isEmpty();
    };
    auto locationsOf = [&](plist_t value, QList<double>* locations) {
        QList<double> found;
        if (value && plist_get_node_type(value) == PLIST_ARRAY) { // an inline list of numbers
            const uint32_t n = plist_array_get_size(value);
            if (qsizetype(n) > kMaxGradientStops)
                return false;
            bool numbers = true;
            forEachItem(value, [&](plist_t item) {
                const std::optional<double> v = nodeNumber(item);
                numbers = numbers && v && std::isfinite(*v);
                if (numbers)
                    found.append(*v);
            });
            if (!numbers)
                return false;
        } else {
            const ArchiveRef array = d->refFromNode(value);
            if (className(array).isEmpty() || !dictItem(d->object(array), "NS.objects"))
                return false;
            for (ArchiveRef e : arrayElements(array, kMaxGradientStops)) {
                const std::optional<double> v = numberValue(e);
                if (!v || !std::isfinite(*v))
                    return false;
                found.append(*v);
            }
        }
        *locations = found;
        return !found.isEmpty();
    };

    QList<Color> colors;
    QList<double> locations;
    colorsOf(d->refFromNode(dictItem(node, "NSColors")), &colors);
    locationsOf(dictItem(node, "NSLocations"), &locations);
    if (colors.isEmpty() || locations.isEmpty()) {
        // Unknown keys: take the first array of colours and the first array of numbers.
        plist_dict_iter it = nullptr;
        plist_dict_new_iter(node, &it);
        for (int searched = 0; searched < kMaxGradientKeysSearched; ++searched) {
            char* key = nullptr;
            plist_t value = nullptr;
            plist_dict_next_item(node, it, &key, &value);
            free(key);
            if (!value)
                break;
            if (colors.isEmpty())
                colorsOf(d->refFromNode(value), &colors);
            if (locations.isEmpty())
                locationsOf(value, &locations);
        }
        free(it);
    }
    if (colors.isEmpty())
        return {};
    if (locations.isEmpty()) {
        for (qsizetype i = 0; i < colors.size(); ++i)
            locations.append(colors.size() > 1 ? double(i) / double(colors.size() - 1) : 0.0);
    }

    const std::optional<double> spaceNumber = nodeNumber(dictItem(node, "NSColorSpace"));
    const Color::Space space =
        spaceNumber && *spaceNumber == 2.0 ? Color::Space::DeviceRGB : Color::Space::CalibratedRGB;
    QList<GradientStop> stops;
    const qsizetype n = std::min(colors.size(), locations.size());
    for (qsizetype i = 0; i < n; ++i)
        stops.append({colors[i], locations[i]});
    return Gradient(stops, space);
}

QImage KeyedUnarchiver::imageValue(ArchiveRef object) const
{
    if (auto it = d->images.constFind(object.uid); it != d->images.constEnd())
        return *it;
    const QImage value = uncachedImage(object);
    d->images.insert(object.uid, value);
    return value;
}

QImage KeyedUnarchiver::uncachedImage(ArchiveRef object) const
{
    plist_t node = d->object(object);
    if (!node)
        return {};
    const Private::Nesting nesting(d.get());
    if (!nesting.ok)
        return {};

    QByteArray bytes;
    if (plist_get_node_type(node) == PLIST_DATA) {
        bytes = nodeBytes(node);
    } else if (plist_t tiff = dictItem(node, "NSTIFFRepresentation")) {
        bytes = nodeBytes(d->inlineOrReferenced(tiff));
    } else if (plist_t reps = dictItem(node, "NSReps")) {
        // [[0, rep], ...] or [rep, ...]: the first element that yields an image.
        for (ArchiveRef entry : arrayElements(d->refFromNode(reps), kMaxImageReps)) {
            QList<ArchiveRef> candidates = arrayElements(entry, kMaxImageReps);
            if (candidates.isEmpty())
                candidates = {entry};
            for (ArchiveRef candidate : candidates) {
                if (dictItem(d->object(candidate), "NSTIFFRepresentation")) {
                    const QImage image = imageValue(candidate);
                    if (!image.isNull())
                        return image;
                }
            }
        }
        return {};
    }
    if (bytes.isEmpty())
        return {};

    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const QByteArray format = reader.format();
    if (format != "tiff" && format != "png")
        return {};
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > maxImageSide || size.height() > maxImageSide)
        return {};
    QImage image;
    if (!reader.read(&image) || image.width() > maxImageSide || image.height() > maxImageSide)
        return {};
    return image;
}

QList<ArchiveRef> KeyedUnarchiver::arrayElements(ArchiveRef object, qsizetype maxCount) const
{
    return d->uidList(dictItem(d->object(object), "NS.objects"), maxCount);
}

qsizetype KeyedUnarchiver::elementCount(ArchiveRef object) const
{
    plist_t array = dictItem(d->object(object), "NS.objects");
    return array && plist_get_node_type(array) == PLIST_ARRAY ? qsizetype(plist_array_get_size(array)) : 0;
}

QList<std::pair<ArchiveRef, ArchiveRef>> KeyedUnarchiver::dictionaryEntries(ArchiveRef object,
                                                                            qsizetype maxCount) const
{
    plist_t node = d->object(object);
    const QList<ArchiveRef> keys = d->uidList(dictItem(node, "NS.keys"), maxCount);
    const QList<ArchiveRef> values = d->uidList(dictItem(node, "NS.objects"), maxCount);
    QList<std::pair<ArchiveRef, ArchiveRef>> entries;
    const qsizetype n = std::min(keys.size(), values.size());
    entries.reserve(n);
    for (qsizetype i = 0; i < n; ++i)
        entries.append({keys[i], values[i]});
    return entries;
}

} // namespace qm
