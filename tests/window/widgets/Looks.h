#pragma once

#include "app/Appearance.h"
#include "app/Platform.h"
#include "res/Font.h"
#include "res/Pictures.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QTranslator>

/// What the window tests of small widgets share: the program's appearance, and checks that hold
/// for every one of them.
namespace looks {

/// Gives the test the program's font, colours and resources. Call once.
inline void prepare()
{
    initPictures();
    initFont();
    appearance::applyPalette(*qApp);
    appearance::applyStyleSheet(*qApp);
    appearance::applyFont(*qApp);
}

/// The interface language for as long as the object lives.
class Language
{
public:
    explicit Language(bool chinese)
    {
        platform().isChinese = [chinese] { return chinese; };
        appearance::applyLanguage(*qApp, m_translator);
    }
    ~Language()
    {
        QCoreApplication::removeTranslator(&m_translator);
        platform().isChinese = [] { return false; };
    }

private:
    Q_DISABLE_COPY(Language)
    QTranslator m_translator;
};

/// The visible labels and buttons whose text does not fit into them.
inline QStringList clipped(QWidget* window)
{
    QStringList names;
    for (QLabel* label : window->findChildren<QLabel*>()) {
        if (!label->isVisible() || label->text().isEmpty())
            continue;
        const int height =
            label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
        const int width = label->wordWrap() ? 0 : label->sizeHint().width();
        if (label->height() < height || label->width() < width)
            names.append(label->objectName() + QStringLiteral(": ") + label->text());
    }
    for (QAbstractButton* button : window->findChildren<QAbstractButton*>()) {
        const int needed = button->fontMetrics().horizontalAdvance(button->text());
        if (button->isVisible() && !button->text().isEmpty() && button->width() < needed)
            names.append(button->objectName() + QStringLiteral(": ") + button->text());
    }
    return names;
}

/// The visible controls that a screen reader could not name, or that the keyboard cannot reach.
inline QStringList unnamed(QWidget* window)
{
    QStringList names;
    for (QAbstractButton* button : window->findChildren<QAbstractButton*>()) {
        if (!button->isVisible())
            continue;
        const QAccessibleInterface* access = QAccessible::queryAccessibleInterface(button);
        if (!access || access->text(QAccessible::Name).isEmpty() ||
            !(button->focusPolicy() & Qt::TabFocus) || button->objectName().isEmpty())
            names.append(button->objectName() + QLatin1Char('/') + button->text());
    }
    return names;
}

} // namespace looks
