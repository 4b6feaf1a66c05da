// Opening and saving a project file without a window.

#include "Classes/publish/ProjectSession.h"

namespace qm {

bool ProjectSession::open(const QString& path, QString* error)
{
    *error = QStringLiteral("cannot open '%1': project files are not available yet").arg(path);
    return false;
}

bool ProjectSession::save(const QString& path, QString* error) const
{
    *error = QStringLiteral("cannot save '%1': project files are not available yet").arg(path);
    return false;
}

} // namespace qm
