#include "branding/LogoPicture.h"

#include <QBuffer>
#include <QByteArray>
#include <QImageReader>

namespace {

// Named to the reader, so that no other picture format of the machine is tried on foreign bytes.
QByteArray formatOf(const QByteArray& file)
{
    if (file.startsWith("\x89PNG\r\n\x1a\n"))
        return "png";
    return file.startsWith("\xff\xd8\xff") ? "jpeg" : QByteArray();
}

bool fits(const QSize& size, int most)
{
    return !size.isEmpty() && size.width() <= most && size.height() <= most;
}

} // namespace

namespace logopicture {

QPixmap read(const QByteArray& file)
{
    const QByteArray format = formatOf(file);
    if (format.isEmpty() || file.size() > kMostBytes)
        return {};
    QBuffer buffer;
    buffer.setData(file);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    if (!fits(reader.size(), kMostPixels))
        return {};
    return QPixmap::fromImage(reader.read());
}

QPixmap fitted(const QPixmap& picture, const QSize& room, qreal ratio)
{
    if (picture.isNull())
        return picture;
    const QSizeF natural = QSizeF(picture.size()) / picture.devicePixelRatio();
    const bool larger = natural.width() > room.width() || natural.height() > room.height();
    const QSizeF shown = larger ? natural.scaled(room, Qt::KeepAspectRatio) : natural;
    const QSize pixels = (shown * ratio).toSize().boundedTo(picture.size()).expandedTo(QSize(1, 1));
    QPixmap result = picture.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    result.setDevicePixelRatio(qMax(pixels.width() / shown.width(), 0.01));
    return result;
}

} // namespace logopicture
