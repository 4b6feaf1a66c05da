#pragma once

#include <QByteArray>
#include <QString>

class QImage;

namespace qm {

/// Whether a file may be written in place when no temporary file can be made beside it (a
/// writable file in a folder that is not).
enum class InPlace {
    Never,               ///< the old file stays whole whatever happens (project files)
    WhenNoTemporaryFile, ///< written in place then; a failure is still reported (output files)
};

/// Writes `bytes` as the whole content of `path`: to a temporary file beside it that replaces
/// the file only once complete, so a failure leaves the previous file as it was. False, with the
/// reason in `error` when given, when any step fails.
bool saveFile(const QString& path, const QByteArray& bytes, InPlace inPlace, QString* error = nullptr);

/// Encodes an image as PNG (see writePng) and saves it as above, in place when it must be.
/// False for a null image.
bool savePngFile(const QImage& image, const QString& path, QString* error = nullptr);

} // namespace qm
