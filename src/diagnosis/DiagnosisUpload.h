#pragma once

#include "maintenance/MaintenanceNotice.h"
#include "orch/DiagnosisRequests.h"
#include "orch/OrchReply.h"
#include "orch/OrchTypes.h"

#include <QObject>

#include <optional>

class QIODevice;
class QNetworkAccessManager;

/// What a run hands to its upload.
struct DiagnosisArchive
{
    QString name;
    QString path; ///< empty: there is none
    DiagnoseTriggerType trigger = TriggerByClient;
};

/// Brings an archive to the orchestrator: asks where it is to go, sends it there, and reports. A
/// run whose upload or report fails is remembered in the settings, for the next connect or stop to
/// run it again.
///
///     no address, no token ------------------> failed
///     no archive ----> notifyOrchFailed() ---> failed
///     address --502--> queryOrchUpgrade() ---> failed
///        |  \--refused--> session check -----> failed
///     archive (sent or not)
///        |
///     report --refused--> session check -----> failed
///        |
///     done
///
/// Lives on the thread of the run. When that thread is told to stop, the step under way is broken
/// off and nothing more is sent, shown or remembered.
class DiagnosisUpload : public QObject
{
    Q_OBJECT

public:
    DiagnosisUpload(QNetworkAccessManager& manager, DiagnosisArchive archive);

    /// Blocks, each request in an event loop of its own, as long as the requests take.
    /// `passwordChanged` tells whether a refusal spoke of the password.
    void applyUploadUrl(bool& passwordChanged);

    /// Whether the orchestrator answered; nothing when this upload did not find out.
    std::optional<bool> orchOk() const { return m_orchOk; }

signals:
    // To be shown on the GUI thread while this one waits
    void showKickedoutDialog();
    void showChangePassDialog();
    void showLdapChangeDialog();
    void showOrchUpgradeDialog(const OrchUpgradeReply& notice, NoticeType type);
    /// For DlgMain::logout().
    void notifyLogout(bool notifyOrch, bool invalidToken, bool isByUser, bool showTipInLoginUI);

private:
    using Answer = std::optional<OrchReply>; ///< nothing: the thread is to stop

    bool upload(bool& passwordChanged);
    Answer sendArchive(QIODevice& file);
    bool report(const DiagnosisReport& report, bool& passwordChanged);
    bool notifyOrchFailed();
    bool queryOrchUpgrade();
    void endSession(const OrchReply& refused, bool& passwordChanged);
    Answer exchange(const OrchRequest& request, QIODevice* content = nullptr);

    QNetworkAccessManager& m_manager;
    DiagnosisArchive m_archive;
    QString m_authUrl;
    OrchIdentity m_identity;
    DiagnosisFile m_file;
    DiagnosisAddress m_address;
    std::optional<bool> m_orchOk;
    bool m_stopped = false;
};
