// Packing: the tree packer, the grid, sort orders and the automatic texture size.

#include "Classes/atlas/TextureView.h"
#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"

#include <QRandomGenerator>

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

using namespace qm;

namespace {

class WarningLog : public TextureController
{
public:
    QString last = QStringLiteral("(none)");
    void updateWarningMessage(const QString& m) override { last = m; }
};

/// A canvas whose glyph layers have given sizes, packed without measuring any font.
struct Packer
{
    sharedAppState state;
    TextureView view;
    WarningLog controller;
    explicit Packer(bool autoSize = true, bool power2 = false)
    {
        state.setTxtView(&view);
        state.setTxtCont(&controller);
        view.setSharedState(&state);
        state.setAutoSize(autoSize);
        state.setPower2(power2);
        state.setPaddingMethod(0);
        state.setPackingReversed(false);
    }
    CAGlyphLayer* add(double w, double h, char16_t c = u'a')
    {
        auto layer = std::make_unique<CAGlyphLayer>(c);
        layer->setBounds(QRectF(0, 0, w, h));
        return static_cast<CAGlyphLayer*>(view.backgroundLayer()->addSublayer(std::move(layer)));
    }
    bool pack(int padding) { return view.Packing(padding, state.paddingMethod(), state.packingReversed(), state.grid()); }
    QSize size() const { return QSize(state.width(), state.height()); }
    /// The slot (from the top left) the packer gave a layer.
    QPointF slot(const CAGlyphLayer* l) const
    {
        return QPointF(l->position().x() - l->bounds().width() / 2,
                       state.height() - l->position().y() - l->bounds().height() / 2);
    }
};

/// The size search as a plain sequential walk over every candidate, for comparison.
QSize sequentialSearch(const QList<QSizeF>& boxes, int p, bool power2)
{
    int W = power2 ? 32 : 128, H = W, e = 5;
    for (;;) {
        TreeNode root(QRectF(p, p, W - 2 * p, H - 2 * p));
        bool fits = true;
        for (const QSizeF& b : boxes)
            if (recursiveFindCoords(&root, b.width(), b.height()).x() < 0) {
                fits = false;
                break;
            }
        if (fits || W == 4096)
            return QSize(W, H);
        if (power2)
            W = H = 1 << ++e;
        else if (W == H)
            W += 64;
        else
            H += 64;
    }
}

} // namespace

TEST(PackingSizes, EmptySetGetsTheSmallestTexture)
{
    for (bool grid : {false, true}) {
        Packer a;
        a.state.setGrid(grid);
        EXPECT_TRUE(a.pack(2));
        EXPECT_EQ(a.size(), QSize(128, 128)) << grid;
        EXPECT_EQ(a.controller.last, QString());
        Packer b(true, true);
        b.state.setGrid(grid);
        EXPECT_TRUE(b.pack(2));
        EXPECT_EQ(b.size(), QSize(32, 32)) << grid;
    }
}

TEST(PackingTree, TwoSmallGlyphsWithPowerOfTwo)
{
    Packer p(true, true);
    CAGlyphLayer* first = p.add(10, 10);
    CAGlyphLayer* second = p.add(10, 10);
    EXPECT_TRUE(p.pack(1));
    EXPECT_EQ(p.size(), QSize(32, 32));
    EXPECT_EQ(first->position(), QPointF(6, 26)); // slot (1, 1) on a 32-high canvas
    EXPECT_EQ(first->positionAnimation().duration, 0.5);
    EXPECT_EQ(first->positionAnimation().timing, TimingFunction::EaseInEaseOut);
    EXPECT_TRUE(first->canfit());
    EXPECT_TRUE(second->canfit());
    EXPECT_EQ(p.view.frameSize(), QSizeF(32, 32));
}

TEST(PackingTree, ExactFitDoesNotSplitAndAFractionTooWideDoesNotFit)
{
    Packer exact(false);
    exact.state.setWidth(32);
    exact.state.setHeight(32);
    CAGlyphLayer* whole = exact.add(29, 29); // box 30 x 30, the whole root
    EXPECT_TRUE(exact.pack(1));
    EXPECT_EQ(exact.slot(whole), QPointF(1, 1));
    ASSERT_NE(exact.view.Nodes(), nullptr);
    EXPECT_TRUE(exact.view.Nodes()->used);
    EXPECT_EQ(exact.view.Nodes()->leftL, nullptr);

    Packer over(false);
    over.state.setWidth(32);
    over.state.setHeight(32);
    CAGlyphLayer* wide = over.add(29.5, 10);
    EXPECT_FALSE(over.pack(1));
    EXPECT_FALSE(wide->canfit());
    EXPECT_TRUE(wide->isHidden());
    EXPECT_EQ(over.controller.last,
              QStringLiteral("Warning! Can't fit all letters, please reduce the 'glyph size' or the letters count."));
}

TEST(PackingTree, WidthGrowsBeforeHeight)
{
    Packer p;
    p.add(150, 100);
    EXPECT_TRUE(p.pack(0));
    EXPECT_EQ(p.size(), QSize(192, 128));
}

TEST(PackingTree, TooWideGlyphStopsTheSearchAtTheLargestSize)
{
    for (bool power2 : {false, true}) {
        Packer p(true, power2);
        CAGlyphLayer* small = p.add(20, 20);
        CAGlyphLayer* huge = p.add(4096 - 3 * 2 + 1, 10);
        EXPECT_FALSE(p.pack(2));
        EXPECT_EQ(p.size(), power2 ? QSize(4096, 4096) : QSize(4096, 4032));
        EXPECT_TRUE(huge->isHidden());
        EXPECT_FALSE(huge->canfit());
        EXPECT_TRUE(small->canfit());
        EXPECT_NE(p.controller.last, QString());
    }
}

TEST(PackingOrder, AreaAndLongerSideCompareTruncatedIntegers)
{
    Packer a(false);
    a.state.setWidth(64);
    a.state.setHeight(64);
    a.state.setPaddingMethod(3);
    CAGlyphLayer* larger = a.add(10.6, 10);  // area 106
    CAGlyphLayer* smaller = a.add(10.2, 10); // area 102: placed first
    a.pack(0);
    EXPECT_EQ(a.slot(smaller), QPointF(0, 0));
    EXPECT_NE(a.slot(larger), QPointF(0, 0));

    Packer b(false);
    b.state.setWidth(64);
    b.state.setHeight(64);
    b.state.setPaddingMethod(3);
    CAGlyphLayer* first = b.add(10.29, 10); // 102.9 and 102.5 are both 102: set order stays
    b.add(10.25, 10);
    b.pack(0);
    EXPECT_EQ(b.slot(first), QPointF(0, 0));

    Packer c(false);
    c.state.setWidth(64);
    c.state.setHeight(64);
    c.state.setPaddingMethod(4);
    c.state.setPackingReversed(true);
    CAGlyphLayer* x = c.add(12.9, 3); // longer side 12
    CAGlyphLayer* y = c.add(3, 12.1); // longer side 12: equal, so reversal puts y first
    c.pack(0);
    EXPECT_EQ(c.slot(y), QPointF(0, 0));
    EXPECT_NE(c.slot(x), QPointF(0, 0));

    Packer d(false);
    d.state.setWidth(64);
    d.state.setHeight(64);
    d.state.setPaddingMethod(5);
    d.add(5, 5, u'z');
    CAGlyphLayer* lowest = d.add(5, 5, u'b');
    d.pack(0);
    EXPECT_EQ(d.slot(lowest), QPointF(0, 0));
}

TEST(PackingGrid, RowsWrapWhenTheNextCellWouldPassTheEdge)
{
    Packer p(false);
    p.state.setGrid(true);
    p.state.setWidth(100);
    p.state.setHeight(100);
    QList<CAGlyphLayer*> cells;
    for (int i = 0; i < 5; ++i)
        cells.append(p.add(30, 18)); // cells of 32 x 20 with padding 2
    EXPECT_TRUE(p.pack(2));
    EXPECT_EQ(p.slot(cells[0]), QPointF(0, 0));
    EXPECT_EQ(p.slot(cells[1]), QPointF(32, 0));
    EXPECT_EQ(p.slot(cells[2]), QPointF(64, 0));
    EXPECT_EQ(p.slot(cells[3]), QPointF(0, 20));
    EXPECT_EQ(p.slot(cells[4]), QPointF(32, 20));
}

TEST(PackingGrid, AutomaticSizes)
{
    for (bool power2 : {false, true}) {
        Packer p(true, power2);
        p.state.setGrid(true);
        for (int i = 0; i < 10; ++i)
            p.add(i == 3 ? 30 : 25, i == 7 ? 20 : 15);
        EXPECT_TRUE(p.pack(2));
        EXPECT_EQ(p.size(), QSize(128, 128)) << power2; // k = 4 columns of 32 x 22
    }
    // Without power of two each side is sized by itself; with it the square follows the width.
    Packer tall(true, false);
    tall.state.setGrid(true);
    for (int i = 0; i < 4; ++i)
        tall.add(10, 100);
    tall.pack(0);
    EXPECT_EQ(tall.size(), QSize(128, 256));
    Packer square(true, true);
    square.state.setGrid(true);
    for (int i = 0; i < 4; ++i)
        square.add(10, 100);
    square.pack(0);
    EXPECT_EQ(square.size(), QSize(32, 32));
}

TEST(PackingSearch, SameSizeAsASequentialSearch)
{
    QRandomGenerator random(20261122);
    for (int round = 0; round < 40; ++round) {
        const bool power2 = round % 2;
        const int padding = round % 3;
        Packer p(true, power2);
        QList<QSizeF> boxes;
        const int count = 1 + random.bounded(120);
        const int maxSide = 8 + random.bounded(90);
        for (int i = 0; i < count; ++i) {
            const double w = 1 + random.bounded(maxSide), h = 1 + random.bounded(maxSide);
            p.add(w, h);
            boxes.append(QSizeF(w + padding, h + padding));
        }
        p.pack(padding);
        EXPECT_EQ(p.size(), sequentialSearch(boxes, padding, power2)) << round;
    }
}

TEST(PackingTree, BlockedPackingChangesNothing)
{
    Packer p;
    CAGlyphLayer* g = p.add(10, 10);
    p.state.setBlockredrawandpack(true);
    EXPECT_TRUE(p.pack(2));
    EXPECT_EQ(p.size(), QSize(512, 512));
    EXPECT_EQ(g->position(), QPointF());
    EXPECT_EQ(p.controller.last, QStringLiteral("(none)"));
}
