#pragma once

#include <QByteArray>
#include <QString>

/// The folder in which a bundle is put together. It lies in the temporary directory, where anybody
/// may have put something in its place: only a real folder of this user that others have no access
/// to is used, what it holds is never followed, and files are made in it that were not there
/// before. Any thread.
class WorkFolder
{
public:
    /// `linux_diagnosis` in the temporary directory, made or emptied: of the files in it and in its
    /// direct subfolders. Not usable when that is refused.
    static WorkFolder prepare();

    bool isUsable() const { return !m_path.isEmpty(); }

    /// Empty when it is not usable.
    QString path() const { return m_path; }
    QString file(const QString& name) const { return m_path + QLatin1Char('/') + name; }

    void write(const QString& name, const QByteArray& content) const;
    void append(const QString& name, const QByteArray& content) const;

    /// Copies a regular file of another folder; anything else is left out.
    void copy(const QString& source, const QString& name) const;

private:
    QString m_path;
};
