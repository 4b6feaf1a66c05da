#include "Classes/app/VASandboxFileAccess.h"

#include "Platform/defaults/UserDefaults.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>

#include <pwd.h>

namespace qm {

Q_LOGGING_CATEGORY(lcSandbox, "quillmark.sandbox")

namespace {

/// The system's tilde expansion: "~" and "~/..." from the home directory, "~name/..." from the
/// user database; an unknown user leaves the path as it is.
QString expandTilde(const QString& path)
{
    const qsizetype slash = path.indexOf(u'/');
    const QString user = path.mid(1, slash < 0 ? -1 : slash - 1);
    const QString rest = slash < 0 ? QString() : path.mid(slash);
    if (user.isEmpty())
        return QDir::homePath() + rest;
    const passwd* entry = getpwnam(user.toLocal8Bit().constData());
    if (!entry || !entry->pw_dir)
        return path;
    return QString::fromLocal8Bit(entry->pw_dir) + rest;
}

/// `component` appended to `directory` with one slash between them.
QString joinPath(const QString& directory, QString component)
{
    while (component.startsWith(u'/'))
        component.remove(0, 1);
    while (component.endsWith(u'/'))
        component.chop(1);
    if (component.isEmpty())
        return directory;
    return directory.endsWith(u'/') ? directory + component : directory + u'/' + component;
}

/// What a bookmark here resolves to: the path it holds, while a file exists there.
QString resolveBookmark(const QVariant& bookmark)
{
    const QString path = QString::fromUtf8(bookmark.toByteArray());
    return !path.isEmpty() && QFileInfo::exists(path) ? path : QString();
}

} // namespace

QString VASandboxFileAccess::sandboxExpandTildeInPath(const QString& path)
{
    if (!path.startsWith(u'~'))
        return path;
    const QString expanded = expandTilde(path);
    // The user's real home, which on the sandboxed platform was "/Users/" and the login name.
    const QString joined = joinPath(QDir::homePath(), QString(path).remove(u'~'));
    if (expanded == joined)
        return joined;
    if (QFileInfo::exists(expanded))
        return expanded;
    qCInfo(lcSandbox).noquote() << QStringLiteral(
                                       "Notice : expanded %1 to %2 , the stringByExpandingTildeInPath "
                                       "sandbox expansion is to non-existant %3")
                                       .arg(path, joined, expanded);
    return joined;
}

QString VASandboxFileAccess::resolvedPath(const QString& path)
{
    const QString absolute =
        QDir::cleanPath(QDir(QDir::currentPath()).absoluteFilePath(sandboxExpandTildeInPath(path)));
    // Links are resolved in the part of the path that exists; the rest is kept as written.
    QString existing = absolute;
    QString missing;
    while (!QFileInfo::exists(existing)) {
        const qsizetype slash = existing.lastIndexOf(u'/');
        if (slash <= 0)
            return absolute;
        missing = existing.mid(slash) + missing;
        existing.truncate(slash);
    }
    return QFileInfo(existing).canonicalFilePath() + missing;
}

QUrl VASandboxFileAccess::sandboxFileHandle(const QString& path, bool forced, const QString& denyNotice)
{
    (void)forced, (void)denyNotice;
    return QUrl::fromLocalFile(resolvedPath(path));
}

bool VASandboxFileAccess::punchHoleInSandboxForPath(const QString& path, const QString& denyNotice)
{
    (void)denyNotice;
    const QFileInfo info(resolvedPath(path));
    return info.exists() && info.isReadable();
}

bool VASandboxFileAccess::foundBookmarkForPath(const QString& path)
{
    pruneUnrestorableBookmarks();
    const QString resolved = resolvedPath(path);
    const UserDefaults& defaults = UserDefaults::standardUserDefaults();
    return defaults.dictionaryForKey(regularBookmarksKey).contains(resolved) ||
           defaults.dictionaryForKey(secureBookmarksKey).contains(resolved);
}

QUrl VASandboxFileAccess::getSecurityBookmark(const QUrl& url)
{
    UserDefaults& defaults = UserDefaults::standardUserDefaults();
    QVariantMap secure = defaults.dictionaryForKey(secureBookmarksKey);
    const QString path = url.toLocalFile();
    const QString folder = QFileInfo(path).path();
    QVariant bookmark = secure.value(folder);
    if (!bookmark.isValid())
        bookmark = secure.value(path);
    if (!bookmark.isValid())
        return {};
    const QString target = resolveBookmark(bookmark);
    if (!target.isEmpty())
        return QUrl::fromLocalFile(target);
    // The file's own entry goes, even when it was the folder's grant that failed.
    secure.remove(path);
    defaults.setObject(secure, secureBookmarksKey);
    qCWarning(lcSandbox).noquote()
        << QStringLiteral("Secure bookmark was pruned, resolution of %1 failed with error: %2")
               .arg(url.toString(), QStringLiteral("no file at the bookmarked path"));
    return {};
}

bool VASandboxFileAccess::addBookmark(const QUrl& url, const QString& key, const char* failureMessage)
{
    const QString path = url.toLocalFile();
    if (!url.isLocalFile() || !QFileInfo::exists(path)) {
        qCWarning(lcSandbox).noquote()
            << QString::fromLatin1(failureMessage).arg(url.toString(), QStringLiteral("no such local file"));
        return false;
    }
    UserDefaults& defaults = UserDefaults::standardUserDefaults();
    QVariantMap bookmarks = defaults.dictionaryForKey(key);
    bookmarks.insert(path, path.toUtf8());
    defaults.setObject(bookmarks, key);
    return true;
}

bool VASandboxFileAccess::addSecurityBookmark(const QUrl& url)
{
    return addBookmark(url, secureBookmarksKey, "Secure bookmark creation of %1 failed with error: %2");
}

bool VASandboxFileAccess::addRegularBookmark(const QUrl& url)
{
    return addBookmark(url, regularBookmarksKey, "Regular bookmark creation of %1 failed with error: %2");
}

void VASandboxFileAccess::startAccessingSecurityScopedResource(const QUrl& url)
{
    (void)url;
}

void VASandboxFileAccess::stopAccessingSecurityScopedResource(const QUrl& url)
{
    (void)url;
}

void VASandboxFileAccess::willEncodeRestorableState(QVariantMap& state)
{
    QVariantList urls;
    const QVariantMap regular = UserDefaults::standardUserDefaults().dictionaryForKey(regularBookmarksKey);
    for (const QVariant& bookmark : regular) {
        const QString target = resolveBookmark(bookmark);
        if (!target.isEmpty())
            urls.append(QUrl::fromLocalFile(target));
    }
    if (!urls.isEmpty())
        state.insert(regularBookmarksKey, urls);
}

void VASandboxFileAccess::didDecodeRestorableState(const QVariantMap& state)
{
    (void)state;
}

void VASandboxFileAccess::pruneUnrestorableBookmarks()
{
    UserDefaults& defaults = UserDefaults::standardUserDefaults();
    QVariantMap regular = defaults.dictionaryForKey(regularBookmarksKey);
    bool pruned = false;
    for (auto it = regular.begin(); it != regular.end();) {
        if (QFileInfo(it.key()).isReadable()) {
            ++it;
            continue;
        }
        qCInfo(lcSandbox).noquote() << QStringLiteral("Pruned regular bookmark for %1").arg(it.key());
        it = regular.erase(it);
        pruned = true;
    }
    if (pruned)
        defaults.setObject(regular, regularBookmarksKey);
}

} // namespace qm
