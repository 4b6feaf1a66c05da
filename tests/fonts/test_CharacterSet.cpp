// The block table, the range fields and the character set, on the real canvas and settings.

#include "Classes/atlas/TextureView.h"
#include "Classes/fonts/CharacterSet.h"
#include "Classes/fonts/UnicodeRanges.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"

#include <gtest/gtest.h>

using namespace qm;

namespace {

/// The real canvas, counting the packing runs that are not suppressed and the preview layouts.
class CountingView : public TextureView
{
public:
    int packs = 0;
    QStringList previews;
    bool Packing(int padding, int method, bool reversed, bool grid) override
    {
        if (sharedState() && !sharedState()->blockredrawandpack())
            ++packs;
        return TextureView::Packing(padding, method, reversed, grid);
    }
    void updatePreview(const QString& text) override { previews.append(text); }
};

/// A character set over settings and a canvas. Detached, the settings do not forward to the
/// canvas, so large sets cost nothing to build.
struct Window
{
    sharedAppState state;
    CountingView view;
    CharacterSet charset{state, view};
    explicit Window(bool attached = true)
    {
        state.setFontName(QStringLiteral("DejaVu Sans"));
        view.setSharedState(&state);
        if (attached)
            state.setTxtView(&view);
    }
    void addRange(const QString& start, const QString& end)
    {
        charset.setRangestart(start);
        charset.setRangeend(end);
        charset.charsetaddrange();
    }
};

QString codes(char16_t first, char16_t last)
{
    QString s;
    for (int c = first; c <= last; ++c)
        s += QChar(char16_t(c));
    return s;
}

int rowNamed(const char* name)
{
    return int(UnicodeRanges::allrangesArray().indexOf(QString::fromLatin1(name)));
}

} // namespace

TEST(UnicodeRanges, BlockTableRowsAndTheirRanges)
{
    const QList<UnicodeBlock>& blocks = UnicodeRanges::blocks();
    ASSERT_EQ(blocks.size(), 101);
    EXPECT_EQ(blocks.first().name, QStringLiteral("basicLatin"));
    EXPECT_EQ(blocks.first().range, QStringLiteral("0x0021-0x007f"));
    EXPECT_EQ(blocks[85].name, QStringLiteral("cjkUnifiedIdeographsExtensionA"));
    EXPECT_EQ(blocks.last().name, QStringLiteral("specials"));
    EXPECT_EQ(UnicodeRanges::allrangeskeys().size(), 101); // names are unique

    // Blocks follow each other without overlapping, and exactly two exceed the limit.
    quint32 previousEnd = 0;
    QStringList tooLarge;
    for (const UnicodeBlock& b : blocks) {
        const CodeRange r = UnicodeRanges::parseRange(b.range);
        EXPECT_LE(r.start, r.end) << b.name.toStdString();
        EXPECT_GT(r.start, previousEnd) << b.name.toStdString();
        EXPECT_LE(r.end, 0xFFFFu);
        previousEnd = r.end;
        if (r.end - r.start >= UnicodeRanges::kRangeLimit)
            tooLarge.append(b.name);
    }
    EXPECT_EQ(tooLarge, QStringList({QStringLiteral("cjkUnifiedIdeographsExtensionA"),
                                     QStringLiteral("privateUseArea")}));

    EXPECT_EQ(UnicodeRanges::blockNamed(QStringLiteral("GREEKandCOPTIC"))->range,
              QStringLiteral("0x0370-0x03FF"));
    EXPECT_FALSE(UnicodeRanges::blockNamed(QStringLiteral("klingon")).has_value());
}

TEST(UnicodeRanges, HexFieldsReadWithPrefixAndWriteUpperCase)
{
    EXPECT_EQ(UnicodeRanges::readHexField(QStringLiteral("5a")), 0x5Au);
    EXPECT_EQ(UnicodeRanges::readHexField(QStringLiteral("4DbF")), 0x4DBFu);
    EXPECT_EQ(UnicodeRanges::readHexField(QStringLiteral("41zz")), 0x41u); // stops at the first non-digit
    // The field gets "0x" in front, so a typed prefix or leading blank makes the text unreadable.
    EXPECT_EQ(UnicodeRanges::readHexField(QStringLiteral("0x41")), 0u);
    EXPECT_EQ(UnicodeRanges::readHexField(QStringLiteral(" 41")), 0u);
    EXPECT_EQ(UnicodeRanges::readHexField(QString()), 0u);
    EXPECT_EQ(UnicodeRanges::readHexField(QStringLiteral("123456789")), 0xFFFFFFFFu);
    EXPECT_EQ(UnicodeRanges::hexFieldText(0x4dbf), QStringLiteral("4DBF"));
    EXPECT_EQ(UnicodeRanges::hexFieldText(0), QStringLiteral("0"));
}

TEST(CharacterSet, TypedRangeLimitIs2001Codes)
{
    Window w(false);
    w.addRange(QStringLiteral("0"), QStringLiteral("7D0"));
    EXPECT_EQ(w.charset.allLetters(), codes(0, 0x7D0)); // holds the space already
    EXPECT_EQ(w.state.textGlyph(), w.charset.allLetters());

    Window refused(false);
    refused.addRange(QStringLiteral("0"), QStringLiteral("7d1"));
    EXPECT_EQ(refused.charset.allLetters(), QString());
    EXPECT_EQ(refused.state.textGlyph(), QString());
    EXPECT_TRUE(refused.view.previews.isEmpty()); // nothing applied
    EXPECT_EQ(refused.charset.rangeend(), QStringLiteral("7D1"));

    // Reversed ranges are refused too; unreadable fields read 0, which is U+0000 alone.
    refused.addRange(QStringLiteral("5A"), QStringLiteral("41"));
    EXPECT_EQ(refused.charset.allLetters(), QString());
    refused.addRange(QStringLiteral("what"), QStringLiteral("0x20"));
    EXPECT_EQ(refused.charset.rangestart(), QStringLiteral("0"));
    EXPECT_EQ(refused.charset.rangeend(), QStringLiteral("0"));
    EXPECT_EQ(refused.charset.allLetters(), QStringLiteral(" ") + QChar(u'\0'));
}

TEST(CharacterSet, TypedRangeAddsCapitalsAndNormalisesTheFields)
{
    Window w;
    w.addRange(QStringLiteral("41"), QStringLiteral("5a"));
    EXPECT_EQ(w.charset.rangestart(), QStringLiteral("41"));
    EXPECT_EQ(w.charset.rangeend(), QStringLiteral("5A"));
    EXPECT_EQ(w.charset.allLetters(), QStringLiteral(" ABCDEFGHIJKLMNOPQRSTUVWXYZ"));
    EXPECT_EQ(w.state.textGlyph(), QStringLiteral(" ABCDEFGHIJKLMNOPQRSTUVWXYZ"));
    EXPECT_EQ(w.view.glyphLayers().size(), 27);
}

TEST(CharacterSet, ApplyingRebuildsRendersAndPacksOnceThenPreviews)
{
    Window w;
    w.state.setPreviewTextString(QStringLiteral("Hi\\nthere"));
    w.charset.setAllLetters(QStringLiteral("AVAT"));
    w.charset.allLettersChanged();

    EXPECT_EQ(w.charset.allLetters(), QStringLiteral(" AVAT"));
    EXPECT_EQ(w.view.packs, 1);
    EXPECT_EQ(w.view.previews, QStringList({QStringLiteral("Hi\\nthere")}));
    EXPECT_FALSE(w.state.blockredrawandpack());
    EXPECT_TRUE(w.state.configchanged());
    const QList<CAGlyphLayer*> layers = w.view.glyphLayers();
    ASSERT_EQ(layers.size(), 4); // space, A, V, T
    for (CAGlyphLayer* layer : layers) {
        EXPECT_TRUE(layer->canfit());
        if (layer->glyphBitmap().charname() != u' ') { // rendered after the bulk rebuild
            EXPECT_GT(layer->bounds().width(), 0) << char(layer->glyphBitmap().charname());
        }
    }
}

TEST(CharacterSet, SpaceIsAlwaysInTheSet)
{
    Window w;
    w.charset.setAllLetters(QString());
    w.charset.allLettersChanged();
    EXPECT_EQ(w.charset.allLetters(), QStringLiteral(" "));
    EXPECT_EQ(w.state.textGlyph(), QStringLiteral(" "));
    ASSERT_EQ(w.view.glyphLayers().size(), 1);
    EXPECT_EQ(w.view.glyphLayers().first()->glyphBitmap().charname(), u' ');

    // A text with a space anywhere is kept as it is.
    w.charset.setAllLetters(QStringLiteral("a b"));
    w.charset.allLettersChanged();
    EXPECT_EQ(w.charset.allLetters(), QStringLiteral("a b"));

    w.charset.refreshDefaultLettersClicker();
    EXPECT_EQ(w.state.textGlyph(), QStringLiteral(" "));
    EXPECT_EQ(w.view.glyphLayers().size(), 1);
}

TEST(CharacterSet, QuickSetsAndTheirUnknownTags)
{
    Window w(false);
    w.charset.addCharSet(5);
    EXPECT_EQ(w.charset.allLetters(), QStringLiteral(" ") + QChar(u'\0'));
    w.charset.addCharSet(42);
    EXPECT_EQ(w.charset.allLetters(), QStringLiteral(" ") + QChar(u'\0') + QChar(u'\0'));

    Window latin(false);
    latin.charset.addCharSet(1);
    EXPECT_EQ(latin.charset.allLetters(), QStringLiteral(" ") + codes(0x21, 0x7E));
    latin.charset.addCharSet(7);
    EXPECT_EQ(latin.charset.allLetters(), QStringLiteral(" ") + codes(0x21, 0x7E) + codes(0x2500, 0x257F));
}

TEST(CharacterSet, AddingABlockTwiceDuplicatesItsCharacters)
{
    Window w;
    w.charset.rangeTableSelected(rowNamed("basicLatin"));
    w.charset.rangepopadd();
    w.charset.rangepopadd();
    EXPECT_EQ(w.charset.rangestart(), QStringLiteral("21"));
    EXPECT_EQ(w.charset.rangeend(), QStringLiteral("7F"));
    EXPECT_EQ(w.charset.allLetters(), QStringLiteral(" ") + codes(0x21, 0x7F) + codes(0x21, 0x7F));
    // The glyph set has one glyph per character all the same.
    EXPECT_EQ(w.view.glyphLayers().size(), 1 + 0x7F - 0x21 + 1);
}

TEST(CharacterSet, LargeBlockIsShownButNeverAdded)
{
    Window w(false);
    w.charset.rangeTableSelected(rowNamed("cjkUnifiedIdeographsExtensionA"));
    EXPECT_EQ(w.charset.rangeTextField().size(), 6592);
    EXPECT_EQ(w.charset.rangeTextField(), codes(0x3400, 0x4DBF));
    w.charset.rangepopadd();
    EXPECT_EQ(w.charset.allLetters(), QString());
    EXPECT_EQ(w.charset.rangestart(), QStringLiteral("3400"));
    EXPECT_EQ(w.charset.rangeend(), QStringLiteral("4DBF"));

    // No selection, or a row past the table, leaves the preview and the remembered block.
    w.charset.rangeTableSelected(-1);
    w.charset.rangeTableSelected(101);
    EXPECT_EQ(w.charset.rangeTextField().size(), 6592);
    EXPECT_EQ(CharacterSet::rememberedBlock(), (CodeRange{0x3400, 0x4DBF}));

    // Surrogate blocks are added as lone code units.
    w.charset.rangeTableSelected(rowNamed("lowSurrogates"));
    w.charset.rangepopadd();
    EXPECT_EQ(w.charset.allLetters(), QStringLiteral(" ") + codes(0xDC00, 0xDFFF));
}

TEST(CharacterSet, RememberedBlockIsSharedByAllWindows)
{
    Window first(false), second(false);
    first.charset.rangeTableSelected(rowNamed("arrows"));
    second.charset.rangepopadd();
    EXPECT_EQ(second.charset.allLetters(), QStringLiteral(" ") + codes(0x2190, 0x21FF));
    EXPECT_TRUE(first.charset.allLetters().isEmpty());
}

TEST(CharacterSet, SelectedTextSelectsItsGlyphs)
{
    Window w;
    w.charset.setAllLetters(QStringLiteral("ABC\u00e9\u4e00"));
    w.charset.allLettersChanged();
    w.charset.selectLettersClicked(QStringLiteral("C\u4e00"));
    QString selected;
    for (CAGlyphLayer* layer : w.view.glyphLayers())
        if (layer->selected())
            selected += QChar(layer->glyphBitmap().charname());
    EXPECT_EQ(selected, QStringLiteral("C\u4e00"));
}
