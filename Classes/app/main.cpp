// The quillmark program: the desktop application without a command, the headless
// command-line tool with one.

#include "Classes/publish/CommandLine.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>
#include <unistd.h>

int main(int argc, char** argv)
{
    // Commands paint into images only: no window system, so no display is needed.
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Quillmark"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLMARK_VERSION));
    QTextStream out(stdout);
    QTextStream err(stderr);
    qm::CommandLine commandLine(out, err);
    commandLine.setShowProgress(isatty(STDERR_FILENO) != 0);
    return commandLine.run(QCoreApplication::arguments().mid(1));
}
