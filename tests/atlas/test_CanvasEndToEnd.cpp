// A whole glyph set from settings to a packed texture, headless.

#include "Classes/atlas/TextureView.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"

#include <algorithm>

#include <gtest/gtest.h>

using namespace qm;

namespace {

QString printableAscii()
{
    QString s;
    for (char16_t c = 0x20; c < 0x7F; ++c)
        s += QChar(c);
    return s;
}

/// The texture size the size search must arrive at, walking every candidate in turn.
QSize expectedSize(QList<CAGlyphLayer*> layers, int p)
{
    // Default order: area ascending (truncated), stable, then reversed.
    std::stable_sort(layers.begin(), layers.end(), [](CAGlyphLayer* a, CAGlyphLayer* b) {
        return static_cast<long long>(a->bounds().width() * a->bounds().height()) <
               static_cast<long long>(b->bounds().width() * b->bounds().height());
    });
    std::reverse(layers.begin(), layers.end());
    for (int W = 128, H = 128;;) {
        TreeNode root(QRectF(p, p, W - 2 * p, H - 2 * p));
        const bool fits = std::all_of(layers.begin(), layers.end(), [&](CAGlyphLayer* l) {
            return recursiveFindCoords(&root, l->bounds().width() + p, l->bounds().height() + p).x() >= 0;
        });
        if (fits)
            return QSize(W, H);
        if (W == H)
            W += 64;
        else
            H += 64;
    }
}

} // namespace

TEST(CanvasEndToEnd, AsciiAt40PixelsPacksWithoutOverlap)
{
    sharedAppState state;
    TextureView view;
    state.setTxtView(&view);
    view.setSharedState(&state);
    state.setFontName(QStringLiteral("DejaVu Sans"));
    state.setGlyphSize(40);

    // As the character-set field applies a new text: suspend, set, resume, redraw, pack once.
    state.setBlockredrawandpack(true);
    state.setTextGlyph(printableAscii());
    state.setBlockredrawandpack(false);
    view.redrawAllGlyphs();
    ASSERT_TRUE(view.Packing(state.paddingSize(), state.paddingMethod(), state.packingReversed(), state.grid()));

    const QList<CAGlyphLayer*> layers = view.glyphLayers();
    ASSERT_EQ(layers.size(), 95);
    const int p = state.paddingSize();
    EXPECT_EQ(QSize(state.width(), state.height()), expectedSize(layers, p));

    const QRectF inner(p, p, state.width() - 2 * p, state.height() - 2 * p);
    QList<QRectF> placed;
    for (CAGlyphLayer* layer : layers) {
        ASSERT_TRUE(layer->canfit());
        ASSERT_FALSE(layer->isHidden());
        // Back to top-left texture coordinates, the ones the descriptors write.
        const QRectF f = layer->frame();
        const QRectF r(f.x(), state.height() - f.y() - f.height(), f.width(), f.height());
        EXPECT_TRUE(inner.contains(r)) << char(layer->glyphBitmap().charname());
        for (const QRectF& other : placed)
            EXPECT_FALSE(r.intersects(other)) << char(layer->glyphBitmap().charname());
        placed.append(r);
    }
}
