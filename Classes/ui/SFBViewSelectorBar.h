#pragma once

#include <QIcon>
#include <QList>
#include <QWidget>

class QButtonGroup;
class QHBoxLayout;

namespace qm {

class SFBViewSelectorBarItem;

/// A bar of items of which exactly one is selected (as soon as there is one); the host shows the
/// view that belongs to the selected item. Clicks and the arrow keys select; every change of the
/// selection, by the user or by setSelectedIndex, is reported once.
class SFBViewSelectorBar : public QWidget
{
    Q_OBJECT
public:
    explicit SFBViewSelectorBar(QWidget* parent = nullptr);

    /// Appends an item, which the bar takes (reparented). The first item is selected.
    void addItem(SFBViewSelectorBarItem* item);
    SFBViewSelectorBarItem* addItem(const QString& identifier, const QString& label,
                                    const QIcon& image = QIcon(), const QString& toolTip = QString());
    /// Removes and deletes an item; removing the selected one selects its neighbour.
    void removeItem(SFBViewSelectorBarItem* item);

    int count() const { return int(m_items.size()); }
    SFBViewSelectorBarItem* itemAtIndex(int index) const;
    SFBViewSelectorBarItem* itemWithIdentifier(const QString& identifier) const;
    int indexOfItem(const SFBViewSelectorBarItem* item) const;

    /// -1 only while the bar is empty.
    int selectedIndex() const;
    SFBViewSelectorBarItem* selectedItem() const { return itemAtIndex(selectedIndex()); }
    /// Out-of-range indices are ignored.
    void setSelectedIndex(int index);
    bool selectItemWithIdentifier(const QString& identifier);

    QSize sizeHint() const override;

signals:
    void selectedIndexChanged(int index);
    void selectedItemChanged(qm::SFBViewSelectorBarItem* item);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QList<SFBViewSelectorBarItem*> m_items;
    QButtonGroup* m_group;
    QHBoxLayout* m_layout;
};

} // namespace qm
