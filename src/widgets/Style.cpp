#include "widgets/Style.h"

#include "res/Pictures.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QImageReader>
#include <QPixmap>
#include <QResource>
#include <QStyle>
#include <QtEndian>
#include <QTextDocument>
#include <QVariant>
#include <QVector>
#include <QWidget>

namespace {

QString readStyle(const QString& name)
{
    QFile file(QStringLiteral(":/Ostrana/res/style/%1.qss").arg(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The images of an icon file.
QVector<QPixmap> readIconFile(const QString& name)
{
    initPictures();
    QImageReader reader(QStringLiteral(":/Ostrana/res/") + name, "ico");
    reader.setAutoDetectImageFormat(false);
    QVector<QPixmap> pixmaps;
    do {
        QImage image = reader.read();
        if (!image.isNull())
            pixmaps.append(QPixmap::fromImage(std::move(image)));
    } while (reader.jumpToNextImage());
    return pixmaps;
}

/// A picture from its plain pixels (see renderart.cpp), null when there is none of that name.
QPixmap readPixels(const QString& base)
{
    initPictures();
    const QByteArray bytes =
        QResource(QStringLiteral(":/Ostrana/res/") + base + QStringLiteral(".argb"))
            .uncompressedData();
    constexpr int kHeader = 8;
    if (bytes.size() < kHeader)
        return {};
    const auto* words = reinterpret_cast<const uchar*>(bytes.constData());
    const int width = int(qFromLittleEndian<quint32>(words));
    const int height = int(qFromLittleEndian<quint32>(words + 4));
    if (bytes.size() != kHeader + width * height * 4)
        return {};
    const QImage image(words + kHeader, width, height, width * 4,
                       QImage::Format_ARGB32_Premultiplied);
    return QPixmap::fromImage(image.copy());
}

/// The picture `base`, and on dense screens its double-size variant too.
QVector<QPixmap> readPicture(const QString& base)
{
    QVector<QPixmap> pixmaps{readPixels(base)};
    if (qApp->devicePixelRatio() > 1) {
        QPixmap dense = readPixels(base + QStringLiteral("@2x"));
        dense.setDevicePixelRatio(2);
        pixmaps.append(dense);
    }
    return pixmaps;
}

QIcon readPictureIcon(const QString& name)
{
    QIcon icon;
    const bool png = name.endsWith(QLatin1String(".png"));
    for (const QPixmap& pixmap : png ? readPicture(name.chopped(4)) : readIconFile(name))
        icon.addPixmap(pixmap);
    return icon;
}

QIcon readStateIcon(const QString& base)
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

/// The icon of that name, read when it is first asked for: each is one set of pixels, however often
/// a window or a state shows it.
QIcon kept(const QString& name, QIcon (*read)(const QString&))
{
    static QHash<QString, QIcon> icons;
    auto icon = icons.constFind(name);
    if (icon == icons.constEnd()) {
        if (icons.isEmpty())
            qAddPostRoutine([] { icons.clear(); }); // pixmaps go before the application object
        icon = icons.insert(name, read(name));
    }
    return *icon;
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

void setPlainToolTip(QWidget* widget, const QString& text)
{
    // Tool tips have no text format: one that looks like markup is shown as such.
    widget->setToolTip(
        Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) : text);
    widget->setAccessibleDescription(text);
}

QIcon pictureIcon(const QString& name)
{
    return kept(name, &readPictureIcon);
}

QIcon stateIcon(const QString& base)
{
    return kept(base, &readStateIcon);
}
