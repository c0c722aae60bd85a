#pragma once

#include "orch/Gateway.h"

#include <QJsonObject>
#include <QString>
#include <QVector>

/// What a login tells the orchestrator about the host, as texts.
struct ClientFacts
{
    QVector<HostInterface> interfaces;
    QString deviceName; ///< board vendor
    QString deviceType; ///< board name
    QString productType;
    QString productVersion;
    QString kernelVersion;
    QString hostName;
    QString serial;
    QString cpuArchitecture;
};

/// Reads the facts from the system. GUI thread; may start "uname" once.
ClientFacts gatherClientFacts();

/// The object sent as "traceExtraInfo". Pure.
QJsonObject clientInfo(const ClientFacts& facts);

/// The IPv4 addresses of the interfaces that are up and not loopback, each with its prefix length
/// when known, joined with ",": "192.168.1.20/24,10.8.0.2/32". Pure.
QString internalAddresses(const QVector<HostInterface>& interfaces);
