#include "Classes/publish/CommandLine.h"

#include "Classes/publish/CommandLineController.h"
#include "Classes/publish/ProjectSession.h"
#include "Classes/publish/PublishRun.h"
#include "Platform/text/FontManager.h"

#include <QTextStream>

namespace qm {

namespace {

const char* const kUsage =
    "usage: quillmark <command> [options]\n"
    "\n"
    "Commands (headless: no window, no display needed):\n"
    "  publish PROJECT [--target NAME]...  write the publish targets of a project\n"
    "  generate --out DIR/NAME [options]   make a bitmap font from options, without a project\n"
    "  fonts [--search TEXT]               list the font families\n"
    "  blocks                              list the Unicode blocks that --block takes\n"
    "  info PROJECT                        show a project's settings, glyphs and targets\n"
    "\n"
    "  quillmark <command> --help          the options of a command\n"
    "  quillmark --version                 the program's version\n"
    "\n"
    "Exit status: 0 done; 1 an input could not be read or a file not be written; 2 wrong\n"
    "command line; 3 incomplete publish targets (nothing written).\n";

const char* const kFontsUsage =
    "usage: quillmark fonts [--search TEXT]\n"
    "\n"
    "Lists the font families, one a line; those whose names contain TEXT (any case)\n"
    "with --search. A family with usable kerning pairs is followed by a tab and\n"
    "\"kerning\".\n";

} // namespace

CommandLine::CommandLine(QTextStream& out, QTextStream& err) : m_out(out), m_err(err) {}

QString CommandLine::versionText()
{
    return QStringLiteral("quillmark " QUILLMARK_VERSION);
}

int CommandLine::fail(const QString& command, const QString& message, int status)
{
    m_err << "quillmark" << (command.isEmpty() ? QString() : QLatin1Char(' ') + command) << ": " << message
          << '\n';
    m_err.flush();
    return status;
}

int CommandLine::run(const QStringList& arguments)
{
    if (arguments.isEmpty() || arguments.first() == QLatin1String("--help") ||
        arguments.first() == QLatin1String("help")) {
        m_out << kUsage;
        return Ok;
    }
    QStringList args = arguments;
    const QString command = args.takeFirst();
    int status = Usage;
    if (command == QLatin1String("--version")) {
        m_out << versionText() << '\n';
        status = Ok;
    } else if (command == QLatin1String("publish")) {
        status = runPublish(args);
    } else if (command == QLatin1String("generate")) {
        status = runGenerate(args);
    } else if (command == QLatin1String("fonts")) {
        status = runFonts(args);
    } else if (command == QLatin1String("blocks")) {
        status = runBlocks(args);
    } else if (command == QLatin1String("info")) {
        status = runInfo(args);
    } else {
        m_err << "quillmark: unknown command '" << command << "'\n\n" << kUsage;
    }
    m_out.flush();
    m_err.flush();
    return status;
}

int CommandLine::runFonts(const QStringList& args)
{
    QString search;
    for (qsizetype i = 0; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--help")) {
            m_out << kFontsUsage;
            return Ok;
        }
        if (args[i] == QLatin1String("--search") && i + 1 < args.size())
            search = args[++i];
        else if (args[i].startsWith(QLatin1String("--search=")))
            search = args[i].mid(9);
        else
            return fail(QStringLiteral("fonts"), QStringLiteral("unknown argument '%1'").arg(args[i]), Usage);
    }
    for (const QString& family : FontManager::availableFontFamilies())
        if (search.isEmpty() || family.toLower().contains(search.toLower()))
            m_out << family << '\n';
    return Ok;
}

int CommandLine::runBlocks(const QStringList& args)
{
    (void)args;
    return fail(QStringLiteral("blocks"), QStringLiteral("not available yet"), Failed);
}

int CommandLine::runInfo(const QStringList& args)
{
    (void)args;
    return fail(QStringLiteral("info"), QStringLiteral("not available yet"), Failed);
}

int CommandLine::runPublish(const QStringList& args)
{
    (void)args;
    return fail(QStringLiteral("publish"), QStringLiteral("not available yet"), Failed);
}

int CommandLine::publish(ProjectSession& session, const QStringList& targetNames, const QString& command)
{
    PublishRun run(session.state(), session.view(), session.controller());
    run.setTargetNames(targetNames);
    if (m_showProgress) {
        run.setProgressHandler([this](int done, int total) {
            m_err << "\rpublishing: " << done << '/' << total << " targets" << (done == total ? "\n" : "");
            m_err.flush();
        });
    }
    const PublishResult result = run.buttonPublish();
    m_out.flush();
    if (!result.validated)
        return fail(command, QStringLiteral("incomplete publish targets; nothing was written"), Refused);
    if (result.filesFailed > 0)
        return fail(command,
                    QStringLiteral("%1 of %2 files could not be written")
                        .arg(result.filesFailed)
                        .arg(result.filesFailed + result.filesOk),
                    Failed);
    return Ok;
}

} // namespace qm
