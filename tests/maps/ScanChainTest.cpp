// The scan's phases run as one chain (archives kept, scripts and level shots read in
// memory, pictures converted on worker threads) must leave exactly what the phases
// leave when each works through files on its own: the same catalogue, files,
// permissions, messages and log entries. Each case builds the same base folder twice
// and runs it both ways.
#include "maps/ArchiveShelf.h"
#include "maps/LevelShotConverter.h"
#include "maps/MapScanChain.h"
#include "maps/MapScanner.h"
#include "testkit/Printers.h"
#include "testkit/RecordingScanProgress.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <functional>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {

using Setup = std::function<void(const QString& base, const QString& program)>;

struct Outcome {
    bool scanned = false;
    QStringList files;      // path, kind, permissions and a digest of the content
    QStringList messages;   // title and text of each box
    QStringList log;        // the log's lines, sorted: pictures converted in memory come first
    QStringList activities; // what the progress window showed, sorted for the same reason
};

QStringList tree(const QString& root)
{
    QStringList files;
    QDirIterator walk(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString path = walk.next();
        const QFileInfo info = walk.fileInfo();
        const QString relative = path.mid(root.size() + 1);
        if (relative == QLatin1String("arena-steward.log"))
            continue;
        QString line = relative + QStringLiteral(" %1 %2")
                                      .arg(info.isSymLink() ? "link"
                                           : info.isDir()   ? "dir"
                                                            : "file")
                                      .arg(static_cast<int>(info.permissions()), 0, 16);
        if (info.isFile() && !info.isSymLink())
            line += QLatin1Char(' ') +
                    QString::fromLatin1(QCryptographicHash::hash(fileBytes(path), QCryptographicHash::Sha1).toHex());
        files << line;
    }
    files.sort();
    return files;
}

Outcome run(const Setup& setup, bool asChain)
{
    TestApp t;
    RecordingScanProgress progress;
    t.app->services.scanProgress = &progress;
    setup(t.baseFolder(), t.programFolder());

    std::unique_ptr<MapScanChain> chain = asChain ? std::make_unique<MapScanChain>() : nullptr;
    Outcome outcome;
    const QString base = QStringLiteral("Base");
    outcome.scanned = ScanForMaps(*t.app, base, QStringLiteral("Jedi"), t.gameFolder(), chain.get()) &&
                      ExtractLevelShots(*t.app, base, t.gameFolder(), chain.get()) &&
                      ConvertTgaToBmp(*t.app, chain.get());
    chain.reset();

    auto anonymous = [&](QString text) { return text.replace(t.root(), QStringLiteral("<root>")); };
    outcome.files = tree(t.programFolder());
    for (const FakePrompts::Shown& shown : t.prompts.shown)
        outcome.messages << anonymous(shown.request.title + QStringLiteral(" | ") + shown.request.text);
    for (const QString& line : QString::fromLatin1(fileBytes(t.programFolder() + QStringLiteral("/arena-steward.log")))
                                   .split(QLatin1Char('\n')))
        outcome.log << anonymous(line);
    outcome.log.sort();
    outcome.activities = progress.activities;
    outcome.activities.sort();
    return outcome;
}

int count(const QStringList& files, const QString& ending)
{
    return static_cast<int>(std::count_if(files.begin(), files.end(), [&](const QString& line) {
        return line.section(QLatin1Char(' '), 0, 0).endsWith(ending);
    }));
}

void pk3(const QString& base, const QString& name, const ZipBuilder& zip)
{
    ASSERT_TRUE(zip.write(base + QLatin1Char('/') + name));
}

ZipBuilder customMap(const QString& map, const QByteArray& shot)
{
    return ZipBuilder()
        .file(QStringLiteral("maps/") + map + QStringLiteral(".bsp"))
        .file(QStringLiteral("scripts/") + map + QStringLiteral(".arena"),
              arenaScript(map, QStringLiteral("The ") + map, QStringLiteral("ffa duel")))
        .file(QStringLiteral("levelshots/") + map + QStringLiteral(".tga"), shot);
}

// Wider than any level shot the program takes.
QByteArray largeShot() { return tgaHeader(2, 4096, 1, 24) + QByteArray(3, '\0'); }

struct Case {
    const char* name;
    Setup setup;
    std::function<void(const Outcome&)> check; // what the case is about, beyond sameness
};

std::vector<Case> cases()
{
    const QByteArray red = tgaPicture(4, 2, 200, 10, 20);
    const QByteArray blue = tgaPicture(2, 2, 0, 0, 255);
    return {
        {"PlainArchivesAndAStockArchive",
         [=](const QString& base, const QString&) {
             for (const char* map : {"alpha", "beta", "gamma"})
                 pk3(base, QString::fromLatin1(map) + QStringLiteral(".pk3"), customMap(QString::fromLatin1(map), red));
             pk3(base, QStringLiteral("assets0.pk3"),
                 ZipBuilder()
                     .file(QStringLiteral("maps/ffa_bespin.bsp"))
                     .file(QStringLiteral("levelshots/ffa_bespin.jpg"), "jpg"));
         },
         [](const Outcome& o) {
             EXPECT_TRUE(o.scanned);
             EXPECT_EQ(count(o.files, QStringLiteral(".bmp")), 4); // three shots and the fallback
             EXPECT_EQ(count(o.files, QStringLiteral(".tga")), 0);
             EXPECT_EQ(count(o.files, QStringLiteral(".arena")), 0);
         }},
        {"ALaterDuplicateThatCantBeReadLeavesNoPicture",
         [=](const QString& base, const QString&) {
             pk3(base, QStringLiteral("a.pk3"), customMap(QStringLiteral("twin"), red));
             pk3(base, QStringLiteral("b.pk3"),
                 ZipBuilder().file(QStringLiteral("levelshots/twin.tga"), "not a picture"));
         },
         [](const Outcome& o) { EXPECT_EQ(count(o.files, QStringLiteral("twin.bmp")), 0); }},
        {"ALaterDuplicateReplacesTheEarlierPicture",
         [=](const QString& base, const QString&) {
             pk3(base, QStringLiteral("a.pk3"), customMap(QStringLiteral("twin"), red));
             pk3(base, QStringLiteral("b.pk3"), ZipBuilder().file(QStringLiteral("LevelShots/TWIN.tga"), blue));
         },
         [](const Outcome& o) { EXPECT_EQ(count(o.files, QStringLiteral(".bmp")), 3); }},
        {"NamesThatDifferInCaseOnly",
         [=](const QString& base, const QString&) {
             pk3(base, QStringLiteral("a.pk3"),
                 ZipBuilder()
                     .file(QStringLiteral("levelshots/case.tga"), red)
                     .file(QStringLiteral("levelshots/case.TGA"), largeShot())
                     .file(QStringLiteral("levelshots/Case.tga"), blue));
         },
         [](const Outcome& o) {
             EXPECT_EQ(count(o.files, QStringLiteral(".tga")) + count(o.files, QStringLiteral(".TGA")), 0);
         }},
        {"ATooLargePictureIsLogged",
         [=](const QString& base, const QString&) {
             pk3(base, QStringLiteral("big.pk3"), customMap(QStringLiteral("big"), largeShot()));
         },
         [](const Outcome& o) {
             EXPECT_TRUE(o.log.join(QLatin1Char('\n')).contains(QStringLiteral("big.tga was not converted")));
         }},
        {"AReadOnlyScriptStaysAndAnExistingScriptIsReplaced",
         [=](const QString& base, const QString& program) {
             pk3(base, QStringLiteral("a.pk3"),
                 ZipBuilder()
                     .file(QStringLiteral("maps/kept.bsp"))
                     .readOnlyFile(QStringLiteral("scripts/kept.arena"),
                                   arenaScript(QStringLiteral("kept"), QStringLiteral("Kept"), QStringLiteral("ctf"))));
             pk3(base, QStringLiteral("b.pk3"), customMap(QStringLiteral("there"), red));
             writeFile(program + QStringLiteral("/Scripts/there.arena"), "an old script");
         },
         [](const Outcome& o) {
             EXPECT_EQ(count(o.files, QStringLiteral("kept.arena")), 1);
             EXPECT_EQ(count(o.files, QStringLiteral("there.arena")), 0);
         }},
        {"LeftoversOfAnEarlierScanAreConvertedToo",
         [=](const QString& base, const QString& program) {
             pk3(base, QStringLiteral("a.pk3"), customMap(QStringLiteral("fresh"), red));
             writeFile(program + QStringLiteral("/levelshots/old.tga"), blue);
             writeFile(program + QStringLiteral("/levelshots/fresh.bmp"), "an old bitmap");
             // A leftover under the name of a new shot is replaced by it.
             pk3(base, QStringLiteral("b.pk3"), customMap(QStringLiteral("again"), red));
             writeFile(program + QStringLiteral("/levelshots/again.tga"), blue);
         },
         [](const Outcome& o) { EXPECT_EQ(count(o.files, QStringLiteral(".bmp")), 4); }},
        {"ABrokenArchiveEndsTheLevelShotsAfterTheOnesBefore",
         [=](const QString& base, const QString&) {
             pk3(base, QStringLiteral("a.pk3"), customMap(QStringLiteral("first"), red));
             pk3(base, QStringLiteral("b.pk3"), ZipBuilder().file(QStringLiteral("levelshots/first.tga"), blue));
             pk3(base, QStringLiteral("c.pk3"), customMap(QStringLiteral("third"), red));
             // assets1 is read by the level shots only; its table of contents is cut off.
             pk3(base, QStringLiteral("assets1.pk3"), ZipBuilder().file(QStringLiteral("levelshots/x.tga"), red));
             truncateFile(base + QStringLiteral("/assets1.pk3"), 40);
         },
         [](const Outcome& o) { EXPECT_EQ(count(o.files, QStringLiteral(".bmp")), 2); }},
        {"DamagedPictureDataEndsThePhase",
         [=](const QString& base, const QString&) {
             pk3(base, QStringLiteral("a.pk3"), customMap(QStringLiteral("one"), red));
             pk3(base, QStringLiteral("b.pk3"), customMap(QStringLiteral("two"), red));
             patchClaimedSize(base + QStringLiteral("/b.pk3"), QStringLiteral("levelshots/two.tga"), 5);
             pk3(base, QStringLiteral("c.pk3"), customMap(QStringLiteral("three"), red));
         },
         [](const Outcome& o) { EXPECT_EQ(count(o.files, QStringLiteral("three.bmp")), 0); }},
        {"LinksAndBadNamesAreLeftOut",
         [=](const QString& base, const QString&) {
             pk3(base, QStringLiteral("a.pk3"),
                 customMap(QStringLiteral("named"), red)
                     .symlink(QStringLiteral("levelshots/link.tga"), QStringLiteral("/etc/passwd"))
                     .file(QStringLiteral("levelshots/new\nline.tga"), red)
                     .file(QStringLiteral("levelshots/../escape.tga"), red));
         },
         [](const Outcome& o) { EXPECT_EQ(count(o.files, QStringLiteral(".bmp")), 2); }},
        {"AFolderWhereAPictureGoesEndsThePhase",
         [=](const QString& base, const QString& program) {
             pk3(base, QStringLiteral("a.pk3"), customMap(QStringLiteral("blocked"), red));
             QDir().mkpath(program + QStringLiteral("/levelshots/blocked.tga"));
         },
         [](const Outcome& o) { EXPECT_TRUE(o.log.join(QLatin1Char('\n')).contains(QStringLiteral("is a folder"))); }},
        {"AScriptOutsideTheScriptsFolderEndsTheScan",
         [=](const QString& base, const QString&) {
             pk3(base, QStringLiteral("a.pk3"), customMap(QStringLiteral("fine"), red));
             pk3(base, QStringLiteral("b.pk3"),
                 ZipBuilder().file(QStringLiteral("maps/lost.bsp")).file(QStringLiteral("lost.arena"), "{\r\n}\r\n"));
         },
         [](const Outcome& o) {
             EXPECT_FALSE(o.scanned);
             EXPECT_EQ(o.messages.size(), 1);
         }},
    };
}

void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class ScanChain : public ::testing::TestWithParam<Case> {};

} // namespace

TEST_P(ScanChain, LeavesWhatThePhasesLeaveAlone)
{
    const Case& c = GetParam();
    const Outcome alone = run(c.setup, false);
    const Outcome chained = run(c.setup, true);
    EXPECT_EQ(chained.scanned, alone.scanned);
    EXPECT_EQ(chained.files, alone.files);
    EXPECT_EQ(chained.messages, alone.messages);
    EXPECT_EQ(chained.log, alone.log);
    EXPECT_EQ(chained.activities, alone.activities);
    c.check(chained);
}

INSTANTIATE_TEST_SUITE_P(Cases, ScanChain, ::testing::ValuesIn(cases()),
                         [](const ::testing::TestParamInfo<Case>& param) { return std::string(param.param.name); });

TEST(ScanChainPhases, TheTgaPicturesNeverBecomeFilesBetweenThePhases)
{
    TestApp t;
    RecordingScanProgress progress;
    t.app->services.scanProgress = &progress;
    for (int n = 0; n < 20; ++n) {
        const QString map = QStringLiteral("m%1").arg(n);
        ASSERT_TRUE(customMap(map, tgaPicture(8, 8, static_cast<quint8>(n), 0, 0))
                        .write(t.baseFolder() + QLatin1Char('/') + map + QStringLiteral(".pk3")));
    }
    MapScanChain chain;
    const QString base = QStringLiteral("Base");
    ASSERT_TRUE(ScanForMaps(*t.app, base, QStringLiteral("Jedi"), t.gameFolder(), &chain));
    EXPECT_FALSE(QFileInfo::exists(t.programFolder() + QStringLiteral("/Scripts")));
    EXPECT_EQ(chain.archives.size(), 20);
    ASSERT_TRUE(ExtractLevelShots(*t.app, base, t.gameFolder(), &chain));
    const QString shots = t.programFolder() + QStringLiteral("/levelshots");
    EXPECT_TRUE(QDir(shots).entryList({QStringLiteral("*.tga")}, QDir::Files).isEmpty());
    ASSERT_TRUE(ConvertTgaToBmp(*t.app, &chain));
    EXPECT_EQ(QDir(shots).entryList({QStringLiteral("m*.bmp")}, QDir::Files).size(), 20);
    EXPECT_EQ(progress.activities.count(QStringLiteral("Converting m7.tga....")), 1);
}

TEST(ScanChainPhases, AnArchiveReplacedBetweenThePhasesIsReadAgain)
{
    TestApp t;
    RecordingScanProgress progress;
    t.app->services.scanProgress = &progress;
    const QString archive = t.baseFolder() + QStringLiteral("/a.pk3");
    ASSERT_TRUE(customMap(QStringLiteral("before"), tgaPicture(2, 2, 1, 2, 3)).write(archive));
    MapScanChain chain;
    const QString base = QStringLiteral("Base");
    ASSERT_TRUE(ScanForMaps(*t.app, base, QStringLiteral("Jedi"), t.gameFolder(), &chain));
    ASSERT_TRUE(QFile::remove(archive));
    ASSERT_TRUE(
        ZipBuilder().file(QStringLiteral("levelshots/after.jpg"), "a longer picture than before").write(archive));
    ASSERT_TRUE(ExtractLevelShots(*t.app, base, t.gameFolder(), &chain));
    ASSERT_TRUE(ConvertTgaToBmp(*t.app, &chain));
    const QString shots = t.programFolder() + QStringLiteral("/levelshots");
    EXPECT_TRUE(QFileInfo::exists(shots + QStringLiteral("/after.jpg")));
    EXPECT_FALSE(QFileInfo::exists(shots + QStringLiteral("/before.bmp")));
}

TEST(ArchiveShelfFiles, KeptArchivesHoldNoFileOpen)
{
    TestApp t;
    auto openFiles = [] {
        return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size();
    };
    const auto before = openFiles();
    ArchiveShelf shelf;
    for (int n = 0; n < 50; ++n) {
        const QString path = t.baseFolder() + QStringLiteral("/a%1.pk3").arg(n);
        ASSERT_TRUE(customMap(QStringLiteral("m%1").arg(n), tgaPicture(2, 2, 0, 0, 0)).write(path));
        ArchiveReader& reader = shelf.open(path);
        EXPECT_EQ(reader.readEntry(1), arenaScript(QStringLiteral("m%1").arg(n), QStringLiteral("The m%1").arg(n),
                                                   QStringLiteral("ffa duel")));
        reader.park();
    }
    EXPECT_EQ(openFiles(), before);
    // A kept archive reads again after its file was closed.
    ArchiveReader& again = shelf.open(t.baseFolder() + QStringLiteral("/a7.pk3"));
    EXPECT_EQ(again.entry(2).name, QStringLiteral("m7.tga"));
    EXPECT_EQ(again.readEntry(2), tgaPicture(2, 2, 0, 0, 0));
    EXPECT_EQ(shelf.size(), 50);
}

TEST(LevelShotConverterOrder, WorkerThreadsGiveTheResultsAndFilesOfOneThread)
{
    QTemporaryDir dir;
    auto convert = [&](int threads, const QString& folder) {
        QDir().mkpath(folder);
        LevelShotConverter converter(threads);
        for (int n = 0; n < 60; ++n) {
            QByteArray tga = n % 7 == 3    ? largeShot()
                             : n % 11 == 5 ? QByteArray("broken")
                                           : tgaPicture(16, 8, static_cast<quint8>(n), 1, 2);
            converter.add(QStringLiteral("p%1.tga").arg(n), tga, folder + QStringLiteral("/p%1.bmp").arg(n));
        }
        QStringList results;
        for (const ConvertedShot& shot : converter.finish())
            results << shot.name + QLatin1Char(' ') + QString::number(static_cast<int>(shot.fault));
        return results;
    };
    const QStringList one = convert(0, dir.path() + QStringLiteral("/one"));
    const QStringList two = convert(2, dir.path() + QStringLiteral("/two"));
    EXPECT_EQ(two, one);
    EXPECT_EQ(one.at(3), QStringLiteral("p3.tga 2"));
    EXPECT_EQ(one.at(5), QStringLiteral("p5.tga 1"));
    EXPECT_EQ(tree(dir.path() + QStringLiteral("/two")), tree(dir.path() + QStringLiteral("/one")));
    const auto pictures =
        std::count_if(one.begin(), one.end(), [](const QString& r) { return r.endsWith(QLatin1String(" 0")); });
    EXPECT_EQ(QDir(dir.path() + QStringLiteral("/one")).entryList(QDir::Files).size(), pictures);
    EXPECT_EQ(pictures, 60 - 9 - 4);
}
