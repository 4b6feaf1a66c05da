#include "Platform/defaults/UserDefaults.h"

#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace qm;

TEST(UserDefaults, ChangesAreWrittenAtOnce)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("defaults.ini"));
    UserDefaults defaults(file);
    const QVariantMap grants{{QStringLiteral("/a/b c"), QByteArray("\x01\x02")}, {QStringLiteral("/d"), 3}};
    defaults.setObject(grants, QStringLiteral("grants"));
    defaults.setObject(QStringLiteral("text"), QStringLiteral("plain"));

    // Another reader of the same file, while the store is still open.
    QSettings reader(file, QSettings::IniFormat);
    EXPECT_EQ(reader.value(QStringLiteral("grants")).toMap(), grants);
    EXPECT_EQ(defaults.dictionaryForKey(QStringLiteral("grants")), grants);
    EXPECT_TRUE(defaults.dictionaryForKey(QStringLiteral("plain")).isEmpty());
    EXPECT_FALSE(defaults.objectForKey(QStringLiteral("missing")).isValid());

    defaults.removeObjectForKey(QStringLiteral("grants"));
    reader.sync();
    EXPECT_FALSE(reader.contains(QStringLiteral("grants")));
}

TEST(UserDefaults, TheApplicationStoreCanBeMovedToAFileAndBack)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("app.ini"));
    const QString usual = UserDefaults::standardUserDefaults().fileName();
    UserDefaults::setStandardStoreFile(file);
    EXPECT_EQ(UserDefaults::standardUserDefaults().fileName(), file);
    UserDefaults::standardUserDefaults().setObject(7, QStringLiteral("seven"));
    EXPECT_EQ(QSettings(file, QSettings::IniFormat).value(QStringLiteral("seven")).toInt(), 7);
    UserDefaults::setStandardStoreFile(QString());
    EXPECT_EQ(UserDefaults::standardUserDefaults().fileName(), usual);
    EXPECT_NE(usual, file);
}
