#pragma once

#include <QWidget>

class QPushButton;
class VerifyNumInputWidget;

/// The page that asks for the six digits of the authenticator. GUI thread.
class OtpVerifyPage : public QWidget
{
    Q_OBJECT

public:
    explicit OtpVerifyPage(QWidget* parent);

    /// "Lost Your Phone?" comes back by itself when the page is left.
    void setLostPhoneBtnVisible(bool visible);

    /// False while a code is on its way: neither another one nor a recovery can be begun.
    void setVerifyBtnEnabled(bool enabled);

    /// Empties the cells, for another try.
    void clearVerifyNumber();

signals:
    /// The code, a secret, is to be submitted.
    void verifyBtnClicked(const QString& code);
    /// Verify was pressed before all digits were there.
    void codeMissing();
    void backBtnClicked();
    void lostPhoneBtnPressed();

protected:
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override; ///< Escape leads back
    void showEvent(QShowEvent* event) override;

private:
    void layOut(QPushButton* back);
    void verify();

    VerifyNumInputWidget* m_verifyNumber;
    QPushButton* m_verifyBtn;
    QPushButton* m_lostPhoneBtn;
};
