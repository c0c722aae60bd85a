#include "login/DlgLogin.h"

#include "app/ConfigUtil.h"
#include "app/Log.h"
#include "app/NamedTimer.h"
#include "app/Platform.h"
#include "app/Product.h"
#include "login/CustomerStep.h"
#include "login/DlgLoginUi.h"
#include "login/LoginInput.h"
#include "login/LoginRequest.h"
#include "maintenance/MaintenanceWatch.h"
#include "orch/ErrorCatalogue.h"
#include "orch/TextUtil.h"
#include "upgrade/UpgradeWatch.h"
#include "widgets/FramelessDrag.h"
#include "widgets/Style.h"
#include "widgets/WidgetTopPrompt.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPainterPath>
#include <QPushButton>
#include <QRegion>
#include <QShowEvent>

namespace {

constexpr int kSlowConnectionMs = 40000;

QString savedTrimmed(const QString& key)
{
    return ConfigUtil::savedText(key).trimmed();
}

// The state of a remembered check box; one never set is on when there are saved credentials.
bool restoreTriState(const QString& key, QObject* context)
{
    int state = ConfigUtil::getvalue(key, -1).toInt();
    if (state == -1) {
        const bool saved = !savedTrimmed(ConfigUtil::TOKEN).isEmpty() &&
                           !savedTrimmed(ConfigUtil::PASSWORD).isEmpty();
        state = saved ? Qt::Checked : Qt::Unchecked;
        // A write waits for the disk: the window comes first.
        QTimer::singleShot(0, context, [key, state] { ConfigUtil::writeValue(key, state); });
    }
    return state == Qt::Checked;
}

} // namespace

DlgLogin::DlgLogin(QWidget* parent)
    : QDialog(parent), ui(std::make_unique<DlgLoginUi>(this)),
      promptWidge(new WidgetTopPrompt(this)), m_context([this] { return fields(); }),
      m_customer(new CustomerStep(m_context, this)), m_request(new LoginRequest(m_context, this)),
      m_upgrade(new UpgradeWatch(this, false)), m_maintenance(new MaintenanceWatch(this)),
      m_ConnectSlowWarningTimer(makeTimer(this, "m_ConnectSlowWarningTimer", kSlowConnectionMs,
                                          &DlgLogin::showConnectionSlowWarning))
{
    buildWindow();
    restoreCheckBoxes();
    dropInvalidToken();
    restoreFields();
    wireSteps();
    wireNotices();
    wireFollowUps();
    Log::clearLog();
    parseAppArguments();
    startByItself();
    connectInputs();
}

DlgLogin::~DlgLogin() = default;

void DlgLogin::buildWindow()
{
    setObjectName(QStringLiteral("DlgLogin"));
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setWindowTitle(QLatin1String(product::kName));
    // Reading an icon file makes Qt load image plugins; the window comes first.
    QTimer::singleShot(
        0, this, [this] { setWindowIcon(pictureIcon(QStringLiteral("veltaro/veltaro.ico"))); });
    setStyleSheet(styleSheetFor("login"));
    QPainterPath outline;
    outline.addRoundedRect(rect(), 1, 1);
    setMask(QRegion(outline.toFillPolygon().toPolygon()));

    ui->versionLabel->setText(tr("Version ") + QLatin1String(product::kVersion));
    ui->btnLogin->setDefault(true);
    changeCurPage(DLG_CUSTOMER_PAGE);
}

void DlgLogin::restoreCheckBoxes()
{
    ui->remePwCheckBox->setChecked(restoreTriState(ConfigUtil::REMEMBER_PASSWORD, this));
    ui->autoLoginCheckBox->setChecked(restoreTriState(ConfigUtil::AUTO_LOGIN, this));
}

void DlgLogin::dropInvalidToken()
{
    const QString token = savedTrimmed(ConfigUtil::TOKEN);
    if (Util::isTokenValid(token))
        return;
    for (const QString& key : {ConfigUtil::TOKEN, ConfigUtil::PASSWORD, ConfigUtil::USERNAME})
        ConfigUtil::writeValue(key, QString());
    showError(errorText(ErrorText::TokenInvalid));
    qWarning().noquote() << "Token: ***" << token.size() << "characters";
}

void DlgLogin::restoreFields()
{
    m_context.m_CustomerID = savedTrimmed(ConfigUtil::CUSTOMERID);
    QString customer = savedTrimmed(ConfigUtil::CUSTOMERIDSTR);
    if (customer.isEmpty())
        customer = m_context.m_CustomerID;
    ui->password->setText(savedTrimmed(ConfigUtil::PASSWORD));

    if (!ui->remePwCheckBox->isChecked()) {
        if (!savedTrimmed(ConfigUtil::TOKEN).isEmpty())
            ConfigUtil::writeValue(ConfigUtil::TOKEN, QString());
        ui->password->clear();
    }

    offerForgetPassword(ConfigUtil::getvalue(ConfigUtil::SUPPORT_FORGET_PASSWORD, true).toBool());
    ui->customerId->setText(customer);
    ui->username->setText(savedTrimmed(ConfigUtil::USERNAME));
}

void DlgLogin::wireSteps()
{
    connect(m_customer, &CustomerStep::agreementNeeded, this, &DlgLogin::showPrivacyLater);
    connect(m_customer, &CustomerStep::verified, this, [this] {
        m_ConnectSlowWarningTimer->stop();
        showCustomerId(ui->customerId->text().trimmed());
    });
    connect(m_customer, &CustomerStep::customerChanged, this, [this] {
        forgetCredentials();
        m_EmptyPass = true;
    });
    connect(m_customer, &CustomerStep::failed, this, [this](const OrchReply& reply) {
        m_ConnectSlowWarningTimer->stop();
        restoreContinue();
        reportHttpErr(reply);
    });
    connect(m_customer, &CustomerStep::forgetPasswordSupported, this,
            &DlgLogin::offerForgetPassword);
    connect(m_customer, &CustomerStep::done, this, &DlgLogin::checkUpgrade);

    connect(m_request, &LoginRequest::accepted, this, &DlgLogin::loginAccepted);
    connect(m_request, &LoginRequest::idle, this, [this] {
        m_ConnectSlowWarningTimer->stop();
        restoreLoginPage();
    });
    connect(m_request, &LoginRequest::ended, this, &DlgLogin::endLoginAttempt);
    connect(m_request, &LoginRequest::refused, this, [this](const OrchReply& reply) {
        m_ConnectSlowWarningTimer->stop();
        reportHttpErr(reply);
        restoreLoginPage();
    });
    connect(m_request, &LoginRequest::startAgain, this, [this] {
        onResetPassword(true);
        restoreLoginPage();
    });
    connect(m_request, &LoginRequest::submitted, promptWidge, &WidgetTopPrompt::hidePrompt);
}

void DlgLogin::wireNotices()
{
    const auto check = [this] { m_maintenance->_queryOrchUpgradeWhen502(m_context.attempt); };
    connect(m_customer, &CustomerStep::badGateway, this, check);
    connect(m_request, &LoginRequest::badGateway, m_ConnectSlowWarningTimer, &QTimer::stop);
    connect(m_request, &LoginRequest::badGateway, this, check);
    connect(m_maintenance, &MaintenanceWatch::noticeTime, this, [](qlonglong minutes) {
        qApp->setProperty(appproperty::kOrchUpgradeNoticeTime, minutes);
    });
    connect(m_maintenance, &MaintenanceWatch::slow, this, &DlgLogin::showConnectionSlowWarning);
    connect(m_maintenance, &MaintenanceWatch::error, this, &DlgLogin::showError);
    connect(m_maintenance, &MaintenanceWatch::failed, this, &DlgLogin::reportHttpErr);
    connect(m_maintenance, &MaintenanceWatch::done, this, [this] {
        m_ConnectSlowWarningTimer->stop();
        _resetAllBtnStyle();
    });
}

void DlgLogin::parseAppArguments()
{
    const LoginArguments arguments = LoginArguments::parse(platform().arguments());
    if (!arguments.logout)
        return;
    showCustomerId(savedTrimmed(ConfigUtil::CUSTOMERIDSTR));
    m_reLogin = true;
    if (arguments.invalidToken) {
        showError(errorText(ErrorText::LoginExpired));
        return;
    }
    signoutNotifyOrch(arguments.byUser ? ipc::DisConnNormalReason : ipc::DisConnOrchNotifyReason);
    changeCurPage(DLG_LOGIN_PAGE);
    m_checkUpgrade = true;
}

void DlgLogin::startByItself()
{
    m_context.passwordAtStart = ui->password->text();
    if (ConfigUtil::getvalue(ConfigUtil::AGREE_PRIVACY, 0).toInt() != 1) {
        showPrivacyLater();
    } else if (!ui->customerId->text().isEmpty() && !ui->username->text().isEmpty()) {
        ui->btnContinue->setEnabled(false);
        m_customer->getPrivacyVerFromMain();
    }
}

void DlgLogin::connectInputs()
{
    connect(ui->btnClose, &QPushButton::clicked, this, &DlgLogin::on_close_clicked);
    connect(ui->backBtn_2, &QPushButton::clicked, this, &DlgLogin::on_backBtn_clicked);
    connect(ui->btnContinue, &QPushButton::clicked, this, &DlgLogin::on_btnContinue_clicked);
    connect(ui->customerId, &QLineEdit::returnPressed, this, &DlgLogin::on_btnContinue_clicked);
    connect(ui->btnLogin, &QPushButton::clicked, this, &DlgLogin::on_btnLogin_clicked);
    connect(ui->btnForgetPasswd, &QPushButton::clicked, this,
            &DlgLogin::on_btnForgetPasswd_clicked);
    connect(ui->customerId, &QLineEdit::textEdited, this, &DlgLogin::on_customerId_textEdited);
    connect(ui->username, &QLineEdit::textEdited, this, &DlgLogin::on_username_textEdited);
    connect(ui->password, &QLineEdit::textEdited, this, &DlgLogin::on_password_textEdited);
    connect(ui->username, &QLineEdit::textEdited, this, &DlgLogin::onBtnLoginEnableChanged);
    connect(ui->password, &QLineEdit::textEdited, this, &DlgLogin::onBtnLoginEnableChanged);
    connect(ui->remePwCheckBox, &QCheckBox::stateChanged, this,
            &DlgLogin::on_remePwCheckBox_stateChanged);
    connect(ui->autoLoginCheckBox, &QCheckBox::stateChanged, this,
            &DlgLogin::on_autoLoginCheckBox_stateChanged);
}

void DlgLogin::showEvent(QShowEvent* event)
{
    if (!event->spontaneous()) {
        ui->btnLogin->setEnabled(false);
        m_showUpgradeDialog = false;
    }
    QDialog::showEvent(event);
}

void DlgLogin::mousePressEvent(QMouseEvent* event)
{
    beginDrag(m_dragOffset, event, this);
}

void DlgLogin::mouseMoveEvent(QMouseEvent* event)
{
    continueDrag(m_dragOffset, event, this);
}
