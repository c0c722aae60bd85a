#include "widgets/WidgetParts.h"

#include "widgets/Style.h"

#include <QLabel>
#include <QPushButton>

QLabel* makeLabel(QWidget* parent, const char* name, const char* role, const QString& text)
{
    auto* label = named(new QLabel(text, parent), name);
    label->setTextFormat(Qt::PlainText);
    setRole(label, role);
    return label;
}

QLabel* makePicture(QWidget* parent, const char* name, const QString& file, const QSize& size)
{
    auto* label = named(new QLabel(parent), name);
    label->setPixmap(pictureIcon(file).pixmap(size));
    return label;
}

QPushButton* makeButton(QWidget* parent, const char* name, const char* role, const QString& text)
{
    auto* button = named(new QPushButton(text, parent), name);
    setRole(button, role);
    return button;
}

QPushButton* makeDialogButton(QWidget* parent, const char* name, const char* role,
                              const QString& text)
{
    QPushButton* button = makeButton(parent, name, role, text);
    button->setCursor(Qt::PointingHandCursor);
    return button;
}
