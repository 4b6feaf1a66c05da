#pragma once

#include "Platform/archive/KeyedArchive.h"
#include "Platform/graphics/Color.h"
#include "Platform/graphics/Gradient.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QSizeF>
#include <QUrl>

#include <functional>
#include <memory>

namespace qm {

/// Writes an object graph in the platform's keyed-archive form: a binary property list with
/// "$archiver", "$version", "$top" {"root": UID} and "$objects", where every object is stored
/// once and referred to by UID.
///
/// Objects are added with the builder functions (string(), color(), record(), ...), which return
/// the object's reference; equal strings, numbers, URLs, colours and gradients are stored once.
/// Keyed records get their fields from the typed coders (encodeInt(), encodeObject(), ...) called
/// inside the function handed to record(). finish() turns the graph into the file's bytes.
class KeyedArchiver
{
public:
    KeyedArchiver();
    ~KeyedArchiver();
    KeyedArchiver(const KeyedArchiver&) = delete;
    KeyedArchiver& operator=(const KeyedArchiver&) = delete;

    // Typed coders: each stores a value under `key` in the record being encoded (inside the
    // function given to record(); elsewhere they do nothing). Keys keep the order of the calls.

    /// 32-bit integer, stored inline as an integer.
    void encodeInt(int32_t value, const QString& key);
    /// Stored inline as a boolean.
    void encodeBool(bool value, const QString& key);
    /// Stored inline as a 4-byte real.
    void encodeFloat(float value, const QString& key);
    /// Raw bytes, stored inline as data.
    void encodeBytes(const QByteArray& value, const QString& key);
    /// The object's UID; a nil reference keeps the key with UID 0.
    void encodeObject(ArchiveRef object, const QString& key);
    /// A null string is nil; an empty one is an object.
    void encodeObject(const QString& value, const QString& key) { encodeObject(string(value), key); }
    /// An empty URL is nil.
    void encodeObject(const QUrl& value, const QString& key) { encodeObject(url(value), key); }
    /// A colour of no colour space is nil.
    void encodeObject(const Color& value, const QString& key) { encodeObject(color(value), key); }
    /// A gradient without stops is nil.
    void encodeObject(const Gradient& value, const QString& key) { encodeObject(gradient(value), key); }
    /// A null image is nil.
    void encodeObject(const QImage& value, const QString& key) { encodeObject(image(value), key); }

    // Builders: each adds an object and returns its reference.

    /// A plain string. Null strings give nil. Unpaired surrogates are kept as UTF-16 code units.
    ArchiveRef string(const QString& value);
    /// Plain numbers.
    ArchiveRef number(int64_t value);
    ArchiveRef number(double value);
    ArchiveRef boolean(bool value);
    /// An NSURL record {"NS.base": nil, "NS.relative": the URL text}; empty URLs give nil.
    ArchiveRef url(const QUrl& value);
    /// An NSColor record: "NSColorSpace" 1..4 (the colour's space; none gives nil) and the
    /// components as text under "NSRGB" or "NSWhite" (see colorComponentsText()).
    ArchiveRef color(const Color& value);
    /// An NSGradient record: "NSColors" (array of colours), "NSLocations" (array of numbers),
    /// "NSColorSpace" (1 calibrated or 2 device RGB). A gradient without stops gives nil.
    ArchiveRef gradient(const Gradient& value);
    /// An NSImage record {"NSSize": "{w, h}", "NSReps": [[0, NSBitmapImageRep]]}, the bitmap rep
    /// holding the pixels as TIFF under "NSTIFFRepresentation". `size` is the image's size in
    /// points, its pixel size when empty. A null image gives nil; a failed TIFF encoding gives nil
    /// and makes finish() fail.
    ArchiveRef image(const QImage& value, QSizeF size = {});
    /// An array record {"NS.objects": [UIDs]}.
    ArchiveRef array(const QList<ArchiveRef>& elements, const ArchiveClass& cls = ArchiveClass::array());
    /// A dictionary record {"NS.keys": [UIDs], "NS.objects": [UIDs]}; `keys` and `values` pair up
    /// by position (the shorter list decides the count).
    ArchiveRef dictionary(const QList<ArchiveRef>& keys, const QList<ArchiveRef>& values,
                          const ArchiveClass& cls = ArchiveClass::dictionary());
    /// A keyed record of class `cls`: its slot is taken first, then `encode` runs with the typed
    /// coders writing into this record (objects it adds come after it), then "$class" is set.
    ArchiveRef record(const ArchiveClass& cls, const std::function<void(KeyedArchiver&)>& encode);

    /// The archive with `root` under "$top" {"root": ...} as a binary property list, or empty
    /// bytes when an object could not be encoded (errorString() says which). Call it once.
    QByteArray finish(ArchiveRef root);
    QString errorString() const;

    /// Components as stored under "NSRGB"/"NSWhite": decimals printed like "%.10g", separated by
    /// single spaces, alpha left out when it is 1, ended by a NUL byte.
    static QByteArray colorComponentsText(const Color& value);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace qm
