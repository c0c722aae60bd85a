#pragma once

#include <QWidget>

class QGraphicsDropShadowEffect;
class QLabel;

/// The panel with the two findings of a network check. The main window places it and closes it
/// after a while; the user may close it before. GUI thread.
class WidgeDiagnoseResult : public QWidget
{
    Q_OBJECT

public:
    explicit WidgeDiagnoseResult(QWidget* parent = nullptr);

    /// Fills the two rows. `networkOK`: the network answers; `orchOK`: the orchestrator does.
    void setDiagnoseResult(bool networkOK, bool orchOK);

public slots:
    void on_pushBtnClose_clicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QGraphicsDropShadowEffect* effect;
    QLabel* m_networkIcon;
    QLabel* m_networkText;
    QLabel* m_orchIcon;
    QLabel* m_orchText;
};
