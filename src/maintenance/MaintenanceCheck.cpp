#include "maintenance/MaintenanceCheck.h"

#include "app/Guarded.h"
#include "maintenance/OrchUpgradeDialog.h"
#include "orch/ErrorCatalogue.h"
#include "orch/OrchIpc.h"
#include "orch/ReplyFacts.h"

#include <QtDebug>
#include <QWidget>

namespace {

void answered(QWidget* window, const MaintenanceCheck& check, const QByteArray& body)
{
    const OrchUpgradeReply notice = parseOrchUpgradeReply(body);
    if (check.answered)
        check.answered(notice);
    if (check.done)
        check.done();
    if (maintenance::isRunning(notice))
        onShowOrchUpgradeDialog(window, notice, OrchUpgrading);
    else
        check.showError(errorText(ErrorText::UnderMaintenance));
    maintenance::recordNotice(notice.id);
}

void failed(const MaintenanceCheck& check, const QByteArray& body, QNetworkReply* reply)
{
    logMaintenanceQueryFailed(httpStatus(reply));
    if (httpStatus(reply) == 404)
        check.showError(errorText(ErrorText::BadGateway));
    else
        check.reportHttpErr(body, reply);
    if (check.done)
        check.done();
}

} // namespace

void logMaintenanceQueryFailed(int status)
{
    qDebug("Failed to query ORCH upgrade status");
    if (status == 404)
        qDebug("http code(404). This is an older version of orch that does not support "
               "upgradeNotice, continue the login process");
}

void queryOrchUpgradeWhen502(QWidget* window, const MaintenanceCheck& check)
{
    ipc::OrchIpc::instance()->queryOrchUpgrade(
        check.customerId,
        guarded(window, [window, check](const QByteArray& body) { answered(window, check, body); }),
        guarded(window, [check](const QByteArray& body, QNetworkReply* reply) {
            failed(check, body, reply);
        }));
}
