#include "maintenance/MaintenanceNotice.h"

#include <QDateTime>
#include <QTest>

/// When a maintenance notice is shown, and how its times are written.
class MaintenanceNoticeTest : public QObject
{
    Q_OBJECT

private slots:
    void rules_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<bool>("handled");
        QTest::addColumn<QString>("shown"); // l stops the login, f on focus, r is running
        const auto notice = [](qlonglong now, const char* state) {
            return QByteArray("{'type':'upgrade','id':'n','startTime':1000,'endTime':2000,"
                              "'currentTime':NOW,'state':'STATE'}")
                .replace("NOW", QByteArray::number(now))
                .replace("STATE", state)
                .replace('\'', '"');
        };
        QTest::newRow("ahead") << notice(500, "wait") << false << "lf";
        QTest::newRow("ahead, handled") << notice(500, "wait") << true << "";
        QTest::newRow("inside, not begun") << notice(1500, "wait") << false << "lf";
        QTest::newRow("at its end") << notice(2000, "wait") << false << "f";
        QTest::newRow("over") << notice(2001, "wait") << false << "";
        QTest::newRow("running") << notice(1500, "run") << false << "r";
        QTest::newRow("running, handled") << notice(1500, "run") << true << "r";
        QTest::newRow("running at its first moment") << notice(1000, "run") << false << "";
        QTest::newRow("running at its last moment") << notice(2000, "run") << false << "";
        QTest::newRow("of another type")
            << QByteArray(R"({"type":"news","endTime":9e12})") << false << "";
        QTest::newRow("no JSON") << QByteArray("<html>") << false << "";
        QTest::newRow("times as text")
            << QByteArray(R"({"type":"upgrade","endTime":"2000"})") << false << "f";
    }

    void rules()
    {
        QFETCH(QByteArray, body);
        QFETCH(bool, handled);
        const OrchUpgradeReply notice = parseOrchUpgradeReply(body);
        QTEST(QString(maintenance::stopsLogin(notice, handled) ? "l" : "") +
                  (maintenance::announcedOnFocus(notice, handled) ? "f" : "") +
                  (maintenance::isRunning(notice) ? "r" : ""),
              "shown");
    }

    void times_data()
    {
        QTest::addColumn<QString>("lcTime");
        QTest::addColumn<bool>("chineseSystem");
        QTest::addColumn<QString>("time");
        const QString english = QStringLiteral("Mar 5, 2026 07:08");
        const QString chinese = QStringLiteral("2026年3月5日，07:08");
        QTest::newRow("English system") << "" << false << english;
        QTest::newRow("Chinese system") << "" << true << chinese;
        QTest::newRow("Chinese times on an English system") << "zh_CN.UTF-8" << false << chinese;
        QTest::newRow("English times on a Chinese system") << "en_US.UTF-8" << true << english;
    }

    void times()
    {
        QFETCH(QString, lcTime);
        QFETCH(bool, chineseSystem);
        const qlonglong moment = QDateTime(QDate(2026, 3, 5), QTime(7, 8)).toMSecsSinceEpoch();
        QTEST(maintenance::noticeTime(moment, maintenance::chineseTimes(lcTime, chineseSystem)),
              "time");
    }
};

QTEST_GUILESS_MAIN(MaintenanceNoticeTest)
#include "MaintenanceNoticeTest.moc"
