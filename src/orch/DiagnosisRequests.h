#pragma once

#include "orch/OrchIdentity.h"
#include "orch/OrchRequest.h"

#include <QString>

#include <optional>

/// The builders of the requests that bring a diagnosis bundle to the orchestrator. Pure; any
/// thread.

/// The bundle's archive, as it is announced.
struct DiagnosisFile
{
    QString name;
    qint64 size = 0;            ///< in bytes
    int cpeId = 0;              ///< -1: not told
    std::optional<int> trigger; ///< who asked for the run; not told when there is no archive
};

/// Where an archive is to go, and under what it is known.
struct DiagnosisAddress
{
    QString uploadUrl;
    QString requestId;
    QString logId;

    static DiagnosisAddress fromJson(const QJsonObject& json);
};

/// What became of it.
struct DiagnosisReport
{
    int errorCode = 200;
    QString reason;
    bool uploaded = true;
    qint64 uploadedTime = 0; ///< seconds since 1970-01-01 UTC
};

namespace orchrequest {

/// Asks where the archive is to go.
OrchRequest diagnosisAddress(const QString& authUrl, const OrchIdentity& identity,
                             const DiagnosisFile& file);

/// The archive itself, whose content is sent from its file. The address is good for it alone, and
/// nothing else tells who sends it.
OrchRequest diagnosisArchive(const QString& uploadUrl);

OrchRequest diagnosisReport(const QString& authUrl, const OrchIdentity& identity,
                            const DiagnosisAddress& address, const DiagnosisReport& report);

} // namespace orchrequest
