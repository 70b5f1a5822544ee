// Any file as an archive, read by the program and by the zip library alone: the program
// reads ordinary archives itself from the layout of their directory and leaves the
// rest to the library, and either way each entry must read as the library alone reads
// it: the same bytes, or an error where the library has one. A level shot prepared
// from its packed data must be those bytes too.
#include "FuzzInput.h"
#include "maps/ArchiveReader.h"
#include "maps/PackedShot.h"
#include "support/Errors.h"
#include "testkit/TestApp.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <zip.h>

using namespace steward;
using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kLimit = 1 << 20;
constexpr int kEntries = 16;

const QString& archivePath()
{
    static QTemporaryDir dir((QFileInfo(u"/dev/shm"_s).isWritable() ? u"/dev/shm"_s : QDir::tempPath()) +
                             u"/fuzz_archive_read-XXXXXX"_s);
    static const QString path = dir.path() + u"/input.pk3"_s;
    return path;
}

// An entry as the library alone reads it; false when the library has an error.
bool libraryRead(zip_t* archive, int index, QByteArray* data)
{
    zip_file_t* file = zip_fopen_index(archive, static_cast<zip_uint64_t>(index), 0);
    if (!file)
        return false;
    char buffer[8192];
    zip_int64_t got = 0;
    while (data->size() <= kLimit && (got = zip_fread(file, buffer, sizeof buffer)) > 0)
        data->append(buffer, static_cast<qsizetype>(got));
    const int closed = zip_fclose(file);
    return got == 0 && closed == 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    testing::writeFile(archivePath(), fuzz::bytesOf(data, size));
    fuzz::require(QFileInfo(archivePath()).size() == qint64(size), "the input can be written");
    zip_t* library = zip_open(QFile::encodeName(archivePath()).constData(), ZIP_RDONLY, nullptr);
    ArchiveReader reader;
    bool opened = true;
    try {
        reader.open(archivePath());
    } catch (const RuntimeError&) {
        opened = false;
    }
    fuzz::require(opened == (library != nullptr), "the archive opens where the library opens it");
    if (!library)
        return 0;
    fuzz::require(reader.entryCount() == zip_get_num_entries(library, 0), "the same number of entries");

    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < std::min(reader.entryCount(), kEntries); ++i) {
            const ArchiveEntry& e = reader.entry(i);
            if (e.size > static_cast<quint64>(kLimit) || e.compressedSize > static_cast<quint64>(kLimit))
                continue;
            QByteArray expected;
            const bool libraryOk = libraryRead(library, i, &expected) && expected.size() == qsizetype(e.size);
            QByteArray got;
            bool readerOk = true;
            try {
                got = reader.readEntry(i, kLimit);
            } catch (const RuntimeError&) {
                readerOk = false;
            }
            fuzz::require(readerOk == libraryOk, "an entry reads where the library reads it");
            if (readerOk)
                fuzz::require(got == expected, "an entry reads as the library reads it");
            PackedEntry packed;
            QByteArray unpacked;
            if (reader.readPacked(i, &packed, kLimit) && unpackExactly(packed, &unpacked))
                fuzz::require(libraryOk && unpacked == expected, "packed data that passes is the entry's data");
        }
        reader.park(); // the second round reads without the library's copy where the layout is known
    }
    zip_discard(library);
    return 0;
}
