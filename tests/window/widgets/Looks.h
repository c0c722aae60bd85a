#pragma once

#include "app/Appearance.h"
#include "app/Platform.h"
#include "res/Font.h"
#include "res/Pictures.h"
#include "support/Rows.h"

#include <QtWidgets>

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
        const bool wraps = label->wordWrap();
        const int height =
            wraps ? label->heightForWidth(label->width()) : label->sizeHint().height();
        const bool fits =
            label->height() >= height && (wraps || label->width() >= label->sizeHint().width());
        if (label->isVisible() && !label->text().isEmpty() && !fits)
            names.append(label->objectName() + ": " + label->text());
    }
    for (QAbstractButton* button : window->findChildren<QAbstractButton*>()) {
        const int needed = button->fontMetrics().horizontalAdvance(button->text());
        if (button->isVisible() && button->width() < needed)
            names.append(button->objectName() + ": " + button->text());
    }
    return names;
}

/// The visible controls that a screen reader could not name, or that the keyboard cannot reach.
inline QStringList unnamed(QWidget* window)
{
    QStringList names;
    for (QAbstractButton* button : window->findChildren<QAbstractButton*>()) {
        const QAccessibleInterface* access = QAccessible::queryAccessibleInterface(button);
        if (button->isVisible() &&
            (!access || access->text(QAccessible::Name).isEmpty() ||
             !(button->focusPolicy() & Qt::TabFocus) || button->objectName().isEmpty()))
            names.append(button->objectName() + '/' + button->text());
    }
    return names;
}

/// What the two links of `text` open when they are reached by Tab and opened by Return.
inline QStringList opened(QWidget* text)
{
    QStringList addresses;
    platform().openUrl = [&addresses](const QUrl& url) {
        addresses.append(url.toString());
        return true;
    };
    QApplication::setActiveWindow(text->window());
    text->setFocus();
    for (int link = 0; link < 2; ++link) {
        QTest::keyClick(text, Qt::Key_Tab);
        QTest::keyClick(text, Qt::Key_Return);
    }
    platform().openUrl = [](const QUrl&) { return false; };
    return addresses;
}

} // namespace looks
