#pragma once

#include <QPixmap>
#include <QSize>

class QByteArray;

/// Pictures that a customer provides.
namespace logopicture {

constexpr qint64 kMostBytes = 8 << 20;
constexpr int kMostPixels = 4096; ///< a side

/// Reads a PNG or JPEG file, told by its content; null when it is neither, broken, or larger than
/// the bounds. GUI thread.
QPixmap read(const QByteArray& file);

/// The picture as it is shown at a device pixel ratio: a pixel of it is a pixel of the layout,
/// unless it would exceed `room`, into which it is then fitted, its proportions kept. It keeps as
/// much of its sharpness as the screen can show. Null stays null. GUI thread.
QPixmap fitted(const QPixmap& picture, const QSize& room, qreal ratio);

} // namespace logopicture
