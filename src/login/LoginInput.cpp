#include "login/LoginInput.h"

LoginInputFault checkLoginInput(const QString& username, const QString& password)
{
    constexpr int kLongest = 64;
    if (username.isEmpty() || password.isEmpty())
        return LoginInputFault::Incomplete;
    if (username.size() > kLongest)
        return LoginInputFault::UsernameTooLong;
    if (password.size() > kLongest)
        return LoginInputFault::PasswordTooLong;
    return LoginInputFault::None;
}

LoginArguments LoginArguments::parse(const QStringList& arguments)
{
    LoginArguments parsed;
    parsed.logout = arguments.contains(QStringLiteral("-logout"));
    parsed.invalidToken = parsed.logout && arguments.contains(QStringLiteral("-invalidToken"));
    parsed.byUser = parsed.logout && arguments.contains(QStringLiteral("-byuser"));
    return parsed;
}
