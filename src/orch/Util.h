#pragma once

#include <QList>
#include <QString>

#include <string>

namespace qrcodegen {
class QrCode;
}

/// What the client knows about its host, the encryption of credentials, and small text helpers.
/// Host files are read below Platform::fileRoot. Failures are values: "", "unknown" or 0.
/// Any thread, except that the serial and the two cached values must have been asked for once
/// before a second thread asks.
class Util
{
public:
    struct ProcessInfo
    {
        int pid = 0;
        /// The first command-line argument; the kernel's command name when that is empty.
        QString name;
    };

    /// Encrypts `plain`, a line feed and the current time (milliseconds since 1970-01-01 UTC, in
    /// decimal) with the orchestrator's key: Base64, without armour lines, of a DER
    /// SubjectPublicKeyInfo (RFC 5280) that holds an RSA key. `oaep` chooses RSAES-OAEP with
    /// SHA-256 and MGF1-SHA-256, otherwise RSAES-PKCS1-v1_5 (RFC 8017). Returns the ciphertext in
    /// Base64 on one line; "" when the message is too long for the key (more than 190 or 245
    /// bytes with 2048 bits) or the key is unusable.
    static std::string TQRSAEncrypt(const std::string& plain, const std::string& publicKey,
                                    bool oaep);

    /// The client serial, 32 characters of "0" to "9" and "A" to "E", made and stored on first
    /// use.
    static QString getSerial();

    /// The first UUID that /etc/fstab mounts by UUID, in upper case; "" when there is none.
    static QString getDeviceId();

    /// "uosLinux", "kylinLinux", "ubuntu" or "unknown". Cached for the life of the process.
    static QString getDistributionId();

    /// "X86", "ARM" or "unknown". Cached; the first call runs "uname" and blocks up to 30 s.
    static QString getCpuArchitecture();

    /// Dotted IPv4 address of the interface on the default gateway's subnet, or "".
    static QString getNICIp();

    /// The IPv4 default gateway in network byte order, 0 when there is none. `ok`, when given,
    /// tells whether the kernel could be asked. Blocks at most 2 s a datagram.
    static quint32 getGateway(bool* ok);

    /// All processes that can be looked at. See proc(5).
    static QList<ProcessInfo> getProcessInfo();

    /// The content of a file as text, "" when it cannot be read.
    static QString readFileContent(const QString& path);

    /// Whether the whole text is a dotted IPv4 address.
    static bool checkIp(const QString& text);

    /// -1, 0 or 1. Equal texts are equal; of two versions with different numbers of parts the one
    /// with more parts is the greater; otherwise the first part that differs decides. A part that
    /// is no number counts 0.
    static int compareVersion(const QString& a, const QString& b);

    /// Whether the text is empty or consists of letters and digits alone.
    static bool isTokenValid(const QString& token);

    /// The text before the first ":".
    static QString trimmedHost(const QString& host);

    /// The text cut to a display width, with "..." when cut. A character with a code from 1 to
    /// 254 is 1 wide, any other 2.
    static QString GetStringWithLength(const QString& text, int width);

    /// The text cut to a percent-encoded length, with "..." when cut. An ASCII letter or digit
    /// counts 1, any other character 9.
    static QString GetUrlEncodeStringOfLength(const QString& text, int length);

    /// The text in one line of at most 2000 characters: control characters become spaces. For
    /// words of a service that are shown or logged.
    static QString oneLine(QString text);

    /// The text without control characters (0 to 31, 127 to 159), trimmed.
    static QString removeUnvisibleUnicode(const QString& text);

    /// A rate in bits per second as number with one decimal; `unit` receives "Kbps", "Mbps" or
    /// "Gbps". The larger unit starts above 1.0 of it, not at 1.0.
    static QString transToReadableBps(long long bps, QString& unit);

    /// The code as SVG 1.1 document, one unit a module, with `border` light modules around it.
    /// A border that is negative or too large gives "" and a critical message.
    static QString qrCode2SvgString(const qrcodegen::QrCode& qr, int border);
};
