// Second step of an attempt: the IP filter lists for the datapath.

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/Platform.h"
#include "main/DatapathFile.h"
#include "main/DlgMain.h"
#include "main/FilterDocument.h"
#include "orch/ErrorCatalogue.h"
#include "orch/OrchIdentity.h"
#include "orch/OrchRequests.h"
#include "orch/ReplyFacts.h"
#include "orch/Util.h"

#include <QDnsLookup>
#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

void DlgMain::_getCommServIp()
{
    // Lookups of an earlier attempt count no more.
    for (QDnsLookup* old : findChildren<QDnsLookup*>()) {
        QObject::disconnect(old, nullptr, this, nullptr);
        old->deleteLater();
    }
    m_resolveSem.tryAcquire(m_resolveSem.available());
    for (const QString& host : qAsConst(m_commServHost)) {
        auto* lookup = new QDnsLookup(QDnsLookup::A, host, this);
        connect(lookup, &QDnsLookup::finished, this, &DlgMain::onLookupFinished);
        lookup->lookup();
    }
}

void DlgMain::onLookupFinished()
{
    auto* lookup = qobject_cast<QDnsLookup*>(sender());
    if (!lookup)
        return;
    if (lookup->error() == QDnsLookup::NoError) {
        for (const QDnsHostAddressRecord& record : lookup->hostAddressRecords())
            m_commServIp.append(record.value().toString());
    } else {
        logDisplayDebug(QStringLiteral("resolv host:") + Util::oneLine(lookup->name()) +
                        QStringLiteral("failed, ") + lookup->errorString() + QLatin1Char('.'));
    }
    lookup->deleteLater();
    m_resolveSem.release();
}

void DlgMain::_checkNeedDownloadIpFilter(const ConnectReply& reply)
{
    logDisplayInfo(tr("Checking for IP filter configurations"));
    const auto saved = [](const QString& key) {
        return ConfigUtil::getvalue(key, QString()).toString();
    };
    const bool current =
        !m_FilterJsonRaw.isEmpty() &&
        FilterDocument::verifyOf(m_FilterJsonRaw) == saved(ConfigUtil::FILTERVERIFY) &&
        reply.filterVersion() == saved(ConfigUtil::FILTERVERSION);
    if (!current) {
        logDisplayInfo(tr("Loading IP filter configurations"));
        ConfigUtil::writeValue(ConfigUtil::FILTERVERSION, reply.filterVersion());
        return getBlackAndWhiteList(reply.mobileTrafficDownloadUrl);
    }
    if (!saveFilter(m_FilterJsonRaw)) {
        setConnStatus(DISCONNECTION);
        return showError(errorText(ErrorText::DatapathConfigNotSaved));
    }
    logDisplayInfo(tr("Latest IP filter configurations, no need for reload"));
    filterInPlace();
}

void DlgMain::getBlackAndWhiteList(const QString& url)
{
    m_curStep = GET_FILTER;
    m_FilterJsonRaw.clear(); // a download that is broken off leaves nothing to go by
    sendForStep(orchrequest::filterDocument(url, storedIdentity()));
}

void DlgMain::filterAnswered(QNetworkReply* reply)
{
    if (finishCancelConnect()) {
        logDisplayInfo(tr("Connection canceled during getting filter"));
        return;
    }
    if (m_curStatus != CONNECTING)
        return;
    if (reply->isOpen())
        m_FilterJsonRaw = reply->readAll();
    if (httpStatus(reply) != 200 || reply->error() != QNetworkReply::NoError) {
        setConnStatus(DISCONNECTION);
        return reportHttpErr(m_FilterJsonRaw, reply);
    }

    const bool resolved = m_resolveSem.available() >= m_commServHost.size();
    if (!resolved)
        logDisplayDebug(QStringLiteral("dns request too slow to resolve failed."));
    const FilterDocument filter =
        FilterDocument::clean(m_FilterJsonRaw, resolved ? m_commServIp : QStringList());
    m_FilterJsonRaw = filter.bytes;
    writeFilterLog(filter);
    if (filter.code == 401) {
        setConnStatus(DISCONNECTION);
        return _handle401(m_FilterJsonRaw);
    }

    if (!saveFilter(m_FilterJsonRaw)) {
        setConnStatus(DISCONNECTION);
        return showError(errorText(ErrorText::DatapathConfigNotSaved));
    }
    ConfigUtil::writeValue(ConfigUtil::FILTERVERIFY, FilterDocument::verifyOf(m_FilterJsonRaw));
    filterInPlace();
}

void DlgMain::writeFilterLog(const FilterDocument& filter)
{
    const QStringList lines = filter.logLines();
    for (const QString& line : lines)
        logDisplayInfo(line);
}

bool DlgMain::saveFilter(const QByteArray& document)
{
    return replaceDatapathFile(platform().programFile(QStringLiteral("filterConfig.conf")),
                               document + '\n');
}

void DlgMain::filterInPlace()
{
    if (m_mobileDetect) {
        setupMobileConnected();
        m_CheckIpTimer->start();
        return;
    }
    if (startDP() != 0)
        return setConnStatus(DISCONNECTION);
    logDisplayInfo(tr("Waiting for agent to synchronize configuration"));
    m_WaitAgentTimer->start();
}
