#pragma once

#include <QString>
#include <QStringList>

class QTextStream;

namespace qm {

class ProjectDocument;
struct PublishResult;

/// The headless commands of the quillmark program (publish, generate, fonts, blocks, info,
/// preview). Reads nothing but its arguments and the files they name, writes results to `out` and
/// messages to `err`, never opens a window, and answers an exit status. The program's main and
/// the tests both run commands through this class.
class CommandLine
{
public:
    /// Exit statuses.
    enum Status {
        Ok = 0,      ///< done, every file written
        Failed = 1,  ///< an input could not be read or a file could not be written
        Usage = 2,   ///< the command line itself is wrong (unknown option, bad value, bad range)
        Refused = 3, ///< the publish targets are incomplete; nothing was written
    };

    CommandLine(QTextStream& out, QTextStream& err);

    /// Shows publishing progress on the error stream (for a terminal).
    void setShowProgress(bool on) { m_showProgress = on; }
    /// Runs one command; `arguments` exclude the program name.
    int run(const QStringList& arguments);

    /// The program's version text ("quillmark 0.1.0").
    static QString versionText();
    /// True when the program's first argument asks for the command line rather than the desktop
    /// program. The desktop takes project files (an existing file, or a name ending in
    /// ".quillmark"); everything else, unknown words included, goes to the command line, which
    /// says what is wrong with it.
    static bool isCommand(const QString& firstArgument);

private:
    int runPublish(const QStringList& args);
    int runGenerate(const QStringList& args);
    int runFonts(const QStringList& args);
    int runBlocks(const QStringList& args);
    int runInfo(const QStringList& args);
    int runPreview(const QStringList& args);

    /// Opens a project file for a project command; on failure says why and answers false.
    bool openProject(ProjectDocument& document, const QString& path, const QString& command);
    /// Runs the project's publish targets (or the named ones) and turns the result into a status.
    int publish(ProjectDocument& document, const QStringList& targetNames, const QString& command);
    /// The settings, glyphs and targets of an open project, as the info command shows them.
    void printInfo(ProjectDocument& document);
    /// Writes "quillmark <command>: <message>" to the error stream and answers `status`.
    int fail(const QString& command, const QString& message, int status);

    QTextStream& m_out;
    QTextStream& m_err;
    bool m_showProgress = false;
};

} // namespace qm
