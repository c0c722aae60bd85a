#pragma once

#include "main/ConnState.h"

#include <QString>

/// The connect button's words, already translated.
struct ConnectButtonTexts
{
    QString connecting;
    QString cancel;
    QString disconnecting;
};

/// The button's text after one step of its animation: dots run behind the word, and the word is
/// "Cancel" while the pointer is over the button of a running attempt.
QString nextButtonText(ConnState::CONN_STATUS status, bool pointerOver, const QString& current,
                       const ConnectButtonTexts& texts);
