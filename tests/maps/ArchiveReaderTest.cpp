#include "maps/ArchiveReader.h"
#include "support/Errors.h"
#include "testkit/Printers.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

class ArchiveReaderTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString root() const { return dir.path(); }
    QString archive(const QString& name = u"test.pk3"_s) const { return root() + u"/"_s + name; }
    QString target() const { return root() + u"/target"_s; }

    // Every file below the temporary folder other than the archives and the target.
    QStringList filesOutsideTarget() const
    {
        QStringList found;
        QDirIterator it(root(), QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            if (!path.startsWith(target() + u"/"_s) && !path.endsWith(u".pk3"_s))
                found << path;
        }
        return found;
    }
    QStringList filesIn(const QString& folder) const
    {
        QStringList found;
        QDirIterator it(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
        while (it.hasNext())
            found << it.next().mid(folder.size() + 1);
        found.sort();
        return found;
    }
};

int errorNumberOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

} // namespace

TEST_F(ArchiveReaderTest, ListsTheDirectoryInItsOrderWithFoldersAndNames)
{
    ASSERT_TRUE(ZipBuilder()
                    .file(u"maps/mymap.bsp"_s, "BSP")
                    .folder(u"models/players/"_s)
                    .file(u"top.txt"_s, "top")
                    .file(u"levelshots/mymap.jpg"_s, "JPG")
                    .write(archive()));
    ArchiveReader reader(archive());
    ASSERT_EQ(reader.entryCount(), 4);
    EXPECT_EQ(reader.entry(0).folder, u"maps"_s);
    EXPECT_EQ(reader.entry(0).name, u"mymap.bsp"_s);
    EXPECT_EQ(reader.entryText(0), u"maps\\|mymap.bsp"_s);
    EXPECT_TRUE(reader.entry(1).isFolder);
    EXPECT_EQ(reader.entryText(1), u"models\\players\\|"_s);
    EXPECT_EQ(reader.entryText(2), u"|top.txt"_s);
    EXPECT_EQ(reader.entry(3).size, 3u);
    EXPECT_EQ(reader.readEntry(3), QByteArray("JPG"));
    EXPECT_EQ(errorNumberOf([&] { reader.entry(4); }), err::SubscriptOutOfRange);
}

TEST_F(ArchiveReaderTest, ReadsAnEntryOnlyWithinItsLimit)
{
    ASSERT_TRUE(ZipBuilder().file(u"a.txt"_s, QByteArray(1000, 'a')).write(archive()));
    ArchiveReader reader(archive());
    EXPECT_EQ(reader.readEntry(0, 1000).size(), 1000);
    EXPECT_EQ(errorNumberOf([&] { reader.readEntry(0, 999); }), err::BadArchive);
}

TEST_F(ArchiveReaderTest, SelectionMatchesFoldersAndNamesWithoutRegardToCase)
{
    ASSERT_TRUE(ZipBuilder()
                    .file(u"LevelShots/One.JPG"_s, "1")
                    .file(u"levelshots/two.tga"_s, "2")
                    .file(u"levelshots/three.png"_s, "3")
                    .file(u"levelshots/sub/four.jpg"_s, "4")
                    .file(u"five.jpg"_s, "5")
                    .write(archive()));
    QDir().mkpath(target() + u"/levelshots"_s);
    ArchiveReader reader(archive());
    reader.selectFiles(u"levelshots\\*.jpg"_s);
    reader.selectFiles(u"levelshots/*.tga"_s);
    reader.extract(target());
    // The folder that exists takes the pictures whatever case the archive gives it.
    EXPECT_EQ(filesIn(target()), (QStringList{u"levelshots/One.JPG"_s, u"levelshots/two.tga"_s}));

    ArchiveReader none(archive());
    none.selectFiles(u"Scripts\\missing.arena"_s);
    EXPECT_TRUE(none.extract(target()).isEmpty());
}

TEST_F(ArchiveReaderTest, ALaterExtractionReplacesTheFileAndKeepsTheReadOnlyMark)
{
    ASSERT_TRUE(ZipBuilder().readOnlyFile(u"scripts/x.arena"_s, "first").write(archive()));
    ArchiveReader reader(archive());
    const QString written = reader.extractEntry(0, target());
    EXPECT_EQ(written, QFileInfo(target()).canonicalFilePath() + u"/scripts/x.arena"_s);
    EXPECT_FALSE(QFileInfo(written).permission(QFile::WriteOwner));
    ASSERT_TRUE(ZipBuilder().file(u"Scripts/x.arena"_s, "second").write(archive(u"b.pk3"_s)));
    ArchiveReader second(archive(u"b.pk3"_s));
    second.extractEntry(0, target());
    EXPECT_EQ(fileBytes(written), QByteArray("second"));
    EXPECT_TRUE(QFileInfo(written).permission(QFile::WriteOwner));
    EXPECT_EQ(filesIn(target()), QStringList{u"scripts/x.arena"_s});
}

TEST_F(ArchiveReaderTest, HostileNamesAreNeverWrittenOutsideTheTarget)
{
    ASSERT_TRUE(ZipBuilder()
                    .file(u"levelshots/../../escape1.jpg"_s, "evil")
                    .file(u"../escape2.jpg"_s, "evil")
                    .file(root() + u"/escape3.jpg"_s, "evil")
                    .file(u"levelshots\\..\\..\\escape4.jpg"_s, "evil")
                    .symlink(u"levelshots/link.jpg"_s, root() + u"/victim.txt"_s)
                    .file(u"levelshots/good.jpg"_s, "good")
                    .write(archive()));
    writeFile(root() + u"/victim.txt"_s, "untouched");

    ArchiveReader reader(archive());
    for (int i = 0; i < 5; ++i) {
        SCOPED_TRACE(reader.entry(i).path.toStdString());
        EXPECT_EQ(errorNumberOf([&] { reader.extractEntry(i, target()); }), err::UnsafeEntry);
    }
    for (const QString& pattern : {u"levelshots\\*.jpg"_s, u"*.jpg"_s, u"levelshots/../../*.jpg"_s, u"../*.jpg"_s})
        reader.selectFiles(pattern);
    reader.extract(target());
    EXPECT_EQ(reader.skippedEntries(), (QStringList{u"levelshots/../../escape1.jpg"_s, u"../escape2.jpg"_s,
                                                    u"levelshots/../../escape4.jpg"_s, u"levelshots/link.jpg"_s}));
    EXPECT_EQ(filesIn(target()), QStringList{u"levelshots/good.jpg"_s});
    EXPECT_EQ(filesOutsideTarget(), QStringList{root() + u"/victim.txt"_s});
    EXPECT_EQ(fileBytes(root() + u"/victim.txt"_s), QByteArray("untouched"));
}

TEST_F(ArchiveReaderTest, AFolderOfTheTargetThatLeadsElsewhereIsNotFollowed)
{
    const QString outside = root() + u"/outside"_s;
    QDir().mkpath(outside);
    QDir().mkpath(target());
    ASSERT_TRUE(QFile::link(outside, target() + u"/levelshots"_s));
    ASSERT_TRUE(ZipBuilder().file(u"levelshots/a.jpg"_s, "a").write(archive()));
    ArchiveReader reader(archive());
    EXPECT_EQ(errorNumberOf([&] { reader.extractEntry(0, target()); }), err::UnsafeEntry);
    EXPECT_TRUE(QDir(outside).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

TEST_F(ArchiveReaderTest, ALinkStandingAtTheTargetIsReplacedNotFollowed)
{
    writeFile(root() + u"/victim.txt"_s, "untouched");
    QDir().mkpath(target() + u"/levelshots"_s);
    ASSERT_TRUE(QFile::link(root() + u"/victim.txt"_s, target() + u"/levelshots/a.jpg"_s));
    ASSERT_TRUE(ZipBuilder().file(u"levelshots/a.jpg"_s, "picture").write(archive()));
    ArchiveReader(archive()).extractEntry(0, target());
    EXPECT_EQ(fileBytes(root() + u"/victim.txt"_s), QByteArray("untouched"));
    EXPECT_FALSE(QFileInfo(target() + u"/levelshots/a.jpg"_s).isSymLink());
    EXPECT_EQ(fileBytes(target() + u"/levelshots/a.jpg"_s), QByteArray("picture"));
}

TEST_F(ArchiveReaderTest, BrokenArchivesGiveAClearErrorAndLeaveNothingBehind)
{
    ASSERT_TRUE(ZipBuilder()
                    .file(u"levelshots/a.jpg"_s, QByteArray(4000, 'a'))
                    .file(u"levelshots/b.jpg"_s, "b")
                    .write(archive(u"good.pk3"_s)));
    const QByteArray good = fileBytes(archive(u"good.pk3"_s));

    writeFile(archive(u"truncated.pk3"_s), good.left(good.size() - 30));
    writeFile(archive(u"halved.pk3"_s), good.left(good.size() / 2));
    writeFile(archive(u"text.pk3"_s), "this is not a zip archive at all\r\n");
    QDir().mkpath(archive(u"folder.pk3"_s));

    for (const char* name : {"truncated.pk3", "halved.pk3", "text.pk3", "folder.pk3", "missing.pk3"}) {
        SCOPED_TRACE(name);
        try {
            ArchiveReader reader(archive(QString::fromLatin1(name)));
            ADD_FAILURE() << "opened";
        } catch (const RuntimeError& e) {
            EXPECT_EQ(e.number(), err::BadArchive);
            EXPECT_TRUE(e.description().contains(QString::fromLatin1(name))) << e.description().toStdString();
        }
    }

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
    EXPECT_TRUE(filesIn(target()).isEmpty()) << filesIn(target()).join(u' ').toStdString();
}

TEST_F(ArchiveReaderTest, AnEntryThatClaimsAHugeSizeIsRefusedBeforeAnythingIsUnpacked)
{
    ASSERT_TRUE(ZipBuilder().file(u"levelshots/bomb.jpg"_s, QByteArray(5000, 'z')).write(archive()));
    ASSERT_TRUE(patchClaimedSize(archive(), u"levelshots/bomb.jpg"_s, 0xFFFFFFF0u));
    ArchiveReader reader(archive());
    EXPECT_EQ(reader.entry(0).size, 0xFFFFFFF0u);
    EXPECT_EQ(errorNumberOf([&] { reader.readEntry(0); }), err::BadArchive);
    reader.selectFiles(u"levelshots\\*.jpg"_s);
    EXPECT_EQ(errorNumberOf([&] { reader.extract(target()); }), err::BadArchive);
    EXPECT_TRUE(filesIn(target()).isEmpty());

    // An entry that claims less than it holds is caught as well.
    ASSERT_TRUE(patchClaimedSize(archive(), u"levelshots/bomb.jpg"_s, 100));
    ArchiveReader liar(archive());
    EXPECT_EQ(errorNumberOf([&] { liar.readEntry(0); }), err::BadArchive);
    EXPECT_EQ(errorNumberOf([&] { liar.extractEntry(0, target()); }), err::BadArchive);
    EXPECT_TRUE(filesIn(target()).isEmpty());

    // Many entries that each stay below the entry limit are refused as a whole, before
    // the first is written, when together they claim more than the extraction allows.
    ASSERT_TRUE(ZipBuilder()
                    .file(u"levelshots/a.jpg"_s, QByteArray(1000, 'a'))
                    .file(u"levelshots/b.jpg"_s, QByteArray(1000, 'b'))
                    .file(u"levelshots/c.jpg"_s, QByteArray(1000, 'c'))
                    .write(archive(u"many.pk3"_s)));
    ArchiveReader many(archive(u"many.pk3"_s));
    many.selectFiles(u"levelshots\\*.jpg"_s);
    EXPECT_EQ(errorNumberOf([&] { many.extract(target(), 1000, 2999); }), err::BadArchive);
    EXPECT_TRUE(filesIn(target()).isEmpty());
    EXPECT_EQ(many.extract(target(), 1000, 3000).size(), 3);
}
