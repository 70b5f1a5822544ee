// The program reads an ordinary archive's entries itself, from the layout it finds in
// the central directory; whatever it isn't sure of goes to the zip library. Either way
// an entry reads as the library alone reads it: the same bytes, or the same error.
#include "maps/ArchiveReader.h"
#include "support/Errors.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QFile>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>
#include <zip.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

// An entry as the library alone reads it: its bytes, or the library's word for what is wrong.
QString libraryRead(const QString& path, int index, QByteArray* data)
{
    int code = 0;
    zip_t* archive = zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, &code);
    if (!archive)
        return u"open failed"_s;
    QString problem;
    zip_file_t* file = zip_fopen_index(archive, static_cast<zip_uint64_t>(index), 0);
    if (!file) {
        problem = QString::fromUtf8(zip_strerror(archive));
    } else {
        char buffer[4096];
        zip_int64_t got = 0;
        while ((got = zip_fread(file, buffer, sizeof buffer)) > 0)
            data->append(buffer, static_cast<qsizetype>(got));
        if (got < 0)
            problem = QString::fromUtf8(zip_file_strerror(file));
        zip_fclose(file);
    }
    zip_discard(archive);
    return problem;
}

QString readerRead(const QString& path, int index, QByteArray* data)
{
    try {
        ArchiveReader reader(path);
        *data = reader.readEntry(index);
        return {};
    } catch (const RuntimeError& e) {
        return e.description();
    }
}

void patch(const QString& path, const std::function<void(QByteArray&)>& change)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    change(bytes);
    file.seek(0);
    file.resize(0);
    file.write(bytes);
}

QByteArray someData()
{
    QByteArray data;
    for (int i = 0; i < 70000; ++i)
        data += static_cast<char>((i * 7) % 251);
    return data;
}

} // namespace

TEST(ZipLayout, OrdinaryArchivesAreReadByTheProgramAndOddOnesByTheLibrary)
{
    QTemporaryDir dir;
    const QString plain = dir.path() + u"/plain.pk3"_s;
    ASSERT_TRUE(ZipBuilder()
                    .folder(u"maps/"_s)
                    .file(u"maps/a.bsp"_s, someData())
                    .file(u"levelshots\\a.tga"_s, someData(), true)
                    .write(plain));
    ArchiveReader reader(plain);
    EXPECT_TRUE(reader.knowsLayout());
    EXPECT_EQ(reader.readEntry(1), someData());
    EXPECT_EQ(reader.readEntry(2), someData());
    reader.park();
    EXPECT_EQ(reader.readEntry(1), someData()); // after the library's copy was let go

    const QString accented = dir.path() + u"/accented.pk3"_s;
    ASSERT_TRUE(ZipBuilder().file(u"levelshots/caf\u00e9.tga"_s, someData()).write(accented));
    ArchiveReader odd(accented);
    EXPECT_FALSE(odd.knowsLayout());
    odd.park();
    EXPECT_EQ(odd.readEntry(0), someData());

    const QString trailing = dir.path() + u"/trailing.pk3"_s;
    ASSERT_TRUE(ZipBuilder().file(u"a.txt"_s, "text").write(trailing));
    patch(trailing, [](QByteArray& b) { b.append("junk after the end record"); });
    QByteArray data;
    const QString problem = readerRead(trailing, 0, &data);
    QByteArray expected;
    EXPECT_EQ(problem.isEmpty(), libraryRead(trailing, 0, &expected).isEmpty());
    EXPECT_EQ(data, expected);
}

TEST(ZipLayout, DamagedEntriesReadAsTheLibraryReadsThem)
{
    struct Damage {
        const char* what;
        bool stored;
        std::function<void(QByteArray&)> change;
    };
    // Offsets in an archive of one entry named "e.bin": the local header at 0, its data at 35.
    const std::vector<Damage> damages = {
        {"a flipped data byte", false, [](QByteArray& b) { b[40] = static_cast<char>(b[40] ^ 0x20); }},
        {"a flipped stored byte", true, [](QByteArray& b) { b[40] = static_cast<char>(b[40] ^ 0x20); }},
        {"a spoilt local header", false, [](QByteArray& b) { b[0] = 'X'; }},
        {"a longer local name", false, [](QByteArray& b) { b[26] = 9; }},
        {"a local extra field past the data", true,
         [](QByteArray& b) {
             b[28] = char(0xff);
             b[29] = char(0x7f);
         }},
        {"a wrong checksum in the directory", false,
         [](QByteArray& b) {
             const qsizetype at = b.indexOf("PK\1\2");
             b[at + 16] = static_cast<char>(b[at + 16] ^ 1);
         }},
    };
    QTemporaryDir dir;
    int errors = 0;
    for (const Damage& d : damages) {
        const QString path = dir.path() + u"/damaged.pk3"_s;
        ASSERT_TRUE(ZipBuilder().file(u"e.bin"_s, someData(), d.stored).write(path));
        patch(path, d.change);
        QByteArray fromLibrary;
        const QString libraryProblem = libraryRead(path, 0, &fromLibrary);
        QByteArray fromReader;
        const QString readerProblem = readerRead(path, 0, &fromReader);
        if (libraryProblem.isEmpty()) {
            EXPECT_TRUE(readerProblem.isEmpty()) << d.what << ": " << readerProblem.toStdString();
            EXPECT_EQ(fromReader, fromLibrary) << d.what;
        } else {
            ++errors;
            EXPECT_TRUE(readerProblem.endsWith(libraryProblem))
                << d.what << ": " << readerProblem.toStdString() << " / " << libraryProblem.toStdString();
        }
    }
    EXPECT_GE(errors, 3); // the checksums and the spoilt header at least
}

TEST(ZipLayout, PackedDataComesFromTheLayoutOrTheLibraryAlike)
{
    QTemporaryDir dir;
    const QString plain = dir.path() + u"/plain.pk3"_s;
    const QString accented = dir.path() + u"/accented.pk3"_s;
    ASSERT_TRUE(ZipBuilder().file(u"shot.tga"_s, someData()).write(plain));
    ASSERT_TRUE(ZipBuilder().file(u"sh\u00f6t.tga"_s, someData()).write(accented));
    ArchiveReader known(plain);
    ArchiveReader unknown(accented);
    ASSERT_TRUE(known.knowsLayout());
    ASSERT_FALSE(unknown.knowsLayout());
    PackedEntry a;
    PackedEntry b;
    ASSERT_TRUE(known.readPacked(0, &a));
    ASSERT_TRUE(unknown.readPacked(0, &b));
    EXPECT_EQ(a.data, b.data);
    EXPECT_EQ(a.crc, b.crc);
    EXPECT_EQ(a.size, b.size);
    EXPECT_EQ(a.method, 8);
}

TEST(ZipLayout, AnEmptyFileIsNoArchiveAsForTheLibrary)
{
    QTemporaryDir dir;
    const QString path = dir.path() + u"/empty.pk3"_s;
    writeFile(path, QByteArray());
    QByteArray ignored;
    EXPECT_EQ(libraryRead(path, 0, &ignored), u"open failed"_s);
    try {
        ArchiveReader reader(path);
        FAIL() << "an empty file was opened as an archive";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::BadArchive);
        EXPECT_TRUE(e.description().endsWith(u"Not a zip archive"_s)) << e.description().toStdString();
    }
}
