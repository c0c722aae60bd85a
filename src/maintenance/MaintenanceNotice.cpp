#include "maintenance/MaintenanceNotice.h"

#include "app/ConfigUtil.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>
#include <QStringList>

#include <mutex>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(OrchUpgradeDialog)
};

bool concernsClient(const OrchUpgradeReply& notice)
{
    return notice.type == QLatin1String("upgrade");
}

bool inProgress(const OrchUpgradeReply& notice)
{
    return notice.state == QLatin1String("run");
}

QStringList handledNotices()
{
    return ConfigUtil::getvalue(ConfigUtil::ORCH_UPGRADE_TASK_ID, QStringList()).toStringList();
}

} // namespace

namespace maintenance {

bool stopsLogin(const OrchUpgradeReply& notice, bool handled)
{
    return concernsClient(notice) && !handled && notice.currentTime < notice.endTime &&
           !inProgress(notice);
}

bool announcedOnFocus(const OrchUpgradeReply& notice, bool handled)
{
    return concernsClient(notice) && !handled && notice.currentTime <= notice.endTime &&
           !inProgress(notice);
}

bool queryDue(long long elapsed, long long interval)
{
    return elapsed / 60.0 > double(interval); // the interval is the service's word: no overflow
}

bool isRunning(const OrchUpgradeReply& notice)
{
    return concernsClient(notice) && notice.startTime < notice.currentTime &&
           notice.currentTime < notice.endTime && inProgress(notice);
}

bool chineseTimes(const QString& lcTime, bool chineseSystem)
{
    return lcTime.isEmpty() ? chineseSystem : lcTime.contains(QLatin1String("zh_CN"));
}

QString noticeTime(qlonglong moment, bool chinese)
{
    const QString format =
        chinese ? QStringLiteral("yyyy年M月d日，hh:mm") : QStringLiteral("MMM d, yyyy hh:mm");
    return QLocale::c().toString(QDateTime::fromMSecsSinceEpoch(moment), format);
}

QString noticeBody(NoticeType type, const QString& start, const QString& end)
{
    const QString text =
        type == OrchPreparing
            ? Texts::tr(
                  "Dear customer, we will be performing a scheduled maintenance and upgrade for "
                  "improved performance on our platform. During this time, your application may "
                  "have seen a brief drop in connectivity for a while.<br><br><b>Maintenance "
                  "Time</b><br><font color=\"%1\">Start time: %2<br>End time: "
                  "%3</font><br><br>We apologize for the inconvenience, and if possible request "
                  "that you refrain from using our application to avoid any disruption caused. "
                  "And we sincerely appreciate your understanding and cooperation. If you have "
                  "any questions or need assistance during the time, please do not hesitate to "
                  "contact our technical support team.")
            : Texts::tr(
                  "Dear customer, we are currently performing a scheduled maintenance and upgrade "
                  "for improved performance on our platform. During this time, your application "
                  "may have seen a brief drop in connectivity for a while.<br><br><b>Maintenance "
                  "Time</b><br><font color=\"%1\">Start time: %2<br>End time: "
                  "%3</font><br><br>We apologize for the inconvenience, and if possible request "
                  "that you refrain from using our application to avoid any disruption caused. "
                  "And we sincerely appreciate your understanding and cooperation. If you have "
                  "any questions or need assistance during the time, please do not hesitate to "
                  "contact our technical support team.");
    return text.arg(QStringLiteral("#0290ff"), start, end);
}

QString noticeTitle(NoticeType type)
{
    return type == OrchPreparing
               ? Texts::tr("Maintenance Notifications for App Service")
               : Texts::tr("Maintenance and Upgrade Notifications for the App System");
}

bool isHandled(const QString& id)
{
    return handledNotices().contains(id);
}

void recordNotice(const QString& id)
{
    static std::mutex mutex; // two threads that both read before either writes would lose an entry
    const std::lock_guard lock(mutex);
    QStringList handled = handledNotices();
    if (!handled.contains(id))
        handled.append(id);
    ConfigUtil::writeValue(ConfigUtil::ORCH_UPGRADE_TASK_ID, handled);
}

} // namespace maintenance
