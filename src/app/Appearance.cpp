#include "app/Appearance.h"

#include "app/Platform.h"

#include <QApplication>
#include <QFontDatabase>
#include <QLibraryInfo>
#include <QPalette>
#include <QResource>
#include <QTranslator>

namespace appearance {

void prepare()
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, true);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    // The windows are painted without OpenGL; loading its drivers would double the time to the
    // first window and the memory.
    if (!qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION"))
        qputenv("QT_XCB_GL_INTEGRATION", "none");
    // Nobody asks which network the machine is on; looking for changes would wake an idle client.
    qputenv("QT_BEARER_POLL_TIMEOUT", "2000000000"); // ms
    // Qt's own plugin folder alone: the program's folder may be writable for others.
    QCoreApplication::setLibraryPaths({QLibraryInfo::location(QLibraryInfo::PluginsPath)});
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
    if (platform().isChinese() && translator.load(QStringLiteral(":/Ostrana/zh_CN.qm")))
        app.installTranslator(&translator);
}

} // namespace appearance
