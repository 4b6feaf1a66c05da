#include "Classes/ui/ColorWell.h"

#include "Classes/ui/ColorPanel.h"
#include "Classes/ui/ColorWellGroup.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionFocusRect>

namespace qm {

namespace {

/// Light and darker grey squares of 4, so a translucent colour shows as such.
const QBrush& chessboardBrush()
{
    static const QBrush brush = [] {
        QPixmap tile(8, 8);
        tile.fill(Qt::white);
        QPainter p(&tile);
        const QColor gray = QColor::fromRgbF(0.75f, 0.75f, 0.75f);
        p.fillRect(0, 0, 4, 4, gray);
        p.fillRect(4, 4, 4, 4, gray);
        return QBrush(tile);
    }();
    return brush;
}

} // namespace

ColorWell::ColorWell(QWidget* parent) : QAbstractButton(parent)
{
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
    connect(ColorPanel::shared(), &ColorPanel::willClose, this, &ColorWell::deactivate);
}

void ColorWell::setColor(const Color& color)
{
    m_color = color;
    if (isActive())
        ColorPanel::shared()->setColor(color);
    update();
}

void ColorWell::activate()
{
    if (isActive() || !isEnabled())
        return;
    if (m_group) {
        m_group->deactivateallEditing();
        m_group->deactivateallWells();
    }
    setChecked(true);
    ColorPanel* panel = ColorPanel::shared();
    panel->setTarget(this, [this](const Color& color) { takeColor(color); });
    panel->setColor(m_color);
    panel->orderFront();
}

void ColorWell::deactivate()
{
    if (!isActive())
        return;
    setChecked(false);
    ColorPanel::shared()->detach(this);
}

void ColorWell::nextCheckState()
{
    if (isActive())
        deactivate();
    else
        activate();
}

void ColorWell::takeColor(const Color& color)
{
    if (!isActive())
        return;
    m_color = color;
    update();
    emit colorChanged(color);
}

void ColorWell::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        deactivate();
    QAbstractButton::changeEvent(event);
}

QSize ColorWell::sizeHint() const
{
    return QSize(44, 22);
}

QSize ColorWell::minimumSizeHint() const
{
    return QSize(24, 18);
}

void ColorWell::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QPalette& pal = palette();
    const QRectF outer = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);

    // The bezel: raised when idle, pressed in and framed in the highlight colour while active.
    QPainterPath bezel;
    bezel.addRoundedRect(outer, 4, 4);
    p.fillPath(bezel, isActive() || isDown() ? pal.color(QPalette::Mid) : pal.color(QPalette::Button));
    p.setPen(QPen(isActive() ? pal.color(QPalette::Highlight) : pal.color(QPalette::Shadow).lighter(180),
                  isActive() ? 2.0 : 1.0));
    p.drawPath(bezel);

    const QRectF swatch = outer.adjusted(4, 4, -4, -4);
    QPainterPath inner;
    inner.addRoundedRect(swatch, 2, 2);
    p.fillPath(inner, chessboardBrush());
    QColor c = m_color.isValid() ? m_color.toQColor() : QColor(Qt::transparent);
    if (!isEnabled())
        c.setAlphaF(c.alphaF() * 0.35f);
    p.fillPath(inner, c);
    p.setPen(QPen(QColor(0, 0, 0, isEnabled() ? 110 : 50), 1.0));
    p.drawPath(inner);

    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = rect();
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &p, this);
    }
}

} // namespace qm
