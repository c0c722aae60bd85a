#pragma once

#include <QIcon>
#include <QProxyStyle>

/// Draws push buttons as back buttons: a small arrow at the left edge and the text beside it,
/// without a frame. Used through BackButton.
class BackBtnProxyStyle : public QProxyStyle
{
    Q_OBJECT

public:
    BackBtnProxyStyle();

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;

private:
    QIcon m_arrow;
};
