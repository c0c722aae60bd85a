#pragma once

#include "app/Attempt.h"

#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QString>

class OrchReply;
class QNetworkAccessManager;
struct OrchRequest;

/// The orchestrator's error texts: a table of its numeric codes with English and Chinese texts,
/// which the orchestrator publishes and the client downloads, keeps in the settings
/// (ORCH_ERROR_RES, ORCH_ERROR_VERSION) and uses to show an error reply. A download that fails
/// or brings no JSON object leaves what is there. GUI thread only.
class OrchErrRes : public QObject
{
    Q_OBJECT

public:
    /// The one object, created on first use and released with the application object.
    static OrchErrRes* getInstance();
    static void release();

    ~OrchErrRes() override;

    /// Sent as header "customerId" of the address request.
    void setCustomerId(const QString& customerId);

    /// Makes sure that a resource is in memory: loads the stored one and asks the orchestrator
    /// for the current one. `path` is relative ("s/mobile/error/resource/url"); an empty
    /// `authUrl` means the stored AUTHURL. Does nothing once a resource is complete in memory.
    void loadRes(const QString& path, const QString& authUrl);

    /// Asks the orchestrator where its current resource lies.
    void updateResFromOrch(const QString& path, const QString& authUrl);

    /// Starts a download when the body names a resource other than the one in memory: members
    /// "errorResourceVersion" and "errorResourceDownloadUrl", at the top level or, when both are
    /// empty there, in "parameters". An address that is not http or https is left alone.
    void downloadAndUpdaeRes(const QJsonObject& body);

    /// Stores the document and its version, which becomes the version in memory.
    void saveResToLocal(const QString& res, const QString& resVersion);

    /// Replaces all texts in memory by those of a document.
    void updateMemoryRes(const QJsonObject& document);

    /// Whether the code means that this client is too old; false for unknown codes.
    bool isVersionLow(int code) const;

    /// The text for an orchestrator error body in the system's language, the code in front unless
    /// it means that the client is too old; empty when the body names no code. Starts a download
    /// when the body names a newer resource.
    QString getOrchErrContent(const OrchReply& reply);

private:
    OrchErrRes();
    void init();
    void start(const OrchRequest& request);
    void netReply(const OrchReply& reply);
    void addressReply(const OrchReply& reply);
    void documentReply(const OrchReply& reply);
    bool isComplete() const;

    QString version; ///< of the resource in memory, empty when there is none
    QMap<int, QString> mapCn;
    QMap<int, QString> mapEn;
    QMap<int, bool> m_mapVersionLow;
    QNetworkAccessManager* m_NetMgr = nullptr; ///< made with the first request
    QString downVersion;                       ///< of the resource being downloaded
    QString m_customerId;
    bool m_downloading = false;
    Attempt m_alive;

    static OrchErrRes* m_pInstance;
};

/// The text for an error body, given the resource's text for its code in the wanted language
/// (possibly empty) and whether that code means a client too old. Pure.
QString renderOrchError(const QJsonObject& body, const QString& resourceText, bool versionLow,
                        bool chinese);
