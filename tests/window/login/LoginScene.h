#pragma once

#include "app/ConfigUtil.h"
#include "app/Platform.h"
#include "login/DlgLogin.h"
#include "support/WindowParts.h"
#include "support/WindowScene.h"

#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTest>
#include <QTimer>

#include <memory>

/// A login window on its scene, and what a user does with it. The functions that wait fail the
/// running test when nothing comes.
class LoginScene : public WindowScene
{
public:
    std::unique_ptr<DlgLogin> window;

    void open()
    {
        window = std::make_unique<DlgLogin>(nullptr);
        window->open();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }

    /// As if the privacy agreement of this version had been accepted before.
    void agreed(const QString& version) const
    {
        ConfigUtil::writeValue(ConfigUtil::AGREE_PRIVACY, 1);
        ConfigUtil::writeValue(ConfigUtil::PRIVACY_VERSION, version);
    }
    void agreed() const { agreed(service.scenario().privacyVersion); }

    void continueWith(const QString& customerId)
    {
        field("customerId")->setText(customerId);
        QTest::keyClick(field("customerId"), Qt::Key_Return);
    }

    void toLoginPage()
    {
        agreed();
        open();
        continueWith(customer);
        QTRY_COMPARE(page(), int(DlgLogin::DLG_LOGIN_PAGE));
    }

    void logInWith(const QString& name, const QString& word)
    {
        field("username")->clear();
        QTest::keyClicks(field("username"), name);
        QTest::keyClicks(field("password"), word);
        button("btnLogin")->click();
    }
    void logInByHand() { logInWith(username, password); }

    QLineEdit* field(const char* name) const { return part<QLineEdit>(window.get(), name); }
    QPushButton* button(const char* name) const { return part<QPushButton>(window.get(), name); }
    QTimer* timer(const char* name) const { return part<QTimer>(window.get(), name); }
    int page() const { return part<QStackedWidget>(window.get(), "stackedWidget")->currentIndex(); }
    QString prompt() const { return promptText(window.get()); }
    bool accepted() const { return window->result() == QDialog::Accepted; }
};
