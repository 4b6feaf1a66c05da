#include "Platform/archive/BinaryPlistScan.h"

#include <vector>

namespace qm::archive_detail {

namespace {

constexpr qsizetype kHeaderSize = 8;   // "bplist00"
constexpr qsizetype kTrailerSize = 32; // sizes, object count, top object, offset-table offset

struct Cursor
{
    const uchar* bytes;
    uint64_t size;

    /// Reads `width` (1..8) big-endian bytes at `at`; false when they do not fit below `end`.
    bool readUInt(uint64_t at, unsigned width, uint64_t end, uint64_t* value) const
    {
        if (width == 0 || width > 8 || end > size || at > end || width > end - at)
            return false;
        uint64_t v = 0;
        for (unsigned i = 0; i < width; ++i)
            v = (v << 8) | bytes[at + i];
        *value = v;
        return true;
    }
};

enum : uint8_t { Unvisited, Active, Done };

/// Per object: walk state and the size of its expanded tree, saturated just above the limits
/// (which fit in 32 bits) to keep the table small.
struct Node
{
    uint8_t state = Unvisited;
    uint32_t expandedObjects = 0;
    uint32_t expandedBytes = 0;
};

/// One object's marker, decoded: its payload bounds and where its references start.
struct Object
{
    int type = 0;
    uint64_t payloadStart = 0;
    uint64_t payloadBytes = 0; ///< bytes of scalar payload (strings, data, numbers)
    uint64_t refsStart = 0;
    uint64_t refCount = 0; ///< dictionaries: keys then values, 2 x entries
    uint64_t count = 0;
};

uint64_t saturatingAdd(uint64_t a, uint64_t b)
{
    return a > UINT64_MAX - b ? UINT64_MAX : a + b;
}

QString objectName(uint64_t index)
{
    return QStringLiteral("object %1").arg(index);
}

} // namespace

PlistScan scanBinaryPlist(const QByteArray& data, const PlistLimits& limits)
{
    PlistScan scan;
    auto fail = [&scan](const QString& message) {
        scan.ok = false;
        scan.error = message;
        scan.archiveObjects.clear();
        scan.loneSurrogateStrings.clear();
        return scan;
    };

    if (data.size() > limits.maxFileSize)
        return fail(QStringLiteral("file is too large (%1 bytes, at most %2 are read)")
                        .arg(data.size())
                        .arg(limits.maxFileSize));
    if (data.size() < kHeaderSize + kTrailerSize || !data.startsWith("bplist00"))
        return fail(QStringLiteral("not a binary property list"));

    const Cursor in{reinterpret_cast<const uchar*>(data.constData()), uint64_t(data.size())};
    const uint64_t trailer = in.size - kTrailerSize;
    const unsigned offsetSize = in.bytes[trailer + 6];
    const unsigned refSize = in.bytes[trailer + 7];
    uint64_t objectCount = 0, topObject = 0, tableOffset = 0;
    in.readUInt(trailer + 8, 8, in.size, &objectCount);
    in.readUInt(trailer + 16, 8, in.size, &topObject);
    in.readUInt(trailer + 24, 8, in.size, &tableOffset);

    if (offsetSize < 1 || offsetSize > 8 || refSize < 1 || refSize > 8)
        return fail(QStringLiteral("property list trailer has invalid integer sizes"));
    if (objectCount == 0 || topObject >= objectCount)
        return fail(QStringLiteral("property list has no top object"));
    if (tableOffset < uint64_t(kHeaderSize) || tableOffset > trailer ||
        objectCount > (trailer - tableOffset) / offsetSize)
        return fail(QStringLiteral("property list offset table lies outside the file"));

    if (objectCount > limits.maxExpandedObjects)
        return fail(QStringLiteral("property list has too many objects (%1)").arg(objectCount));

    const uint64_t objectsEnd = tableOffset;
    auto offsetOf = [&](uint64_t index, uint64_t* offset) {
        return in.readUInt(tableOffset + index * offsetSize, offsetSize, trailer, offset) &&
               *offset >= uint64_t(kHeaderSize) && *offset < objectsEnd;
    };

    // Decodes the marker of the object at table index `index`, checking that all of it fits.
    auto decode = [&](uint64_t index, Object* object) -> bool {
        uint64_t at = 0;
        if (!offsetOf(index, &at))
            return false;
        const uint8_t marker = in.bytes[at];
        object->type = marker >> 4;
        const unsigned info = marker & 0x0F;
        uint64_t pos = at + 1;
        auto readCount = [&](uint64_t* count) {
            if (info != 0x0F) {
                *count = info;
                return true;
            }
            if (pos >= objectsEnd)
                return false;
            const uint8_t intMarker = in.bytes[pos];
            if ((intMarker >> 4) != 0x1 || (intMarker & 0x0F) > 3)
                return false;
            const unsigned width = 1u << (intMarker & 0x0F);
            if (!in.readUInt(pos + 1, width, objectsEnd, count))
                return false;
            pos += 1 + width;
            return true;
        };
        auto payload = [&](uint64_t bytes) {
            if (bytes > objectsEnd - pos)
                return false;
            object->payloadStart = pos;
            object->payloadBytes = bytes;
            return true;
        };
        auto refs = [&](uint64_t refCount) {
            if (refCount > (objectsEnd - pos) / refSize)
                return false;
            object->refsStart = pos;
            object->refCount = refCount;
            return true;
        };
        switch (object->type) {
        case 0x0: // null, false, true, fill
            return info == 0x0 || info == 0x8 || info == 0x9 || info == 0xF;
        case 0x1: // integer of 2^info bytes
            return info <= 4 && payload(uint64_t(1) << info);
        case 0x2: // real of 4 or 8 bytes
            return (info == 2 || info == 3) && payload(uint64_t(1) << info);
        case 0x3: // date
            return info == 3 && payload(8);
        case 0x4: // data
        case 0x5: // ASCII string
            return readCount(&object->count) && payload(object->count);
        case 0x6: // UTF-16 string
            return readCount(&object->count) && object->count <= UINT64_MAX / 2 && payload(object->count * 2);
        case 0x8: // UID of info + 1 bytes
            return payload(info + 1);
        case 0xA: // array
            return readCount(&object->count) && refs(object->count);
        case 0xD: // dictionary: keys, then values
            return readCount(&object->count) && object->count <= UINT64_MAX / 2 && refs(object->count * 2);
        default: // sets, 0x7 strings and reserved markers are not read by the parser
            return false;
        }
    };
    auto hasNul = [&](const Object& key) {
        const unsigned unit = key.type == 0x6 ? 2 : 1;
        for (uint64_t i = 0; i < key.payloadBytes; i += unit) {
            if (in.bytes[key.payloadStart + i] == 0 && (unit == 1 || in.bytes[key.payloadStart + i + 1] == 0))
                return true;
        }
        return false;
    };
    auto refAt = [&](const Object& object, uint64_t i, uint64_t* target) {
        return in.readUInt(object.refsStart + i * refSize, refSize, objectsEnd, target) &&
               *target < objectCount;
    };

    // Depth-first walk from the top object with an explicit stack: cycle detection, depth, and
    // the size of the tree the parser would build (shared objects count once per reference).
    std::vector<Node> nodes(objectCount);
    struct Frame
    {
        uint64_t index;
        Object object;
        uint64_t next = 0;
    };
    std::vector<Frame> stack;
    auto push = [&](uint64_t index) -> bool {
        Frame frame{index, {}, 0};
        if (!decode(index, &frame.object))
            return false;
        nodes[index].state = Active;
        stack.push_back(frame);
        return true;
    };
    if (!push(topObject))
        return fail(QStringLiteral("%1 is malformed").arg(objectName(topObject)));
    while (!stack.empty()) {
        Frame& frame = stack.back();
        if (frame.next < frame.object.refCount) {
            uint64_t child = 0;
            if (!refAt(frame.object, frame.next, &child))
                return fail(QStringLiteral("%1 refers to a missing object").arg(objectName(frame.index)));
            ++frame.next;
            if (frame.object.type == 0xD && frame.next <= frame.object.count) {
                // Keys must be strings (the parser refuses anything else) without NUL characters
                // (the parser's key accessor aborts on those).
                Object key;
                if (!decode(child, &key) || (key.type != 0x5 && key.type != 0x6) || hasNul(key))
                    return fail(
                        QStringLiteral("%1 has a key that is not a string").arg(objectName(frame.index)));
            }
            Node& node = nodes[child];
            if (node.state == Active)
                return fail(QStringLiteral("%1 contains itself").arg(objectName(child)));
            if (node.state == Done)
                continue;
            if (int(stack.size()) >= limits.maxDepth)
                return fail(QStringLiteral("objects are nested deeper than %1 levels").arg(limits.maxDepth));
            if (!push(child))
                return fail(QStringLiteral("%1 is malformed").arg(objectName(child)));
            continue;
        }

        // All children done: this object's expanded size is its own plus theirs.
        Node& node = nodes[frame.index];
        const Object& object = frame.object;
        uint64_t objects = 1;
        // UTF-16 becomes UTF-8 of up to 3 bytes per code unit; a node costs its bookkeeping too.
        uint64_t bytes =
            saturatingAdd(object.type == 0x6 ? object.payloadBytes / 2 * 3 : object.payloadBytes, 64);
        for (uint64_t i = 0; i < object.refCount; ++i) {
            uint64_t child = 0;
            refAt(object, i, &child);
            objects = saturatingAdd(objects, nodes[child].expandedObjects);
            bytes = saturatingAdd(bytes, nodes[child].expandedBytes);
        }
        if (objects > limits.maxExpandedObjects)
            return fail(QStringLiteral("property list expands to more than %1 objects")
                            .arg(limits.maxExpandedObjects));
        if (bytes > limits.maxExpandedBytes)
            return fail(
                QStringLiteral("property list expands to more than %1 bytes").arg(limits.maxExpandedBytes));
        node.expandedObjects = uint32_t(objects);
        node.expandedBytes = uint32_t(bytes);
        node.state = Done;

        if (object.type == 0x6) {
            // Keep strings whose UTF-16 holds an unpaired surrogate (see the header).
            QString text(qsizetype(object.count), Qt::Uninitialized);
            bool lone = false;
            for (uint64_t i = 0; i < object.count; ++i) {
                const uint64_t at = object.payloadStart + 2 * i;
                text[qsizetype(i)] = QChar(char16_t((in.bytes[at] << 8) | in.bytes[at + 1]));
            }
            for (qsizetype i = 0; i < text.size(); ++i) {
                const QChar c = text[i];
                if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
                    ++i;
                else if (c.isSurrogate())
                    lone = true;
            }
            if (lone)
                scan.loneSurrogateStrings.insert(frame.index, text);
        }
        stack.pop_back();
    }

    // The "$objects" entry of the top dictionary, to map the parser's nodes to table indices.
    Object top;
    decode(topObject, &top);
    if (top.type == 0xD) {
        for (uint64_t i = 0; i < top.count; ++i) {
            uint64_t keyIndex = 0, valueIndex = 0;
            Object key, value;
            refAt(top, i, &keyIndex);
            refAt(top, top.count + i, &valueIndex);
            decode(keyIndex, &key);
            const QByteArray name =
                key.type == 0x5 ? QByteArray(reinterpret_cast<const char*>(in.bytes + key.payloadStart),
                                             qsizetype(key.payloadBytes))
                                : QByteArray();
            if (name != "$objects" || !decode(valueIndex, &value) || value.type != 0xA)
                continue;
            scan.archiveObjects.reserve(qsizetype(value.count));
            for (uint64_t j = 0; j < value.count; ++j) {
                uint64_t element = 0;
                refAt(value, j, &element);
                scan.archiveObjects.append(element);
            }
            break;
        }
    }
    scan.ok = true;
    return scan;
}

} // namespace qm::archive_detail
