#pragma once

#include "Platform/graphics/Color.h"
#include "Platform/graphics/Gradient.h"

#include <QWidget>

namespace qm {

class ColorWellCoordinator;

/// Edits a multi-stop gradient: a rounded bar with one round knob per stop. Knobs are dragged to
/// move a stop and off the bar to delete it, double-clicked to edit their colour in the shared
/// colour dialog, moved with the arrow keys and deleted with Delete; a double click on free
/// space adds a white stop. The gradient is never changed in place: every edit builds a new one,
/// and every user change ends with gradientChanged().
///
/// The stop edits keep the two knob indices (dragged, edited) pointing at the same stops by
/// fixed bookkeeping rules, odd corners included (see _addColorAtLocation), so that a drag or a
/// colour edit in progress stays on its stop.
class gradientEditor : public QWidget
{
    Q_OBJECT
public:
    explicit gradientEditor(QWidget* parent = nullptr);
    ~gradientEditor() override;

    const Gradient& gradient() const { return m_gradient; }
    /// Takes the gradient and repaints; does nothing for a gradient equal to the current one.
    void setGradient(const Gradient& gradient);
    /// Mouse, key and colour-dialog editing allowed.
    bool editable() const { return m_editable; }
    void setEditable(bool editable) { m_editable = editable; }
    /// Height of the bar; 0 or less means the full widget height.
    double gradientHeight() const { return m_gradientHeight; }
    void setGradientHeight(double height) { m_gradientHeight = height; }
    /// A chessboard under the bar, so transparency shows.
    bool drawsChessboardBackground() const { return m_drawsChessboardBackground; }
    void setDrawsChessboardBackground(bool on) { m_drawsChessboardBackground = on; }
    /// The window, asked to keep colour wells and editors mutually exclusive (not owned).
    ColorWellCoordinator* TC() const { return m_TC; }
    void setTC(ColorWellCoordinator* controller) { m_TC = controller; }

    /// The stop being dragged, or -1.
    int _draggingKnobAtIndex() const { return m_draggingKnobAtIndex; }
    /// The stop whose colour the colour dialog edits, or -1.
    int _editingKnobAtIndex() const { return m_editingKnobAtIndex; }

    // Geometry. The bar is inset by 9 on each side; the mapping between locations and points
    // uses that fixed 9, so it assumes the widget's own coordinates (origin 0).
    QRectF _gradientBounds() const;
    QPointF _viewPointFromGradientLocation(double location) const;
    /// Not clamped: points left or right of the bar give locations outside 0..1.
    double _gradientLocationFromViewPoint(QPointF point) const;
    /// The stop whose knob is under the point (squared distance at most 256); when knobs
    /// overlap, the highest index. -1 for none.
    int knobIndexAtPoint(QPointF point) const;

    // Stop edits: each builds a new gradient and sets it, adjusting the knob indices.
    /// Adds a white stop at the location (not clamped). The insertion index is max(i - 1, 0) for
    /// the first stop i beyond the location, else the count + 1; an index is raised when the
    /// insertion index is below it, or when both are 0 and the edited stop lies beyond the
    /// location. The dragged index is judged by the edited stop's location too.
    void _addColorAtLocation(double location);
    /// Moves stop `index` to `location`, nudged by 0.01 off any stop it lands on exactly and
    /// clamped to 0..1.
    void _setLocation(double location, int index);
    void _setColor(const Color& color, int index);
    /// Refused below three stops: a gradient always keeps two.
    void _deleteColorAtIndex(int index);
    /// Sets the gradient, then tells the owner (gradientChanged).
    void _setGradientWarningTarget(const Gradient& gradient);

    // Editing commands of the edited stop (the arrow keys and Delete).
    /// Location - 0.011, not below 0.
    void moveLeft();
    /// Location + 0.011, not above 1.
    void moveRight();
    void deleteBackward();

    /// The colour dialog's action: the edited stop takes the colour, unless the window answers
    /// that the dialog belongs to a colour well now.
    void changeKnobColor(const Color& color);
    /// Ends colour editing (no stop edited).
    void deactivateEditing();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// After every user change of the gradient.
    void gradientChanged(qm::gradientEditor* editor);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void mouseDown(QPointF point);
    /// The stops' colours and locations, for an edit to change and rebuild.
    QList<GradientStop> stopList() const { return m_gradient.stops(); }
    /// Tells the owner about the current gradient.
    void informTarget() { _setGradientWarningTarget(m_gradient); }
    /// True when a point's height is outside the bar, where a dragged knob is deleted on release.
    bool outsideBarBand(QPointF point) const;
    void openColorPanelForKnob(int index);
    void drawKnobForColor(QPainter& painter, const Color& color, QPointF point, bool selected,
                          bool editing) const;

    Gradient m_gradient;
    bool m_editable = true;
    double m_gradientHeight = 23.0;
    bool m_drawsChessboardBackground = true;
    ColorWellCoordinator* m_TC = nullptr;
    int m_draggingKnobAtIndex = -1;
    int m_editingKnobAtIndex = -1;
    int m_clickCount = 0;
};

} // namespace qm
