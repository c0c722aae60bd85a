#pragma once

#include <QString>

namespace qrcodegen {
class QrCode;
}

/// QR codes as pictures. Any thread.
namespace Util {

/// The code as SVG 1.1 document, one unit a module, with `border` light modules around it.
/// A border that is negative or too large gives "" and a critical message.
QString qrCode2SvgString(const qrcodegen::QrCode& qr, int border);

} // namespace Util
