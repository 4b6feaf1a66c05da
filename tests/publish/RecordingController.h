#pragma once

#include "Classes/model/TextureController.h"

#include <QStringList>

namespace qm::test {

/// Records the alerts and the publish log, and answers alerts with a chosen button.
class RecordingController : public TextureController
{
public:
    struct Alert
    {
        QString message;
        QString informativeText;
        QStringList buttons;
    };

    QList<Alert> alerts;
    QString log;
    int answer = 0;

    int runAlert(const QString& message, const QString& informativeText, const QStringList& buttons) override
    {
        alerts.append({message, informativeText, buttons});
        return answer;
    }
    void appendPublishLog(const QString& text) override { log += text; }
};

} // namespace qm::test
