#pragma once

#include <QString>

/// How a code reaches the user.
enum class CodeChannel { Sms, Email };

/// What follows when the orchestrator does not say that a code has been delivered. Pure; the text
/// is for the GUI thread.
struct CodeDelivery
{
    enum class Next {
        ShowError,   ///< `error` says why there will be no code
        TooFrequent, ///< too many codes were asked for; `error` says so for an SMS
        QueryAgain,  ///< still under way: ask again after kQueryAgainMs
        GiveUp ///< still under way after the last query: `error` says so, counting starts anew
    };

    Next next = Next::ShowError;
    QString error;

    static constexpr int kMostQueries = 5;
    static constexpr int kQueryAgainMs = 3000;

    /// `code` is the answer's, `queries` the number of queries for this code so far.
    static CodeDelivery after(CodeChannel channel, int code, int queries);
};
