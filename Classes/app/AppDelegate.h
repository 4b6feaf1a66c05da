#pragma once

#include <QStringList>

namespace qm {

class TopMenuController;

/// Starts the desktop application: names it, gives it its icon, hands the files it was started
/// with to the top menu controller and lets launching finish.
class AppDelegate
{
public:
    /// Runs the application's event loop; answers the exit status.
    static int run(const QStringList& files);
};

} // namespace qm
