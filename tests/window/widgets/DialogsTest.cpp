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

namespace {

constexpr int kOpen = -1; // the dialog is still there

using MakeDialog = std::function<QDialog*(QWidget*)>;

QDialog* reset(QWidget* under)
{
    auto* dialog = new DlgChangePassPrompt(under);
    dialog->setDlgContent(DlgChangePassPrompt::passwordResetByAdminText());
    return dialog;
}

QDialog* tips(QWidget* under)
{
    auto* dialog = new CommonTipsDialog(under);
    dialog->setContentText(QString("A text that is longer than a line. ").repeated(6));
    return dialog;
}

QDialog* maintenance(QWidget* under)
{
    auto* dialog = new OrchUpgradeDialog(OrchUpgrading, under);
    dialog->setTitle("Work on the gateways, " + QString(500, 'w'));
    dialog->setStartEndTime(1772600000000, 1772610000000);
    return dialog;
}

QDialog* forcedUpgrade(QWidget* under)
{
    auto* dialog = new DlgForceUpgrade(static_cast<QDialog*>(under));
    dialog->setNewVersion("6.2.0");
    dialog->setNoteText("Faster.\nSafer.");
    dialog->setLogoutAfterClose(true);
    return dialog;
}

QDialog* upgrade(QWidget* under)
{
    auto* dialog = new DlgUpgrade(under, false);
    dialog->setSettings(QString("A long note. ").repeated(40), "6.2.0", false);
    GreyMaskForUkui::cover(under, dialog);
    return dialog;
}

QDialog* privacy(QWidget* under)
{
    auto* dialog = new DialogPrivacy(under);
    dialog->setPrivacyVersion("20240304");
    return dialog;
}

const QMap<QString, MakeDialog> kDialogs{
    {"quit", [](QWidget* under) { return new DlgQuit(under); }},
    {"stop", [](QWidget* under) { return new dlgStopPrompt("Are you sure to stop ?", under); }},
    {"switch account", [](QWidget* under) { return new DlgSwitchAcc(under); }},
    {"password changed", [](QWidget* under) { return new DlgChangePassPrompt(under); }},
    {"password reset", &reset},
    {"tips", &tips},
    {"maintenance", &maintenance},
    {"forced upgrade", &forcedUpgrade},
    {"upgrade", &upgrade},
    {"device disabled",
     [](QWidget* under) { return new DlgBindResult(under, DlgBindResult::DEVICE_DISABLED); }},
    {"privacy", &privacy}};

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
    void cleanup() { m_window.reset(); }

    void ends()
    {
        // Every button and key with its result: 1 accepted, 0 rejected, -1 still open. No key
        // starts an upgrade by accident.
        const auto check = [this](const QString& name, const QString& ways) {
            for (const QString& way : ways.split(' ')) {
                const QString by = way.section('=', 0, 0);
                const std::unique_ptr<QDialog> dialog(kDialogs[name](m_window.get()));
                QSignalSpy finished(dialog.get(), &QDialog::finished);
                dialog->open();
                QVERIFY(dialog->isModal());
                if (by.startsWith("btn"))
                    QTest::mouseClick(dialog->findChild<QPushButton*>(by), Qt::LeftButton);
                else
                    QTest::keyClick(dialog.get(), by == "Return" ? Qt::Key_Return : Qt::Key_Escape);
                QVERIFY(finished.size() == (dialog->isVisible() ? 0 : 1));
                const int result = finished.isEmpty() ? kOpen : finished.first().first().toInt();
                QCOMPARE(name + ' ' + by + '=' + QString::number(result), name + ' ' + way);
            }
        };
        const QString question = "btnYes=1 btnNo=0 btnClose=0 Return=1 Escape=0";
        check("quit", question);
        check("stop", question);
        check("switch account", question);
        check("password changed", "btnOk=1 Return=1 Escape=-1");
        check("tips", "btnConfirm=1 btnClose=0 Return=1");
        check("maintenance", "btnConfirm=1 btnClose=0");
        check("forced upgrade", "btnUpgrade=-1 btnClose=1");
        const QString upgrade = "Escape=-1 Return=0 btnLater=0 btnClose=0 btnUpgrade=1 btnSkip=";
        check("upgrade", upgrade + QString::number(DlgUpgrade::kSkipped));
        check("device disabled", "btnConfirm=1");
        check("privacy", "btnAgree=1 btnRefuse=0 btnclose=0 Return=1 Escape=0");
    }

    void looksFinishedOverItsGreyedWindow()
    {
        const auto row = checked([this](const QString& name, bool chinese) {
            const looks::Language language(chinese);
            const std::unique_ptr<QDialog> dialog(kDialogs[name](m_window.get()));
            QVERIFY(mask() && !mask()->isVisible());
            dialog->open();
            QCOMPARE(looks::clipped(dialog.get()), QStringList());
            QCOMPARE(looks::unnamed(dialog.get()), QStringList());
            const QPoint off = dialog->geometry().center() - m_window->geometry().center();
            QVERIFY2(qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1, "not in the middle of its window");
            QVERIFY(m_window->geometry().contains(dialog->geometry()));

            QVERIFY(mask()->isVisible());
            QCOMPARE(mask()->geometry(), m_window->rect());
            const QPointer<QWidget> gone(mask());
            dialog->accept();
            QVERIFY(!gone || !gone->isVisible());
            QTRY_VERIFY(!gone);
        });
        for (const QString& name : kDialogs.keys()) {
            row(qPrintable(name), name, false);
            row(qPrintable(name + ", Chinese"), name, true);
        }
    }

    void accountDialogsLookFinished()
    {
        const auto row = checked([this](const QString& username) {
            for (const bool chinese : {false, true}) {
                const looks::Language language(chinese);
                QStringList clipped;
                QString text;
                QTimer::singleShot(0, this, [&] {
                    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
                    clipped = looks::clipped(dialog);
                    text = dialog->accessibleName();
                    dialog->accept();
                });
                username.isEmpty() ? Util::showLdapChange(m_window.get())
                                   : Util::showOrchKickOff(m_window.get(), username);
                QCOMPARE(clipped, QStringList());
                QVERIFY(!text.isEmpty() && text.remove(QChar(0x200b)).contains(username));
            }
        });
        row("account change", "");
        row("kick-out", "alice@acme.example");
        row("kick-out, long name", QString("averylongname.").repeated(4) + "@acme.example");
    }

    void desktopWithShadowsNeedsNoMask()
    {
        qApp->setProperty("DeepinShadowEnabled", true);
        DlgQuit dialog(m_window.get());
        dialog.open();
        qApp->setProperty("DeepinShadowEnabled", QVariant());
        QVERIFY(mask() && !mask()->isVisible());
    }

    void passwordNoticeHasNoOtherWayOut()
    {
        DlgChangePassPrompt dialog(m_window.get());
        dialog.open();
        for (QPushButton* button : dialog.findChildren<QPushButton*>())
            QCOMPARE(button->isVisible(), button->objectName() == "btnOk");
        // What the window manager sends when the user closes the window by its means.
        dialog.windowHandle()->close();
        QVERIFY(dialog.isVisible());
    }

    void movesByDragging()
    {
        const QPoint step(30, -12);
        QCOMPARE(dragged(DlgQuit(m_window.get()), Qt::LeftButton, step), step);
        QCOMPARE(dragged(DlgQuit(m_window.get()), Qt::RightButton, step), QPoint());
    }

    void privacyLinksOpenOutside()
    {
        for (const bool chinese : {false, true}) {
            const looks::Language language(chinese);
            const std::unique_ptr<QDialog> dialog(privacy(m_window.get()));
            QVERIFY(dialog->windowFlags() & Qt::WindowStaysOnTopHint);
            QCOMPARE(dialog->findChild<QLabel*>("updateLabel")->text(),
                     chinese ? "更新与2024年03月04日" : "Updated on March 04, 2024");
            dialog->open();
            auto* body = dialog->findChild<QTextBrowser*>("labelText");
            const QString before = body->toPlainText();
            QCOMPARE(looks::opened(body), QStringList({deployment::userAgreementUrl(chinese),
                                                       deployment::privacyPolicyUrl(chinese)}));
            QCOMPARE(body->toPlainText(), before);
            QVERIFY(dialog->isVisible());
        }
    }

private:
    // How far the dialog is after its own dragging.
    static QPoint dragged(OtpBaseDlg&& dialog, Qt::MouseButton held, QPoint step)
    {
        dialog.open();
        const QPoint start = dialog.pos();
        const QPoint hold(20, 20);
        const QPoint there = dialog.mapToGlobal(hold + step);
        QTest::mousePress(&dialog, held, {}, hold);
        QMouseEvent move(QEvent::MouseMove, hold + step, there, Qt::NoButton, held, {});
        QApplication::sendEvent(&dialog, &move);
        QTest::mouseRelease(&dialog, held, {}, hold);
        return dialog.pos() - start;
    }

    QWidget* mask() const { return m_window->findChild<QWidget*>("greyMask"); }

    std::unique_ptr<QDialog> m_window;
};

QTEST_MAIN(DialogsTest)
#include "DialogsTest.moc"
