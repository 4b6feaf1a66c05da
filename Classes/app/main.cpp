// The quillmark program: the desktop application without a command, the headless
// command-line tool with one.

#include "Platform/text/FontManager.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

namespace {

const char* const kUsage = "usage: quillmark <command> [options]\n"
                           "\n"
                           "commands:\n"
                           "  fonts [--search TEXT]   list the installed font families\n"
                           "\n"
                           "  --help, --version\n";

int runFonts(const QStringList& args)
{
    QString search;
    for (qsizetype i = 0; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--search") && i + 1 < args.size()) {
            search = args[++i];
        } else if (args[i] == QLatin1String("--help")) {
            std::fputs("usage: quillmark fonts [--search TEXT]\n"
                       "Lists the installed font families whose names contain TEXT (any case).\n",
                       stdout);
            return 0;
        } else {
            std::fprintf(stderr, "quillmark fonts: unknown option '%s'\n", qPrintable(args[i]));
            return 2;
        }
    }
    QTextStream out(stdout);
    for (const QString& family : qm::FontManager::availableFontFamilies())
        if (search.isEmpty() || family.toLower().contains(search.toLower()))
            out << family << '\n';
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Quillmark"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLMARK_VERSION));
    QStringList args = QCoreApplication::arguments().mid(1);
    if (args.isEmpty() || args.first() == QLatin1String("--help")) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    const QString command = args.takeFirst();
    if (command == QLatin1String("--version")) {
        std::printf("quillmark %s\n", QUILLMARK_VERSION);
        return 0;
    }
    if (command == QLatin1String("fonts"))
        return runFonts(args);
    std::fprintf(stderr, "quillmark: unknown command '%s'\n%s", qPrintable(command), kUsage);
    return 2;
}
