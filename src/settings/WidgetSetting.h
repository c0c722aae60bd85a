#pragma once

#include "orch/OrchReply.h"

#include <QWidget>

class EntryField;
class FoldableWidget;
class PasswordChange;
class QFormLayout;
class QLabelAnim;
class QPushButton;
enum class SessionEnd;

/// The settings page of the main window, three sections that are folded at first: which account
/// and which device this is, a change of the password, and the network diagnosis. GUI thread.
class WidgetSetting : public QWidget
{
    Q_OBJECT

public:
    explicit WidgetSetting(QWidget* parent);

    /// True while the page itself is changing the password: a session that the orchestrator then
    /// calls invalid is not treated as lost.
    bool isDisable401() const { return m_Disable401; }

    /// What the page was waiting for is over: a new attempt to connect starts, or a diagnosis has
    /// ended.
    void clearDisable401() { m_Disable401 = false; }

    /// Empties the password fields.
    void clearPassword();

    void setChangePassWidgetVisible(bool visible);

    /// The diagnosis that the user has started is over, and another can be.
    void resetDiagnosis();

signals:
    /// A change is about to be checked and sent: what the prompt shows is outdated.
    void submitting();
    void error(const QString& text);
    /// The change could not begin and is to be rendered.
    void reportHttpErr(const OrchReply& reply);
    /// The same with HTTP status 502.
    void badGateway();
    void passwordChanged();
    /// The orchestrator calls the session invalid; `end` is None when the user is only told so.
    void sessionInvalid(SessionEnd end);
    void diagnosisWanted();
    /// The user has opened this section, and its place is laid out.
    void sectionOpened(QWidget* section);

protected:
    void showEvent(QShowEvent* event) override;

private slots:
    void onSubmit();
    void onStartDiagnosis();

private:
    void initUI();
    void buildAccount();
    void buildPasswordChange();
    void buildDiagnosis();
    void netReply(const OrchReply& reply);
    void onKeyRefused(const OrchReply& reply);
    void setUnderWay(bool underWay);

    FoldableWidget* m_accountWidget;
    FoldableWidget* m_changePassWidget;
    FoldableWidget* m_diagnoseWidget;
    EntryField* m_oldEdit;
    EntryField* m_newEdit;
    EntryField* m_confirmEdit;
    QPushButton* m_saveBtn;
    QPushButton* m_startBtn;
    QLabelAnim* m_anim; ///< over the start button
    PasswordChange* m_change;
    bool m_foldOnce = true; ///< the sections are still to be folded at the first show
    bool m_Diagnosising = false;
    bool m_Disable401 = false;
};
