#pragma once

#include "Platform/graphics/Color.h"

#include <QAbstractButton>

namespace qm {

class ColorWellGroup;

/// A small colour swatch button. A click makes the well active: it takes the application's one
/// colour dialog (ColorPanel), which then edits the well's colour; a second click, the dialog
/// closing, disabling the well or another control taking the dialog makes it inactive again.
/// While active it is drawn with a highlighted frame.
class ColorWell : public QAbstractButton
{
    Q_OBJECT
public:
    explicit ColorWell(QWidget* parent = nullptr);

    const Color& color() const { return m_color; }
    /// Shows a colour without colorChanged(); an active well also shows it in the dialog.
    void setColor(const Color& color);

    bool isActive() const { return isChecked(); }
    /// Takes the colour dialog: every other control of the group lets go of it first.
    void activate();
    /// Lets go of the colour dialog.
    void deactivate();

    /// The wells and gradient editors that share the dialog with this one (not owned).
    ColorWellGroup* group() const { return m_group; }
    void setGroup(ColorWellGroup* group) { m_group = group; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// The user picked a colour in the dialog for this well.
    void colorChanged(const qm::Color& color);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void nextCheckState() override;

private:
    void takeColor(const Color& color);

    Color m_color = Color::black();
    ColorWellGroup* m_group = nullptr;
};

} // namespace qm
