#pragma once

#include "Classes/atlas/TextureView.h"
#include "Classes/fonts/CharacterSet.h"
#include "Classes/fonts/FontList.h"
#include "Classes/fonts/GlyphSizeChange.h"
#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/publish/BuildWizard.h"
#include "Classes/publish/PublishPanel.h"
#include "Platform/graphics/Gradient.h"

#include <QImage>
#include <QList>
#include <QString>

namespace qm {

struct FontMember;

/// One project document: what a document window's controller owns and does, without the
/// window. It holds the settings and the canvas wired to each other, the font list, the
/// character set, the publish panel and the build wizard over them, and the few controls whose
/// contents are not settings (the preview field, the gradient editors, the texture well). It
/// opens, saves and guards the project with the window's prompts, which it asks of the
/// controller; the desktop window, the command line and the tests all drive this class.
///
/// The settings object keeps its address for the document's life: opening a project assigns
/// the loaded settings into it, so the parts above may keep references to it.
class ProjectDocument
{
public:
    /// The text the preview field shows for a new project and for projects that never stored
    /// one: the two characters backslash and n stand for a line break.
    static const QString defaultPreviewText;

    /// A new project with the new-project defaults and an empty glyph set, talking to the user
    /// through `controller` (none: alerts are answered with their first button, choosers are
    /// cancelled). A window calls setUpWindow() next; the command line does not need to.
    explicit ProjectDocument(TextureController* controller = nullptr);
    ~ProjectDocument();
    ProjectDocument(const ProjectDocument&) = delete;
    ProjectDocument& operator=(const ProjectDocument&) = delete;

    sharedAppState& state() { return m_state; }
    const sharedAppState& state() const { return m_state; }
    TextureView& view() { return m_view; }
    const TextureView& view() const { return m_view; }
    TextureController* controller() const { return m_controller; }
    FontList& fontList() { return m_fontList; }
    CharacterSet& characterSet() { return m_characterSet; }
    PublishPanel& publishPanel() { return m_publishPanel; }
    BuildWizard& buildWizard() { return m_buildWizard; }

    /// The set-up of a new window: the font list is filled and starts following font changes,
    /// and every setting goes through its handler once (texture size and checkerboard, the
    /// character set, the project's family and face, the publish targets, the preview field and
    /// the glyph size), which renders and packs the glyph set once; the project then counts as
    /// unchanged. Call once, before anything else is done with the window.
    void setUpWindow();
    /// Whether setUpWindow() ran: only then is the font list filled and is the family chosen
    /// through its rows.
    bool windowIsSetUp() const { return m_windowSetUp; }

    // Controls whose contents are not settings. Panels show them after reloadInterfaceParamters().
    /// The preview field's text.
    const QString& previewText() const { return m_previewText; }
    /// The preview field's handler: the text becomes the project's `previewTextString` (so
    /// every preview refresh lays out what the field shows) and the preview is laid out again.
    void previewTextChanged(const QString& text);
    /// The preview switch: the canvas shows the preview (rebuilt from the preview field) or the
    /// texture (checkerboard re-applied and the glyphs packed again).
    void previewOrTextureChanged(bool preview);
    /// The auto x/y check box: the project's and every glyph's `autoxy`, re-measured, redrawn
    /// and packed, then the preview.
    void autoxyChanged(bool on);
    /// The gradients the fill and outline gradient editors show.
    const Gradient& colorGradientEditor() const { return m_colorGradientEditor; }
    const Gradient& strokeGradientEditor() const { return m_strokeGradientEditor; }
    /// The picture of the image-texture well (null when `textureName` cannot be read).
    const QImage& imageTexture() const { return m_imageTexture; }
    /// True from the start of a window's set-up or of an opening until the glyph-size handler
    /// ran for it; that run leaves the project unchanged.
    bool justLoading() const { return m_justLoading; }
    /// Which of Save As and Save As Copy buttonSaveAs() does.
    bool saveAsCopy() const { return m_saveAsCopy; }
    void setSaveAsCopy(bool copy) { m_saveAsCopy = copy; }

    // Opening and saving, with the window's prompts.
    /// Loads the project file into this document. False, with a message naming the file and
    /// the problem in `error` (when given), when it cannot be read as a project: the document is
    /// then unchanged (the file was still noted as a recent document). A project whose family is
    /// not installed gets the missing-font alert and "Arial", unless refusesMissingFonts() is
    /// set: then it is refused like an unreadable file.
    ///
    /// The loaded settings replace the project's (in the same object) with the upgrades for
    /// older files; the glyph set is rebuilt from the project's characters, takes every stored
    /// glyph record, and is rendered and packed once. The preview stays shown if it was. A line
    /// height or space width of 1 or more in the file survives; re-applying the line height marks
    /// the project changed, otherwise it counts as unchanged. The glyph editor is told to let go
    /// of its glyph first (showGlyphDetails(nullptr)); the title and the panels
    /// (reloadInterfaceParamters()) are refreshed once the project is complete.
    bool openfileproject(const QString& path, QString* error = nullptr);
    /// Refuse projects whose font family is not installed instead of falling back to "Arial":
    /// the command line must not publish a project in a font it was not designed with.
    bool refusesMissingFonts() const { return m_refusesMissingFonts; }
    void setRefusesMissingFonts(bool refuse) { m_refusesMissingFonts = refuse; }
    /// The Open action: asks whether to save unsaved changes ("Save Document" saves first,
    /// "Don't save" goes on), then asks for a project file and opens it here.
    void buttonOpen();
    /// The Save action: saves to the project's file, or runs Save As for a project never saved
    /// (then the title shows the new file, unless the user cancelled). Answers whether a file
    /// was written. A failure is reported by the "Save project problem !" alert and leaves the
    /// project marked changed.
    bool buttonSave();
    /// Save As: the document then belongs to the new file (opened again from it).
    bool clickSaveAs();
    /// Save As Copy: writes a copy and asks the controller to open it in a new window; this
    /// document stays on its own file.
    bool clickSaveAsCopy();
    /// The common work of the two (saveAsCopy() says which). Answers whether the file was
    /// written. A name chosen without the ".quillmark" extension gets it.
    bool buttonSaveAs();
    /// The close guard: true when the window may close. Unsaved changes ask "Save Document"
    /// (saves, and closes whatever the save did), "Close" or "Don't close".
    bool windowShouldClose();
    /// "Quillmark - <file name>" for a project with a file, "Quillmark" for one never saved.
    QString windowTitle() const;

    /// Writes the project file without any prompt and without changing the project. False,
    /// with a message naming the file, when that fails; the previous file is then intact.
    bool writeProjectFile(const QString& path, QString* error) const;

    // Handlers the command line shares with the window.
    /// Makes a family of the font manager the project's font, as choosing its row does: sets
    /// `fontName`, whether it came from a file, and reads the family's kerning and character
    /// map. The caller applies the glyph size again once the rest of the style is set.
    void chooseFamily(const QString& family, bool loadedFromFile);
    /// Empties `kerningTable` and `cmapTable`, then fills both when the family has usable kerning.
    void loadFontTables();
    /// The glyph-size handler: the size goes to every glyph (measured, rendered and packed),
    /// the automatic line height and space width replace the project's, and the preview is laid
    /// out again. While the window is loading, the project counts as unchanged afterwards.
    GlyphSizeDefaults reallyChangeGlyphSize(int size);
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
    /// Shows freshly loaded settings in every panel, applying the upgrades for older files.
    /// Runs with redraws and packing suspended.
    void refreshPanelsForLoadedProject(bool fontFileRegistered);
    /// The preview field, the gradient editors and the texture well from the settings.
    void showPreviewGradientsAndTexture();
    /// The character-set field shows the project's characters and the glyph set follows them.
    void showCharacterSet();
    /// Selects the project's family in the font list (or applies it without a list), which
    /// rebuilds the face pop-up; a family that is not installed becomes "Arial" after the
    /// missing-font alert.
    void selectProjectFamily();
    /// The second half of the glyph-size handler for a glyph set that has just been rendered:
    /// the automatic metrics and the preview, and the end of loading.
    void takeAutomaticMetrics();
    /// Registers the font file a project loaded, read as a URL string; failures are silent.
    static bool registerLoadedFont(const sharedAppState& settings);
    /// Asks the controller for an answer; `m_controller` is never null.
    int alert(const QString& message, const QString& informative, const QStringList& buttons);
    void reportSaveFailure(const QString& path);

    TextureController m_silentController;
    TextureController* m_controller;
    sharedAppState m_state;
    TextureView m_view;
    FontList m_fontList;
    CharacterSet m_characterSet;
    PublishPanel m_publishPanel;
    BuildWizard m_buildWizard;

    QString m_previewText;
    Gradient m_colorGradientEditor;
    Gradient m_strokeGradientEditor;
    QImage m_imageTexture;
    bool m_windowSetUp = false;
    bool m_justLoading = false;
    bool m_saveAsCopy = false;
    bool m_refusesMissingFonts = false;
};

} // namespace qm
