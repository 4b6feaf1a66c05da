// The glyph set and the effect operations on the real canvas, glyph layers and records.

#include "Classes/atlas/TextureView.h"
#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Platform/text/FontManager.h"

#include <gtest/gtest.h>

using namespace qm;

namespace {

/// The real canvas, counting the packing requests it receives.
class CountingView : public TextureView
{
public:
    int packs = 0;
    bool Packing(int padding, int method, bool reversed, bool grid) override
    {
        ++packs;
        return TextureView::Packing(padding, method, reversed, grid);
    }
};

class WarningLog : public TextureController
{
public:
    QStringList messages;
    void updateWarningMessage(const QString& m) override { messages.append(m); }
};

struct Canvas
{
    sharedAppState state;
    CountingView view;
    WarningLog controller;
    Canvas()
    {
        state.setFontName(QStringLiteral("DejaVu Sans"));
        state.setTxtView(&view);
        state.setTxtCont(&controller);
        view.setSharedState(&state);
    }
    QString characters() const
    {
        QString s;
        for (CAGlyphLayer* l : view.glyphLayers())
            s += QChar(l->glyphBitmap().charname());
        return s;
    }
};

} // namespace

TEST(GlyphSet, RefreshKeepsFirstOccurrenceOrderAndSurvivorsPlaces)
{
    Canvas c;
    c.view.refreshGlyphLetters(QStringLiteral("aab"));
    EXPECT_EQ(c.characters(), QStringLiteral("ab"));
    const int packsAfterBuild = c.view.packs;

    // Reordering the text adds and removes nothing, so nothing is packed again.
    c.view.refreshGlyphLetters(QStringLiteral("ba"));
    EXPECT_EQ(c.characters(), QStringLiteral("ab"));
    EXPECT_EQ(c.view.packs, packsAfterBuild);

    // New glyphs follow the survivors; removed ones leave, then one more pack.
    c.view.refreshGlyphLetters(QStringLiteral("cxa"));
    EXPECT_EQ(c.characters(), QStringLiteral("acx"));

    c.view.refreshGlyphLetters(QString());
    EXPECT_TRUE(c.view.glyphLayers().isEmpty());
    EXPECT_EQ(c.controller.messages.last(), QString()); // an empty set fits
}

TEST(GlyphSet, NewGlyphsCopyTheProjectStyleAndAreMeasured)
{
    Canvas c;
    c.state.setGlyphSize(40);
    c.state.setStrokeInfo(true, 3.0f, Color::red(), 2);
    c.state.setShadowInfo(true, 1, -1, 2, 1);
    c.view.refreshGlyphLetters(QStringLiteral("A"));
    const CAGlyphLayer* a = c.view.glyphLayers().value(0);
    ASSERT_NE(a, nullptr);
    const CGGlyphBitmap& g = a->glyphBitmap();
    EXPECT_EQ(g.glyphsize(), 40);
    EXPECT_EQ(g.fntName(), QStringLiteral("DejaVu Sans"));
    EXPECT_EQ(g.strokehowmode(), 2);
    EXPECT_EQ(g.strokeColor(), Color::red());
    EXPECT_EQ(g.shadowhowmode(), 1);
    EXPECT_EQ(g.addXAdvance(), 0);
    EXPECT_GT(g.glyphRect().width(), 0);
    EXPECT_EQ(a->bounds().size(), g.glyphRect().size()); // the layer takes the measured size
    EXPECT_TRUE(a->canfit());
}

TEST(GlyphSet, SurrogateHalvesAreTwoGlyphsThatTakeNoPlace)
{
    Canvas c;
    c.view.refreshGlyphLetters(QString::fromUtf16(u"x\U0001F600"));
    ASSERT_EQ(c.characters().size(), 3);
    EXPECT_EQ(c.view.glyphLayers()[1]->glyphBitmap().charname(), u'\xD83D');
    EXPECT_EQ(c.view.glyphLayers()[2]->glyphBitmap().charname(), u'\xDE00');
    for (int i : {1, 2}) {
        const CAGlyphLayer* half = c.view.glyphLayers()[i];
        EXPECT_TRUE(half->frame().isEmpty());
        EXPECT_FALSE(half->canfit());
        EXPECT_TRUE(half->isHidden());
    }
    EXPECT_TRUE(c.view.glyphLayers()[0]->canfit());
    EXPECT_EQ(c.controller.messages.last(), QString()); // missing characters are no fitting failure
}

TEST(GlyphSet, FontWithoutTheCharacterEmptiesItsLayer)
{
    Canvas c;
    c.view.refreshGlyphLetters(QString::fromUtf16(u"A\u4E00"));
    EXPECT_TRUE(c.view.glyphLayers()[1]->frame().isEmpty());
    c.state.setFontName(QStringLiteral("WenQuanYi Micro Hei"));
    EXPECT_FALSE(c.view.glyphLayers()[1]->frame().isEmpty());
    EXPECT_TRUE(c.view.glyphLayers()[1]->canfit());
    c.state.setFontName(QStringLiteral("DejaVu Sans"));
    EXPECT_TRUE(c.view.glyphLayers()[1]->frame().isEmpty());
    EXPECT_TRUE(c.view.glyphLayers()[1]->contents().isNull());
    EXPECT_TRUE(c.view.glyphLayers()[0]->canfit());
}

TEST(Effects, SelectionOnlyOperationsTakeOnlySelectedGlyphs)
{
    Canvas c;
    c.view.refreshGlyphLetters(QStringLiteral("abc"));
    const Gradient g3({{Color::red(), 0}, {Color::white(), 0.5}, {Color::black(), 1}});
    c.state.setWorkOnSelectionOnly(true);

    c.state.setGradiant(45, g3); // nothing selected: nothing changes
    for (CAGlyphLayer* l : c.view.glyphLayers())
        EXPECT_NE(l->glyphBitmap().gradiantAngle(), 45);

    c.view.glyphLayers()[1]->makeSelected();
    c.state.setGradiant(45, g3);
    c.state.setRadialX(0.5f, 0.25f);
    EXPECT_EQ(c.view.glyphLayers()[1]->glyphBitmap().gradiantAngle(), 45);
    EXPECT_EQ(c.view.glyphLayers()[1]->glyphBitmap().colorGradient(), g3);
    EXPECT_FLOAT_EQ(c.view.glyphLayers()[1]->glyphBitmap().gradialY(), 0.25f);
    EXPECT_NE(c.view.glyphLayers()[0]->glyphBitmap().gradiantAngle(), 45);

    // Operations on "all" ignore the selection.
    c.state.updatemiterlimit(3);
    for (CAGlyphLayer* l : c.view.glyphLayers())
        EXPECT_EQ(l->glyphBitmap().miterlimit(), 3);

    c.state.setWorkOnSelectionOnly(false);
    c.state.setGradiant(60, g3);
    for (CAGlyphLayer* l : c.view.glyphLayers())
        EXPECT_EQ(l->glyphBitmap().gradiantAngle(), 60);
}

TEST(Effects, BlockedRedrawChangesFieldsAndIgnoresRequestedPacking)
{
    Canvas c;
    c.view.refreshGlyphLetters(QStringLiteral("AB"));
    for (CAGlyphLayer* l : c.view.glyphLayers())
        l->display(); // clear the redisplay requests
    const QRectF frameA = c.view.glyphLayers()[0]->frame();
    const int packs = c.view.packs;

    c.state.setBlockredrawandpack(true);
    c.state.setStrokeInfo(true, 6.0f, Color::black(), 2);
    c.state.setGlyphSize(80);
    EXPECT_EQ(c.view.packs, packs + 2); // both asked for packing...
    CAGlyphLayer* a = c.view.glyphLayers()[0];
    EXPECT_EQ(a->glyphBitmap().strokesize(), 6.0f);
    EXPECT_EQ(a->glyphBitmap().glyphsize(), 80);
    EXPECT_EQ(a->frame(), frameA); // ...but nothing was measured, redrawn or moved
    EXPECT_FALSE(a->needsDisplay());

    c.state.setBlockredrawandpack(false);
    c.view.redrawAllGlyphs();
    c.state.setPackingOptions(2, 3, true, false);
    EXPECT_GT(c.view.glyphLayers()[0]->frame().width(), frameA.width());
    EXPECT_TRUE(c.view.glyphLayers()[0]->needsDisplay());
}

TEST(Effects, ShadowColourRedrawsOnlyGlyphsWithShadow)
{
    Canvas c;
    c.view.refreshGlyphLetters(QStringLiteral("AB"));
    c.view.glyphLayers()[1]->glyphBitmap().setShadow(true);
    for (CAGlyphLayer* l : c.view.glyphLayers())
        l->display();
    c.state.setShadowColor(Color::red());
    EXPECT_EQ(c.view.glyphLayers()[0]->glyphBitmap().shadowColor(), Color::red());
    EXPECT_FALSE(c.view.glyphLayers()[0]->needsDisplay());
    EXPECT_TRUE(c.view.glyphLayers()[1]->needsDisplay());
}

TEST(Effects, TraitPicksTheFamilyMemberByPosition)
{
    Canvas c;
    c.state.setFontName(QStringLiteral("Liberation Sans"));
    c.view.refreshGlyphLetters(QStringLiteral("A"));
    const QList<FontMember> members = FontManager::availableMembersOfFontFamily(QStringLiteral("Liberation Sans"));
    ASSERT_EQ(members.size(), 4);
    const CGGlyphBitmap& g = c.view.glyphLayers()[0]->glyphBitmap();

    c.state.setGlyphTrait(2);
    EXPECT_EQ(g.fntName(), members[2].postScriptName);
    EXPECT_EQ(g.fontweight(), members[2].weight);
    EXPECT_EQ(g.trait(), members[2].traits);
    c.state.setGlyphTrait(99); // past the end: the last member
    EXPECT_EQ(g.fntName(), members[3].postScriptName);

    c.state.setFontName(QStringLiteral("No Such Family 7f3a"));
    c.state.setGlyphTrait(0);
    EXPECT_TRUE(g.fntName().isEmpty());
    EXPECT_EQ(g.fontweight(), 0);
    EXPECT_EQ(g.trait(), 0);
}

TEST(GlyphLayer, SelectionAndHighlightBorders)
{
    CAGlyphLayer layer(u'A');
    layer.makeSelected();
    EXPECT_EQ(layer.borderWidth(), 1.0);
    EXPECT_EQ(layer.borderColor(), Color::calibratedRGB(1, 0, 0));
    layer.highlight(true);
    EXPECT_EQ(layer.borderWidth(), 2.0);
    EXPECT_EQ(layer.borderColor(), Color::calibratedRGB(0.1, 0.8, 0.1));
    layer.highlight(false);
    EXPECT_EQ(layer.borderWidth(), 1.0); // the selection border comes back
    EXPECT_EQ(layer.borderColor(), Color::calibratedRGB(1, 0, 0));
    layer.makeUnselected();
    layer.highlight(true);
    layer.highlight(false);
    EXPECT_EQ(layer.borderWidth(), 0.0);
}

TEST(GlyphSetQueries, SpaceWidthLineHeightAndCustomPictures)
{
    Canvas c;
    EXPECT_EQ(c.view.getSpaceWidth(), 0);
    c.view.setSpaceWidth(17); // no space glyph: nothing to change
    EXPECT_EQ(c.view.getSpaceWidth(), 0);
    EXPECT_EQ(c.view.getDefaultLineHeight(), 0);

    c.view.refreshGlyphLetters(QStringLiteral("A B"));
    EXPECT_GT(c.view.getSpaceWidth(), 0);
    c.view.setSpaceWidth(17);
    EXPECT_EQ(c.view.getSpaceWidth(), 17);
    const int lineHeight = c.view.glyphLayers()[0]->glyphBitmap().lineHeight();
    EXPECT_GT(lineHeight, 0);
    EXPECT_EQ(c.view.getDefaultLineHeight(), lineHeight);

    // A custom picture on the first glyph hides every later glyph's line height.
    CGGlyphBitmap& a = c.view.glyphLayers()[0]->glyphBitmap();
    QImage picture(101, 51, QImage::Format_RGBA8888_Premultiplied);
    picture.fill(Qt::red);
    a.setHasCustomPicture(true);
    a.setGlyphImage(picture);
    a.setFrameImage(QRectF(0, 0, 101, 51));
    EXPECT_EQ(c.view.getDefaultLineHeight(), 0);

    c.view.scaleCustomImage(0.5f);
    EXPECT_EQ(a.frameImage(), QRectF(0, 0, 50, 25)); // floor, not rounding
    EXPECT_EQ(c.view.glyphLayers()[0]->bounds().size(), QSizeF(50, 25));
    c.view.restoreOriScaleImage();
    EXPECT_EQ(a.frameImage(), QRectF(0, 0, 101, 51));
}

TEST(GlyphSetQueries, ResetGlyphParamRestoresStoredCorrections)
{
    Canvas c;
    c.view.refreshGlyphLetters(QStringLiteral("AB"));
    CGGlyphBitmap stored(u'B');
    stored.setFntName(QStringLiteral("DejaVu Sans"));
    stored.setAddXOffset(3);
    stored.setAddXAdvance(-2);
    stored.setGlyphsize(30);
    const int packs = c.view.packs;
    c.view.resetGlyphParam(stored);
    EXPECT_EQ(c.view.packs, packs + 1);
    const CGGlyphBitmap& b = c.view.glyphLayers()[1]->glyphBitmap();
    EXPECT_EQ(b.addXOffset(), 3);
    EXPECT_EQ(b.addXAdvance(), -2);
    EXPECT_EQ(b.glyphsize(), 30);
    EXPECT_NE(c.view.glyphLayers()[0]->glyphBitmap().glyphsize(), 30);
}
