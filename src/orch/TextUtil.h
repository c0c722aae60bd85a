#pragma once

#include <QString>

/// Small helpers for texts. Pure; any thread.
namespace Util {

/// Whether the whole text is a dotted IPv4 address.
bool checkIp(const QString& text);

/// -1, 0 or 1. Equal texts are equal; of two versions with different numbers of parts the one
/// with more parts is the greater; otherwise the first part that differs decides. A part that
/// is no number counts 0.
int compareVersion(const QString& a, const QString& b);

/// Whether the text is empty or consists of letters and digits alone.
bool isTokenValid(const QString& token);

/// The text before the first ":".
QString trimmedHost(const QString& host);

/// The text cut to a display width, with "..." when cut. A character with a code from 1 to
/// 254 is 1 wide, any other 2.
QString GetStringWithLength(const QString& text, int width);

/// The text cut to a percent-encoded length, with "..." when cut. An ASCII letter or digit
/// counts 1, any other character 9.
QString GetUrlEncodeStringOfLength(const QString& text, int length);

/// The text in one line of at most 2000 characters: control characters become spaces. For
/// words of a service that are shown.
QString oneLine(QString text);

/// The text without control characters (0 to 31, 127 to 159), trimmed.
QString removeUnvisibleUnicode(const QString& text);

/// A rate in bits per second as number with one decimal; `unit` receives "Kbps", "Mbps" or
/// "Gbps". The larger unit starts above 1.0 of it, not at 1.0.
QString transToReadableBps(long long bps, QString& unit);

} // namespace Util
