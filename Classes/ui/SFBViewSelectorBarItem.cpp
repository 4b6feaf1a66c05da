#include "Classes/ui/SFBViewSelectorBarItem.h"

#include <algorithm>

namespace qm {

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
}

QSize SFBViewSelectorBarItem::sizeHint() const
{
    // A little wider than the text needs, so neighbouring items do not touch.
    const QSize s = QToolButton::sizeHint();
    return QSize(std::max(s.width() + 12, s.height() + 8), s.height() + 2);
}

} // namespace qm
