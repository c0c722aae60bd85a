#include "orch/HostIdentity.h"
#include "window/login/LoginScene.h"

#include <QClipboard>

namespace {

constexpr char kSend[] = "/api/mobile/v2/verification/send";
constexpr char kStatus[] = "/api/mobile/smsStatus";
constexpr char kBind[] = "/api/mobile/v2/binddevice";

using Rule = sim::Account::DeviceRule;

} // namespace

/// A login that wants the code of an SMS, or this device associated with the account.
class SmsTest : public LoginScene
{
    Q_OBJECT

private slots:
    void aWrongCodeThenTheRightOne()
    {
        logInBySms([this](QDialog* dialog) {
            QCOMPARE(part<QLabel>(dialog, "labelPhoneNum")->text(), "+8613800138000");
            QVERIFY(!part<QPushButton>(dialog, "btnSend")->isEnabled());
            QTRY_COMPARE(prompt(), "SMS sent successfully");
            submit(dialog, "");
            QCOMPARE(prompt(), "Please input verification code");
            submit(dialog, "12");
            QTRY_COMPARE(prompt(), "1003 The verification code is wrong.");
            QTRY_VERIFY(part<QPushButton>(dialog, "btnOk")->isEnabled());
            submit(dialog, service().sentCode(kSara));
        });
        QTRY_VERIFY(accepted());
        QCOMPARE(saved(ConfigUtil::TOKEN), service().sessions().constFirst().token);
        QCOMPARE(saved(ConfigUtil::USERNAME), kSara);
        QCOMPARE(saved(ConfigUtil::PASSWORD), QString(11, '*'));
        QCOMPARE(setting(ConfigUtil::REMEMBER_PASSWORD).toInt(), 0);
        QVERIFY(!logged("Sms-code-44"));
        QVERIFY(!logged(saved(ConfigUtil::TOKEN)));
        QCOMPARE(asked(kSend), 1);
    }

    void aCodeMayBeSentAgainAfterAMinute()
    {
        logInBySms([](QDialog* dialog) {
            auto* send = part<QPushButton>(dialog, "btnSend");
            for (int second = 59; second >= 0; --second) {
                fireTimer(dialog, "m_SendBtnTimer");
                QCOMPARE(send->text(), QString::number(second) + "s");
            }
            QVERIFY(!send->isEnabled());
            fireTimer(dialog, "m_SendBtnTimer");
            QCOMPARE(send->text(), "Send");
            QVERIFY(send->isEnabled());
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        QTRY_VERIFY(canLogIn());
        QCOMPARE(saved(ConfigUtil::TOKEN), "");
    }

    void undelivered_data()
    {
        const auto row = columns<int, int, QString>("code", "queries", "message");
        row("too often", 422, 1, "6023 ");
        row("still under way", 427, 5, "6045 ");
        row("unknown", 499, 1,
            "6026 Failed to send SMS authentication code, please try again.(499).");
    }

    void undelivered()
    {
        const auto [code, queries, message] =
            fetched<int, int, QString>("code", "queries", "message");
        answer(kStatus, QStringLiteral("{\"code\":%1}").arg(code).toUtf8());
        logInBySms([&, this](QDialog* dialog) {
            for (int query = 1; query < queries; ++query) {
                QTRY_VERIFY(part<QTimer>(dialog, "m_queryTimer")->isActive());
                QCOMPARE(asked(kStatus), query);
                QCOMPARE(prompt(), "");
                fireTimer(dialog, "m_queryTimer");
            }
            QTRY_VERIFY(part<QPushButton>(dialog, "btnSend")->isEnabled());
            QVERIFY2(prompt().startsWith(message), qPrintable(prompt()));
            QCOMPARE(asked(kStatus), queries);
            dialog->reject();
        });
    }

    void anApprovalIsPolledForBehindTheCode()
    {
        change([](sim::Account& account) { account.approvalPolls = 2; });
        logInBySms([this](QDialog* dialog) {
            submitSent(dialog);
            QTRY_VERIFY(part<QTimer>(dialog, "m_approvalTimer")->isActive());
            part<QTimer>(dialog, "m_approvalTimer")->start(0);
        });
        QTRY_VERIFY(accepted());
        QCOMPARE(asked(kLogin), 3);
    }

    void aChangeOfThePasswordMayFollow()
    {
        change([](sim::Account& account) {
            account.mustChangePassword = true;
            account.changeReasonEn = "Too old.";
        });
        logInBySms([this](QDialog* dialog) { submitSent(dialog); });
        QTRY_COMPARE(page(), DlgLogin::DLG_FORCERESETPASSWORD_PAGE);
        QCOMPARE(label("m_ContextLabel")->text(), "Too old.");
        QVERIFY(!accepted());
        QCOMPARE(field("password")->text(), "");
    }

    void theDeviceMayHaveToBeAssociated_data()
    {
        const auto row = columns<int, QByteArray, QString>("status", "body", "message");
        row("taken", 0, "", "");
        row("refused", 400, R"({"code":88,"message":"Not you"})", "88 Not you");
        row("502", 502, "", "Error transferring ");
    }

    void theDeviceMayHaveToBeAssociated()
    {
        const auto [status, body, message] =
            fetched<int, QByteArray, QString>("status", "body", "message");
        change([](sim::Account& account) { account.deviceRule = Rule::AskWithToken; });
        if (status != 0)
            answer(kBind, Fault::withStatus(status, body));
        ModalGuard asks("DlgDeviceBind", [](QDialog* dialog) {
            QVERIFY(part<QLabel>(dialog, "labelUser")->text().contains("sara@acme.example"));
            part<QPushButton>(dialog, "btnYes")->click();
        });
        std::unique_ptr<ModalGuard> result;
        if (status == 0)
            result = std::make_unique<ModalGuard>("DlgBindResult");
        logInBySms([this](QDialog* dialog) { submitSent(dialog); });
        QTRY_VERIFY(canLogIn());
        QCOMPARE(prompt().left(message.size()), message);
        QCOMPARE(service().deviceRequests().size(), status == 0 ? 1 : 0);
        QCOMPARE(saved(ConfigUtil::TOKEN), "");
    }

    void withoutAWayToAskTheUserTellsTheAdministrator()
    {
        toLoginPage();
        ModalGuard tells("DlgDeviceBind",
                         [](QDialog* dialog) { QTest::keyClick(dialog, Qt::Key_Return); });
        logInWith("dora@acme.example", "Device-copy-88");
        QTRY_VERIFY(tells.seen());
        QTRY_VERIFY(canLogIn());
        QCOMPARE(QApplication::clipboard()->text(), "dora@acme.example\n" + Util::getDeviceId());
        QCOMPARE(asked(kBind), 0);
        QCOMPARE(prompt(), "");
    }

    void whatComesAfterTheDialogTouchesNothing()
    {
        logInBySms([this](QDialog* dialog) {
            hold(kStatus);
            QTRY_COMPARE(asked(kSend), 1);
            hold(kLogin);
            submitSent(dialog);
            QTRY_COMPARE(asked(kLogin), 2);
            dialog->reject();
        });
        release(kStatus);
        release(kLogin);
        settle();
        QVERIFY(canLogIn());
        QCOMPARE(saved(ConfigUtil::TOKEN), "");
        QCOMPARE(prompt(), "");
    }

private:
    const QString kSara = "sara@acme.example";

    void change(const std::function<void(sim::Account&)>& how) const
    {
        service().edit([&](sim::Scenario& scenario) {
            for (sim::Account& account : scenario.accounts) {
                if (account.username == kSara)
                    how(account);
            }
        });
    }

    void logInBySms(const std::function<void(QDialog*)>& act)
    {
        toLoginPage();
        ModalGuard asks("DlgPhoneAuth", act);
        logInWith(kSara, "Sms-code-44");
        QTRY_VERIFY(asks.seen());
    }

    static void submit(QDialog* dialog, const QString& code)
    {
        auto* field = part<QLineEdit>(dialog, "lineEditCode");
        field->clear();
        QTest::keyClicks(field, code);
        QTest::keyClick(field, Qt::Key_Return);
    }

    void submitSent(QDialog* dialog) const
    {
        QTRY_VERIFY(!service().sentCode(kSara).isEmpty());
        submit(dialog, service().sentCode(kSara));
    }
};

QTEST_MAIN(SmsTest)
#include "SmsTest.moc"
