#include "app/ConfigUtil.h"
#include "app/LocalServer.h"
#include "app/Platform.h"
#include "unit/Files.h"

#include <QLocalSocket>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

/// What the program keeps outside itself: the settings file and the socket that others reach it by.
class SettingsAndSocketTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = QStandardPaths::writableLocation(QStandardPaths::ConfigLocation) + "/Veltaro";
        QDir(m_folder).removeRecursively();
    }

    void folderAndFileBelongToTheOwnerAlone()
    {
        const mode_t mask = ::umask(0); // the most generous surroundings
        for (const bool leftWideOpen : {false, true}) {
            QDir(m_folder).removeRecursively();
            QVERIFY(!leftWideOpen || QDir().mkpath(m_folder));
            ConfigUtil::createConfigPath();
            QCOMPARE(ConfigUtil::getConfigPath(), m_folder + '/');
            QCOMPARE(mode(m_folder), mode_t(0700));
            QCOMPARE(mode(file()), mode_t(0600));
            ConfigUtil::writeValue(ConfigUtil::TOKEN, "secret");
            QCOMPARE(mode(file()), mode_t(0600));
        }
        ::umask(mask);
    }

    void valuesKeepTheirTypes()
    {
        ConfigUtil::createConfigPath();
        const QStringList codes{"a,b", QString(), "中文"};
        ConfigUtil::writeValue(ConfigUtil::OTP_RECOVER_CODE, codes);
        ConfigUtil::writeValue(ConfigUtil::AUTO_LOGIN, 2);
        ConfigUtil::writeValue(ConfigUtil::OTPLOGIN, true);
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::OTP_RECOVER_CODE, {}).toStringList(), codes);
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::AUTO_LOGIN, -1).toInt(), 2);
        QVERIFY(readFile(file()).contains("OTP_LOGIN=true"));
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::USERNAME, "none").toString(), "none");
    }

    void aDamagedFileKeepsWhatIsReadable()
    {
        ConfigUtil::createConfigPath();
        QVERIFY(writeFile(
            file(), "[General]\nUSERNAME=alice\n\xff\xfe garbage without sign\nAUTO_LOGIN=many\n"
                    "OTP_LOGIN=maybe\nOLD_USERNAME=Doe, John\nFUTURE_KEY=kept\n"
                    "AUTHURL=https://o.example/api/mobile/v2/auth\n"));
        QCOMPARE(ConfigUtil::savedText(ConfigUtil::USERNAME), "alice");
        // Of a wrong type: as if it were not there.
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::AUTO_LOGIN, -1).toInt(), -1);
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::OTPLOGIN, false).toBool(), false);
        QCOMPARE(ConfigUtil::savedText(ConfigUtil::OLD_USERNAME), "Doe, John");
        ConfigUtil::writeValue(ConfigUtil::SERIAL, "s");
        QVERIFY(readFile(file()).contains("FUTURE_KEY=kept"));
        QVERIFY(readFile(file()).contains("USERNAME=alice"));
        QCOMPARE(ConfigUtil::savedText(ConfigUtil::AUTHURL),
                 "https://o.example/api/mobile/v2/auth");
    }

    void aFolderThatCannotBeUsedGivesDefaults()
    {
        // A file in the folder's place: nothing below it can be made or read.
        QVERIFY(writeFile(m_folder, ""));
        ConfigUtil::createConfigPath();
        ConfigUtil::writeValue(ConfigUtil::USERNAME, "alice");
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::AUTO_LOGIN, -1).toInt(), -1);
        QVERIFY(QFileInfo(m_folder).isFile());
        QVERIFY(QFile::remove(m_folder));
    }

    void theTableNamesEachKeyOnce()
    {
        QSet<QByteArray> stored;
        for (const SettingKey& key : ConfigUtil::keys()) {
            QVERIFY2(!stored.contains(key.stored), key.stored);
            stored.insert(key.stored);
        }
    }

    void aFloodOfConnectionsIsBoundedBeforeAnybodyReads()
    {
        QVERIFY(isTrustedPeer(1000, 1000) && isTrustedPeer(0, 1000) && !isTrustedPeer(1001, 1000));
        QVERIFY(!isTrustedPeer(std::nullopt, 1000));
        QTemporaryDir dir;
        int accepted = 0;
        platform().peerUser = [&](int) { return uid_t(++accepted == 2 ? 0 : 65534); };
        LocalServer server;
        QVERIFY(server.listen(dir.filePath("S")));
        QTest::ignoreMessage(QtWarningMsg,
                             "Too many connections on the local socket, the oldest are dropped");
        std::array<QLocalSocket, 2 * LocalServer::kMostConnections> peers;
        for (QLocalSocket& peer : peers) {
            const int before = accepted;
            peer.connectToServer(server.fullServerName());
            QTRY_COMPARE(accepted, before + 1);
            peer.write(QByteArray(1 << 20, 'x'));
        }
        QCOMPARE(server.findChildren<QLocalSocket*>().size(), LocalServer::kMostConnections);
        const QLocalSocket* const agent = server.nextPendingConnection();
        QVERIFY(LocalServer::isTrusted(*agent));
        QVERIFY(!LocalServer::isTrusted(*server.nextPendingConnection()));
        QTRY_COMPARE(agent->bytesAvailable(), LocalServer::kReadBuffer);
        QVERIFY(peers[1].bytesToWrite() > 0); // the rest waits with its sender
    }

private:
    QString file() const { return m_folder + "/setting.conf"; }

    static mode_t mode(const QString& path)
    {
        struct stat facts = {};
        return ::stat(QFile::encodeName(path).constData(), &facts) == 0 ? facts.st_mode & 07777 : 0;
    }

    QString m_folder;
};

QTEST_GUILESS_MAIN(SettingsAndSocketTest)
#include "SettingsAndSocketTest.moc"
