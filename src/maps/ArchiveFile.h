#pragma once
// The file under an open archive, as the zip library reads it: positioned reads into a
// window of the file kept in memory, so that a small archive is read from the disk in
// one go, and a file that can be closed between phases while the archive's table of
// contents stays in memory.
#include <QByteArray>
#include <QString>
#include <sys/stat.h>
#include <sys/types.h>

struct zip_source;

namespace steward {

class ArchiveFile {
public:
    /// The most that one read of the disk takes into the window.
    static constexpr qint64 kWindow = 128 * 1024;
    /// A larger read (a large archive's directory) is kept in the window up to this.
    static constexpr qint64 kLargestKept = 4 * 1024 * 1024;

    /// Opens the file; false with errno set when it can't be opened or isn't a plain file.
    bool open(const QString& path);
    ~ArchiveFile();

    /// A read-only zip source over the file. The source doesn't own this object, which
    /// must outlive the archive that reads through it.
    zip_source* makeSource(int* zipError);

    /// Closes the file and frees the window; the next read opens the file again.
    void park();
    /// True when the path still names the file that was opened: the same file, size and
    /// time of change.
    bool isUnchanged() const;

    /// Reads length bytes at position, from the window where they are in it; false
    /// unless all of them could be read.
    bool readAt(qint64 position, char* data, qint64 length);
    qint64 size() const { return m_identity.size; }

    /// The zip library's source callback; self is the ArchiveFile.
    static qint64 command(void* self, void* data, quint64 length, int command);

private:
    struct Identity {
        dev_t device = 0;
        ino_t inode = 0;
        qint64 size = -1;
        qint64 changed = 0;
        bool operator==(const Identity&) const = default;
    };
    static void describe(const struct stat& info, Identity* identity);
    static bool identify(int fd, Identity* identity);
    qint64 read(char* data, qint64 length);
    bool reopen();

    QString m_path;
    int m_fd = -1;
    Identity m_identity;
    qint64 m_position = 0;
    QByteArray m_window;
    qint64 m_windowStart = 0;
    int m_error = 0;    // the zip library's error code of the last failed command
    int m_sysError = 0; // and the system's
};

} // namespace steward
