#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QPointF>
#include <QTimer>
#include <QWidget>

namespace qm {

class Layer;
class TextureView;

/// Shows the canvas's layer tree (the texture on its checkerboard or colour, or the text
/// preview) at a zoom, replays the moves the core records as animations, and turns mouse, key
/// and drop events into the canvas's operations in its own coordinates (y up).
class CanvasWidget : public QWidget
{
    Q_OBJECT
public:
    explicit CanvasWidget(TextureView* view, QWidget* parent = nullptr);

    TextureView* textureView() const { return m_view; }
    void setTextureView(TextureView* view);

    double zoom() const { return m_zoom; }
    void setZoom(double zoom);
    void zoomIn();
    void zoomOut();
    /// The whole canvas fits the given viewport size.
    void zoomToFit(const QSize& viewport);

    /// Canvas coordinates (y up, origin bottom left) of a widget point, and back.
    QPointF canvasPoint(QPointF widgetPoint) const;
    QPointF widgetPoint(QPointF canvasPoint) const;

    /// Where a layer is shown now: its model position, or a point on its way there.
    QPointF presentationPosition(const Layer* layer) const;
    bool isAnimating() const { return !m_moves.isEmpty(); }

    QSize sizeHint() const override;
    /// Takes in the canvas's changes now (size, moves) instead of at the next frame.
    void refresh() { poll(); }

signals:
    /// The canvas changed its size (packing or the preview switch).
    void canvasResized();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    struct Move
    {
        quint64 serial = 0;
        QPointF from, to;
        double duration = 0;
        bool easeInOut = false;
        qint64 startMs = 0;
    };

    void poll();
    void trackAnimations(const Layer* layer);
    void paintLayer(QPainter& painter, const Layer* layer, QPointF origin);
    void updateSize();
    QImage canvasImage() const;

    TextureView* m_view;
    double m_zoom = 1.0;
    QTimer m_timer;
    QElapsedTimer m_clock;
    quint64 m_seenChanges = 0;
    QHash<const Layer*, Move> m_moves;
    QHash<const Layer*, quint64> m_seenSerials;
    QPointF m_pressPoint;
    bool m_pressedOnGlyph = false;
    bool m_dragStarted = false;
};

} // namespace qm
