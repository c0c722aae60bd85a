#pragma once

#include <QWidget>

class QFormLayout;

/// The settings page of the main window: which account and which device this is. GUI thread.
class WidgetSetting : public QWidget
{
    Q_OBJECT

public:
    explicit WidgetSetting(QWidget* parent);

    /// True while the page itself is changing the password: a session that the orchestrator then
    /// calls invalid is not treated as lost.
    bool isDisable401() const;

    /// A new attempt to connect starts: what the page was waiting for is over.
    void clearDisable401();

private:
    void initUI();
    void addRow(QFormLayout* form, const QString& title, const QString& value);

    bool m_Disable401 = false;
};
