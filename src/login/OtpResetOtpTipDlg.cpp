#include "login/OtpResetOtpTipDlg.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "login/OtpRecovery.h"
#include "orch/AccountRequests.h"
#include "orch/HostIdentity.h"
#include "orch/OrchRequest.h"
#include "widgets/Style.h"
#include "widgets/WidgetParts.h"
#include "widgets/WidgetTopPrompt.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QNetworkAccessManager>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int kWidth = 416;
constexpr int kTextWidth = kWidth - 2 * 24;

} // namespace

OtpResetOtpTipDlg::OtpResetOtpTipDlg(QWidget* parent)
    : OtpBaseDlg(parent),
      m_recoveryLineEdit(named(new QLineEdit(contentWidget()), "m_recoveryLineEdit")),
      m_cancelBtn(makeDialogButton(contentWidget(), "btnCancel", "secondary", tr("Cancel"))),
      m_resetBtn(makeDialogButton(contentWidget(), "btnReset", "primary", tr("Reset"))),
      m_topPrompt(new WidgetTopPrompt(this)), m_netMgr(makeAccessManager(this))
{
    setObjectName(QStringLiteral("OtpResetOtpTipDlg"));
    setRole(m_recoveryLineEdit, "field");
    m_recoveryLineEdit->setPlaceholderText(tr("Paste Recovery Code Here"));
    m_recoveryLineEdit->setAccessibleName(m_recoveryLineEdit->placeholderText());
    m_recoveryLineEdit->setInputMethodHints(Qt::ImhSensitiveData | Qt::ImhNoPredictiveText);
    layOut();

    connect(m_cancelBtn, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_resetBtn, &QPushButton::clicked, this, &OtpResetOtpTipDlg::reset);
    connect(m_recoveryLineEdit, &QLineEdit::returnPressed, this, &OtpResetOtpTipDlg::reset);
}

OtpResetOtpTipDlg::~OtpResetOtpTipDlg() = default;

void OtpResetOtpTipDlg::layOut()
{
    QLabel* text =
        makeLabel(contentWidget(), "labelText", "",
                  tr("When you lose your phone, you can reset the binding relationship with the "
                     "authenticator through the recovery code, or contact the network "
                     "administrator to reset it for you."));
    text->setWordWrap(true);
    text->setFixedWidth(kTextWidth);
    setAccessibleName(text->text());

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(12);
    buttons->addStretch();
    buttons->addWidget(m_cancelBtn);
    buttons->addWidget(m_resetBtn);

    layout()->setSizeConstraint(QLayout::SetFixedSize); // on a small screen too
    auto* column = new QVBoxLayout(contentWidget());
    column->setContentsMargins(0, 20, 0, 0);
    column->setSpacing(16);
    column->addWidget(text);
    column->addWidget(m_recoveryLineEdit);
    column->addLayout(buttons);
    setTabOrder(m_recoveryLineEdit, m_cancelBtn);
    setTabOrder(m_cancelBtn, m_resetBtn);
    setTabOrder(m_resetBtn, m_closeBtn);
    m_recoveryLineEdit->setFocus();
}

// Return belongs to the field and to the button that has the focus, and closes nothing.
bool OtpResetOtpTipDlg::event(QEvent* event)
{
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter)
            return true;
    }
    return OtpBaseDlg::event(event);
}

void OtpResetOtpTipDlg::reset()
{
    if (!m_resetBtn->isEnabled())
        return; // Return was pressed while the code is on its way
    m_resetBtn->setEnabled(false);
    m_topPrompt->hidePrompt();
    ipc::RecoverOtpParams params;
    params.customerId = ConfigUtil::savedText(ConfigUtil::CUSTOMERID);
    params.otpMiddleToken = qApp->property(appproperty::kOtpMiddleToken).toString();
    params.recoverCode = m_recoveryLineEdit->text();
    sendOrchRequest(*m_netMgr,
                    orchrequest::recoverOtpKey(ConfigUtil::savedText(ConfigUtil::AUTHURL),
                                               Util::getSerial(), params),
                    m_alive.step([this](const OrchReply& reply) { take(reply); }));
}

void OtpResetOtpTipDlg::take(const OrchReply& reply)
{
    m_resetBtn->setEnabled(true);
    if (!reply.answered())
        logDisplayInfo(tr("Error Info: %1").arg(reply.logText()));
    const OtpRecovery recovery = OtpRecovery::fromReply(reply, OrchTexts::shared());
    if (!recovery.otpMiddleToken.isEmpty())
        qApp->setProperty(appproperty::kOtpMiddleToken, recovery.otpMiddleToken);
    if (!recovery.error.isEmpty())
        m_topPrompt->showPrompt(WidgetTopPrompt::SHOW_ERROR, recovery.error, true);
    if (!recovery.done)
        return;
    emit regenQRCode(recovery.otpKey);
    accept();
}
