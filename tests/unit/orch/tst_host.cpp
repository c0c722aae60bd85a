#include "SettingsHome.h"

#include "app/Platform.h"
#include "orch/HostIdentity.h"
#include "orch/Util.h"

#include <QFile>
#include <QtTest>

using Names = QMap<int, QString>;

class HostTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { platform().fileRoot.clear(); }
    void deviceId_data()
    {
        QTest::addColumn<QString>("id");
        QTest::newRow("ubuntu") << QStringLiteral("3F1C9D1A-5B1E-4A7E-9C0D-7E2A8F6B4C21");
        QTest::newRow("uos") << QStringLiteral("9E0C7D54-2A61-4F0B-8B1C-D3C1F2A4E5B6");
        QTest::newRow("kylin") << QStringLiteral("5C1E2D3F-02");
        QTest::newRow("debian") << QString();
        QTest::newRow("no such system") << QString();
    }

    void deviceId()
    {
        platform().fileRoot = root(QString::fromLatin1(QTest::currentDataTag()));
        QTEST(Util::getDeviceId(), "id");
    }

    void distribution_data()
    {
        QTest::addColumn<QString>("id");
        QTest::newRow("ubuntu") << QStringLiteral("ubuntu");
        QTest::newRow("uos") << QStringLiteral("uosLinux");
        QTest::newRow("kylin") << QStringLiteral("kylinLinux");
    }

    void distribution()
    {
        const QString file =
            root(QString::fromLatin1(QTest::currentDataTag())) + QStringLiteral("/etc/lsb-release");
        QTEST(hostidentity::distributionId(Util::readFileContent(file)), "id");

        // The first answer stays: without the file "unknown", later with it too.
        platform().fileRoot = root(QStringLiteral("debian"));
        QCOMPARE(Util::getDistributionId(), QStringLiteral("unknown"));
        platform().fileRoot = root(QStringLiteral("uos"));
        QCOMPARE(Util::getDistributionId(), QStringLiteral("unknown"));
    }

    void architecture()
    {
        QCOMPARE(hostidentity::cpuArchitecture("x86_64\n"), QStringLiteral("X86"));
        QCOMPARE(hostidentity::cpuArchitecture("aarch64\n"), QStringLiteral("ARM"));
        QCOMPARE(hostidentity::cpuArchitecture("mips64\n"), QStringLiteral("unknown"));
        QCOMPARE(Util::getCpuArchitecture(),
                 hostidentity::cpuArchitecture(
                     QSysInfo::currentCpuArchitecture() == QLatin1String("arm64")
                         ? QByteArray("aarch64")
                         : QSysInfo::currentCpuArchitecture().toLatin1()));
    }

    void processes_data()
    {
        QTest::addColumn<Names>("names");
        QTest::newRow("ubuntu") << Names{{1, QStringLiteral("/sbin/init")},
                                         {2, QStringLiteral("kthreadd")},
                                         {814, QStringLiteral("/opt/client/tarvelin_datapath")},
                                         {902, QStringLiteral("(sd-pam")},
                                         {1500, QString()}};
        // 77 has no command line that could be opened.
        QTest::newRow("uos") << Names{{1, QStringLiteral("/usr/lib/systemd/systemd")},
                                      {78, QString()}};
        QTest::newRow("no such system") << Names();
    }

    void processes()
    {
        platform().fileRoot = root(QString::fromLatin1(QTest::currentDataTag()));
        Names names;
        const auto listed = Util::getProcessInfo();
        for (const Util::ProcessInfo& process : listed)
            names.insert(process.pid, process.name);
        QTEST(names, "names");
        QCOMPARE(listed.size(), names.size());
    }

    void serial_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("kept");
        QTest::newRow("none") << QString() << false;
        QTest::newRow("too short") << QString(31, QLatin1Char('A')) << false;
        QTest::newRow("too long") << QString(33, QLatin1Char('A')) << false;
        QTest::newRow("good") << QString(32, QLatin1Char('A')) << true;
    }

    void serial()
    {
        QFETCH(QString, stored);
        QFETCH(bool, kept);
        ConfigUtil::writeValue(ConfigUtil::SERIAL, stored);
        const QString serial = Util::getSerial();
        QCOMPARE(serial == stored, kept);
        QVERIFY(QRegularExpression(QStringLiteral("\\A[0-9A-E]{32}\\z")).match(serial).hasMatch());
        QCOMPARE(Util::getSerial(), serial);
        QCOMPARE(ConfigUtil::getvalue(ConfigUtil::SERIAL, QString()).toString(), serial);
    }

private:
    static QString root(const QString& system)
    {
        return QFINDTESTDATA("data") + QLatin1Char('/') + system;
    }

    SettingsHome m_home;
};

QTEST_GUILESS_MAIN(HostTest)
#include "tst_host.moc"
