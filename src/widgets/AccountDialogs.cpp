#include "widgets/AccountDialogs.h"

#include "app/Platform.h"
#include "widgets/CommonTipsDialog.h"
#include "widgets/DialogFrame.h"
#include "widgets/DlgChangePassPrompt.h"
#include "widgets/PromptText.h"

#include <QCoreApplication>

namespace {

constexpr int kWidth = 248;
constexpr int kHeight = 150;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(AccountDialogs)
};

void showTip(QWidget* parent, const QString& text)
{
    auto* tip = new CommonTipsDialog(parent);
    tip->setContentText(text);
    tip->setCompact(kWidth, platform().isChinese() ? 0 : kHeight);
    runAndDelete(tip);
}

} // namespace

void Util::showOrchKickOff(QWidget* parent, const QString& username)
{
    showTip(parent, Texts::tr("The account %1 logged into your device has been forcibly logged out "
                              "on Orchestrator. For more details, please contact the network "
                              "administrator.")
                        .arg(breakable(username)));
}

void Util::showLdapChange(QWidget* parent)
{
    showTip(parent, Texts::tr("The extension property of your account has changed. Please log in "
                              "again. If you have any queries, please contact the administrator."));
}

void showPasswordChanged(QWidget* parent)
{
    auto* prompt = new DlgChangePassPrompt(parent);
    prompt->setDlgContent(DlgChangePassPrompt::passwordChangedText());
    runAndDelete(prompt);
}
