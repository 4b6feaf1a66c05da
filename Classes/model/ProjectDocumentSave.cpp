// Saving the document, and the prompts that guard unsaved changes.

#include "Classes/model/Format.h"
#include "Classes/model/ProjectArchive.h"
#include "Classes/model/ProjectDocument.h"
#include "Classes/render/CAGlyphLayer.h"

#include <QFileInfo>
#include <QUrl>

namespace qm {

namespace {

const QString kProjectExtension = QStringLiteral("quillmark");

} // namespace

bool ProjectDocument::writeProjectFile(const QString& path, QString* error) const
{
    QList<const CGGlyphBitmap*> glyphs;
    for (const CAGlyphLayer* layer : m_view.glyphLayers())
        glyphs.append(&layer->glyphBitmap());
    QString reason;
    if (ProjectArchive::writeFile(path, m_state, glyphs, &reason))
        return true;
    if (error)
        *error = QStringLiteral("cannot save the project %1").arg(reason);
    return false;
}

void ProjectDocument::reportSaveFailure(const QString& path)
{
    alert(QStringLiteral("Save project problem !"), format("Can't save file '%@'", {path}),
          {QStringLiteral("Ok")});
}

QString ProjectDocument::windowTitle() const
{
    if (m_state.projectName().isEmpty())
        return QStringLiteral("Quillmark");
    return format("Quillmark - %@", {m_state.projectName().fileName()});
}

void ProjectDocument::buttonOpen()
{
    if (m_state.configchanged()) {
        // There is no cancel: the second button goes on without saving.
        const int answer =
            alert(QStringLiteral("Do you want to save your project before opening a new one ?"),
                  QStringLiteral("If you don't save, your work in this window will be lost."),
                  {QStringLiteral("Save Document"), QStringLiteral("Don't save")});
        if (answer == 0)
            buttonSave();
    }
    const QString path = m_controller->chooseFileToOpen(QString(), {kProjectExtension});
    if (path.isEmpty())
        return;
    openfileproject(path);
}

bool ProjectDocument::buttonSave()
{
    m_state.setPreviewTextString(m_previewText);
    if (m_state.projectName().isEmpty()) {
        const bool saved = clickSaveAs();
        // Also after a failed Save As, which leaves the chosen file as the project's.
        if (!m_state.projectName().isEmpty())
            m_controller->setDocumentTitle(windowTitle());
        return saved;
    }
    const QString path = m_state.projectName().toLocalFile();
    if (!writeProjectFile(path, nullptr)) {
        reportSaveFailure(path);
        return false;
    }
    m_controller->noteRecentDocument(path);
    m_state.setConfigchanged(false);
    return true;
}

bool ProjectDocument::clickSaveAs()
{
    m_saveAsCopy = false;
    return buttonSaveAs();
}

bool ProjectDocument::clickSaveAsCopy()
{
    m_saveAsCopy = true;
    return buttonSaveAs();
}

bool ProjectDocument::buttonSaveAs()
{
    m_state.setPreviewTextString(m_previewText);
    QString path = m_controller->chooseFileToSave(QString(), {kProjectExtension});
    if (path.isEmpty())
        return false;
    // A save panel restricted to one type gives the name its extension.
    if (QFileInfo(path).suffix().compare(kProjectExtension, Qt::CaseInsensitive) != 0)
        path += QLatin1Char('.') + kProjectExtension;
    path = QFileInfo(path).absoluteFilePath();

    // The file stores its own location. After a failure the project keeps the chosen file.
    const QUrl previous = m_state.projectName();
    m_state.setProjectName(QUrl::fromLocalFile(path));
    if (!writeProjectFile(path, nullptr)) {
        reportSaveFailure(path);
        return false;
    }
    m_controller->noteRecentDocument(path);
    if (!previous.isEmpty())
        m_state.setProjectName(previous);
    else
        m_state.setConfigchanged(false);

    if (m_saveAsCopy)
        m_controller->openInNewWindow(path);
    else
        openfileproject(path);
    return true;
}

bool ProjectDocument::windowShouldClose()
{
    if (!m_state.configchanged())
        return true;
    const int answer =
        alert(QStringLiteral("Do you want to save your project before closing ?"),
              QStringLiteral("If you don't save, your work in this window will be lost."),
              {QStringLiteral("Save Document"), QStringLiteral("Close"), QStringLiteral("Don't close")});
    switch (answer) {
    case 0:
        // The window closes whatever the save did, even when its save panel was cancelled.
        buttonSave();
        return true;
    case 1:
        return true;
    default:
        // Also a dialog dismissed without a button: keeping the window loses nothing.
        return false;
    }
}

} // namespace qm
