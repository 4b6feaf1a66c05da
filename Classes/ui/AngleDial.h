#pragma once

#include <QAbstractSlider>

namespace qm {

/// A small round control for a gradient angle in whole degrees, 0..360: its hand points the
/// way the gradient runs (0 to the right, counter-clockwise). Drag the hand or use the arrow
/// keys.
class AngleDial : public QAbstractSlider
{
    Q_OBJECT
public:
    explicit AngleDial(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void pointAt(QPointF point);
};

} // namespace qm
