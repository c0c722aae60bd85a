#pragma once

#include <QtGlobal>

class QCheckBox;
class QDialog;
class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;
class QWidget;

/// The widgets of the login window and their layout; behaviour is DlgLogin's. Each widget carries
/// its member's name as its object name.
class DlgLoginUi
{
    Q_DISABLE_COPY(DlgLoginUi)

public:
    /// Builds everything into `window`, which owns it.
    explicit DlgLoginUi(QDialog* window);

    QStackedWidget* stackedWidget;
    QPushButton* btnClose;
    QLabel* versionLabel;

    // Customer page
    QLineEdit* customerId;
    QPushButton* btnContinue;

    // Login page
    QLabel* customerIdLabel;
    QLineEdit* username;
    QLineEdit* password;
    QCheckBox* remePwCheckBox;
    QCheckBox* autoLoginCheckBox;
    QPushButton* btnLogin;
    QPushButton* btnForgetPasswd;
    QPushButton* backBtn_2;

    /// Swaps a field's leading icon between its plain and its focused variant.
    static void showFieldIcon(QLineEdit* field, bool focused);

private:
    QWidget* brandPanel(QDialog* window);
    QWidget* customerPage(QDialog* window);
    QWidget* loginPage(QDialog* window);
};
