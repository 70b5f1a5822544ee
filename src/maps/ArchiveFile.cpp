#include "maps/ArchiveFile.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zip.h>

namespace steward {

namespace {

zip_int64_t forward(void* self, void* data, zip_uint64_t length, zip_source_cmd_t command)
{
    return static_cast<zip_int64_t>(
        ArchiveFile::command(self, data, static_cast<quint64>(length), static_cast<int>(command)));
}

} // namespace

ArchiveFile::~ArchiveFile() { park(); }

void ArchiveFile::describe(const struct stat& info, Identity* identity)
{
    identity->device = info.st_dev;
    identity->inode = info.st_ino;
    identity->size = static_cast<qint64>(info.st_size);
    identity->changed = static_cast<qint64>(info.st_mtim.tv_sec) * 1000000000LL + info.st_mtim.tv_nsec;
}

bool ArchiveFile::identify(int fd, Identity* identity)
{
    struct stat info {};
    if (::fstat(fd, &info) != 0)
        return false;
    if (!S_ISREG(info.st_mode)) {
        errno = EINVAL;
        return false;
    }
    describe(info, identity);
    return true;
}

bool ArchiveFile::open(const QString& path)
{
    park();
    m_path = path;
    m_position = 0;
    // O_NONBLOCK: a fifo named like an archive must not block the open; identify
    // refuses it at once.
    m_fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (m_fd < 0)
        return false;
    if (!identify(m_fd, &m_identity)) {
        const int saved = errno;
        park();
        errno = saved;
        return false;
    }
    return true;
}

void ArchiveFile::park()
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
    m_window = QByteArray();
    m_windowStart = 0;
}

bool ArchiveFile::isUnchanged() const
{
    struct stat info {};
    if (::stat(QFile::encodeName(m_path).constData(), &info) != 0 || !S_ISREG(info.st_mode))
        return false;
    Identity now;
    describe(info, &now);
    return now == m_identity;
}

bool ArchiveFile::reopen()
{
    if (m_fd >= 0)
        return true;
    m_fd = ::open(QFile::encodeName(m_path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (m_fd < 0)
        return false;
    Identity now;
    if (!identify(m_fd, &now) || !(now == m_identity)) {
        park();
        errno = ESTALE;
        return false;
    }
    return true;
}

qint64 ArchiveFile::read(char* data, qint64 length)
{
    length = std::min(length, m_identity.size - m_position);
    if (length <= 0)
        return 0;
    const qint64 offset = m_position - m_windowStart;
    if (offset < 0 || offset + length > m_window.size()) {
        if (!reopen())
            return -1;
        if (length >= kWindow) {
            // A large read goes straight to the caller, and is kept when it is no larger
            // than a directory ought to be.
            const ssize_t got = ::pread(m_fd, data, static_cast<size_t>(length), m_position);
            if (got < 0)
                return -1;
            if (got <= kLargestKept) {
                m_window = QByteArray(data, static_cast<qsizetype>(got));
                m_windowStart = m_position;
            }
            m_position += got;
            return got;
        }
        const qint64 size = std::min<qint64>(kWindow, m_identity.size - m_position);
        m_window.resize(size);
        qint64 filled = 0;
        while (filled < size) {
            const ssize_t got =
                ::pread(m_fd, m_window.data() + filled, static_cast<size_t>(size - filled), m_position + filled);
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0) {
                m_window.clear();
                return -1;
            }
            if (got == 0)
                break;
            filled += got;
        }
        m_window.resize(filled);
        m_windowStart = m_position;
        length = std::min(length, filled);
    }
    std::memcpy(data, m_window.constData() + (m_position - m_windowStart), static_cast<size_t>(length));
    m_position += length;
    return length;
}

bool ArchiveFile::readAt(qint64 position, char* data, qint64 length)
{
    if (position < 0 || length < 0 || position > m_identity.size || length > m_identity.size - position)
        return false;
    const qint64 offset = position - m_windowStart;
    if (offset >= 0 && offset + length <= m_window.size()) {
        std::memcpy(data, m_window.constData() + offset, static_cast<size_t>(length));
        return true;
    }
    if (!reopen())
        return false;
    qint64 done = 0;
    while (done < length) {
        const ssize_t got = ::pread(m_fd, data + done, static_cast<size_t>(length - done), position + done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return false;
        done += got;
    }
    return true;
}

qint64 ArchiveFile::command(void* self, void* data, quint64 length, int command)
{
    auto* file = static_cast<ArchiveFile*>(self);
    auto failed = [file](int zipError) {
        file->m_error = zipError;
        file->m_sysError = errno;
        return qint64(-1);
    };
    switch (static_cast<zip_source_cmd_t>(command)) {
    case ZIP_SOURCE_OPEN:
        file->m_position = 0;
        return file->reopen() ? 0 : failed(ZIP_ER_OPEN);
    case ZIP_SOURCE_READ: {
        const qint64 got = file->read(static_cast<char*>(data), static_cast<qint64>(length));
        return got < 0 ? failed(ZIP_ER_READ) : got;
    }
    case ZIP_SOURCE_CLOSE:
        return 0;
    case ZIP_SOURCE_STAT: {
        if (length < sizeof(zip_stat_t))
            return failed(ZIP_ER_INVAL);
        auto* st = static_cast<zip_stat_t*>(data);
        zip_stat_init(st);
        st->size = static_cast<zip_uint64_t>(file->m_identity.size);
        st->mtime = static_cast<time_t>(file->m_identity.changed / 1000000000LL);
        st->valid |= ZIP_STAT_SIZE | ZIP_STAT_MTIME;
        return sizeof(zip_stat_t);
    }
    case ZIP_SOURCE_ERROR: {
        zip_error_t error;
        zip_error_init(&error);
        zip_error_set(&error, file->m_error, file->m_sysError);
        const zip_int64_t size = zip_error_to_data(&error, data, length);
        zip_error_fini(&error);
        return size;
    }
    case ZIP_SOURCE_FREE:
        return 0;
    case ZIP_SOURCE_SEEK: {
        zip_error_t error;
        zip_error_init(&error);
        const zip_int64_t position =
            zip_source_seek_compute_offset(static_cast<zip_uint64_t>(file->m_position),
                                           static_cast<zip_uint64_t>(file->m_identity.size), data, length, &error);
        const int code = zip_error_code_zip(&error);
        zip_error_fini(&error);
        if (position < 0)
            return failed(code);
        file->m_position = position;
        return 0;
    }
    case ZIP_SOURCE_TELL:
        return file->m_position;
    case ZIP_SOURCE_ACCEPT_EMPTY:
        return 0; // an empty file is no archive, as the library's own file source says
    case ZIP_SOURCE_SUPPORTS:
        return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                              ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL,
                                              ZIP_SOURCE_SUPPORTS, ZIP_SOURCE_ACCEPT_EMPTY, -1);
    default:
        return failed(ZIP_ER_OPNOTSUPP);
    }
}

zip_source* ArchiveFile::makeSource(int* zipError)
{
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_function_create(forward, this, &error);
    if (!source && zipError)
        *zipError = zip_error_code_zip(&error);
    zip_error_fini(&error);
    return source;
}

} // namespace steward
