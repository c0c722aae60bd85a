#include "widgets/Style.h"

#include "res/Pictures.h"

#include <QFile>
#include <QHash>
#include <QStyle>
#include <QVariant>
#include <QWidget>

namespace {

QString readStyle(const QString& name)
{
    QFile file(QStringLiteral(":/Ostrana/res/style/%1.qss").arg(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString picturePath(const QString& name)
{
    initPictures();
    return QStringLiteral(":/Ostrana/res/") + name;
}

} // namespace

QString styleSheetFor(const char* window)
{
    static QHash<QString, QString> sheets;
    const QString name = QLatin1String(window);
    auto sheet = sheets.constFind(name);
    if (sheet == sheets.constEnd()) {
        initPictures();
        const QString own = readStyle(name);
        sheet = sheets.insert(name, own.isEmpty() ? own : readStyle(QStringLiteral("common")) + own);
    }
    return *sheet;
}

void setRole(QWidget* widget, const char* role)
{
    widget->setProperty("role", QLatin1String(role));
    if (widget->testAttribute(Qt::WA_WState_Polished)) {
        widget->style()->unpolish(widget);
        widget->style()->polish(widget);
    }
}

QIcon pictureIcon(const QString& name)
{
    return QIcon(picturePath(name));
}

QIcon stateIcon(const QString& base)
{
    QIcon icon(picturePath(base + QStringLiteral(".png")));
    const QString on = picturePath(base + QStringLiteral("_on.png"));
    icon.addFile(on, {}, QIcon::Normal, QIcon::On);
    icon.addFile(on, {}, QIcon::Active, QIcon::On);
    icon.addFile(on, {}, QIcon::Active, QIcon::Off);
    return icon;
}
