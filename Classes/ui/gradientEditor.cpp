#include "Classes/ui/gradientEditor.h"

#include "Classes/ui/ColorPanel.h"
#include "Classes/ui/ColorWellCoordinator.h"

#include <QKeyEvent>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace qm {

namespace {

constexpr double kInset = 9;              ///< horizontal inset of the bar, room for half a knob
constexpr double kHitRadiusSquared = 256; ///< knobs are hit within 16 points of their centre
constexpr double kArrowStep = 0.011;
constexpr double kNudge = 0.01;

QColor outlineColor()
{
    return QColor::fromRgbF(0, 0, 0, 0.56f);
}

/// White and light grey squares of width 5.
const QBrush& chessboardBrush()
{
    static const QBrush brush = [] {
        QPixmap tile(10, 10);
        tile.fill(Qt::white);
        QPainter p(&tile);
        const QColor lightGray = QColor::fromRgbF(2.0f / 3, 2.0f / 3, 2.0f / 3);
        p.fillRect(0, 0, 5, 5, lightGray);
        p.fillRect(5, 5, 5, 5, lightGray);
        return QBrush(tile);
    }();
    return brush;
}

/// Shown while a dragged knob would be deleted on release: a puff with a cross.
const QCursor& disappearingItemCursor()
{
    static const QCursor cursor = [] {
        QPixmap pm(24, 24);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(QPen(Qt::black, 1.5));
        p.setBrush(Qt::white);
        p.drawEllipse(QPointF(12, 12), 8.5, 8.5);
        p.setPen(QPen(QColor(160, 0, 0), 2, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(8.5, 8.5), QPointF(15.5, 15.5));
        p.drawLine(QPointF(15.5, 8.5), QPointF(8.5, 15.5));
        return QCursor(pm, 12, 12);
    }();
    return cursor;
}

} // namespace

gradientEditor::gradientEditor(QWidget* parent)
    : QWidget(parent), m_gradient({{Color::orange(), 0.2}, {Color::yellow(), 0.8}})
{
    setObjectName(QStringLiteral("gradientEditor"));
    setAccessibleName(tr("Gradient"));
    setToolTip(tr("Drag a stop to move it, or off the bar to remove it. Double-click a stop to "
                  "edit its colour, or free space to add a stop. Arrow keys move and Delete "
                  "removes the stop being edited."));
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // Closing the colour dialog ends the colour editing of every editor.
    connect(ColorPanel::shared(), &ColorPanel::willClose, this, &gradientEditor::deactivateEditing);
}

gradientEditor::~gradientEditor() = default;

void gradientEditor::setGradient(const Gradient& gradient)
{
    if (gradient == m_gradient)
        return;
    m_gradient = gradient;
    update();
}

QSize gradientEditor::sizeHint() const
{
    return QSize(220, 29);
}

QSize gradientEditor::minimumSizeHint() const
{
    return QSize(60, 25);
}

// ---- geometry ----

QRectF gradientEditor::_gradientBounds() const
{
    const QRectF b = rect();
    QRectF bar(b.x() + kInset, b.y(), b.width() - 2 * kInset, b.height());
    if (m_gradientHeight > 0 && b.height() > m_gradientHeight) {
        bar.moveTop(b.y() + (b.height() - m_gradientHeight) / 2);
        bar.setHeight(m_gradientHeight);
    }
    return bar;
}

QPointF gradientEditor::_viewPointFromGradientLocation(double location) const
{
    return QPointF(_gradientBounds().width() * location + kInset, height() / 2.0);
}

double gradientEditor::_gradientLocationFromViewPoint(QPointF point) const
{
    const double w = _gradientBounds().width();
    return w > 0 ? (point.x() - kInset) / w : 0.0;
}

int gradientEditor::knobIndexAtPoint(QPointF point) const
{
    int hit = -1;
    for (int i = 0; i < m_gradient.numberOfColorStops(); ++i) {
        const QPointF d = point - _viewPointFromGradientLocation(m_gradient.stop(i).location);
        if (d.x() * d.x() + d.y() * d.y() <= kHitRadiusSquared)
            hit = i;
    }
    return hit;
}

bool gradientEditor::outsideBarBand(QPointF point) const
{
    // Whole numbers as the band was always measured: truncated bar height and edges.
    const int barHeight = int(_gradientBounds().height());
    const int low = int((height() - barHeight) * 0.5);
    const int high = int((height() + barHeight) * 0.5);
    return point.y() < low || point.y() > high;
}

// ---- stop edits ----

void gradientEditor::_addColorAtLocation(double location)
{
    QList<GradientStop> stops = stopList();
    const int count = int(stops.size());
    const bool editing = m_editingKnobAtIndex >= 0 && m_editingKnobAtIndex < count;
    const double editedLocation = editing ? stops[m_editingKnobAtIndex].location : 0.0;

    int insertion = count + 1;
    for (int i = 0; i < count; ++i) {
        if (stops[i].location > location) {
            insertion = std::max(i - 1, 0);
            break;
        }
    }
    const auto adjust = [&](int& index) {
        if (insertion < index || (insertion == 0 && index == 0 && editing && editedLocation > location))
            ++index;
    };
    adjust(m_editingKnobAtIndex);
    adjust(m_draggingKnobAtIndex);

    stops.append({Color::white(), location});
    setGradient(Gradient(stops, Color::Space::CalibratedRGB));
}

void gradientEditor::_setLocation(double location, int index)
{
    QList<GradientStop> stops = stopList();
    const int count = int(stops.size());
    if (index < 0 || index >= count)
        return;
    const double from = stops[index].location;
    double n = location;

    // +1 when the moved stop passes stop i to the right, -1 to the left. A stop sharing the
    // moved stop's location (only the clamping below makes such ties) counts as lying on the
    // side its index says, and is passed only by leaving the shared location.
    const auto passing = [&](int i) {
        const double other = stops[i].location;
        const bool tie = other == from;
        if ((other > from || (tie && i > index)) && (tie ? n > other : n >= other))
            return 1;
        if ((other < from || (tie && i < index)) && (tie ? n < other : other >= n))
            return -1;
        return 0;
    };
    int passed = 0;
    int editedShift = 0;
    // Walk in the direction of travel: a nudge then only pushes the stop further along, past
    // stops not yet looked at, so the count stays right for stops closer than the nudge.
    const bool rightwards = n > from;
    for (int step = 0; step < count; ++step) {
        const int i = rightwards ? step : count - 1 - step;
        if (i == index)
            continue;
        const int p = passing(i);
        passed += p;
        if (i == m_editingKnobAtIndex)
            editedShift = -p;
        // Two stops never share a location.
        if (stops[i].location == n)
            n += n > from ? kNudge : -kNudge;
    }

    m_editingKnobAtIndex += m_editingKnobAtIndex == index ? passed : editedShift;
    // -1 means no drag; it stays that way when the keys move the edited stop.
    if (m_draggingKnobAtIndex >= 0)
        m_draggingKnobAtIndex += passed;

    stops[index].location = std::clamp(n, 0.0, 1.0);
    // Put the stop where the count says it goes, so that a tie made by the clamping (a stop
    // pushed onto one sitting at 0 or 1) leaves it at the index the knob indices expect.
    stops.move(index, std::clamp(index + passed, 0, count - 1));
    setGradient(Gradient(stops, Color::Space::CalibratedRGB));
}

void gradientEditor::_setColor(const Color& color, int index)
{
    QList<GradientStop> stops = stopList();
    if (index < 0 || index >= stops.size())
        return;
    stops[index].color = color;
    setGradient(Gradient(stops, Color::Space::CalibratedRGB));
}

void gradientEditor::_deleteColorAtIndex(int index)
{
    QList<GradientStop> stops = stopList();
    if (stops.size() < 3 || index < 0 || index >= stops.size())
        return;
    stops.removeAt(index);
    for (int* knob : {&m_editingKnobAtIndex, &m_draggingKnobAtIndex}) {
        if (*knob > index) {
            --*knob;
            update();
        } else if (*knob == index) {
            *knob = -1;
        }
    }
    // Unlike the other edits, a deletion keeps the gradient's own colour space.
    setGradient(Gradient(stops, m_gradient.colorSpace()));
}

void gradientEditor::_setGradientWarningTarget(const Gradient& gradient)
{
    setGradient(gradient);
    emit gradientChanged(this);
}

// ---- commands of the edited stop ----

void gradientEditor::moveLeft()
{
    if (m_editingKnobAtIndex < 0 || m_editingKnobAtIndex >= m_gradient.numberOfColorStops())
        return;
    _setLocation(std::max(m_gradient.stop(m_editingKnobAtIndex).location - kArrowStep, 0.0),
                 m_editingKnobAtIndex);
    informTarget();
    update();
}

void gradientEditor::moveRight()
{
    if (m_editingKnobAtIndex < 0 || m_editingKnobAtIndex >= m_gradient.numberOfColorStops())
        return;
    _setLocation(std::min(m_gradient.stop(m_editingKnobAtIndex).location + kArrowStep, 1.0),
                 m_editingKnobAtIndex);
    informTarget();
    update();
}

void gradientEditor::deleteBackward()
{
    if (m_editingKnobAtIndex < 0)
        return;
    _deleteColorAtIndex(m_editingKnobAtIndex);
    informTarget();
    update();
}

// ---- colour dialog ----

void gradientEditor::changeKnobColor(const Color& color)
{
    if (m_TC && m_TC->deactivategradientWells())
        deactivateEditing();
    // A stop opened for editing before the editor was locked keeps its colour too.
    if (m_editingKnobAtIndex < 0 || !m_editable)
        return;
    _setColor(color, m_editingKnobAtIndex);
    informTarget();
    update();
}

void gradientEditor::deactivateEditing()
{
    m_editingKnobAtIndex = -1;
    update();
}

void gradientEditor::openColorPanelForKnob(int index)
{
    if (m_TC)
        m_TC->deactivateallEditing();
    m_editingKnobAtIndex = index;
    if (m_TC)
        m_TC->deactivateallWells();
    ColorPanel* panel = ColorPanel::shared();
    panel->setTarget(this, [this](const Color& color) { changeKnobColor(color); });
    panel->setColor(m_gradient.stop(index).color);
    panel->orderFront();
}

// ---- events ----

void gradientEditor::mouseDown(QPointF point)
{
    m_draggingKnobAtIndex = knobIndexAtPoint(point);
    update();
}

void gradientEditor::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_clickCount = 1;
    if (m_editable)
        mouseDown(event->position());
}

void gradientEditor::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mouseDoubleClickEvent(event);
        return;
    }
    m_clickCount = 2;
    if (m_editable)
        mouseDown(event->position());
}

void gradientEditor::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_editable || m_draggingKnobAtIndex < 0 || !(event->buttons() & Qt::LeftButton))
        return;
    const QPointF p = event->position();
    _setLocation(_gradientLocationFromViewPoint(p), m_draggingKnobAtIndex);
    informTarget();
    update();
    if (outsideBarBand(p) && m_gradient.numberOfColorStops() >= 3)
        setCursor(disappearingItemCursor());
    else
        setCursor(Qt::ArrowCursor);
}

void gradientEditor::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    const int clicks = m_clickCount;
    m_clickCount = 0;
    if (!m_editable)
        return;
    const QPointF p = event->position();
    if (clicks == 2) {
        bool hitAny = false;
        // Every knob under the mouse is opened in turn; the last one stays edited.
        for (int i = 0; i < m_gradient.numberOfColorStops(); ++i) {
            const QPointF d = p - _viewPointFromGradientLocation(m_gradient.stop(i).location);
            if (d.x() * d.x() + d.y() * d.y() <= kHitRadiusSquared) {
                hitAny = true;
                openColorPanelForKnob(i);
            }
        }
        if (!hitAny) {
            _addColorAtLocation(_gradientLocationFromViewPoint(p));
            informTarget();
        }
    } else if (m_draggingKnobAtIndex >= 0) {
        if (outsideBarBand(p) && m_gradient.numberOfColorStops() > 2) {
            _deleteColorAtIndex(m_draggingKnobAtIndex);
            informTarget();
        }
        setCursor(Qt::ArrowCursor);
    }
    m_draggingKnobAtIndex = -1;
    update();
}

void gradientEditor::keyPressEvent(QKeyEvent* event)
{
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (!m_editable || m_editingKnobAtIndex < 0 || !plain) {
        QWidget::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Left:
        moveLeft();
        break;
    case Qt::Key_Right:
        moveRight();
        break;
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        deleteBackward();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

// ---- drawing ----

void gradientEditor::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled())
        painter.setOpacity(0.45);

    // Half a pixel in, so the one-pixel outline falls on whole pixels.
    const QRectF bar = _gradientBounds().adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath path;
    path.addRoundedRect(bar, 3, 3);

    if (m_drawsChessboardBackground) {
        painter.setBrushOrigin(bar.topLeft());
        painter.fillPath(path, chessboardBrush());
        painter.setBrushOrigin(0, 0);
    }
    if (m_gradient.isValid()) {
        QLinearGradient ramp(bar.left(), 0, bar.right(), 0);
        for (const GradientStop& s : m_gradient.stops())
            ramp.setColorAt(std::clamp(s.location, 0.0, 1.0), s.color.toQColor());
        painter.fillPath(path, ramp);
    }
    painter.setPen(QPen(outlineColor(), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);

    // Plain knobs first, then the edited one, the dragged one always on top.
    const int count = m_gradient.numberOfColorStops();
    const auto knob = [&](int i, bool selected, bool editing) {
        const GradientStop& s = m_gradient.stop(i);
        drawKnobForColor(painter, s.color, _viewPointFromGradientLocation(s.location), selected, editing);
    };
    for (int i = 0; i < count; ++i)
        if (i != m_draggingKnobAtIndex && i != m_editingKnobAtIndex)
            knob(i, false, false);
    if (m_editingKnobAtIndex >= 0 && m_editingKnobAtIndex < count)
        knob(m_editingKnobAtIndex, m_editingKnobAtIndex == m_draggingKnobAtIndex, true);
    if (m_draggingKnobAtIndex >= 0 && m_draggingKnobAtIndex < count &&
        m_draggingKnobAtIndex != m_editingKnobAtIndex)
        knob(m_draggingKnobAtIndex, true, false);
}

void gradientEditor::drawKnobForColor(QPainter& painter, const Color& color, QPointF point, bool selected,
                                      bool editing) const
{
    QPainterPath ring;
    ring.setFillRule(Qt::OddEvenFill);
    ring.addEllipse(point, 8, 8);
    ring.addEllipse(point, 4, 4);

    QColor from, to;
    if (editing) {
        from = palette().color(QPalette::Active, QPalette::Highlight);
        to = QColor::fromRgbF(from.redF() * 0.65f, from.greenF() * 0.65f, from.blueF() * 0.65f);
    } else {
        from = QColor::fromRgbF(0.95f, 0.95f, 0.95f);
        to = QColor::fromRgbF(0.6f, 0.6f, 0.6f);
    }
    // Light from above; a selected knob has the shading flipped, as if pressed.
    QLinearGradient shading(point.x(), point.y() - 8, point.x(), point.y() + 8);
    shading.setColorAt(selected ? 1 : 0, from);
    shading.setColorAt(selected ? 0 : 1, to);

    painter.setPen(QPen(outlineColor(), 1));
    painter.setBrush(shading);
    painter.drawPath(ring);

    painter.setBrush(color.toQColor());
    painter.drawEllipse(point, 4, 4);
}

} // namespace qm
