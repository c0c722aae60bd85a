#include "diagnosis/DiagnosisOutcome.h"

#include "orch/OrchErrCode.h"

namespace {

constexpr int kTransferFailed = 28; // the archive arrived, and the connection broke behind it
constexpr int kNotUploaded = 10001;

} // namespace

namespace diagnosis {

DiagnosisReport uploadReport(const OrchReply& upload, qint64 time)
{
    if (upload.answered())
        return {200, QString(), true, time};
    return {upload.status == 200 ? kTransferFailed : kNotUploaded, upload.errorString, false, time};
}

DiagnosisReport missingReport(qint64 time)
{
    return {kNotUploaded, QStringLiteral("diagnosis file destroyed"), false, time};
}

SessionFinding sessionFinding(const OrchReply& refused)
{
    if (refused.code() != orchcode::kTokenInvalid)
        return {};
    SessionFinding finding;
    finding.kickout = kickout(refused.json());
    finding.logout = finding.kickout != Kickout::NoReason;
    finding.showTipInLoginUI = finding.kickout == Kickout::Other;
    finding.passwordChanged = refused.body.contains("password");
    return finding;
}

} // namespace diagnosis
