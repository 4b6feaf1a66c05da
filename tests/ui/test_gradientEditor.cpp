// The gradient editor: stop edits and their knob bookkeeping, and the mouse and key editing,
// driven with real events on the offscreen platform.

#include "Classes/ui/ColorPanel.h"
#include "Classes/ui/ColorWellCoordinator.h"
#include "Classes/ui/gradientEditor.h"

#include <QColorDialog>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <random>

#include <gtest/gtest.h>

using namespace qm;

namespace {

// 218 wide: the bar is 200 wide from x = 9, so location t sits at x = 9 + 200 t.
constexpr int kWidth = 218;
constexpr int kHeight = 29;

QPoint at(double t, int y = kHeight / 2)
{
    return QPoint(int(std::lround(9 + 200 * t)), y);
}

/// A stop's colour says which stop it is: red = id / 100.
Gradient tagged(const QList<double>& locations)
{
    QList<GradientStop> stops;
    for (int i = 0; i < locations.size(); ++i)
        stops.append({Color::calibratedRGB(i / 100.0, 0.5, 0.5), locations[i]});
    return Gradient(stops);
}
int idOf(const gradientEditor& e, int index)
{
    return int(std::lround(e.gradient().stop(index).color.redComponent() * 100));
}

struct Editor
{
    gradientEditor w;
    QSignalSpy changed{&w, &gradientEditor::gradientChanged};
    explicit Editor(const Gradient& g = Gradient())
    {
        w.resize(kWidth, kHeight);
        if (g.isValid())
            w.setGradient(g);
    }
    void doubleClick(QPoint p)
    {
        QTest::mouseClick(&w, Qt::LeftButton, {}, p);
        QTest::mouseDClick(&w, Qt::LeftButton, {}, p);
        QTest::mouseRelease(&w, Qt::LeftButton, {}, p);
    }
    void drag(QPoint from, QPoint to)
    {
        QTest::mousePress(&w, Qt::LeftButton, {}, from);
        QTest::mouseMove(&w, to);
        QTest::mouseRelease(&w, Qt::LeftButton, {}, to);
    }
    double location(int i) const { return w.gradient().stop(i).location; }
};

class Coordinator : public ColorWellCoordinator
{
public:
    QStringList calls;
    bool answer = false;
    void deactivateallEditing() override { calls << "deactivateallEditing"; }
    void deactivateallWells() override { calls << "deactivateallWells"; }
    bool deactivategradientWells() override
    {
        calls << "deactivategradientWells";
        return answer;
    }
};

} // namespace

TEST(GradientEditorEdits, KnobIndicesKeepPointingAtTheSameStops)
{
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> unit(0.02, 0.98);
    std::uniform_real_distribution<double> close(0.002, 0.012);
    for (int round = 0; round < 400; ++round) {
        // Every third gradient has its stops closer together than the 0.01 nudge.
        const int count = 2 + int(rng() % 4);
        QList<double> locations{unit(rng) * 0.9};
        for (int i = 1; i < count; ++i)
            locations.append(round % 3 ? unit(rng) : locations.last() + close(rng));
        Editor e(tagged(locations));
        // Edit one knob's colour, then drag one; the knobs taken are whichever the clicks hit.
        e.doubleClick(at(e.location(int(rng() % count))));
        const int edited = e.w._editingKnobAtIndex();
        ASSERT_GE(edited, 0);
        const int editedId = idOf(e.w, edited);
        QTest::mousePress(&e.w, Qt::LeftButton, {}, at(e.location(int(rng() % count))));
        const int k = e.w._draggingKnobAtIndex();
        ASSERT_GE(k, 0);
        const int movedId = idOf(e.w, k);

        // Half the moves land exactly on another stop.
        const double target = (round % 2) ? e.location(int(rng() % count)) : unit(rng);
        e.w._setLocation(target, k);
        ASSERT_EQ(idOf(e.w, e.w._draggingKnobAtIndex()), movedId) << "round " << round;
        ASSERT_EQ(idOf(e.w, e.w._editingKnobAtIndex()), editedId) << "round " << round;
        for (int i = 1; i < count; ++i)
            ASSERT_LT(e.location(i - 1), e.location(i)) << "two stops share a location, round " << round;

        e.w._addColorAtLocation(unit(rng));
        ASSERT_EQ(idOf(e.w, e.w._editingKnobAtIndex()), editedId) << "round " << round;

        const int victim = int(rng() % (count + 1));
        const bool victimEdited = victim == e.w._editingKnobAtIndex();
        e.w._deleteColorAtIndex(victim);
        if (victimEdited)
            ASSERT_EQ(e.w._editingKnobAtIndex(), -1);
        else
            ASSERT_EQ(idOf(e.w, e.w._editingKnobAtIndex()), editedId) << "round " << round;
        QTest::mouseRelease(&e.w, Qt::LeftButton, {}, at(0.5));
    }
}

TEST(GradientEditorEdits, MovingOntoAnotherStopNudgesByOneHundredth)
{
    Editor e(tagged({0.2, 0.8}));
    // From the left onto 0.8: it ends 0.01 further on, past the other stop.
    e.drag(at(0.2), at(0.8));
    EXPECT_DOUBLE_EQ(e.location(1), 0.81);
    EXPECT_EQ(idOf(e.w, 1), 0);
    // From the right onto 0.2: it ends at 0.19.
    Editor f(tagged({0.2, 0.8}));
    f.w._setLocation(0.2, 1);
    EXPECT_DOUBLE_EQ(f.location(0), 0.19);
    EXPECT_EQ(idOf(f.w, 0), 1);
    // Beyond the end the location is clamped.
    f.w._setLocation(1.7, 0);
    EXPECT_DOUBLE_EQ(f.location(1), 1.0);
    f.w._setLocation(-3, 1);
    EXPECT_DOUBLE_EQ(f.location(0), 0.0);

    // Dragged past a stop sitting at 1.0, the two share 1.0; the drag stays on its stop.
    Editor g(tagged({0.3, 1.0}));
    QTest::mousePress(&g.w, Qt::LeftButton, {}, at(0.3));
    QTest::mouseMove(&g.w, at(1.3));
    EXPECT_EQ(idOf(g.w, g.w._draggingKnobAtIndex()), 0);
    QTest::mouseMove(&g.w, at(0.6));
    QTest::mouseRelease(&g.w, Qt::LeftButton, {}, at(0.6));
    EXPECT_EQ(g.w.gradient(), tagged({0.6, 1.0}));
}

TEST(GradientEditorEdits, TwoStopsAreNeverLost)
{
    Editor e(tagged({0.2, 0.8}));
    // Dragged off the bar: only moved, and the cursor stays an arrow.
    QTest::mousePress(&e.w, Qt::LeftButton, {}, at(0.2));
    QTest::mouseMove(&e.w, at(0.5, kHeight + 30));
    EXPECT_EQ(e.w.cursor().shape(), Qt::ArrowCursor);
    QTest::mouseRelease(&e.w, Qt::LeftButton, {}, at(0.5, kHeight + 30));
    ASSERT_EQ(e.w.gradient().numberOfColorStops(), 2);
    EXPECT_DOUBLE_EQ(e.location(0), 0.5);
    // Delete on the edited stop does nothing either.
    e.doubleClick(at(0.5));
    ASSERT_EQ(e.w._editingKnobAtIndex(), 0);
    QTest::keyClick(&e.w, Qt::Key_Delete);
    QTest::keyClick(&e.w, Qt::Key_Backspace);
    EXPECT_EQ(e.w.gradient(), tagged({0.5, 0.8}));
    e.w._deleteColorAtIndex(1);
    EXPECT_EQ(e.w.gradient().numberOfColorStops(), 2);

    // With three stops the same drag shows the disappearing cursor and deletes on release.
    Editor t(tagged({0.2, 0.5, 0.8}));
    QTest::mousePress(&t.w, Qt::LeftButton, {}, at(0.5));
    QTest::mouseMove(&t.w, at(0.6, -20));
    EXPECT_NE(t.w.cursor().shape(), Qt::ArrowCursor);
    QTest::mouseMove(&t.w, at(0.6, kHeight / 2)); // back on the bar: arrow again
    EXPECT_EQ(t.w.cursor().shape(), Qt::ArrowCursor);
    QTest::mouseMove(&t.w, at(0.6, -20));
    QTest::mouseRelease(&t.w, Qt::LeftButton, {}, at(0.6, -20));
    ASSERT_EQ(t.w.gradient().numberOfColorStops(), 2);
    EXPECT_EQ(idOf(t.w, 0), 0);
    EXPECT_EQ(idOf(t.w, 1), 2);
    EXPECT_EQ(t.w.cursor().shape(), Qt::ArrowCursor);
    EXPECT_GE(t.changed.count(), 3); // every move and the deletion
}

TEST(GradientEditorEdits, ArrowKeysStepByElevenThousandthsWithinZeroToOne)
{
    Editor e(tagged({0.005, 0.4, 0.5, 0.995}));
    e.doubleClick(at(0.995));
    ASSERT_EQ(e.w._editingKnobAtIndex(), 3);
    QTest::keyClick(&e.w, Qt::Key_Right);
    EXPECT_EQ(e.location(3), 1.0);
    QTest::keyClick(&e.w, Qt::Key_Right);
    EXPECT_EQ(e.location(3), 1.0);

    e.doubleClick(at(0.005));
    ASSERT_EQ(e.w._editingKnobAtIndex(), 0);
    QTest::keyClick(&e.w, Qt::Key_Left);
    EXPECT_EQ(e.location(0), 0.0);

    // Stepping past a neighbour keeps editing the same stop.
    e.doubleClick(at(0.4));
    ASSERT_EQ(e.w._editingKnobAtIndex(), 1);
    for (int i = 0; i < 10; ++i)
        QTest::keyClick(&e.w, Qt::Key_Right);
    ASSERT_EQ(e.w._editingKnobAtIndex(), 2);
    EXPECT_EQ(idOf(e.w, 2), 1);
    EXPECT_NEAR(e.location(2), 0.51, 1e-12);
    // Modified arrows are other commands.
    QTest::keyClick(&e.w, Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_NEAR(e.location(2), 0.51, 1e-12);
}

TEST(GradientEditorEvents, DoubleClickBetweenKnobsAddsAWhiteStop)
{
    Editor e(tagged({0.2, 0.8}));
    e.doubleClick(at(0.5));
    ASSERT_EQ(e.w.gradient().numberOfColorStops(), 3);
    EXPECT_DOUBLE_EQ(e.location(1), 0.5);
    EXPECT_EQ(e.w.gradient().stop(1).color, Color::calibratedRGB(1, 1, 1));
    EXPECT_EQ(e.w._editingKnobAtIndex(), -1);
    EXPECT_EQ(e.changed.count(), 1);
    EXPECT_EQ(e.changed.at(0).at(0).value<gradientEditor*>(), &e.w);
}

TEST(GradientEditorEvents, DoubleClickOnAKnobEditsItsColourInTheSharedPanel)
{
    Coordinator tc;
    Editor e; // orange at 0.2, yellow at 0.8
    e.w.setTC(&tc);
    e.doubleClick(at(0.8));
    EXPECT_EQ(e.w.gradient().numberOfColorStops(), 2);
    EXPECT_EQ(e.changed.count(), 0);
    EXPECT_EQ(e.w._editingKnobAtIndex(), 1);
    EXPECT_EQ(tc.calls, QStringList({"deactivateallEditing", "deactivateallWells"}));
    ColorPanel* panel = ColorPanel::shared();
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(panel->target(), &e.w);
    EXPECT_EQ(panel->dialog()->currentColor().rgba(), qRgb(255, 255, 0));
    EXPECT_TRUE(panel->dialog()->testOption(QColorDialog::ShowAlphaChannel));

    // Picking a colour recolours the edited stop.
    panel->dialog()->setCurrentColor(QColor(0, 0, 255, 128));
    EXPECT_EQ(e.w.gradient().stop(1).color.toQColor().rgba(), qRgba(0, 0, 255, 128));
    EXPECT_GE(e.changed.count(), 1); // the dialog may report colour and alpha one by one
    // A well took the panel: the editor lets go and keeps its colour.
    tc.answer = true;
    panel->dialog()->setCurrentColor(Qt::green);
    EXPECT_EQ(e.w._editingKnobAtIndex(), -1);
    EXPECT_EQ(e.w.gradient().stop(1).color.toQColor().rgba(), qRgba(0, 0, 255, 128));

    // Closing the panel ends editing.
    tc.answer = false;
    e.doubleClick(at(0.2));
    ASSERT_EQ(e.w._editingKnobAtIndex(), 0);
    panel->close();
    EXPECT_EQ(e.w._editingKnobAtIndex(), -1);
    EXPECT_FALSE(panel->isVisible());
}

TEST(GradientEditorEvents, OverlappingKnobsGoToTheHighestIndex)
{
    Coordinator tc;
    Editor e(tagged({0.2, 0.5, 0.53}));
    e.w.setTC(&tc);
    QTest::mousePress(&e.w, Qt::LeftButton, {}, at(0.515));
    EXPECT_EQ(e.w._draggingKnobAtIndex(), 2);
    QTest::mouseRelease(&e.w, Qt::LeftButton, {}, at(0.515));
    EXPECT_EQ(e.w._draggingKnobAtIndex(), -1);
    // A double click opens every knob it hits in turn; the last one stays edited.
    e.doubleClick(at(0.515));
    EXPECT_EQ(e.w._editingKnobAtIndex(), 2);
    EXPECT_EQ(tc.calls.count(QStringLiteral("deactivateallEditing")), 2);
    // The knob centre is at (49, 14.5): (60, 25) is within 16 points, (62, 25) is not.
    e.doubleClick(QPoint(60, 25));
    EXPECT_EQ(e.w._editingKnobAtIndex(), 0);
    e.doubleClick(QPoint(62, 25));
    EXPECT_EQ(e.w.gradient().numberOfColorStops(), 4);
}

TEST(GradientEditorEvents, AnEqualGradientNeitherReplacesNorRepaints)
{
    Editor e;
    struct PaintCounter : QObject
    {
        int paints = 0;
        bool eventFilter(QObject*, QEvent* event) override
        {
            paints += event->type() == QEvent::Paint;
            return false;
        }
    } counter;
    e.w.installEventFilter(&counter);
    e.w.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&e.w));
    QCoreApplication::processEvents();
    counter.paints = 0;

    // Equal by value, but -0.0 would show if the gradient were taken.
    const Gradient same({{Color::orange(), 0.2}, {Color::yellow(), 0.8}});
    const Gradient signedZero({{Color::orange(), -0.0}, {Color::yellow(), 0.8}});
    e.w.setGradient(Gradient({{Color::orange(), 0.0}, {Color::yellow(), 0.8}}));
    QCoreApplication::processEvents();
    counter.paints = 0;
    e.w.setGradient(signedZero);
    QCoreApplication::processEvents();
    EXPECT_FALSE(std::signbit(e.w.gradient().stop(0).location));
    EXPECT_EQ(counter.paints, 0);
    e.w.setGradient(same);
    QCoreApplication::processEvents();
    EXPECT_GT(counter.paints, 0);
    EXPECT_EQ(e.changed.count(), 0); // a program change tells nobody
}

TEST(GradientEditorEvents, NothingChangesWhileNotEditable)
{
    Coordinator tc;
    Editor e(tagged({0.2, 0.5, 0.8}));
    e.w.setTC(&tc);
    e.doubleClick(at(0.5)); // editing while still editable
    ASSERT_EQ(e.w._editingKnobAtIndex(), 1);
    tc.calls.clear();
    e.w.setEditable(false);
    const Gradient before = e.w.gradient();

    e.drag(at(0.2), at(0.4));
    e.drag(at(0.8), at(0.8, -30));
    e.doubleClick(at(0.35));
    e.doubleClick(at(0.2));
    QTest::keyClick(&e.w, Qt::Key_Left);
    QTest::keyClick(&e.w, Qt::Key_Delete);
    ColorPanel::shared()->dialog()->setCurrentColor(Qt::red);
    EXPECT_EQ(e.w.gradient(), before);
    EXPECT_EQ(e.w._editingKnobAtIndex(), 1);
    EXPECT_EQ(e.w._draggingKnobAtIndex(), -1);
    EXPECT_EQ(e.changed.count(), 0);
    EXPECT_EQ(tc.calls, QStringList{"deactivategradientWells"});
}
