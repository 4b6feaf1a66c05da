#include "tests/support/TestSupport.h"

#include "Platform/text/Font.h"

#include <QDir>
#include <QJsonDocument>
#include <QProcess>

namespace qm::test {

QString dataPath(const QString& relative)
{
    return relative.isEmpty() ? QStringLiteral(QUILLMARK_TEST_DATA_DIR)
                              : QDir(QStringLiteral(QUILLMARK_TEST_DATA_DIR)).filePath(relative);
}

QString sourcePath(const QString& relative)
{
    return relative.isEmpty() ? QStringLiteral(QUILLMARK_SOURCE_DIR)
                              : QDir(QStringLiteral(QUILLMARK_SOURCE_DIR)).filePath(relative);
}

QString programPath()
{
    return QStringLiteral(QUILLMARK_BINARY_DIR "/bin/quillmark");
}

QString dejaVuSansPath()
{
    return Font::fromName(QStringLiteral("DejaVuSans"), 12).filePath();
}

QString liberationSansPath()
{
    return Font::fromName(QStringLiteral("LiberationSans"), 12).filePath();
}

QJsonObject readWithBMFontParser(const QString& path, QString* error)
{
    const QString script = sourcePath(QStringLiteral("tests/support/bmfont/parse-bmfont.js"));
    QProcess node;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("NODE_PATH"), QStringLiteral(QUILLMARK_NODE_PATH));
    node.setProcessEnvironment(environment);
    node.start(QStringLiteral("node"), {script, path});
    if (!node.waitForFinished(60000) || node.exitStatus() != QProcess::NormalExit || node.exitCode() != 0) {
        *error = QStringLiteral("node failed: ") + QString::fromUtf8(node.readAllStandardError());
        return {};
    }
    QJsonParseError parseError;
    const QJsonDocument doc = QJsonDocument::fromJson(node.readAllStandardOutput(), &parseError);
    if (!doc.isObject()) {
        *error = QStringLiteral("unreadable parser output: ") + parseError.errorString();
        return {};
    }
    return doc.object();
}

} // namespace qm::test
