#include "login/DlgDeviceBind.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "orch/AccountRequests.h"
#include "orch/HostIdentity.h"
#include "orch/HttpErrorText.h"
#include "orch/OrchErrRes.h"
#include "orch/OrchRequest.h"
#include "orch/TextUtil.h"
#include "widgets/PromptText.h"
#include "widgets/WidgetParts.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QNetworkAccessManager>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int kFormWidth = 400;
constexpr int kLongestShown = 128; ///< of what the orchestrator calls the account

} // namespace

DlgDeviceBind::DlgDeviceBind(const QString& username, const QString& deviceId, const QString& token,
                             QWidget* parent)
    : OtpBaseDlg(parent), m_Username(username), m_DeviceId(deviceId), m_Token(token),
      m_SupportApply(!token.isEmpty()),
      m_btnNo(makeDialogButton(contentWidget(), "btnNo", "secondary", tr("Cancel"))),
      m_btnYes(
          makeDialogButton(contentWidget(), "btnYes", "primary",
                           m_SupportApply ? tr("Request Association") : tr("Confirm && Copy"))),
      m_NetMgr(makeAccessManager(this))
{
    setObjectName(QStringLiteral("DlgDeviceBind"));
    OrchErrRes::getInstance()->setCustomerId(ConfigUtil::savedText(ConfigUtil::CUSTOMERID));
    buildForm();
    connect(m_btnNo, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_btnYes, &QPushButton::clicked, this, &DlgDeviceBind::on_btnYes_clicked);
}

DlgDeviceBind::~DlgDeviceBind() = default;

void DlgDeviceBind::buildForm()
{
    const auto wrapped = [this](const char* name, const QString& text) {
        QLabel* label = makeLabel(contentWidget(), name, "text", text);
        label->setWordWrap(true);
        label->setFixedWidth(kFormWidth);
        return label;
    };
    const auto fact = [&wrapped](const char* name, const QString& title, const QString& value) {
        const QString shown = shortenedText(Util::oneLine(value), kLongestShown);
        QLabel* label = wrapped(name, title + QLatin1Char(' ') + breakable(shown));
        label->setAccessibleName(title + QLatin1Char(' ') + shown);
        return label;
    };
    QLabel* text = wrapped(
        "labelBindContent",
        m_SupportApply
            ? tr("You can get access to Veltaro once you associate your device with your Veltaro "
                 "account. To initiate the binding process, simply click the Request Association "
                 "button. Please be aware that it may take our network administrator some time to "
                 "review your request. We appreciate your patience and understanding during this "
                 "period.")
            : tr("The software can only be used normally after the current account is "
                 "successfully bound to the device. Please copy the following information and "
                 "send it to the network administrator. It will take some time for the network "
                 "administrator to process, please be patient."));
    setAccessibleName(text->text());

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(12);
    buttons->addStretch();
    buttons->addWidget(m_btnNo);
    buttons->addWidget(m_btnYes);
    auto* column = new QVBoxLayout(contentWidget());
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(12);
    column->addWidget(makeLabel(contentWidget(), "labelBindTitle", "title", tr("Bind Device")));
    column->addWidget(text);
    column->addWidget(fact("labelUser", tr("Username:"), m_Username));
    column->addWidget(fact("labelDevice", tr("Device ID:"), m_DeviceId));
    column->addSpacing(4);
    column->addLayout(buttons);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    m_btnYes->setDefault(true);
    setTabOrder(m_btnNo, m_btnYes);
    setTabOrder(m_btnYes, m_closeBtn);
    m_btnYes->setFocus();
}

void DlgDeviceBind::on_btnYes_clicked()
{
    if (m_SupportApply)
        return apply();
    reject();
    QGuiApplication::clipboard()->setText(m_Username + QLatin1Char('\n') + m_DeviceId);
}

void DlgDeviceBind::apply()
{
    m_btnYes->setEnabled(false);
    const ipc::BindDeviceParams params{ConfigUtil::savedText(ConfigUtil::CUSTOMERID), m_Username,
                                       m_DeviceId, m_Token};
    m_Token.clear();
    sendOrchRequest(*m_NetMgr,
                    orchrequest::bindDevice(ConfigUtil::savedText(ConfigUtil::AUTHURL),
                                            Util::getSerial(), params),
                    m_alive.step([this](const OrchReply& reply) { netReply(reply); }));
}

void DlgDeviceBind::netReply(const OrchReply& reply)
{
    m_ApplyResult = reply.answered();
    if (!m_ApplyResult) {
        logDisplayInfo(tr("Error Info: %1").arg(reply.logText()));
        m_ErrInfo = requestFailureText(reply, OrchTexts::shared());
    }
    accept();
}
