#include "Classes/ui/SFBViewSelectorBarItem.h"

#include <QStyleOptionFocusRect>
#include <QStyleOptionToolButton>
#include <QStylePainter>

#include <algorithm>

namespace qm {

namespace {
constexpr int kPadX = 8;
constexpr int kPadY = 4;
constexpr int kGap = 2; ///< between image and label
} // namespace

SFBViewSelectorBarItem::SFBViewSelectorBarItem(const QString& identifier, const QString& label,
                                               const QIcon& image, const QString& toolTip, QWidget* parent)
    : QToolButton(parent), m_identifier(identifier)
{
    setObjectName(identifier);
    setText(label);
    setToolTip(toolTip.isEmpty() ? label : toolTip);
    setAccessibleName(label);
    setCheckable(true);
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
    setIconSize(QSize(24, 24));
    setImage(image);
}

void SFBViewSelectorBarItem::setImage(const QIcon& image)
{
    setIcon(image);
    setToolButtonStyle(image.isNull() ? Qt::ToolButtonTextOnly : Qt::ToolButtonTextUnderIcon);
    updateGeometry();
    update();
}

QSize SFBViewSelectorBarItem::sizeHint() const
{
    const QFontMetrics fm = fontMetrics();
    const bool hasImage = !icon().isNull();
    // A few pixels beyond the rounded advance: painted text can measure a fraction wider, and a
    // label elided for that would read "Fo…".
    const int w = std::max(fm.horizontalAdvance(text()) + 4, hasImage ? iconSize().width() : 0) + 2 * kPadX;
    const int h = fm.height() + 2 * kPadY + (hasImage ? iconSize().height() + kGap : 0);
    return QSize(std::max(w, h), h);
}

QSize SFBViewSelectorBarItem::minimumSizeHint() const
{
    return sizeHint();
}

void SFBViewSelectorBarItem::paintEvent(QPaintEvent*)
{
    QStylePainter p(this);
    QStyleOptionToolButton option;
    initStyleOption(&option);
    // The selected item looks pressed; others show a panel only under the mouse.
    if (isChecked() || isDown() || option.state & QStyle::State_MouseOver) {
        if (isChecked())
            option.state |= QStyle::State_On | QStyle::State_Sunken;
        p.drawPrimitive(QStyle::PE_PanelButtonTool, option);
    }

    // Images sit in a box of the icon size, so labels line up whatever size the images are.
    const QRect inner = rect().adjusted(kPadX, kPadY, -kPadX, -kPadY);
    QRect textRect = inner;
    if (!icon().isNull()) {
        const QRect imageBox(inner.left(), inner.top(), inner.width(), iconSize().height());
        const QIcon::Mode mode = !isEnabled() ? QIcon::Disabled : QIcon::Normal;
        icon().paint(&p, imageBox, Qt::AlignCenter, mode, isChecked() ? QIcon::On : QIcon::Off);
        textRect.setTop(imageBox.bottom() + 1 + kGap);
    }
    p.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
    p.drawText(textRect, Qt::AlignHCenter | Qt::AlignVCenter,
               fontMetrics().elidedText(text(), Qt::ElideRight, textRect.width()));

    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = rect().adjusted(2, 2, -2, -2);
        p.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
    }
}

} // namespace qm
