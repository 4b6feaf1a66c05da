// The font service against an independent reader of the same files (Qt's QRawFont) and against
// design values of the Debian test fonts.

#include "Platform/text/Font.h"
#include "Platform/text/FontManager.h"
#include "tests/support/TestSupport.h"

#include <QFile>
#include <QRawFont>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace qm;

namespace {

constexpr double kEps = 1e-9;
constexpr double kFixed = 1.0 / 64;

Font dejaVu(double size = 50)
{
    return Font::fromName(QStringLiteral("DejaVu Sans"), size);
}

} // namespace

TEST(FontLookup, FindsFamilyFullAndPostScriptNames)
{
    const Font family = dejaVu();
    ASSERT_FALSE(family.isNull());
    EXPECT_EQ(family.familyName(), QStringLiteral("DejaVu Sans"));
    EXPECT_EQ(family.postScriptName(), QStringLiteral("DejaVuSans")); // the regular member

    const Font bold = Font::fromName(QStringLiteral("DejaVuSans-Bold"), 50);
    ASSERT_FALSE(bold.isNull());
    EXPECT_EQ(bold.styleName(), QStringLiteral("Bold"));

    const Font fullName = Font::fromName(QStringLiteral("DejaVu Sans Bold"), 50);
    ASSERT_FALSE(fullName.isNull());
    EXPECT_EQ(fullName.postScriptName(), QStringLiteral("DejaVuSans-Bold"));
}

TEST(FontLookup, MetricAliasResolvesToInstalledFamily)
{
    if (!Font::fromName(QStringLiteral("ArialMT"), 12).isNull())
        GTEST_SKIP() << "Arial itself is installed";
    const Font arial = Font::fromName(QStringLiteral("Arial"), 50);
    ASSERT_FALSE(arial.isNull());
    EXPECT_EQ(arial.familyName(), QStringLiteral("Liberation Sans"));
    EXPECT_EQ(FontManager::resolveFamily(QStringLiteral("Arial")), QStringLiteral("Liberation Sans"));

    const QList<FontMember> aliasMembers = FontManager::availableMembersOfFontFamily(QStringLiteral("Arial"));
    EXPECT_FALSE(aliasMembers.isEmpty());
    EXPECT_EQ(aliasMembers, FontManager::availableMembersOfFontFamily(QStringLiteral("Liberation Sans")));
}

TEST(FontLookup, BadInputGivesNullFont)
{
    EXPECT_TRUE(Font::fromName(QStringLiteral("No Such Family 7f3a"), 50).isNull());
    EXPECT_TRUE(Font::fromName(QString(), 50).isNull());
    EXPECT_TRUE(Font::fromFile(QStringLiteral("/nonexistent/font.ttf"), 50).isNull());
    EXPECT_TRUE(FontManager::availableMembersOfFontFamily(QStringLiteral("No Such Family 7f3a")).isEmpty());

    QTemporaryDir dir;
    const QString notAFont = dir.filePath(QStringLiteral("fake.ttf"));
    QFile f(notAFont);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("this is not a font at all, only text pretending to be one");
    f.close();
    EXPECT_TRUE(Font::fromFile(notAFont, 50).isNull());
    EXPECT_FALSE(FontManager::registerFontsForFile(notAFont));

    const Font null;
    EXPECT_FALSE(null.coversCharacter(U'A'));
    EXPECT_TRUE(null.glyphBoundingBox(1).isNull());
    EXPECT_EQ(null.ascender(), 0.0);
    EXPECT_TRUE(null.glyphPath(1).isEmpty());
    EXPECT_TRUE(null.tableData("cmap").isEmpty());
}

TEST(FontMetrics, DesignValuesScaleExactly)
{
    // DejaVu Sans: 2048 units per em, hhea ascender 1901 and descender -483, so at 2048 px the
    // values are the design units and at 50 px they are scaled without rounding.
    const Font big = dejaVu(2048);
    ASSERT_EQ(big.unitsPerEm(), 2048);
    EXPECT_NEAR(big.ascender(), 1901, kEps);
    EXPECT_NEAR(big.descender(), -483, kEps);
    const Font f = dejaVu(50);
    EXPECT_NEAR(f.ascender(), 1901 * 50.0 / 2048, kEps);
    EXPECT_NEAR(f.descender(), -483 * 50.0 / 2048, kEps);
    EXPECT_NEAR(f.maxAdvance(), big.maxAdvance() * 50.0 / 2048, 1e-6);
    EXPECT_LT(f.fontBoundingBox().top(), 0); // y up: the box reaches below the base line
    EXPECT_FALSE(f.isFixedPitch());
    EXPECT_TRUE(Font::fromName(QStringLiteral("DejaVu Sans Mono"), 50).isFixedPitch());
}

TEST(FontMetrics, GlyphBoxesAndAdvancesMatchAnIndependentReader)
{
    const Font f = dejaVu(50);
    QRawFont raw(f.filePath(), 50, QFont::PreferNoHinting);
    ASSERT_TRUE(raw.isValid());
    for (char16_t c : u"AgjQW@%.,") {
        if (c == 0)
            break;
        const quint32 glyph = f.glyphForCharacter(c);
        ASSERT_NE(glyph, 0u) << char(c);
        EXPECT_EQ(glyph, raw.glyphIndexesForString(QString(QChar(c))).value(0));

        // QRawFont paths are y down and in 26.6 fixed point, so they agree to 1/64 pixel.
        const QRectF theirs = raw.pathForGlyph(glyph).boundingRect();
        const QRectF ours = f.glyphBoundingBox(glyph);
        EXPECT_NEAR(ours.left(), theirs.left(), kFixed) << char(c);
        EXPECT_NEAR(ours.right(), theirs.right(), kFixed) << char(c);
        EXPECT_NEAR(ours.top(), -theirs.bottom(), kFixed) << char(c);
        EXPECT_NEAR(ours.bottom(), -theirs.top(), kFixed) << char(c);

        const QList<QPointF> advances =
            raw.advancesForGlyphIndexes(QList<quint32>{glyph}, QRawFont::UseDesignMetrics);
        EXPECT_NEAR(f.advance(glyph), advances.value(0).x(), kFixed) << char(c);

        // The outline we hand out covers exactly the box we report.
        const QRectF pathBox = f.glyphPath(glyph, QPointF(10, 20)).boundingRect();
        EXPECT_NEAR(pathBox.left(), ours.left() + 10, 1e-3);
        EXPECT_NEAR(pathBox.top(), ours.top() + 20, 1e-3);
        EXPECT_NEAR(pathBox.width(), ours.width(), 1e-3);
    }
}

TEST(FontMetrics, SpaceAndMissingCharacters)
{
    const Font f = dejaVu(50);
    const quint32 space = f.glyphForCharacter(u' ');
    EXPECT_TRUE(f.coversCharacter(U' '));
    EXPECT_TRUE(f.glyphBoundingBox(space).isEmpty());
    EXPECT_GT(f.advance(space), 10);
    EXPECT_TRUE(f.glyphPath(space).isEmpty());

    EXPECT_FALSE(f.coversCharacter(U'\u4E00')); // no ideographs in DejaVu Sans
    EXPECT_EQ(f.glyphForCharacter(u'\u4E00'), 0u);
    EXPECT_FALSE(f.coversCharacter(U'\xD83D')); // a lone surrogate is never a character
    EXPECT_TRUE(Font::fromName(QStringLiteral("WenQuanYi Micro Hei"), 32).coversCharacter(U'\u4E00'));
}

TEST(FontTables, RawTablesAreTheFileBytes)
{
    const Font f = dejaVu();
    const QByteArray cmap = f.tableData("cmap");
    ASSERT_GE(cmap.size(), 4);
    EXPECT_EQ(cmap.at(0), 0); // version 0, big-endian
    EXPECT_EQ(cmap.at(1), 0);
    EXPECT_TRUE(f.tableData("zzzz").isEmpty());

    // The head table's magic number sits at offset 12.
    const QByteArray head = f.tableData("head");
    ASSERT_GE(head.size(), 16);
    EXPECT_EQ(head.mid(12, 4), QByteArray::fromHex("5F0F3CF5"));
}

TEST(FontFamilies, ListAndMembersAreStable)
{
    const QStringList families = FontManager::availableFontFamilies();
    EXPECT_TRUE(families.contains(QStringLiteral("DejaVu Sans")));
    EXPECT_TRUE(families.contains(QStringLiteral("Liberation Sans")));
    EXPECT_EQ(families.count(QStringLiteral("DejaVu Sans")), 1);
    EXPECT_EQ(families, FontManager::availableFontFamilies());

    const QList<FontMember> members = FontManager::availableMembersOfFontFamily(QStringLiteral("Liberation Sans"));
    ASSERT_EQ(members.size(), 4);
    EXPECT_EQ(members[0].styleName, QStringLiteral("Regular"));
    EXPECT_EQ(members[0].weight, 5);
    EXPECT_EQ(members[0].traits & (ItalicTrait | BoldTrait), 0);
    EXPECT_EQ(members[1].styleName, QStringLiteral("Italic"));
    EXPECT_EQ(members[1].traits & ItalicTrait, ItalicTrait);
    EXPECT_EQ(members[2].weight, 9);
    EXPECT_EQ(members[2].traits & BoldTrait, BoldTrait);
    EXPECT_EQ(members[3].postScriptName, QStringLiteral("LiberationSans-BoldItalic"));
    for (const FontMember& m : members)
        EXPECT_FALSE(Font::fromName(m.postScriptName, 20).isNull()) << qPrintable(m.postScriptName);

    // The regular face leads even when lighter faces of the family are installed.
    EXPECT_EQ(FontManager::availableMembersOfFontFamily(QStringLiteral("DejaVu Sans")).value(0).postScriptName,
              QStringLiteral("DejaVuSans"));
}

TEST(FontCache, SameFontSharesOneFace)
{
    const Font a = dejaVu(50);
    const Font b = dejaVu(50);
    EXPECT_EQ(a, b);
    EXPECT_FALSE(a == dejaVu(51)); // same face, another size
    Font::clearCache();
    const Font c = dejaVu(50);
    EXPECT_FALSE(c.isNull());
    EXPECT_NEAR(c.glyphBoundingBox(c.glyphForCharacter(u'A')).width(),
                a.glyphBoundingBox(a.glyphForCharacter(u'A')).width(), kEps);
}
