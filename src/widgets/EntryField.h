#pragma once

#include <QIcon>
#include <QLineEdit>

/// A field with a picture in front of its text. Its textEdited() also tells of a text that
/// assistive technology puts in, which a QLineEdit takes for a change by the program; what the
/// program writes with this class's own functions is no edit. GUI thread.
class EntryField : public QLineEdit
{
    Q_OBJECT

public:
    explicit EntryField(QWidget* parent = nullptr);

    /// The picture, 16 x 16, in its active state while the field has the focus: decoration, which
    /// assistive technology is not told of.
    void setPicture(const QIcon& picture);

    void setText(const QString& text);
    void clear() { setText(QString()); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void tellOfEdit(const QString& text);

    QIcon m_picture;
    bool m_writing = false; ///< the program is
    bool m_told = false;    ///< the change that comes next was told as an edit
};

/// A field of a form, 36 px high: `title` stands in it while it is empty and is its accessible
/// name, `picture` (see stateIcon()) stands before it.
EntryField* makeField(QWidget* parent, const char* name, const QString& title, const char* picture);

/// The same for a password.
EntryField* makePasswordField(QWidget* parent, const char* name, const QString& title);
