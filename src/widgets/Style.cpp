#include "widgets/Style.h"

#include "res/Pictures.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QImageReader>
#include <QPixmap>
#include <QStyle>
#include <QVariant>
#include <QVector>
#include <QWidget>

namespace {

QString readStyle(const QString& name)
{
    QFile file(QStringLiteral(":/Ostrana/res/style/%1.qss").arg(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Reads the images of one file without asking all image plugins which of them would like to.
QVector<QPixmap> readPixmaps(const QString& name, const char* format)
{
    initPictures();
    QImageReader reader(QStringLiteral(":/Ostrana/res/") + name, format);
    reader.setAutoDetectImageFormat(false);
    QVector<QPixmap> pixmaps;
    do {
        QImage image = reader.read();
        if (!image.isNull())
            pixmaps.append(QPixmap::fromImage(std::move(image)));
    } while (reader.jumpToNextImage());
    return pixmaps;
}

/// The picture `base`.png, and on dense screens its double-size variant too.
QVector<QPixmap> readPicture(const QString& base)
{
    QVector<QPixmap> pixmaps = readPixmaps(base + QLatin1String(".png"), "png");
    if (qApp->devicePixelRatio() > 1) {
        for (QPixmap dense : readPixmaps(base + QLatin1String("@2x.png"), "png")) {
            dense.setDevicePixelRatio(2);
            pixmaps.append(dense);
        }
    }
    return pixmaps;
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
        sheet =
            sheets.insert(name, own.isEmpty() ? own : readStyle(QStringLiteral("common")) + own);
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
    QIcon icon;
    const bool png = name.endsWith(QLatin1String(".png"));
    for (const QPixmap& pixmap : png ? readPicture(name.chopped(4)) : readPixmaps(name, "ico"))
        icon.addPixmap(pixmap);
    return icon;
}

QIcon stateIcon(const QString& base)
{
    QIcon icon;
    for (const QPixmap& pixmap : readPicture(base))
        icon.addPixmap(pixmap, QIcon::Normal, QIcon::Off);
    for (const QPixmap& pixmap : readPicture(base + QLatin1String("_on"))) {
        icon.addPixmap(pixmap, QIcon::Normal, QIcon::On);
        icon.addPixmap(pixmap, QIcon::Active, QIcon::On);
        icon.addPixmap(pixmap, QIcon::Active, QIcon::Off);
    }
    return icon;
}
