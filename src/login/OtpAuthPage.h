#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

/// The page on which an account is added to an authenticator app: by scanning a QR code, or by
/// copying username and key. It only shows and asks; see AuthenticatorStep. GUI thread.
class OtpAuthPage : public QWidget
{
    Q_OBJECT

public:
    explicit OtpAuthPage(QWidget* parent);

    /// What the QR code holds, a secret; empty takes the code away.
    void setCode(const QString& text);

signals:
    void instructionsWanted();
    void copyUsernameWanted();
    void copyKeyWanted();
    void nextWanted();
    void backWanted();

protected:
    void keyPressEvent(QKeyEvent* event) override; ///< Escape leads back
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QWidget* codeAndButtons();
    QPushButton* button(const char* name, const char* role, const QString& text,
                        void (OtpAuthPage::*wanted)());
    void drawCode();

    QPushButton* instructionBtn;
    QPushButton* copyUsernameBtn;
    QPushButton* copyKeyBtn;
    QPushButton* nextBtn;
    QPushButton* backBtn;
    QLabel* qrLabel;
    QLabel* qrBottomLabel;
    QString m_code;       ///< secret
    qreal m_drawnFor = 0; ///< the pixel ratio that the picture was made for
};
