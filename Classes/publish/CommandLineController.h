#pragma once

#include "Classes/model/TextureController.h"

#include <QTextStream>

namespace qm {

/// The controller of a project run from the command line: the publish log goes to the output
/// stream as it grows, alerts and warnings to the error stream. Alerts are answered with their
/// first button, choosers are cancelled.
class CommandLineController : public TextureController
{
public:
    CommandLineController(QTextStream& out, QTextStream& err) : m_out(out), m_err(err) {}

    void appendPublishLog(const QString& text) override
    {
        m_out << text;
        m_out.flush();
    }
    int runAlert(const QString& message, const QString& informativeText, const QStringList& buttons) override
    {
        (void)buttons;
        m_err << message << ": " << informativeText << '\n';
        m_err.flush();
        return 0;
    }
    /// The can't-fit warning is repeated after every packing; it is shown once per change.
    void updateWarningMessage(const QString& message) override
    {
        if (message == m_lastWarning)
            return;
        m_lastWarning = message;
        if (!message.isEmpty()) {
            m_err << message << '\n';
            m_err.flush();
        }
    }

private:
    QTextStream& m_out;
    QTextStream& m_err;
    QString m_lastWarning;
};

} // namespace qm
