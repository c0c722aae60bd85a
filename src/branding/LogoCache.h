#pragma once

#include <QByteArray>
#include <QString>

/// The files of one customer's logos, kept across runs in a folder of their own beside the
/// program. Only real folders of this user are used: what another user may have put in their
/// place leads nowhere. GUI thread.
class LogoCache
{
public:
    /// `customerId` becomes a folder's name; one that cannot be one has no cache.
    LogoCache(const QString& folder, const QString& customerId);

    /// Makes the folder where it is missing, with its parents.
    void create() const;

    /// The file of that name; empty when there is none, or it is larger than a logo may be.
    QByteArray read(const QString& name) const;

    /// False when it could not be written.
    bool write(const QString& name, const QByteArray& content) const;

private:
    bool isUsable() const;

    QString m_folder;
    QString m_path; ///< of the customer's folder; empty: none
};
