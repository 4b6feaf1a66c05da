#pragma once

#include "Classes/atlas/TextureView.h"
#include "Classes/model/sharedAppState.h"

#include <QList>
#include <QString>

namespace qm {

class TextureController;
struct FontMember;

/// One project without a window: its settings and its canvas wired to each other, with the
/// document operations that the command line needs from the window controller (choosing a
/// family, the glyph-size handler, opening and saving). Headless; talks to the user only
/// through the controller, if any.
class ProjectSession
{
public:
    /// A new project with the new-project defaults and an empty glyph set.
    explicit ProjectSession(TextureController* controller = nullptr);
    ProjectSession(const ProjectSession&) = delete;
    ProjectSession& operator=(const ProjectSession&) = delete;

    sharedAppState& state() { return m_state; }
    const sharedAppState& state() const { return m_state; }
    TextureView& view() { return m_view; }
    const TextureView& view() const { return m_view; }
    TextureController* controller() const { return m_controller; }

    /// Opens a project file into this new session, as the document window does: the settings
    /// of the file with the upgrades for older files, a font file the project loaded registered
    /// again, the family's tables read, the glyph records restored, redrawn and packed. The
    /// line height and space width keep the file's values when set (1 or more) and take their
    /// automatic values otherwise; targets are derived for projects without any. False, with a
    /// message naming the file and the problem, when the file cannot be read or its font family
    /// is not installed.
    bool open(const QString& path, QString* error);
    /// Writes the project file. False, with a message naming the file, when that fails.
    bool save(const QString& path, QString* error) const;

    /// Makes the project's font a family of the font manager, as choosing it in the font list
    /// does: sets `fontName`, whether it came from a file, and reads the family's kerning and
    /// character map into the settings. The glyph size is applied again by the caller
    /// (reallyChangeGlyphSize), once the rest of the style is set.
    void chooseFamily(const QString& family, bool loadedFromFile);
    /// Empties `kerningTable` and `cmapTable`, then fills both when the family has usable kerning.
    void loadFontTables();
    /// The glyph-size handler: applies the size to every glyph (measuring and packing the set),
    /// then takes the automatic line height and space width from it, and refreshes the preview.
    void reallyChangeGlyphSize(int size);
    /// Makes the text the project's character set as the character-set field does (the space is
    /// always part of it): the glyph set is rebuilt, measured and packed once.
    void applyCharacters(const QString& text);

    /// Position of the family member closest to an upright regular face of normal width (the
    /// first such when several are as close); 0 for an empty list.
    static int regularMember(const QList<FontMember>& members);

    /// Number of glyphs in the set, and of those placed on the texture.
    int glyphCount() const;
    int placedGlyphCount() const;

private:
    TextureController* m_controller;
    sharedAppState m_state;
    TextureView m_view;
};

} // namespace qm
