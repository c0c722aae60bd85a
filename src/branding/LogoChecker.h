#pragma once

#include "app/Attempt.h"
#include "branding/LogoList.h"

#include <QObject>

#include <functional>

class LogoCache;
class OrchReply;
class QNetworkAccessManager;

/// The customer's own logos. A login has them fetched, and goes on when they are settled:
///
///     list --failed--> go on; after a time-out with what the cache holds
///      |
///     each logo: as in the cache, or downloaded, tried twice
///      |
///     every logo loaded or given up: go on
///
/// The main window takes the pictures from here later, in the same process. GUI thread.
class LogoChecker : public QObject
{
    Q_OBJECT

public:
    /// The one object, created on first use; it goes just before the application object.
    static LogoChecker* instance();

    /// Forgets the logos of an earlier login, and what is still waited for on its behalf.
    void clearLogoInfo();

    /// Fetches the logos of a customer and calls `next` from the event loop, once, however that
    /// ends. A later call takes the place of one that is under way.
    void downloadCusResource(const QString& customerId, const std::function<void()>& next);

    /// Null when there is no such logo.
    QPixmap logoPixmap(const QString& clientName) const;

private:
    LogoChecker() = default;

    LogoCache cache() const;
    void onList(const OrchReply& reply);
    void onListFailed(const OrchReply& reply);
    void parseFromJson(const QByteArray& body);
    void checkLogo();
    bool loadCached(LogoInfo& info) const;
    void downloadLogo(const QString& url, const QString& clientName);
    void onFinished(const OrchReply& reply);
    void onDownloaded(LogoInfo& info, const QByteArray& file);
    void retry(LogoInfo& info);
    static void load(LogoInfo& info, const QByteArray& file);
    void checkLogoStatus();
    void usingCacheLogo();
    void goOn();

    LogoInfos m_logoInfos;
    QNetworkAccessManager* m_manager = nullptr; ///< made with the first download
    QString m_customerId;
    std::function<void()> m_nextStep; ///< null once it has been called
    Attempt m_attempt;
};
