#pragma once

#include "sim/Simulator.h"

#include <QtWidgets>

#include <functional>
#include <memory>

/// What a window test stands on: the simulated service in this process, a program folder of its
/// own with the stand-in datapath, empty settings, and the ways out of the program recorded
/// instead of taken. One scene lives at a time, on the GUI thread.
class WindowScene
{
public:
    WindowScene();
    ~WindowScene();

    sim::Simulator service;

    /// The program's folder.
    QString folder() const { return m_folder.path(); }
    QString file(const QString& name) const { return m_folder.filePath(name); }
    QByteArray read(const QString& name) const;

    /// Puts the control script and the datapath's programs into the folder, and in front of the
    /// search path programs that stand in for those a diagnosis asks about the network. Temporary
    /// files go to the folder "tmp" in it.
    void stageDatapath();

    /// Such a program: what the shell is to do.
    void stageTool(const QString& name, const QByteArray& script);

    /// Writes what a completed login leaves behind, with a session token that the service knows.
    void logIn();

    /// The account that logs in, and the password it takes.
    QString customer = QStringLiteral("acme");
    QString username = QStringLiteral("alice@acme.example");
    QString password = QStringLiteral("Wonder-land1");

    /// Programs started in place of this one, as command lines; whether the program was to end.
    QStringList started;
    int quits = 0;

    /// What the log file holds for this scene.
    QString log() const { return QString::fromUtf8(read(QStringLiteral("ui.log"))); }

private:
    // With a name that a shell would act upon.
    QTemporaryDir m_folder{QDir::tempPath() + "/a $(touch x)`b`\"XXXXXX"};
    QtMessageHandler m_previous = nullptr;
    const QByteArray m_path = qgetenv("PATH");
    const QByteArray m_tmp = qgetenv("TMPDIR");
};

/// Waits in the background for a modal dialog of this class and hands it to `act`, once. The test
/// function fails when the guard is destroyed before that.
class ModalGuard : public QObject
{
public:
    explicit ModalGuard(
        const char* className,
        std::function<void(QDialog*)> act = [](QDialog* dialog) { dialog->accept(); });
    ~ModalGuard() override;
    bool seen() const { return m_seen; }

private:
    void look();

    QByteArray m_class;
    std::function<void(QDialog*)> m_act;
    bool m_seen = false;
};
