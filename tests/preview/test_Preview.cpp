// The text preview's layout: advances, kerning, line breaks and the bounding box, on the real
// canvas with DejaVu Sans glyphs.

#include "Classes/atlas/TextureView.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"

#include <gtest/gtest.h>

using namespace qm;

namespace {

struct Preview
{
    sharedAppState state;
    TextureView view;
    explicit Preview(const QString& glyphs = QStringLiteral(" ABV"), int size = 50)
    {
        state.setTxtView(&view);
        view.setSharedState(&state);
        state.setFontName(QStringLiteral("DejaVu Sans"));
        state.setGlyphSize(size);
        state.setTextGlyph(glyphs);
        view.switchToPreview();
        state.setIsinpreviewmode(true);
    }
    /// The i-th preview glyph layer.
    CAGlyphLayer* glyph(int i) const
    {
        return static_cast<CAGlyphLayer*>(view.previewLayer()->sublayers()[size_t(i + 2)].get());
    }
    int glyphCount() const { return int(view.previewLayer()->sublayers().size()) - 2; }
    /// The pen position a glyph was placed at (its x without the glyph's own offset and width).
    double pen(int i) const
    {
        const CGGlyphBitmap& g = glyph(i)->glyphBitmap();
        return glyph(i)->position().x() - g.glyphRect().width() / 2 - g.xoffset() - g.addXOffset();
    }
};

} // namespace

TEST(PreviewLayout, KerningMovesTheSecondGlyphByTruncatedPixels)
{
    Preview p;
    p.view.updatePreview(QStringLiteral("AV"));
    const double plain = p.pen(1) - p.pen(0);
    EXPECT_EQ(plain, p.glyph(0)->glyphBitmap().xadvanced());

    // -150 units at size 50: (-150 * 50) / 2048 = -3.66, truncated toward zero to -3.
    p.state.setKerningTable(KerningTable{{{u'A', u'V'}, -150}});
    p.state.setCmapTable(CmapTable{{36, u'A'}});
    p.view.updatePreview(QStringLiteral("AV"));
    EXPECT_EQ(p.pen(1) - p.pen(0), plain - 3);

    p.state.setKernings(false);
    p.view.updatePreview(QStringLiteral("AV"));
    EXPECT_EQ(p.pen(1) - p.pen(0), plain);
}

TEST(PreviewLayout, BackslashNBreaksLinesWithoutAGlyph)
{
    Preview p;
    p.view.updatePreview(QStringLiteral("B"));
    const QPointF alone = p.glyph(0)->position();
    const int lineHeight = p.view.getDefaultLineHeight();

    p.view.updatePreview(QStringLiteral("A\\nB"));
    ASSERT_EQ(p.glyphCount(), 2);
    EXPECT_EQ(p.state.previewText(), QStringLiteral("A\nB"));
    EXPECT_EQ(p.glyph(1)->glyphBitmap().charname(), u'B');
    // B starts the second line: one line height lower, back at the line start of A's line.
    EXPECT_EQ(p.glyph(1)->position().y(), alone.y() - lineHeight);
    EXPECT_EQ(p.pen(1), p.pen(0));
    EXPECT_EQ(p.view.boundingBoxPreview()->bounds().height(), 2 * lineHeight);

    // A trailing line break adds a line but no glyph.
    p.view.updatePreview(QStringLiteral("B\\n"));
    EXPECT_EQ(p.glyphCount(), 1);
    EXPECT_EQ(p.state.previewText(), QStringLiteral("B\n"));
}

TEST(PreviewLayout, FixedAdvanceAppliesToEveryGlyphSpacesIncluded)
{
    Preview p;
    p.state.setFixedadvance(true);
    p.state.setFixedadvancevalue(30);
    p.state.setXadvancedOffset(2);
    p.view.updatePreview(QStringLiteral("A BV"));
    for (int i = 1; i < 4; ++i)
        EXPECT_EQ(p.pen(i) - p.pen(i - 1), 32) << i;
}

TEST(PreviewLayout, MissingCharactersAreHiddenAndEmptyTextLeavesTheFixedLayers)
{
    Preview p;
    p.view.updatePreview(QStringLiteral("AzB"));
    ASSERT_EQ(p.glyphCount(), 3);
    EXPECT_FALSE(p.glyph(0)->isHidden());
    EXPECT_TRUE(p.glyph(1)->isHidden()); // "z" is not in the glyph set
    EXPECT_FALSE(p.glyph(2)->isHidden());

    p.view.updatePreview(QString());
    EXPECT_EQ(p.view.previewLayer()->sublayers().size(), 2u);
    EXPECT_EQ(p.view.boundingBoxPreview()->bounds().width(), 0.0);
    EXPECT_TRUE(p.view.getPreviewImg().isNull());
}

TEST(PreviewLayout, DraggingMovesTheWholeText)
{
    Preview p;
    p.view.updatePreview(QStringLiteral("AB"));
    const QPointF before = p.glyph(0)->position();
    // At magnification 1 content points are preview points; start the drag on the "A".
    const QPointF onA = p.glyph(0)->position();
    p.view.mouseDown(onA);
    ASSERT_TRUE(p.view.previewMouseDragging());
    p.view.mouseDragged(onA + QPointF(30, -10));
    EXPECT_EQ(p.glyph(0)->position(), before + QPointF(30, -10));
    p.view.mouseUp(onA + QPointF(30, -10));
    EXPECT_FALSE(p.view.previewMouseDragging());
    EXPECT_EQ(p.view.previewXYOffset(), QPointF(30, -10));
    // A second drag continues from where the first ended.
    p.view.mouseDown(p.glyph(0)->position());
    p.view.mouseDragged(p.glyph(0)->position() + QPointF(5, 0));
    EXPECT_EQ(p.view.previewXYOffset(), QPointF(35, -10));
}

TEST(PreviewLayout, MagnifiedClicksAreTestedAtShiftedPoints)
{
    Preview p;
    p.view.updatePreview(QStringLiteral("A"));
    p.glyph(0)->setFrame(QRectF(70, 70, 10, 10));
    p.view.setPreviewMagnification(0.5);
    p.view.mouseDown(QPointF(1100, 1100)); // 1100 - (2048 - 1024) = 76
    EXPECT_TRUE(p.view.previewMouseDragging());
}

TEST(PreviewLayout, PreviewImageIsCroppedAroundTheText)
{
    Preview p;
    p.state.setPrevBgColor(Color::calibratedRGB(0, 0, 1));
    p.view.updatePreview(QStringLiteral("AB"));
    const QImage image = p.view.getPreviewImg();
    ASSERT_FALSE(image.isNull());
    EXPECT_LT(image.width(), 200);
    EXPECT_GT(image.width(), p.glyph(0)->bounds().width() + p.glyph(1)->bounds().width());
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::blue)); // the margin shows the background
    EXPECT_EQ(TextureView::previewBackgroundSize(5), QSizeF(1536, 2048));
    EXPECT_EQ(TextureView::previewBackgroundSize(99), QSizeF(320, 480));
}
