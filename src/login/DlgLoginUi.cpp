#include "login/DlgLoginUi.h"

#include "widgets/BackButton.h"
#include "widgets/BrandPanel.h"
#include "widgets/IconButton.h"
#include "widgets/Style.h"
#include "widgets/WidgetParts.h"

#include <QCheckBox>
#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

constexpr int kWidth = 600;
constexpr int kHeight = 400;
constexpr int kBrandWidth = 240;
constexpr int kFormWidth = 264;

QPushButton* button(QWidget* parent, const char* name, const QString& text, const char* role)
{
    QPushButton* push = makeButton(parent, name, role, text);
    push->setAutoDefault(true); // Return presses the button that has the focus
    return push;
}

} // namespace

void DlgLoginUi::setPage(int number, QWidget* page)
{
    while (stackedWidget->count() <= number)
        stackedWidget->addWidget(new QWidget(stackedWidget));
    QWidget* const former = stackedWidget->widget(number);
    stackedWidget->insertWidget(number, page);
    delete former; // leaves its number to the new page
}

DlgLoginUi::DlgLoginUi(QDialog* window)
{
    window->setFixedSize(kWidth, kHeight);

    auto* row = new QHBoxLayout(window);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(brandPanel(window));

    auto* right = new QVBoxLayout;
    right->setContentsMargins(0, 0, 0, 0);
    btnClose = named(new IconButton("close", tr("Close"), window), "btnClose");
    btnClose->setAutoDefault(true);
    auto* top = new QHBoxLayout;
    top->setContentsMargins(0, 14, 14, 0);
    top->addStretch();
    top->addWidget(btnClose);
    right->addLayout(top);

    stackedWidget = named(new QStackedWidget(window), "stackedWidget");
    stackedWidget->addWidget(customerPage(window));
    stackedWidget->addWidget(loginPage(window));
    right->addWidget(stackedWidget, 1);
    row->addLayout(right, 1);
}

QWidget* DlgLoginUi::brandPanel(QDialog* window)
{
    auto* panel = named(new BrandPanel(window), "brandPanel");
    panel->setFixedWidth(kBrandWidth);
    versionLabel = makeLabel(panel, "versionLabel", "");
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(24, 24, 24, 16);
    column->addStretch();
    column->addWidget(versionLabel, 0, Qt::AlignHCenter);
    return panel;
}

QWidget* DlgLoginUi::customerPage(QDialog* window)
{
    auto* page = named(new QWidget(window), "customerPage");
    customerId = makeField(page, "customerId", tr("Customer ID"), "customer");
    btnContinue = button(page, "btnContinue", tr("Continue"), "primary");
    btnContinue->setFixedHeight(36);
    btnContinue->setAutoDefault(false); // the field's own Return presses it
    QLabel* hint =
        makeLabel(page, "", "secondary",
                  tr("Enter the customer ID that you received from your administrator."));
    hint->setWordWrap(true);
    hint->setMinimumHeight(hint->heightForWidth(kFormWidth)); // the form does not ask it again

    auto* form = new QWidget(page);
    form->setFixedWidth(kFormWidth);
    auto* column = new QVBoxLayout(form);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(16);
    column->addWidget(makeLabel(form, "", "title", tr("Welcome")));
    column->addWidget(hint);
    column->addWidget(customerId);
    column->addWidget(btnContinue);

    auto* middle = new QVBoxLayout(page);
    middle->setContentsMargins(0, 0, 0, 36);
    middle->addStretch();
    middle->addWidget(form, 0, Qt::AlignHCenter);
    middle->addStretch();
    return page;
}

QWidget* DlgLoginUi::loginPage(QDialog* window)
{
    auto* page = named(new QWidget(window), "loginPage");
    backBtn_2 = named(new BackButton(tr("Back"), page), "backBtn_2");
    backBtn_2->setAutoDefault(true);

    QLabel* caption = makeLabel(page, "", "secondary", tr("Customer ID"));
    customerIdLabel = makeLabel(page, "customerIdLabel", "");
    username = makeField(page, "username", tr("Username"), "user");
    password = makePasswordField(page, "password", tr("Password"));
    remePwCheckBox = named(new QCheckBox(tr("Remember me"), page), "remePwCheckBox");
    autoLoginCheckBox = named(new QCheckBox(tr("Auto Login"), page), "autoLoginCheckBox");
    btnLogin = button(page, "btnLogin", tr("Login"), "primary");
    btnLogin->setFixedHeight(36);
    btnForgetPasswd = button(page, "btnForgetPasswd", tr("Forget Password?"), "link");

    auto* customer = new QHBoxLayout;
    customer->setSpacing(8);
    customer->addWidget(caption);
    customer->addWidget(customerIdLabel, 1);
    auto* checks = new QHBoxLayout;
    checks->addWidget(remePwCheckBox);
    checks->addStretch();
    checks->addWidget(autoLoginCheckBox);

    auto* form = new QWidget(page);
    form->setFixedWidth(kFormWidth);
    auto* column = new QVBoxLayout(form);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(12);
    column->addWidget(backBtn_2, 0, Qt::AlignLeft);
    column->addWidget(makeLabel(form, "", "title", tr("Log in")));
    column->addLayout(customer);
    column->addWidget(username);
    column->addWidget(password);
    column->addLayout(checks);
    column->addWidget(btnLogin);
    column->addWidget(btnForgetPasswd, 0, Qt::AlignRight);

    auto* middle = new QVBoxLayout(page);
    middle->setContentsMargins(0, 0, 0, 24);
    middle->addStretch();
    middle->addWidget(form, 0, Qt::AlignHCenter);
    middle->addStretch();

    QWidget::setTabOrder(username, password);
    QWidget::setTabOrder(password, remePwCheckBox);
    QWidget::setTabOrder(remePwCheckBox, autoLoginCheckBox);
    QWidget::setTabOrder(autoLoginCheckBox, btnLogin);
    QWidget::setTabOrder(btnLogin, btnForgetPasswd);
    QWidget::setTabOrder(btnForgetPasswd, backBtn_2);
    return page;
}
