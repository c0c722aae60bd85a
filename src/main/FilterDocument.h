#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// An IP filter document as it goes to the datapath, with what the client reads from it.
struct FilterDocument
{
    QByteArray bytes;   ///< cleaned when it is a JSON object with a list, else as received
    int code = 0;       ///< 401: the session is no longer valid
    int ipSetMode = 99; ///< 1 inclusive, -1 exclusive, 0 both; anything else counts as both
    QString whiteIpSet; ///< the inclusive list joined with ",", as far as the log shows it
    QString blackIpSet; ///< the exclusive list likewise

    /// Cleans a received document in one pass: of the two lists only texts stay, each once, in
    /// the order of their first appearance, and `servers` are added to an exclusive list that is
    /// there. Everything else is kept. Linear in the document's size.
    static FilterDocument clean(const QByteArray& received, const QStringList& servers);

    /// The log's lines about it: the mode and a summary of each list that the mode uses.
    /// Translated.
    QStringList logLines() const;

    /// The MD5 of `bytes` as 32 lower-case hexadecimal digits.
    static QString verifyOf(const QByteArray& bytes);
};
