#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

/// The orchestrator's answer to a connect request, read once.
struct ConnectReply
{
    QString heartbeatUrl;
    int heartbeatInterval = 10; ///< seconds
    QString lanAssignIp;        ///< the virtual address
    QString orchDomains;        ///< joined with ","
    int cpeId = -1;             ///< as the settings keep it
    int agentCpeId = 0;         ///< as the agent's configuration has it
    bool mobileDetect = false;  ///< intranet mode: no datapath is started
    QString mobileDetectFailed;
    QString mobileDetectFailedEn;
    bool enableQuantum = false;
    bool enablePQC = false;
    int orchId = 0;
    int customerId = 0;
    QStringList candidateCommServers;
    QString commuServerAddr;

    QString siteTemplateId;
    int mobileTrafficVersion = -1;
    QString mobileTrafficDownloadUrl;

    static ConnectReply fromJson(const QJsonObject& json);

    /// Most hosts that are looked up, each by a request of its own.
    static constexpr int kMostHosts = 64;

    /// Whether no communication server's address holds a control character, which could add a
    /// line to the agent's configuration.
    bool addressesFitLines() const;

    /// The datapath agent's configuration: lines of key, "=" and value, each ended by a line feed.
    /// Complete, however many candidates there are.
    QByteArray cpeAgentConf() const;

    /// The communication servers' hosts without their ports: the primary, then each candidate
    /// that is not listed yet.
    QStringList commServerHosts() const;

    /// Identifies the version of the IP filter lists.
    QString filterVersion() const;
};
