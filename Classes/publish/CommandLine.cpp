#include "Classes/publish/CommandLine.h"

#include "Classes/fonts/UnicodeRanges.h"
#include "Classes/model/ProjectDocument.h"
#include "Classes/publish/CommandLineController.h"
#include "Classes/publish/PublishRun.h"
#include "Platform/files/SaveFile.h"

#include <QFileInfo>
#include <QImage>
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
    "  preview PROJECT --out FILE.png [--text TEXT]\n"
    "                                      render sample text with a project's glyphs\n"
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

const char* const kPreviewUsage =
    "usage: quillmark preview PROJECT --out FILE.png [--text TEXT]\n"
    "\n"
    "Lays out TEXT with the project's glyphs, as the desktop program's preview does, and\n"
    "writes it as a PNG cropped to the text on the preview background colour. A backslash\n"
    "followed by n starts a new line, as in the preview field. Without --text, the\n"
    "project's stored preview text is used. Characters that are not in the project's\n"
    "glyph set are left out.\n"
    "\n"
    "Exit status: 0 when the image was written; 1 when the project cannot be read, none of\n"
    "the text's characters has a glyph, or the image cannot be written.\n";

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
    } else if (command == QLatin1String("preview")) {
        status = runPreview(args);
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

bool CommandLine::openProject(ProjectDocument& document, const QString& path, const QString& command)
{
    // A project is published, shown and previewed in the font it was made with, or not at all.
    document.setRefusesMissingFonts(true);
    QString error;
    if (document.openfileproject(path, &error))
        return true;
    fail(command, error, Failed);
    return false;
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
    if (!openProject(document, project, command))
        return Failed;
    printInfo(document);
    return Ok;
}

int CommandLine::runPreview(const QStringList& args)
{
    const QString command = QStringLiteral("preview");
    if (args.contains(QLatin1String("--help"))) {
        m_out << kPreviewUsage;
        return Ok;
    }
    QString project;
    QString out;
    QString text;
    bool hasText = false;
    QStringList rest;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        const bool isOut = arg == QLatin1String("--out"), isText = arg == QLatin1String("--text");
        if (isOut || isText) {
            if (i + 1 >= args.size())
                return fail(command, QStringLiteral("%1 needs a value (see quillmark preview --help)").arg(arg), Usage);
            (isOut ? out : text) = args[++i];
            hasText = hasText || isText;
        } else if (arg.startsWith(QLatin1String("--out="))) {
            out = arg.mid(6);
        } else if (arg.startsWith(QLatin1String("--text="))) {
            text = arg.mid(7);
            hasText = true;
        } else {
            rest.append(arg);
        }
    }
    if (const QString error = projectArguments(rest, &project, nullptr); !error.isEmpty())
        return fail(command, error + QStringLiteral(" (see quillmark preview --help)"), Usage);
    if (out.isEmpty())
        return fail(command, QStringLiteral("no output file given: --out FILE.png"), Usage);

    CommandLineController controller(m_out, m_err);
    ProjectDocument document(&controller);
    if (!openProject(document, project, command))
        return Failed;
    if (hasText)
        document.previewTextChanged(text);
    document.previewOrTextureChanged(true);
    const QImage image = document.view().getPreviewImg();
    if (image.isNull())
        return fail(command,
                    QStringLiteral("nothing to draw: none of the text's characters has a glyph in '%1'").arg(project),
                    Failed);
    if (!savePngFile(image, out))
        return fail(command, QStringLiteral("cannot write '%1'").arg(out), Failed);
    m_out << out << " (" << image.width() << 'x' << image.height() << ")\n";
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
    if (!openProject(document, project, command))
        return Failed;
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
