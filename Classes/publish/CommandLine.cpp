#include "Classes/publish/CommandLine.h"

#include "Classes/fonts/UnicodeRanges.h"
#include "Classes/model/ProjectDocument.h"
#include "Classes/publish/CommandLineController.h"
#include "Classes/publish/PublishRun.h"

#include <QFileInfo>
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

const char* const kPublishUsage =
    "usage: quillmark publish PROJECT [--target NAME]...\n"
    "\n"
    "Writes the texture and the descriptor of every publish target of a project, or of the\n"
    "named targets only, exactly as the publish button of the desktop program does. The publish\n"
    "log goes to standard output; progress to standard error when it is a terminal.\n"
    "A target directory that is a relative path is taken relative to the project's folder.\n"
    "\n"
    "Exit status: 0 when every file was written; 1 when a file failed or the project cannot be\n"
    "read; 3 when a target lacks its directory, file name or suffix (nothing is written).\n";

const char* const kInfoUsage =
    "usage: quillmark info PROJECT\n"
    "\n"
    "Shows a project's font and style settings, its glyphs (how many, how many fit on\n"
    "the texture) and its publish targets.\n";

const char* const kBlocksUsage =
    "usage: quillmark blocks\n"
    "\n"
    "Lists the Unicode blocks that generate --block takes: name, first and last code\n"
    "(hexadecimal). Block names match in any case.\n";

} // namespace

CommandLine::CommandLine(QTextStream& out, QTextStream& err) : m_out(out), m_err(err) {}

bool CommandLine::isCommand(const QString& first)
{
    if (first.startsWith(QLatin1Char('-')))
        return true;
    return !(first.endsWith(QLatin1String(".quillmark")) || QFileInfo(first).isFile());
}

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
    // The font list of a window that nobody sees: its search and its kerning marks.
    ProjectDocument document;
    document.fontList().searchFieldChanged(search);
    for (const FontRow& row : document.fontList().fontArray())
        m_out << row.familyName << (row.hasKerning ? "\tkerning" : "") << '\n';
    return Ok;
}

int CommandLine::runBlocks(const QStringList& args)
{
    if (args.contains(QLatin1String("--help"))) {
        m_out << kBlocksUsage;
        return Ok;
    }
    if (!args.isEmpty())
        return fail(QStringLiteral("blocks"), QStringLiteral("unknown argument '%1'").arg(args.first()),
                    Usage);
    for (const UnicodeBlock& block : UnicodeRanges::blocks()) {
        const CodeRange range = UnicodeRanges::parseRange(block.range);
        m_out << block.name.leftJustified(38)
              << QStringLiteral("%1-%2")
                     .arg(range.start, 4, 16, QLatin1Char('0'))
                     .arg(range.end, 4, 16, QLatin1Char('0'))
                     .toUpper()
              << '\n';
    }
    return Ok;
}

/// Reads "PROJECT [--target NAME]..." (targets only when `targets` is given).
static QString projectArguments(const QStringList& args, QString* project, QStringList* targets)
{
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        if (targets && arg == QLatin1String("--target")) {
            if (i + 1 >= args.size())
                return QStringLiteral("--target needs a target name");
            targets->append(args[++i]);
        } else if (targets && arg.startsWith(QLatin1String("--target="))) {
            targets->append(arg.mid(9));
        } else if (arg.startsWith(QLatin1String("--"))) {
            return QStringLiteral("unknown option '%1'").arg(arg);
        } else if (project->isEmpty()) {
            *project = arg;
        } else {
            return QStringLiteral("unexpected argument '%1': one project at a time").arg(arg);
        }
    }
    return project->isEmpty() ? QStringLiteral("no project file given") : QString();
}

int CommandLine::runInfo(const QStringList& args)
{
    const QString command = QStringLiteral("info");
    if (args.contains(QLatin1String("--help"))) {
        m_out << kInfoUsage;
        return Ok;
    }
    QString project;
    if (const QString error = projectArguments(args, &project, nullptr); !error.isEmpty())
        return fail(command, error + QStringLiteral(" (see quillmark info --help)"), Usage);
    CommandLineController controller(m_out, m_err);
    ProjectDocument document(&controller);
    // A project is published in the font it was made with, or not at all.
    document.setRefusesMissingFonts(true);
    QString error;
    if (!document.openfileproject(project, &error))
        return fail(command, error, Failed);
    printInfo(document);
    return Ok;
}

int CommandLine::runPublish(const QStringList& args)
{
    const QString command = QStringLiteral("publish");
    if (args.contains(QLatin1String("--help"))) {
        m_out << kPublishUsage;
        return Ok;
    }
    QString project;
    QStringList targets;
    if (const QString error = projectArguments(args, &project, &targets); !error.isEmpty())
        return fail(command, error + QStringLiteral(" (see quillmark publish --help)"), Usage);
    CommandLineController controller(m_out, m_err);
    ProjectDocument document(&controller);
    // A project is published in the font it was made with, or not at all.
    document.setRefusesMissingFonts(true);
    QString error;
    if (!document.openfileproject(project, &error))
        return fail(command, error, Failed);
    const PublishTargets& stored = document.state().targetsPublish();
    if (stored.isEmpty())
        return fail(command, QStringLiteral("project '%1' has no publish targets").arg(project), Failed);
    for (const QString& name : targets)
        if (!stored.contains(name))
            return fail(command,
                        QStringLiteral("project '%1' has no target '%2' (its targets: %3)")
                            .arg(project, name, stored.keys().join(QStringLiteral(", "))),
                        Usage);
    return publish(document, targets, command);
}

int CommandLine::publish(ProjectDocument& document, const QStringList& targetNames, const QString& command)
{
    PublishRun run(document.state(), document.view(), document.controller());
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
