#include "login/DlgLogin.h"

#include "app/ConfigUtil.h"
#include "app/Log.h"
#include "app/Platform.h"
#include "app/Product.h"
#include "login/DlgLoginUi.h"
#include "login/LoginInput.h"
#include "orch/ErrorCatalogue.h"
#include "orch/OrchErrRes.h"
#include "orch/Util.h"
#include "upgrade/DlgUpgrade.h"
#include "widgets/Style.h"
#include "widgets/WidgetTopPrompt.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainterPath>
#include <QPushButton>
#include <QRegion>
#include <QShowEvent>
#include <QStackedWidget>
#include <QTimer>

namespace {

constexpr int kSlowConnectionMs = 40000;

QString savedText(const QString& key)
{
    return ConfigUtil::getvalue(key, QString()).toString().trimmed();
}

// The state of a remembered check box; one never set is on when there are saved credentials.
bool restoreTriState(const QString& key, QObject* context)
{
    int state = ConfigUtil::getvalue(key, -1).toInt();
    if (state == -1) {
        const bool saved =
            !savedText(ConfigUtil::TOKEN).isEmpty() && !savedText(ConfigUtil::PASSWORD).isEmpty();
        state = saved ? Qt::Checked : Qt::Unchecked;
        // A write waits for the disk: the window comes first.
        QTimer::singleShot(0, context, [key, state] { ConfigUtil::writeValue(key, state); });
    }
    return state == Qt::Checked;
}

} // namespace

DlgLogin::DlgLogin(QWidget* parent)
    : QDialog(parent), ui(std::make_unique<DlgLoginUi>(this)),
      m_OrchErrRes(OrchErrRes::getInstance())
{
    buildWindow();
    restoreCheckBoxes();
    dropInvalidToken();
    restoreFields();
    createTimer();
    Log::clearLog();
    parseAppArguments();
    startByItself();
    m_DlgUpgrade = new DlgUpgrade(this, false);
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

    promptWidge = new WidgetTopPrompt(this);
    ui->versionLabel->setText(tr("Version ") + QLatin1String(product::kVersion));
    ui->btnLogin->setDefault(true);
    for (QLineEdit* field : {ui->customerId, ui->username, ui->password})
        field->installEventFilter(this);
    changeCurPage(DLG_CUSTOMER_PAGE);
}

void DlgLogin::restoreCheckBoxes()
{
    ui->remePwCheckBox->setChecked(restoreTriState(ConfigUtil::REMEMBER_PASSWORD, this));
    ui->autoLoginCheckBox->setChecked(restoreTriState(ConfigUtil::AUTO_LOGIN, this));
}

void DlgLogin::dropInvalidToken()
{
    const QString token = savedText(ConfigUtil::TOKEN);
    if (Util::isTokenValid(token))
        return;
    for (const QString& key : {ConfigUtil::TOKEN, ConfigUtil::PASSWORD, ConfigUtil::USERNAME})
        ConfigUtil::writeValue(key, QString());
    showError(errorText(ErrorText::TokenInvalid));
    qWarning().noquote() << "Token: ***" << token.size() << "characters";
}

void DlgLogin::restoreFields()
{
    m_CustomerID = savedText(ConfigUtil::CUSTOMERID);
    QString customer = savedText(ConfigUtil::CUSTOMERIDSTR);
    if (customer.isEmpty())
        customer = m_CustomerID;
    ui->password->setText(savedText(ConfigUtil::PASSWORD));

    if (!ui->remePwCheckBox->isChecked()) {
        if (!savedText(ConfigUtil::TOKEN).isEmpty())
            ConfigUtil::writeValue(ConfigUtil::TOKEN, QString());
        ui->password->clear();
    }

    offerForgetPassword(ConfigUtil::getvalue(ConfigUtil::SUPPORT_FORGET_PASSWORD, true).toBool());
    ui->customerId->setText(customer);
    ui->username->setText(savedText(ConfigUtil::USERNAME));
}

void DlgLogin::createTimer()
{
    m_ConnectSlowWarningTimer = new QTimer(this);
    m_ConnectSlowWarningTimer->setObjectName(QStringLiteral("m_ConnectSlowWarningTimer"));
    m_ConnectSlowWarningTimer->setInterval(kSlowConnectionMs);
    connect(m_ConnectSlowWarningTimer, &QTimer::timeout, this,
            &DlgLogin::showConnectionSlowWarning);

    m_approvalTimer = new QTimer(this);
    m_approvalTimer->setObjectName(QStringLiteral("m_approvalTimer"));
    m_approvalTimer->setSingleShot(true);
    connect(m_approvalTimer, &QTimer::timeout, this, &DlgLogin::pollApproval);
}

void DlgLogin::parseAppArguments()
{
    const LoginArguments arguments = LoginArguments::parse(platform().arguments());
    if (!arguments.logout)
        return;
    ui->customerIdLabel->setText(
        Util::GetStringWithLength(savedText(ConfigUtil::CUSTOMERIDSTR), 12));
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
    m_passwordAtStart = ui->password->text();
    if (ConfigUtil::getvalue(ConfigUtil::AGREE_PRIVACY, 0).toInt() != 1) {
        showPrivacyLater();
    } else if (!ui->customerId->text().isEmpty() && !ui->username->text().isEmpty()) {
        ui->btnContinue->setEnabled(false);
        getPrivacyVerFromMain();
    }
}

void DlgLogin::connectInputs()
{
    connect(ui->btnClose, &QPushButton::clicked, this, &DlgLogin::on_close_clicked);
    connect(ui->backBtn_2, &QPushButton::clicked, this, &DlgLogin::on_backBtn_clicked);
    connect(ui->btnContinue, &QPushButton::clicked, this, &DlgLogin::on_btnContinue_clicked);
    connect(ui->customerId, &QLineEdit::returnPressed, this, &DlgLogin::on_btnContinue_clicked);
    connect(ui->btnLogin, &QPushButton::clicked, this, &DlgLogin::on_btnLogin_clicked);
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

bool DlgLogin::eventFilter(QObject* object, QEvent* event)
{
    const bool focusIn = event->type() == QEvent::FocusIn;
    if (focusIn || event->type() == QEvent::FocusOut) {
        if (auto* field = qobject_cast<QLineEdit*>(object))
            DlgLoginUi::showFieldIcon(field, focusIn);
    }
    return QDialog::eventFilter(object, event);
}

void DlgLogin::mousePressEvent(QMouseEvent* event)
{
    m_dragOffset = event->globalPos() - frameGeometry().topLeft();
    event->accept();
}

void DlgLogin::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() & Qt::LeftButton)
        move(event->globalPos() - m_dragOffset);
}
