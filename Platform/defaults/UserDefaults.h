#pragma once

#include <QString>
#include <QVariant>
#include <QVariantMap>

#include <memory>

class QSettings;

namespace qm {

/// The user defaults: named values kept between runs of the program, over QSettings. Every
/// change is written back at once, so another process (or a later run) sees it.
///
/// The application-wide store lives where QSettings keeps the application's settings (the
/// organisation and application names of QCoreApplication); tests and tools move it to a file
/// of their own with setStandardStoreFile().
class UserDefaults
{
public:
    /// The application-wide store.
    static UserDefaults& standardUserDefaults();
    /// Moves the application-wide store to an INI file (created when first written); an empty
    /// path moves it back to the application's usual place.
    static void setStandardStoreFile(const QString& path);

    /// A store in an INI file of its own.
    explicit UserDefaults(const QString& iniFile);
    ~UserDefaults();
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;

    /// The value under a key; invalid when there is none.
    QVariant objectForKey(const QString& key) const;
    /// The dictionary under a key; empty when there is none or the value is no dictionary.
    QVariantMap dictionaryForKey(const QString& key) const;
    /// Stores a value and writes the store back.
    void setObject(const QVariant& value, const QString& key);
    void removeObjectForKey(const QString& key);
    /// Where the store is kept.
    QString fileName() const;

private:
    /// The application's usual store.
    UserDefaults();
    void synchronize();

    std::unique_ptr<QSettings> m_settings;
};

} // namespace qm
