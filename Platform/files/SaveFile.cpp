#include "Platform/files/SaveFile.h"

#include "Platform/graphics/PngWriter.h"

#include <QBuffer>
#include <QImage>
#include <QSaveFile>

namespace qm {

namespace {

bool failed(QString* error, const QString& path, const QString& reason)
{
    if (error)
        *error = QStringLiteral("%1: %2").arg(path, reason);
    return false;
}

} // namespace

bool saveFile(const QString& path, const QByteArray& bytes, InPlace inPlace, QString* error)
{
    QSaveFile file(path);
    file.setDirectWriteFallback(inPlace == InPlace::WhenNoTemporaryFile);
    // Unbuffered, and in one write, so that a write the disk cuts short shows in write()'s
    // count: buffered, Qt (6.4) committed a file cut at the size limit over the previous one.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return failed(error, path, file.errorString());
    if (file.write(bytes) != bytes.size()) {
        const QString reason = file.errorString();
        file.cancelWriting();
        return failed(error, path, reason);
    }
    if (!file.commit())
        return failed(error, path, file.errorString());
    return true;
}

bool savePngFile(const QImage& image, const QString& path, QString* error)
{
    QBuffer png;
    png.open(QIODevice::WriteOnly);
    if (!writePng(image, png))
        return failed(error, path, QStringLiteral("the image cannot be encoded as PNG"));
    return saveFile(path, png.data(), InPlace::WhenNoTemporaryFile, error);
}

} // namespace qm
