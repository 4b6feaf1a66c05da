#include "Classes/ui/ColorPanel.h"

#include <QColorDialog>
#include <QCoreApplication>

namespace qm {

namespace {
ColorPanel* sharedPanel = nullptr;
}

ColorPanel* ColorPanel::shared()
{
    if (!sharedPanel) {
        sharedPanel = new ColorPanel;
        // Widgets must go before the application does; a post routine runs early enough.
        qAddPostRoutine(&ColorPanel::destroyShared);
    }
    return sharedPanel;
}

void ColorPanel::destroyShared()
{
    delete sharedPanel;
    sharedPanel = nullptr;
}

ColorPanel::ColorPanel()
{
    setObjectName(QStringLiteral("sharedColorPanel"));
    m_dialog = new QColorDialog;
    m_dialog->setObjectName(QStringLiteral("colorPanel"));
    m_dialog->setWindowTitle(QCoreApplication::translate("ColorPanel", "Colors"));
    // A panel, not a question: no OK/Cancel, every change applies at once.
    m_dialog->setOptions(QColorDialog::NoButtons | QColorDialog::ShowAlphaChannel |
                         QColorDialog::DontUseNativeDialog);
    m_dialog->setModal(false);
    // The control that opened the panel keeps the keyboard (the arrow keys of a gradient editor).
    m_dialog->setAttribute(Qt::WA_ShowWithoutActivating);
    connect(m_dialog, &QColorDialog::currentColorChanged, this, &ColorPanel::deliver);
    connect(m_dialog, &QDialog::finished, this, &ColorPanel::willClose);
}

ColorPanel::~ColorPanel()
{
    delete m_dialog;
}

void ColorPanel::setTarget(QObject* target, std::function<void(const Color&)> action)
{
    m_target = target;
    m_action = target ? std::move(action) : nullptr;
}

void ColorPanel::detach(QObject* target)
{
    if (m_target == target) {
        m_target = nullptr;
        m_action = nullptr;
    }
}

void ColorPanel::setColor(const Color& color)
{
    m_settingColor = true;
    m_dialog->setCurrentColor(color.isValid() ? color.toQColor() : QColor(Qt::black));
    m_settingColor = false;
}

Color ColorPanel::color() const
{
    const QColor c = m_dialog->currentColor();
    return Color::calibratedRGB(c.redF(), c.greenF(), c.blueF(), c.alphaF());
}

void ColorPanel::orderFront()
{
    if (m_dialog->isVisible())
        m_dialog->raise();
    else
        m_dialog->show(); // a window being shown comes up in front
}

bool ColorPanel::isVisible() const
{
    return m_dialog->isVisible();
}

void ColorPanel::close()
{
    m_dialog->close();
}

void ColorPanel::deliver(const QColor& color)
{
    if (m_settingColor || !m_target || !m_action)
        return;
    m_action(Color::calibratedRGB(color.redF(), color.greenF(), color.blueF(), color.alphaF()));
}

} // namespace qm
