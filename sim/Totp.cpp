#include "sim/Totp.h"

#include <QDateTime>
#include <QMessageAuthenticationCode>
#include <QRandomGenerator>
#include <QtEndian>

namespace sim {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567";
constexpr int kStepSeconds = 30;
constexpr int kSecretLength = 32;

QByteArray decoded(const QString& base32)
{
    QByteArray bytes;
    quint32 buffer = 0;
    int bits = 0;
    for (const QChar c : base32) {
        const int value = QByteArray(kAlphabet).indexOf(c.toLatin1());
        if (value < 0)
            return {};
        buffer = (buffer << 5) | static_cast<quint32>(value);
        bits += 5;
        if (bits >= 8) {
            bits -= 8;
            bytes.append(static_cast<char>(buffer >> bits));
        }
    }
    return bytes;
}

} // namespace

QString totpAt(const QString& base32Secret, qint64 seconds)
{
    const quint64 step = qToBigEndian(static_cast<quint64>(seconds / kStepSeconds));
    const QByteArray counter(reinterpret_cast<const char*>(&step), sizeof step);
    const QByteArray hash =
        QMessageAuthenticationCode::hash(counter, decoded(base32Secret), QCryptographicHash::Sha1);
    const int offset = hash.back() & 0x0f;
    const quint32 number = qFromBigEndian<quint32>(hash.constData() + offset) & 0x7fffffff;
    return QString::number(number % 1000000).rightJustified(6, '0');
}

bool isTotp(const QString& base32Secret, const QString& code)
{
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    for (const int step : {-1, 0, 1}) {
        if (code == totpAt(base32Secret, now + step * kStepSeconds))
            return true;
    }
    return false;
}

QString randomSecret()
{
    QString secret;
    for (int i = 0; i < kSecretLength; ++i)
        secret += QLatin1Char(kAlphabet[QRandomGenerator::global()->bounded(32)]);
    return secret;
}

} // namespace sim
