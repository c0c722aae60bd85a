#include "app/ConfigUtil.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStandardPaths>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

/// The settings file: place, permissions, what survives a damaged file.
class SettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = QStandardPaths::writableLocation(QStandardPaths::ConfigLocation) +
                   QStringLiteral("/Veltaro");
        QDir(m_folder).removeRecursively();
    }

    void folderAndFileBelongToTheOwnerAlone_data()
    {
        QTest::addColumn<bool>("existsWide");
        QTest::newRow("new") << false;
        QTest::newRow("left wide open by somebody") << true;
    }

    void folderAndFileBelongToTheOwnerAlone()
    {
        QFETCH(bool, existsWide);
        const mode_t mask = ::umask(0); // the most generous surroundings
        if (existsWide)
            QVERIFY(QDir().mkpath(m_folder));
        ConfigUtil::createConfigPath();
        QCOMPARE(ConfigUtil::getConfigPath(), m_folder + QLatin1Char('/'));
        QCOMPARE(mode(m_folder), mode_t(0700));
        QCOMPARE(mode(file()), mode_t(0600));
        ConfigUtil::writeValue(ConfigUtil::TOKEN, QStringLiteral("secret"));
        QCOMPARE(mode(file()), mode_t(0600));
        ::umask(mask);
    }

    void valuesKeepTheirTypes()
    {
        ConfigUtil::createConfigPath();
        const QStringList codes{QStringLiteral("a,b"), QString(), QStringLiteral("中文")};
        ConfigUtil::writeValue(ConfigUtil::OTP_RECOVER_CODE, codes);
        ConfigUtil::writeValue(ConfigUtil::AUTO_LOGIN, 2);
        ConfigUtil::writeValue(ConfigUtil::OTPLOGIN, true);
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::OTP_RECOVER_CODE, {}).toStringList(), codes);
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::AUTO_LOGIN, -1).toInt(), 2);
        QVERIFY(content().contains("OTP_LOGIN=true"));
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::USERNAME, QStringLiteral("none")).toString(),
                 QStringLiteral("none"));
    }

    void aDamagedFileKeepsWhatIsReadable()
    {
        ConfigUtil::createConfigPath();
        QFile damaged(file());
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write("[General]\nUSERNAME=alice\n\xff\xfe garbage without sign\nAUTO_LOGIN=many\n"
                      "OTP_LOGIN=maybe\nOLD_USERNAME=Doe, John\n"
                      "FUTURE_KEY=kept\nAUTHURL=https://o.example/api/mobile/v2/auth\n");
        damaged.close();
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::USERNAME, {}).toString(),
                 QStringLiteral("alice"));
        // Of a wrong type: as if it were not there.
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::AUTO_LOGIN, -1).toInt(), -1);
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::OTPLOGIN, false).toBool(), false);
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::OLD_USERNAME, {}).toString(),
                 QStringLiteral("Doe, John"));
        ConfigUtil::writeValue(ConfigUtil::SERIAL, QStringLiteral("s"));
        QVERIFY(content().contains("FUTURE_KEY=kept"));
        QVERIFY(content().contains("USERNAME=alice"));
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::AUTHURL, {}).toString(),
                 QStringLiteral("https://o.example/api/mobile/v2/auth"));
    }

    void aFolderThatCannotBeUsedGivesDefaults()
    {
        // A file in the folder's place: nothing below it can be made or read.
        QFile obstacle(m_folder);
        QVERIFY(obstacle.open(QIODevice::WriteOnly));
        ConfigUtil::createConfigPath();
        ConfigUtil::writeValue(ConfigUtil::USERNAME, QStringLiteral("alice"));
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::AUTO_LOGIN, -1).toInt(), -1);
        QVERIFY(QFileInfo(m_folder).isFile());
        QVERIFY(obstacle.remove());
    }

    void theTableNamesEachKeyOnce()
    {
        QSet<QByteArray> stored;
        for (const SettingKey& key : ConfigUtil::keys()) {
            QVERIFY2(!stored.contains(key.stored), key.stored);
            stored.insert(key.stored);
        }
        QVERIFY(stored.contains(ConfigUtil::OTPLOGIN.toLatin1()));
    }

private:
    QString file() const { return m_folder + QStringLiteral("/setting.conf"); }

    static mode_t mode(const QString& path)
    {
        struct stat facts = {};
        return ::stat(QFile::encodeName(path).constData(), &facts) == 0 ? facts.st_mode & 07777 : 0;
    }

    QByteArray content() const
    {
        QFile settings(file());
        return settings.open(QIODevice::ReadOnly) ? settings.readAll() : QByteArray();
    }

    QString m_folder;
};

QTEST_GUILESS_MAIN(SettingsTest)
#include "SettingsTest.moc"
