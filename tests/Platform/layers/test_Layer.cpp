// The layer tree: derived frames, ownership of sublayers, display, and how transactions record
// position changes for a view to animate.

#include "Platform/layers/Layer.h"

#include <gtest/gtest.h>

using namespace qm;

TEST(Layer, FrameIsDerivedFromPositionAndBounds)
{
    Layer l;
    l.setFrame(QRectF(10, 20, 30, 40));
    EXPECT_EQ(l.position(), QPointF(25, 40));
    EXPECT_EQ(l.bounds(), QRectF(0, 0, 30, 40));
    l.setPosition(QPointF(0, 0));
    EXPECT_EQ(l.frame(), QRectF(-15, -20, 30, 40));
}

TEST(Layer, SublayersAreOwnedAndOrdered)
{
    Layer root;
    Layer* a = root.addSublayer(std::make_unique<Layer>());
    Layer* c = root.addSublayer(std::make_unique<Layer>());
    Layer* b = root.insertSublayer(std::make_unique<Layer>(), 1);
    ASSERT_EQ(root.sublayers().size(), 3u);
    EXPECT_EQ(root.sublayers()[1].get(), b);
    EXPECT_EQ(b->superlayer(), &root);
    std::unique_ptr<Layer> detached = a->removeFromSuperlayer();
    EXPECT_EQ(detached.get(), a);
    EXPECT_EQ(a->superlayer(), nullptr);
    EXPECT_EQ(root.sublayers().front().get(), b);
    EXPECT_EQ(root.sublayers().back().get(), c);
    EXPECT_EQ(a->removeFromSuperlayer(), nullptr);
}

TEST(Layer, DisplayMakesContentsOfTheBoundsSize)
{
    Layer l;
    l.setBounds(QRectF(0, 0, 10.2, 7));
    l.setNeedsDisplay();
    const quint64 before = Layer::changeCount();
    l.displayIfNeeded();
    EXPECT_FALSE(l.needsDisplay());
    EXPECT_EQ(l.contents().size(), QSize(11, 7));
    EXPECT_GT(Layer::changeCount(), before);
    l.setBounds(QRectF());
    l.display();
    EXPECT_TRUE(l.contents().isNull());
}

TEST(Transaction, PositionChangesAnimateOnlyInsideAnEnabledTransaction)
{
    Layer l;
    l.setPosition(QPointF(1, 1));
    EXPECT_EQ(l.positionAnimation().duration, 0.0); // outside any transaction: a jump

    Transaction::begin();
    Transaction::setAnimationDuration(0.5);
    Transaction::setAnimationTimingFunction(TimingFunction::EaseInEaseOut);
    l.setPosition(QPointF(5, 6));
    EXPECT_EQ(l.position(), QPointF(5, 6)); // the model value changes at once
    EXPECT_EQ(l.positionAnimation().from, QPointF(1, 1));
    EXPECT_EQ(l.positionAnimation().to, QPointF(5, 6));
    EXPECT_EQ(l.positionAnimation().duration, 0.5);
    EXPECT_EQ(l.positionAnimation().timing, TimingFunction::EaseInEaseOut);
    const quint64 serial = l.positionAnimation().serial;

    // A nested transaction starts from the outer one's values.
    Transaction::begin();
    EXPECT_EQ(Transaction::animationDuration(), 0.5);
    Transaction::setDisableActions(true);
    l.setPosition(QPointF(7, 7));
    EXPECT_EQ(l.positionAnimation().duration, 0.0);
    EXPECT_GT(l.positionAnimation().serial, serial);
    Transaction::commit();
    EXPECT_FALSE(Transaction::disableActions());
    Transaction::commit();
    EXPECT_FALSE(Transaction::isOpen());
}
