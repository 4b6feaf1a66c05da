// Measuring glyphs: bitmap sizes, margins for outlines and shadows, offsets and advances, on the
// real DejaVu Sans and Liberation Sans. Expected values are derived from the font's own metrics
// (read through the font service) and the margin rules, not from the measuring code.

#include "Classes/render/CGGlyphBitmap.h"
#include "Platform/text/Font.h"

#include <cmath>

#include <gtest/gtest.h>

using namespace qm;

namespace {

struct Metrics
{
    QRectF box;
    double advance;
    double ascender;  // rounded up
    double descender; // rounded up (toward zero for a negative value)
    double maxAdvance;
};

Metrics metricsOf(const QString& family, char16_t c, int size)
{
    const Font f = Font::fromName(family, size);
    const quint32 g = f.glyphForCharacter(c);
    return {f.glyphBoundingBox(g), f.advance(g), std::ceil(f.ascender()), std::ceil(f.descender()), f.maxAdvance()};
}

int evenUp(double v)
{
    const int i = int(std::ceil(v));
    return i % 2 ? i + 1 : i;
}

CGGlyphBitmap plainGlyph(const QString& family, char16_t c, int size = 50)
{
    CGGlyphBitmap g(c);
    g.setFntName(family);
    g.setGlyphsize(size);
    g.setStroke(false);
    g.setShadow(false);
    return g;
}

class Measuring : public ::testing::TestWithParam<const char*>
{
protected:
    QString family() const { return QString::fromLatin1(GetParam()); }
};

} // namespace

TEST_P(Measuring, NoEffectsGivesTheBoxRoundedUpToEvenPlusOnePixelEachSide)
{
    for (char16_t c : {u'A', u'g', u'i', u'W', u'.'}) {
        CGGlyphBitmap g = plainGlyph(family(), c);
        ASSERT_TRUE(g.setNewSize());
        const Metrics m = metricsOf(family(), c, 50);
        EXPECT_EQ(g.glyphRect(), QRectF(0, 0, evenUp(m.box.width()) + 2, evenUp(m.box.height()) + 2)) << char(c);
        EXPECT_EQ(g.lineHeight(), int(m.ascender - m.descender)) << char(c);
        EXPECT_EQ(g.xadvanced(), int(std::ceil(m.advance))) << char(c);
        EXPECT_EQ(g.maxxad(), int(std::ceil(m.maxAdvance))) << char(c);
        // The bitmap's top edge sits one pixel above the ink: yoffset is the distance from the
        // top of the line (the rounded ascender) to that edge.
        EXPECT_NEAR(g.yoffset(), m.ascender - m.box.bottom() - 1, 2.0) << char(c);
        EXPECT_EQ(g.xoffset(), int(std::ceil(m.box.left()))) << char(c);
        EXPECT_EQ(g.yoffsetPreview(), int(-m.descender - std::ceil(m.box.top()))) << char(c);
    }
}

TEST_P(Measuring, OutlineMarginsForTheThreeModes)
{
    // The margin is what the outline adds beyond the contour, rounded up, with one extra pixel
    // for a whole width: centred 2 -> 3, centred 2.5 -> 3, outside 2 (drawn 4 wide) -> 5,
    // inside -> 1. It shows in the line height and, with autoxy, in the advance.
    struct Case
    {
        int how;
        float size;
        int margin;
    };
    const Metrics m = metricsOf(family(), u'H', 50);
    for (const Case& c : {Case{0, 2.0f, 3}, Case{0, 2.5f, 3}, Case{2, 2.0f, 5}, Case{1, 2.0f, 1}, Case{1, 7.0f, 1}}) {
        CGGlyphBitmap g = plainGlyph(family(), u'H');
        g.setStroke(true);
        g.setStrokehowmode(c.how);
        g.setStrokesize(c.size);
        g.setAutoxy(true);
        ASSERT_TRUE(g.setNewSize());
        EXPECT_EQ(g.lineHeight(), int(m.ascender - m.descender) + c.margin) << c.how << " " << c.size;
        EXPECT_EQ(g.xadvanced(), int(std::ceil(m.advance + c.margin))) << c.how << " " << c.size;
        EXPECT_EQ(g.glyphRect().width(), evenUp(m.box.width() + c.margin) + 2) << c.how << " " << c.size;
        EXPECT_EQ(g.descender(), int(m.descender + c.margin / 2));
    }
}

TEST_P(Measuring, DropShadowEnlargesAndInnerShadowDoesNot)
{
    const Metrics m = metricsOf(family(), u'H', 50);
    CGGlyphBitmap g = plainGlyph(family(), u'H');
    g.setShadow(true);
    g.setShadowxoffset(-3);
    g.setShadowyoffset(5);
    g.setShadowblurradius(2);
    g.setStroke(true); // centred 2.0: margin 3
    g.setAutoxy(true);
    ASSERT_TRUE(g.setNewSize());
    const int ex = 3 + 4 + 3, ey = 5 + 4 + 3;
    EXPECT_EQ(g.glyphRect(), QRectF(0, 0, evenUp(m.box.width() + ex) + 2, evenUp(m.box.height() + ey) + 2));
    EXPECT_EQ(g.lineHeight(), int(m.ascender - m.descender) + ey);
    EXPECT_EQ(g.xadvanced(), int(std::ceil(m.advance + ex)));
    EXPECT_EQ(g.descender(), int(((ey - 5.0) - 4.0) * 0.5 + m.descender));

    CGGlyphBitmap inner = g;
    inner.setShadowhowmode(1);
    ASSERT_TRUE(inner.setNewSize());
    EXPECT_EQ(inner.glyphRect().width(), evenUp(m.box.width() + 3) + 2);
    EXPECT_EQ(inner.lineHeight(), int(m.ascender - m.descender) + 3);
}

TEST_P(Measuring, AutoxyKeepsTheEffectCorrectedOffsets)
{
    const Metrics m = metricsOf(family(), u'A', 50);
    CGGlyphBitmap off = plainGlyph(family(), u'A');
    off.setStroke(true);
    CGGlyphBitmap on = off;
    on.setAutoxy(true);
    ASSERT_TRUE(off.setNewSize());
    ASSERT_TRUE(on.setNewSize());
    // With the default shadow values (x 2, blur 2) the correction is ceil(1) - 2 = -1, applied
    // even though the shadow is off; without autoxy it is dropped, as is the outline margin in
    // the advance.
    EXPECT_EQ(on.xoffset(), int(std::ceil(m.box.left())) - 1);
    EXPECT_EQ(off.xoffset(), int(std::ceil(m.box.left())));
    EXPECT_EQ(on.xadvanced(), int(std::ceil(m.advance + 3)));
    EXPECT_EQ(off.xadvanced(), int(std::ceil(m.advance)));
    EXPECT_EQ(on.yoffset(), off.yoffset()); // no padding: the vertical offsets agree
}

TEST_P(Measuring, PaddingGrowsTheBitmapAndCorrectsOffsetsOnlyWithAutoxy)
{
    for (bool autoxy : {false, true}) {
        CGGlyphBitmap base = plainGlyph(family(), u'b');
        base.setAutoxy(autoxy);
        CGGlyphBitmap padded = base;
        padded.setBoundingPadding(3);
        ASSERT_TRUE(base.setNewSize());
        ASSERT_TRUE(padded.setNewSize());
        EXPECT_EQ(padded.glyphRect().size(), base.glyphRect().size() + QSizeF(6, 6));
        EXPECT_EQ(padded.xoffset(), base.xoffset() - (autoxy ? 3 : 0)) << autoxy;
        EXPECT_EQ(padded.yoffset(), base.yoffset() - (autoxy ? 3 : 0)) << autoxy;
        EXPECT_EQ(padded.yoffsetPreview(), base.yoffsetPreview() + 3) << autoxy;
    }
}

TEST_P(Measuring, GridCellsForcedAndAutomatic)
{
    const Metrics m = metricsOf(family(), u'M', 50);
    CGGlyphBitmap forced = plainGlyph(family(), u'M');
    forced.setOngrid(true);
    forced.setOngridAuto(false);
    forced.setForceWidth(40);
    forced.setForceHeight(50);
    forced.setBoundingPadding(3);
    forced.setXadvanced(77);
    ASSERT_TRUE(forced.setNewSize());
    EXPECT_EQ(forced.glyphRect(), QRectF(0, 0, 46, 56));
    EXPECT_EQ(forced.xoffset(), 0);
    EXPECT_EQ(forced.yoffset(), 0);
    EXPECT_EQ(forced.descender(), 0);
    EXPECT_EQ(forced.xadvanced(), 77); // the grid leaves the advance as it was

    // A zero forced width falls back to the automatic cell although ongridAuto is off.
    CGGlyphBitmap automatic = forced;
    automatic.setForceWidth(0);
    ASSERT_TRUE(automatic.setNewSize());
    const int lineHeight = int(m.ascender - m.descender);
    EXPECT_EQ(automatic.glyphRect(), QRectF(0, 0, std::ceil(m.maxAdvance) + 8, lineHeight + 8));
    EXPECT_EQ(automatic.lineHeight(), lineHeight);
}

TEST_P(Measuring, SpaceIsMarginsOnlyWithItsAdvance)
{
    const Metrics m = metricsOf(family(), u' ', 50);
    CGGlyphBitmap g(u' ');
    g.setFntName(family()); // default outline: centred, width 2, margin 3
    ASSERT_TRUE(g.setNewSize());
    EXPECT_EQ(g.glyphRect(), QRectF(0, 0, 4 + 2, 4 + 2));
    EXPECT_EQ(g.xadvanced(), int(std::ceil(m.advance)));
    EXPECT_GT(g.xadvanced(), 10);
}

TEST_P(Measuring, MissingCharacterChangesNothing)
{
    CGGlyphBitmap g = plainGlyph(family(), u'A');
    ASSERT_TRUE(g.setNewSize());
    g.setCharname(u'\u4E00');
    const CGGlyphBitmap before = g;
    EXPECT_FALSE(g.setNewSize());
    EXPECT_TRUE(g == before);
}

INSTANTIATE_TEST_SUITE_P(Fonts, Measuring, ::testing::Values("DejaVu Sans", "Liberation Sans"));

TEST(MeasuringEdgeCases, UnknownFontAndFixedPitch)
{
    CGGlyphBitmap unknown(u'A');
    unknown.setFntName(QStringLiteral("No Such Family 7f3a"));
    EXPECT_FALSE(unknown.setNewSize());

    // A fixed-pitch font measures every glyph with the font's overall box width.
    const double fontWidth = Font::fromName(QStringLiteral("DejaVu Sans Mono"), 40).fontBoundingBox().width();
    for (char16_t c : {u'i', u'W'}) {
        CGGlyphBitmap g = plainGlyph(QStringLiteral("DejaVu Sans Mono"), c, 40);
        ASSERT_TRUE(g.setNewSize());
        EXPECT_EQ(g.glyphRect().width(), evenUp(fontWidth) + 2);
    }
}

TEST(GlyphImage, SizedTransparentBitmapAndZeroSizeKeepsTheOldOne)
{
    CGGlyphBitmap g = plainGlyph(QStringLiteral("DejaVu Sans"), u'Q');
    ASSERT_TRUE(g.setNewSize());
    g.getImage();
    const QImage image = g.glyphImage();
    EXPECT_EQ(image.size(), g.glyphRect().size().toSize());
    EXPECT_EQ(image.format(), QImage::Format_RGBA8888_Premultiplied);

    g.setGlyphRect(QRectF());
    g.getImage();
    EXPECT_EQ(g.glyphImage().size(), image.size());
}

TEST(GlyphRecord, DefaultsOfANewGlyph)
{
    const CGGlyphBitmap g(u'x');
    EXPECT_EQ(g.charname(), u'x');
    EXPECT_EQ(g.fntName(), QStringLiteral("Arial"));
    EXPECT_FLOAT_EQ(g.strokesize(), 2.0f);
    EXPECT_FLOAT_EQ(g.shadowblurradius(), 2.0f);
    EXPECT_EQ(g.fillGMode(), 0);
    EXPECT_FALSE(g.strokeColor().isValid());
    EXPECT_EQ(g.colorGradient(), Gradient::twoColor(Color::orange(), Color::yellow()));
    EXPECT_TRUE(g.fitImage());
    EXPECT_EQ(CGGlyphBitmap::nativeRect(), QRectF(0, 0, 512, 512));
    CGGlyphBitmap s(u'x');
    s.setStrokeSize(3);
    EXPECT_FLOAT_EQ(s.strokesize(), 3.0f);
}
