#include "app/SingleApp.h"
#include "app/Platform.h"

#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <QTest>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

/// The single-instance guard.
class SingleAppTest : public QObject
{
    Q_OBJECT

private slots:
    void theFirstListensDespiteASocketLeftByACrash()
    {
        QTemporaryDir dir;
        const QString path = dir.path();
        platform().programDir = [path] { return path; };
        const QString name = path + QStringLiteral("/UI_SOCKET");
        leaveDeadSocket(name);
        QVERIFY(QFile::exists(name));

        QVERIFY(!SingleApp::instance()->isAreadyRun());
        QLocalServer* const server = SingleApp::instance()->getLocalServer();
        QVERIFY(server && server->isListening());

        // A second copy finds the first, and its probe reaches the server as a silent connection.
        QLocalSocket second;
        second.connectToServer(name);
        QVERIFY(second.isOpen());
        QTRY_VERIFY(server->hasPendingConnections());
        QVERIFY(SingleApp::instance()->isAreadyRun());
        QCOMPARE(SingleApp::instance()->getLocalServer(), server);

        SingleApp::release();
        QVERIFY(!SingleApp::instance());
        QVERIFY(!QFile::exists(name));
    }

private:
    static void leaveDeadSocket(const QString& name)
    {
        const QByteArray path = QFile::encodeName(name);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
        const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
        QVERIFY(::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0);
        ::close(fd);
    }
};

QTEST_GUILESS_MAIN(SingleAppTest)
#include "SingleAppTest.moc"
