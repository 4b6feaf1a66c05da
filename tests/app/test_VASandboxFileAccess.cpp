// Remembered file access on a platform without a sandbox: paths resolve to file URLs, grants
// are kept and pruned in the user defaults.

#include "Classes/app/VASandboxFileAccess.h"
#include "Platform/defaults/UserDefaults.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <pwd.h>

using namespace qm;

namespace {

class SandboxFileAccess : public ::testing::Test
{
protected:
    QTemporaryDir dir;
    QString store;
    QString real; ///< the temporary folder with symbolic links resolved
    QByteArray savedHome;

    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        real = QFileInfo(dir.path()).canonicalFilePath();
        store = dir.filePath(QStringLiteral("defaults.ini"));
        UserDefaults::setStandardStoreFile(store);
        savedHome = qgetenv("HOME");
        QDir(dir.path()).mkpath(QStringLiteral("home/docs"));
        QDir(dir.path()).mkpath(QStringLiteral("real"));
        ASSERT_TRUE(QFile::link(dir.filePath(QStringLiteral("real")), dir.filePath(QStringLiteral("link"))));
        touch(QStringLiteral("real/file.txt"));
        qputenv("HOME", dir.filePath(QStringLiteral("home")).toLocal8Bit());
    }
    void TearDown() override
    {
        qputenv("HOME", savedHome);
        UserDefaults::setStandardStoreFile(QString());
    }
    void touch(const QString& name)
    {
        QFile file(dir.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("x");
    }
    /// The grants as stored, read back independently of the class.
    QVariantMap stored(const QString& key) const
    {
        return QSettings(store, QSettings::IniFormat).value(key).toMap();
    }
};

TEST_F(SandboxFileAccess, TildeExpansionUsesTheRealHome)
{
    const QString home = dir.filePath(QStringLiteral("home"));
    EXPECT_EQ(VASandboxFileAccess::sandboxExpandTildeInPath(QStringLiteral("~")), home);
    EXPECT_EQ(VASandboxFileAccess::sandboxExpandTildeInPath(QStringLiteral("~/docs/a.txt")),
              home + "/docs/a.txt");
    EXPECT_EQ(VASandboxFileAccess::sandboxExpandTildeInPath(QStringLiteral("/abs/~x")),
              QStringLiteral("/abs/~x"));
    EXPECT_EQ(VASandboxFileAccess::sandboxExpandTildeInPath(QStringLiteral("docs")), QStringLiteral("docs"));
    // Another user's home: the system's expansion when it exists, else the joined form.
    EXPECT_EQ(VASandboxFileAccess::sandboxExpandTildeInPath(QStringLiteral("~quillmark-no-such-user/f")),
              home + "/quillmark-no-such-user/f");
    const passwd* root = getpwnam("root");
    if (root && QFileInfo::exists(QString::fromLocal8Bit(root->pw_dir))) {
        EXPECT_EQ(VASandboxFileAccess::sandboxExpandTildeInPath(QStringLiteral("~root")),
                  QString::fromLocal8Bit(root->pw_dir));
    }
}

TEST_F(SandboxFileAccess, AFileHandleIsTheResolvedFileUrl)
{
    const QUrl file = QUrl::fromLocalFile(real + "/real/file.txt");
    EXPECT_EQ(VASandboxFileAccess::sandboxFileHandle(dir.filePath(QStringLiteral("link/file.txt")), false,
                                                     QString()),
              file);
    EXPECT_EQ(VASandboxFileAccess::sandboxFileHandle(dir.filePath(QStringLiteral("link/file.txt")), true,
                                                     QString()),
              file);
    // A path that does not exist yet keeps its missing part; links before it are resolved.
    EXPECT_EQ(
        VASandboxFileAccess::sandboxFileHandle(dir.filePath(QStringLiteral("link/new/x.txt")), false, {}),
        QUrl::fromLocalFile(real + "/real/new/x.txt"));
    ASSERT_TRUE(QFile::link(dir.filePath(QStringLiteral("real")), dir.filePath(QStringLiteral("home/r"))));
    EXPECT_EQ(VASandboxFileAccess::sandboxFileHandle(QStringLiteral("~/r/file.txt"), false, {}), file);

    EXPECT_TRUE(
        VASandboxFileAccess::punchHoleInSandboxForPath(dir.filePath(QStringLiteral("link/file.txt")), {}));
    EXPECT_FALSE(
        VASandboxFileAccess::punchHoleInSandboxForPath(dir.filePath(QStringLiteral("link/none")), {}));
}

TEST_F(SandboxFileAccess, GrantsAreRememberedUnderTheTwoKeysAndPrunedWhenUnreadable)
{
    const QUrl file =
        VASandboxFileAccess::sandboxFileHandle(dir.filePath(QStringLiteral("link/file.txt")), false, {});
    touch(QStringLiteral("real/other.txt"));
    const QUrl other = QUrl::fromLocalFile(real + "/real/other.txt");
    EXPECT_FALSE(VASandboxFileAccess::foundBookmarkForPath(file.toLocalFile()));
    ASSERT_TRUE(VASandboxFileAccess::addRegularBookmark(file));
    ASSERT_TRUE(VASandboxFileAccess::addSecurityBookmark(other));
    EXPECT_FALSE(VASandboxFileAccess::addRegularBookmark(QUrl::fromLocalFile(real + "/real/none.txt")));
    EXPECT_FALSE(VASandboxFileAccess::addSecurityBookmark(QUrl(QStringLiteral("https://example.org/a"))));
    EXPECT_EQ(stored(VASandboxFileAccess::regularBookmarksKey).keys(), QStringList{file.toLocalFile()});
    EXPECT_EQ(stored(VASandboxFileAccess::secureBookmarksKey).keys(), QStringList{other.toLocalFile()});
    EXPECT_EQ(stored(QStringLiteral("sandboxRegularBookmarks")),
              stored(VASandboxFileAccess::regularBookmarksKey));

    // Found through any spelling of the path; the secure grant resolves to its file.
    EXPECT_TRUE(VASandboxFileAccess::foundBookmarkForPath(dir.filePath(QStringLiteral("link/file.txt"))));
    EXPECT_TRUE(VASandboxFileAccess::foundBookmarkForPath(other.toLocalFile()));
    EXPECT_EQ(VASandboxFileAccess::getSecurityBookmark(other), other);
    EXPECT_TRUE(VASandboxFileAccess::getSecurityBookmark(file).isEmpty());
    QVariantMap state;
    VASandboxFileAccess::willEncodeRestorableState(state);
    EXPECT_EQ(state.value(VASandboxFileAccess::regularBookmarksKey).toList(), QVariantList{file});

    // Files that went away: the regular grant is pruned on the next look-up, the secure one when
    // it fails to resolve.
    ASSERT_TRUE(QFile::remove(file.toLocalFile()));
    ASSERT_TRUE(QFile::remove(other.toLocalFile()));
    EXPECT_FALSE(VASandboxFileAccess::foundBookmarkForPath(file.toLocalFile()));
    EXPECT_TRUE(stored(VASandboxFileAccess::regularBookmarksKey).isEmpty());
    EXPECT_TRUE(VASandboxFileAccess::getSecurityBookmark(other).isEmpty());
    EXPECT_TRUE(stored(VASandboxFileAccess::secureBookmarksKey).isEmpty());
    state.clear();
    VASandboxFileAccess::willEncodeRestorableState(state);
    EXPECT_TRUE(state.isEmpty());
}

TEST_F(SandboxFileAccess, AFolderGrantCoversTheFilesInIt)
{
    const QUrl folder = QUrl::fromLocalFile(real + "/real");
    ASSERT_TRUE(VASandboxFileAccess::addSecurityBookmark(folder));
    EXPECT_EQ(VASandboxFileAccess::getSecurityBookmark(QUrl::fromLocalFile(real + "/real/file.txt")), folder);
    EXPECT_EQ(VASandboxFileAccess::getSecurityBookmark(QUrl::fromLocalFile(real + "/real/none.txt")), folder);
}

} // namespace
