#include "orch/QrSvg.h"

#include <qrcodegen.hpp>

#include <QStringList>
#include <QtDebug>

#include <limits>

namespace {

/// One closed unit square for every dark module.
QString darkModules(const qrcodegen::QrCode& qr, int border)
{
    QStringList squares;
    for (int y = 0; y < qr.getSize(); ++y) {
        for (int x = 0; x < qr.getSize(); ++x) {
            if (qr.getModule(x, y))
                squares.append(QStringLiteral("M%1,%2h1v1h-1z").arg(x + border).arg(y + border));
        }
    }
    return squares.join(QLatin1Char(' '));
}

} // namespace

QString Util::qrCode2SvgString(const qrcodegen::QrCode& qr, int border)
{
    constexpr int kMost = std::numeric_limits<int>::max();
    if (border < 0) {
        qCritical("Border must be non-negative");
        return QString();
    }
    if (border > kMost / 2 || border * 2 > kMost - qr.getSize()) {
        qCritical("Border too large");
        return QString();
    }
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                          "<!DOCTYPE svg PUBLIC \"-//W3C//DTD SVG 1.1//EN\" "
                          "\"http://www.w3.org/Graphics/SVG/1.1/DTD/svg11.dtd\">\n"
                          "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" "
                          "viewBox=\"0 0 %1 %1\" stroke=\"none\">\n"
                          "\t<rect width=\"100%\" height=\"100%\" fill=\"#FFFFFF\"/>\n"
                          "\t<path d=\"%2\" fill=\"#000000\"/>\n"
                          "</svg>\n")
        .arg(QString::number(qr.getSize() + border * 2), darkModules(qr, border));
}
