// The archive reader: extraction never writes outside its target, broken or lying archives
// give clear errors, its own reading matches the zip library's, and the shelf of archives.
#include "maps/ArchiveReader.h"
#include "maps/ArchiveShelf.h"
#include "MapsKit.h"

#include <QTemporaryDir>
#include <QThreadPool>
#include <zip.h>

using namespace steward;
using namespace steward::testing;

namespace {

class ArchiveReaderTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString root() const { return dir.path(); }
    QString archive(const QString& name = u"test.pk3"_s) const { return root() + u'/' + name; }
    QString target() const { return root() + u"/target"_s; }
    QStringList extracted() const { return filesUnder(target()); }
    /// Writes an archive and gives its path.
    QString make(const ZipBuilder& zip, const QString& name = u"test.pk3"_s) const
    {
        EXPECT_TRUE(zip.write(archive(name)));
        return archive(name);
    }
};

const QByteArray someData = [] {
    QByteArray data;
    for (int i = 0; i < 70000; ++i)
        data += static_cast<char>((i * 7) % 251);
    return data;
}();

// An entry as the library alone reads it: its bytes, or the library's word for what is wrong.
QString libraryRead(const QString& path, int index, QByteArray* data)
{
    zip_t* archive = zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, nullptr);
    if (!archive)
        return u"open failed"_s;
    QString problem;
    if (zip_file_t* file = zip_fopen_index(archive, static_cast<zip_uint64_t>(index), 0)) {
        char buffer[4096];
        zip_int64_t got = 0;
        while ((got = zip_fread(file, buffer, sizeof buffer)) > 0)
            data->append(buffer, static_cast<qsizetype>(got));
        if (got < 0)
            problem = QString::fromUtf8(zip_file_strerror(file));
        zip_fclose(file);
    } else {
        problem = QString::fromUtf8(zip_strerror(archive));
    }
    zip_discard(archive);
    return problem;
}

QString readerRead(const QString& path, QByteArray* data)
{
    return thrown([&] { *data = ArchiveReader(path).readEntry(0); }).second;
}

} // namespace

TEST_F(ArchiveReaderTest, ListsTheDirectoryReadsWithinALimitAndALaterExtractionReplacesTheFileAndKeepsTheReadOnlyMark)
{
    ArchiveReader reader(make(zipOf({entry("maps/mymap.bsp", "BSP"), "models/players/", entry("top.txt", "top"),
                                     entry("levelshots/mymap.jpg", "JPG"), entry("a.txt", QByteArray(1000, 'a'))})));
    ASSERT_EQ(reader.entryCount(), 5);
    EXPECT_EQ(reader.entry(0).folder, u"maps"_s);
    EXPECT_EQ(reader.entry(0).name, u"mymap.bsp"_s);
    EXPECT_EQ(reader.entryText(0), u"maps\\|mymap.bsp"_s);
    EXPECT_TRUE(reader.entry(1).isFolder);
    EXPECT_EQ(reader.entryText(1), u"models\\players\\|"_s);
    EXPECT_EQ(reader.entryText(2), u"|top.txt"_s);
    EXPECT_EQ(reader.entry(3).size, 3u);
    EXPECT_EQ(reader.readEntry(3), QByteArray("JPG"));
    EXPECT_EQ(errorNumberOf([&] { reader.entry(5); }), err::SubscriptOutOfRange);
    EXPECT_EQ(reader.readEntry(4, 1000).size(), 1000);
    EXPECT_EQ(errorNumberOf([&] { reader.readEntry(4, 999); }), err::BadArchive);
    // A later extraction replaces the file and keeps the read-only mark.
    make(ZipBuilder().readOnlyFile(u"scripts/x.arena"_s, "first"));
    const QString written = ArchiveReader(archive()).extractEntry(0, target());
    EXPECT_EQ(written, QFileInfo(target()).canonicalFilePath() + u"/scripts/x.arena"_s);
    EXPECT_FALSE(QFileInfo(written).permission(QFile::WriteOwner));
    make(zipOf({entry("Scripts/x.arena", "second")}), u"b.pk3"_s);
    ArchiveReader(archive(u"b.pk3"_s)).extractEntry(0, target());
    EXPECT_EQ(fileBytes(written), QByteArray("second"));
    EXPECT_TRUE(QFileInfo(written).permission(QFile::WriteOwner));
    EXPECT_EQ(extracted(), QStringList{u"scripts/x.arena"_s});
}

TEST_F(ArchiveReaderTest, HostileNamesAreNeverWrittenOutsideTheTargetAndLinksAtTheTargetAreNotFollowed)
{
    writeFile(root() + u"/victim.txt"_s, "untouched");
    ArchiveReader reader(
        make(zipOf({entry("levelshots/../../escape1.jpg", "evil"), entry("../escape2.jpg", "evil"),
                    entry(root() + u"/escape3.jpg"_s, "evil"), entry("levelshots\\..\\..\\escape4.jpg", "evil")})
                 .symlink(u"levelshots/link.jpg"_s, root() + u"/victim.txt"_s)
                 .file(u"levelshots/good.jpg"_s, "good")));
    for (int i = 0; i < 5; ++i) {
        SCOPED_TRACE(reader.entry(i).path.toStdString());
        EXPECT_EQ(errorNumberOf([&] { reader.extractEntry(i, target()); }), err::UnsafeEntry);
    }
    for (const QString& pattern : {u"levelshots\\*.jpg"_s, u"*.jpg"_s, u"levelshots/../../*.jpg"_s, u"../*.jpg"_s})
        reader.selectFiles(pattern);
    reader.extract(target());
    EXPECT_EQ(reader.skippedEntries(), (QStringList{u"levelshots/../../escape1.jpg"_s, u"../escape2.jpg"_s,
                                                    u"levelshots/../../escape4.jpg"_s, u"levelshots/link.jpg"_s}));
    EXPECT_EQ(extracted(), QStringList{u"levelshots/good.jpg"_s});
    EXPECT_EQ(filesUnder(root()), (QStringList{u"target/levelshots/good.jpg"_s, u"test.pk3"_s, u"victim.txt"_s}));
    EXPECT_EQ(fileBytes(root() + u"/victim.txt"_s), QByteArray("untouched"));
    // Links at the target are not followed: a folder of the target that leads elsewhere refuses the entry.
    QDir(target()).removeRecursively();
    const QString outside = root() + u"/outside"_s;
    QDir().mkpath(outside);
    QDir().mkpath(target());
    ASSERT_TRUE(QFile::link(outside, target() + u"/levelshots"_s));
    make(zipOf({entry("levelshots/a.jpg", "picture")}));
    EXPECT_EQ(errorNumberOf([&] { ArchiveReader(archive()).extractEntry(0, target()); }), err::UnsafeEntry);
    EXPECT_TRUE(QDir(outside).entryList(QDir::Files | QDir::Hidden).isEmpty());
    // A link standing where the file goes is replaced.
    ASSERT_TRUE(QFile::remove(target() + u"/levelshots"_s));
    writeFile(root() + u"/victim.txt"_s, "untouched");
    QDir().mkpath(target() + u"/levelshots"_s);
    ASSERT_TRUE(QFile::link(root() + u"/victim.txt"_s, target() + u"/levelshots/a.jpg"_s));
    ArchiveReader(archive()).extractEntry(0, target());
    EXPECT_EQ(fileBytes(root() + u"/victim.txt"_s), QByteArray("untouched"));
    EXPECT_FALSE(QFileInfo(target() + u"/levelshots/a.jpg"_s).isSymLink());
    EXPECT_EQ(fileBytes(target() + u"/levelshots/a.jpg"_s), QByteArray("picture"));
}

TEST_F(ArchiveReaderTest, BrokenArchivesAndHugeClaimsGiveAClearErrorAndLeaveNothingBehind)
{
    make(zipOf({entry("levelshots/a.jpg", QByteArray(4000, 'a')), entry("levelshots/b.jpg", "b")}), u"good.pk3"_s);
    const QByteArray good = fileBytes(archive(u"good.pk3"_s));
    writeFile(archive(u"truncated.pk3"_s), good.left(good.size() - 30));
    writeFile(archive(u"halved.pk3"_s), good.left(good.size() / 2));
    writeFile(archive(u"text.pk3"_s), "this is not a zip archive at all\r\n");
    writeFile(archive(u"empty.pk3"_s), QByteArray());
    QDir().mkpath(archive(u"folder.pk3"_s));
    for (const QString& name :
         {u"truncated.pk3"_s, u"halved.pk3"_s, u"text.pk3"_s, u"empty.pk3"_s, u"folder.pk3"_s, u"missing.pk3"_s}) {
        SCOPED_TRACE(name.toStdString());
        const auto [number, text] = thrown([&] { ArchiveReader reader(archive(name)); });
        EXPECT_EQ(number, err::BadArchive);
        EXPECT_TRUE(text.contains(name)) << text.toStdString();
    }
    // An empty file is no archive, as for the library.
    QByteArray ignored;
    EXPECT_EQ(libraryRead(archive(u"empty.pk3"_s), 0, &ignored), u"open failed"_s);
    EXPECT_TRUE(thrown([&] { ArchiveReader reader(archive(u"empty.pk3"_s)); }).second.endsWith(u"Not a zip archive"_s));
    // Damaged data behind an intact directory: the deflated bytes of a.jpg are spoiled.
    QByteArray spoiled = good;
    const qsizetype data = spoiled.indexOf("levelshots/a.jpg") + 16;
    for (qsizetype i = data + 2; i < data + 12; ++i)
        spoiled[i] = static_cast<char>(~spoiled[i]);
    writeFile(archive(u"spoiled.pk3"_s), spoiled);
    ArchiveReader reader(archive(u"spoiled.pk3"_s));
    EXPECT_EQ(errorNumberOf([&] { reader.readEntry(0); }), err::BadArchive);
    reader.selectFiles(u"levelshots\\*.jpg"_s);
    EXPECT_EQ(errorNumberOf([&] { reader.extract(target()); }), err::BadArchive);
    EXPECT_EQ(extracted(), QStringList());
    // An entry that claims a huge size is refused before anything is unpacked.
    make(zipOf({entry("levelshots/bomb.jpg", QByteArray(5000, 'z'))}));
    ASSERT_TRUE(patchClaimedSize(archive(), u"levelshots/bomb.jpg"_s, 0xFFFFFFF0u));
    ArchiveReader bomb(archive());
    EXPECT_EQ(bomb.entry(0).size, 0xFFFFFFF0u);
    EXPECT_EQ(errorNumberOf([&] { bomb.readEntry(0); }), err::BadArchive);
    bomb.selectFiles(u"levelshots\\*.jpg"_s);
    EXPECT_EQ(errorNumberOf([&] { bomb.extract(target()); }), err::BadArchive);
    EXPECT_EQ(extracted(), QStringList());
    // An entry that claims less than it holds is caught as well.
    ASSERT_TRUE(patchClaimedSize(archive(), u"levelshots/bomb.jpg"_s, 100));
    ArchiveReader liar(archive());
    EXPECT_EQ(errorNumberOf([&] { liar.readEntry(0); }), err::BadArchive);
    EXPECT_EQ(errorNumberOf([&] { liar.extractEntry(0, target()); }), err::BadArchive);
    EXPECT_EQ(extracted(), QStringList());
    // Entries below the entry limit that together claim too much are refused before the first is written.
    ArchiveReader many(
        make(zipOf({entry("levelshots/a.jpg", QByteArray(1000, 'a')), entry("levelshots/b.jpg", QByteArray(1000, 'b')),
                    entry("levelshots/c.jpg", QByteArray(1000, 'c'))}),
             u"many.pk3"_s));
    many.selectFiles(u"levelshots\\*.jpg"_s);
    EXPECT_EQ(errorNumberOf([&] { many.extract(target(), 1000, 2999); }), err::BadArchive);
    EXPECT_EQ(extracted(), QStringList());
    EXPECT_EQ(many.extract(target(), 1000, 3000).size(), 3);
}

// Ordinary layouts are read by the program, the rest by the library; either way an entry
// reads as the library alone reads it: the same bytes, or the same error.
TEST_F(ArchiveReaderTest, OrdinaryArchivesAreReadByTheProgramOddOnesByTheLibraryAndDamagedOnesAsTheLibraryReadsThem)
{
    ArchiveReader reader(make(zipOf({"maps/", entry("maps/a.bsp", someData)})
                                  .file(u"levelshots\\a.tga"_s, someData, true)
                                  .symlink(u"levelshots/link.tga"_s, u"/etc/passwd"_s)));
    EXPECT_TRUE(reader.knowsLayout());
    EXPECT_EQ(reader.readEntry(1), someData);
    EXPECT_EQ(reader.readEntry(2), someData);
    reader.park();
    EXPECT_EQ(reader.readEntry(1), someData); // after the library's copy was let go
    ArchiveReader odd(make(zipOf({entry("levelshots/caf\u00e9.tga", someData)}), u"accented.pk3"_s));
    EXPECT_FALSE(odd.knowsLayout());
    odd.park();
    EXPECT_EQ(odd.readEntry(0), someData);
    // Packed data comes from the layout or the library alike.
    PackedEntry a, b;
    ASSERT_TRUE(reader.readPacked(1, &a));
    ASSERT_TRUE(odd.readPacked(0, &b));
    EXPECT_EQ(std::tie(a.data, a.crc, a.size), std::tie(b.data, b.crc, b.size));
    EXPECT_EQ(a.method, 8);
    // Only plain files within the limit are read packed.
    EXPECT_FALSE(reader.readPacked(0, &b) || reader.readPacked(3, &b) || reader.readPacked(1, &b, 100));
    // Damaged entries read as the library reads them; "e.bin" has its local header at 0, its data at 35.
    const std::tuple<const char*, bool, std::function<void(QByteArray&)>> damages[] = {
        {"a flipped data byte", false, [](QByteArray& z) { z[40] = static_cast<char>(z[40] ^ 0x20); }},
        {"a flipped stored byte", true, [](QByteArray& z) { z[40] = static_cast<char>(z[40] ^ 0x20); }},
        {"a spoilt local header", false, [](QByteArray& z) { z[0] = 'X'; }},
        {"a longer local name", false, [](QByteArray& z) { z[26] = 9; }},
        {"a local extra field past the data", true, [](QByteArray& z) { z[28] = char(0xff), z[29] = char(0x7f); }},
        {"a wrong checksum in the directory", false, [](QByteArray& z) { z[z.indexOf("PK\1\2") + 16] ^= 1; }},
        {"junk after the end record", false, [](QByteArray& z) { z += "junk after the end record"; }},
    };
    int errors = 0;
    for (const auto& [what, stored, change] : damages) {
        SCOPED_TRACE(what);
        make(ZipBuilder().file(u"e.bin"_s, someData, stored));
        QByteArray bytes = fileBytes(archive());
        change(bytes);
        writeFile(archive(), bytes);
        QByteArray fromLibrary, fromReader;
        const QString libraryProblem = libraryRead(archive(), 0, &fromLibrary);
        const QString readerProblem = readerRead(archive(), &fromReader);
        if (libraryProblem.isEmpty()) {
            EXPECT_EQ(readerProblem, QString());
            EXPECT_EQ(fromReader, fromLibrary);
        } else {
            ++errors;
            EXPECT_TRUE(readerProblem.endsWith(libraryProblem))
                << readerProblem.toStdString() << " / " << libraryProblem.toStdString();
        }
    }
    EXPECT_GE(errors, 3); // the checksums and the spoilt header at least
}

// What open takes is what opening the archive then gives, whatever happened after read-ahead.
TEST_F(ArchiveReaderTest, AShelfTakesAnArchiveReadAheadAsItsFileIsWhenOpenedAndHoldsNoFileOpen)
{
    auto paths = [](const ArchiveReader& reader) {
        QStringList names;
        for (int i = 0; i < reader.entryCount(); ++i)
            names << reader.entry(i).path;
        return names;
    };
    const QString kept = archive(u"kept.pk3"_s), changed = archive(u"changed.pk3"_s), gone = archive(u"gone.pk3"_s),
                  broken = archive(u"broken.pk3"_s);
    for (const QString& path : {kept, changed, gone})
        ASSERT_TRUE(zipOf({"maps/a.bsp"}).write(path));
    writeFile(broken, "not an archive");
    const QString brokenError = thrown([&] { ArchiveReader reader(broken); }).second;
    ASSERT_FALSE(brokenError.isEmpty());
    QThreadPool pool;
    ArchiveShelf shelf;
    shelf.readAhead(pool, {kept, changed, gone, broken});
    EXPECT_EQ(paths(shelf.open(kept)), QStringList{u"maps/a.bsp"_s});
    pool.waitForDone(); // the others are read ahead by now
    ASSERT_TRUE(zipOf({"maps/b.bsp", "scripts/b.arena"}).write(changed));
    ASSERT_TRUE(QFile::remove(gone));
    EXPECT_EQ(paths(shelf.open(changed)), (QStringList{u"maps/b.bsp"_s, u"scripts/b.arena"_s}));
    EXPECT_FALSE(thrown([&] { shelf.open(gone); }).second.isEmpty());
    EXPECT_EQ(thrown([&] { shelf.open(broken); }).second, brokenError);
    EXPECT_EQ(shelf.size(), 2);
    EXPECT_EQ(shelf.kept(changed), &shelf.open(changed));
    ASSERT_TRUE(zipOf({"maps/c.bsp"}).write(changed));
    EXPECT_EQ(shelf.kept(changed), nullptr) << "the pictures read ahead come from the file as it is now";
    // Kept archives hold no file open.
    auto openFiles = [] { return QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(); };
    const auto before = openFiles();
    for (int n = 0; n < 50; ++n) {
        ArchiveReader& reader =
            shelf.open(make(zipOf({"maps/m.bsp", entry("s.arena", QByteArray::number(n))}), u"a%1.pk3"_s.arg(n)));
        EXPECT_EQ(reader.readEntry(1), QByteArray::number(n));
        reader.park();
    }
    EXPECT_EQ(openFiles(), before);
    // A kept archive reads again after its file was closed.
    EXPECT_EQ(shelf.open(archive(u"a7.pk3"_s)).readEntry(1), QByteArray("7"));
    EXPECT_EQ(shelf.size(), 52);
}
