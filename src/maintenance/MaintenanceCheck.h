#pragma once

#include "orch/OrchUpgradeReply.h"

#include <QString>

#include <functional>

class QNetworkReply;
class QWidget;

/// The check that follows a reply with HTTP status 502: is the orchestrator under maintenance?

/// What a window does about the outcome. `reportHttpErr` and `showError` must be set.
struct MaintenanceCheck
{
    QString customerId;
    /// Renders the failure of the query itself.
    std::function<void(const QByteArray& body, QNetworkReply* reply)> reportHttpErr;
    /// Shows a text as an error in the window's top prompt.
    std::function<void(const QString& text)> showError;
    /// The query has answered; called before anything is shown.
    std::function<void(const OrchUpgradeReply& notice)> answered;
    /// The check has come to its end, before a dialog is opened: buttons may be restored.
    std::function<void()> done;
};

/// Asks for the current notice. One that is in progress is shown as a dialog over `window`, any
/// other answer as 6046; an orchestrator that does not know the query gives 6038. Nothing is
/// called once the window is gone. GUI thread.
void queryOrchUpgradeWhen502(QWidget* window, const MaintenanceCheck& check);

/// The log lines of a failed query, wherever it was sent from.
void logMaintenanceQueryFailed(int status);
