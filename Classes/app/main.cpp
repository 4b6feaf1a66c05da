// The quillmark program: the desktop application without a command (any other arguments are
// project files to open), the headless command-line tool with one.

#include "Classes/app/AppDelegate.h"
#include "Classes/publish/CommandLine.h"

#include <QApplication>
#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>
#include <unistd.h>

namespace {

void nameApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("Quillmark"));
    QCoreApplication::setOrganizationName(QStringLiteral("Quillmark"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLMARK_VERSION));
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && qm::CommandLine::isCommand(QString::fromLocal8Bit(argv[1]))) {
        // Commands paint into images only: no window system, so no display is needed.
        QCoreApplication app(argc, argv);
        nameApplication();
        QTextStream out(stdout);
        QTextStream err(stderr);
        qm::CommandLine commandLine(out, err);
        commandLine.setShowProgress(isatty(STDERR_FILENO) != 0);
        return commandLine.run(QCoreApplication::arguments().mid(1));
    }
    QApplication app(argc, argv);
    nameApplication();
    return qm::AppDelegate::run(QCoreApplication::arguments().mid(1));
}
