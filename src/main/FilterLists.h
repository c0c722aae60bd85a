#pragma once

#include "main/FilterDocument.h"

#include <QByteArray>
#include <QObject>
#include <QSemaphore>
#include <QStringList>

class OrchReply;
struct ConnectReply;
struct OrchRequest;

/// The IP filter lists for the datapath: whether they must be downloaded, what becomes of the
/// document, and its file. The communication servers' addresses are looked up meanwhile; nothing
/// waits for them. GUI thread.
class FilterLists : public QObject
{
    Q_OBJECT

public:
    explicit FilterLists(QObject* parent);

    /// The communication servers of this attempt, as host names; their addresses are unknown now.
    void setCommServHosts(const QStringList& hosts);

    /// Starts one lookup for each of them.
    void _getCommServIp();

    /// Downloads the lists when they are not current; ends with one of the signals.
    void _checkNeedDownloadIpFilter(const ConnectReply& reply);

    /// The download has been answered: cleans the document and logs what it is. False when it was
    /// not received.
    bool take(const OrchReply& reply);

    /// The document taken says that the session is no longer valid.
    bool isSessionInvalid() const;

    /// Writes the document taken; ends with inPlace() or notSaved().
    void store();

signals:
    /// The document is to be fetched; take() gets the answer.
    void downloadWanted(const OrchRequest& request);
    /// The lists stand in the datapath's file.
    void inPlace();
    void notSaved();

private:
    void onLookupFinished();
    void getBlackAndWhiteList(const QString& url);
    void writeFilterLog(const FilterDocument& filter);
    bool saveFilter(const QByteArray& document);

    QByteArray m_FilterJsonRaw; ///< the document received last, cleaned
    int m_code = 0;             ///< its "code"
    QStringList m_commServHost;
    QStringList m_commServIp; ///< as they were found
    QSemaphore m_resolveSem;  ///< lookups finished; only ever read, never waited on
};
