// The main window's pages, tray icon and window behaviour.

#include "app/Log.h"
#include "app/LogMarker.h"
#include "app/Platform.h"
#include "main/DlgMain.h"
#include "main/DlgMainUi.h"
#include "main/widgeChronometer.h"
#include "upgrade/DlgUpgrade.h"
#include "widgets/WidgeAbout.h"
#include "widgets/WidgetSetting.h"
#include "widgets/WidgetTopPrompt.h"

#include <QEvent>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QMouseEvent>
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
    if (m == MENU_HOME && m_mobileDetect)
        m = MENU_INTRANET;
    const QVector<QWidget*> shown = pageWidgets(m);
    for (int page = MENU_HOME; page < MENU_END; ++page) {
        for (QWidget* widget : pageWidgets(MENU_ITEM(page)))
            widget->setVisible(shown.contains(widget));
    }
    ui->toolBtnHome->setChecked(m == MENU_HOME);
    ui->toolBtnSetting->setChecked(m == MENU_SETTING);
    ui->toolBtnLog->setChecked(m == MENU_LOG);
    ui->toolBtnQuit->setChecked(m == MENU_QUIT);
    m_curMenuItem = m;

    const bool home = m == MENU_HOME || m == MENU_INTRANET;
    ui->m_Chronometer->setVisible(home && isConnected());
    const bool quantum = m == MENU_HOME && isConnected() && (m_EnableQuantum || m_EnablePQC);
    ui->labelQuantumPic->setVisible(quantum);
    ui->labelQuantumText->setVisible(quantum);
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
    m_DlgUpgrade->checkUpgrade(true);
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

void DlgMain::showError(const QString& text)
{
    promptWidge->showPrompt(WidgetTopPrompt::SHOW_ERROR, text, true);
}

void DlgMain::showWarning(const QString& text)
{
    promptWidge->showPrompt(WidgetTopPrompt::SHOW_WARNING, text, true);
}

// Window

void DlgMain::on_btnClose_clicked()
{
    hide();
}

void DlgMain::on_btnMin_clicked()
{
    showMinimized();
}

void DlgMain::showWindow()
{
    show();
    showNormal();
}

void DlgMain::activeTray(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::Context)
        m_Menu->popup(QCursor::pos());
    else if (reason == QSystemTrayIcon::Trigger)
        showWindow();
}

void DlgMain::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return QDialog::mousePressEvent(event);
    m_DragPos = event->globalPos() - frameGeometry().topLeft();
    event->accept();
}

void DlgMain::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() & Qt::LeftButton)
        move(event->globalPos() - m_DragPos);
}

void DlgMain::mouseReleaseEvent(QMouseEvent* event)
{
    QDialog::mouseReleaseEvent(event);
}

bool DlgMain::eventFilter(QObject* object, QEvent* event)
{
    if (object == ui->btnConnect) {
        if (event->type() == QEvent::HoverEnter)
            m_MouseOverConnect = true;
        else if (event->type() == QEvent::HoverLeave)
            m_MouseOverConnect = false;
    }
    return QDialog::eventFilter(object, event);
}
