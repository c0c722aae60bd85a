// The main window's pages and window behaviour.

#include "app/ConfigUtil.h"
#include "app/Log.h"
#include "app/Platform.h"
#include "login/OtpRecoverCodeDlg.h"
#include "logview/LogView.h"
#include "main/DlgMain.h"
#include "main/DlgMainUi.h"
#include "main/HomePage.h"
#include "main/Session.h"
#include "main/TrayIcon.h"
#include "maintenance/MaintenanceWatch.h"
#include "settings/WidgetSetting.h"
#include "upgrade/UpgradeWatch.h"
#include "widgets/DialogFrame.h"
#include "widgets/FramelessDrag.h"
#include "widgets/WidgeAbout.h"
#include "widgets/WidgetTopPrompt.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QToolButton>

QVector<QWidget*> DlgMain::pageWidgets(MENU_ITEM m) const
{
    switch (m) {
    case MENU_HOME:
        return {ui->labelRoute, ui->btnConnect,   ui->labelUpPic,     ui->labelUpSpeed,
                ui->labelUpKps, ui->labelDownPic, ui->labelDownSpeed, ui->labelDownKps};
    case MENU_SETTING:
        return {ui->labelSettingTitle, ui->m_ScrollArea};
    case MENU_LOG:
        return {ui->labelLogTitle, ui->logView, ui->btnViewAll};
    case MENU_ABOUT:
        return {ui->labelAboutTitle, ui->m_AboutWidge};
    case MENU_QUIT:
        return {ui->labelQuitTitle, ui->btnSwitchAccount, ui->btnQuitApp};
    case MENU_INTRANET:
        return {ui->labelRoute, ui->btnConnect, ui->m_mobileDetectLabel};
    case MENU_END:
        break;
    }
    return {};
}

void DlgMain::showMenu(MENU_ITEM m)
{
    if (m == MENU_HOME && m_session->isIntranet())
        m = MENU_INTRANET;
    ui->m_SettingWidge->clearPassword();
    const QVector<QWidget*> shown = pageWidgets(m);
    for (int page = MENU_HOME; page < MENU_END; ++page) {
        for (QWidget* widget : pageWidgets(MENU_ITEM(page)))
            widget->setVisible(shown.contains(widget));
    }
    const QPair<QToolButton*, MENU_ITEM> buttons[] = {{ui->toolBtnHome, MENU_HOME},
                                                      {ui->toolBtnSetting, MENU_SETTING},
                                                      {ui->toolBtnLog, MENU_LOG},
                                                      {ui->toolBtnQuit, MENU_QUIT}};
    for (const auto& [button, page] : buttons) {
        const QSignalBlocker quiet(button);
        button->setChecked(m == page);
    }
    m_home->setPage(m);
    update(); // as a whole: a shadow above it is drawn over the gaps between changed parts, too
}

void DlgMain::on_toolBtnHome_clicked()
{
    showMenu(MENU_HOME);
}

void DlgMain::on_toolBtnSetting_clicked()
{
    showMenu(MENU_SETTING);
}

void DlgMain::on_toolBtnLog_clicked()
{
    Log::getLogContent();
    showMenu(MENU_LOG);
    enableViewAllLogBtn(true);
}

void DlgMain::on_toolBtnQuit_clicked()
{
    showMenu(MENU_QUIT);
}

void DlgMain::on_btnAbout_clicked()
{
    showMenu(MENU_ABOUT);
    ui->m_AboutWidge->startCheck();
    m_upgrade->checkUpgrade(true);
}

void DlgMain::on_btnViewAll_clicked()
{
    enableViewAllLogBtn(false);
    promptWidge->showPrompt(WidgetTopPrompt::SHOW_SUCCESS,
                            tr("Logs Loaded! Scroll down to view logs for last 15 days"), true);
    Log::getHisLog();
}

void DlgMain::enableViewAllLogBtn(bool enable)
{
    ui->btnViewAll->setEnabled(enable);
}

void DlgMain::showHideYellowDot(bool show)
{
    // The sheet replaces the button's own picture, see IconButton.
    ui->btnAbout->setStyleSheet(
        show ? QStringLiteral(
                   "QPushButton#btnAbout{border-image: url(:/Ostrana/res/info_notice.png)};")
             : aboutBtnCSS);
    ui->btnAbout->setFixedSize(show ? QSize(15, 12) : QSize(16, 16));
    ui->btnAbout->move(ui->btnAbout->x(), show ? 18 : 16);
    ui->btnAbout->setAccessibleDescription(show ? tr("A new version is available") : QString());
}

void DlgMain::showError(const QString& text)
{
    promptWidge->showPrompt(WidgetTopPrompt::SHOW_ERROR, text, true);
}

void DlgMain::showWarning(const QString& text)
{
    promptWidge->showPrompt(WidgetTopPrompt::SHOW_WARNING, text, true);
}

// The codes stay in the settings until the user has closed the dialog, and are never shown again.
void DlgMain::showRecoveryCodeDlg()
{
    const QStringList codes = ConfigUtil::getvalue(ConfigUtil::OTP_RECOVER_CODE, {}).toStringList();
    if (codes.isEmpty())
        return;
    auto* dialog = new OtpRecoverCodeDlg(codes, this);
    connect(dialog, &QDialog::finished, dialog,
            [] { ConfigUtil::writeValue(ConfigUtil::OTP_RECOVER_CODE, QStringList()); });
    runAndDelete(dialog);
}

// Window

void DlgMain::on_btnClose_clicked()
{
    reject();
}

// Also for Escape and the window manager's way of closing. Only the tray brings a hidden window
// back.
void DlgMain::reject()
{
    if (TrayIcon::isThere())
        QDialog::reject();
    else
        showMinimized();
}

void DlgMain::on_btnMin_clicked()
{
    showMinimized();
}

void DlgMain::showWindow()
{
    show();
    showNormal();
    raise();
    activateWindow();
}

void DlgMain::mousePressEvent(QMouseEvent* event)
{
    if (!beginDrag(m_DragPos, event, this))
        QDialog::mousePressEvent(event);
}

void DlgMain::mouseMoveEvent(QMouseEvent* event)
{
    continueDrag(m_DragPos, event, this);
}

void DlgMain::focusInEvent(QFocusEvent* event)
{
    m_maintenance->onFocusReturn();
    QDialog::focusInEvent(event);
}

// The focus goes to a widget of the window as a rule, and the window learns of it here.
void DlgMain::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        m_maintenance->onFocusReturn();
    QDialog::changeEvent(event);
}
