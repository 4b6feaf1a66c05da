#pragma once

#include <QString>

namespace qm {

class CAGlyphLayer;

/// The document window's controller as the core sees it: what the settings and the canvas tell
/// the user. The desktop window, the command line and tests each implement it; every method
/// has a do-nothing default so an implementation only overrides what it shows.
class TextureController
{
public:
    virtual ~TextureController() = default;

    /// The can't-fit warning, or an empty text to clear it.
    virtual void updateWarningMessage(const QString& message) { (void)message; }
    /// "Last clicked: ..." status text.
    virtual void updateClickedGlyph(const QString& text) { (void)text; }
    /// Opens the glyph editor on a layer; null deactivates it.
    virtual void showGlyphDetails(CAGlyphLayer* layer) { (void)layer; }
};

} // namespace qm
