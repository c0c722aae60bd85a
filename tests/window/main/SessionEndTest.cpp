#include "window/main/SessionScene.h"

#include <QAction>
#include <QJsonArray>
#include <QJsonDocument>

using sim::Fault;

namespace {

constexpr char kDisconnect[] = "/api/mobile/v2/disconnect";
constexpr char kFilter[] = "/files/ip-filter.json";

struct Place
{
    const char* name;
    bool connected; ///< the session is connected before it becomes invalid
};

const Place kPlaces[] = {{"connect request", false},
                         {"filter document", false},
                         {"heartbeat", true},
                         {"disconnect answer", true}};

struct Reason
{
    const char* name;
    int code; ///< -1 for none
    const char* dialog;
    const char* arguments;
    bool tokenKept;
};

const Reason kReasons[] = {
    {"forced logout", 3, "CommonTipsDialog", "-logout", false},
    {"account changed", 5, "CommonTipsDialog", "-logout", false},
    {"password changed", 1, "DlgChangePassPrompt", "-logout", true},
    {"another reason", 2, "", "-logout -invalidToken", false},
    {"no reason", -1, "", "-logout -invalidToken", false},
};

} // namespace

Q_DECLARE_METATYPE(const Place*)
Q_DECLARE_METATYPE(const Reason*)

/// The ways in which a session ends for good: each leads to one restart of the program, with the
/// right arguments, or to its end.
class SessionEndTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_scene = std::make_unique<SessionScene>(); }

    void cleanup() { QCOMPARE(SessionScene::end(m_scene), QString()); }

    void anInvalidSession_data()
    {
        QTest::addColumn<const Place*>("place");
        QTest::addColumn<const Reason*>("reason");
        for (const Place& place : kPlaces) {
            for (const Reason& reason : kReasons)
                QTest::addRow("%s: %s", place.name, reason.name) << &place << &reason;
        }
    }

    void anInvalidSession()
    {
        QFETCH(const Place*, place);
        QFETCH(const Reason*, reason);
        std::unique_ptr<ModalGuard> explanation;
        if (place->connected)
            m_scene->openConnected();
        if (qstrlen(reason->dialog) > 0) {
            explanation = std::make_unique<ModalGuard>(reason->dialog,
                                                       [](QDialog* dialog) { dialog->accept(); });
        }
        const QByteArray where = place->name;
        if (where == "filter document")
            m_scene->service.setFault(kFilter, Fault::withBody(invalid(reason->code)));
        else
            m_scene->service.revokeSessions(reason->code);
        if (!place->connected)
            m_scene->open();
        else if (where == "heartbeat")
            m_scene->fire("m_StatCountTimer");
        else
            m_scene->stop();

        QTRY_COMPARE(m_scene->quits, 1);
        QVERIFY(!explanation || explanation->seen());
        QTest::qWait(200); // a second restart would come now
        QCOMPARE(m_scene->started, QStringList{QString(reason->arguments)});
        QCOMPARE(!WindowScene::setting(ConfigUtil::TOKEN).toString().isEmpty(), reason->tokenKept);
        QCOMPARE(WindowScene::setting(ConfigUtil::PASSWORD).toString(), QString());
        QCOMPARE(m_scene->service.count(kDisconnect), where == "disconnect answer" ? 1 : 0);
        QCOMPARE(m_scene->quits, 1);
    }

    void nothingStartsBehindTheExplanation()
    {
        m_scene->openConnected();
        m_scene->service.revokeSessions(3);
        m_scene->service.setFault(kDisconnect, Fault::withDelay(200));
        ModalGuard explanation("CommonTipsDialog", [this](QDialog* dialog) {
            QTRY_COMPARE(m_scene->service.count(kDisconnect), 1);
            QTest::qWait(300); // the notice's answer, which the reconnect waits for
            QMetaObject::invokeMethod(m_scene->window.get(), "onShowKickedoutDialog");
            m_scene->window->logout(true, false, true, true);
            dialog->accept();
        });
        m_scene->fire("m_StatCountTimer");
        emit monitor::MonitorDatapath::instance()->datapathVanished();
        QTRY_COMPARE(m_scene->quits, 1);
        QVERIFY(explanation.seen());
        QCOMPARE(m_scene->started, QStringList{QStringLiteral("-logout")});
        QCOMPARE(m_scene->service.count("/api/mobile/v2/connect"), 1);
    }

    void theDiagnosisWorkersSlotsOnlyExplain_data()
    {
        QTest::addColumn<QByteArray>("slot");
        QTest::addColumn<QByteArray>("dialog");
        QTest::newRow("kicked out")
            << QByteArray("onShowKickedoutDialog") << QByteArray("CommonTipsDialog");
        QTest::newRow("account changed")
            << QByteArray("onShowLdapChangeDialog") << QByteArray("CommonTipsDialog");
        QTest::newRow("password changed")
            << QByteArray("onShowChangePassDialog") << QByteArray("DlgChangePassPrompt");
    }

    void theDiagnosisWorkersSlotsOnlyExplain()
    {
        QFETCH(QByteArray, slot);
        QFETCH(QByteArray, dialog);
        m_scene->openConnected();
        ModalGuard explanation(dialog, [](QDialog* open) { open->accept(); });
        QVERIFY(QMetaObject::invokeMethod(m_scene->window.get(), slot));
        QVERIFY(explanation.seen());
        QCOMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QCOMPARE(m_scene->service.count(kDisconnect), 0);
        QCOMPARE(m_scene->quits, 0);
    }

    void anAgentThatRefusesEndsTheSession()
    {
        m_scene->behave({{"agent", "disconnect"}});
        m_scene->open();
        QTRY_COMPARE_WITH_TIMEOUT(m_scene->quits, 1, 10000);
        QCOMPARE(m_scene->started, QStringList{QStringLiteral("-logout -invalidToken")});
    }

    void quittingFromTheTrayTellsTheService()
    {
        m_scene->openConnected();
        m_scene->child<QAction>("m_ActExit")->trigger();
        m_scene->child<QAction>("m_ActExit")->trigger(); // twice is once
        QTRY_COMPARE(m_scene->quits, 1);
        QCOMPARE(m_scene->service.count("/api/mobile/v2/disconnect"), 1);
        QVERIFY(m_scene->started.isEmpty());
        QVERIFY(!WindowScene::setting(ConfigUtil::TOKEN).toString().isEmpty());
    }

    void switchingTheAccountKeepsTheTokenForTheSignout()
    {
        m_scene->openConnected();
        m_scene->child<QAbstractButton>("toolBtnQuit")->click();
        ModalGuard question("DlgSwitchAcc", [](QDialog* dialog) { dialog->accept(); });
        m_scene->button("btnSwitchAccount")->click();
        QTRY_COMPARE(m_scene->quits, 1);
        QCOMPARE(m_scene->started, QStringList{QStringLiteral("-logout -byuser")});
        QCOMPARE(WindowScene::setting(ConfigUtil::PASSWORD).toString(), QString());
        QVERIFY(!WindowScene::setting(ConfigUtil::TOKEN).toString().isEmpty());
    }

private:
    static QByteArray invalid(int reason)
    {
        QJsonObject document{{"code", 401}, {"blackIpSet", QJsonArray{"1.1.1.1"}}};
        if (reason >= 0)
            document.insert("parameters", QJsonObject{{"invalidReasonCode", reason}});
        return QJsonDocument(document).toJson();
    }

    std::unique_ptr<SessionScene> m_scene;
};

QTEST_MAIN(SessionEndTest)
#include "SessionEndTest.moc"
