#include "maps/ArchiveReader.h"

#include "maps/ArchiveFile.h"
#include "maps/SafeExtract.h"
#include "maps/ZipLayout.h"

#include "support/Errors.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>
#include <zip.h>
#include <zlib.h>

namespace steward {

namespace {

constexpr qint64 kChunk = 64 * 1024;

QString zipErrorText(int code)
{
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    const QString text = QString::fromUtf8(zip_error_strerror(&error));
    zip_error_fini(&error);
    return text;
}

// Case-insensitive match of a name against a pattern with * and ?.
bool wildcardMatch(const QString& name, const QString& pattern)
{
    qsizetype n = 0, p = 0, star = -1, mark = 0;
    auto same = [](QChar a, QChar b) { return a.toCaseFolded() == b.toCaseFolded(); };
    while (n < name.size()) {
        if (p < pattern.size() && (pattern.at(p) == QLatin1Char('?') || same(pattern.at(p), name.at(n)))) {
            ++n;
            ++p;
        } else if (p < pattern.size() && pattern.at(p) == QLatin1Char('*')) {
            star = p++;
            mark = n;
        } else if (star >= 0) {
            p = star + 1;
            n = ++mark;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern.at(p) == QLatin1Char('*'))
        ++p;
    return p == pattern.size();
}

QString normalised(QString path)
{
    path.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return path;
}

// The folder names of an archive repeat from entry to entry; each is kept once.
QString sharedFolder(QHash<QString, QString>& folders, const QString& folder)
{
    const auto known = folders.constFind(folder);
    return known != folders.constEnd() ? *known : *folders.insert(folder, folder);
}

// A link and the read-only mark, from the entry's external attributes.
void readAttributes(zip_t* zip, zip_uint64_t index, ArchiveEntry& e)
{
    zip_uint8_t system = 0;
    zip_uint32_t attributes = 0;
    if (zip_file_get_external_attributes(zip, index, 0, &system, &attributes) != 0)
        return;
    const zip_uint32_t mode = attributes >> 16;
    if (system == ZIP_OPSYS_UNIX && mode != 0) {
        const zip_uint32_t type = mode & S_IFMT;
        e.isLink = type != 0 && type != S_IFREG && type != S_IFDIR;
        e.readOnly = !(mode & S_IWUSR);
    } else {
        e.readOnly = (attributes & 0x01) != 0; // the DOS read-only bit
    }
}

// The entry at index as the library describes it; false when it can't.
bool describeEntry(zip_t* zip, zip_uint64_t index, QHash<QString, QString>& folders, ArchiveEntry& e)
{
    zip_stat_t st;
    zip_stat_init(&st);
    if (zip_stat_index(zip, index, 0, &st) != 0 || !(st.valid & ZIP_STAT_NAME))
        return false;
    e.path = normalised(QString::fromUtf8(st.name));
    e.size = (st.valid & ZIP_STAT_SIZE) ? st.size : 0;
    e.compressedSize = (st.valid & ZIP_STAT_COMP_SIZE) ? st.comp_size : 0;
    e.crc = (st.valid & ZIP_STAT_CRC) ? st.crc : 0;
    e.method = (st.valid & ZIP_STAT_COMP_METHOD) ? st.comp_method : -1;
    e.encrypted = !(st.valid & ZIP_STAT_ENCRYPTION_METHOD) || st.encryption_method != ZIP_EM_NONE;
    e.isFolder = e.path.endsWith(QLatin1Char('/'));
    QString bare = e.path;
    while (bare.endsWith(QLatin1Char('/')))
        bare.chop(1);
    if (e.isFolder) {
        e.folder = sharedFolder(folders, bare);
    } else {
        const auto slash = bare.lastIndexOf(QLatin1Char('/'));
        e.folder = slash < 0 ? QString() : sharedFolder(folders, bare.left(slash));
        e.name = slash < 0 ? bare : bare.mid(slash + 1);
    }
    readAttributes(zip, index, e);
    return true;
}

// Where an entry's packed data lies in the archive file.
struct PackedSpan {
    qint64 start;
    qint64 size;
};

// Counts and checksums the unpacked data of an entry; data past what the entry claims
// is refused.
struct Tally {
    quint64 claimed;
    qint64 total = 0;
    uLong sum = crc32(0L, Z_NULL, 0);

    bool take(const char* chunk, qint64 size)
    {
        total += size;
        if (total > static_cast<qint64>(claimed))
            return false;
        sum = crc32(sum, reinterpret_cast<const Bytef*>(chunk), static_cast<uInt>(size));
        return true;
    }
};

// How a pass over the packed data ended: all of it went to the sink, the sink refused a
// chunk, or the data or the file let the pass down.
enum class Step { Whole, Refused, Unsure };

using Sink = std::function<bool(const char*, qint64)>;

Step copyStored(ArchiveFile& file, const PackedSpan& span, QByteArray& in, Tally& tally, const Sink& sink)
{
    for (qint64 done = 0; done < span.size;) {
        const qint64 size = std::min<qint64>(in.size(), span.size - done);
        if (!file.readAt(span.start + done, in.data(), size) || !tally.take(in.constData(), size))
            return Step::Unsure;
        if (!sink(in.constData(), size))
            return Step::Refused;
        done += size;
    }
    return Step::Whole;
}

Step inflatePacked(ArchiveFile& file, const PackedSpan& span, QByteArray& in, Tally& tally, const Sink& sink)
{
    z_stream stream{};
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK)
        return Step::Unsure;
    struct End {
        z_stream& s;
        ~End() { inflateEnd(&s); }
    } end{stream};
    QByteArray out(kChunk, Qt::Uninitialized);
    qint64 done = 0;
    int result = Z_OK;
    while (result != Z_STREAM_END) {
        if (stream.avail_in == 0) {
            if (done == span.size)
                return Step::Unsure; // the data ends before the stream
            const qint64 size = std::min<qint64>(in.size(), span.size - done);
            if (!file.readAt(span.start + done, in.data(), size))
                return Step::Unsure;
            done += size;
            stream.next_in = reinterpret_cast<Bytef*>(in.data());
            stream.avail_in = static_cast<uInt>(size);
        }
        stream.next_out = reinterpret_cast<Bytef*>(out.data());
        stream.avail_out = static_cast<uInt>(out.size());
        result = inflate(&stream, Z_NO_FLUSH);
        if (result != Z_OK && result != Z_STREAM_END)
            return Step::Unsure;
        const qint64 size = out.size() - stream.avail_out;
        if (size > 0) {
            if (!tally.take(out.constData(), size))
                return Step::Unsure;
            if (!sink(out.constData(), size))
                return Step::Refused;
        }
    }
    if (stream.avail_in != 0 || done != span.size)
        return Step::Unsure; // packed data left over
    return Step::Whole;
}

} // namespace

ArchiveReader::ArchiveReader() = default;

ArchiveReader::ArchiveReader(const QString& archivePath) { open(archivePath); }

ArchiveReader::~ArchiveReader() { close(); }

void ArchiveReader::close()
{
    if (m_zip)
        zip_discard(m_zip);
    m_zip = nullptr;
    m_file.reset();
    m_entries.clear();
    m_offsets.clear();
    m_layoutKnown = false;
    resetSelection();
}

void ArchiveReader::resetSelection()
{
    m_patterns.clear();
    m_skipped.clear();
    m_filter = nullptr;
}

void ArchiveReader::park()
{
    if (m_layoutKnown && m_zip) {
        zip_discard(m_zip);
        m_zip = nullptr;
    }
    if (m_file)
        m_file->park();
}

QString ArchiveReader::openLibrary() const
{
    int code = 0;
    zip_source_t* source = m_file->makeSource(&code);
    if (!source)
        return zipErrorText(code);
    zip_error_t error;
    zip_error_init(&error);
    m_zip = zip_open_from_source(source, ZIP_RDONLY, &error);
    if (!m_zip) {
        code = zip_error_code_zip(&error);
        const int system = zip_error_code_system(&error);
        zip_error_fini(&error);
        zip_source_free(source);
        errno = system; // the library's text of a system error names it
        return zipErrorText(code);
    }
    zip_error_fini(&error);
    return {};
}

zip* ArchiveReader::library() const
{
    checkOpen();
    if (m_zip)
        return m_zip;
    if (const QString problem = openLibrary(); !problem.isEmpty())
        fail(problem);
    if (zip_get_num_entries(m_zip, 0) != static_cast<zip_int64_t>(m_entries.size()))
        fail(QStringLiteral("it changed while it was read"));
    return m_zip;
}

bool ArchiveReader::isUnchanged() const { return m_file && m_file->isUnchanged(); }

void ArchiveReader::fail(const QString& what) const
{
    raiseError(err::BadArchive, QStringLiteral("The archive %1 can't be read: %2").arg(m_path, what),
               QStringLiteral("ArchiveReader"));
}

void ArchiveReader::checkOpen() const
{
    if (!m_file)
        raiseError(err::BadArchive, QStringLiteral("No archive is open"), QStringLiteral("ArchiveReader"));
}

void ArchiveReader::open(const QString& archivePath)
{
    close();
    m_path = archivePath;
    // Only a plain file is opened: a pipe or a device named like an archive would
    // block the reader or never end.
    const QByteArray local = QFile::encodeName(archivePath);
    struct stat info {};
    if (::stat(local.constData(), &info) != 0)
        fail(QStringLiteral("the file doesn't exist"));
    if (!S_ISREG(info.st_mode))
        fail(QStringLiteral("it is not a plain file"));

    // The archive is read through a file of its own rather than the library's, so that
    // the file can be closed between phases while the table of contents is kept.
    m_file = std::make_unique<ArchiveFile>();
    if (!m_file->open(archivePath)) {
        m_file.reset();
        fail(zipErrorText(ZIP_ER_OPEN));
    }
    if (const QString problem = openLibrary(); !problem.isEmpty()) {
        m_file.reset();
        fail(problem);
    }

    const zip_int64_t count = zip_get_num_entries(m_zip, 0);
    if (count < 0) {
        const QString text = QString::fromUtf8(zip_strerror(m_zip));
        close();
        fail(text);
    }
    m_entries.reserve(static_cast<size_t>(count));
    QHash<QString, QString> folders;
    for (zip_int64_t i = 0; i < count; ++i) {
        ArchiveEntry e;
        if (!describeEntry(m_zip, static_cast<zip_uint64_t>(i), folders, e)) {
            const QString text = QString::fromUtf8(zip_strerror(m_zip));
            close();
            fail(text);
        }
        m_entries.push_back(std::move(e));
    }
    m_layoutKnown = readZipLayout(*m_file, m_entries, &m_offsets);
}

const ArchiveEntry& ArchiveReader::entry(int index) const
{
    if (index < 0 || index >= entryCount())
        raiseError(err::SubscriptOutOfRange);
    return m_entries[static_cast<size_t>(index)];
}

QString ArchiveReader::entryText(int index) const
{
    const ArchiveEntry& e = entry(index);
    QString folders = e.folder;
    folders.replace(QLatin1Char('/'), QLatin1Char('\\'));
    if (!folders.isEmpty())
        folders += QLatin1Char('\\');
    return folders + QLatin1Char('|') + e.name;
}

QByteArray ArchiveReader::readEntry(int index, qint64 limit) const
{
    checkOpen();
    const ArchiveEntry& e = entry(index);
    if (e.size > static_cast<quint64>(limit))
        fail(QStringLiteral("the entry %1 claims %2 bytes, more than the %3 allowed")
                 .arg(e.path)
                 .arg(e.size)
                 .arg(limit));
    QByteArray data;
    data.reserve(static_cast<qsizetype>(e.size));
    unpack(
        index,
        [&data](const char* chunk, qint64 size) {
            data.append(chunk, static_cast<qsizetype>(size));
            return true;
        },
        [&data] { data.clear(); });
    return data;
}

qint64 ArchiveReader::packedStart(int index) const
{
    const ArchiveEntry& e = entry(index);
    if (!m_layoutKnown || e.encrypted || (e.method != ZIP_CM_STORE && e.method != ZIP_CM_DEFLATE))
        return -1;
    const qint64 header = static_cast<qint64>(m_offsets[static_cast<size_t>(index)]);
    char local[30];
    if (!m_file->readAt(header, local, sizeof local) || std::memcmp(local, "PK\3\4", 4) != 0)
        return -1;
    auto word16 = [&local](int at) { return qint64(quint8(local[at])) | qint64(quint8(local[at + 1])) << 8; };
    const qint64 start = header + 30 + word16(26) + word16(28);
    if (start > m_file->size() || static_cast<qint64>(e.compressedSize) > m_file->size() - start)
        return -1;
    return start;
}

ArchiveReader::OwnRead ArchiveReader::unpackOwn(int index, const std::function<bool(const char*, qint64)>& sink) const
{
    const ArchiveEntry& e = entry(index);
    const qint64 start = packedStart(index);
    if (start < 0)
        return OwnRead::Unsure;
    const PackedSpan span{start, static_cast<qint64>(e.compressedSize)};
    QByteArray in(static_cast<qsizetype>(std::min<qint64>(kChunk, std::max<qint64>(span.size, 1))), Qt::Uninitialized);
    Tally tally{e.size};
    const Step step = e.method == ZIP_CM_STORE ? copyStored(*m_file, span, in, tally, sink)
                                               : inflatePacked(*m_file, span, in, tally, sink);
    if (step == Step::Refused)
        return OwnRead::Refused;
    if (step == Step::Unsure)
        return OwnRead::Unsure;
    return tally.total == static_cast<qint64>(e.size) && tally.sum == e.crc ? OwnRead::Done : OwnRead::Unsure;
}

bool ArchiveReader::unpack(int index, const std::function<bool(const char*, qint64)>& sink,
                           const std::function<void()>& restart) const
{
    const ArchiveEntry& e = entry(index);
    // The program's own reading where it is sure; anything else goes through the
    // library from the start, which gives the data or says what is wrong with it.
    switch (unpackOwn(index, sink)) {
    case OwnRead::Done:
        return true;
    case OwnRead::Refused:
        return false;
    case OwnRead::Unsure:
        restart();
        break;
    }
    zip* archive = library();
    zip_file_t* file = zip_fopen_index(archive, static_cast<zip_uint64_t>(index), 0);
    if (!file)
        fail(QStringLiteral("%1: %2").arg(e.path, QString::fromUtf8(zip_strerror(archive))));
    QByteArray buffer(kChunk, Qt::Uninitialized);
    qint64 total = 0;
    QString problem;
    bool taken = true;
    for (;;) {
        const zip_int64_t got = zip_fread(file, buffer.data(), static_cast<zip_uint64_t>(buffer.size()));
        if (got < 0) {
            problem = QString::fromUtf8(zip_file_strerror(file));
            break;
        }
        if (got == 0)
            break;
        total += got;
        if (total > static_cast<qint64>(e.size)) {
            problem = QStringLiteral("it unpacks to more than the %1 bytes it claims").arg(e.size);
            break;
        }
        if (!sink(buffer.constData(), got)) {
            taken = false;
            break;
        }
    }
    const int closed = zip_fclose(file);
    if (!taken)
        return false;
    if (problem.isEmpty() && closed != 0)
        problem = zipErrorText(closed);
    if (problem.isEmpty() && total != static_cast<qint64>(e.size))
        problem = QStringLiteral("the data ends early");
    if (!problem.isEmpty())
        fail(QStringLiteral("%1: %2").arg(e.path, problem));
    return true;
}

bool ArchiveReader::isSafeName(const QString& rawPath)
{
    const QString path = normalised(rawPath);
    if (path.isEmpty() || path.startsWith(QLatin1Char('/')) || path.contains(QChar(0)))
        return false;
    if (path.size() >= 2 && path.at(1) == QLatin1Char(':'))
        return false; // a drive letter
    const QStringList parts = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    if (parts.isEmpty())
        return false;
    for (const QString& part : parts)
        if (part == QLatin1String("..") || part == QLatin1String("."))
            return false;
    return true;
}

bool ArchiveReader::matches(const ArchiveEntry& entry, const QString& rawPattern)
{
    if (entry.isFolder)
        return false;
    QString pattern = normalised(rawPattern);
    const auto slash = pattern.lastIndexOf(QLatin1Char('/'));
    QString folder = slash < 0 ? QString() : pattern.left(slash);
    while (folder.endsWith(QLatin1Char('/')))
        folder.chop(1);
    const QString name = pattern.mid(slash + 1);
    return entry.folder.compare(folder, Qt::CaseInsensitive) == 0 && wildcardMatch(entry.name, name);
}

void ArchiveReader::selectFiles(const QString& pattern) { m_patterns << pattern; }

QString ArchiveReader::prepareTarget(int index, const QString& targetFolder, qint64 limit, QString* folder) const
{
    checkOpen();
    const ArchiveEntry& e = entry(index);
    auto unsafe = [&](const QString& why) {
        raiseError(err::UnsafeEntry,
                   QStringLiteral("The entry %1 of the archive %2 was not extracted: %3").arg(e.path, m_path, why),
                   QStringLiteral("ArchiveReader"));
    };
    if (e.isLink)
        unsafe(QStringLiteral("it is a link or a special file"));
    if (!isSafeName(e.path))
        unsafe(QStringLiteral("its name leads out of the folder"));
    if (!e.isFolder && e.size > static_cast<quint64>(limit))
        fail(QStringLiteral("the entry %1 claims %2 bytes, more than the %3 allowed")
                 .arg(e.path)
                 .arg(e.size)
                 .arg(limit));

    if (!QDir().mkpath(targetFolder))
        raiseError(err::PathNotFound, {}, targetFolder);
    const QString root = QFileInfo(targetFolder).canonicalFilePath();
    if (root.isEmpty())
        raiseError(err::PathNotFound, {}, targetFolder);

    const QString current = makeFoldersBelow(root, e.folder, [&](const QString& step) {
        unsafe(QStringLiteral("the folder %1 leads out of %2").arg(step, root));
    });
    *folder = current;
    if (e.isFolder)
        return current;

    const QString target = current + QLatin1Char('/') + e.name;
    if (QFileInfo(target).isDir())
        raiseError(err::PathFileAccess, QStringLiteral("%1 is a folder").arg(target), QStringLiteral("ArchiveReader"));
    return target;
}

QString ArchiveReader::extractEntry(int index, const QString& targetFolder, qint64 limit)
{
    QString current;
    const QString target = prepareTarget(index, targetFolder, limit, &current);
    const ArchiveEntry& e = entry(index);
    if (e.isFolder)
        return target;

    writeReplacing(current, target, e.readOnly,
                   [this, index](const ChunkSink& sink, const std::function<void()>& restart) {
                       return unpack(index, sink, restart);
                   });
    return target;
}

void ArchiveReader::prepareTake(int index, const QString& targetFolder, QString* target, qint64 limit) const
{
    QString current;
    *target = prepareTarget(index, targetFolder, limit, &current);
    // Where the file could not be made, extraction stops before the data is read.
    if (!entry(index).isFolder && ::access(QFile::encodeName(current).constData(), W_OK | X_OK) != 0)
        raiseError(err::PathFileAccess, {}, *target);
}

void ArchiveReader::clearTarget(const QString& target) const
{
    // The written file would have replaced whatever stood at the target, a link or a
    // file, never followed.
    const QByteArray local = QFile::encodeName(target);
    struct stat info {};
    if (::lstat(local.constData(), &info) == 0 && ::unlink(local.constData()) != 0)
        raiseError(err::PathFileAccess, {}, target);
}

bool ArchiveReader::readPacked(int index, PackedEntry* packed, qint64 limit) const
{
    checkOpen();
    const ArchiveEntry& e = entry(index);
    if (e.isFolder || e.isLink || e.encrypted || (e.method != ZIP_CM_STORE && e.method != ZIP_CM_DEFLATE) ||
        e.size > static_cast<quint64>(limit) || e.compressedSize > static_cast<quint64>(limit))
        return false;
    packed->method = e.method;
    packed->size = e.size;
    packed->crc = e.crc;
    packed->data.resize(static_cast<qsizetype>(e.compressedSize));
    if (const qint64 start = packedStart(index); start >= 0)
        return m_file->readAt(start, packed->data.data(), packed->data.size());
    zip* archive = nullptr;
    try {
        archive = library();
    } catch (const RuntimeError&) {
        return false; // readEntry will say why
    }
    zip_file_t* file = zip_fopen_index(archive, static_cast<zip_uint64_t>(index), ZIP_FL_COMPRESSED);
    if (!file)
        return false;
    qint64 total = 0;
    bool ok = true;
    while (total < packed->data.size()) {
        const zip_int64_t got =
            zip_fread(file, packed->data.data() + total, static_cast<zip_uint64_t>(packed->data.size() - total));
        if (got <= 0) {
            ok = false;
            break;
        }
        total += got;
    }
    zip_fclose(file);
    return ok;
}

std::vector<int> ArchiveReader::selectedEntries(qint64 limit, qint64 totalLimit)
{
    checkOpen();
    std::vector<int> selected;
    quint64 claimed = 0;
    for (int i = 0; i < entryCount(); ++i) {
        const ArchiveEntry& e = m_entries[static_cast<size_t>(i)];
        for (const QString& pattern : std::as_const(m_patterns))
            if (matches(e, pattern)) {
                if (m_filter && !m_filter(e))
                    break;
                selected.push_back(i);
                claimed += std::min<quint64>(e.size, static_cast<quint64>(limit) + 1);
                break;
            }
    }
    // No entry unpacks to more than it claims, so the claims bound what is written.
    if (claimed > static_cast<quint64>(totalLimit))
        fail(QStringLiteral("its selected entries claim %1 bytes, more than the %2 allowed")
                 .arg(claimed)
                 .arg(totalLimit));
    return selected;
}

QStringList ArchiveReader::extract(const QString& targetFolder, qint64 limit, qint64 totalLimit)
{
    checkOpen();
    m_skipped.clear();
    const std::vector<int> selected = selectedEntries(limit, totalLimit);
    QStringList written;
    for (const int i : selected) {
        const ArchiveEntry& e = m_entries[static_cast<size_t>(i)];
        try {
            written << extractEntry(i, targetFolder, limit);
        } catch (const RuntimeError& error) {
            if (error.number() != err::UnsafeEntry)
                throw;
            m_skipped << e.path;
        }
    }
    return written;
}

} // namespace steward
