#pragma once

#include <QString>
#include <QUrl>
#include <QVariantMap>

namespace qm {

/// Remembered access to files the user chose, for platforms that confine the program to a
/// sandbox. This platform has none: every readable file can be read, a permission cannot be
/// granted by choosing the file, and a path simply resolves to its file URL. The class still
/// keeps the grants it is given, in the user defaults under "sandboxRegularBookmarks" and
/// "sandboxSecureBookmarks" (dictionaries from an absolute, symlink-resolved path to its
/// bookmark), and forgets those whose files can no longer be read, so that stores written here
/// and on a sandboxed platform mean the same.
///
/// A bookmark here is the UTF-8 bytes of the resolved path; it resolves while a file exists at
/// that path. Only class-level operations; the store is UserDefaults::standardUserDefaults().
class VASandboxFileAccess
{
public:
    VASandboxFileAccess() = delete;

    static inline const QString regularBookmarksKey = QStringLiteral("sandboxRegularBookmarks");
    static inline const QString secureBookmarksKey = QStringLiteral("sandboxSecureBookmarks");

    /// The file URL to use for a path: the tilde-expanded, symlink-resolved path. `forced` and
    /// the deny notice only matter inside a sandbox.
    static QUrl sandboxFileHandle(const QString& path, bool forced, const QString& denyNotice);
    /// Whether the program may read the path. Inside a sandbox the user would be asked to pick
    /// it; here no choice changes the answer, so nobody is asked: true when the resolved path
    /// exists and is readable.
    static bool punchHoleInSandboxForPath(const QString& path, const QString& denyNotice);
    /// Prunes unreadable regular grants, then answers whether either store holds the resolved
    /// path.
    static bool foundBookmarkForPath(const QString& path);
    /// Expands a leading "~". The expansion of "~" alone or "~/..." is the home directory; of
    /// "~name/..." that user's home. The result is compared with the home directory joined with
    /// the path stripped of every "~" (a sandbox's expansion points into its container, and the
    /// joined form is the real home); the joined form wins unless the expansion differs and
    /// exists. Paths without a leading "~" are returned as they are.
    static QString sandboxExpandTildeInPath(const QString& path);
    /// The URL a secure grant of the file's folder, or else of the file itself, resolves to;
    /// empty when there is none. A grant that no longer resolves removes the file's own entry.
    static QUrl getSecurityBookmark(const QUrl& url);
    /// Remembers a grant for an existing local file under its path. False, logged, otherwise.
    static bool addSecurityBookmark(const QUrl& url);
    static bool addRegularBookmark(const QUrl& url);
    /// Only URLs resolved from secure grants (which carry a query) need these; here none do.
    static void startAccessingSecurityScopedResource(const QUrl& url);
    static void stopAccessingSecurityScopedResource(const QUrl& url);
    /// Puts the URLs of the regular grants that still resolve under "sandboxRegularBookmarks"
    /// into a window's saved state, when there is at least one.
    static void willEncodeRestorableState(QVariantMap& state);
    /// Reads nothing back: grants live in the user defaults.
    static void didDecodeRestorableState(const QVariantMap& state);
    /// Removes every regular grant whose path can no longer be read; the store is written only
    /// when something was removed.
    static void pruneUnrestorableBookmarks();

private:
    /// The tilde-expanded path with symbolic links resolved as far as the path exists.
    static QString resolvedPath(const QString& path);
    static bool addBookmark(const QUrl& url, const QString& key, const char* failureMessage);
};

} // namespace qm
