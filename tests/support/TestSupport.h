#pragma once

#include <QString>

namespace qm::test {

/// Folder of the data files the tests read (tests/data).
QString dataPath(const QString& relative = {});
/// Top folder of the source tree.
QString sourcePath(const QString& relative = {});
/// The built quillmark program.
QString programPath();

/// Path of a font file of the Debian test fonts, found through fontconfig's file list.
QString dejaVuSansPath();
QString liberationSansPath();

} // namespace qm::test
