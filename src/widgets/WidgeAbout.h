#pragma once

#include <QWidget>

class QLabel;
class QLabelAnim;
class QPushButton;

/// The about page: product, version, maker, legal links and the state of the version check.
/// GUI thread.
class WidgeAbout : public QWidget
{
    Q_OBJECT

public:
    explicit WidgeAbout(QWidget* parent = nullptr);

    /// Shows the outcome of a check: `version` and whether to offer it, or that the check failed.
    void showVersion(const QString& version, bool showNew, bool failed);
    /// Shows that a check runs: spinner on, version button hidden.
    void startCheck();
    void startAnim();
    void stopAnim();
    /// Remembers the newest known version without showing it.
    void setNewVersion(const QString& version);

public slots:
    void on_btnNewVersion_clicked();

signals:
    /// The user asked for the offered version.
    void newVersionRequested();

private:
    QWidget* makeVersionRow();
    QLabel* makeLinks();

    bool m_ShowNewVersion = false;
    QString m_NewVersion;
    QLabelAnim* m_rotatePng;
    QPushButton* m_btnNewVersion;
    QLabel* m_upgradeIcon;
};
