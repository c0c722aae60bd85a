#pragma once

#include <QByteArray>
#include <QMap>
#include <QPixmap>
#include <QString>

#include <optional>

/// The client's names of the two logos, which are also their file names. No other name of a list is
/// ever used.
constexpr char kRoundLogo[] = "orvek-round.png";
constexpr char kMainLogo[] = "logo.png";

/// One of the customer's logos.
struct LogoInfo
{
    static constexpr int kAttempts = 2; ///< downloads that are tried

    QString keyName;     ///< the orchestrator's name of it
    QString clientName;  ///< the client's
    QString url;         ///< where it lies
    QString md5;         ///< of the file, lower-case hexadecimal
    bool isSucc = false; ///< the orchestrator has an address for it
    QPixmap pixmap;      ///< null until it has been loaded
    int retryCount = 0;  ///< downloads that have failed

    /// Nothing more is to come for it.
    bool isSettled() const
    {
        return !pixmap.isNull() || retryCount >= kAttempts || url.isEmpty() || !isSucc;
    }
};

/// By client name.
using LogoInfos = QMap<QString, LogoInfo>;

/// The orchestrator's list of logos; nothing when it is no JSON array. Of two elements of one name
/// the later counts. `isJson` tells whether it is JSON at all. Pure.
std::optional<LogoInfos> parseLogoList(const QByteArray& body, bool& isJson);

/// Lower-case hexadecimal, as lists carry it.
QString logoMd5(const QByteArray& file);
