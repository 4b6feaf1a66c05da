// Feeds arbitrary bytes to the keyed unarchiver and, when they pass its checks, asks every
// object of the archive for every kind of value and decodes it as a record.

#include "Platform/archive/KeyedUnarchiver.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace qm;
    KeyedUnarchiver coder(QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size)));
    if (!coder.isValid())
        return 0;
    static const QString keys[] = {QStringLiteral("NSColorSpace"), QStringLiteral("NS.objects"),
                                   QStringLiteral("root"), QStringLiteral("version")};
    const int count = coder.objectCount();
    for (int uid = 0; uid < count; ++uid) {
        const ArchiveRef ref{uint32_t(uid)};
        coder.className(ref);
        coder.classChain(ref);
        coder.stringValue(ref);
        coder.numberValue(ref);
        coder.urlValue(ref);
        coder.colorValue(ref).toQColor();
        const Gradient gradient = coder.gradientValue(ref);
        if (gradient.isValid())
            gradient.interpolatedColorAtLocation(0.5);
        coder.imageValue(ref);
        for (ArchiveRef element : coder.arrayElements(ref, 64))
            coder.stringValue(element);
        coder.dictionaryEntries(ref, 64);
        coder.decodeRecord(ref, [&](KeyedUnarchiver& c) {
            for (const QString& key : keys) {
                c.containsValue(key);
                c.decodeInt(key);
                c.decodeBool(key);
                c.decodeFloat(key);
                c.decodeBytes(key);
                // A record that refers to itself must be refused, not followed.
                c.decodeRecord(c.decodeObject(key),
                               [](KeyedUnarchiver& inner) { inner.decodeInt(QStringLiteral("x")); });
            }
        });
    }
    return 0;
}
