#include "watch/PrivateFile.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace steward {

namespace {

bool writeAll(int fd, const QByteArray& bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        done += n;
    }
    return true;
}

QString systemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

} // namespace

bool writePrivateFile(const QString& path, const QByteArray& bytes, QString* error)
{
    const QByteArray target = QFile::encodeName(path);
    // A name of this process's own, so that two processes that replace the file at once
    // don't write into one another's copy.
    const QByteArray temporary = target + ".new." + QByteArray::number(::getpid());
    const int fd = ::open(temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd < 0) {
        if (error)
            *error = systemError();
        return false;
    }
    ::fchmod(fd, 0600);
    const bool written = writeAll(fd, bytes);
    const int savedErrno = errno;
    ::close(fd);
    if (!written || ::rename(temporary.constData(), target.constData()) != 0) {
        if (!written)
            errno = savedErrno;
        if (error)
            *error = systemError();
        ::unlink(temporary.constData());
        return false;
    }
    return true;
}

bool appendPrivateFile(const QString& path, const QByteArray& bytes)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (fd < 0)
        return false;
    const bool written = writeAll(fd, bytes);
    ::close(fd);
    return written;
}

bool makePrivateFolder(const QString& path, QString* error)
{
    if (!QDir().mkpath(path)) {
        if (error)
            *error = QStringLiteral("could not make the folder %1").arg(path);
        return false;
    }
    ::chmod(QFile::encodeName(path).constData(), 0700);
    return true;
}

} // namespace steward
