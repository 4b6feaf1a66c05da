#pragma once

#include <QWidget>

class QToolButton;

namespace qm {

/// A pair of small up and down arrow buttons that step an integer, the companion of a text
/// field. Clicks (held down, they repeat) change the value within its range and report it with
/// clicked(); setValue() only stores.
class Stepper : public QWidget
{
    Q_OBJECT
public:
    explicit Stepper(QWidget* parent = nullptr);

    int value() const { return m_value; }
    /// Stores the value, clamped to the range, without clicked().
    void setValue(int value);
    int minimum() const { return m_minimum; }
    int maximum() const { return m_maximum; }
    void setRange(int minimum, int maximum);
    int singleStep() const { return m_singleStep; }
    void setSingleStep(int step) { m_singleStep = step; }

    QToolButton* upButton() const { return m_up; }
    QToolButton* downButton() const { return m_down; }

    /// Steps as a click on the up (positive) or down (negative) button does.
    void stepBy(int steps);

signals:
    /// The user stepped; value() is the new value.
    void clicked();

private:
    QToolButton* m_up;
    QToolButton* m_down;
    int m_value = 0;
    int m_minimum = -100;
    int m_maximum = 100;
    int m_singleStep = 1;
};

} // namespace qm
