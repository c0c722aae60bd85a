#pragma once

class LocalServer;

/// Keeps the program to one copy per installation: the first copy listens on the local socket
/// "UI_SOCKET" in the program's folder, later copies find it and have its window shown. The main
/// window receives the datapath agent's notifications on the same server, whose connections are
/// bounded from the start. One object for the whole process, made when the program is loaded. GUI
/// thread.
class SingleApp
{
public:
    /// The process-wide object; null after release().
    static SingleApp* instance();

    /// Whether another copy already listens, which is then told to show itself. When not, this call
    /// has made the current process the listening one. The caller holds the system semaphore around
    /// it, so that of two copies started together exactly one listens.
    bool isAreadyRun();

    /// Creates the server and listens, open to all local users. A socket file that a crashed copy
    /// left behind is removed first. Failure is not reported: the program runs on, unreachable.
    void startInstance();

    /// The server; null before startInstance().
    LocalServer* getLocalServer() const;

    /// Closes the server and deletes the object, so that a new copy can become the first.
    static void release();

    ~SingleApp();

private:
    SingleApp() = default;

    LocalServer* m_LocalServer = nullptr;
    static SingleApp* m_pInstance;
};
