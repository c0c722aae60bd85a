#pragma once

#include "widgets/OtpBaseDlg.h"

class QLabel;
class QTextEdit;

/// Tells that this client is too old to be used: Upgrade hands over to the installer, the close
/// button accepts; what follows is the caller's. GUI thread.
class DlgForceUpgrade : public OtpBaseDlg
{
    Q_OBJECT

public:
    explicit DlgForceUpgrade(QDialog* parent);

    void setNoteText(const QString& note);
    void setNewVersion(const QString& version);
    /// Address of the installer package.
    void setUrl(const QString& url);
    /// The caller logs out once the dialog is closed: the text says so, and Upgrade leaves the
    /// dialog open.
    void setLogoutAfterClose(bool logout);

public slots:
    void onUpgradePressed();

protected:
    void showEvent(QShowEvent* event) override;
    void onCloseBtnClicked() override;

private:
    QTextEdit* m_noteEdit;
    QLabel* m_newVersionLabel;
    QLabel* m_titleLabel;
    bool m_logoutAfterClose = false;
    QString m_Url;
};
