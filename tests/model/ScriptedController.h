#pragma once

#include "Classes/model/TextureController.h"

#include <QStringList>

namespace qm::test {

/// A document window's controller driven by a script: alerts and file choosers take their
/// answers from queues (an empty queue answers the first button, or cancels), and everything the
/// document asks of the window is recorded.
class ScriptedController : public TextureController
{
public:
    struct Alert
    {
        QString message;
        QString informativeText;
        QStringList buttons;
    };

    QList<int> alertAnswers;
    QStringList filesToOpen;
    QStringList filesToSave;

    QList<Alert> alerts;
    int openChoosers = 0;
    int saveChoosers = 0;
    QStringList titles;
    QStringList recentDocuments;
    QStringList newWindows;
    int panelReloads = 0;

    int runAlert(const QString& message, const QString& informativeText, const QStringList& buttons) override
    {
        alerts.append({message, informativeText, buttons});
        return alertAnswers.isEmpty() ? 0 : alertAnswers.takeFirst();
    }
    QString chooseFileToOpen(const QString&, const QStringList& extensions) override
    {
        ++openChoosers;
        lastExtensions = extensions;
        return filesToOpen.isEmpty() ? QString() : filesToOpen.takeFirst();
    }
    QString chooseFileToSave(const QString&, const QStringList& extensions) override
    {
        ++saveChoosers;
        lastExtensions = extensions;
        return filesToSave.isEmpty() ? QString() : filesToSave.takeFirst();
    }
    void reloadInterfaceParamters() override { ++panelReloads; }
    void setDocumentTitle(const QString& title) override { titles.append(title); }
    void noteRecentDocument(const QString& path) override { recentDocuments.append(path); }
    void openInNewWindow(const QString& path) override { newWindows.append(path); }

    QStringList lastExtensions;
};

} // namespace qm::test
