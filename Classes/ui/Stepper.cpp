#include "Classes/ui/Stepper.h"

#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace qm {

namespace {
QToolButton* arrowButton(QWidget* parent, Qt::ArrowType arrow, const QString& name)
{
    auto* b = new QToolButton(parent);
    b->setObjectName(name);
    b->setArrowType(arrow);
    b->setAutoRepeat(true);
    b->setFocusPolicy(Qt::NoFocus); // the field next to it takes the keyboard
    b->setFixedSize(16, 11);
    b->setIconSize(QSize(7, 7));
    return b;
}
} // namespace

Stepper::Stepper(QWidget* parent) : QWidget(parent)
{
    m_up = arrowButton(this, Qt::UpArrow, QStringLiteral("up"));
    m_down = arrowButton(this, Qt::DownArrow, QStringLiteral("down"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_up);
    layout->addWidget(m_down);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(m_up, &QToolButton::clicked, this, [this] { stepBy(1); });
    connect(m_down, &QToolButton::clicked, this, [this] { stepBy(-1); });
}

void Stepper::setValue(int value)
{
    m_value = std::clamp(value, m_minimum, m_maximum);
}

void Stepper::setRange(int minimum, int maximum)
{
    m_minimum = minimum;
    m_maximum = std::max(minimum, maximum);
    setValue(m_value);
}

void Stepper::stepBy(int steps)
{
    const long long next = (long long)m_value + (long long)steps * m_singleStep;
    m_value = int(std::clamp<long long>(next, m_minimum, m_maximum));
    emit clicked();
}

} // namespace qm
