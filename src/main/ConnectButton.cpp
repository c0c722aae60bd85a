#include "main/ConnectButton.h"

static bool hasAllDots(const QString& text)
{
    return text.contains(QLatin1String("..."));
}

QString nextButtonText(ConnState::CONN_STATUS status, bool pointerOver, const QString& current,
                       const ConnectButtonTexts& texts)
{
    const QLatin1Char dot('.');
    switch (status) {
    case ConnState::CONNECTING:
        if (pointerOver)
            return texts.cancel;
        if (hasAllDots(current))
            return texts.connecting;
        return current.contains(dot) ? current + dot : texts.connecting + dot;
    case ConnState::DISCONNECTING:
        return hasAllDots(current) ? texts.disconnecting : current + dot;
    case ConnState::DISCONNECTION:
    case ConnState::CONNECTION:
        break;
    }
    return current;
}
