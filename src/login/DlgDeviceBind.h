#pragma once

#include "app/Attempt.h"
#include "widgets/OtpBaseDlg.h"

#include <QString>

class OrchReply;
class QNetworkAccessManager;

/// Tells the user that this device must be associated with the account. With a binding token it
/// asks the orchestrator for that; without one it hands the user what the administrator needs to
/// know. Run modally; accepted once the request has been answered. GUI thread.
class DlgDeviceBind : public OtpBaseDlg
{
    Q_OBJECT

public:
    /// `token`, a secret, is the refused login's; empty: nothing can be asked for.
    DlgDeviceBind(const QString& username, const QString& deviceId, const QString& token,
                  QWidget* parent);
    ~DlgDeviceBind() override;

    // What the request has led to
    bool m_ApplyResult = false; ///< it was taken
    QString m_ErrInfo;          ///< why it was not

private:
    void buildForm();
    void on_btnYes_clicked();
    void apply();
    void netReply(const OrchReply& reply);

    const QString m_Username;
    const QString m_DeviceId;
    QString m_Token; ///< secret
    const bool m_SupportApply;
    QPushButton* m_btnNo;
    QPushButton* m_btnYes;
    QNetworkAccessManager* m_NetMgr;
    Attempt m_alive;
};
