#pragma once

#include <QLabel>

class QLineEdit;

namespace TQ {

class TipsPopupWidget;

/// The mark beside a field whose content is not good yet. The reason stands in a bubble while the
/// pointer is over the mark or the field has the keyboard, and is the field's accessible
/// description. GUI thread.
class WarningIcon : public QLabel
{
    Q_OBJECT

public:
    /// `name` and `popupName` become the object names of the mark and its bubble; both lie in
    /// `page`, as `field` does.
    WarningIcon(const char* name, const char* popupName, QLineEdit* field, QWidget* page);

    void warn(const QString& reason);
    void clear();
    bool isWarning() const { return m_warning; }

protected:
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void showState(const QString& reason);
    void refreshPopup();

    QLineEdit* m_field;
    TipsPopupWidget* m_popup;
    bool m_warning = false;
    bool m_isMouseEnter = false; ///< the pointer is over the mark
};

} // namespace TQ
