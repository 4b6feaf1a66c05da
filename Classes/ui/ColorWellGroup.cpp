#include "Classes/ui/ColorWellGroup.h"

#include "Classes/ui/ColorWell.h"
#include "Classes/ui/gradientEditor.h"

namespace qm {

ColorWellGroup::ColorWellGroup(QObject* parent) : QObject(parent) {}

ColorWellGroup::~ColorWellGroup()
{
    for (ColorWell* well : wells())
        well->setGroup(nullptr);
    for (const QPointer<gradientEditor>& editor : m_editors)
        if (editor)
            editor->setTC(nullptr);
}

void ColorWellGroup::addWell(ColorWell* well)
{
    if (!well || m_wells.contains(well))
        return;
    m_wells.append(well);
    well->setGroup(this);
}

void ColorWellGroup::addGradientEditor(gradientEditor* editor)
{
    if (!editor || m_editors.contains(editor))
        return;
    m_editors.append(editor);
    editor->setTC(this);
}

QList<ColorWell*> ColorWellGroup::wells() const
{
    QList<ColorWell*> list;
    for (const QPointer<ColorWell>& well : m_wells)
        if (well)
            list.append(well);
    return list;
}

ColorWell* ColorWellGroup::activeWell() const
{
    for (ColorWell* well : wells())
        if (well->isActive())
            return well;
    return nullptr;
}

void ColorWellGroup::deactivateallEditing()
{
    for (const QPointer<gradientEditor>& editor : m_editors)
        if (editor)
            editor->deactivateEditing();
}

void ColorWellGroup::deactivateallWells()
{
    for (ColorWell* well : wells())
        well->deactivate();
}

bool ColorWellGroup::deactivategradientWells()
{
    const bool hadDialog = activeWell() != nullptr;
    deactivateallWells();
    return hadDialog;
}

} // namespace qm
