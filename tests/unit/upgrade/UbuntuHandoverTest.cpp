#include "app/Platform.h"
#include "upgrade/InstallerHandover.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

/// The hand-over where packages are installed from the browser. A test of its own: a process looks
/// its distribution up once.
class UbuntuHandoverTest : public QObject
{
    Q_OBJECT

private slots:
    void theAddressIsOpened_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<bool>("opened");
        QTest::newRow("web page") << "https://files.example/veltaro.deb" << true;
        QTest::newRow("none") << "" << false;
        QTest::newRow("a file") << "file:///bin/sh" << false;
    }

    void theAddressIsOpened()
    {
        QFETCH(QString, url);
        QTemporaryDir root;
        QVERIFY(QDir().mkpath(root.path() + QStringLiteral("/etc")));
        QFile release(root.path() + QStringLiteral("/etc/lsb-release"));
        QVERIFY(release.open(QIODevice::WriteOnly));
        release.write("DISTRIB_ID=Ubuntu\n");
        release.close();
        platform().fileRoot = root.path();
        QStringList opened;
        platform().openUrl = [&](const QUrl& address) {
            opened << address.toString();
            return true;
        };
        handOverToInstaller(url);
        platform() = Platform();
        QTEST(!opened.isEmpty(), "opened");
    }
};

QTEST_GUILESS_MAIN(UbuntuHandoverTest)
#include "UbuntuHandoverTest.moc"
