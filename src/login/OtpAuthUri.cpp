#include "login/OtpAuthUri.h"

#include "app/Product.h"
#include "orch/TextUtil.h"

#include <QUrl>

namespace {

// The longest account and customer, percent-encoded, without what marks them as cut.
constexpr int kLongestAccount = 45;
constexpr int kLongestCustomer = 36;

QString encoded(const QString& text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

QString encoded(const QString& text, int longest)
{
    return encoded(Util::GetUrlEncodeStringOfLength(text, longest));
}

} // namespace

QString otpAuthUri(const QString& username, const QString& customer, const QString& otpKey)
{
    return QLatin1String("otpauth://totp/") + encoded(username, kLongestAccount) +
           QLatin1String("?secret=") + encoded(otpKey) + QLatin1String("&issuer=") +
           encoded(QLatin1String(product::kName)) + QLatin1Char('_') +
           encoded(customer, kLongestCustomer);
}
