#include "Classes/ui/AngleDial.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

#include <cmath>
#include <numbers>

namespace qm {

AngleDial::AngleDial(QWidget* parent) : QAbstractSlider(parent)
{
    setRange(0, 360);
    setSingleStep(1);
    setPageStep(15);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize AngleDial::sizeHint() const
{
    return QSize(30, 30);
}

QSize AngleDial::minimumSizeHint() const
{
    return QSize(22, 22);
}

void AngleDial::pointAt(QPointF point)
{
    const QPointF centre = QRectF(rect()).center();
    const double dx = point.x() - centre.x();
    const double dy = centre.y() - point.y(); // y up, as angles are measured
    if (std::hypot(dx, dy) < 2)
        return;
    int degrees = int(std::lround(std::atan2(dy, dx) * 180.0 / std::numbers::pi));
    if (degrees < 0)
        degrees += 360;
    setSliderPosition(degrees);
}

void AngleDial::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QAbstractSlider::mousePressEvent(event);
        return;
    }
    setSliderDown(true);
    pointAt(event->position());
}

void AngleDial::mouseMoveEvent(QMouseEvent* event)
{
    if (isSliderDown())
        pointAt(event->position());
}

void AngleDial::mouseReleaseEvent(QMouseEvent* event)
{
    if (isSliderDown()) {
        pointAt(event->position());
        setSliderDown(false);
    }
}

void AngleDial::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QPalette& pal = palette();
    const double side = std::min(width(), height()) - 3.0;
    const QRectF face(QPointF((width() - side) / 2, (height() - side) / 2), QSizeF(side, side));
    p.setPen(QPen(pal.color(QPalette::Shadow).lighter(isEnabled() ? 170 : 220), 1.0));
    p.setBrush(pal.color(isSliderDown() ? QPalette::Mid : QPalette::Button));
    p.drawEllipse(face);

    const double radians = value() * std::numbers::pi / 180.0;
    const QPointF centre = face.center();
    const double reach = side / 2 - 3;
    const QPointF tip(centre.x() + reach * std::cos(radians), centre.y() - reach * std::sin(radians));
    const QColor hand =
        isEnabled() ? pal.color(QPalette::Text) : pal.color(QPalette::Disabled, QPalette::Text);
    p.setPen(QPen(hand, 2.0, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(centre, tip);
    p.setPen(Qt::NoPen);
    p.setBrush(hand);
    p.drawEllipse(centre, 2.0, 2.0);

    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &p, this);
    }
}

} // namespace qm
