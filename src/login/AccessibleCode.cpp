#include "login/AccessibleCode.h"

#include "login/VerifyNumInputWidget.h"

#include <QAccessibleWidget>

namespace {

// The code has no selection, and its text is either all there or being replaced.
class AccessibleCode : public QAccessibleWidget,
                       public QAccessibleTextInterface,
                       public QAccessibleEditableTextInterface
{
public:
    explicit AccessibleCode(VerifyNumInputWidget* code)
        : QAccessibleWidget(code, QAccessible::EditableText), m_code(code)
    {
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface*>(this);
        if (type == QAccessible::EditableTextInterface)
            return static_cast<QAccessibleEditableTextInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.editable = true;
        return state;
    }

    QString text(int start, int end) const override
    {
        return m_code->text().mid(start, end - start);
    }
    QString text(QAccessible::Text kind) const override { return QAccessibleWidget::text(kind); }
    int characterCount() const override { return m_code->text().size(); }
    int cursorPosition() const override { return characterCount(); }
    void setCursorPosition(int) override {}

    void selection(int, int* start, int* end) const override { *start = *end = 0; }
    int selectionCount() const override { return 0; }
    void addSelection(int, int) override {}
    void removeSelection(int) override {}
    void setSelection(int, int, int) override {}
    QRect characterRect(int) const override { return rect(); }
    int offsetAtPoint(const QPoint&) const override { return -1; }
    void scrollToSubstring(int, int) override {}
    QString attributes(int, int* start, int* end) const override
    {
        *start = 0;
        *end = characterCount();
        return {};
    }

    void deleteText(int start, int end) override { replaceText(start, end, QString()); }
    void insertText(int at, const QString& text) override { replaceText(at, at, text); }
    void replaceText(int start, int end, const QString& text) override
    {
        m_code->setText(m_code->text().replace(start, end - start, text));
    }

private:
    VerifyNumInputWidget* m_code;
};

QAccessibleInterface* describe(const QString&, QObject* object)
{
    auto* const code = qobject_cast<VerifyNumInputWidget*>(object);
    return code ? new AccessibleCode(code) : nullptr;
}

} // namespace

void describeCodesToAssistants()
{
    static const bool described = [] {
        QAccessible::installFactory(describe);
        return true;
    }();
    Q_UNUSED(described)
}
