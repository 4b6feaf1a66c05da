// Feeds arbitrary bytes to the project decoder; a project that decodes is encoded again, which
// must work for anything the decoder accepts.

#include "Classes/model/ProjectArchive.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace qm;
    ProjectData project;
    QString error;
    if (!ProjectArchive::decode(QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size)),
                                &project, &error))
        return 0;
    ProjectArchive::upgradeLoadedSettings(project.settings);
    QList<const CGGlyphBitmap*> glyphs;
    for (const CGGlyphBitmap& glyph : project.glyphs)
        glyphs.append(&glyph);
    const QByteArray again = ProjectArchive::encode(project.settings, glyphs, &error);
    ProjectData reread;
    if (again.isEmpty() || !ProjectArchive::decode(again, &reread, &error))
        std::abort(); // whatever was read must write and read back
    return 0;
}
