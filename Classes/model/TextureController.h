#pragma once

#include <QString>
#include <QStringList>

namespace qm {

class CAGlyphLayer;

/// The document window's controller as the core sees it: what the settings, the canvas and the
/// document logic tell the user or ask of them. The desktop window, the command line and tests
/// each implement it; every method has a default (show nothing, answer with the first button,
/// cancel every chooser) so an implementation only overrides what it shows.
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

    /// A modal alert with a message, an informative text and buttons in order; answers the
    /// index of the button chosen (0 = the first).
    virtual int runAlert(const QString& message, const QString& informativeText, const QStringList& buttons)
    {
        (void)message, (void)informativeText, (void)buttons;
        return 0;
    }
    /// Appends text to the publish log (texts carry their own line breaks).
    virtual void appendPublishLog(const QString& text) { (void)text; }
    /// Asks for an existing file with one of the extensions (without dot); empty when cancelled.
    virtual QString chooseFileToOpen(const QString& title, const QStringList& extensions)
    {
        (void)title, (void)extensions;
        return {};
    }
    /// Asks where to save a file with one of the extensions; empty when cancelled.
    virtual QString chooseFileToSave(const QString& title, const QStringList& extensions)
    {
        (void)title, (void)extensions;
        return {};
    }
    /// Asks for a directory; empty when cancelled.
    virtual QString chooseDirectory(const QString& title)
    {
        (void)title;
        return {};
    }

    // The document window.
    /// Every panel shows the settings again (after a project was opened into the window).
    virtual void reloadInterfaceParamters() {}
    /// The window's title ("Quillmark - %@" with the project file's name).
    virtual void setDocumentTitle(const QString& title) { (void)title; }
    /// The file goes to the recent documents.
    virtual void noteRecentDocument(const QString& path) { (void)path; }
    /// Opens a project file in a new document window (after Save As Copy).
    virtual void openInNewWindow(const QString& path) { (void)path; }
};

} // namespace qm
