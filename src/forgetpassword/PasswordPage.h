#pragma once

#include "app/Attempt.h"
#include "orch/OrchReply.h"
#include "widgets/WidgetTopPrompt.h"

#include <QVector>
#include <QWidget>

class EntryField;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QPushButton;

namespace TQ {

class WarningIcon;

/// What the login window's password pages have in common: the form, the keyboard's ways through
/// it, and that nothing outlives a visit: when the page is left, by any way, what was typed and
/// received is forgotten, and answers that come later are dropped. GUI thread.
///
/// Return in a field presses the form's button, or goes to the next empty field while that cannot
/// be pressed. Escape leads back.
class PasswordPage : public QWidget
{
    Q_OBJECT

signals:
    void backBtnClicked();
    /// A request has failed and is to be rendered.
    void reportNetworkErr(const OrchReply& reply);
    /// A request was answered with 502; whether a maintenance is the reason is of interest as long
    /// as `visit` lasts.
    void badGateway(const Attempt& visit);
    /// A message for the window's top prompt.
    void told(WidgetTopPrompt::PROMPT_TYPE type, const QString& text);
    /// The user has started something: earlier messages no longer count.
    void submitted();

protected:
    PasswordPage(const char* name, QWidget* parent);

    /// The page is shown, or about to be left. What belongs to the visit that ends is dropped
    /// after the latter.
    virtual void enter() = 0;
    virtual void leave() = 0;

    // The form, from top to bottom
    QHBoxLayout* addTitle(QLabel* title);
    void addText(QLabel* label, const QString& text);
    void addField(EntryField* field, WarningIcon* warning = nullptr);
    void addField(EntryField* field, QPushButton* beside);
    void addSubmit(QPushButton* button);

    EntryField* makeField(const char* name, const QString& title, const char* icon);
    EntryField* makePasswordField(const char* name, const QString& title);

    /// Replaces what addText() showed. Of a text that takes more room than the form has, the rest
    /// is in the tool tip.
    static void setFormText(QLabel* label, const QString& text);

    /// Reports a failed request, or asks for the maintenance check.
    void fail(const OrchReply& reply);
    void warn(const QString& text) { emit told(WidgetTopPrompt::SHOW_WARNING, text); }

    /// Shows a notice over the window. False when the page has gone or was left meanwhile.
    bool showTip(const QString& text);

    void focusFirstEmpty();

    Attempt m_visit;

    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    EntryField* adopt(EntryField* field);
    void addWide(QWidget* widget);
    void onReturn(EntryField* field);
    void keepFocus();

    QGridLayout* m_form;
    QVector<EntryField*> m_fields; ///< that take input, from top to bottom
    QPushButton* m_submit = nullptr;
    EntryField* m_lastEdited = nullptr;
};

} // namespace TQ
