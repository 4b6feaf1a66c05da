#pragma once

#include <QJsonObject>
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

/// What the public npm BMFont parsers (parse-bmfont-ascii, parse-bmfont-xml) read from a .fnt
/// file, as their JSON: {pages, chars: [{id, x, y, width, height, xoffset, yoffset, xadvance,
/// page, chnl}], info, common, kernings: [{first, second, amount}]}. The parsers are installed
/// by a ctest fixture: list the test in tests/CMakeLists.txt's bmfont_consumer_tests. Empty,
/// with `error` set, when it failed.
QJsonObject readWithBMFontParser(const QString& path, QString* error);

} // namespace qm::test
