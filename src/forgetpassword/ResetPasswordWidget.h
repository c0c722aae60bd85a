#pragma once

#include "forgetpassword/PasswordPage.h"
#include "forgetpassword/ResetAccount.h"
#include "forgetpassword/ResetChannel.h"

namespace ipc {
struct ForgetPasswordParams;
} // namespace ipc

namespace TQ {

class NewPassword;
class SendCodeButton;

/// The page on which a forgotten password is replaced: it has a code sent to the account's phone or
/// mailbox, and submits the code with the new password. Each of the two ways keeps its own
/// countdown while the other is chosen. GUI thread.
class ResetPasswordWidget : public PasswordPage
{
    Q_OBJECT

public:
    explicit ResetPasswordWidget(QWidget* parent);

    /// Whose password is to be replaced; countdowns start afresh. Before the page is shown.
    void setAccount(const ResetAccount& account);

signals:
    void resetPassword(bool isSucc);

protected:
    void enter() override;
    void leave() override;

private:
    void buildForm();
    void wireChannel(ResetChannel* channel, ResetMethod method);
    void wireNewPassword();
    ResetChannel* current() const { return m_channels[m_resetMethod]; }
    void chooseMethod(ResetMethod method);
    void onSwitchResetBtnPressed();
    void onSendBtnPressed();
    void showSendState();
    void onTextEdited();
    void onConfirmBtnPressed();
    void sendForgetPassword(const ipc::ForgetPasswordParams& params, ResetChannel* channel);
    void endSubmission();
    void onReset(bool success);
    void refuse(const OrchReply& reply);

    EntryField* m_phoneEmailEdit;
    EntryField* m_authCodeEdit;
    EntryField* m_passwordEdit;
    EntryField* m_passwordRepeatEdit;
    SendCodeButton* m_sendBtn;
    QPushButton* m_switchResetBtn;
    QPushButton* m_confirmBtn;
    NewPassword* m_newPassword = nullptr;
    ResetChannel* m_channels[2]; ///< by ResetMethod
    ResetMethod m_resetMethod = ResetByPhone;
    ResetAccount m_account; ///< without addresses and tokens, which are the channels'
    bool m_submitting = false;
};

} // namespace TQ
