#include "app/Appearance.h"

#include "app/Platform.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPalette>
#include <QResource>
#include <QTranslator>

namespace appearance {

void prepare()
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, true);
    // At a logout from the desktop no window is closed before the process is: the user may call
    // it off.
    QGuiApplication::setFallbackSessionManagementEnabled(false);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

void applyPalette(QApplication& app)
{
    // A steady text cursor: a blinking one keeps an idle window from letting the processor sleep.
    QApplication::setCursorFlashTime(0);
    QPalette palette = QApplication::palette();
    const QColor text(QStringLiteral("#354052"));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Active, role, text);
    app.setPalette(palette);
}

void applyStyleSheet(QApplication& app)
{
    app.setStyleSheet(QStringLiteral("QLineEdit {background-color:white;}"
                                     "QPushButton {border:none;outline:none;}"));
}

void applyFont(QApplication& app)
{
    const QResource file(QStringLiteral(":/Ostrana/res/font/NotoSansSC-Regular.otf"));
    if (!file.isValid())
        return;
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(file.data()), int(file.size()));
    const int id = QFontDatabase::addApplicationFontFromData(bytes);
    const QStringList families = QFontDatabase::applicationFontFamilies(id);
    if (families.isEmpty())
        return;
    QFont font(families.first());
    font.setWeight(QFont::Normal);
    font.setPointSize(9);
    app.setFont(font);
}

void applyLanguage(QApplication& app, QTranslator& translator)
{
    if (!platform().isChinese())
        return;
    auto* qtTexts = new QTranslator(&translator);
    if (qtTexts->load(QStringLiteral(":/Ostrana/qtbase_zh_CN.qm")))
        app.installTranslator(qtTexts);
    if (translator.load(QStringLiteral(":/Ostrana/zh_CN.qm")))
        app.installTranslator(&translator);
}

} // namespace appearance
