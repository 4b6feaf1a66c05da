// Texture output: the atlas image at any scale, per-glyph files, the on-screen background and
// the alpha crop. Glyphs here are solid custom pictures, so every pixel's place is known.

#include "Classes/atlas/TextureView.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace qm;

namespace {

QImage solid(int w, int h, QColor color)
{
    QImage image(w, h, QImage::Format_RGBA8888_Premultiplied);
    image.fill(color);
    return image;
}

/// A canvas with a fixed texture size and glyphs placed by hand (no packing).
struct Atlas
{
    sharedAppState state;
    TextureView view;
    Atlas(int width, int height)
    {
        state.setTxtView(&view);
        view.setSharedState(&state);
        state.setWidth(width);
        state.setHeight(height);
    }
    /// A glyph showing a picture, placed with its bottom-left corner at (x, y), y up.
    CAGlyphLayer* place(char16_t c, const QImage& picture, double x, double y, bool fits = true)
    {
        auto layer = std::make_unique<CAGlyphLayer>(c);
        CGGlyphBitmap& g = layer->glyphBitmap();
        g.setHasCustomPicture(true);
        g.setGlyphImage(picture);
        g.setFrameImage(QRectF(0, 0, picture.width(), picture.height()));
        layer->setFrame(QRectF(x, y, picture.width(), picture.height()));
        layer->setCanfit(fits);
        layer->setHidden(!fits);
        return static_cast<CAGlyphLayer*>(view.backgroundLayer()->addSublayer(std::move(layer)));
    }
};

} // namespace

TEST(TextureImage, SizesRoundUpInSinglePrecision)
{
    Atlas a(256, 128);
    EXPECT_EQ(a.view.getTexture(50, 4, 50).size(), QSize(128, 64));
    Atlas b(100, 100);
    EXPECT_EQ(b.view.getTexture(33, 1, 33).size(), QSize(33, 33));
    EXPECT_EQ(b.view.getTexture(100, 1, 100).format(), QImage::Format_RGBA8888_Premultiplied);
}

TEST(TextureImage, GlyphsLandAtTheirPlacesAndNothingElseIsDrawn)
{
    Atlas a(64, 32);
    a.state.setCheckerBoard(true);
    a.state.setBgColor(Color::calibratedRGB(1, 0, 0));
    a.place(u'A', solid(10, 6, Qt::blue), 4, 2);             // y up: rows 24..29 of the image
    a.place(u'B', solid(8, 8, Qt::green), 40, 20, false);    // did not fit: never drawn
    const QImage t = a.view.getTexture(100, 4, 100);
    EXPECT_EQ(t.pixelColor(4, 24), QColor(Qt::blue));
    EXPECT_EQ(t.pixelColor(13, 29), QColor(Qt::blue));
    EXPECT_EQ(t.pixelColor(3, 24).alpha(), 0);
    EXPECT_EQ(t.pixelColor(14, 29).alpha(), 0);
    EXPECT_EQ(t.pixelColor(4, 23).alpha(), 0);
    EXPECT_EQ(t.pixelColor(4, 30).alpha(), 0);
    for (int y = 0; y < t.height(); ++y)
        for (int x = 0; x < t.width(); ++x)
            ASSERT_NE(t.pixelColor(x, y), QColor(Qt::green)) << x << "," << y;
    EXPECT_EQ(t.pixelColor(60, 2).alpha(), 0); // neither checkerboard nor background colour
}

TEST(TextureImage, ScaledOriginSnapsAndSizeDoesNot)
{
    // At 33 % a glyph spanning x 10..20 starts at floor(3.3) = 3 and is 3.3 wide.
    Atlas a(100, 100);
    a.place(u'A', solid(10, 10, Qt::blue), 10, 10);
    const QImage t = a.view.getTexture(33, 0, 33);
    EXPECT_EQ(t.pixelColor(2, 29).alpha(), 0);
    EXPECT_EQ(t.pixelColor(3, 29), QColor(Qt::blue));
    EXPECT_EQ(t.pixelColor(5, 29), QColor(Qt::blue));
    EXPECT_EQ(t.pixelColor(7, 29).alpha(), 0);
}

TEST(TextureImage, QualityNoneKeepsPixelsWhileSmoothQualitiesBlend)
{
    QImage stripes(2, 1, QImage::Format_RGBA8888_Premultiplied);
    stripes.setPixelColor(0, 0, Qt::red);
    stripes.setPixelColor(1, 0, Qt::blue);
    const QImage wide = stripes.scaled(30, 30); // 15-pixel red and blue halves
    auto middle = [&](int quality) {
        Atlas a(30, 30);
        a.place(u'A', wide, 0, 0);
        return a.view.getTexture(10, quality, 10).pixelColor(1, 1); // 3 x 3: the middle spans both halves
    };
    const QColor nearest = middle(0);
    EXPECT_TRUE(nearest == QColor(Qt::red) || nearest == QColor(Qt::blue));
    for (int q : {1, 4}) {
        const QColor blended = middle(q);
        EXPECT_GT(blended.red(), 20) << q;
        EXPECT_GT(blended.blue(), 20) << q;
    }
}

TEST(TextureFiles, PngKeepsStraightAlpha)
{
    QTemporaryDir dir;
    Atlas a(16, 16);
    a.place(u'A', solid(4, 4, QColor(255, 0, 0, 128)), 0, 0);
    ASSERT_TRUE(a.view.getMultipleTexture(100, 1, dir.filePath(QStringLiteral("x")), QStringLiteral("@2x"), 100));
    QImageReader reader(dir.filePath(QStringLiteral("x/65@2x.png")));
    const QImage read = reader.read();
    ASSERT_FALSE(read.isNull()) << qPrintable(reader.errorString());
    const QColor c = read.pixelColor(1, 1);
    EXPECT_EQ(c.alpha(), 128);
    EXPECT_EQ(c.red(), 255); // not the premultiplied 128
}

TEST(TextureFiles, OneFilePerPlacedGlyph)
{
    QTemporaryDir tmp;
    const QString dir = tmp.filePath(QStringLiteral("deep/er/font.atlas"));
    Atlas a(64, 64);
    a.place(u'A', solid(10, 12, Qt::blue), 0, 0);
    a.place(u'B', solid(10, 12, Qt::blue), 20, 0, false);
    a.place(u'C', solid(1, 1, Qt::blue), 40, 0); // vanishes at 40 %? no: ceil keeps 1 pixel
    ASSERT_TRUE(a.view.getMultipleTexture(50, 1, dir, QString(), 50));
    EXPECT_EQ(QImage(dir + QStringLiteral("/65.png")).size(), QSize(5, 6));
    EXPECT_FALSE(QFile::exists(dir + QStringLiteral("/66.png")));
    EXPECT_EQ(QImage(dir + QStringLiteral("/67.png")).size(), QSize(1, 1));

    // A glyph that scales to nothing writes no file and no error.
    Atlas z(64, 64);
    z.place(u'Z', solid(4, 4, Qt::blue), 0, 0);
    EXPECT_TRUE(z.view.getMultipleTexture(0, 1, dir, QStringLiteral("-zero"), 0));
    EXPECT_FALSE(QFile::exists(dir + QStringLiteral("/90-zero.png")));
}

TEST(TextureFiles, UnwritableFolderFails)
{
    QTemporaryDir tmp;
    const QString blocker = tmp.filePath(QStringLiteral("file"));
    QFile f(blocker);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();
    Atlas a(16, 16);
    a.place(u'A', solid(4, 4, Qt::blue), 0, 0);
    EXPECT_FALSE(a.view.getMultipleTexture(100, 1, blocker + QStringLiteral("/sub"), QString(), 100));
}

TEST(CanvasBackground, CheckerboardMakesTheBackgroundSeeThrough)
{
    Atlas a(32, 32);
    a.view.setFrameSize(QSizeF(32, 32));
    a.view.updateCheckerboardAndColor(true, Color::calibratedRGB(0.2, 0.4, 0.6));
    EXPECT_EQ(a.view.backgroundLayer()->backgroundColor().alphaComponent(), 0.0);
    EXPECT_EQ(a.view.checkerboardLayer()->backgroundPattern().size(), QSize(16, 16)); // checker.png
    a.view.updateCheckerboardAndColor(false, Color::calibratedRGB(0.2, 0.4, 0.6));
    EXPECT_EQ(a.view.backgroundLayer()->backgroundColor(), Color::calibratedRGB(0.2, 0.4, 0.6, 1.0));
    EXPECT_EQ(a.view.backgroundLayer()->frame(), QRectF(0, 0, 32, 32)); // at the canvas's origin too
}

TEST(AlphaCrop, TrimsRowsAndColumnsAtOrBelowTheThreshold)
{
    Atlas a(8, 8);
    QImage image(8, 6, QImage::Format_RGBA8888_Premultiplied);
    image.fill(Qt::transparent);
    image.setPixelColor(2, 1, QColor(0, 0, 0, 200));
    image.setPixelColor(5, 3, QColor(0, 0, 0, 40));
    EXPECT_EQ(a.view.GetCroppedRectFromCGImage(image, QRectF(0, 0, 8, 6)), QRectF(2, 1, 4, 3));
    a.state.setCropAlpha(40); // visible means above the threshold
    EXPECT_EQ(a.view.GetCroppedRectFromCGImage(image, QRectF(0, 0, 8, 6)), QRectF(2, 1, 1, 1));
    image.fill(Qt::transparent);
    EXPECT_TRUE(a.view.GetCroppedRectFromCGImage(image, QRectF(0, 0, 8, 6)).isEmpty());
}
