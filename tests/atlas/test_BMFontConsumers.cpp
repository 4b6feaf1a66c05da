// Our BMFont text and XML files read by public parsers that games and engines use: every char
// and kerning pair must come back with the values written.

#include "tests/atlas/DescriptorFixture.h"
#include "tests/support/TestSupport.h"

#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace qm;

namespace {

/// The char lines of our text format as (id -> "x y width height xoffset yoffset xadvance").
QMap<int, QString> writtenChars(const QString& text)
{
    QMap<int, QString> chars;
    static const QRegularExpression line(QStringLiteral(
        "^char id=(\\d+) x=(-?\\d+) y=(-?\\d+) width=(-?\\d+) height=(-?\\d+) xoffset=(-?\\d+) yoffset=(-?\\d+) "
        "xadvance=(-?\\d+) page=0 chnl=0$"),
                                         QRegularExpression::MultilineOption);
    for (auto it = line.globalMatch(text); it.hasNext();) {
        const auto m = it.next();
        QStringList values;
        for (int i = 2; i <= 8; ++i)
            values.append(m.captured(i));
        chars.insert(m.captured(1).toInt(), values.join(QLatin1Char(' ')));
    }
    return chars;
}

QMap<int, QString> parsedChars(const QJsonObject& font)
{
    QMap<int, QString> chars;
    for (const QJsonValue& v : font.value(QStringLiteral("chars")).toArray()) {
        const QJsonObject c = v.toObject();
        QStringList values;
        for (const char* key : {"x", "y", "width", "height", "xoffset", "yoffset", "xadvance"})
            values.append(QString::number(c.value(QLatin1String(key)).toInt()));
        chars.insert(c.value(QStringLiteral("id")).toInt(), values.join(QLatin1Char(' ')));
    }
    return chars;
}

QStringList parsedKernings(const QJsonObject& font)
{
    QStringList pairs;
    for (const QJsonValue& v : font.value(QStringLiteral("kernings")).toArray()) {
        const QJsonObject k = v.toObject();
        pairs.append(QStringLiteral("%1 %2 %3")
                         .arg(k.value(QStringLiteral("first")).toInt())
                         .arg(k.value(QStringLiteral("second")).toInt())
                         .arg(k.value(QStringLiteral("amount")).toInt()));
    }
    return pairs;
}

QJsonObject parse(const QString& text, const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return {};
    f.write(text.toUtf8());
    f.close();
    QString error;
    const QJsonObject font = test::readWithBMFontParser(path, &error);
    EXPECT_TRUE(error.isEmpty()) << qPrintable(error);
    return font;
}

} // namespace

TEST(BMFontConsumers, TextAndXmlReadBackWithTheWrittenValues)
{
    test::DescriptorFixture f;
    QTemporaryDir dir;
    for (int scale : {100, 50}) {
        const QString text = f.view.getFontplist(scale, QStringLiteral("demo.png"), 1, QStringLiteral("DejaVu Sans"), scale);
        const QMap<int, QString> written = writtenChars(text);
        ASSERT_EQ(written.size(), 7); // every placed glyph; "W" did not fit

        const QJsonObject fromText = parse(text, dir.filePath(QStringLiteral("t.fnt")));
        const QJsonObject fromXml = parse(
            f.view.getFontplist(scale, QStringLiteral("demo.png"), 3, QStringLiteral("DejaVu Sans"), scale),
            dir.filePath(QStringLiteral("x.fnt")));
        for (const QJsonObject& font : {fromText, fromXml}) {
            EXPECT_EQ(parsedChars(font), written) << scale;
            EXPECT_EQ(parsedKernings(font), scale == 100 ? QStringList({"65 86 -2", "84 111 -3"})
                                                         : QStringList({"65 86 -1", "84 111 -1"}));
            EXPECT_EQ(font.value(QStringLiteral("pages")).toArray().first().toString(), QStringLiteral("demo.png"));
            const QJsonObject common = font.value(QStringLiteral("common")).toObject();
            EXPECT_EQ(common.value(QStringLiteral("lineHeight")).toInt(), scale == 100 ? 39 : 20);
            EXPECT_EQ(common.value(QStringLiteral("base")).toInt(), scale == 100 ? 33 : 17);
            EXPECT_EQ(common.value(QStringLiteral("scaleW")).toInt(), scale == 100 ? 39 : 20);
            EXPECT_EQ(font.value(QStringLiteral("info")).toObject().value(QStringLiteral("face")).toString(),
                      QStringLiteral("DejaVu Sans"));
        }
    }
}
