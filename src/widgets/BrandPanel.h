#pragma once

#include <QFrame>
#include <QPixmap>

/// The coloured panel at the side of a window: the product's mark and name over a picture of a
/// network. It is put together from a gradient and two small pictures, because one large picture
/// would take longer to read than the rest of the window to build.
class BrandPanel : public QFrame
{
    Q_OBJECT

public:
    explicit BrandPanel(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap m_mark;
    QPixmap m_network;
};
