// Files are written whole or not at all: a failed save leaves the previous file as it was, and
// output files may be written in place only where no temporary file can be made.

#include "Platform/files/SaveFile.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace qm;

namespace {

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A writable file in a folder that refuses new files (and so temporary files).
struct LockedFolder
{
    QTemporaryDir dir;
    QString file = dir.filePath(QStringLiteral("old.txt"));
    LockedFolder()
    {
        QFile f(file);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly) && f.write("old") == 3);
        f.close();
        ::chmod(QFile::encodeName(dir.path()).constData(), 0555);
    }
    ~LockedFolder() { ::chmod(QFile::encodeName(dir.path()).constData(), 0755); }
    bool refusesNewFiles() const
    {
        QFile probe(dir.filePath(QStringLiteral("probe")));
        return !probe.open(QIODevice::WriteOnly); // root ignores the folder's mode
    }
};

} // namespace

TEST(SaveFile, ReplacesTheWholeFileAndReportsWhyItCannot)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("d.fnt"));
    ASSERT_TRUE(saveFile(path, QByteArray("a much longer first version\n"), InPlace::Never));
    ASSERT_TRUE(saveFile(path, QStringLiteral("face=\"Ünïcode\"\n").toUtf8(), InPlace::Never));
    EXPECT_EQ(contents(path), QByteArray("face=\"\xC3\x9Cn\xC3\xAF"
                                         "code\"\n"));

    QString error;
    const QString missing = dir.filePath(QStringLiteral("missing/a.fnt"));
    EXPECT_FALSE(saveFile(missing, QByteArray("x"), InPlace::WhenNoTemporaryFile, &error));
    EXPECT_TRUE(error.startsWith(missing)) << qPrintable(error);
}

TEST(SaveFile, InPlaceOnlyWhenAllowed)
{
    LockedFolder locked;
    if (!locked.refusesNewFiles())
        GTEST_SKIP() << "this user can write into any folder";
    // A project is never written in place: the old one stays.
    QString error;
    EXPECT_FALSE(saveFile(locked.file, QByteArray("new"), InPlace::Never, &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_EQ(contents(locked.file), QByteArray("old"));
    // An output file is.
    EXPECT_TRUE(saveFile(locked.file, QByteArray("new"), InPlace::WhenNoTemporaryFile));
    EXPECT_EQ(contents(locked.file), QByteArray("new"));
}

TEST(SaveFile, PngReadsBackWithStraightAlpha)
{
    QTemporaryDir dir;
    QImage image(7, 5, QImage::Format_RGBA8888_Premultiplied);
    image.fill(Qt::transparent);
    image.setPixelColor(3, 2, QColor(255, 0, 0, 128));
    const QString path = dir.filePath(QStringLiteral("a.png"));
    ASSERT_TRUE(savePngFile(image, path));
    const QImage back(path);
    ASSERT_EQ(back.size(), image.size());
    EXPECT_EQ(back.pixelColor(3, 2), QColor(255, 0, 0, 128));

    EXPECT_FALSE(savePngFile(QImage(), dir.filePath(QStringLiteral("null.png"))));
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("null.png"))));
}
