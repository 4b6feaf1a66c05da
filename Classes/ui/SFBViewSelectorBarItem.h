#pragma once

#include <QToolButton>

namespace qm {

/// One item of a view-selector bar: an identifier, a label, an optional image and a tool tip,
/// shown as a checkable button. The bar keeps exactly one item checked.
class SFBViewSelectorBarItem : public QToolButton
{
    Q_OBJECT
public:
    SFBViewSelectorBarItem(const QString& identifier, const QString& label, const QIcon& image = QIcon(),
                           const QString& toolTip = QString(), QWidget* parent = nullptr);

    const QString& identifier() const { return m_identifier; }
    QString label() const { return text(); }
    void setLabel(const QString& label) { setText(label); }
    QIcon image() const { return icon(); }
    /// With an image the label goes under it; without, the label stands alone.
    void setImage(const QIcon& image);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_identifier;
};

} // namespace qm
