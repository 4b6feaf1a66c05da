// The descriptor writers, byte for byte. The golden files in tests/data/descriptors were
// recorded from this fixture (QUILLMARK_RECORD_GOLDEN=1 re-records them for review) and
// checked by hand; HandDerivedLines below derives one glyph line per family from the rules.

#include "tests/atlas/DescriptorFixture.h"
#include "tests/support/TestSupport.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace qm;

namespace {

/// Compares with a golden file and reports the first differing line.
void expectGolden(const QString& actual, const QString& name)
{
    const QString path = test::dataPath(QStringLiteral("descriptors/") + name);
    if (qEnvironmentVariableIsSet("QUILLMARK_RECORD_GOLDEN")) {
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(actual.toUtf8());
        return;
    }
    QFile in(path);
    ASSERT_TRUE(in.open(QIODevice::ReadOnly)) << qPrintable(path);
    const QString expected = QString::fromUtf8(in.readAll());
    if (expected == actual)
        return;
    const QStringList e = expected.split(QLatin1Char('\n')), a = actual.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < std::max(e.size(), a.size()); ++i) {
        if (e.value(i) != a.value(i)) {
            ADD_FAILURE() << qPrintable(name) << " line " << i + 1 << "\n  expected: " << qPrintable(e.value(i))
                          << "\n  actual:   " << qPrintable(a.value(i));
            return;
        }
    }
    ADD_FAILURE() << qPrintable(name) << " differs";
}

QString lineStartingWith(const QString& text, const QString& start)
{
    for (const QString& line : text.split(QLatin1Char('\n')))
        if (line.startsWith(start))
            return line;
    return {};
}

} // namespace

TEST(Descriptors, EveryFamilyAtFullAndHalfScaleMatchesItsGoldenFile)
{
    test::DescriptorFixture f;
    const struct
    {
        int code;
        const char* name;
    } formats[] = {{1, "text"}, {3, "xml"}, {5, "hash-top"}, {6, "hash-bottom"}, {8, "lua"}};
    for (const auto& fmt : formats) {
        for (int scale : {100, 50}) {
            const QString texture = scale == 100 ? QStringLiteral("demo.png") : QStringLiteral("demo-sd.png");
            expectGolden(f.view.getFontplist(scale, texture, fmt.code, QStringLiteral("DejaVu Sans"), scale),
                         QStringLiteral("%1-%2.txt").arg(QLatin1String(fmt.name)).arg(scale));
        }
    }
}

TEST(Descriptors, HandDerivedLines)
{
    test::DescriptorFixture f;
    // The packer put "A" (a 26 x 28 bitmap, xoffset 1 + a correction of 3, yoffset 6, advance
    // 22) at the centre (15, 146) of a 192-high texture: x = 15 - 13 = 2, y = 192 - 146 - 14
    // = 32. At 50 %: x = 1, y = 16, 13 x 14, xoffset trunc(4 * 0.5) = 2, yoffset ceil(3) = 3,
    // xadvance trunc(22 * 0.5) = 11.
    ASSERT_EQ(f.view.getCAGlyphLayer(u'A')->position(), QPointF(15, 146));
    EXPECT_EQ(lineStartingWith(f.view.getFontplist(100, "demo.png", 1, "DejaVu Sans", 100), "char id=65 "),
              QStringLiteral("char id=65 x=2 y=32 width=26 height=28 xoffset=4 yoffset=6 xadvance=22 page=0 chnl=0"));
    EXPECT_EQ(lineStartingWith(f.view.getFontplist(50, "demo-sd.png", 3, "DejaVu Sans", 50), "            <char xadvance='11' x='1'"),
              QStringLiteral("            <char xadvance='11' x='1' chnl='0' yoffset='3' y='16' xoffset='2' id='65' page='0' "
                             "height='14' width='13'/>"));

    // The custom picture "X" (20 x 30, centre (12, 85)): x = 2, y = 192 - 85 - 15 = 92; its
    // offsets come from its own corrections at the original scale: xoffset trunc(1 * 1) = 1,
    // yoffset ceil((0 - -2) * 1) = 2; at 100 % the advance is trunc(22 * 1) = 22.
    ASSERT_EQ(f.view.getCAGlyphLayer(u'X')->position(), QPointF(12, 85));
    EXPECT_EQ(lineStartingWith(f.view.getFontplist(100, "demo.png", 8, "DejaVu Sans", 100), "id = 88,"),
              QStringLiteral("id = 88,x = 2,y = 92,width = 20,height = 30,sourceX = 0,sourceY = 0,sourceWidth = 20, "
                             "sourceHeight = 30, xadvance = 22,xoffset = 1, yoffset = 2"));

    // "o" (22 x 24, centre (13, 56)): x = 2, y = 192 - 56 - 12 = 124 on a 39 x 192 texture.
    // Top-down v: 124 / 192 = 0.6458 to 148 / 192 = 0.7708; bottom-up: 44 / 192 = 0.2292 to
    // 68 / 192 = 0.3542; u: 2 / 39 = 0.0513 to 24 / 39 = 0.6154.
    ASSERT_EQ(f.view.getCAGlyphLayer(u'o')->position(), QPointF(13, 56));
    EXPECT_EQ(lineStartingWith(f.view.getFontplist(100, "demo.png", 5, "DejaVu Sans", 100), "#charId=111 "),
              QStringLiteral("#charId=111 #uvStart=(0.0513, 0.6458) #uvEnd=(0.6154, 0.7708) #size=(22.0, 24.0) "
                             "#xOffset=2 #yOffset=10 #xAdvance=20 "));
    EXPECT_EQ(lineStartingWith(f.view.getFontplist(100, "demo.png", 6, "DejaVu Sans", 100), "#charId=111 "),
              QStringLiteral("#charId=111 #uvStart=(0.0513, 0.2292) #uvEnd=(0.6154, 0.3542) #size=(22.0, 24.0) "
                             "#xOffset=2 #yOffset=10 #xAdvance=20 "));
}

TEST(Descriptors, HeaderValuesAndCounts)
{
    test::DescriptorFixture f;
    const QString text = f.view.getFontplist(100, "demo.png", 0, "Face", 100);
    // The line height is the set's default (39), the base 39 - |-6| = 33; "W" did not fit but
    // is counted, and its kerning pair is left out.
    EXPECT_TRUE(text.contains(QStringLiteral("common lineHeight=39 base=33 scaleW=39 scaleH=192 pages=1 packed=0\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("chars count=8\n")));
    EXPECT_EQ(text.count(QStringLiteral("\nchar id=")), 7);
    EXPECT_FALSE(text.contains(QStringLiteral("id=87 ")));
    EXPECT_TRUE(text.endsWith(QStringLiteral("kernings count=2\nkerning first=65 second=86 amount=-2\n"
                                             "kerning first=84 second=111 amount=-3\n")));

    // A custom picture first in the set hides the default line height: lineHeight 0 and a base
    // of ceil(-|D| * s).
    CAGlyphLayer* space = f.view.getCAGlyphLayer(u' ');
    space->glyphBitmap().setHasCustomPicture(true);
    EXPECT_TRUE(f.view.getFontplist(50, "x.png", 0, "Face", 50).contains(QStringLiteral("common lineHeight=0 base=-3 ")));

    // Without kerning the Lua text ends after the mapping.
    f.state.setKernings(false);
    const QString lua = f.view.getFontplist(100, "demo.png", 8, "Face", 100);
    EXPECT_TRUE(lua.endsWith(QStringLiteral("}\n")));
    EXPECT_FALSE(lua.contains(QStringLiteral("return sheetData")));
}

TEST(Descriptors, KerningAmountsTruncateTowardZero)
{
    // 100 units at size 20 make 2000: below one pixel, left out. At 21: 2100 / 2048 = 1, and
    // -100 gives -1.
    auto descriptor = [](int size, int value) {
        sharedAppState state;
        TextureView view;
        state.setTxtView(&view);
        view.setSharedState(&state);
        state.setFontName(QStringLiteral("DejaVu Sans"));
        state.setGlyphSize(size);
        state.setTextGlyph(QStringLiteral("AV"));
        state.setKerningTable(KerningTable{{{u'A', u'V'}, value}});
        state.setCmapTable(CmapTable{{36, u'A'}});
        return view.getFontplist(100, "t.png", 1, "F", 100);
    };
    const QString below = descriptor(20, 100);
    EXPECT_EQ(lineStartingWith(below, "kernings"), QStringLiteral("kernings count=0"));
    EXPECT_FALSE(below.contains(QStringLiteral("kerning first=")));
    const QString positive = descriptor(21, 100);
    EXPECT_EQ(lineStartingWith(positive, "kernings"), QStringLiteral("kernings count=1"));
    EXPECT_EQ(lineStartingWith(positive, "kerning first"), QStringLiteral("kerning first=65 second=86 amount=1"));
    // Toward zero, not down: -2100 / 2048 is -1, where flooring would give -2.
    EXPECT_EQ(lineStartingWith(descriptor(21, -100), "kerning first"),
              QStringLiteral("kerning first=65 second=86 amount=-1"));
}

TEST(Descriptors, SpriteSheetPropertyList)
{
    test::DescriptorFixture f;
    f.view.setFrameSize(QSizeF(39, 192));
    const QString full = f.view.getplist(2);
    EXPECT_TRUE(full.startsWith(QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC "
                                               "\"-//Apple//DTD PLIST 1.0//EN\"")));
    // "A": the whole 26 x 28 layer at (2, 32) from the top left.
    EXPECT_TRUE(full.contains(QStringLiteral("<key>textureRect</key><string>{{2, 32}, {26, 28}}</string>\n")));
    EXPECT_TRUE(full.endsWith(QStringLiteral("<string>{39, 192}</string></dict></dict></plist>")));
    const QString half = f.view.getplist(1);
    EXPECT_TRUE(half.contains(QStringLiteral("<key>textureRect</key><string>{{1, 16}, {13, 14}}</string>\n")));
    EXPECT_TRUE(half.endsWith(QStringLiteral("<string>{19, 96}</string></dict></dict></plist>")));
}
