#include "tests/support/TestSupport.h"

#include "Platform/text/Font.h"

#include <QDir>

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
    const QByteArray fromEnv = qgetenv("QUILLMARK_BIN");
    return fromEnv.isEmpty() ? QStringLiteral(QUILLMARK_BINARY_DIR "/bin/quillmark") : QString::fromLocal8Bit(fromEnv);
}

QString dejaVuSansPath()
{
    return Font::fromName(QStringLiteral("DejaVuSans"), 12).filePath();
}

QString liberationSansPath()
{
    return Font::fromName(QStringLiteral("LiberationSans"), 12).filePath();
}

} // namespace qm::test
