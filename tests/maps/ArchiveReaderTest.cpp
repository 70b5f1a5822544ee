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

namespace {

class ArchiveReaderTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString root() const { return dir.path(); }
    QString archive(const QString& name = QStringLiteral("test.pk3")) const
    {
        return root() + QStringLiteral("/") + name;
    }
    QString target() const { return root() + QStringLiteral("/target"); }

    // Every file below the temporary folder other than the archives and the target.
    QStringList filesOutsideTarget() const
    {
        QStringList found;
        QDirIterator it(root(), QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            if (!path.startsWith(target() + QStringLiteral("/")) && !path.endsWith(QStringLiteral(".pk3")))
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
                    .file(QStringLiteral("maps/mymap.bsp"), "BSP")
                    .folder(QStringLiteral("models/players/"))
                    .file(QStringLiteral("top.txt"), "top")
                    .file(QStringLiteral("levelshots/mymap.jpg"), "JPG")
                    .write(archive()));
    ArchiveReader reader(archive());
    ASSERT_EQ(reader.entryCount(), 4);
    EXPECT_EQ(reader.entry(0).folder, QStringLiteral("maps"));
    EXPECT_EQ(reader.entry(0).name, QStringLiteral("mymap.bsp"));
    EXPECT_EQ(reader.entryText(0), QStringLiteral("maps\\|mymap.bsp"));
    EXPECT_TRUE(reader.entry(1).isFolder);
    EXPECT_EQ(reader.entryText(1), QStringLiteral("models\\players\\|"));
    EXPECT_EQ(reader.entryText(2), QStringLiteral("|top.txt"));
    EXPECT_EQ(reader.entry(3).size, 3u);
    EXPECT_EQ(reader.readEntry(3), QByteArray("JPG"));
    EXPECT_EQ(errorNumberOf([&] { reader.entry(4); }), err::SubscriptOutOfRange);
}

TEST_F(ArchiveReaderTest, ReadsAnEntryOnlyWithinItsLimit)
{
    ASSERT_TRUE(ZipBuilder().file(QStringLiteral("a.txt"), QByteArray(1000, 'a')).write(archive()));
    ArchiveReader reader(archive());
    EXPECT_EQ(reader.readEntry(0, 1000).size(), 1000);
    EXPECT_EQ(errorNumberOf([&] { reader.readEntry(0, 999); }), err::BadArchive);
}

TEST_F(ArchiveReaderTest, SelectionMatchesFoldersAndNamesWithoutRegardToCase)
{
    ASSERT_TRUE(ZipBuilder()
                    .file(QStringLiteral("LevelShots/One.JPG"), "1")
                    .file(QStringLiteral("levelshots/two.tga"), "2")
                    .file(QStringLiteral("levelshots/three.png"), "3")
                    .file(QStringLiteral("levelshots/sub/four.jpg"), "4")
                    .file(QStringLiteral("five.jpg"), "5")
                    .write(archive()));
    QDir().mkpath(target() + QStringLiteral("/levelshots"));
    ArchiveReader reader(archive());
    reader.selectFiles(QStringLiteral("levelshots\\*.jpg"));
    reader.selectFiles(QStringLiteral("levelshots/*.tga"));
    reader.extract(target());
    // The folder that exists takes the pictures whatever case the archive gives it.
    EXPECT_EQ(filesIn(target()),
              (QStringList{QStringLiteral("levelshots/One.JPG"), QStringLiteral("levelshots/two.tga")}));

    ArchiveReader none(archive());
    none.selectFiles(QStringLiteral("Scripts\\missing.arena"));
    EXPECT_TRUE(none.extract(target()).isEmpty());
}

TEST_F(ArchiveReaderTest, ALaterExtractionReplacesTheFileAndKeepsTheReadOnlyMark)
{
    ASSERT_TRUE(ZipBuilder().readOnlyFile(QStringLiteral("scripts/x.arena"), "first").write(archive()));
    ArchiveReader reader(archive());
    const QString written = reader.extractEntry(0, target());
    EXPECT_EQ(written, QFileInfo(target()).canonicalFilePath() + QStringLiteral("/scripts/x.arena"));
    EXPECT_FALSE(QFileInfo(written).permission(QFile::WriteOwner));
    ASSERT_TRUE(ZipBuilder().file(QStringLiteral("Scripts/x.arena"), "second").write(archive(QStringLiteral("b.pk3"))));
    ArchiveReader second(archive(QStringLiteral("b.pk3")));
    second.extractEntry(0, target());
    EXPECT_EQ(fileBytes(written), QByteArray("second"));
    EXPECT_TRUE(QFileInfo(written).permission(QFile::WriteOwner));
    EXPECT_EQ(filesIn(target()), QStringList{QStringLiteral("scripts/x.arena")});
}

TEST_F(ArchiveReaderTest, HostileNamesAreNeverWrittenOutsideTheTarget)
{
    ASSERT_TRUE(ZipBuilder()
                    .file(QStringLiteral("levelshots/../../escape1.jpg"), "evil")
                    .file(QStringLiteral("../escape2.jpg"), "evil")
                    .file(root() + QStringLiteral("/escape3.jpg"), "evil")
                    .file(QStringLiteral("levelshots\\..\\..\\escape4.jpg"), "evil")
                    .symlink(QStringLiteral("levelshots/link.jpg"), root() + QStringLiteral("/victim.txt"))
                    .file(QStringLiteral("levelshots/good.jpg"), "good")
                    .write(archive()));
    writeFile(root() + QStringLiteral("/victim.txt"), "untouched");

    ArchiveReader reader(archive());
    for (int i = 0; i < 5; ++i) {
        SCOPED_TRACE(reader.entry(i).path.toStdString());
        EXPECT_EQ(errorNumberOf([&] { reader.extractEntry(i, target()); }), err::UnsafeEntry);
    }
    for (const QString& pattern : {QStringLiteral("levelshots\\*.jpg"), QStringLiteral("*.jpg"),
                                   QStringLiteral("levelshots/../../*.jpg"), QStringLiteral("../*.jpg")})
        reader.selectFiles(pattern);
    reader.extract(target());
    EXPECT_EQ(reader.skippedEntries(),
              (QStringList{QStringLiteral("levelshots/../../escape1.jpg"), QStringLiteral("../escape2.jpg"),
                           QStringLiteral("levelshots/../../escape4.jpg"), QStringLiteral("levelshots/link.jpg")}));
    EXPECT_EQ(filesIn(target()), QStringList{QStringLiteral("levelshots/good.jpg")});
    EXPECT_EQ(filesOutsideTarget(), QStringList{root() + QStringLiteral("/victim.txt")});
    EXPECT_EQ(fileBytes(root() + QStringLiteral("/victim.txt")), QByteArray("untouched"));
}

TEST_F(ArchiveReaderTest, AFolderOfTheTargetThatLeadsElsewhereIsNotFollowed)
{
    const QString outside = root() + QStringLiteral("/outside");
    QDir().mkpath(outside);
    QDir().mkpath(target());
    ASSERT_TRUE(QFile::link(outside, target() + QStringLiteral("/levelshots")));
    ASSERT_TRUE(ZipBuilder().file(QStringLiteral("levelshots/a.jpg"), "a").write(archive()));
    ArchiveReader reader(archive());
    EXPECT_EQ(errorNumberOf([&] { reader.extractEntry(0, target()); }), err::UnsafeEntry);
    EXPECT_TRUE(QDir(outside).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

TEST_F(ArchiveReaderTest, ALinkStandingAtTheTargetIsReplacedNotFollowed)
{
    writeFile(root() + QStringLiteral("/victim.txt"), "untouched");
    QDir().mkpath(target() + QStringLiteral("/levelshots"));
    ASSERT_TRUE(QFile::link(root() + QStringLiteral("/victim.txt"), target() + QStringLiteral("/levelshots/a.jpg")));
    ASSERT_TRUE(ZipBuilder().file(QStringLiteral("levelshots/a.jpg"), "picture").write(archive()));
    ArchiveReader(archive()).extractEntry(0, target());
    EXPECT_EQ(fileBytes(root() + QStringLiteral("/victim.txt")), QByteArray("untouched"));
    EXPECT_FALSE(QFileInfo(target() + QStringLiteral("/levelshots/a.jpg")).isSymLink());
    EXPECT_EQ(fileBytes(target() + QStringLiteral("/levelshots/a.jpg")), QByteArray("picture"));
}

TEST_F(ArchiveReaderTest, BrokenArchivesGiveAClearErrorAndLeaveNothingBehind)
{
    ASSERT_TRUE(ZipBuilder()
                    .file(QStringLiteral("levelshots/a.jpg"), QByteArray(4000, 'a'))
                    .file(QStringLiteral("levelshots/b.jpg"), "b")
                    .write(archive(QStringLiteral("good.pk3"))));
    const QByteArray good = fileBytes(archive(QStringLiteral("good.pk3")));

    writeFile(archive(QStringLiteral("truncated.pk3")), good.left(good.size() - 30));
    writeFile(archive(QStringLiteral("halved.pk3")), good.left(good.size() / 2));
    writeFile(archive(QStringLiteral("text.pk3")), "this is not a zip archive at all\r\n");
    QDir().mkpath(archive(QStringLiteral("folder.pk3")));

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
    writeFile(archive(QStringLiteral("spoiled.pk3")), spoiled);
    ArchiveReader reader(archive(QStringLiteral("spoiled.pk3")));
    EXPECT_EQ(errorNumberOf([&] { reader.readEntry(0); }), err::BadArchive);
    reader.selectFiles(QStringLiteral("levelshots\\*.jpg"));
    EXPECT_EQ(errorNumberOf([&] { reader.extract(target()); }), err::BadArchive);
    EXPECT_TRUE(filesIn(target()).isEmpty()) << filesIn(target()).join(QLatin1Char(' ')).toStdString();
}

TEST_F(ArchiveReaderTest, AnEntryThatClaimsAHugeSizeIsRefusedBeforeAnythingIsUnpacked)
{
    ASSERT_TRUE(ZipBuilder().file(QStringLiteral("levelshots/bomb.jpg"), QByteArray(5000, 'z')).write(archive()));
    ASSERT_TRUE(patchClaimedSize(archive(), QStringLiteral("levelshots/bomb.jpg"), 0xFFFFFFF0u));
    ArchiveReader reader(archive());
    EXPECT_EQ(reader.entry(0).size, 0xFFFFFFF0u);
    EXPECT_EQ(errorNumberOf([&] { reader.readEntry(0); }), err::BadArchive);
    reader.selectFiles(QStringLiteral("levelshots\\*.jpg"));
    EXPECT_EQ(errorNumberOf([&] { reader.extract(target()); }), err::BadArchive);
    EXPECT_TRUE(filesIn(target()).isEmpty());

    // An entry that claims less than it holds is caught as well.
    ASSERT_TRUE(patchClaimedSize(archive(), QStringLiteral("levelshots/bomb.jpg"), 100));
    ArchiveReader liar(archive());
    EXPECT_EQ(errorNumberOf([&] { liar.readEntry(0); }), err::BadArchive);
    EXPECT_EQ(errorNumberOf([&] { liar.extractEntry(0, target()); }), err::BadArchive);
    EXPECT_TRUE(filesIn(target()).isEmpty());

    // Many entries that each stay below the entry limit are refused as a whole, before
    // the first is written, when together they claim more than the extraction allows.
    ASSERT_TRUE(ZipBuilder()
                    .file(QStringLiteral("levelshots/a.jpg"), QByteArray(1000, 'a'))
                    .file(QStringLiteral("levelshots/b.jpg"), QByteArray(1000, 'b'))
                    .file(QStringLiteral("levelshots/c.jpg"), QByteArray(1000, 'c'))
                    .write(archive(QStringLiteral("many.pk3"))));
    ArchiveReader many(archive(QStringLiteral("many.pk3")));
    many.selectFiles(QStringLiteral("levelshots\\*.jpg"));
    EXPECT_EQ(errorNumberOf([&] { many.extract(target(), 1000, 2999); }), err::BadArchive);
    EXPECT_TRUE(filesIn(target()).isEmpty());
    EXPECT_EQ(many.extract(target(), 1000, 3000).size(), 3);
}
