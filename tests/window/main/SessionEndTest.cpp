#include "window/main/SessionScene.h"

#include <QAction>

/// The ways in which a session ends for good: each leads to one restart of the program, with the
/// right arguments, or to its end.
class SessionEndTest : public SessionScene
{
    Q_OBJECT

private slots:
    void anInvalidSession_data()
    {
        const auto row = columns<QString, int, QByteArray, QString>("place", "code", "box", "text");
        const char forced[] = "alice@acme.example logged into your device has been forcibly logged";
        const char account[] = "extension property of your account";
        const char password[] = "Password has been changed";
        row("filter: forced", "filter", 3, "CommonTipsDialog", forced);
        row("filter: account changed", "filter", 5, "CommonTipsDialog", account);
        row("filter: password changed", "filter", 1, "DlgChangePassPrompt", password);
        row("filter: another reason", "filter", 2, "", "");
        row("filter: no reason", "filter", -1, "", "");
        row("connect: forced", "connect", 3, "CommonTipsDialog", forced);
        row("connect: no reason", "connect", -1, "", "");
        row("heartbeat: account changed", "heartbeat", 5, "CommonTipsDialog", account);
        row("heartbeat: password changed", "heartbeat", 1, "DlgChangePassPrompt", password);
        row("heartbeat: another reason", "heartbeat", 2, "", "");
        row("disconnect: password changed", "disconnect", 1, "DlgChangePassPrompt", password);
        row("disconnect: no reason", "disconnect", -1, "", "");
    }

    void anInvalidSession()
    {
        const auto [place, code, box, text] =
            fetched<QString, int, QByteArray, QString>("place", "code", "box", "text");
        const bool connected = place == "heartbeat" || place == "disconnect";
        if (connected)
            openConnected();
        QString shown;
        std::unique_ptr<ModalGuard> explanation;
        if (!box.isEmpty())
            explanation = std::make_unique<ModalGuard>(box, [&shown](QDialog* dialog) {
                for (const QLabel* label : dialog->findChildren<QLabel*>())
                    shown += label->text().remove(QChar(0x200b));
                dialog->accept();
            });
        const QString reason = R"(,"parameters":{"invalidReasonCode":%1})";
        const QString body = R"({"code":401,"blackIpSet":["1.1.1.1"])";
        if (place == "filter")
            answer(kFilter, (body + (code < 0 ? "" : reason.arg(code)) + "}").toUtf8());
        else
            service().revokeSessions(code);
        if (!connected)
            open();
        else if (place == "heartbeat")
            poll();
        else
            stop();

        QTRY_COMPARE(scene().quits, 1);
        QVERIFY2(shown.contains(text), qPrintable(shown));
        settle(); // a second restart would come by now
        QCOMPARE(scene().started, QStringList(box.isEmpty() ? "-logout -invalidToken" : "-logout"));
        QCOMPARE(saved(ConfigUtil::TOKEN).isEmpty(), code != 1);
        QCOMPARE(saved(ConfigUtil::PASSWORD), "");
        QCOMPARE(asked(kDisconnect), place == "disconnect" ? 1 : 0);
        QCOMPARE(scene().quits, 1);
    }

    void nothingStartsBehindTheExplanation()
    {
        openConnected();
        service().revokeSessions(3);
        hold(kDisconnect);
        ModalGuard explanation("CommonTipsDialog", [this](QDialog* dialog) {
            QTRY_COMPARE(asked(kDisconnect), 1);
            release(kDisconnect); // the reconnect waits for the answer
            settle();
            QMetaObject::invokeMethod(main(), "onShowKickedoutDialog");
            main()->logout(true, false, true, true);
            dialog->accept();
        });
        poll();
        emit monitor::MonitorDatapath::instance()->datapathVanished();
        QTRY_COMPARE(scene().quits, 1);
        QCOMPARE(scene().started, QStringList("-logout"));
        QCOMPARE(asked(kConnect), 1);
    }

    void anAgentThatRefusesEndsTheSession()
    {
        behave({{"agent", "disconnect"}});
        open();
        QTRY_COMPARE_WITH_TIMEOUT(scene().quits, 1, 10000);
        QCOMPARE(scene().started, QStringList("-logout -invalidToken"));
    }

    void onlyTheTrayQuitsAndTellsTheService()
    {
        open();
        const std::function<void()> ways[] = {
            [this] { button("btnClose")->click(); },
            [this] { QTest::keyClick(window.get(), Qt::Key_Escape); }, [this] { window->close(); }};
        for (const auto& close : ways) {
            window->showNormal();
            close();
            QVERIFY(window->isVisible() && window->isMinimized());
        }
        awaitConnected();
        child<QAction>("m_ActExit")->trigger();
        child<QAction>("m_ActExit")->trigger(); // twice is once
        QTRY_COMPARE(scene().quits, 1);
        QCOMPARE(asked(kDisconnect), 1);
        QVERIFY(scene().started.isEmpty());
        QVERIFY(!saved(ConfigUtil::TOKEN).isEmpty());
    }

    void switchingTheAccountKeepsTheTokenForTheSignout()
    {
        openConnected();
        child<QAbstractButton>("toolBtnQuit")->click();
        ModalGuard question("DlgSwitchAcc");
        button("btnSwitchAccount")->click();
        QTRY_COMPARE(scene().quits, 1);
        QCOMPARE(scene().started, QStringList("-logout -byuser"));
        QCOMPARE(saved(ConfigUtil::PASSWORD), "");
        QVERIFY(!saved(ConfigUtil::TOKEN).isEmpty());
    }
};

QTEST_MAIN(SessionEndTest)
#include "SessionEndTest.moc"
