#pragma once

#include <QString>
#include <QStringList>

/// What is wrong with what the user typed on the login page.
enum class LoginInputFault {
    None,
    Incomplete,      ///< username or password is empty
    UsernameTooLong, ///< more than 64 characters
    PasswordTooLong  ///< more than 64 characters
};

/// Checks the cleaned-up input of the login page.
LoginInputFault checkLoginInput(const QString& username, const QString& password);

/// How the program was started, as far as the login window cares. A restart after the end of a
/// session passes these arguments.
struct LoginArguments
{
    bool logout = false;       ///< "-logout": the saved account is used again
    bool invalidToken = false; ///< "-invalidToken": the session had become invalid
    bool byUser = false;       ///< "-byuser": the user asked to switch the account

    /// Reads the command line; the arguments may stand anywhere, in this spelling only.
    static LoginArguments parse(const QStringList& arguments);
};
