#pragma once

#include "widgets/EntryField.h"

#include <QCoreApplication>

class QCheckBox;
class QDialog;
class QLabel;
class QPushButton;
class QStackedWidget;
class QWidget;

/// The widgets of the login window and their layout; behaviour is DlgLogin's. Each widget carries
/// its member's name as its object name.
class DlgLoginUi
{
    Q_DISABLE_COPY(DlgLoginUi)
    Q_DECLARE_TR_FUNCTIONS(DlgLogin)

public:
    /// Builds everything into `window`, which owns it.
    explicit DlgLoginUi(QDialog* window);

    QStackedWidget* stackedWidget;
    QPushButton* btnClose;
    QLabel* versionLabel;

    // Customer page
    EntryField* customerId;
    QPushButton* btnContinue;

    // Login page
    QLabel* customerIdLabel;
    EntryField* username;
    EntryField* password;
    QCheckBox* remePwCheckBox;
    QCheckBox* autoLoginCheckBox;
    QPushButton* btnLogin;
    QPushButton* btnForgetPasswd;
    QPushButton* backBtn_2;

    /// Makes `page` the one with this number; the window owns it.
    void setPage(int number, QWidget* page);

private:
    QWidget* brandPanel(QDialog* window);
    QWidget* customerPage(QDialog* window);
    QWidget* loginPage(QDialog* window);
};
