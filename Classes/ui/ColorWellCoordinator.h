#pragma once

namespace qm {

/// What a colour control asks of the window that hosts it so that the shared colour dialog is
/// attached to one control at a time. The document window implements it over its colour wells
/// and its two gradient editors.
class ColorWellCoordinator
{
public:
    virtual ~ColorWellCoordinator() = default;

    /// Ends the colour editing of every gradient editor of the window.
    virtual void deactivateallEditing() = 0;
    /// Switches off every colour well of the window.
    virtual void deactivateallWells() = 0;
    /// Switches off the colour wells that compete with the gradient editors; answers true when
    /// the colour dialog was working for one of them, so a gradient editor must let go of it.
    virtual bool deactivategradientWells() = 0;
};

} // namespace qm
