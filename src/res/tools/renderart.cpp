// Draws the pictures of the resource tree from their SVG sources.
//
//     renderart LIST ART_DIR OUT_DIR
//
// Each line of LIST names a picture, its source, its size and, for sources drawn in
// "currentColor", the colour:
//
//     close.png     close.svg   16        #7f8fa4
//     upgrade.png   upgrade.svg 252x104
//     veltaro.ico   mark.svg    16,32,48
//
// A .png is also drawn at twice its size as NAME@2x.png, and both are also written as plain pixels,
// NAME.argb: width and height, 32 bits each, then the pixels of 32 bits, premultiplied, row by row,
// all little-endian. The windows take those: to read a picture file, Qt first loads every image
// plugin, which is a tenth of the time to the first window. The .png serve style sheets. An .ico is
// written as NAME.argb alone, its sizes one after the other. Sizes must keep the proportions of the
// source.

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSvgRenderer>
#include <QtEndian>
#include <QTextStream>

#include <cstdio>

namespace {

struct Picture
{
    QString name;
    QString source;
    QVector<QSize> sizes;
    QString colour;
};

[[noreturn]] void fail(const QString& what)
{
    std::fprintf(stderr, "renderart: %s\n", qPrintable(what));
    std::exit(1);
}

QVector<QSize> parseSizes(const QString& text, const QString& where)
{
    QVector<QSize> sizes;
    for (const QString& part : text.split(QLatin1Char(','))) {
        const QStringList sides = part.split(QLatin1Char('x'));
        const QSize size(sides.first().toInt(), sides.last().toInt());
        if (size.isEmpty() || sides.size() > 2)
            fail(where + QStringLiteral(": bad size ") + part);
        sizes.append(size);
    }
    return sizes;
}

QVector<Picture> readList(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        fail(path + QStringLiteral(": cannot be read"));
    QVector<Picture> pictures;
    QTextStream in(&file);
    for (int number = 1; !in.atEnd(); ++number) {
        const QString line = in.readLine().trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const QString where = QStringLiteral("%1:%2").arg(path).arg(number);
        const QStringList words =
            line.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
        if (words.size() < 3 || words.size() > 4)
            fail(where + QStringLiteral(": expected name, source, size and perhaps a colour"));
        pictures.append({words[0], words[1], parseSizes(words[2], where), words.value(3)});
    }
    return pictures;
}

QByteArray readSource(const Picture& picture, const QString& artDir)
{
    QFile file(artDir + QLatin1Char('/') + picture.source);
    if (!file.open(QIODevice::ReadOnly))
        fail(file.fileName() + QStringLiteral(": cannot be read"));
    QByteArray svg = file.readAll();
    const bool tinted = svg.contains("currentColor");
    if (tinted == picture.colour.isEmpty())
        fail(picture.name + QStringLiteral(": a colour goes with a source in currentColor"));
    return svg.replace("currentColor", picture.colour.toLatin1());
}

QImage draw(QSvgRenderer& svg, const QSize& size, const QString& name)
{
    const QSizeF box = svg.viewBoxF().size();
    if (qAbs(box.width() * size.height() - box.height() * size.width()) >
        0.02 * box.width() * size.height())
        fail(name + QStringLiteral(": the size would distort the source"));
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    svg.render(&painter);
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

QByteArray png(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG", 0);
    return bytes;
}

template <typename T>
void append(QByteArray& bytes, T value)
{
    const T little = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char*>(&little), int(sizeof(T)));
}

QByteArray pixels(const QImage& image)
{
    QByteArray bytes;
    append<quint32>(bytes, quint32(image.width()));
    append<quint32>(bytes, quint32(image.height()));
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            append<quint32>(bytes, qPremultiply(image.pixel(x, y)));
    }
    return bytes;
}

void write(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        fail(path + QStringLiteral(": cannot be written"));
}

void render(const Picture& picture, const QString& artDir, const QString& outDir)
{
    QSvgRenderer svg(readSource(picture, artDir));
    if (!svg.isValid())
        fail(picture.source + QStringLiteral(": not a drawing"));
    const QString path = outDir + QLatin1Char('/') + picture.name;
    const QString name = path.chopped(4);
    if (path.endsWith(QLatin1String(".ico"))) {
        QByteArray bytes;
        for (const QSize& size : picture.sizes)
            bytes += pixels(draw(svg, size, picture.name));
        write(name + QStringLiteral(".argb"), bytes);
    } else if (path.endsWith(QLatin1String(".png")) && picture.sizes.size() == 1) {
        for (int scale = 1; scale <= 2; ++scale) {
            const QImage image = draw(svg, picture.sizes.first() * scale, picture.name);
            const QString base = name + (scale == 2 ? QStringLiteral("@2x") : QString());
            write(base + QStringLiteral(".png"), png(image));
            write(base + QStringLiteral(".argb"), pixels(image));
        }
    } else {
        fail(picture.name + QStringLiteral(": neither a .png of one size nor an .ico"));
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4)
        fail(QStringLiteral("usage: renderart LIST ART_DIR OUT_DIR"));
    const QString artDir = QString::fromLocal8Bit(argv[2]);
    const QString outDir = QString::fromLocal8Bit(argv[3]);
    for (const Picture& picture : readList(QString::fromLocal8Bit(argv[1])))
        render(picture, artDir, outDir);
    return 0;
}
