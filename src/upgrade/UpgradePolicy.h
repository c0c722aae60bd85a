#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

/// Whether a newer client is offered, marked, popped up or forced. Both windows decide with these
/// functions; only UpgradeChoices reads and writes settings.

/// The upgrade service's answer.
struct UpgradeReply
{
    QString version;          ///< the newest client
    QString minVersion;       ///< the oldest client still allowed
    int checkingPeriod = 600; ///< minutes until the next automatic check, 30 to 30000
    bool ignore = false;      ///< the new version is not to be offered at all
    QString url;              ///< address of the installer package
    QString note;             ///< release note in the system language, at most 8000 characters

    /// Reads an answer; what is missing or of another type takes its default.
    static UpgradeReply fromJson(const QJsonObject& json, bool chinese);

    /// This client is older than the oldest one allowed.
    bool isForced() const;
    /// There is a newer client than this one.
    bool isNewer() const;
};

/// What the user has answered to earlier offers.
struct UpgradeChoices
{
    QString laterDate = QStringLiteral("0"); ///< yyyy-MM-dd
    QString laterVersion;
    QString skipVersion;

    static UpgradeChoices load();
    /// Keeps "later" for `version`, chosen today.
    static void putOff(const QString& version);
    static void skip(const QString& version);
};

/// What is to be decided on.
struct UpgradeOffer
{
    QString version;      ///< the newest client
    bool newer = false;   ///< it is newer than this client
    bool forced = false;  ///< this client is no longer allowed
    bool ignored = false; ///< it is not to be offered at all
};

/// What follows from an answer.
struct UpgradeDecision
{
    bool pop = false;       ///< open the dialog now
    bool mark = false;      ///< show the marker of a new version
    bool showNew = false;   ///< the about page names the new version
    bool counts = false;    ///< from here on a check of this window is a repeated one
    QStringList displayLog; ///< for the activity log, debug level
    QString log;            ///< for the log file
};

/// `today` is yyyy-MM-dd; `firstCheck`: no check of this window has counted yet. A version that
/// was put off pops up again on a later day, and at once when it is another version; a forced one
/// always, unless it was skipped.
UpgradeDecision decideUpgrade(const UpgradeOffer& offer, const UpgradeChoices& choices,
                              const QString& today, bool firstCheck);

/// Today's date as the choices write it.
QString upgradeToday();
