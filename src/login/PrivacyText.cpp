#include "login/PrivacyText.h"

namespace {

constexpr const char* kMonths[] = {"January",   "February", "March",    "April",
                                   "May",       "June",     "July",     "August",
                                   "September", "October",  "November", "December"};

} // namespace

QString privacyUpdateText(const QString& version, bool chinese)
{
    if (version.size() != 8)
        return {};
    const QString year = version.left(4);
    const QString month = version.mid(4, 2);
    const QString day = version.mid(6, 2);
    if (chinese)
        return QStringLiteral("更新与%1年%2月%3日").arg(year, month, day);
    const int number = month.toInt();
    if (number < 1 || number > 12)
        return {};
    return QStringLiteral("Updated on %1 %2, %3")
        .arg(QLatin1String(kMonths[number - 1]), day, year);
}
