#include "app/SingleApp.h"

#include "app/LocalServer.h"
#include "app/OtherUser.h"
#include "app/Platform.h"

#include <QDebug>
#include <QLocalSocket>

#include <unistd.h>

SingleApp* SingleApp::m_pInstance = new SingleApp;

constexpr int kTellMs = 500; // a copy that does not read is not waited for

static QString socketName()
{
    return platform().programFile(QStringLiteral("UI_SOCKET"));
}

// Nobody sees a copy that ends because another user's runs.
static void warnOfOtherUsersCopy(int descriptor)
{
    const auto user = platform().peerUser(descriptor);
    if (user && *user != ::getuid())
        qWarning().noquote() << "The client is running for the user" << userName(*user)
                             << "already; a machine has one connection";
}

SingleApp* SingleApp::instance()
{
    return m_pInstance;
}

SingleApp::~SingleApp()
{
    delete m_LocalServer;
}

bool SingleApp::isAreadyRun()
{
    QLocalSocket probe;
    probe.connectToServer(socketName(), QIODevice::ReadWrite);
    // A listener whose queue is full leaves the probe connecting: someone is there all the same.
    const bool running = probe.isOpen() || probe.state() == QLocalSocket::ConnectingState;
    if (!running) {
        startInstance();
    } else if (probe.state() == QLocalSocket::ConnectedState) {
        warnOfOtherUsersCopy(int(probe.socketDescriptor()));
        probe.write(LocalServer::kShow);
        probe.waitForBytesWritten(kTellMs);
    }
    probe.abort();
    return running;
}

void SingleApp::startInstance()
{
    LocalServer::removeServer(socketName());
    delete m_LocalServer;
    m_LocalServer = new LocalServer;
    m_LocalServer->setSocketOptions(LocalServer::WorldAccessOption);
    if (m_LocalServer->listen(socketName()))
        return;
    qWarning().noquote() << "The local socket can not be made, the datapath's agent will not reach"
                         << "this copy:" << m_LocalServer->errorString();
    warnOfOtherOwner(socketName());
}

LocalServer* SingleApp::getLocalServer() const
{
    return m_LocalServer;
}

void SingleApp::release()
{
    delete m_pInstance;
    m_pInstance = nullptr;
}
