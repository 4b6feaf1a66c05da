#include "Platform/defaults/UserDefaults.h"

#include <QLoggingCategory>
#include <QSettings>

namespace qm {

Q_LOGGING_CATEGORY(lcDefaults, "quillmark.defaults")

namespace {

std::unique_ptr<UserDefaults>& standardStore()
{
    static std::unique_ptr<UserDefaults> store;
    return store;
}

} // namespace

UserDefaults::UserDefaults() : m_settings(std::make_unique<QSettings>()) {}

UserDefaults::UserDefaults(const QString& iniFile)
    : m_settings(std::make_unique<QSettings>(iniFile, QSettings::IniFormat))
{
}

UserDefaults::~UserDefaults() = default;

UserDefaults& UserDefaults::standardUserDefaults()
{
    std::unique_ptr<UserDefaults>& store = standardStore();
    if (!store)
        store.reset(new UserDefaults());
    return *store;
}

void UserDefaults::setStandardStoreFile(const QString& path)
{
    std::unique_ptr<UserDefaults>& store = standardStore();
    if (path.isEmpty())
        store.reset(new UserDefaults());
    else
        store = std::make_unique<UserDefaults>(path);
}

QVariant UserDefaults::objectForKey(const QString& key) const
{
    return m_settings->value(key);
}

QVariantMap UserDefaults::dictionaryForKey(const QString& key) const
{
    const QVariant value = m_settings->value(key);
    return value.typeId() == QMetaType::QVariantMap ? value.toMap() : QVariantMap();
}

void UserDefaults::setObject(const QVariant& value, const QString& key)
{
    m_settings->setValue(key, value);
    synchronize();
}

void UserDefaults::removeObjectForKey(const QString& key)
{
    m_settings->remove(key);
    synchronize();
}

QString UserDefaults::fileName() const
{
    return m_settings->fileName();
}

void UserDefaults::synchronize()
{
    m_settings->sync();
    if (m_settings->status() != QSettings::NoError)
        qCWarning(lcDefaults).noquote() << "cannot write the user defaults to" << m_settings->fileName();
}

} // namespace qm
