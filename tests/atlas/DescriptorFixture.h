#pragma once

// A small, fully determined glyph set for the descriptor and texture tests: DejaVu Sans 32 px,
// " AVTo.W" plus a custom-picture "X", a 39 x 192 texture in which "W" does not fit, kerning
// pairs with and without a fitted partner.

#include "Classes/atlas/TextureView.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"

namespace qm::test {

struct DescriptorFixture
{
    sharedAppState state;
    TextureView view;

    DescriptorFixture()
    {
        state.setTxtView(&view);
        view.setSharedState(&state);
        state.setFontName(QStringLiteral("DejaVu Sans"));
        state.setGlyphSize(32);
        state.setAutoSize(false);
        state.setTextureSize(39, 192);
        state.setSpaceWidth(9);
        state.setBlockredrawandpack(true);
        state.setTextGlyph(QStringLiteral(" AVTo.WX"));
        state.setBlockredrawandpack(false);

        // "X" shows a 20 x 30 picture with an extra advance and offsets of its own.
        CAGlyphLayer* x = view.getCAGlyphLayer(u'X');
        CGGlyphBitmap& g = x->glyphBitmap();
        QImage picture(20, 30, QImage::Format_RGBA8888_Premultiplied);
        picture.fill(QColor(0, 0, 255));
        g.setHasCustomPicture(true);
        g.setGlyphImage(picture);
        g.setFrameImage(QRectF(0, 0, 20, 30));
        g.setAddXAdvance(22);
        g.setAddXOffset(1);
        g.setAddYOffset(-2);
        view.getCAGlyphLayer(u'A')->glyphBitmap().setAddXOffset(3);

        KerningTable kerning;
        kerning.insert({u'A', u'V'}, -140);  // kept
        kerning.insert({u'T', u'o'}, -250);  // kept
        kerning.insert({u'A', u'A'}, 10);    // too small at this size: left out
        kerning.insert({u'A', u'W'}, -300);  // W did not fit: left out
        state.setKerningTable(kerning);
        state.setCmapTable(CmapTable{{36, u'A'}});

        view.redrawAllGlyphs();
        view.Packing(state.paddingSize(), state.paddingMethod(), state.packingReversed(), state.grid());
    }
};

} // namespace qm::test
