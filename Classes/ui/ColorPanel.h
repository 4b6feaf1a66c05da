#pragma once

#include "Platform/graphics/Color.h"

#include <QObject>
#include <QPointer>

#include <functional>

class QColorDialog;

namespace qm {

/// The application's one colour dialog, shared by every colour control: non-modal, continuous
/// (every change of the chosen colour is delivered at once) and showing alpha. It works for one
/// control at a time: attaching a new target detaches the previous one.
class ColorPanel : public QObject
{
    Q_OBJECT
public:
    /// The shared panel; created on first use and destroyed with the application.
    static ColorPanel* shared();

    /// Makes `target` the control the panel works for: from now on every colour the user picks
    /// is handed to `action`. The attachment ends when `target` is destroyed.
    void setTarget(QObject* target, std::function<void(const Color&)> action);
    QObject* target() const { return m_target; }
    /// Detaches `target` if it is the one attached.
    void detach(QObject* target);

    /// Shows a colour without delivering it to the target.
    void setColor(const Color& color);
    Color color() const;

    /// Shows the dialog and brings it to the front.
    void orderFront();
    bool isVisible() const;
    void close();

    QColorDialog* dialog() const { return m_dialog; }

signals:
    /// The dialog is closing (the user closed it, or close() was called).
    void willClose();

private:
    ColorPanel();
    ~ColorPanel() override;
    static void destroyShared();
    void deliver(const QColor& color);

    QColorDialog* m_dialog = nullptr;
    QPointer<QObject> m_target;
    std::function<void(const Color&)> m_action;
    bool m_settingColor = false;
};

} // namespace qm
