#include "Platform/archive/KeyedArchiver.h"
#include "Platform/archive/KeyedUnarchiver.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImageWriter>

#include <cmath>

using namespace qm;

namespace {

/// Archives one record of class "Thing" (superclass "Base") whose fields `encode` writes, and
/// returns the archive's bytes.
QByteArray archiveRecord(const std::function<void(KeyedArchiver&)>& encode)
{
    KeyedArchiver archiver;
    const ArchiveRef root = archiver.record({QStringLiteral("Thing"), {QStringLiteral("Base")}}, encode);
    const QByteArray bytes = archiver.finish(root);
    EXPECT_FALSE(bytes.isEmpty()) << archiver.errorString().toStdString();
    return bytes;
}

/// Decodes the root record of `bytes` with `decode`; fails the test when that is impossible.
void readRecord(const QByteArray& bytes, const std::function<void(KeyedUnarchiver&)>& decode)
{
    KeyedUnarchiver unarchiver(bytes);
    ASSERT_TRUE(unarchiver.isValid()) << unarchiver.errorString().toStdString();
    EXPECT_TRUE(unarchiver.decodeRecord(unarchiver.rootObject(), decode));
}

void expectColorNear(const Color& actual, const Color& expected)
{
    EXPECT_EQ(actual.space(), expected.space());
    EXPECT_NEAR(actual.redComponent(), expected.redComponent(), 1e-9);
    EXPECT_NEAR(actual.greenComponent(), expected.greenComponent(), 1e-9);
    EXPECT_NEAR(actual.blueComponent(), expected.blueComponent(), 1e-9);
    EXPECT_NEAR(actual.alphaComponent(), expected.alphaComponent(), 1e-9);
}

// A tiny binary property list writer for hostile inputs: objects are given as encoded bytes,
// references and offsets are `width` bytes wide.
struct RawPlist
{
    int width = 2;
    QList<QByteArray> objects;

    QByteArray ref(quint64 index) const
    {
        QByteArray out;
        for (int i = width - 1; i >= 0; --i)
            out += char((index >> (8 * i)) & 0xFF);
        return out;
    }
    int add(const QByteArray& object)
    {
        objects.append(object);
        return int(objects.size() - 1);
    }
    QByteArray array(const QList<int>& refs) const
    {
        QByteArray out(1, char(0xA0 | qMin(refs.size(), qsizetype(15))));
        if (refs.size() >= 15)
            out = QByteArray("\xAF\x11", 2) + char(refs.size() >> 8) + char(refs.size() & 0xFF);
        for (int r : refs)
            out += ref(quint64(r));
        return out;
    }
    QByteArray build(int top = 0, quint64 objectCountOverride = 0) const
    {
        QByteArray out("bplist00");
        QList<quint64> offsets;
        for (const QByteArray& o : objects) {
            offsets.append(quint64(out.size()));
            out += o;
        }
        const quint64 table = quint64(out.size());
        for (quint64 o : offsets)
            out += ref(o);
        QByteArray trailer(6, '\0');
        trailer += char(width);
        trailer += char(width);
        auto be64 = [](quint64 v) {
            QByteArray b;
            for (int i = 7; i >= 0; --i)
                b += char((v >> (8 * i)) & 0xFF);
            return b;
        };
        trailer += be64(objectCountOverride ? objectCountOverride : quint64(objects.size()));
        trailer += be64(quint64(top));
        trailer += be64(table);
        return out + trailer;
    }
};

} // namespace

TEST(KeyedArchive, TypedCodersRoundTripAndMissingKeysReadEmpty)
{
    const QByteArray bytes = archiveRecord([](KeyedArchiver& a) {
        a.encodeInt(-123456, QStringLiteral("negative"));
        a.encodeInt(INT32_MAX, QStringLiteral("max"));
        a.encodeInt(INT32_MIN, QStringLiteral("min"));
        a.encodeBool(true, QStringLiteral("yes"));
        a.encodeFloat(-2.75f, QStringLiteral("float"));
        a.encodeFloat(0.1f, QStringLiteral("tenth"));
        a.encodeObject(QStringLiteral("text"), QStringLiteral("string"));
        a.encodeObject(ArchiveRef{}, QStringLiteral("nil"));
        a.encodeBytes(QByteArray("a\0b", 3), QStringLiteral("bytes"));
    });
    readRecord(bytes, [](KeyedUnarchiver& u) {
        EXPECT_EQ(u.decodeInt(QStringLiteral("negative")), -123456);
        EXPECT_EQ(u.decodeInt(QStringLiteral("max")), INT32_MAX);
        EXPECT_EQ(u.decodeInt(QStringLiteral("min")), INT32_MIN);
        EXPECT_TRUE(u.decodeBool(QStringLiteral("yes")));
        EXPECT_EQ(u.decodeFloat(QStringLiteral("float")), -2.75f);
        EXPECT_EQ(u.decodeFloat(QStringLiteral("tenth")), 0.1f);
        EXPECT_EQ(u.decodeString(QStringLiteral("string")), QStringLiteral("text"));
        EXPECT_EQ(u.decodeBytes(QStringLiteral("bytes")), QByteArray("a\0b", 3));
        // Encoding nil keeps the key; reading it gives nil.
        EXPECT_TRUE(u.containsValue(QStringLiteral("nil")));
        EXPECT_TRUE(u.decodeObject(QStringLiteral("nil")).isNil());
        // Missing keys and wrong types read as empty values.
        EXPECT_FALSE(u.containsValue(QStringLiteral("absent")));
        EXPECT_EQ(u.decodeInt(QStringLiteral("absent")), 0);
        EXPECT_FALSE(u.decodeBool(QStringLiteral("absent")));
        EXPECT_EQ(u.decodeFloat(QStringLiteral("absent")), 0.0f);
        EXPECT_TRUE(u.decodeString(QStringLiteral("absent")).isNull());
        EXPECT_EQ(u.decodeInt(QStringLiteral("string")), 0);
        EXPECT_TRUE(u.decodeString(QStringLiteral("negative")).isNull());
        EXPECT_FALSE(u.decodeColor(QStringLiteral("string")).isValid());
        EXPECT_FALSE(u.decodeGradient(QStringLiteral("float")).isValid());
        // Numbers convert between the coders, as the platform's unarchiver does.
        EXPECT_EQ(u.decodeInt(QStringLiteral("float")), -2);
        EXPECT_TRUE(u.decodeBool(QStringLiteral("negative")));
    });
}

TEST(KeyedArchive, ObjectsRoundTrip)
{
    QImage picture(5, 3, QImage::Format_ARGB32);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x)
            picture.setPixel(x, y, qRgba(40 * x, 80 * y, 7, x == 0 ? 0 : 255));
    picture.setDotsPerMeterX(INT_MIN); // as read from a broken file; the TIFF writer refuses it
    const Gradient gradient({{Color::calibratedRGB(0.1, 0.2, 0.3, 0.5), 0.0},
                             {Color::red(), 0.25},
                             {Color::calibratedWhite(0.75), 1.0}},
                            Color::Space::DeviceRGB);
    const QString unpaired = QString(QChar(char16_t(0xD83D)));
    const QString text = QStringLiteral("Grüße, 世界 😀");

    const QByteArray bytes = archiveRecord([&](KeyedArchiver& a) {
        a.encodeObject(text, QStringLiteral("text"));
        a.encodeObject(unpaired, QStringLiteral("unpaired"));
        a.encodeObject(QString(""), QStringLiteral("empty"));
        a.encodeObject(QUrl(QStringLiteral("file:///home/me/My Fonts/x.ttf")), QStringLiteral("url"));
        a.encodeObject(Color::calibratedRGB(0.2, 0.4, 0.6), QStringLiteral("calibratedRGB"));
        a.encodeObject(Color::deviceRGB(1.0 / 3.0, 0, 1, 0.5), QStringLiteral("deviceRGB"));
        a.encodeObject(Color::calibratedWhite(0.25, 0.125), QStringLiteral("calibratedWhite"));
        a.encodeObject(Color::deviceWhite(1), QStringLiteral("deviceWhite"));
        a.encodeObject(Color(), QStringLiteral("noColor"));
        a.encodeObject(gradient, QStringLiteral("gradient"));
        a.encodeObject(picture, QStringLiteral("image"));
        a.encodeObject(
            a.array({a.string(QStringLiteral("one")), a.number(int64_t(-7)), a.number(2.5), a.boolean(true)}),
            QStringLiteral("array"));
        a.encodeObject(a.dictionary({a.string(QStringLiteral("k1")), a.string(QStringLiteral("k2"))},
                                    {a.number(int64_t(1)), a.string(QStringLiteral("v2"))}),
                       QStringLiteral("dictionary"));
    });
    readRecord(bytes, [&](KeyedUnarchiver& u) {
        EXPECT_EQ(u.decodeString(QStringLiteral("text")), text);
        EXPECT_EQ(u.decodeString(QStringLiteral("unpaired")), unpaired);
        EXPECT_FALSE(u.decodeString(QStringLiteral("empty")).isNull());
        EXPECT_TRUE(u.decodeString(QStringLiteral("empty")).isEmpty());
        EXPECT_EQ(u.decodeUrl(QStringLiteral("url")).toLocalFile(),
                  QStringLiteral("/home/me/My Fonts/x.ttf"));
        expectColorNear(u.decodeColor(QStringLiteral("calibratedRGB")), Color::calibratedRGB(0.2, 0.4, 0.6));
        expectColorNear(u.decodeColor(QStringLiteral("deviceRGB")), Color::deviceRGB(1.0 / 3.0, 0, 1, 0.5));
        expectColorNear(u.decodeColor(QStringLiteral("calibratedWhite")),
                        Color::calibratedWhite(0.25, 0.125));
        expectColorNear(u.decodeColor(QStringLiteral("deviceWhite")), Color::deviceWhite(1));
        EXPECT_TRUE(u.containsValue(QStringLiteral("noColor")));
        EXPECT_FALSE(u.decodeColor(QStringLiteral("noColor")).isValid());

        const Gradient g = u.decodeGradient(QStringLiteral("gradient"));
        ASSERT_EQ(g.numberOfColorStops(), 3);
        EXPECT_EQ(g.colorSpace(), Color::Space::DeviceRGB);
        for (int i = 0; i < 3; ++i) {
            expectColorNear(g.stop(i).color, gradient.stop(i).color);
            EXPECT_EQ(g.stop(i).location, gradient.stop(i).location);
        }

        const QImage image = u.decodeImage(QStringLiteral("image")).convertToFormat(QImage::Format_ARGB32);
        ASSERT_EQ(image.size(), picture.size());
        for (int y = 0; y < 3; ++y)
            for (int x = 1; x < 5; ++x)
                EXPECT_EQ(image.pixel(x, y), picture.pixel(x, y)) << x << "," << y;
        EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);

        const QList<ArchiveRef> elements = u.arrayElements(u.decodeObject(QStringLiteral("array")));
        ASSERT_EQ(elements.size(), 4);
        EXPECT_EQ(u.stringValue(elements[0]), QStringLiteral("one"));
        EXPECT_EQ(u.numberValue(elements[1]), -7.0);
        EXPECT_EQ(u.numberValue(elements[2]), 2.5);
        EXPECT_EQ(u.numberValue(elements[3]), 1.0);
        EXPECT_EQ(u.className(u.decodeObject(QStringLiteral("array"))), QStringLiteral("NSArray"));

        const auto entries = u.dictionaryEntries(u.decodeObject(QStringLiteral("dictionary")));
        ASSERT_EQ(entries.size(), 2);
        EXPECT_EQ(u.stringValue(entries[0].first), QStringLiteral("k1"));
        EXPECT_EQ(u.numberValue(entries[0].second), 1.0);
        EXPECT_EQ(u.stringValue(entries[1].second), QStringLiteral("v2"));
    });
}

TEST(KeyedArchive, SharedObjectsAndClassRecordsAreStoredOnce)
{
    KeyedArchiver a;
    const ArchiveRef s1 = a.string(QStringLiteral("same"));
    const ArchiveRef c1 = a.color(Color::orange());
    const ArchiveRef first = a.record({QStringLiteral("Thing"), {}}, [](KeyedArchiver&) {});
    const ArchiveRef second = a.record({QStringLiteral("Thing"), {}}, [](KeyedArchiver&) {});
    EXPECT_EQ(a.string(QStringLiteral("same")), s1);
    EXPECT_EQ(a.color(Color::orange()), c1);
    EXPECT_NE(a.color(Color::orange().toDeviceRGB()), c1);
    EXPECT_NE(first, second);
    EXPECT_TRUE(a.string(QString()).isNil());
    const QByteArray bytes = a.finish(a.array({first, second, s1, c1}));

    KeyedUnarchiver u(bytes);
    ASSERT_TRUE(u.isValid());
    // "$null", "same", the colour and its class, two records and their one class, the device
    // colour, the array and its class.
    EXPECT_EQ(u.objectCount(), 10);
    EXPECT_EQ(u.stringValue(ArchiveRef{0}), QString());
    EXPECT_EQ(u.classChain(first), (QStringList{QStringLiteral("Thing"), QStringLiteral("NSObject")}));
}

TEST(KeyedArchive, ColourComponentsText)
{
    EXPECT_EQ(KeyedArchiver::colorComponentsText(Color::calibratedRGB(1, 0.5, 0)),
              QByteArray("1 0.5 0\0", 8));
    EXPECT_EQ(KeyedArchiver::colorComponentsText(Color::calibratedWhite(0, 0.9)), QByteArray("0 0.9\0", 6));
    EXPECT_EQ(KeyedArchiver::colorComponentsText(Color::deviceRGB(1.0 / 3.0, 1e-5, 0.123456789012)),
              QByteArray("0.3333333333 1e-05 0.123456789\0", 31));
}

TEST(KeyedArchive, ReadsOtherWritersColourAndGradientForms)
{
    const QByteArray bytes = archiveRecord([](KeyedArchiver& a) {
        auto colorRecord = [&a](const std::function<void(KeyedArchiver&)>& fields) {
            return a.record({QStringLiteral("NSColor"), {}}, fields);
        };
        // "NSComponents" wins over "NSRGB"; no NUL at the end.
        a.encodeObject(colorRecord([](KeyedArchiver& c) {
                           c.encodeInt(1, QStringLiteral("NSColorSpace"));
                           c.encodeBytes("0 0 0", QStringLiteral("NSRGB"));
                           c.encodeBytes("0.5 0.25 1 0.75", QStringLiteral("NSComponents"));
                       }),
                       QStringLiteral("components"));
        // A catalog colour falls back to the colour stored under "NSColor".
        a.encodeObject(colorRecord([](KeyedArchiver& c) {
                           c.encodeInt(6, QStringLiteral("NSColorSpace"));
                           c.encodeObject(QStringLiteral("System"), QStringLiteral("NSCatalogName"));
                           c.encodeObject(QStringLiteral("controlColor"), QStringLiteral("NSColorName"));
                           c.encodeObject(Color::calibratedWhite(0.5), QStringLiteral("NSColor"));
                       }),
                       QStringLiteral("catalog"));
        // A custom colour space: the component count tells grey from RGB.
        a.encodeObject(colorRecord([](KeyedArchiver& c) {
                           c.encodeInt(10, QStringLiteral("NSColorSpace"));
                           c.encodeBytes("0.2 0.4 0.6", QStringLiteral("NSComponents"));
                       }),
                       QStringLiteral("custom"));
        a.encodeObject(colorRecord([](KeyedArchiver& c) {
                           c.encodeInt(2, QStringLiteral("NSColorSpace"));
                           c.encodeBytes("0.5 nonsense 1", QStringLiteral("NSRGB"));
                       }),
                       QStringLiteral("garbled"));
        // A gradient under unknown keys, with no locations at all.
        a.encodeObject(a.record({QStringLiteral("NSGradient"), {}},
                                [](KeyedArchiver& g) {
                                    g.encodeObject(g.array({g.color(Color::red()), g.color(Color::yellow()),
                                                            g.color(Color::orange())}),
                                                   QStringLiteral("NSColorArray"));
                                }),
                       QStringLiteral("gradient"));
        // Mutable strings in their record form.
        a.encodeObject(a.record({QStringLiteral("NSMutableString"), {QStringLiteral("NSString")}},
                                [](KeyedArchiver& s) {
                                    s.encodeObject(QStringLiteral("mutable"), QStringLiteral("NS.string"));
                                }),
                       QStringLiteral("mutableString"));
    });
    readRecord(bytes, [](KeyedUnarchiver& u) {
        expectColorNear(u.decodeColor(QStringLiteral("components")),
                        Color::calibratedRGB(0.5, 0.25, 1, 0.75));
        expectColorNear(u.decodeColor(QStringLiteral("catalog")), Color::calibratedWhite(0.5));
        expectColorNear(u.decodeColor(QStringLiteral("custom")), Color::calibratedRGB(0.2, 0.4, 0.6));
        EXPECT_FALSE(u.decodeColor(QStringLiteral("garbled")).isValid());
        const Gradient g = u.decodeGradient(QStringLiteral("gradient"));
        ASSERT_EQ(g.numberOfColorStops(), 3);
        EXPECT_EQ(g.stop(1).location, 0.5);
        expectColorNear(g.stop(2).color, Color::orange());
        EXPECT_EQ(u.decodeString(QStringLiteral("mutableString")), QStringLiteral("mutable"));
    });
}

TEST(KeyedArchive, RecordCyclesAreRefused)
{
    KeyedArchiver a;
    // The record stores its own UID (the first object after "$null") under "self".
    const ArchiveRef root = a.record({QStringLiteral("Loop"), {}}, [](KeyedArchiver& r) {
        r.encodeObject(ArchiveRef{1}, QStringLiteral("self"));
        r.encodeInt(7, QStringLiteral("value"));
    });
    ASSERT_EQ(root.uid, 1u);
    KeyedUnarchiver u(a.finish(root));
    ASSERT_TRUE(u.isValid());
    int depth = 0;
    std::function<void(KeyedUnarchiver&)> decode = [&](KeyedUnarchiver& c) {
        ++depth;
        EXPECT_FALSE(c.decodeRecord(c.decodeObject(QStringLiteral("self")), decode));
        EXPECT_EQ(c.decodeInt(QStringLiteral("value")), 7);
    };
    EXPECT_TRUE(u.decodeRecord(u.rootObject(), decode));
    EXPECT_EQ(depth, 1);
}

TEST(KeyedArchive, RejectsFilesThatAreNoKeyedArchive)
{
    auto errorOf = [](const QByteArray& bytes) {
        KeyedUnarchiver u(bytes);
        EXPECT_FALSE(u.isValid());
        return u.errorString().toStdString();
    };
    EXPECT_NE(errorOf(QByteArray()).find("not a binary property list"), std::string::npos);
    EXPECT_NE(errorOf("<?xml version=\"1.0\"?><plist><dict/></plist>").find("not a binary property list"),
              std::string::npos);

    RawPlist plain; // a binary plist whose top is an array, not a keyed archive
    plain.add(plain.array({1}));
    plain.add(QByteArray("\x10\x05", 2));
    EXPECT_NE(errorOf(plain.build()).find("not a keyed archive"), std::string::npos);

    // Every truncation and every single corrupted byte of a real archive is either refused
    // with a message or read without harm.
    const QByteArray good = archiveRecord([](KeyedArchiver& a) {
        a.encodeObject(Color::red(), QStringLiteral("c"));
        a.encodeObject(QStringLiteral("s"), QStringLiteral("s"));
        a.encodeInt(3, QStringLiteral("i"));
    });
    for (qsizetype n = 0; n < good.size(); ++n) {
        KeyedUnarchiver u(good.left(n));
        EXPECT_FALSE(u.isValid()) << n;
        EXPECT_FALSE(u.errorString().isEmpty());
    }
    for (qsizetype i = 0; i < good.size(); ++i) {
        for (int flip : {0x01, 0x80, 0xFF}) {
            QByteArray bad = good;
            bad[i] = char(bad[i] ^ flip);
            KeyedUnarchiver u(bad);
            if (!u.isValid()) {
                EXPECT_FALSE(u.errorString().isEmpty());
                continue;
            }
            u.decodeRecord(u.rootObject(), [](KeyedUnarchiver& c) {
                c.decodeColor(QStringLiteral("c"));
                c.decodeString(QStringLiteral("s"));
                c.decodeInt(QStringLiteral("i"));
            });
        }
    }
}

TEST(KeyedArchive, HostilePropertyListsAreRefusedBeforeParsing)
{
    auto errorOf = [](const QByteArray& bytes) {
        KeyedUnarchiver u(bytes);
        EXPECT_FALSE(u.isValid());
        return u.errorString().toStdString();
    };
    {
        RawPlist cycle; // an array that contains itself
        cycle.add(cycle.array({0}));
        EXPECT_NE(errorOf(cycle.build()).find("contains itself"), std::string::npos);
    }
    {
        RawPlist deep; // 200 arrays nested in one another
        for (int i = 0; i < 200; ++i)
            deep.add(deep.array({i + 1}));
        deep.add(QByteArray("\x10\x01", 2));
        EXPECT_NE(errorOf(deep.build()).find("nested deeper"), std::string::npos);
    }
    {
        // Twelve levels of arrays holding the next level sixteen times: a few hundred bytes that
        // would expand to 16^12 objects.
        RawPlist bomb;
        for (int i = 0; i < 12; ++i)
            bomb.add(bomb.array(QList<int>(16, i + 1)));
        bomb.add(QByteArray("\x10\x01", 2));
        EXPECT_NE(errorOf(bomb.build()).find("expands to more than"), std::string::npos);
    }
    {
        RawPlist huge; // an array claiming two billion elements
        huge.add(QByteArray("\xAF\x12\x7F\xFF\xFF\xFF", 6));
        EXPECT_NE(errorOf(huge.build()).find("malformed"), std::string::npos);
    }
    {
        RawPlist outOfRange; // a reference past the object table
        outOfRange.add(outOfRange.array({5}));
        EXPECT_NE(errorOf(outOfRange.build()).find("missing object"), std::string::npos);
    }
    {
        RawPlist lying; // a trailer claiming more objects than the offset table holds
        lying.add(QByteArray("\x10\x01", 2));
        EXPECT_NE(errorOf(lying.build(0, 1'000'000'000)).find("offset table"), std::string::npos);
    }
    EXPECT_NE(errorOf(QByteArray(KeyedUnarchiver::maxArchiveSize + 1, 'b')).find("too large"),
              std::string::npos);
}

TEST(KeyedArchive, OutOfRangeUidsReadAsNil)
{
    KeyedArchiver a;
    const ArchiveRef root = a.record({QStringLiteral("Thing"), {}}, [](KeyedArchiver& r) {
        r.encodeObject(ArchiveRef{4000}, QStringLiteral("far"));
        r.encodeObject(r.array({ArchiveRef{4001}, r.string(QStringLiteral("ok"))}), QStringLiteral("array"));
    });
    readRecord(a.finish(root), [](KeyedUnarchiver& u) {
        EXPECT_TRUE(u.containsValue(QStringLiteral("far")));
        EXPECT_TRUE(u.decodeObject(QStringLiteral("far")).isNil());
        const QList<ArchiveRef> elements = u.arrayElements(u.decodeObject(QStringLiteral("array")));
        ASSERT_EQ(elements.size(), 2);
        EXPECT_TRUE(elements[0].isNil());
        EXPECT_EQ(u.stringValue(elements[1]), QStringLiteral("ok"));
    });
}
