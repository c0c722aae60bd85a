#include "widgets/DlgChangePassPrompt.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QPushButton>

DlgChangePassPrompt::DlgChangePassPrompt(QWidget* parent)
    : ConfirmDialog("notice.png", tr("Change Password"), passwordChangedText(), parent)
{
    setObjectName(QStringLiteral("DlgChangePassPrompt"));
    m_closeBtn->hide();
    addOk();
}

void DlgChangePassPrompt::setDlgContent(const QString& text)
{
    setText(text);
}

QString DlgChangePassPrompt::passwordChangedText()
{
    return tr("Password has been changed,please log in again.");
}

QString DlgChangePassPrompt::passwordResetText()
{
    return tr("Your password has been successfully reset.Please log in again.");
}

QString DlgChangePassPrompt::passwordResetByAdminText()
{
    return tr("Password has been reset, please contact the admin to obtain a new password and "
              "login again");
}

void DlgChangePassPrompt::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Escape)
        ConfirmDialog::keyPressEvent(event);
}

void DlgChangePassPrompt::closeEvent(QCloseEvent* event)
{
    if (event->spontaneous())
        event->ignore();
    else
        ConfirmDialog::closeEvent(event);
}
