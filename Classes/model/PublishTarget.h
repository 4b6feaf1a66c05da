#pragma once

#include <QString>

namespace qm {

/// One publish target: where and how one set of texture and descriptor files is written.
/// Archived as a dictionary with exactly these keys.
struct PublishTarget
{
    /// The suffix of a target nobody has set up yet; publishing refuses it.
    static inline const QString unsetSuffix = QStringLiteral("CHANGE ME");

    QString mainname;                    ///< "mainname": the name it is stored under
    QString path;                        ///< "path": output directory
    QString file;                        ///< "file": base file name
    QString suffix = unsetSuffix;         ///< "suffix": appended to the file name
    QString fontface;                    ///< "fontface": face written into the descriptor; empty = font name
    QString scale = QStringLiteral("100.0000");   ///< "scale": percent, as text with four decimals
    int quality = 1;                     ///< "quality": interpolation code when scaling the texture
    int format = 0;                      ///< "format": descriptor format code 0..8
    bool texture = true;                 ///< "texture": write the texture image
    bool coords = true;                  ///< "coords": write the descriptor
    bool redraw = false;                 ///< "redraw": re-render at the target's scale

    bool operator==(const PublishTarget&) const = default;
};

} // namespace qm
