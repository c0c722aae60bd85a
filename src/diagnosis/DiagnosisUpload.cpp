#include "diagnosis/DiagnosisUpload.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/Platform.h"
#include "diagnosis/DiagnosisOutcome.h"
#include "orch/OrchRequests.h"

#include <QEventLoop>
#include <QFile>
#include <QNetworkAccessManager>

namespace {

qint64 seconds()
{
    return platform().now().toSecsSinceEpoch();
}

} // namespace

DiagnosisUpload::DiagnosisUpload(QNetworkAccessManager& manager, DiagnosisArchive archive)
    : m_manager(manager), m_archive(std::move(archive)),
      m_authUrl(ConfigUtil::savedText(ConfigUtil::AUTHURL)), m_identity(storedIdentity())
{
    m_file.name = m_archive.name;
    m_file.cpeId = ConfigUtil::getvalue(ConfigUtil::CPE_ID, 0).toInt();
}

void DiagnosisUpload::applyUploadUrl(bool& passwordChanged)
{
    logDisplayInfo(tr("Get upload URL"));
    const bool done = upload(passwordChanged);
    if (m_stopped)
        return;
    ConfigUtil::writeValue(ConfigUtil::DIAGNOSIS_FAIL, done ? 0 : 1);
    if (!done)
        ConfigUtil::writeValue(ConfigUtil::DIAGNOSIS_TRIGGER_TYPE, int(m_archive.trigger));
}

// False: the run is to be repeated, unless it was stopped.
bool DiagnosisUpload::upload(bool& passwordChanged)
{
    if (m_authUrl.isEmpty() || m_identity.token.isEmpty()) {
        logDisplayCritical(tr("Missing URL or Token"));
        return false;
    }
    if (m_archive.path.isEmpty() || !QFile::exists(m_archive.path)) {
        logDisplayCritical(tr("Not found diagnosis file"));
        return notifyOrchFailed();
    }
    QFile file(m_archive.path);
    m_file.size = file.size();
    if (!file.open(QIODevice::ReadOnly)) {
        logDisplayCritical(tr("Can not open diagnosis file"));
        return notifyOrchFailed();
    }
    DiagnosisFile announced = m_file;
    announced.trigger = m_archive.trigger;
    const Answer answer = exchange(orchrequest::diagnosisAddress(m_authUrl, m_identity, announced));
    if (answer && answer->status == 502)
        return queryOrchUpgrade();
    if (!answer)
        return false;
    m_orchOk = answer->answered();
    if (!*m_orchOk) {
        logDisplayCritical(tr("Failed to get upload URL"));
        logDisplayDebug(QStringLiteral("Failed to get upload URL: ") + answer->logText());
        endSession(*answer, passwordChanged);
        return false;
    }
    m_address = DiagnosisAddress::fromJson(answer->json());
    const Answer sent = sendArchive(file);
    return sent && report(diagnosis::uploadReport(*sent, seconds()), passwordChanged);
}

DiagnosisUpload::Answer DiagnosisUpload::sendArchive(QIODevice& file)
{
    logDisplayInfo(tr("Upload diagnosis result"));
    Answer answer = exchange(orchrequest::diagnosisArchive(m_address.uploadUrl), &file);
    if (answer && !answer->answered()) {
        logDisplayCritical(tr("Failed to upload file"));
        logDisplayDebug(QStringLiteral("Failed to upload file: ") + answer->logText());
    }
    return answer;
}

bool DiagnosisUpload::report(const DiagnosisReport& report, bool& passwordChanged)
{
    logDisplayInfo(tr("Report upload results"));
    const Answer answer =
        exchange(orchrequest::diagnosisReport(m_authUrl, m_identity, m_address, report));
    if (!answer || answer->answered())
        return bool(answer);
    logDisplayCritical(tr("Failed to report upload results"));
    logDisplayDebug(QStringLiteral("Failed to report upload results: ") + answer->logText());
    endSession(*answer, passwordChanged);
    return false;
}

// Whatever comes of it, the run has failed.
bool DiagnosisUpload::notifyOrchFailed()
{
    logDisplayDebug(QStringLiteral("notify Orch diagnosis file has destroyed"));
    m_file.size = 0;
    const Answer answer = exchange(orchrequest::diagnosisAddress(m_authUrl, m_identity, m_file));
    if (answer)
        exchange(orchrequest::diagnosisReport(m_authUrl, m_identity,
                                              DiagnosisAddress::fromJson(answer->json()),
                                              diagnosis::missingReport(seconds())));
    return false;
}

bool DiagnosisUpload::queryOrchUpgrade()
{
    const Answer answer = exchange(orchrequest::maintenanceNotice(m_authUrl, m_identity));
    if (!answer || (answer->status != 200 && answer->error != QNetworkReply::NoError))
        return false;
    const OrchUpgradeReply notice = parseOrchUpgradeReply(answer->json());
    if (maintenance::isRunning(notice))
        emit showOrchUpgradeDialog(notice, OrchUpgrading);
    maintenance::recordNotice(notice.id);
    return false;
}

void DiagnosisUpload::endSession(const OrchReply& refused, bool& passwordChanged)
{
    const diagnosis::SessionFinding finding = diagnosis::sessionFinding(refused);
    passwordChanged = finding.passwordChanged;
    if (finding.kickout == Kickout::ForcedLogout)
        emit showKickedoutDialog();
    else if (finding.kickout == Kickout::AccountChanged)
        emit showLdapChangeDialog();
    else if (finding.kickout == Kickout::PasswordChanged)
        emit showChangePassDialog();
    if (finding.logout)
        emit notifyLogout(true, true, false, finding.showTipInLoginUI);
}

DiagnosisUpload::Answer DiagnosisUpload::exchange(const OrchRequest& request, QIODevice* content)
{
    QNetworkReply* const reply = sendOrchRequest(m_manager, request, content);
    QEventLoop loop;
    connect(&m_manager, &QNetworkAccessManager::finished, &loop, &QEventLoop::quit);
    loop.exec(); // QThread::exit() ends it too
    m_stopped = !reply->isFinished();
    reply->deleteLater();
    if (!m_stopped)
        return OrchReply::read(reply);
    reply->abort();
    return std::nullopt;
}
