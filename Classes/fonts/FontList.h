#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace qm {

class sharedAppState;
class TextureController;
class TextureView;

/// One row of the font table: a family, and whether it carries usable kerning (a format 0
/// `kern` subtable), which the list shows as a green tint.
struct FontRow
{
    QString familyName;
    bool hasKerning = false;
    bool operator==(const FontRow&) const = default;
};

/// One item of the face pop-up: a member's style name, tagged with its position in the family.
struct FaceItem
{
    QString title;
    int tag = 0;
    bool operator==(const FaceItem&) const = default;
};

/// The font side of the document window: the family list with its search filter, the choice
/// of a family (which makes it the project's font and reads its kerning and character map), the
/// face pop-up, and loading font files for this process. The list and the pop-up are plain
/// data here; a desktop panel shows them and reports selections back.
///
/// Kerning flags are cached per family, because reading them opens every font; the cache is
/// dropped whenever the set of fonts changes.
class FontList
{
public:
    /// Works on the project `state`, its canvas `view`, and asks the user through `controller`.
    FontList(sharedAppState& state, TextureView& view, TextureController& controller);
    ~FontList();
    FontList(const FontList&) = delete;
    FontList& operator=(const FontList&) = delete;

    /// Window set-up: remembers the installed families (`systemFonts`), starts listening for
    /// font changes and fills the list. The caller selects the project's family with
    /// autoSelFont() once the window is ready.
    void setUp();

    /// The rows in display order.
    const QList<FontRow>& fontArray() const { return m_fontArray; }
    /// The families installed when the window was set up; a family not among them was loaded
    /// from a file.
    const QStringList& systemFonts() const { return m_systemFonts; }
    /// The selected row, or -1.
    int selectedRow() const { return m_selectedRow; }
    /// The current search text.
    const QString& searchText() const { return m_searchText; }

    /// Appends every family of the font manager, in its order, that is not listed yet and whose
    /// name contains the search text ignoring case; then refreshes the face pop-up, applying the
    /// selected face unless `applyFace` is false.
    void reloadFontTableView(bool applyFace = true);
    /// Rebuilds the list from scratch for a new search text. Searching changes no setting: the
    /// face pop-up is refilled but the face the glyphs use is not applied again (which would
    /// re-render every glyph and mark the project changed on each keystroke).
    void searchFieldChanged(const QString& text);
    /// Selects a row (-1: none), as a click or the program does. When the selection changes,
    /// the chosen family becomes the project's font (fontTableSelectionChanged()).
    void selectRow(int row);
    /// The selection handler: for a row >= 0 sets `fontName` and `loadedFontName`, empties and
    /// (when the family has kerning) refills `kerningTable` and `cmapTable`, re-applies the glyph
    /// size and refreshes the preview; in every case refreshes the face pop-up.
    void fontTableSelectionChanged();

    /// The face pop-up.
    const QList<FaceItem>& glyphTraitItems() const { return m_glyphTraitItems; }
    /// The tag of the selected face item.
    int selectedTraitTag() const { return m_selectedTraitTag; }
    /// Rebuilds the face pop-up from the members of the project's family. A family that is not
    /// installed raises the missing-font alert and is replaced by "Arial". Selects the item
    /// tagged with the project's `trait` (else the first) and applies it (glyphTraitChanged())
    /// unless `apply` is false.
    void updateFamilyNames(bool apply = true);
    /// The face pop-up's selection changed: the tag becomes the project's `trait`.
    void glyphTraitChanged(int tag);

    /// Selects the row of the project's family, if listed, and refreshes the preview.
    void autoSelFont();
    /// Makes the last listed family the project's font and selects it.
    void autoSelLastFont();
    /// The missing-font alert for the project's `fontName`.
    void warnFontNotFound();
    /// Asks for a TrueType or OpenType file and registers it for this process; the fonts-changed
    /// notification then appends the new family and selects the last row. The project records
    /// the file and is marked changed whenever a file was chosen, registered or not.
    void loadFontClicked();

    /// Called after the list, its selection or the face pop-up changed, so a view can follow
    /// changes that start outside it (a font registered elsewhere).
    void setChangedCallback(std::function<void()> callback) { m_changed = std::move(callback); }

private:
    void fontsChanged();
    /// Whether the family has usable kerning, from the cache or the font.
    bool familyHasKernings(const QString& family);
    void refreshPreview();
    void notifyChanged();

    sharedAppState& m_state;
    TextureView& m_view;
    TextureController& m_controller;
    QList<FontRow> m_fontArray;
    QStringList m_systemFonts;
    QString m_searchText;
    int m_selectedRow = -1;
    QList<FaceItem> m_glyphTraitItems;
    int m_selectedTraitTag = 0;
    QHash<QString, bool> m_kerningCache;
    int m_observerId = 0;
    /// The list whose loadFontClicked() is registering a font file right now.
    static FontList* s_loadingList;
    std::function<void()> m_changed;
};

} // namespace qm
