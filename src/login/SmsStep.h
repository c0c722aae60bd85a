#pragma once

#include "orch/OrchReply.h"
#include "widgets/WidgetTopPrompt.h"

#include <QObject>

struct LoginContext;

/// The dialogs that may follow a login's answer: the code of an SMS, and the association of this
/// device with the account, which either of the two kinds of login may demand. GUI thread.
class SmsStep : public QObject
{
    Q_OBJECT

public:
    /// The dialogs are shown over `window`, which owns the step.
    SmsStep(LoginContext& context, QWidget* window);

    /// Asks for the code that goes to this phone and logs in with it.
    void askForCode(const QString& phoneNumber, const QString& middleToken, const QString& username,
                    const QString& password);

    /// This device must be associated first; `token`, a secret, may be empty.
    void bindDevice(const QString& user, const QString& token);

signals:
    /// The token is saved.
    void accepted();
    /// The token is saved, but the password must be changed first, for these reasons.
    void passwordChangeForced(const QString& reasonCn, const QString& reasonEn);
    /// The login has ended without a token: the user may try again.
    void over();
    /// A message for the window's top prompt; `submitted` takes the last one away.
    void told(WidgetTopPrompt::PROMPT_TYPE type, const QString& text);
    void submitted();
    /// A request has failed and is to be rendered.
    void refused(const OrchReply& reply);

private:
    void end();

    LoginContext& m_context;
    QWidget* m_window;
};
