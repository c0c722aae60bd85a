#include "maintenance/MaintenanceWatch.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/Platform.h"
#include "maintenance/OrchUpgradeDialog.h"
#include "orch/ErrorCatalogue.h"
#include "orch/OrchIpc.h"
#include "orch/OrchUpgradeReply.h"

#include <QPointer>
#include <QWidget>

namespace {

void query(const OrchReplyFunc& received, const OrchReplyFunc& failed)
{
    ipc::OrchIpc::instance()->queryOrchUpgrade(ConfigUtil::savedText(ConfigUtil::CUSTOMERID),
                                               received, failed);
}

void logQueryFailed(int status)
{
    qDebug("Failed to query ORCH upgrade status");
    if (status == 404)
        qDebug("http code(404). This is an older version of orch that does not support "
               "upgradeNotice, continue the login process");
}

} // namespace

MaintenanceWatch::MaintenanceWatch(QWidget* window)
    : QObject(window), m_window(window), m_lastReqOrchUpgradeTime(platform().now())
{
}

// A login

void MaintenanceWatch::_queryOrchUpgrade(const Attempt& attempt, const std::function<void()>& next)
{
    query(attempt.step([this, next](const OrchReply& reply) { onLoginNotice(reply, next); }),
          attempt.step([this, next](const OrchReply& reply) { onLoginQueryFailed(reply, next); }));
}

// A notice stops a login once; when the user starts it again it has been recorded.
void MaintenanceWatch::onLoginNotice(const OrchReply& reply, const std::function<void()>& next)
{
    const OrchUpgradeReply notice = parseOrchUpgradeReply(reply.json());
    emit noticeTime(notice.noticeTime);
    if (maintenance::stopsLogin(notice, maintenance::isHandled(notice.id))) {
        emit done();
        showOrchUpgradeDialog(m_window, notice, OrchPreparing);
    } else {
        next();
    }
    maintenance::recordNotice(notice.id);
}

// An orchestrator that does not know the query, or does not answer it, never blocks a login.
void MaintenanceWatch::onLoginQueryFailed(const OrchReply& reply, const std::function<void()>& next)
{
    logQueryFailed(reply.status);
    if (reply.status == 404)
        return next();
    if (reply.error == QNetworkReply::OperationCanceledError) {
        qDebug("http code request `upgradeNotice' timeout.");
        emit slow();
        return next();
    }
    emit done();
    emit failed(reply);
}

// A 502

void MaintenanceWatch::_queryOrchUpgradeWhen502(const Attempt& attempt)
{
    query(attempt.step([this](const OrchReply& reply) { onNoticeAfter502(reply); }),
          attempt.step([this](const OrchReply& reply) { onQueryAfter502Failed(reply); }));
}

void MaintenanceWatch::onNoticeAfter502(const OrchReply& reply)
{
    const OrchUpgradeReply notice = parseOrchUpgradeReply(reply.json());
    emit noticeTime(notice.noticeTime);
    emit done();
    if (maintenance::isRunning(notice))
        showOrchUpgradeDialog(m_window, notice, OrchUpgrading);
    else
        emit error(errorText(ErrorText::UnderMaintenance));
    maintenance::recordNotice(notice.id);
}

void MaintenanceWatch::onQueryAfter502Failed(const OrchReply& reply)
{
    logQueryFailed(reply.status);
    if (reply.status == 404)
        emit error(errorText(ErrorText::BadGateway));
    else
        emit failed(reply);
    emit done();
}

// The main window

void MaintenanceWatch::onFocusReturn()
{
    const QDateTime now = platform().now();
    const qint64 elapsed = m_lastReqOrchUpgradeTime.secsTo(now);
    const QString format = QStringLiteral("hh:mm:ss.z");
    logDisplayDebug(QStringLiteral("focus in event triggered, currentTime: ") +
                    now.toString(format) + QStringLiteral(", last request orch time: ") +
                    m_lastReqOrchUpgradeTime.toString(format) + QStringLiteral(", devition: ") +
                    QString::number(elapsed));
    if (m_queryRunning || !maintenance::queryDue(elapsed, m_reqOrchInterval))
        return;
    m_lastReqOrchUpgradeTime = now;
    _queryOrchUpgrade();
}

void MaintenanceWatch::setInterval(qlonglong minutes)
{
    m_reqOrchInterval = minutes;
}

void MaintenanceWatch::_queryOrchUpgrade()
{
    m_queryRunning = true;
    const auto failure = [this](const OrchReply& reply) {
        m_queryRunning = false;
        qDebug("Failed to query ORCH upgrade status");
        if (reply.status != 404)
            emit failed(reply);
    };
    query(m_alive.step([this](const OrchReply& reply) { onNotice(reply); }), m_alive.step(failure));
}

void MaintenanceWatch::onNotice(const OrchReply& reply)
{
    const QPointer<MaintenanceWatch> alive(this);
    const OrchUpgradeReply notice = parseOrchUpgradeReply(reply.json());
    m_reqOrchInterval = notice.noticeTime;
    if (maintenance::announcedOnFocus(notice, maintenance::isHandled(notice.id)))
        showOrchUpgradeDialog(m_window, notice, OrchPreparing);
    maintenance::recordNotice(notice.id);
    if (alive)
        m_queryRunning = false;
}
