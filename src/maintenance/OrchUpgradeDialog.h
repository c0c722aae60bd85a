#pragma once

#include "maintenance/MaintenanceNotice.h"
#include "widgets/OtpBaseDlg.h"

class QLabel;
class QTextEdit;

/// The notice of a maintenance of the service, ahead or in progress, with both its times.
/// GUI thread.
class OrchUpgradeDialog : public OtpBaseDlg
{
    Q_OBJECT

public:
    OrchUpgradeDialog(NoticeType type, QWidget* parent);
    ~OrchUpgradeDialog() override;

    /// Replaces the built-in heading; plain text.
    void setTitle(const QString& title);

    /// The text below the heading, as HTML; written anew when the dialog is shown.
    void setContent(const QString& content);

    /// Milliseconds since 1970-01-01 UTC.
    void setStartEndTime(long long start, long long end);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QLabel* m_titleLabel;
    QTextEdit* m_contentEdit;
    long long m_startTime = 0;
    long long m_endTime = 0;
    NoticeType m_noticeType;
};

/// Runs the notice modally over `window`, with the orchestrator's own heading when the notice
/// names no template.
void showOrchUpgradeDialog(QWidget* window, const OrchUpgradeReply& notice, NoticeType type);
