// Opening and saving a project file without a window.

#include "Classes/publish/ProjectSession.h"

#include "Classes/model/ProjectArchive.h"
#include "Classes/publish/PublishPanel.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Platform/text/FontManager.h"

#include <QFileInfo>

namespace qm {

bool ProjectSession::open(const QString& path, QString* error)
{
    ProjectData project;
    QString reason;
    if (!ProjectArchive::readFile(path, &project, &reason)) {
        *error = QStringLiteral("cannot read the project %1").arg(reason);
        return false;
    }
    sharedAppState& loaded = project.settings;
    ProjectArchive::upgradeLoadedSettings(loaded);

    // The path of a font file is kept as text; the program has always read it as a URL (a plain
    // path is a URL without scheme). A failure shows only as the family being unknown.
    if (loaded.loadedFontName() && !loaded.loadedFontPath().isEmpty()) {
        const QUrl url(loaded.loadedFontPath());
        const QString file = url.isLocalFile()        ? url.toLocalFile()
                             : url.scheme().isEmpty() ? url.path()
                                                      : QString();
        if (!file.isEmpty())
            FontManager::registerFontsForFile(file);
    }
    if (FontManager::availableMembersOfFontFamily(loaded.fontName()).isEmpty()) {
        *error = QStringLiteral("the project %1 uses the font '%2', which is not installed")
                     .arg(path, loaded.fontName());
        return false;
    }

    m_state = loaded;
    m_state.setTxtView(&m_view);
    m_state.setTxtCont(m_controller);
    m_state.setProjectName(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
    loadFontTables();
    const int lineHeight = m_state.lineHeight();
    const int spaceWidth = m_state.spaceWidth();

    // The glyphs come from the character set; each then takes back its own stored settings.
    // Choosing the project's family applies the glyph size again, which measures and packs the
    // set; a line height or space width set by hand (1 or more) is then put back.
    applyCharacters(m_state.textGlyph());
    m_state.setBlockredrawandpack(true);
    for (const CGGlyphBitmap& record : project.glyphs)
        m_view.resetGlyphParam(record);
    // Glyph records do not keep the miter limit: the project's applies to every glyph, as the
    // panel's miter-limit field does when it shows the loaded project.
    m_view.setMiterLimit(m_state.miterlimit());
    m_state.setBlockredrawandpack(false);
    reallyChangeGlyphSize(m_state.glyphSize());
    if (lineHeight >= 1)
        m_state.setLineHeight(lineHeight);
    if (spaceWidth >= 1)
        m_state.setSpaceWidth(spaceWidth);

    // Projects from before publish targets get theirs from the older output settings.
    PublishPanel panel(m_state, m_controller);
    panel.loadPublishSettings();
    m_state.setConfigchanged(false);
    return true;
}

bool ProjectSession::save(const QString& path, QString* error) const
{
    QList<const CGGlyphBitmap*> glyphs;
    for (const CAGlyphLayer* layer : m_view.glyphLayers())
        glyphs.append(&layer->glyphBitmap());
    QString reason;
    if (ProjectArchive::writeFile(path, m_state, glyphs, &reason))
        return true;
    *error = QStringLiteral("cannot save the project %1").arg(reason);
    return false;
}

} // namespace qm
