#include "login/DialogPrivacy.h"

#include "app/Deployment.h"
#include "app/Platform.h"
#include "login/PrivacyText.h"
#include "widgets/DialogFrame.h"
#include "widgets/WidgetParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QTextDocument>
#include <QUrl>
#include <QVBoxLayout>

DialogPrivacy::DialogPrivacy(QWidget* parent)
    : OtpBaseDlg(parent), m_Parent(parent),
      m_updateLabel(makeLabel(contentWidget(), "updateLabel", "hint"))
{
    setObjectName(QStringLiteral("DialogPrivacy"));
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setFixedSize(440, 304);
    m_closeBtn->setObjectName(QStringLiteral("btnclose"));

    QLabel* title =
        makeLabel(contentWidget(), "labelTitle", "", tr("User Agreement and Privacy Policy"));
    setWindowTitle(title->text());

    QTextBrowser* body = makeBody();
    QWidget* buttons = makeButtons();
    auto* layout = new QVBoxLayout(contentWidget());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(title);
    layout->addWidget(m_updateLabel);
    layout->addWidget(body, 1);
    layout->addWidget(buttons);
    setTabOrder(body, buttons);
}

QTextBrowser* DialogPrivacy::makeBody()
{
    const bool chinese = platform().isChinese();
    const QString colour = QStringLiteral("rgb(2, 144, 255)");
    auto* body = named(new QTextBrowser(contentWidget()), "labelText");
    body->setAccessibleName(tr("User Agreement and Privacy Policy"));
    body->document()->setDocumentMargin(0);
    body->setOpenLinks(false); // opened by the desktop, not in here
    connect(body, &QTextBrowser::anchorClicked, this,
            [](const QUrl& address) { platform().openUrl(address); });
    body->setHtml(
        tr("We respect your privacy. Please read the following to learn more about out User "
           "Agreement and Privacy Policy.This Policy explains which personal data we collect and "
           "process through interactions with you or your use of our services.<br><br>The "
           "Permissions we will use: Access Device Information, View Network Connections, Full "
           "Network Access.<br>Please check our <a style=\"color:%1\" href=\"%2\">User "
           "Agreement</a> and <a style=\"color:%3\" href=\"%4\">Privacy Policy</a>.")
            .arg(colour, deployment::userAgreementUrl(chinese), colour,
                 deployment::privacyPolicyUrl(chinese)));
    return body;
}

QWidget* DialogPrivacy::makeButtons()
{
    auto* row = new QWidget(contentWidget());
    QPushButton* refuse = makeDialogButton(row, "btnRefuse", "secondary", tr("Decline"));
    QPushButton* agree = makeDialogButton(row, "btnAgree", "primary", tr("Accept"));
    agree->setDefault(true);
    connect(refuse, &QPushButton::clicked, this, &QDialog::reject);
    connect(agree, &QPushButton::clicked, this, &QDialog::accept);

    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 4, 0, 0);
    layout->setSpacing(12);
    layout->addStretch();
    layout->addWidget(refuse);
    layout->addWidget(agree);
    agree->setFocus();
    return row;
}

void DialogPrivacy::setPrivacyVersion(QString version)
{
    m_updateLabel->setText(getPrivacyUpdateDate(std::move(version)));
}

QString DialogPrivacy::getPrivacyUpdateDate(QString version) const
{
    return privacyUpdateText(version, platform().isChinese());
}

void DialogPrivacy::showEvent(QShowEvent* event)
{
    OtpBaseDlg::showEvent(event);
    centerOver(this, m_Parent);
}
