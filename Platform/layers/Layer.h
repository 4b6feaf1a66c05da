#pragma once

#include "Platform/graphics/Color.h"
#include "Platform/layers/Transaction.h"

#include <QImage>
#include <QPointF>
#include <QRectF>
#include <QString>

#include <memory>
#include <vector>

namespace qm {

/// How the last position change of a layer is to be shown: from where to where, how long and
/// with which curve. A duration of 0 means it jumped.
struct PositionAnimation
{
    QPointF from;
    QPointF to;
    double duration = 0;
    TimingFunction timing = TimingFunction::Linear;
    quint64 serial = 0; ///< grows with every position change
};

/// A node of the canvas's layer tree. Coordinates are y up with the origin at the bottom left of
/// the superlayer; `position` is the layer's centre and `frame` (derived) is its rectangle, with
/// QRectF's x/y holding the bottom-left corner. Sublayers are owned by their superlayer.
class Layer
{
public:
    Layer() = default;
    virtual ~Layer();
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;

    QPointF position() const { return m_position; }
    /// Sets the centre; inside a transaction with actions enabled the change is recorded as an
    /// animation for views to replay.
    void setPosition(QPointF position);
    QRectF bounds() const { return m_bounds; }
    void setBounds(const QRectF& bounds);
    QRectF frame() const;
    /// Sets the position and the bounds' size from a rectangle.
    void setFrame(const QRectF& frame);
    const PositionAnimation& positionAnimation() const { return m_animation; }

    bool isHidden() const { return m_hidden; }
    void setHidden(bool hidden);
    const QString& name() const { return m_name; }
    void setName(const QString& name);
    double borderWidth() const { return m_borderWidth; }
    void setBorderWidth(double width);
    const Color& borderColor() const { return m_borderColor; }
    void setBorderColor(const Color& color);
    const Color& backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(const Color& color);
    /// A picture tiled at its own pixel size behind the layer's contents (a pattern colour).
    const QImage& backgroundPattern() const { return m_backgroundPattern; }
    void setBackgroundPattern(const QImage& tile);

    /// The picture the layer shows; made by display() or set directly.
    const QImage& contents() const { return m_contents; }
    void setContents(const QImage& image);

    bool needsDisplay() const { return m_needsDisplay; }
    void setNeedsDisplay();
    /// Draws the layer into a fresh transparent bitmap of its bounds' size (drawInContext) and
    /// makes that its contents.
    virtual void display();
    void displayIfNeeded();

    Layer* superlayer() const { return m_superlayer; }
    const std::vector<std::unique_ptr<Layer>>& sublayers() const { return m_sublayers; }
    Layer* addSublayer(std::unique_ptr<Layer> layer);
    Layer* insertSublayer(std::unique_ptr<Layer> layer, size_t index);
    /// Detaches the layer from its superlayer and hands it to the caller.
    std::unique_ptr<Layer> removeFromSuperlayer();

    /// Grows whenever any layer of any tree changes, so a view knows when to look again.
    static quint64 changeCount();

protected:
    /// Paints the layer into `bitmap` (RGBA8888 premultiplied, y up once wrapped in a drawing
    /// context). The default draws nothing.
    virtual void drawInContext(QImage& bitmap);
    static void noteChange();

private:
    QPointF m_position;
    QRectF m_bounds;
    PositionAnimation m_animation;
    bool m_hidden = false;
    QString m_name;
    double m_borderWidth = 0;
    Color m_borderColor;
    Color m_backgroundColor;
    QImage m_backgroundPattern;
    QImage m_contents;
    bool m_needsDisplay = false;
    Layer* m_superlayer = nullptr;
    std::vector<std::unique_ptr<Layer>> m_sublayers;
};

} // namespace qm
