// Fonts built in the test (tests/support/TinyFont) as the font service sees them, and fonts
// registered for this process: found by name afterwards, listed as family members, announced
// to the fonts-changed observers.

#include "Platform/text/Font.h"
#include "Platform/text/FontManager.h"
#include "tests/support/TinyFont.h"

#include <QRawFont>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace qm;
using namespace qm::test;

namespace {

TinyFontOptions tinyFont(const QString& family, const QString& style = QStringLiteral("Regular"))
{
    TinyFontOptions o;
    o.family = family;
    o.style = style;
    o.postScriptName = QString(family).remove(QLatin1Char(' ')) + QLatin1Char('-') + style;
    o.weightClass = style == QLatin1String("Bold") ? 700 : 400;
    o.glyphs = defaultTinyGlyphs();
    return o;
}

} // namespace

TEST(TinyFont, LoadsWithTheMetricsItWasBuiltWith)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    TinyFontOptions options = tinyFont(QStringLiteral("Quillmark Tiny Metrics"));
    options.unitsPerEm = 2048;
    options.ascender = 1600;
    options.descender = -448;
    const QString path = dir.filePath(QStringLiteral("tiny.ttf"));
    ASSERT_TRUE(writeTinyFont(path, options));

    const Font font = Font::fromFile(path, 20.48); // 1 pixel = 100 font units
    ASSERT_FALSE(font.isNull());
    EXPECT_EQ(font.familyName(), options.family);
    EXPECT_EQ(font.styleName(), QStringLiteral("Regular"));
    EXPECT_EQ(font.postScriptName(), QStringLiteral("QuillmarkTinyMetrics-Regular"));
    EXPECT_EQ(font.unitsPerEm(), 2048);
    EXPECT_DOUBLE_EQ(font.ascender(), 16.0);
    EXPECT_DOUBLE_EQ(font.descender(), -4.48);

    // Glyphs 1.. in the order given, each a rectangle with the advance given.
    for (int i = 0; i < options.glyphs.size(); ++i) {
        const TinyGlyph& g = options.glyphs[i];
        SCOPED_TRACE(QString(QChar(g.character)).toStdString());
        EXPECT_EQ(font.glyphForCharacter(g.character), quint32(i + 1));
        EXPECT_DOUBLE_EQ(font.advance(i + 1), g.advance / 100.0);
        const QRectF expected = g.box.isEmpty() ? QRectF()
                                                : QRectF(g.box.x() / 100.0, g.box.y() / 100.0,
                                                         g.box.width() / 100.0, g.box.height() / 100.0);
        EXPECT_EQ(font.glyphBoundingBox(i + 1), expected);
        EXPECT_EQ(font.glyphPath(i + 1).boundingRect(), expected);
    }
    EXPECT_EQ(font.glyphForCharacter(u'B'), 0u);

    // Qt's own reader of the same file agrees on the outline (y down there).
    QRawFont raw(path, 20.48);
    ASSERT_TRUE(raw.isValid());
    const QList<quint32> ids = raw.glyphIndexesForString(QStringLiteral("o"));
    ASSERT_EQ(ids.size(), 1);
    EXPECT_EQ(ids[0], 4u);
    const QRectF rawBox = raw.pathForGlyph(ids[0]).boundingRect();
    constexpr double kFixed = 1.0 / 64; // Qt keeps outlines in 26.6 fixed point
    EXPECT_NEAR(rawBox.left(), 0.4, kFixed);
    EXPECT_NEAR(rawBox.right(), 4.6, kFixed);
    EXPECT_NEAR(rawBox.top(), -5.0, kFixed);
    EXPECT_NEAR(rawBox.bottom(), 0.0, kFixed);
}

TEST(TinyFont, CarriesRawTablesAsGiven)
{
    QTemporaryDir dir;
    TinyFontOptions options = tinyFont(QStringLiteral("Quillmark Tiny Tables"));
    const QByteArray cmap =
        cmapTable({{1, 0, cmapFormat0({{'A', 2}, {'V', 1}})}, {3, 1, cmapFormat4Mapping({{u'A', 1}})}});
    const QByteArray kern = kernTable({kernFormat0({{1, 2, -80}})});
    options.rawTables["cmap"] = cmap;
    options.rawTables["kern"] = kern;
    options.rawTables["post"] = QByteArray(); // removed
    const QString path = dir.filePath(QStringLiteral("tables.ttf"));
    ASSERT_TRUE(writeTinyFont(path, options));

    const Font font = Font::fromFile(path, 12);
    ASSERT_FALSE(font.isNull());
    EXPECT_EQ(font.tableData("cmap"), cmap);
    EXPECT_EQ(font.tableData("kern"), kern);
    EXPECT_TRUE(font.tableData("post").isEmpty());
    // FreeType reads the replaced cmap: 'A' now comes from the 3/1 subtable only.
    EXPECT_EQ(font.glyphForCharacter(u'A'), 1u);
    EXPECT_EQ(font.glyphForCharacter(u'V'), 0u);
    EXPECT_EQ(QRawFont(path, 12).glyphIndexesForString(QStringLiteral("A")).value(0), 1u);
}

TEST(FontRegistration, RegisteredFamilyIsFoundByNameAndListed)
{
    QTemporaryDir dir;
    const QString family = QStringLiteral("Quillmark Tiny Registered");
    const QString regularPath = dir.filePath(QStringLiteral("regular.ttf"));
    const QString boldPath = dir.filePath(QStringLiteral("bold.ttf"));
    ASSERT_TRUE(writeTinyFont(regularPath, tinyFont(family)));
    ASSERT_TRUE(writeTinyFont(boldPath, tinyFont(family, QStringLiteral("Bold"))));

    // Unknown before registration; the failed look-up must not be remembered afterwards.
    EXPECT_TRUE(Font::fromName(family, 30).isNull());
    EXPECT_TRUE(FontManager::availableMembersOfFontFamily(family).isEmpty());

    int notified = 0;
    const int observer = FontManager::addFontsChangedObserver([&] { ++notified; });
    // Bold first, so the member order below comes from the weights, not from registration.
    ASSERT_TRUE(FontManager::registerFontsForFile(boldPath));
    EXPECT_EQ(notified, 1);
    ASSERT_TRUE(FontManager::registerFontsForFile(regularPath));
    EXPECT_EQ(notified, 2);

    const Font font = Font::fromName(family, 30);
    ASSERT_FALSE(font.isNull());
    EXPECT_EQ(font.filePath(), regularPath);
    EXPECT_EQ(font.size(), 30);
    EXPECT_EQ(font.glyphForCharacter(u'V'), 2u);
    EXPECT_EQ(Font::fromName(QStringLiteral("QuillmarkTinyRegistered-Bold"), 30).filePath(), boldPath);
    EXPECT_TRUE(FontManager::availableFontFamilies().contains(family));

    const QList<FontMember> members = FontManager::availableMembersOfFontFamily(family);
    ASSERT_EQ(members.size(), 2);
    EXPECT_EQ(members[0].postScriptName, QStringLiteral("QuillmarkTinyRegistered-Regular"));
    EXPECT_EQ(members[0].styleName, QStringLiteral("Regular"));
    EXPECT_EQ(members[0].weight, 5);
    EXPECT_EQ(members[1].postScriptName, QStringLiteral("QuillmarkTinyRegistered-Bold"));
    EXPECT_EQ(members[1].weight, 9);
    EXPECT_TRUE(members[1].traits & BoldTrait);
    EXPECT_EQ(members[1].filePath, boldPath);

    // A removed observer hears nothing; a refused file notifies no one.
    FontManager::removeFontsChangedObserver(observer);
    const QString otherPath = dir.filePath(QStringLiteral("other.ttf"));
    ASSERT_TRUE(writeTinyFont(otherPath, tinyFont(QStringLiteral("Quillmark Tiny Other"))));
    int lateNotified = 0;
    const int late = FontManager::addFontsChangedObserver([&] { ++lateNotified; });
    EXPECT_FALSE(FontManager::registerFontsForFile(dir.filePath(QStringLiteral("missing.ttf"))));
    EXPECT_EQ(lateNotified, 0);
    EXPECT_TRUE(FontManager::registerFontsForFile(otherPath));
    EXPECT_EQ(notified, 2);
    EXPECT_EQ(lateNotified, 1);
    FontManager::removeFontsChangedObserver(late);
    EXPECT_FALSE(Font::fromName(QStringLiteral("Quillmark Tiny Other"), 12).isNull());
}
