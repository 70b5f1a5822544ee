#include "maps/ZipLayout.h"

#include "maps/ArchiveFile.h"

#include <QByteArray>
#include <cstring>

namespace steward {

namespace {

constexpr qint64 kEndRecord = 22;
constexpr qint64 kLongestComment = 65535;
constexpr qint64 kDirectoryRecord = 46;
constexpr qint64 kLocalHeader = 30;

quint32 word16(const char* p) { return quint32(quint8(p[0])) | quint32(quint8(p[1])) << 8; }
quint32 word32(const char* p) { return word16(p) | word16(p + 2) << 16; }

// The end record whose comment reaches exactly to the end of the file: its place in
// the tail, or -1.
qint64 findEndRecord(const QByteArray& tail)
{
    const qint64 tailLength = tail.size();
    for (qint64 at = tailLength - kEndRecord; at >= 0; --at) {
        const char* p = tail.constData() + at;
        if (std::memcmp(p, "PK\5\6", 4) == 0 && at + kEndRecord + word16(p + 20) == tailLength)
            return at;
    }
    return -1;
}

// The record of the central directory at p, room bytes before the directory ends, when
// it says what the library said of the entry: where the entry's local header lies, and
// the record's length.
bool readDirectoryRecord(const char* p, qint64 room, quint32 directoryStart, const ArchiveEntry& entry, quint32* offset,
                         qint64* length)
{
    if (kDirectoryRecord > room)
        return false;
    if (std::memcmp(p, "PK\1\2", 4) != 0)
        return false;
    const quint32 method = word16(p + 10);
    const quint32 crc = word32(p + 16);
    const quint32 packedSize = word32(p + 20);
    const quint32 unpackedSize = word32(p + 24);
    const qint64 nameLength = word16(p + 28);
    const qint64 rest = nameLength + word16(p + 30) + word16(p + 32);
    const quint32 localHeader = word32(p + 42);
    if (kDirectoryRecord + rest > room || packedSize == 0xffffffff || unpackedSize == 0xffffffff ||
        localHeader == 0xffffffff || qint64(localHeader) + kLocalHeader > directoryStart)
        return false;
    QString name;
    name.reserve(nameLength);
    for (qint64 i = 0; i < nameLength; ++i) {
        const char c = p[kDirectoryRecord + i];
        if (c < 0x20 || c > 0x7e)
            return false; // the library may have read another name from it
        name += c == '\\' ? QLatin1Char('/') : QLatin1Char(c);
    }
    if (name != entry.path || unpackedSize != entry.size || packedSize != entry.compressedSize || crc != entry.crc ||
        int(method) != entry.method)
        return false;
    *offset = localHeader;
    *length = kDirectoryRecord + rest;
    return true;
}

} // namespace

bool readZipLayout(ArchiveFile& file, const std::vector<ArchiveEntry>& entries, std::vector<quint64>* offsets)
{
    offsets->clear();
    const qint64 size = file.size();
    if (size < kEndRecord)
        return false;
    const qint64 tailLength = std::min(size, kEndRecord + kLongestComment);
    const qint64 tailStart = size - tailLength;
    QByteArray tail(tailLength, Qt::Uninitialized);
    if (!file.readAt(tailStart, tail.data(), tailLength))
        return false;

    const qint64 end = findEndRecord(tail);
    if (end < 0)
        return false;
    const char* record = tail.constData() + end;
    if (end >= 20 && std::memcmp(record - 20, "PK\6\7", 4) == 0)
        return false; // the 64-bit extension
    const quint32 count = word16(record + 10);
    const quint32 directorySize = word32(record + 12);
    const quint32 directoryStart = word32(record + 16);
    if (word16(record + 4) != 0 || word16(record + 6) != 0 || word16(record + 8) != count || count != entries.size() ||
        count == 0xffff || directoryStart == 0xffffffff ||
        qint64(directoryStart) + qint64(directorySize) != tailStart + end)
        return false;

    QByteArray directory(directorySize, Qt::Uninitialized);
    if (!file.readAt(directoryStart, directory.data(), directorySize))
        return false;
    std::vector<quint64> found;
    found.reserve(count);
    qint64 at = 0;
    for (const ArchiveEntry& entry : entries) {
        quint32 offset = 0;
        qint64 length = 0;
        if (!readDirectoryRecord(directory.constData() + at, directory.size() - at, directoryStart, entry, &offset,
                                 &length))
            return false;
        found.push_back(offset);
        at += length;
    }
    if (at != directory.size())
        return false;
    *offsets = std::move(found);
    return true;
}

} // namespace steward
