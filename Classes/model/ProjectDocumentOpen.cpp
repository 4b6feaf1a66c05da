// Opening a project file into the document.

#include "Classes/model/ProjectArchive.h"
#include "Classes/model/ProjectDocument.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Platform/text/FontManager.h"

#include <QFileInfo>
#include <QUrl>

namespace qm {

bool ProjectDocument::registerLoadedFont(const sharedAppState& settings)
{
    if (!settings.loadedFontName() || settings.loadedFontPath().isEmpty())
        return false;
    // The file's path is stored as a plain path but has always been read back as URL text,
    // strictly: a path that is no valid URL (a blank in it, say) is not registered, and a
    // percent sign is decoded. Kept so: such projects meet the missing-font alert, as before.
    const QUrl url(settings.loadedFontPath(), QUrl::StrictMode);
    if (!url.isValid())
        return false;
    const QString file = url.isLocalFile()        ? url.toLocalFile()
                         : url.scheme().isEmpty() ? url.path()
                                                  : QString();
    return !file.isEmpty() && FontManager::registerFontsForFile(file);
}

bool ProjectDocument::openfileproject(const QString& path, QString* error)
{
    const bool wasInPreview = m_state.isinpreviewmode();
    // Noted before reading, so a file that then fails is listed too.
    m_controller->noteRecentDocument(QFileInfo(path).absoluteFilePath());

    ProjectData project;
    QString reason;
    if (!ProjectArchive::readFile(path, &project, &reason)) {
        if (error)
            *error = QStringLiteral("cannot read the project %1").arg(reason);
        return false;
    }

    // The project's font file is registered before the project replaces the current one: the
    // window's font list answers a registration by choosing its last family, which must not
    // overwrite the family the project names. The outgoing project is not redrawn for it.
    m_state.setBlockredrawandpack(true);
    registerLoadedFont(project.settings);
    m_state.setBlockredrawandpack(false);
    if (m_refusesMissingFonts &&
        FontManager::availableMembersOfFontFamily(project.settings.fontName()).isEmpty()) {
        if (error)
            *error = QStringLiteral("the project %1 uses the font '%2', which is not installed")
                         .arg(path, project.settings.fontName());
        return false;
    }

    // The loaded settings become the document's, in the same object; the previous project's
    // glyphs go with its settings.
    m_justLoading = true;
    m_state = std::move(project.settings);
    m_state.setTxtView(&m_view);
    m_state.setTxtCont(m_controller);
    m_state.setBlockredrawandpack(true);
    m_controller->showGlyphDetails(nullptr); // the glyph editor must let go of its glyph first
    m_view.refreshGlyphLetters(QString());

    // The file's line height and space width: showing the project chooses its family, which
    // replaces both with automatic values. A value of 1 or more is put back afterwards.
    const int lineHeight = m_state.lineHeight();
    const int spaceWidth = m_state.spaceWidth();

    // Every panel shows the settings. The glyph set is rebuilt but neither rendered nor packed
    // until the glyph records are applied, so it is rendered once.
    if (m_windowSetUp)
        m_fontList.searchFieldChanged(QString());
    ProjectArchive::upgradeLoadedSettings(m_state);
    showPreviewGradientsAndTexture();
    m_state.setTextureSize(m_state.width(), m_state.height());
    m_state.setCheckerBoard(m_state.checkerBoard());
    showCharacterSet();
    selectProjectFamily();

    m_state.setProjectName(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));

    for (const CGGlyphBitmap& record : project.glyphs)
        m_view.resetGlyphParam(record);
    // Glyph records do not keep the miter limit: the project's applies to every glyph, as the
    // miter-limit field does when it shows the project. The auto x/y switch is re-applied to
    // the glyphs here too, rather than after the redraw, so that the set is rendered once.
    m_view.setMiterLimit(m_state.miterlimit());
    for (CAGlyphLayer* layer : m_view.glyphLayers()) {
        layer->glyphBitmap().setAutoxy(m_state.autoxy());
        layer->glyphBitmap().setExtensions(m_state.extensions());
    }
    m_state.setBlockredrawandpack(false);
    m_view.redrawAllGlyphs();
    m_view.Packing(m_state.paddingSize(), m_state.paddingMethod(), m_state.packingReversed(), m_state.grid());
    // The family's glyph-size handler ran before anything was measured; its metrics are taken
    // now from the rendered set. This ends the loading: the project counts as unchanged.
    takeAutomaticMetrics();
    // A space width set by hand survives opening, as the line height does below; otherwise it
    // would depend on which family the window showed before.
    if (spaceWidth >= 1)
        m_state.setSpaceWidth(spaceWidth);

    if (wasInPreview) {
        m_state.setIsinpreviewmode(true);
        m_view.switchToPreview();
        m_view.updatePreview(m_previewText);
    }
    // The auto x/y switch: its glyph half was applied before the redraw.
    m_view.updatePreview(m_previewText);
    if (lineHeight >= 1) {
        // Through the informing setter (and the field's handler, which repeats it): the project
        // is marked changed.
        m_state.setLineHeight(lineHeight);
    }

    // Projects saved before publish targets existed get theirs from the older output settings.
    m_publishPanel.loadPublishSettings();
    m_controller->setDocumentTitle(windowTitle());
    m_controller->reloadInterfaceParamters();
    return true;
}

} // namespace qm
