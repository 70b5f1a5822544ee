#pragma once
// Read-only access to a zip archive; a pk3 is a plain zip archive. The table of
// contents comes from the central directory alone, and an entry is decompressed only
// when it is read or extracted. Archives come from strangers: extraction writes only
// inside the folder it is given, and a damaged archive gives a RuntimeError, never a
// crash or a hang.
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

struct zip;

namespace steward {
class ArchiveFile;

namespace err {
/// An archive that can't be read: not a zip, truncated, damaged, or an entry that
/// claims more than the reader will unpack.
inline constexpr int BadArchive = 31000;
/// An entry whose name or kind would put it outside the extraction folder.
inline constexpr int UnsafeEntry = 31001;
} // namespace err

struct ArchiveEntry {
    QString path;     ///< the entry's name with "/" between folders ("\" in a name counts as "/")
    QString folder;   ///< the folders in front of the name, without a trailing "/"; empty at the top
    QString name;     ///< the file name without folders; empty for a folder entry
    quint64 size = 0; ///< the uncompressed size the directory claims
    quint64 compressedSize = 0;
    bool isFolder = false;
    bool isLink = false;   ///< a symbolic link or another special file: never extracted
    bool readOnly = false; ///< the read-only mark the archive gives the file
    quint32 crc = 0;       ///< the checksum the directory gives the data
    int method = -1;       ///< how the data is packed: 0 stored, 8 deflated; -1 unknown
    bool encrypted = false;
};

/// An entry's data as it lies in the archive, before it is unpacked.
struct PackedEntry {
    QByteArray data;
    int method = 0;   ///< 0 stored, 8 deflated
    quint64 size = 0; ///< the uncompressed size the directory claims
    quint32 crc = 0;
};

class ArchiveReader {
public:
    /// The most that one entry may unpack to, unless the caller says otherwise.
    static constexpr qint64 kDefaultLimit = 64LL * 1024 * 1024;
    /// The most that one extraction may write altogether: many entries that each stay
    /// below the entry limit can still fill a disk.
    static constexpr qint64 kDefaultTotalLimit = 512LL * 1024 * 1024;

    ArchiveReader();
    /// Opens the archive at once (see open).
    explicit ArchiveReader(const QString& archivePath);
    ~ArchiveReader();
    ArchiveReader(const ArchiveReader&) = delete;
    ArchiveReader& operator=(const ArchiveReader&) = delete;

    /// Opens the archive read-only and reads its table of contents; forgets the
    /// selection and any archive opened before. A missing, unreadable, truncated or
    /// non-zip file is err::BadArchive.
    void open(const QString& archivePath);
    void close();
    bool isOpen() const { return m_file != nullptr; }
    /// Closes the archive's file but keeps its table of contents, so that a later
    /// phase needs no second read of it; the next read opens the file again. Where the
    /// program knows where each entry lies, the zip library's copy is let go as well.
    void park();
    /// True while the archive's file is the one whose table of contents was read: the
    /// same file, size and time of change.
    bool isUnchanged() const;
    /// True when the program found where each entry lies and reads the entries itself;
    /// false for an archive out of the ordinary, which the zip library reads.
    bool knowsLayout() const { return m_layoutKnown; }
    /// Forgets the selection, the filter and the skipped entries, as open does.
    void resetSelection();
    const QString& archivePath() const { return m_path; }

    int entryCount() const { return static_cast<int>(m_entries.size()); }
    /// An entry by zero-based index; an index past the end is error 9.
    const ArchiveEntry& entry(int index) const;
    /// The entry's folders, each followed by "\", then "|", then its file name:
    /// "levelshots\|ffa_yavin.jpg".
    QString entryText(int index) const;

    /// The whole content of one entry. An entry that claims or unpacks to more than
    /// limit bytes, or whose data is damaged, is err::BadArchive.
    QByteArray readEntry(int index, qint64 limit = kDefaultLimit) const;

    /// Writes one entry under targetFolder, keeping its folders; a folder that already
    /// exists there under another case is used as it is. Returns the written file. An
    /// entry that would land outside targetFolder (a ".." part, an absolute name, a
    /// link, a folder of the target that leads elsewhere) is err::UnsafeEntry and
    /// nothing is written; damaged data is err::BadArchive and leaves no file behind.
    QString extractEntry(int index, const QString& targetFolder, qint64 limit = kDefaultLimit);
    /// What extractEntry does before it writes, for an entry read into memory instead:
    /// the same checks, the same folders made, the same errors in the same order.
    /// clearTarget then removes whatever stands at the target, as the written file
    /// would have replaced it.
    void prepareTake(int index, const QString& targetFolder, QString* target, qint64 limit = kDefaultLimit) const;
    void clearTarget(const QString& target) const;
    /// The stored or deflated data of an entry as it lies in the archive, for unpacking
    /// elsewhere; false for any other kind, an encrypted entry, one larger than limit,
    /// or data that can't be read (readEntry then says why).
    bool readPacked(int index, PackedEntry* packed, qint64 limit = kDefaultLimit) const;

    /// Adds a pattern to the selection: folders, then a name that may hold * and ?,
    /// with "\" or "/" between them. Folders and names match without regard to case.
    void selectFiles(const QString& pattern);
    void clearSelection() { m_patterns.clear(); }
    /// A check that every selected entry passes before extract writes it; an entry it
    /// refuses is left out as if it weren't selected. Stays until the next open.
    void setEntryFilter(std::function<bool(const ArchiveEntry&)> filter) { m_filter = std::move(filter); }
    /// Extracts every selected entry under targetFolder, in directory order; nothing
    /// at all when nothing matches. Unsafe entries are skipped and listed in
    /// skippedEntries(); damaged data is err::BadArchive. Selected entries that claim
    /// more than totalLimit together are err::BadArchive before anything is written.
    /// Returns the written files.
    QStringList extract(const QString& targetFolder, qint64 limit = kDefaultLimit,
                        qint64 totalLimit = kDefaultTotalLimit);
    /// The entries that extract would write, in its order, with the filter asked as
    /// extract asks it; the same error when their claims pass totalLimit.
    std::vector<int> selectedEntries(qint64 limit = kDefaultLimit, qint64 totalLimit = kDefaultTotalLimit);
    /// Clears the list of skipped entries and adds to it, as extract does.
    void noteSkipped(const QString& path) { m_skipped << path; }
    void clearSkipped() { m_skipped.clear(); }
    const QStringList& skippedEntries() const { return m_skipped; }

    /// True when a pattern of selectFiles takes the entry.
    static bool matches(const ArchiveEntry& entry, const QString& pattern);
    /// True when the name can be written below a folder without leaving it.
    static bool isSafeName(const QString& path);

private:
    void checkOpen() const;
    [[noreturn]] void fail(const QString& what) const;
    /// Unpacks an entry chunk by chunk into sink, which gives false when it can't take a
    /// chunk (then false comes back). An entry that unpacks to more or less than it claims,
    /// or that is broken, fails with the archive's error.
    bool unpack(int index, const std::function<bool(const char* data, qint64 size)>& sink,
                const std::function<void()>& restart) const;
    enum class OwnRead { Done, Refused, Unsure };
    /// Unpacks an entry without the library where the layout is known: Done when the
    /// data came whole with its size and checksum, Refused when the sink refused, and
    /// Unsure for anything else (the sink may have had a part then).
    OwnRead unpackOwn(int index, const std::function<bool(const char* data, qint64 size)>& sink) const;
    /// Where the packed data of an entry begins, from its local header; -1 when unsure.
    qint64 packedStart(int index) const;
    /// The zip library's view of the archive, opened again from the kept file when
    /// it was let go.
    zip* library() const;
    /// Opens the library's view through the kept file; the library's word for what
    /// went wrong, or nothing.
    QString openLibrary() const;
    /// The checks of extractEntry before anything is written and the folders made on
    /// the way; returns the target, the folder it is in goes to *folder.
    QString prepareTarget(int index, const QString& targetFolder, qint64 limit, QString* folder) const;

    std::unique_ptr<ArchiveFile> m_file;
    mutable zip* m_zip = nullptr;
    std::vector<quint64> m_offsets; // where each entry's local header is, when known
    bool m_layoutKnown = false;
    QString m_path;
    std::vector<ArchiveEntry> m_entries;
    QStringList m_patterns;
    QStringList m_skipped;
    std::function<bool(const ArchiveEntry&)> m_filter;
};

} // namespace steward
