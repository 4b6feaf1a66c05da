#pragma once

#include "Classes/ui/ColorWellCoordinator.h"

#include <QList>
#include <QObject>
#include <QPointer>

namespace qm {

class ColorWell;
class gradientEditor;

/// The colour wells and gradient editors of one document window, kept mutually exclusive so
/// that the shared colour dialog works for one control at a time. The window owns one group and
/// hands it to the panels, which register their wells and editors.
class ColorWellGroup : public QObject, public ColorWellCoordinator
{
    Q_OBJECT
public:
    explicit ColorWellGroup(QObject* parent = nullptr);
    /// The wells and editors still alive forget the group.
    ~ColorWellGroup() override;

    /// Adds a well to the group (and the group to the well).
    void addWell(ColorWell* well);
    /// Adds a gradient editor; the group becomes the editor's coordinator.
    void addGradientEditor(gradientEditor* editor);

    QList<ColorWell*> wells() const;
    /// The well that owns the colour dialog, or null.
    ColorWell* activeWell() const;

    void deactivateallEditing() override;
    void deactivateallWells() override;
    bool deactivategradientWells() override;

private:
    QList<QPointer<ColorWell>> m_wells;
    QList<QPointer<gradientEditor>> m_editors;
};

} // namespace qm
