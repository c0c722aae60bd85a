#pragma once

#include "login/DlgLogin.h"
#include "window/SceneTest.h"

#include <QLineEdit>
#include <QStackedWidget>

constexpr char kPrivacy[] = "/static/version/privacyversion.json";
constexpr char kLookup[] = "/api/mobile/v1/orchinfo";
constexpr char kUpgrade[] = "/s/mobile/v1/upgrade";
constexpr char kNotice[] = "/api/mobile/v2/upgradeNotice";
constexpr char kKey[] = "/s/mobile/pubkey/obtain";
constexpr char kLogin[] = "/api/mobile/v2/auth";

/// A login window on its scene, and what a user does with it.
class LoginScene : public SceneTest
{
protected:
    void open()
    {
        window = std::make_unique<DlgLogin>(nullptr);
        window->open();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }

    /// With what a completed login has left behind, but for one value.
    void openAgain(const QString& key, const QVariant& value)
    {
        scene().logIn();
        save(key, value);
        open();
    }

    /// As if the privacy agreement of this version had been accepted before.
    static void agreed(const QString& version)
    {
        save(ConfigUtil::AGREE_PRIVACY, 1);
        save(ConfigUtil::PRIVACY_VERSION, version);
    }
    void agreed() const { agreed(service().scenario().privacyVersion); }

    void continueWith(const QString& customerId)
    {
        field("customerId")->setText(customerId);
        QTest::keyClick(field("customerId"), Qt::Key_Return);
    }

    /// To what the customer's step ends with.
    void openAndContinue()
    {
        agreed();
        open();
        continueWith(scene().customer);
    }

    void awaitLoginPage() { QTRY_COMPARE(page(), DlgLogin::DLG_LOGIN_PAGE); }
    void toLoginPage()
    {
        openAndContinue();
        awaitLoginPage();
    }

    void logInWith(const QString& name, const QString& word)
    {
        field("username")->clear();
        QTest::keyClicks(field("username"), name);
        QTest::keyClicks(field("password"), word);
        button("btnLogin")->click();
    }
    void logInByHand() { logInWith(scene().username, scene().password); }

    QLineEdit* field(const char* name) const { return child<QLineEdit>(name); }
    int page() const { return child<QStackedWidget>("stackedWidget")->currentIndex(); }
    bool canLogIn() const { return button("btnLogin")->isEnabled(); }
    bool isSlowTimed() const { return timer("m_ConnectSlowWarningTimer")->isActive(); }
    bool accepted() const { return window->result() == QDialog::Accepted; }
};
