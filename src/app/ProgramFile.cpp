#include "app/ProgramFile.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 kMostRead = 1 << 30;
constexpr qint64 kPiece = 1 << 16;
constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

// The call again as long as a signal interrupts it.
template <class Call>
ssize_t retried(Call call)
{
    ssize_t result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

} // namespace

// A FIFO without a partner is not waited for, and a terminal does not become the program's own.
ProgramFile::ProgramFile(const QString& path, int flags)
    : m_descriptor(::open(QFile::encodeName(path).constData(),
                          flags | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, kOwnerOnly))
{
    struct stat about = {};
    if (m_descriptor < 0 || (::fstat(m_descriptor, &about) == 0 && S_ISREG(about.st_mode))) {
        if ((flags & O_APPEND) && (about.st_mode & ~kOwnerOnly & ACCESSPERMS))
            ::fchmod(m_descriptor, kOwnerOnly);
        return;
    }
    ::close(m_descriptor);
    m_descriptor = -1;
}

ProgramFile::~ProgramFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

ProgramFile ProgramFile::toRead(const QString& path)
{
    return {path, O_RDONLY};
}

ProgramFile ProgramFile::toAppend(const QString& path)
{
    return {path, O_WRONLY | O_APPEND | O_CREAT};
}

ProgramFile::Replaced ProgramFile::replace(const QString& path, const QByteArray& content)
{
    if (!remove(path))
        return Replaced::NotRemoved;
    const ProgramFile file(path, O_WRONLY | O_CREAT | O_EXCL);
    if (!file.isOpen())
        return Replaced::NotOpened;
    return file.write(content) ? Replaced::Done : Replaced::NotWritten;
}

bool ProgramFile::copy(const QString& source, const QString& target)
{
    const ProgramFile from(source, O_RDONLY);
    if (!from.isOpen() || !remove(target))
        return false;
    const ProgramFile to(target, O_WRONLY | O_CREAT | O_EXCL);
    QByteArray piece(kPiece, Qt::Uninitialized);
    const qint64 size = from.size(); // what is written to it meanwhile is left out
    for (qint64 done = 0; done < size;) {
        const ssize_t got = retried([&] {
            return ::pread(from.m_descriptor, piece.data(), size_t(qMin(kPiece, size - done)),
                           done);
        });
        if (got <= 0 || !to.write(QByteArray::fromRawData(piece.constData(), int(got))))
            return false;
        done += got;
    }
    return to.isOpen();
}

bool ProgramFile::remove(const QString& path)
{
    return ::unlink(QFile::encodeName(path).constData()) == 0 || errno == ENOENT;
}

qint64 ProgramFile::size() const
{
    struct stat about = {};
    return isOpen() && ::fstat(m_descriptor, &about) == 0 ? qint64(about.st_size) : 0;
}

std::optional<QByteArray> ProgramFile::read(qint64 size) const
{
    const qint64 wanted = qMin(size, this->size());
    const qint64 start = qMax<qint64>(0, wanted - kMostRead);
    QByteArray content(int(wanted - start), Qt::Uninitialized);
    int filled = 0;
    while (filled < content.size()) {
        const ssize_t got = retried([&] {
            return ::pread(m_descriptor, content.data() + filled, size_t(content.size() - filled),
                           start + filled);
        });
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        filled += int(got);
    }
    content.truncate(filled);
    return start > 0 ? content.mid(content.indexOf('\n') + 1) : content;
}

bool ProgramFile::write(const QByteArray& content) const
{
    const char* from = content.constData();
    const char* const end = from + content.size();
    while (from != end) {
        const ssize_t put =
            retried([&] { return ::write(m_descriptor, from, size_t(end - from)); });
        if (put <= 0)
            return false;
        from += put;
    }
    return isOpen();
}
