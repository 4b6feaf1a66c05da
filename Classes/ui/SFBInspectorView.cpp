#include "Classes/ui/SFBInspectorView.h"

#include <QDataStream>
#include <QKeyEvent>
#include <QMap>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionFocusRect>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>

namespace qm {

namespace {

constexpr quint32 kStateMagic = 0x51494e53; // "QINS"
constexpr quint8 kStateVersion = 1;

/// A pane's header: disclosure triangle and title across the full width; a click, Space or
/// Return toggles the pane.
class PaneHeader : public QWidget
{
public:
    PaneHeader(const QString& title, QWidget* parent) : QWidget(parent), m_title(title)
    {
        setFocusPolicy(Qt::StrongFocus);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        setAccessibleName(title);
        setToolTip(QWidget::tr("Click to show or hide this section"));
        setCursor(Qt::PointingHandCursor);
    }

    void setTitle(const QString& title)
    {
        m_title = title;
        setAccessibleName(title);
        updateGeometry();
        update();
    }
    const QString& title() const { return m_title; }

    void setExpanded(bool expanded)
    {
        m_expanded = expanded;
        update();
    }

    std::function<void()> toggled;

    QSize sizeHint() const override
    {
        QFont bold = font();
        bold.setBold(true);
        const QFontMetrics fm(bold);
        return QSize(kTextX + fm.horizontalAdvance(m_title) + 8, fm.height() + 10);
    }
    QSize minimumSizeHint() const override { return QSize(kTextX + 16, sizeHint().height()); }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter p(this);
        const QRect r = rect();
        const QPalette& pal = palette();
        QLinearGradient shade(0, 0, 0, r.height());
        shade.setColorAt(0, pal.color(QPalette::Button).lighter(106));
        shade.setColorAt(1, pal.color(QPalette::Button).darker(104));
        p.fillRect(r, shade);
        p.setPen(pal.color(QPalette::Light));
        p.drawLine(r.topLeft(), r.topRight());
        p.setPen(pal.color(QPalette::Mid));
        p.drawLine(r.bottomLeft(), r.bottomRight());

        // The triangle points right when collapsed, down when expanded.
        p.setRenderHint(QPainter::Antialiasing);
        const QPointF c(kArrowX + 4, r.height() / 2.0);
        QPainterPath arrow;
        if (m_expanded) {
            arrow.moveTo(c + QPointF(-4.5, -2.5));
            arrow.lineTo(c + QPointF(4.5, -2.5));
            arrow.lineTo(c + QPointF(0, 3.5));
        } else {
            arrow.moveTo(c + QPointF(-2.5, -4.5));
            arrow.lineTo(c + QPointF(3.5, 0));
            arrow.lineTo(c + QPointF(-2.5, 4.5));
        }
        arrow.closeSubpath();
        const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
        p.fillPath(arrow, pal.color(group, QPalette::ButtonText).lighter(130));
        p.setRenderHint(QPainter::Antialiasing, false);

        QFont bold = font();
        bold.setBold(true);
        p.setFont(bold);
        p.setPen(pal.color(group, QPalette::ButtonText));
        const QRect textRect = r.adjusted(kTextX, 0, -4, 0);
        p.drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter,
                   QFontMetrics(bold).elidedText(m_title, Qt::ElideRight, textRect.width()));

        if (hasFocus()) {
            QStyleOptionFocusRect focus;
            focus.initFrom(this);
            focus.rect = r.adjusted(2, 2, -2, -2);
            style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &p, this);
        }
    }

    void mouseReleaseEvent(QMouseEvent* event) override
    {
        if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()) && toggled)
            toggled();
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        switch (event->key()) {
        case Qt::Key_Space:
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (toggled)
                toggled();
            break;
        default:
            QWidget::keyPressEvent(event);
        }
    }

private:
    static constexpr int kArrowX = 8;
    static constexpr int kTextX = 24;
    QString m_title;
    bool m_expanded = true;
};

} // namespace

struct SFBInspectorView::Pane
{
    QString identifier;
    QWidget* container = nullptr; ///< owns header and body
    PaneHeader* header = nullptr;
    QWidget* body = nullptr;
    bool expanded = true;
};

SFBInspectorView::SFBInspectorView(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("inspectorView"));
    m_layout = new QVBoxLayout(this);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->addStretch(1); // panes stack at the top
}

SFBInspectorView::~SFBInspectorView() = default;

bool SFBInspectorView::addPane(const QString& identifier, const QString& title, QWidget* body)
{
    return insertPane(count(), identifier, title, body);
}

bool SFBInspectorView::insertPane(int index, const QString& identifier, const QString& title, QWidget* body)
{
    if (identifier.isEmpty() || !body || find(identifier))
        return false;
    index = std::clamp(index, 0, count());

    auto pane = std::make_unique<Pane>();
    pane->identifier = identifier;
    pane->container = new QWidget(this);
    pane->container->setObjectName(identifier + QStringLiteral("Pane"));
    auto* column = new QVBoxLayout(pane->container);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    pane->header = new PaneHeader(title, pane->container);
    pane->header->setObjectName(identifier + QStringLiteral("Header"));
    pane->body = body;
    if (body->objectName().isEmpty())
        body->setObjectName(identifier);
    column->addWidget(pane->header);
    column->addWidget(body);
    Pane* raw = pane.get();
    pane->header->toggled = [this, raw] { togglePane(raw->identifier); };

    apply(*pane, m_rememberedStates.value(identifier, true));
    m_layout->insertWidget(index, pane->container);
    m_panes.insert(m_panes.begin() + index, std::move(pane));
    return true;
}

QWidget* SFBInspectorView::takePane(const QString& identifier)
{
    const int index = indexOfPane(identifier);
    if (index < 0)
        return nullptr;
    std::unique_ptr<Pane> pane = std::move(m_panes[size_t(index)]);
    m_panes.erase(m_panes.begin() + index);
    QWidget* body = pane->body;
    body->setParent(nullptr);
    delete pane->container;
    return body;
}

void SFBInspectorView::removePane(const QString& identifier)
{
    delete takePane(identifier);
}

QStringList SFBInspectorView::paneIdentifiers() const
{
    QStringList ids;
    for (const auto& pane : m_panes)
        ids.append(pane->identifier);
    return ids;
}

int SFBInspectorView::indexOfPane(const QString& identifier) const
{
    for (size_t i = 0; i < m_panes.size(); ++i)
        if (m_panes[i]->identifier == identifier)
            return int(i);
    return -1;
}

SFBInspectorView::Pane* SFBInspectorView::find(const QString& identifier) const
{
    const int index = indexOfPane(identifier);
    return index < 0 ? nullptr : m_panes[size_t(index)].get();
}

QWidget* SFBInspectorView::paneBody(const QString& identifier) const
{
    const Pane* pane = find(identifier);
    return pane ? pane->body : nullptr;
}

QWidget* SFBInspectorView::paneHeader(const QString& identifier) const
{
    const Pane* pane = find(identifier);
    return pane ? pane->header : nullptr;
}

QString SFBInspectorView::paneTitle(const QString& identifier) const
{
    const Pane* pane = find(identifier);
    return pane ? pane->header->title() : QString();
}

void SFBInspectorView::setPaneTitle(const QString& identifier, const QString& title)
{
    if (Pane* pane = find(identifier))
        pane->header->setTitle(title);
}

bool SFBInspectorView::isPaneExpanded(const QString& identifier) const
{
    const Pane* pane = find(identifier);
    return pane ? pane->expanded : m_rememberedStates.value(identifier, true);
}

void SFBInspectorView::apply(Pane& pane, bool expanded)
{
    pane.expanded = expanded;
    pane.header->setExpanded(expanded);
    pane.body->setVisible(expanded);
    m_rememberedStates.insert(pane.identifier, expanded);
}

void SFBInspectorView::setPaneExpanded(const QString& identifier, bool expanded)
{
    Pane* pane = find(identifier);
    if (!pane) {
        m_rememberedStates.insert(identifier, expanded);
        return;
    }
    if (pane->expanded == expanded)
        return;
    apply(*pane, expanded);
    emit paneExpandedChanged(identifier, expanded);
}

void SFBInspectorView::togglePane(const QString& identifier)
{
    if (const Pane* pane = find(identifier))
        setPaneExpanded(identifier, !pane->expanded);
}

QByteArray SFBInspectorView::saveState() const
{
    QByteArray data;
    QDataStream out(&data, QIODevice::WriteOnly);
    out << kStateMagic << kStateVersion;
    QMap<QString, bool> states;
    for (auto it = m_rememberedStates.begin(); it != m_rememberedStates.end(); ++it)
        states.insert(it.key(), it.value());
    out << states;
    return data;
}

bool SFBInspectorView::restoreState(const QByteArray& state)
{
    QDataStream in(state);
    quint32 magic = 0;
    quint8 version = 0;
    QMap<QString, bool> states;
    in >> magic >> version;
    if (magic != kStateMagic || version != kStateVersion)
        return false;
    in >> states;
    if (in.status() != QDataStream::Ok)
        return false;
    for (auto it = states.begin(); it != states.end(); ++it)
        setPaneExpanded(it.key(), it.value());
    return true;
}

} // namespace qm
