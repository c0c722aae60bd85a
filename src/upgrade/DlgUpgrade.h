#pragma once

#include <QDialog>
#include <QString>

#include <functional>

class OrchReply;
class QLabel;
class QNetworkAccessManager;
class QPushButton;

/// Breaks a text so that no line is wider than `width`, by `lineWidth`: a line break stands before
/// the character at which a line would become wider. Line breaks of the text stay.
QString brokenToWidth(const QString& text, int width,
                      const std::function<int(const QString&)>& lineWidth);

/// The offer of a new version: Upgrade hands over to the installer, Later and the close button put
/// the offer off until tomorrow, Skip refuses the version for good. It also carries the main
/// window's version check. GUI thread.
class DlgUpgrade : public QDialog
{
    Q_OBJECT

public:
    /// Result code of a skipped version, beside QDialog::Accepted and QDialog::Rejected.
    static constexpr int kSkipped = 774;

    /// With `forwardReplies` the answers to checkUpgrade() are passed on by checkAnswered().
    DlgUpgrade(QWidget* parent, bool forwardReplies);
    ~DlgUpgrade() override;

    /// `force` leaves only the Upgrade button.
    void setSettings(const QString& note, const QString& version, bool force);
    /// Address of the installer package.
    void setUrl(const QString& url);

    /// Asks the upgrade service. `byUser` travels with the request as its mark.
    void checkUpgrade(bool byUser);

signals:
    /// The service has answered, or has failed to; OrchReply::userData is `byUser`.
    void checkAnswered(const OrchReply& reply);

public slots:
    void on_btnUpgrade_clicked();
    void on_btnLater_clicked();
    void on_btnSkip_clicked();
    void on_btnClose_clicked();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QPushButton* button(const char* name, const QString& text, const char* role, const QRect& place,
                        void (DlgUpgrade::*slot)());
    void buildNote();

    QNetworkAccessManager* m_NetMgr;
    QWidget* m_Parent;
    bool m_forwardReplies;
    QString m_NewVersion;
    QString m_Url;
    QLabel* m_labelTitle;
    QLabel* m_labelContent;
    QPushButton* m_btnUpgrade;
    QPushButton* m_btnLater;
    QPushButton* m_btnSkip;
};
