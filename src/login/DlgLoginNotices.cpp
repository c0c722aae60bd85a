// What can hold up a login: a newer client, an outdated one, a maintenance of the orchestrator.

#include "app/ConfigUtil.h"
#include "app/GreyMaskForUkui.h"
#include "app/LogMarker.h"
#include "app/Platform.h"
#include "app/Product.h"
#include "login/DlgLogin.h"
#include "login/DlgLoginUi.h"
#include "maintenance/MaintenanceCheck.h"
#include "maintenance/OrchUpgradeDialog.h"
#include "orch/JsonUtil.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchIpc.h"
#include "orch/ReplyFacts.h"
#include "upgrade/DlgForceUpgrade.h"
#include "upgrade/DlgUpgrade.h"
#include "upgrade/UpgradePolicy.h"
#include "widgets/CommonTipsDialog.h"
#include "widgets/DialogFrame.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

namespace {

constexpr int kLongestTip = 400; // keeps the dialog within the screen

ipc::OrchIpc* orch()
{
    return ipc::OrchIpc::instance();
}

} // namespace

void DlgLogin::checkUpgrade()
{
    const auto failed = [this](const QByteArray& body, QNetworkReply* reply) {
        const QJsonObject info = JsonUtil::getObject(body, QStringLiteral("errorInfo"));
        reportHttpErr(info.isEmpty() ? QByteArray() : QJsonDocument(info).toJson(), reply);
        restoreContinue();
    };
    orch()->upgradeCheck(
        m_CustomerID, step([this](const QByteArray& body) { _handleUpgrade(body); }), step(failed));
}

void DlgLogin::_handleUpgrade(const QByteArray& body)
{
    logDisplayDebug(QStringLiteral("orch return:") + maskSecrets(body));
    logDisplayDebug(QStringLiteral("current version: ") + QLatin1String(product::kVersion));
    const QPointer<DlgLogin> alive(this);
    if (!offerUpgrade(UpgradeReply::fromJson(body, platform().isChinese())) || !alive)
        return;
    _queryOrchUpgrade([this] {
        changeCurPage(DLG_LOGIN_PAGE);
        if (!m_loginBreak)
            authUser();
    });
}

// Shows the dialog when the answer calls for one. False: the login goes no further by itself.
bool DlgLogin::offerUpgrade(const UpgradeReply& reply)
{
    m_releaseNote = reply.note;
    m_newVersion = reply.version;
    m_upgradeUrl = reply.url;
    const UpgradeDecision decision =
        decideUpgrade(reply, UpgradeChoices::load(), upgradeToday(), m_lastCheckVersion.isEmpty());
    for (const QString& line : decision.displayLog)
        logDisplayDebug(line);
    if (!decision.log.isEmpty())
        qDebug().noquote() << decision.log;
    if (decision.counts && m_lastCheckVersion.isEmpty())
        m_lastCheckVersion = reply.version;
    m_showUpgradeDialog = decision.pop;
    if (!decision.pop)
        return true;

    restoreContinue();
    m_ConnectSlowWarningTimer->stop();
    const QPointer<DlgLogin> alive(this);
    if (reply.isForced()) {
        forceUpgrade();
        if (alive) {
            m_showUpgradeDialog = false;
            restoreLoginPage();
        }
        return false;
    }
    m_DlgUpgrade->setSettings(m_releaseNote, m_newVersion, false);
    m_DlgUpgrade->setUrl(reply.url);
    GreyMaskForUkui::cover(this, m_DlgUpgrade);
    m_DlgUpgrade->exec();
    return alive && isVisible(); // the window can be closed under the offer
}

void DlgLogin::forceUpgrade()
{
    auto* dialog = new DlgForceUpgrade(this);
    dialog->setNoteText(m_releaseNote);
    dialog->setNewVersion(m_newVersion);
    dialog->setLogoutAfterClose(false);
    dialog->setUrl(m_upgradeUrl);
    runAndDelete(dialog);
}

// The orchestrator has refused this client as too old.
void DlgLogin::_showUpgradeDialog(const QString& text)
{
    const QPointer<DlgLogin> alive(this);
    auto* tip = new CommonTipsDialog(this);
    tip->setContentText(text.left(kLongestTip));
    runAndDelete(tip);
    if (!alive)
        return;
    if (m_showUpgradeDialog)
        forceUpgrade();
    else
        showError(tr("Your client is outdated, please update it to the latest version."));
}

// Maintenance

void DlgLogin::_queryOrchUpgrade(const std::function<void()>& next)
{
    const auto received = [this, next](const QByteArray& body) { onMaintenanceNotice(body, next); };
    const auto failed = [this, next](const QByteArray& body, QNetworkReply* reply) {
        onMaintenanceQueryFailed(body, reply, next);
    };
    orch()->queryOrchUpgrade(m_CustomerID, step(received), step(failed));
}

// A notice stops a login once; when the user starts it again it has been recorded.
void DlgLogin::onMaintenanceNotice(const QByteArray& body, const std::function<void()>& next)
{
    const OrchUpgradeReply notice = parseOrchUpgradeReply(body);
    qApp->setProperty(appproperty::kOrchUpgradeNoticeTime, notice.noticeTime);
    if (maintenance::stopsLogin(notice, maintenance::isHandled(notice.id))) {
        m_ConnectSlowWarningTimer->stop();
        _resetAllBtnStyle();
        onShowOrchUpgradeDialog(this, notice, OrchPreparing);
    } else {
        next();
    }
    maintenance::recordNotice(notice.id);
}

// An orchestrator that does not know the query, or does not answer it, never blocks a login.
void DlgLogin::onMaintenanceQueryFailed(const QByteArray& body, QNetworkReply* reply,
                                        const std::function<void()>& next)
{
    logMaintenanceQueryFailed(httpStatus(reply));
    if (httpStatus(reply) == 404)
        return next();
    if (reply->error() == QNetworkReply::OperationCanceledError) {
        qDebug("http code request `upgradeNotice' timeout.");
        showConnectionSlowWarning();
        return next();
    }
    m_ConnectSlowWarningTimer->stop();
    _resetAllBtnStyle();
    reportHttpErr(body, reply);
}

void DlgLogin::_queryOrchUpgradeWhen502()
{
    MaintenanceCheck check;
    check.customerId = m_CustomerID;
    check.reportHttpErr = [this](const QByteArray& body, QNetworkReply* reply) {
        reportHttpErr(body, reply);
    };
    check.showError = [this](const QString& text) { showError(text); };
    check.answered = [](const OrchUpgradeReply& notice) {
        qApp->setProperty(appproperty::kOrchUpgradeNoticeTime, notice.noticeTime);
    };
    check.done = [this] {
        m_ConnectSlowWarningTimer->stop();
        _resetAllBtnStyle();
    };
    queryOrchUpgradeWhen502(this, check);
}
