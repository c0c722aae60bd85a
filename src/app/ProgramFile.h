#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// A file in the program's folder, opened with care: what another user may have put in its place
/// is never followed through a link, never waited for, and used only when it is a regular file.
/// What is made here is readable by its owner alone. Nothing here logs. Any thread.
class ProgramFile
{
public:
    enum class Replaced { Done, NotRemoved, NotOpened, NotWritten };

    /// Opens an existing file for reading.
    static ProgramFile toRead(const QString& path);

    /// Opens a file for appending; makes it when there is none and takes other users' access from
    /// one that has it.
    static ProgramFile toAppend(const QString& path);

    /// Replaces a file: the old one is removed and a new one made that was not there before.
    /// After a failure the old one may be gone.
    static Replaced replace(const QString& path, const QByteArray& content);

    /// Replaces a file by a copy of another, a piece at a time. False when there is nothing that
    /// can be copied, or it could not be written whole.
    static bool copy(const QString& source, const QString& target);

    /// Removes a file or link. Whether nothing of that name is left.
    static bool remove(const QString& path);

    Q_DISABLE_COPY_MOVE(ProgramFile)
    ~ProgramFile();

    /// Whether it could be opened; reading and writing another one fails.
    bool isOpen() const { return m_descriptor >= 0; }

    /// The size in bytes; 0 when it is not known.
    qint64 size() const;

    /// The first `size` bytes, fewer when the file is shorter; of more than 1 GiB the whole lines
    /// of the last GiB. Nothing when reading fails.
    std::optional<QByteArray> read(qint64 size) const;

    /// Writes all of it, in one piece where the system can. False when the disk is full.
    bool write(const QByteArray& content) const;

private:
    ProgramFile(const QString& path, int flags);

    int m_descriptor;
};
