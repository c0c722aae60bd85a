#pragma once

#include "forgetpassword/PasswordPage.h"
#include "forgetpassword/ResetAccount.h"

struct CredentialKey;

/// The page on which a user who has forgotten the password names the account: it asks the
/// orchestrator which ways to a new password there are. GUI thread.
class ForgetPasswordWidget : public TQ::PasswordPage
{
    Q_OBJECT

public:
    explicit ForgetPasswordWidget(QWidget* parent);

    /// The customer's number, and the text by which the user knows it.
    void setCustomerId(const QString& customerId);
    void setCustomerIdStr(const QString& customerId);

    /// The account that was found, to be taken when showResetPasswordWidget() is emitted.
    const ResetAccount& account() const { return m_account; }

signals:
    void showResetPasswordWidget();

protected:
    void enter() override;
    void leave() override;

private:
    void onEdited();
    void onSubmitPressed();
    void askMethods(const CredentialKey& key);
    void takeMethods(const OrchReply& reply);
    void refuse(const OrchReply& reply);
    void restoreSubmit();

    EntryField* m_customerEdit;
    EntryField* m_usernameEdit;
    QPushButton* m_submit;
    QString m_CustomerID;   ///< the numeric one
    ResetAccount m_account; ///< holds secrets until the page is left
};
