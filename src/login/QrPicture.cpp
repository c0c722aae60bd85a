#include "login/QrPicture.h"

#include "orch/QrSvg.h"

#include <qrcodegen.hpp>

#include <QPainter>
#include <QSvgRenderer>

#include <optional>
#include <stdexcept>

namespace {

constexpr int kBorder = 1; // modules; the page around it is as light

constexpr int kMostBytes = 2953; // in the largest QR code there is

std::optional<qrcodegen::QrCode> encoded(const QByteArray& text)
{
    if (text.isEmpty() || text.size() > kMostBytes)
        return std::nullopt;
    try {
        return qrcodegen::QrCode::encodeText(text.constData(), qrcodegen::QrCode::Ecc::LOW);
    } catch (const std::length_error&) {
        return std::nullopt;
    }
}

} // namespace

QImage qrPicture(const QString& text, int side, qreal pixelRatio)
{
    const std::optional<qrcodegen::QrCode> qr = encoded(text.toUtf8());
    if (!qr)
        return QImage();
    const int pixels = qRound(side * pixelRatio);
    const int modules = qr->getSize() + 2 * kBorder;
    const int used = pixels < modules ? pixels : pixels - pixels % modules;

    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    const int left = (pixels - used) / 2;
    QSvgRenderer(Util::qrCode2SvgString(*qr, kBorder).toUtf8())
        .render(&painter, QRectF(left, left, used, used));
    painter.end();
    image.setDevicePixelRatio(pixelRatio);
    return image;
}
