#include "widgets/EntryField.h"

#include "widgets/Style.h"
#include "widgets/WidgetParts.h"

#include <QPainter>

namespace {

constexpr int kPictureSize = 16;
constexpr int kPictureLeft = 7;
constexpr int kTextLeft = 26;
constexpr int kFormHeight = 36;

} // namespace

EntryField::EntryField(QWidget* parent) : QLineEdit(parent)
{
    // An edit by hand is told first as an edit and then as a change.
    connect(this, &QLineEdit::textEdited, this, [this] { m_told = true; });
    connect(this, &QLineEdit::textChanged, this, &EntryField::tellOfEdit);
}

void EntryField::setPicture(const QIcon& picture)
{
    m_picture = picture;
    setTextMargins(kTextLeft, 0, 0, 0);
    update();
}

void EntryField::setText(const QString& text)
{
    m_writing = true;
    QLineEdit::setText(text);
    m_writing = false;
}

void EntryField::tellOfEdit(const QString& text)
{
    if (!m_told && !m_writing)
        emit textEdited(text);
    m_told = false;
}

void EntryField::paintEvent(QPaintEvent* event)
{
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    m_picture.paint(&painter, kPictureLeft, 0, kPictureSize, height(), Qt::AlignCenter,
                    hasFocus() ? QIcon::Active : QIcon::Normal);
}

EntryField* makeField(QWidget* parent, const char* name, const QString& title, const char* picture)
{
    auto* field = named(new EntryField(parent), name);
    setRole(field, "field");
    field->setPlaceholderText(title);
    field->setAccessibleName(title);
    field->setFixedHeight(kFormHeight);
    field->setPicture(stateIcon(QLatin1String(picture)));
    return field;
}

EntryField* makePasswordField(QWidget* parent, const char* name, const QString& title)
{
    EntryField* field = makeField(parent, name, title, "password");
    field->setEchoMode(QLineEdit::Password);
    return field;
}
