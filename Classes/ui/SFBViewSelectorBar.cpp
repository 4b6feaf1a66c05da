#include "Classes/ui/SFBViewSelectorBar.h"

#include "Classes/ui/SFBViewSelectorBarItem.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>

#include <algorithm>

namespace qm {

SFBViewSelectorBar::SFBViewSelectorBar(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("viewSelectorBar"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_group = new QButtonGroup(this);
    m_group->setExclusive(true);
    m_layout = new QHBoxLayout(this);
    m_layout->setContentsMargins(6, 3, 6, 4);
    m_layout->setSpacing(2);
    m_layout->addStretch(1);
    m_layout->addStretch(1);
    connect(m_group, &QButtonGroup::buttonToggled, this, [this](QAbstractButton* button, bool checked) {
        if (!checked)
            return;
        auto* item = static_cast<SFBViewSelectorBarItem*>(button);
        emit selectedIndexChanged(indexOfItem(item));
        emit selectedItemChanged(item);
    });
}

void SFBViewSelectorBar::addItem(SFBViewSelectorBarItem* item)
{
    if (!item || m_items.contains(item))
        return;
    item->setParent(this);
    // Between the two stretches, so the items stay centred.
    m_layout->insertWidget(m_layout->count() - 1, item);
    m_items.append(item);
    m_group->addButton(item);
    item->show();
    if (m_items.size() == 1)
        item->setChecked(true);
}

SFBViewSelectorBarItem* SFBViewSelectorBar::addItem(const QString& identifier, const QString& label,
                                                    const QIcon& image, const QString& toolTip)
{
    auto* item = new SFBViewSelectorBarItem(identifier, label, image, toolTip, this);
    addItem(item);
    return item;
}

void SFBViewSelectorBar::removeItem(SFBViewSelectorBarItem* item)
{
    const int index = indexOfItem(item);
    if (index < 0)
        return;
    const bool wasSelected = item->isChecked();
    m_group->removeButton(item);
    m_items.removeAt(index);
    delete item;
    if (wasSelected && !m_items.isEmpty())
        m_items[std::min(index, int(m_items.size()) - 1)]->setChecked(true);
}

SFBViewSelectorBarItem* SFBViewSelectorBar::itemAtIndex(int index) const
{
    return index >= 0 && index < m_items.size() ? m_items[index] : nullptr;
}

SFBViewSelectorBarItem* SFBViewSelectorBar::itemWithIdentifier(const QString& identifier) const
{
    for (SFBViewSelectorBarItem* item : m_items)
        if (item->identifier() == identifier)
            return item;
    return nullptr;
}

int SFBViewSelectorBar::indexOfItem(const SFBViewSelectorBarItem* item) const
{
    return int(m_items.indexOf(const_cast<SFBViewSelectorBarItem*>(item)));
}

int SFBViewSelectorBar::selectedIndex() const
{
    for (int i = 0; i < m_items.size(); ++i)
        if (m_items[i]->isChecked())
            return i;
    return -1;
}

void SFBViewSelectorBar::setSelectedIndex(int index)
{
    if (SFBViewSelectorBarItem* item = itemAtIndex(index))
        item->setChecked(true);
}

bool SFBViewSelectorBar::selectItemWithIdentifier(const QString& identifier)
{
    SFBViewSelectorBarItem* item = itemWithIdentifier(identifier);
    if (item)
        item->setChecked(true);
    return item != nullptr;
}

QSize SFBViewSelectorBar::sizeHint() const
{
    return QWidget::sizeHint().expandedTo(QSize(120, 28));
}

void SFBViewSelectorBar::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const QRect r = rect();
    QLinearGradient shade(0, 0, 0, r.height());
    shade.setColorAt(0, palette().color(QPalette::Window).lighter(104));
    shade.setColorAt(1, palette().color(QPalette::Window).darker(103));
    p.fillRect(r, shade);
    p.setPen(palette().color(QPalette::Mid));
    p.drawLine(r.bottomLeft(), r.bottomRight());
}

} // namespace qm
