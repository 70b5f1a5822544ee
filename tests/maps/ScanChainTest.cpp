// The map scan: its catalogue, progress window and boxes; hostile archives never write
// outside and keep the catalogue so far. Run as one chain (in memory, worker threads) the
// phases must leave exactly what they leave on their own: files, messages, log, progress.
#include "maps/LevelShotConverter.h"
#include "maps/MapScanChain.h"
#include "maps/MapTreeModel.h"
#include "model/Constants.h"
#include "testkit/BoxExpect.h"
#include "testkit/Golden.h"
#include "MapsKit.h"

#include <QCryptographicHash>
#include <QRegularExpression>
#include <QTemporaryDir>

using namespace steward;
using namespace steward::testing;

namespace {

struct Outcome {
    bool scanned = false;
    QStringList files;      // path, kind, permissions and a digest of the content
    QStringList messages;   // title and text of each box
    QStringList log;        // the log's lines, sorted: pictures converted in memory come first
    QStringList activities; // what the progress window showed, sorted for the same reason
};

using F = const QString&;

QStringList tree(F root)
{
    QStringList files;
    QDirIterator walk(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString path = walk.next();
        const QFileInfo info = walk.fileInfo();
        const QByteArray kind = info.isSymLink() ? "link"
                                : info.isDir()
                                    ? "dir"
                                    : QCryptographicHash::hash(fileBytes(path), QCryptographicHash::Sha1).toHex();
        if (!path.endsWith(u"/arena-steward.log"_s))
            files << path.mid(root.size() + 1) + u" %1 "_s.arg(int(info.permissions()), 0, 16) +
                         QString::fromLatin1(kind);
    }
    files.sort();
    return files;
}

void pk3(F base, F name, const ZipBuilder& zip) { ASSERT_TRUE(zip.write(base + u'/' + name)); }
void pk3(F base, F name, std::initializer_list<Entry> entries) { pk3(base, name, zipOf(entries)); }

ZipBuilder customMap(const QString& map, const QByteArray& shot)
{
    return zipOf({u"maps/"_s + map + u".bsp"_s,
                  entry(u"scripts/"_s + map + u".arena"_s, arenaScript(map, u"The "_s + map, u"ffa duel"_s)),
                  entry(u"levelshots/"_s + map + u".tga"_s, shot)});
}

// Wider than any level shot the program takes.
QByteArray largeShot() { return tgaHeader(2, 4096, 1, 24) + QByteArray(3, '\0'); }

// Beyond sameness: how many files end so ("ending=count ..."), a line the log holds, and
// whether the scan got through; a.pk3 holds the first map, the set-up adds the rest.
struct Case {
    const char *name, *counts, *logged;
    bool scanned;
    const char* first;
    std::function<void(F base, F program)> setup;
};

std::vector<Case> cases()
{
    const QByteArray red = tgaPicture(4, 2, 200, 10, 20), blue = tgaPicture(2, 2, 0, 0, 255);
    return {
        {"PlainArchivesAndAStockArchive", ".bmp=4 .tga=0 .arena=0", "", true, "alpha",
         [=](F b, F) {
             pk3(b, u"b.pk3"_s, customMap(u"beta"_s, red));
             pk3(b, u"c.pk3"_s, customMap(u"gamma"_s, red));
             pk3(b, u"assets0.pk3"_s, {"maps/ffa_bespin.bsp", entry("levelshots/ffa_bespin.jpg", "jpg")});
         }},
        {"ALaterDuplicateThatCantBeReadLeavesNoPicture", "twin.bmp=0", "", true, "twin",
         [=](F b, F) { pk3(b, u"b.pk3"_s, {entry("levelshots/twin.tga", "not a picture")}); }},
        {"ALaterDuplicateReplacesTheEarlierPicture", ".bmp=3", "", true, "twin",
         [=](F b, F) { pk3(b, u"b.pk3"_s, {entry("LevelShots/TWIN.tga", blue)}); }},
        {"NamesThatDifferInCaseOnly", ".tga=0 .TGA=0", "", true, "",
         [=](F b, F) {
             pk3(b, u"a.pk3"_s,
                 {entry("levelshots/case.tga", red), entry("levelshots/case.TGA", largeShot()),
                  entry("levelshots/Case.tga", blue)});
         }},
        // 4096 by 2048 pixels of one colour: 260 KB of runs, a few KB in the archive, and a 32 MB bmp.
        {"ARunLengthBombIsLoggedAndConvertsToNothing", "fine.bmp=1 bomb.bmp=0",
         "The level shot bomb.tga was not converted: it is larger than 2048 by 2048", true, "",
         [=](F b, F) {
             pk3(b, u"a.pk3"_s,
                 customMap(u"bomb"_s, runLengthPicture(4096, 2048))
                     .file(u"levelshots/fine.tga"_s, runLengthPicture(512, 512)));
         }},
        {"AReadOnlyScriptStaysAndAnExistingScriptIsReplaced", "kept.arena=1 there.arena=0", "", true, "there",
         [=](F b, F p) {
             pk3(b, u"b.pk3"_s,
                 zipOf({"maps/kept.bsp"})
                     .readOnlyFile(u"scripts/kept.arena"_s, arenaScript(u"kept"_s, u"Kept"_s, u"ctf"_s)));
             writeFile(p + u"/Scripts/there.arena"_s, "an old script");
         }},
        {"LeftoversOfAnEarlierScanAreConvertedToo", ".bmp=4", "", true, "fresh",
         [=](F b, F p) {
             writeFile(p + u"/levelshots/old.tga"_s, blue);
             writeFile(p + u"/levelshots/fresh.bmp"_s, "an old bitmap");
             pk3(b, u"b.pk3"_s, customMap(u"again"_s, red));
             writeFile(p + u"/levelshots/again.tga"_s, blue);
         }},
        {"ABrokenArchiveEndsTheLevelShotsAfterTheOnesBefore", ".bmp=2",
         "arena-steward::CMapScanner.ExtractLevelShots(Function) (ArchiveReader)", true, "first",
         [=](F b, F) {
             pk3(b, u"b.pk3"_s, {entry("levelshots/first.tga", blue)});
             pk3(b, u"c.pk3"_s, customMap(u"third"_s, red));
             pk3(b, u"assets1.pk3"_s, {entry("levelshots/x.tga", red)});
             truncateFile(b + u"/assets1.pk3"_s, 40);
         }},
        {"DamagedPictureDataEndsThePhase", "three.bmp=0", "", true, "one",
         [=](F b, F) {
             pk3(b, u"b.pk3"_s, customMap(u"two"_s, red));
             patchClaimedSize(b + u"/b.pk3"_s, u"levelshots/two.tga"_s, 5);
             pk3(b, u"c.pk3"_s, customMap(u"three"_s, red));
         }},
        {"LinksAndBadNamesAreLeftOut", ".bmp=2", "", true, "",
         [=](F b, F) {
             pk3(b, u"a.pk3"_s,
                 customMap(u"named"_s, red)
                     .symlink(u"levelshots/link.tga"_s, u"/etc/passwd"_s)
                     .file(u"levelshots/new\nline.tga"_s, red)
                     .file(u"levelshots/../escape.tga"_s, red));
         }},
        {"AFolderWhereAPictureGoesEndsThePhase", "", "is a folder", true, "blocked",
         [=](F, F p) { QDir().mkpath(p + u"/levelshots/blocked.tga"_s); }},
        {"AScriptOutsideTheScriptsFolderEndsTheScan", "", "", false, "fine",
         [=](F b, F) {
             pk3(b, u"b.pk3"_s, {"maps/lost.bsp", entry("lost.arena", "{\r\n}\r\n")});
         }},
    };
}

Outcome run(const Case& c, bool asChain)
{
    TestApp t;
    RecordingScanProgress progress;
    t.app->services.scanProgress = &progress;
    if (*c.first)
        pk3(t.baseFolder(), u"a.pk3"_s, customMap(QString::fromLatin1(c.first), tgaPicture(4, 2, 200, 10, 20)));
    c.setup(t.baseFolder(), t.programFolder());
    std::unique_ptr<MapScanChain> chain = asChain ? std::make_unique<MapScanChain>() : nullptr;
    Outcome outcome;
    outcome.scanned = ScanForMaps(*t.app, u"Base"_s, u"Jedi"_s, t.gameFolder(), chain.get()) &&
                      ExtractLevelShots(*t.app, u"Base"_s, t.gameFolder(), chain.get()) &&
                      ConvertTgaToBmp(*t.app, chain.get());
    chain.reset();
    auto anonymous = [&](QString text) { return text.replace(t.root(), u"<root>"_s); };
    outcome.files = tree(t.programFolder());
    for (const FakePrompts::Shown& shown : t.prompts.shown)
        outcome.messages << anonymous(shown.request.title + u" | "_s + shown.request.text);
    for (const QString& line : QString::fromLatin1(fileBytes(t.programFolder() + u"/arena-steward.log"_s)).split(u'\n'))
        outcome.log << anonymous(line);
    outcome.log.sort();
    outcome.activities = progress.activities;
    outcome.activities.sort();
    return outcome;
}

void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class ScanChain : public ::testing::TestWithParam<Case> {};

class ScanChainPhases : public ScanTest {
protected:
    MapScanChain chain;
};
using MapScanTest = ScanTest;

QByteArray script(const char* text) { return QByteArray(text).replace("\n", "\r\n"); }
QByteArray arena(const char* map, const char* longName, const char* type)
{
    return arenaScript(QString::fromUtf8(map), QString::fromUtf8(longName), QString::fromUtf8(type));
}

const QString kArenaMessage =
    u"The following pk3 b.pk3 file does not contain an arena file, Arena Steward is unable to process "
    "this file\r\nit is recomended that you remove this pk3 file from your Jedi Main folder and run this "
    "map scan again         "_s;

} // namespace

TEST_P(ScanChain, LeavesWhatThePhasesLeaveAlone)
{
    const Case& c = GetParam();
    const Outcome alone = run(c, false), chained = run(c, true);
    EXPECT_EQ(chained.scanned, alone.scanned);
    EXPECT_EQ(chained.files, alone.files);
    EXPECT_EQ(chained.messages, alone.messages);
    EXPECT_EQ(chained.log, alone.log);
    EXPECT_EQ(chained.activities, alone.activities);
    for (const QString& expected : QString::fromLatin1(c.counts).split(u' ', Qt::SkipEmptyParts)) {
        const QString ending = expected.section(u'=', 0, 0);
        EXPECT_EQ(chained.files.filter(QRegularExpression(QRegularExpression::escape(ending) + u" "_s)).size(),
                  expected.section(u'=', 1).toInt())
            << qPrintable(expected);
    }
    EXPECT_TRUE(chained.log.join(u'\n').contains(QString::fromLatin1(c.logged)));
    EXPECT_EQ(chained.scanned, c.scanned);
    EXPECT_EQ(chained.messages.size(), c.scanned ? 0 : 1);
}

INSTANTIATE_TEST_SUITE_P(Cases, ScanChain, ::testing::ValuesIn(cases()),
                         [](const ::testing::TestParamInfo<Case>& param) { return std::string(param.param.name); });

TEST_F(ScanChainPhases, AnArchiveReplacedBetweenThePhasesIsReadAgain)
{
    pk3(u"a.pk3"_s, customMap(u"before"_s, tgaPicture(2, 2, 1, 2, 3)));
    ASSERT_TRUE(scan(&chain));
    ASSERT_TRUE(QFile::remove(t.baseFolder() + u"/a.pk3"_s));
    pk3(u"a.pk3"_s, {entry("levelshots/after.jpg", "a longer picture than before")});
    ASSERT_TRUE(extract(&chain) && ConvertTgaToBmp(*t.app, &chain));
    EXPECT_TRUE(QFileInfo::exists(shots() + u"/after.jpg"_s));
    EXPECT_FALSE(QFileInfo::exists(shots() + u"/before.bmp"_s));
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
            converter.add(u"p%1.tga"_s.arg(n), tga, folder + u"/p%1.bmp"_s.arg(n));
        }
        QStringList results;
        for (const ConvertedShot& shot : converter.finish())
            results << shot.name + u' ' + QString::number(static_cast<int>(shot.fault));
        return results;
    };
    const QStringList one = convert(0, dir.path() + u"/one"_s);
    const QStringList two = convert(2, dir.path() + u"/two"_s);
    EXPECT_EQ(two, one);
    EXPECT_EQ(one.at(3), u"p3.tga 2"_s);
    EXPECT_EQ(one.at(5), u"p5.tga 1"_s);
    EXPECT_EQ(tree(dir.path() + u"/two"_s), tree(dir.path() + u"/one"_s));
    EXPECT_EQ(QDir(dir.path() + u"/one"_s).entryList(QDir::Files).size(), 60 - 9 - 4);
}

TEST_F(MapScanTest, SkipsAssets1AndTheOtherLevelsOfAssets0AndTakesAnyNameEndingInPk3)
{
    pk3(u"assets0.pk3"_s, {"maps/ffa_bespin.bsp", "maps/mp_training.bsp", "maps/duel_pit.bsp"});
    pk3(u"Assets1.PK3"_s, {"maps/ctf_yavin.bsp"});
    pk3(u"custompk3"_s, {"maps/ffa_raven.bsp"});
    writeFile(t.baseFolder() + u"/readme.txt"_s, "not an archive");
    QDir().mkpath(t.baseFolder() + u"/sub.pk3"_s);
    ASSERT_TRUE(scan());
    expectGolden(t.programFolder() + u"/Jedi.aml"_s, u"maps/stock.aml"_s);
    // The window: shown, busy for the scan, one activity per archive, the bar over
    // every file of the folder, back at 0 at the end; it stays on screen.
    EXPECT_EQ(progress.events, (QStringList{u"show"_s, u"busy"_s, u"idle"_s}));
    EXPECT_TRUE(progress.visible);
    EXPECT_EQ(progress.maximum, 4);
    EXPECT_EQ(progress.values, (std::vector<int>{1, 1, 2, 3, 4, 0}));
    EXPECT_EQ(progress.activities,
              (QStringList{QString(), u"Scanning assets0.pk3 ...."_s, u"Scanning custompk3 ...."_s}));
}

TEST_F(MapScanTest, TakesOneCustomMapPerArchiveWithItsArenaScript)
{
    // Listing order: a, b, c, ... The long name and type carry over from one script
    // to the next, and the type is upper-cased.
    pk3(u"a_stockfirst.pk3"_s, {"maps/ffa_bespin.bsp", "maps/mymap.bsp", "maps/second.bsp",
                                entry("scripts/mymap.arena", arena("mymap", "My Map", "ffa duel"))});
    pk3(u"b_customfirst.pk3"_s,
        {"maps/other.bsp", "maps/ffa_yavin.bsp",
         entry("scripts/other.arena", script("{\nmap \"other\"\ntype \"ctf\"\nlongname \"Other\"\n}\n"))});
    pk3(u"c_upper.pk3"_s, {"maps/FFA_BESPIN.bsp",
                           entry("Scripts/upper.arena", script("{\n  longname \"Upper\"\n  type \"team\"  \n}\n"))});
    pk3(u"d_longonly.pk3"_s, {"maps/d.bsp", entry("scripts/d.arena", script("{\nlongname \"D Only\"\n}\n"))});
    pk3(u"e_oneline.pk3"_s,
        {"maps/e.bsp", entry("scripts/e.arena", script("{ map \"e\" longname \"E\" type \"duel\" }\n"))});
    pk3(u"f_noscript.pk3"_s, {"maps/f.bsp", "f.txt"});
    pk3(u"g_nobsp.pk3"_s, {"textures/g.jpg", entry("g.arena", "no bsp, so never looked at")});
    pk3(u"h_multi.pk3"_s,
        {"maps/h.bsp", entry("scripts/h.arena", script("{\nmap \"h\"\nlongname \"H One\"\ntype \"duel\"\n}\n"
                                                       "{\nmap \"h2\"\nlongname \"H Two\"\ntype \"ctf\"\n}\n"))});
    pk3(u"i_noblock.pk3"_s,
        {"maps/i.bsp", entry("scripts/i.arena", script("map \"i\"\nlongname \"I, the map\"\ngametype \"ffa\"\n"))});
    ASSERT_TRUE(scan());
    expectGolden(t.programFolder() + u"/Jedi.aml"_s, u"maps/custom.aml"_s);
    // The scripts read are deleted; the folder, in the case of the first archive that brought one, stays.
    EXPECT_TRUE(QFileInfo(scriptFolder(*t.app)).isDir());
    EXPECT_EQ(filesUnder(scriptFolder(*t.app)), QStringList());
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(MapScanTest, AReadOnlyScriptIsLeftBehindAndScriptsWithControlCharactersAreLeftOut)
{
    pk3(u"ro.pk3"_s, zipOf({"maps/ro.bsp"}).readOnlyFile(u"scripts/ro.arena"_s, arena("ro", "Kept", "duel")));
    pk3(u"rw.pk3"_s, {"maps/rw.bsp", entry("scripts/rw.arena", arena("rw", "Gone", "ffa"))});
    pk3(u"s.pk3"_s, {"maps/s.bsp", entry("scripts/s\nb.arena", arena("s", "Never", "ffa"))});
    pk3(u"t.pk3"_s, {"maps/t.bsp", entry(QString::fromLatin1("scripts/t\x7f.arena"), "{\r\n}\r\n"),
                     entry("scripts/t.arena", arena("t", "Tee", "ffa"))});
    ASSERT_TRUE(scan());
    EXPECT_EQ(catalogue(), (QStringList{u"ro.pk3,ro,ro,Kept,DUEL"_s, u"rw.pk3,rw,rw,Gone,FFA"_s,
                                        u"s.pk3,s,s,s,unknown"_s, u"t.pk3,t,t,Tee,FFA"_s}));
    EXPECT_EQ(filesUnder(t.programFolder()),
              (QStringList{u"Jedi.aml"_s, u"arena-steward.log"_s, u"scripts/ro.arena"_s}));
    EXPECT_EQ(fileAttributes(scriptFolder(*t.app) + u"/ro.arena"_s), 1);
    EXPECT_TRUE(log().contains(u"The script s\\x0ab.arena of s.pk3 was left out"_s)) << log().toStdString();
    EXPECT_TRUE(log().contains(u"The script t\\x7f.arena of t.pk3 was left out"_s));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(MapScanTest, AMissingBaseFolderResetsThePathAndTheFirstRunMarkerAndAnEmptyOneGivesAnEmptyCatalogue)
{
    t.store->SaveSetting(u"PathToJedi"_s, u"/somewhere"_s);
    t.store->SaveSetting(u"RunOnce"_s, u"1"_s);
    EXPECT_FALSE(ScanForMaps(*t.app, u"Base"_s, u"Jedi"_s, t.root() + u"/nogame"_s));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    const QString tail = kTail;
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {kProductTitle, Icon::Critical,
                       u"Arena Steward was unable to locate any pk3 files in your Jedi base folder"_s + tail +
                           u"\r\nThis might be because the path to Jedi Knight 2 is inncorrect"_s + tail +
                           u"\r\nArena Steward will now close and reset the selected path to Jedi Knight 2"_s + tail +
                           u"\r\nRestart Arena Steward and make sure you select the correct path to Jedi Knight 2"_s +
                           tail + u"\r\nIf this problem continues please contact "_s + kContactAddress + tail,
                       Buttons::Ok}));
    EXPECT_EQ(t.store->GetSetting(u"PathToJedi"_s, u"unset"_s), QString());
    EXPECT_EQ(t.store->GetSetting(u"RunOnce"_s), u"0"_s);
    EXPECT_FALSE(progress.visible);
    // A base folder without archives gives an empty catalogue.
    writeFile(t.programFolder() + u"/Jedi.aml"_s, "old.pk3,x,x,x,x\r\n");
    EXPECT_TRUE(scan());
    EXPECT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(QFileInfo::exists(t.programFolder() + u"/Jedi.aml"_s) &&
                fileBytes(t.programFolder() + u"/Jedi.aml"_s).isEmpty());
}

TEST(MapScanHostile, ArchivesEndTheScanWithTheirBoxWithoutWritingOutsideAndKeepTheCatalogueSoFar)
{
    QTemporaryDir outside;
    const QString victim = outside.path() + u"/victim"_s;
    writeFile(victim, "untouched");
    // The box that ends the scan: the arena box's text, or (from the reader) a part of it.
    struct Hostile {
        const char* name;
        ZipBuilder zip;
        std::function<void(const QString& path)> spoil = nullptr;
        QString title = kProductTitle, text = kArenaMessage;
    };
    const QString arenaBox = kProductTitle, reader = u"ArchiveReader"_s;
    const Hostile cases[] = {
        {"outside the scripts folder", zipOf({"maps/b.bsp", entry("b.arena", "{\r\n}\r\n")})},
        {"zip slip", zipOf({"maps/b.bsp", entry("scripts/../../../../evil.arena", "{\r\n}\r\n")})},
        {"absolute", zipOf({"maps/b.bsp", entry(victim + u".arena"_s, "{\r\n}\r\n")})},
        {"link", zipOf({"maps/b.bsp"}).symlink(u"scripts/b.arena"_s, victim)},
        {"truncated", zipOf({"maps/b.bsp", entry("scripts/b.arena", QByteArray(3000, 'x'))}),
         [](const QString& p) { truncateFile(p, QFileInfo(p).size() / 2); }, reader, u"b.pk3"_s},
        {"not a zip", zipOf({"maps/b.bsp"}), [](const QString& p) { writeFile(p, QByteArray(5000, 'P')); }, reader,
         u"b.pk3"_s},
        {"huge claim", zipOf({"maps/b.bsp", entry("scripts/b.arena", QByteArray(3000, ' '))}),
         [](const QString& p) { patchClaimedSize(p, u"scripts/b.arena"_s, 0xFFFFFF00u); }, reader, u"b.pk3"_s},
        {"a bsp name without a dot", zipOf({"maps/nodotbsp"}), nullptr, u"arena-steward"_s,
         u"Invalid procedure call or argument"_s},
    };
    for (const Hostile& c : cases) {
        SCOPED_TRACE(c.name);
        TestApp app;
        RecordingScanProgress shown;
        app.app->services.scanProgress = &shown;
        pk3(app.baseFolder(), u"a.pk3"_s, {"maps/duel_pit.bsp"});
        pk3(app.baseFolder(), u"b.pk3"_s, c.zip);
        if (c.spoil)
            c.spoil(app.baseFolder() + u"/b.pk3"_s);
        pk3(app.baseFolder(), u"c.pk3"_s, {"maps/ffa_yavin.bsp"});
        EXPECT_FALSE(ScanForMaps(*app.app, u"Base"_s, u"Jedi"_s, app.gameFolder()));
        EXPECT_EQ(crlfLines(app.programFolder() + u"/Jedi.aml"_s),
                  QStringList{u"a.pk3,duel_pit,duel_pit,Trial Pit,duel"_s});
        ASSERT_EQ(app.prompts.shown.size(), 1u);
        const MessageBoxRequest& box = app.prompts.last().request;
        EXPECT_EQ(box.title, c.title);
        EXPECT_TRUE(c.title == reader ? box.text.contains(c.text) : box.text == c.text) << box.text.toStdString();
        EXPECT_TRUE(isBox(app.prompts.last(), {box.title, Icon::Exclamation, box.text, Buttons::Ok}));
        // The arena box hides the window; the others leave it on screen.
        EXPECT_EQ(shown.visible, c.title != arenaBox);
        EXPECT_TRUE(shown.value == 0 && !shown.busy);
        EXPECT_EQ(app.store->GetSetting(u"RunOnce"_s, u"unset"_s), u"unset"_s);
        EXPECT_EQ(fileBytes(victim), QByteArray("untouched"));
        EXPECT_EQ(filesUnder(outside.path()), QStringList{u"victim"_s});
        for (const QString& path : filesUnder(app.root()))
            EXPECT_FALSE(path.contains(u"evil"_s) || path.endsWith(u".arena"_s)) << path.toStdString();
    }
}
