#include "widgets/Style.h"

#include "res/Pictures.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>
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

/// The sizes of a picture from their plain pixels (see renderart.cpp), none when there is no
/// picture of that name.
QVector<QPixmap> readPixels(const QString& base)
{
    initPictures();
    const QByteArray bytes =
        QResource(QStringLiteral(":/Ostrana/res/") + base + QStringLiteral(".argb"))
            .uncompressedData();
    constexpr int kHeader = 8;
    QVector<QPixmap> sizes;
    for (int from = 0; from + kHeader <= bytes.size();) {
        const auto* words = reinterpret_cast<const uchar*>(bytes.constData()) + from;
        const int width = int(qFromLittleEndian<quint32>(words));
        const int height = int(qFromLittleEndian<quint32>(words + 4));
        from += kHeader + width * height * 4;
        if (from > bytes.size())
            break;
        const QImage image(words + kHeader, width, height, width * 4,
                           QImage::Format_ARGB32_Premultiplied);
        sizes.append(QPixmap::fromImage(image.copy()));
    }
    return sizes;
}

/// The picture `base`, and on dense screens its double-size variant too.
QVector<QPixmap> readPicture(const QString& base)
{
    QVector<QPixmap> pixmaps = readPixels(base);
    if (qApp->devicePixelRatio() > 1) {
        for (QPixmap dense : readPixels(base + QStringLiteral("@2x"))) {
            dense.setDevicePixelRatio(2);
            pixmaps.append(dense);
        }
    }
    return pixmaps;
}

QIcon readPictureIcon(const QString& name)
{
    QIcon icon;
    for (const QPixmap& pixmap : readPicture(name.section(QLatin1Char('.'), 0, 0)))
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
