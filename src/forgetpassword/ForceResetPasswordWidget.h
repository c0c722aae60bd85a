#pragma once

#include "forgetpassword/PasswordPage.h"

namespace ipc {
struct ResetPasswordParams;
} // namespace ipc

namespace TQ {

class NewPassword;

/// The page on which a password must be changed before the account can be used. It works on behalf
/// of the session token that the login has just saved. GUI thread.
class ForceResetPasswordWidget : public PasswordPage
{
    Q_OBJECT

public:
    explicit ForceResetPasswordWidget(QWidget* parent);

    /// The customer's number.
    void setCustomerId(const QString& customerId);

    /// The orchestrator's reason in both languages; a text of our own stands in for an empty one.
    void setResetPassReason(const QString& reasonCn, const QString& reasonEn);

    /// Empties the fields and takes the warnings away.
    void resetUI();

signals:
    void resetPasswordResult(bool isOk);

protected:
    void enter() override;
    void leave() override;

private:
    void buildForm();
    void onTextEdited();
    void checkOldPassword();
    void onConfirmBtnPressed();
    void changePassword(const ipc::ResetPasswordParams& params);
    void onRefused(const OrchReply& reply);
    void onChanged(const OrchReply& reply);

    QLabel* m_ContextLabel;
    EntryField* m_oldPasswordEdit;
    EntryField* m_newPasswordEdit;
    EntryField* m_repeatPasswordEdit;
    WarningIcon* m_pwOldWarningLabel;
    QPushButton* m_confirmBtn;
    NewPassword* m_newPassword = nullptr;
    QString m_customerId;
    bool m_isOldPwFilled = false; ///< the old password has had content
    bool m_submitting = false;    ///< a change waits for its answer
};

} // namespace TQ
