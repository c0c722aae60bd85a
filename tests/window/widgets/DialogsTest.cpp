#include "app/Deployment.h"
#include "app/GreyMaskForUkui.h"
#include "login/DialogPrivacy.h"
#include "login/DlgBindResult.h"
#include "maintenance/OrchUpgradeDialog.h"
#include "upgrade/DlgForceUpgrade.h"
#include "upgrade/DlgUpgrade.h"
#include "widgets/AccountDialogs.h"
#include "widgets/CommonTipsDialog.h"
#include "widgets/DlgChangePassPrompt.h"
#include "widgets/DlgQuit.h"
#include "widgets/dlgStopPrompt.h"
#include "widgets/DlgSwitchAcc.h"
#include "window/widgets/Looks.h"

#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <QWindow>

#include <functional>
#include <memory>

using MakeDialog = std::function<QDialog*(QWidget*)>;
Q_DECLARE_METATYPE(MakeDialog)

namespace {

constexpr int kOpen = -1; // the dialog is still there

class FixedDialog : public OtpBaseDlg
{
public:
    explicit FixedDialog(QWidget* parent) : OtpBaseDlg(parent)
    {
        m_isMoveable = false;
        resize(200, 100);
    }
};

const QVector<QPair<const char*, MakeDialog>>& allDialogs()
{
    static const QVector<QPair<const char*, MakeDialog>> dialogs{
        {"quit", [](QWidget* under) { return new DlgQuit(under); }},
        {"stop",
         [](QWidget* under) {
             return new dlgStopPrompt(QStringLiteral("Are you sure to stop Veltaro ?"), under);
         }},
        {"switch account", [](QWidget* under) { return new DlgSwitchAcc(under); }},
        {"password changed", [](QWidget* under) { return new DlgChangePassPrompt(under); }},
        {"password reset",
         [](QWidget* under) {
             auto* dialog = new DlgChangePassPrompt(under);
             dialog->setDlgContent(DlgChangePassPrompt::passwordResetByAdminText());
             return dialog;
         }},
        {"tips",
         [](QWidget* under) {
             auto* dialog = new CommonTipsDialog(under);
             dialog->setContentText(
                 QStringLiteral("A text that is longer than a line. ").repeated(6));
             return dialog;
         }},
        {"maintenance",
         [](QWidget* under) {
             auto* dialog = new OrchUpgradeDialog(OrchUpgrading, under);
             dialog->setStartEndTime(1772600000000, 1772610000000);
             return dialog;
         }},
        {"forced upgrade",
         [](QWidget* under) {
             auto* dialog = new DlgForceUpgrade(static_cast<QDialog*>(under));
             dialog->setNewVersion(QStringLiteral("6.2.0"));
             dialog->setNoteText(QStringLiteral("Faster.\nSafer."));
             dialog->setLogoutAfterClose(true);
             return dialog;
         }},
        {"upgrade",
         [](QWidget* under) {
             auto* dialog = new DlgUpgrade(under, false);
             dialog->setSettings(QStringLiteral("A long note. ").repeated(40),
                                 QStringLiteral("6.2.0"), false);
             GreyMaskForUkui::cover(under, dialog);
             return dialog;
         }},
        {"device disabled",
         [](QWidget* under) { return new DlgBindResult(under, DlgBindResult::DEVICE_DISABLED); }},
        {"privacy",
         [](QWidget* under) {
             auto* dialog = new DialogPrivacy(under);
             dialog->setPrivacyVersion(QStringLiteral("20240304"));
             return dialog;
         }},
    };
    return dialogs;
}

MakeDialog dialogCalled(const char* name)
{
    for (const auto& dialog : allDialogs()) {
        if (qstrcmp(dialog.first, name) == 0)
            return dialog.second;
    }
    return {};
}

} // namespace

class DialogsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { looks::prepare(); }
    void init()
    {
        m_window = std::make_unique<QDialog>();
        m_window->setGeometry(40, 30, 600, 400);
        m_window->show();
    }

    void cleanup()
    {
        qApp->setProperty("DeepinShadowEnabled", QVariant());
        m_window.reset();
    }

    void ends_data()
    {
        QTest::addColumn<MakeDialog>("make");
        QTest::addColumn<QString>("button"); // pressed, or none
        QTest::addColumn<int>("key");        // typed otherwise
        QTest::addColumn<int>("result");
        const auto click = [](const char* dialog, const char* button, int result) {
            QTest::addRow("%s: %s", dialog, button)
                << dialogCalled(dialog) << QString::fromLatin1(button) << 0 << result;
        };
        const auto type = [](const char* dialog, Qt::Key key, int result) {
            QTest::addRow("%s: %s", dialog, key == Qt::Key_Return ? "Return" : "Escape")
                << dialogCalled(dialog) << QString() << int(key) << result;
        };
        for (const char* dialog : {"quit", "stop", "switch account"}) {
            click(dialog, "btnYes", QDialog::Accepted);
            click(dialog, "btnNo", QDialog::Rejected);
            click(dialog, "btnClose", QDialog::Rejected);
            type(dialog, Qt::Key_Return, QDialog::Accepted);
            type(dialog, Qt::Key_Escape, QDialog::Rejected);
        }
        click("password changed", "btnOk", QDialog::Accepted);
        type("password changed", Qt::Key_Return, QDialog::Accepted);
        type("password changed", Qt::Key_Escape, kOpen);
        click("tips", "btnConfirm", QDialog::Accepted);
        click("tips", "btnClose", QDialog::Rejected);
        type("tips", Qt::Key_Return, QDialog::Accepted);
        click("maintenance", "btnConfirm", QDialog::Accepted);
        click("maintenance", "btnClose", QDialog::Rejected);
        click("forced upgrade", "btnUpgrade", kOpen);
        click("forced upgrade", "btnClose", QDialog::Accepted);
        type("upgrade", Qt::Key_Escape, kOpen);
        type("upgrade", Qt::Key_Return, QDialog::Accepted);
        click("upgrade", "btnLater", QDialog::Rejected);
        click("upgrade", "btnClose", QDialog::Rejected);
        click("upgrade", "btnSkip", DlgUpgrade::kSkipped);
        click("upgrade", "btnUpgrade", QDialog::Accepted);
        click("device disabled", "btnConfirm", QDialog::Accepted);
        click("privacy", "btnAgree", QDialog::Accepted);
        click("privacy", "btnRefuse", QDialog::Rejected);
        click("privacy", "btnclose", QDialog::Rejected);
        type("privacy", Qt::Key_Return, QDialog::Accepted);
        type("privacy", Qt::Key_Escape, QDialog::Rejected);
    }

    void ends()
    {
        QFETCH(MakeDialog, make);
        QFETCH(QString, button);
        QFETCH(int, key);
        QFETCH(int, result);
        const std::unique_ptr<QDialog> dialog(make(m_window.get()));
        QSignalSpy finished(dialog.get(), &QDialog::finished);
        dialog->open();
        QVERIFY(dialog->isModal());
        if (key != 0) {
            QTest::keyClick(dialog.get(), Qt::Key(key));
        } else {
            auto* pressed = dialog->findChild<QPushButton*>(button);
            QVERIFY(pressed);
            QTest::mouseClick(pressed, Qt::LeftButton);
        }
        QCOMPARE(dialog->isVisible(), result == kOpen);
        QCOMPARE(finished.size(), result == kOpen ? 0 : 1);
        if (result != kOpen)
            QCOMPARE(finished.first().first().toInt(), result);
    }

    void everyDialogLooksFinished_data()
    {
        QTest::addColumn<MakeDialog>("make");
        QTest::addColumn<bool>("chinese");
        for (const auto& dialog : allDialogs()) {
            QTest::addRow("%s", dialog.first) << dialog.second << false;
            QTest::addRow("%s, Chinese", dialog.first) << dialog.second << true;
        }
    }

    void everyDialogLooksFinished()
    {
        QFETCH(MakeDialog, make);
        QFETCH(bool, chinese);
        const looks::Language language(chinese);
        const std::unique_ptr<QDialog> dialog(make(m_window.get()));
        dialog->open();
        QCOMPARE(looks::clipped(dialog.get()), QStringList());
        QCOMPARE(looks::unnamed(dialog.get()), QStringList());
        const QPoint off = dialog->geometry().center() - m_window->geometry().center();
        QVERIFY2(qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1, "not in the middle of its window");
        QVERIFY(m_window->geometry().contains(dialog->geometry()));
    }

    void accountDialogsLookFinished_data()
    {
        QTest::addColumn<QString>("username");
        QTest::addColumn<bool>("chinese");
        for (bool chinese : {false, true}) {
            QTest::addRow("account change, Chinese %d", chinese) << QString() << chinese;
            QTest::addRow("kick-out, Chinese %d", chinese)
                << QStringLiteral("alice@acme.example") << chinese;
            QTest::addRow("kick-out, long name, Chinese %d", chinese)
                << QStringLiteral("averylongname.").repeated(4) + QStringLiteral("@acme.example")
                << chinese;
        }
    }

    void accountDialogsLookFinished()
    {
        QFETCH(QString, username);
        QFETCH(bool, chinese);
        const looks::Language language(chinese);
        QStringList clipped;
        QSize size;
        QString text;
        QTimer::singleShot(0, this, [&] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            clipped = looks::clipped(dialog);
            size = dialog->size();
            text = dialog->accessibleName();
            dialog->accept();
        });
        username.isEmpty() ? showLdapChange(m_window.get())
                           : showOrchKickOff(m_window.get(), username);
        QCOMPARE(clipped, QStringList());
        QCOMPARE(size.width(), 248);
        QVERIFY(text.remove(QChar(0x200b)).contains(username));
    }

    void greysItsWindow_data() { everyDialogLooksFinished_data(); }
    void greysItsWindow()
    {
        QFETCH(MakeDialog, make);
        const std::unique_ptr<QDialog> dialog(make(m_window.get()));
        QVERIFY(mask() && !mask()->isVisible());
        dialog->open();
        QVERIFY(mask()->isVisible());
        QCOMPARE(mask()->geometry(), m_window->rect());
        const QPointer<QWidget> gone(mask());
        dialog->accept();
        QVERIFY(!gone || !gone->isVisible());
        QTRY_VERIFY(!gone);
    }

    void desktopWithShadowsNeedsNoMask()
    {
        qApp->setProperty("DeepinShadowEnabled", true);
        DlgQuit dialog(m_window.get());
        dialog.open();
        QVERIFY(mask() && !mask()->isVisible());
    }

    void passwordNoticeHasNoOtherWayOut()
    {
        DlgChangePassPrompt dialog(m_window.get());
        dialog.open();
        for (QPushButton* button : dialog.findChildren<QPushButton*>())
            QCOMPARE(button->isVisible(), button->objectName() == QLatin1String("btnOk"));
        // What the window manager sends when the user closes the window by its means.
        dialog.windowHandle()->close();
        QVERIFY(dialog.isVisible());
    }

    void movesByDragging_data()
    {
        QTest::addColumn<bool>("moveable");
        QTest::addColumn<int>("button");
        QTest::addColumn<QPoint>("moved");
        QTest::newRow("left button") << true << int(Qt::LeftButton) << QPoint(30, -12);
        QTest::newRow("right button") << true << int(Qt::RightButton) << QPoint();
        QTest::newRow("fixed") << false << int(Qt::LeftButton) << QPoint();
    }

    void movesByDragging()
    {
        QFETCH(bool, moveable);
        QFETCH(int, button);
        const std::unique_ptr<OtpBaseDlg> dialog(
            moveable ? static_cast<OtpBaseDlg*>(new DlgQuit(m_window.get()))
                     : new FixedDialog(m_window.get()));
        dialog->open();
        const auto held = Qt::MouseButton(button);
        const QPoint start = dialog->pos();
        const QPoint hold(20, 20);
        const QPoint step(30, -12);
        QTest::mousePress(dialog.get(), held, {}, hold);
        QMouseEvent move(QEvent::MouseMove, hold + step, dialog->mapToGlobal(hold + step),
                         Qt::NoButton, held, {});
        QApplication::sendEvent(dialog.get(), &move);
        QTest::mouseRelease(dialog.get(), held, {}, hold);
        QTEST(dialog->pos() - start, "moved");
    }

    void privacyLinksOpenOutside_data()
    {
        QTest::addColumn<bool>("chinese");
        QTest::addColumn<QString>("date");
        QTest::newRow("English") << false << QStringLiteral("Updated on March 04, 2024");
        QTest::newRow("Chinese") << true << QStringLiteral("更新与2024年03月04日");
    }

    void privacyLinksOpenOutside()
    {
        QFETCH(bool, chinese);
        const looks::Language language(chinese);
        QStringList opened;
        platform().openUrl = [&opened](const QUrl& url) {
            opened.append(url.toString());
            return true;
        };
        DialogPrivacy dialog(m_window.get());
        dialog.setPrivacyVersion(QStringLiteral("20240304"));
        QTEST(dialog.findChild<QLabel*>(QStringLiteral("updateLabel"))->text(), "date");
        dialog.open();
        QApplication::setActiveWindow(&dialog);
        auto* body = dialog.findChild<QTextBrowser*>(QStringLiteral("labelText"));
        body->setFocus();
        const QString before = body->toPlainText();
        for (int i = 0; i < 2; ++i) { // the links follow each other in the tab order
            QTest::keyClick(body, Qt::Key_Tab);
            QTest::keyClick(body, Qt::Key_Return);
        }
        platform().openUrl = [](const QUrl&) { return false; };
        QCOMPARE(opened, QStringList({deployment::userAgreementUrl(chinese),
                                      deployment::privacyPolicyUrl(chinese)}));
        QCOMPARE(body->toPlainText(), before);
        QVERIFY(dialog.isVisible());
    }

    void privacyStaysOnTop()
    {
        DialogPrivacy dialog(m_window.get());
        QVERIFY(dialog.windowFlags() & Qt::WindowStaysOnTopHint);
        QVERIFY(dialog.windowFlags() & Qt::FramelessWindowHint);
    }

private:
    QWidget* mask() const { return m_window->findChild<QWidget*>(QStringLiteral("greyMask")); }

    std::unique_ptr<QDialog> m_window;
};

QTEST_MAIN(DialogsTest)
#include "DialogsTest.moc"
