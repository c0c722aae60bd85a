#pragma once

#include "main/UniqueTexts.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

/// An IP filter document on its way to the datapath, with what the client reads from it. It is
/// parsed once and written once, however it is changed in between.
class FilterDocument
{
public:
    explicit FilterDocument(const QByteArray& received);

    /// Of the two lists only texts stay, each once, in the order of their first appearance.
    /// Everything else is kept. Linear in the document's size.
    void _removeDuplicatesJson();

    /// Adds the communication servers' addresses to an exclusive list that is there; to be called
    /// after _removeDuplicatesJson().
    void _rebuildFilterJson(const QStringList& commServIp);

    /// The document as the datapath gets it: compact when it is a JSON object with a list, else as
    /// received.
    QByteArray bytes() const;

    /// 401: the session is no longer valid.
    int code() const { return m_code; }

    /// The log's lines about it: the mode and a summary of each list that the mode uses.
    /// Translated.
    QStringList logLines() const;

    /// The MD5 of `bytes` as 32 lower-case hexadecimal digits.
    static QString verifyOf(const QByteArray& bytes);

private:
    QByteArray m_received;
    QJsonObject m_document;
    int m_code;
    int m_IpSetMode; ///< 1 inclusive, -1 exclusive, 0 both; anything else counts as both
    std::optional<UniqueTexts> m_WhiteIpSet; ///< once it is cleaned, and when it is there
    std::optional<UniqueTexts> m_BlackIpSet;
};
