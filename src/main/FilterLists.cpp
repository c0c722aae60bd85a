#include "main/FilterLists.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/Platform.h"
#include "main/ConnectReply.h"
#include "main/DatapathFile.h"
#include "orch/OrchErrCode.h"
#include "orch/OrchIdentity.h"
#include "orch/OrchReply.h"
#include "orch/OrchRequests.h"

#include <QDnsLookup>
#include <QHostAddress>

FilterLists::FilterLists(QObject* parent) : QObject(parent) {}

void FilterLists::setCommServHosts(const QStringList& hosts)
{
    m_commServHost = hosts;
    m_commServIp.clear();
}

void FilterLists::_getCommServIp()
{
    // Lookups of an earlier attempt count no more.
    for (QDnsLookup* old : findChildren<QDnsLookup*>()) {
        old->disconnect(this);
        old->deleteLater();
    }
    m_resolveSem.tryAcquire(m_resolveSem.available());
    for (const QString& host : qAsConst(m_commServHost)) {
        auto* lookup = new QDnsLookup(QDnsLookup::A, host, this);
        connect(lookup, &QDnsLookup::finished, this, &FilterLists::onLookupFinished);
        lookup->lookup();
    }
}

void FilterLists::onLookupFinished()
{
    auto* lookup = qobject_cast<QDnsLookup*>(sender());
    if (!lookup)
        return;
    if (lookup->error() == QDnsLookup::NoError) {
        for (const QDnsHostAddressRecord& record : lookup->hostAddressRecords())
            m_commServIp.append(record.value().toString());
    } else {
        logDisplayDebug(QStringLiteral("resolv host:") + lookup->name() +
                        QStringLiteral("failed, ") + lookup->errorString() + QLatin1Char('.'));
    }
    lookup->deleteLater();
    m_resolveSem.release();
}

void FilterLists::_checkNeedDownloadIpFilter(const ConnectReply& reply)
{
    logDisplayInfo(tr("Checking for IP filter configurations"));
    const bool current = !m_FilterJsonRaw.isEmpty() &&
                         FilterDocument::verifyOf(m_FilterJsonRaw) ==
                             ConfigUtil::savedText(ConfigUtil::FILTERVERIFY) &&
                         reply.filterVersion() == ConfigUtil::savedText(ConfigUtil::FILTERVERSION);
    if (!current) {
        logDisplayInfo(tr("Loading IP filter configurations"));
        ConfigUtil::writeValue(ConfigUtil::FILTERVERSION, reply.filterVersion());
        return getBlackAndWhiteList(reply.mobileTrafficDownloadUrl);
    }
    if (!saveFilter(m_FilterJsonRaw))
        return emit notSaved();
    logDisplayInfo(tr("Latest IP filter configurations, no need for reload"));
    emit inPlace();
}

void FilterLists::getBlackAndWhiteList(const QString& url)
{
    m_FilterJsonRaw.clear(); // a download that is broken off leaves nothing to go by
    emit downloadWanted(orchrequest::filterDocument(url, storedIdentity()));
}

bool FilterLists::take(const OrchReply& reply)
{
    m_FilterJsonRaw = reply.body;
    if (!reply.answered())
        return false;
    FilterDocument filter(m_FilterJsonRaw);
    filter._removeDuplicatesJson();
    if (m_resolveSem.available() >= m_commServHost.size())
        filter._rebuildFilterJson(m_commServIp);
    else
        logDisplayDebug(QStringLiteral("dns request too slow to resolve failed."));
    m_FilterJsonRaw = filter.bytes();
    m_code = filter.code();
    writeFilterLog(filter);
    return true;
}

bool FilterLists::isSessionInvalid() const
{
    return m_code == orchcode::kTokenInvalid;
}

void FilterLists::store()
{
    if (!saveFilter(m_FilterJsonRaw))
        return emit notSaved();
    ConfigUtil::writeValue(ConfigUtil::FILTERVERIFY, FilterDocument::verifyOf(m_FilterJsonRaw));
    emit inPlace();
}

void FilterLists::writeFilterLog(const FilterDocument& filter)
{
    for (const QString& line : filter.logLines())
        logDisplayInfo(line);
}

bool FilterLists::saveFilter(const QByteArray& document)
{
    return replaceDatapathFile(kFilterConfig, document + '\n');
}
