#pragma once

#include <QPushButton>

#include <memory>

class BackBtnProxyStyle;

/// A button that leads back to the page before. It paints through BackBtnProxyStyle itself: a
/// style set on a widget would lose against the application's style sheet.
class BackButton : public QPushButton
{
    Q_OBJECT

public:
    explicit BackButton(const QString& text, QWidget* parent = nullptr);
    ~BackButton() override;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::unique_ptr<BackBtnProxyStyle> m_style;
};
