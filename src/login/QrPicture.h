#pragma once

#include <QImage>
#include <QString>

/// A text as a QR code of `side` x `side` device-independent pixels, for a screen with this pixel
/// ratio, which the image carries. Every module is a whole number of device pixels where there is
/// room for that, so that the edges are sharp; what is left over stays transparent around it. Null
/// for a text that no QR code can hold. Pure; any thread.
QImage qrPicture(const QString& text, int side, qreal pixelRatio);
