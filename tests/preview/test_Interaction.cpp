// Selection, deletion, per-glyph corrections and picture drops on the canvas.

#include "Classes/atlas/TextureView.h"
#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace qm;

namespace {

class CountingView : public TextureView
{
public:
    int packs = 0;
    bool Packing(int p, int m, bool r, bool g) override
    {
        ++packs;
        return TextureView::Packing(p, m, r, g);
    }
};

class StatusLog : public TextureController
{
public:
    QStringList clicked;
    CAGlyphLayer* details = nullptr;
    void updateClickedGlyph(const QString& t) override { clicked.append(t); }
    void showGlyphDetails(CAGlyphLayer* l) override { details = l; }
};

struct Canvas
{
    sharedAppState state;
    CountingView view;
    StatusLog controller;
    explicit Canvas(const QString& text = QStringLiteral("ABCDE"))
    {
        state.setTxtView(&view);
        state.setTxtCont(&controller);
        view.setSharedState(&state);
        state.setFontName(QStringLiteral("DejaVu Sans"));
        state.setTextGlyph(text);
    }
    CAGlyphLayer* layer(char16_t c) const { return view.getCAGlyphLayer(c); }
    QPointF centre(char16_t c) const { return layer(c)->position(); }
    int selectedCount() const
    {
        int n = 0;
        for (CAGlyphLayer* l : view.glyphLayers())
            n += l->selected();
        return n;
    }
};

QString writePicture(const QTemporaryDir& dir, int w, int h)
{
    QImage picture(w, h, QImage::Format_RGBA8888_Premultiplied);
    picture.fill(Qt::magenta);
    const QString path = dir.filePath(QStringLiteral("picture.png"));
    picture.save(path);
    return path;
}

} // namespace

TEST(CanvasSelection, ClickTogglesAndReports)
{
    Canvas c;
    c.view.mouseDown(c.centre(u'B'));
    EXPECT_TRUE(c.layer(u'B')->selected());
    const QRectF f = c.layer(u'B')->frame();
    const QRectF r = c.layer(u'B')->glyphBitmap().glyphRect();
    ASSERT_EQ(c.controller.clicked.size(), 1);
    EXPECT_EQ(c.controller.clicked.first(),
              QStringLiteral("Last clicked: B - 66 (0x42) (WxH: %1x%2) (Coords: %3x%4)")
                  .arg(int(r.width()))
                  .arg(int(r.height()))
                  .arg(int(f.x()))
                  .arg(int(f.y())));
    c.view.mouseDown(c.centre(u'B'));
    EXPECT_FALSE(c.layer(u'B')->selected());

    c.view.mouseDown(QPointF(-50, -50)); // empty canvas: nothing happens
    EXPECT_EQ(c.controller.clicked.size(), 2);

    c.view.rightMouseUp(c.centre(u'C'));
    EXPECT_EQ(c.controller.details, c.layer(u'C'));
}

TEST(CanvasSelection, SelectNoneInvertsAndSelectLettersPicksExactly)
{
    Canvas c;
    c.layer(u'A')->makeSelected();
    c.layer(u'B')->makeSelected();
    c.view.selectNone();
    EXPECT_EQ(c.selectedCount(), 3);
    EXPECT_FALSE(c.layer(u'A')->selected());
    c.view.selectAll();
    EXPECT_EQ(c.selectedCount(), 5);
    c.view.selectLetters(QStringLiteral("xEC"));
    EXPECT_EQ(c.selectedCount(), 2);
    EXPECT_TRUE(c.layer(u'E')->selected());
    EXPECT_EQ(c.view.getOneLayer(), c.layer(u'E'));
    EXPECT_EQ(c.view.getAllLayers().size(), 5);
}

TEST(CanvasSelection, DeleteRemovesTheSelectionAndRepacksOnlyWhenSomethingWent)
{
    Canvas c;
    const int packs = c.view.packs;
    c.view.keyDown(false, QChar(0x7F)); // nothing selected
    EXPECT_EQ(c.view.packs, packs);
    c.layer(u'B')->makeSelected();
    c.layer(u'D')->makeSelected();
    c.view.keyDown(false, QChar(0x7F));
    EXPECT_EQ(c.view.glyphLayers().size(), 3);
    EXPECT_EQ(c.view.packs, packs + 1);
    EXPECT_EQ(c.state.textGlyph(), QStringLiteral("ABCDE")); // the character set is unchanged
    c.view.keyUp(false, QChar(0x7F));
    EXPECT_EQ(c.view.packs, packs + 1);

    c.view.keyDown(true, QChar(u'a'));
    EXPECT_TRUE(c.view.allowMultipleSelection());
    c.view.keyUp(true, QChar(u'a'));
    EXPECT_FALSE(c.view.allowMultipleSelection());
}

TEST(GlyphCorrections, OffsetsAndPictureSwitchRedrawAndRepack)
{
    Canvas c;
    const int packs = c.view.packs;
    c.state.updateGlyph(u'A', 3, -1, 4);
    const CGGlyphBitmap& a = c.layer(u'A')->glyphBitmap();
    EXPECT_EQ(a.addXOffset(), 3);
    EXPECT_EQ(a.addYOffset(), -1);
    EXPECT_EQ(a.addXAdvance(), 4);
    EXPECT_EQ(c.view.packs, packs + 1);
    EXPECT_TRUE(c.state.configchanged());
    c.state.updateGlyphImage(u'A', false, false);
    EXPECT_FALSE(a.fitImage());
    EXPECT_EQ(c.view.packs, packs + 2);
}

TEST(PictureDrop, APictureBecomesTheHighlightedGlyph)
{
    Canvas c;
    QTemporaryDir dir;
    const QString picture = writePicture(dir, 40, 60);
    const int packs = c.view.packs;

    EXPECT_TRUE(c.view.draggingEntered(true));
    EXPECT_TRUE(c.view.highlight());
    c.view.draggingUpdated(c.centre(u'A'));
    EXPECT_TRUE(c.layer(u'A')->highlight());
    EXPECT_FALSE(c.layer(u'B')->highlight());
    EXPECT_TRUE(c.view.prepareForDragOperation(true));
    EXPECT_FALSE(c.view.performDragOperation({picture, picture})); // two files are refused
    EXPECT_TRUE(c.view.performDragOperation({picture}));

    CAGlyphLayer* a = c.layer(u'A');
    EXPECT_EQ(a->bounds().size(), QSizeF(40, 60));
    EXPECT_EQ(a->glyphBitmap().frameImage(), QRectF(0, 0, 40, 60));
    EXPECT_EQ(a->glyphBitmap().addXAdvance(), 40);
    EXPECT_TRUE(a->glyphBitmap().hasCustomPicture());
    EXPECT_TRUE(a->glyphBitmap().fitImage());
    EXPECT_EQ(a->name(), QStringLiteral("custom"));
    EXPECT_FALSE(a->highlight());
    EXPECT_EQ(c.view.packs, packs + 1);
    EXPECT_TRUE(a->canfit());

    c.view.draggingExited();
    EXPECT_FALSE(c.view.highlight());
    EXPECT_FALSE(c.view.draggingEntered(false)); // nothing that makes a picture
}

TEST(PictureDrop, InPreviewModeThePictureBecomesTheBackground)
{
    Canvas c;
    QTemporaryDir dir;
    const QString picture = writePicture(dir, 30, 20);
    c.view.switchToPreview();
    c.view.updatePreview(QStringLiteral("AB"));
    EXPECT_TRUE(c.view.performDragOperation({picture}));
    EXPECT_EQ(c.view.bgpreviewLayer()->name(), picture);
    EXPECT_EQ(c.view.bgpreviewLayer()->bounds().size(), QSizeF(30, 20));
    EXPECT_EQ(c.view.bgpreviewLayer()->position(), QPointF(2048, 2048));
    EXPECT_EQ(c.view.previewLayer()->sublayers().size(), 4u);
    EXPECT_FALSE(c.layer(u'A')->glyphBitmap().hasCustomPicture());
}
