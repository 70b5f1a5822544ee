#include "maps/MapScanner.h"
#include "maps/MapTreeModel.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "testkit/Printers.h"
#include "testkit/RecordingScanProgress.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <functional>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

class MapScanTest : public ::testing::Test {
protected:
    void SetUp() override { t.app->services.scanProgress = &progress; }

    QString base() const { return t.baseFolder(); }
    void pk3(const QString& name, const ZipBuilder& zip) { ASSERT_TRUE(zip.write(base() + u"/"_s + name)); }
    bool scan() { return ScanForMaps(*t.app, u"Base"_s, u"Jedi"_s, t.gameFolder()); }
    QStringList catalogue() const { return crlfLines(t.programFolder() + u"/Jedi.aml"_s); }
    // The folder takes the case of the first archive that brought a script.
    QString scripts() const { return scriptFolder(*t.app); }

    TestApp t;
    RecordingScanProgress progress;
};

QByteArray script(const char* text) { return QByteArray(text).replace("\n", "\r\n"); }

const QString kArenaMessage = QStringLiteral(
    "The following pk3 b.pk3 file does not contain an arena file, Arena Steward is unable to process "
    "this file\r\nit is recomended that you remove this pk3 file from your Jedi Main folder and run this "
    "map scan again         ");

} // namespace

TEST_F(MapScanTest, SkipsAssets1AndTheOtherLevelsOfAssets0AndTakesAnyNameEndingInPk3)
{
    pk3(u"assets0.pk3"_s,
        ZipBuilder().file(u"maps/ffa_bespin.bsp"_s).file(u"maps/mp_training.bsp"_s).file(u"maps/duel_pit.bsp"_s));
    pk3(u"Assets1.PK3"_s, ZipBuilder().file(u"maps/ctf_yavin.bsp"_s));
    pk3(u"custompk3"_s, ZipBuilder().file(u"maps/ffa_raven.bsp"_s));
    writeFile(base() + u"/readme.txt"_s, "not an archive");
    QDir().mkpath(base() + u"/sub.pk3"_s);

    ASSERT_TRUE(scan());
    EXPECT_EQ(catalogue(),
              (QStringList{
                  u"assets0.pk3,ffa_bespin,ffa_bespin,Bespin Streets,ffa holocron jedimaster team"_s,
                  u"assets0.pk3,duel_pit,duel_pit,Trial Pit,duel"_s,
                  u"custompk3,ffa_raven,ffa_raven,Imperial Labs: Raven,ffa holocron jedimaster duel team"_s,
              }));
    const QByteArray bytes = fileBytes(t.programFolder() + u"/Jedi.aml"_s);
    EXPECT_TRUE(bytes.endsWith("duel team\r\n"));

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
    pk3(u"a_stockfirst.pk3"_s,
        ZipBuilder()
            .file(u"maps/ffa_bespin.bsp"_s)
            .file(u"maps/mymap.bsp"_s)
            .file(u"maps/second.bsp"_s)
            .file(u"scripts/mymap.arena"_s, arenaScript(u"mymap"_s, u"My Map"_s, u"ffa duel"_s)));
    pk3(u"b_customfirst.pk3"_s,
        ZipBuilder()
            .file(u"maps/other.bsp"_s)
            .file(u"maps/ffa_yavin.bsp"_s)
            .file(u"scripts/other.arena"_s, script("{\nmap \"other\"\ntype \"ctf\"\nlongname \"Other\"\n}\n")));
    pk3(u"c_upper.pk3"_s,
        ZipBuilder()
            .file(u"maps/FFA_BESPIN.bsp"_s)
            .file(u"Scripts/upper.arena"_s, script("{\n  longname \"Upper\"\n  type \"team\"  \n}\n")));
    pk3(u"d_longonly.pk3"_s,
        ZipBuilder().file(u"maps/d.bsp"_s).file(u"scripts/d.arena"_s, script("{\nlongname \"D Only\"\n}\n")));
    pk3(u"e_oneline.pk3"_s, ZipBuilder()
                                .file(u"maps/e.bsp"_s)
                                .file(u"scripts/e.arena"_s, script("{ map \"e\" longname \"E\" type \"duel\" }\n")));
    pk3(u"f_noscript.pk3"_s, ZipBuilder().file(u"maps/f.bsp"_s).file(u"f.txt"_s));
    pk3(u"g_nobsp.pk3"_s, ZipBuilder().file(u"textures/g.jpg"_s).file(u"g.arena"_s, "no bsp, so never looked at"));
    pk3(u"h_multi.pk3"_s,
        ZipBuilder()
            .file(u"maps/h.bsp"_s)
            .file(u"scripts/h.arena"_s,
                  script("{\nmap \"h\"\nlongname \"H One\"\ntype \"duel\"\n}\n{\nmap \"h2\"\nlongname \"H Two\"\ntype "
                         "\"ctf\"\n}\n")));
    pk3(u"i_noblock.pk3"_s,
        ZipBuilder()
            .file(u"maps/i.bsp"_s)
            .file(u"scripts/i.arena"_s, script("map \"i\"\nlongname \"I, the map\"\ngametype \"ffa\"\n")));

    ASSERT_TRUE(scan());
    EXPECT_EQ(catalogue(), (QStringList{
                               u"a_stockfirst.pk3,ffa_bespin,ffa_bespin,Bespin Streets,ffa holocron jedimaster team"_s,
                               u"a_stockfirst.pk3,mymap,mymap,My Map,FFA DUEL"_s,
                               u"b_customfirst.pk3,other,other,Other,CTF"_s,
                               u"c_upper.pk3,FFA_BESPIN,FFA_BESPIN,Upper,TEAM"_s,
                               u"d_longonly.pk3,d,d,D Only,TEAM"_s,
                               u"e_oneline.pk3,e,e,D Only,TEAM"_s,
                               u"f_noscript.pk3,f,f,f,unknown"_s,
                               u"h_multi.pk3,h,h,H One,DUEL"_s,
                               u"i_noblock.pk3,i,i,I, the map,FFA"_s,
                           }));
    // The scripts read are deleted; the folder stays.
    EXPECT_TRUE(QFileInfo(scripts()).isDir());
    EXPECT_TRUE(QDir(scripts()).entryList(QDir::Files | QDir::Hidden).isEmpty());
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(MapScanTest, AReadOnlyScriptIsLeftBehind)
{
    pk3(u"ro.pk3"_s, ZipBuilder()
                         .file(u"maps/ro.bsp"_s)
                         .readOnlyFile(u"scripts/ro.arena"_s, arenaScript(u"ro"_s, u"Kept"_s, u"duel"_s)));
    pk3(u"rw.pk3"_s,
        ZipBuilder().file(u"maps/rw.bsp"_s).file(u"scripts/rw.arena"_s, arenaScript(u"rw"_s, u"Gone"_s, u"ffa"_s)));
    ASSERT_TRUE(scan());
    EXPECT_EQ(catalogue(), (QStringList{u"ro.pk3,ro,ro,Kept,DUEL"_s, u"rw.pk3,rw,rw,Gone,FFA"_s}));
    EXPECT_EQ(QDir(scripts()).entryList(QDir::Files), QStringList{u"ro.arena"_s});
    EXPECT_EQ(fileAttributes(scripts() + u"/ro.arena"_s), 1);
}

TEST_F(MapScanTest, AnArenaScriptOutsideTheScriptsFolderEndsTheScanWithTheArchiveBox)
{
    pk3(u"a.pk3"_s, ZipBuilder().file(u"maps/duel_pit.bsp"_s));
    pk3(u"b.pk3"_s, ZipBuilder().file(u"maps/b.bsp"_s).file(u"b.arena"_s, "{\r\n}\r\n"));
    pk3(u"c.pk3"_s, ZipBuilder().file(u"maps/ffa_yavin.bsp"_s));

    EXPECT_FALSE(scan());
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, kArenaMessage, Buttons::Ok}));
    EXPECT_EQ(catalogue(), QStringList{u"a.pk3,duel_pit,duel_pit,Trial Pit,duel"_s});
    EXPECT_FALSE(progress.visible);
    EXPECT_EQ(progress.value, 0);
    EXPECT_FALSE(progress.busy);
    EXPECT_EQ(t.store->GetSetting(u"RunOnce"_s, u"unset"_s), u"unset"_s);
}

TEST_F(MapScanTest, ABspNameWithoutADotEndsTheScanWithItsOwnDescription)
{
    pk3(u"a.pk3"_s, ZipBuilder().file(u"maps/duel_pit.bsp"_s));
    pk3(u"b.pk3"_s, ZipBuilder().file(u"maps/nodotbsp"_s));
    EXPECT_FALSE(scan());
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {u"arena-steward"_s, Icon::Exclamation, u"Invalid procedure call or argument"_s, Buttons::Ok}));
    EXPECT_EQ(catalogue(), QStringList{u"a.pk3,duel_pit,duel_pit,Trial Pit,duel"_s});
    EXPECT_TRUE(progress.visible); // only the first two kinds hide the window
    EXPECT_FALSE(progress.busy);
}

TEST_F(MapScanTest, AMissingBaseFolderResetsThePathAndTheFirstRunMarker)
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
}

TEST_F(MapScanTest, ABaseFolderWithoutArchivesGivesAnEmptyCatalogue)
{
    writeFile(t.programFolder() + u"/Jedi.aml"_s, "old.pk3,x,x,x,x\r\n");
    EXPECT_TRUE(scan());
    EXPECT_TRUE(QFileInfo::exists(t.programFolder() + u"/Jedi.aml"_s));
    EXPECT_EQ(fileBytes(t.programFolder() + u"/Jedi.aml"_s), QByteArray());
    EXPECT_TRUE(t.prompts.shown.empty());
}

namespace {
/// The archive b.pk3 with its map, for one entry more.
ZipBuilder withMap() { return ZipBuilder().file(u"maps/b.bsp"_s); }

struct Hostile {
    const char* name;
    std::function<void(const QString& path, const QString& victim)> make;
    bool arenaBox; ///< ends in the "does not contain an arena file" box, else in the description box
};
} // namespace

TEST_F(MapScanTest, HostileArchivesEndTheScanWithoutWritingOutsideAndKeepTheCatalogueSoFar)
{
    const Hostile cases[] = {
        {"zip slip",
         [](const QString& p, const QString&) {
             withMap().file(u"scripts/../../../../evil.arena"_s, "{\r\n}\r\n").write(p);
         },
         true},
        {"absolute",
         [](const QString& p, const QString& victim) { withMap().file(victim + u".arena"_s, "{\r\n}\r\n").write(p); },
         true},
        {"link",
         [](const QString& p, const QString& victim) { withMap().symlink(u"scripts/b.arena"_s, victim).write(p); },
         true},
        {"truncated",
         [](const QString& p, const QString&) {
             withMap().file(u"scripts/b.arena"_s, QByteArray(3000, 'x')).write(p);
             truncateFile(p, QFileInfo(p).size() / 2);
         },
         false},
        {"not a zip", [](const QString& p, const QString&) { writeFile(p, QByteArray(5000, 'P')); }, false},
        {"huge claim",
         [](const QString& p, const QString&) {
             withMap().file(u"scripts/b.arena"_s, QByteArray(3000, ' ')).write(p);
             patchClaimedSize(p, u"scripts/b.arena"_s, 0xFFFFFF00u);
         },
         false},
    };
    for (const Hostile& c : cases) {
        SCOPED_TRACE(c.name);
        TestApp app;
        RecordingScanProgress shown;
        app.app->services.scanProgress = &shown;
        const QString victim = app.root() + u"/victim"_s;
        writeFile(victim, "untouched");
        ASSERT_TRUE(ZipBuilder().file(u"maps/duel_pit.bsp"_s).write(app.baseFolder() + u"/a.pk3"_s));
        c.make(app.baseFolder() + u"/b.pk3"_s, victim);
        ASSERT_TRUE(ZipBuilder().file(u"maps/ffa_yavin.bsp"_s).write(app.baseFolder() + u"/c.pk3"_s));

        EXPECT_FALSE(ScanForMaps(*app.app, u"Base"_s, u"Jedi"_s, app.gameFolder()));
        EXPECT_EQ(crlfLines(app.programFolder() + u"/Jedi.aml"_s),
                  QStringList{u"a.pk3,duel_pit,duel_pit,Trial Pit,duel"_s});
        ASSERT_EQ(app.prompts.shown.size(), 1u);
        if (c.arenaBox) {
            EXPECT_TRUE(isBox(app.prompts.last(), {kProductTitle, Icon::Exclamation, kArenaMessage, Buttons::Ok}));
        } else {
            EXPECT_TRUE(app.prompts.last().request.text.contains(u"b.pk3"_s))
                << app.prompts.last().request.text.toStdString();
            EXPECT_EQ(app.prompts.last().request.title, u"ArchiveReader"_s);
        }
        EXPECT_EQ(fileBytes(victim), QByteArray("untouched"));
        QDirIterator all(app.root(), QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
        while (all.hasNext()) {
            const QString path = all.next();
            EXPECT_FALSE(path.contains(u"evil"_s) || path.endsWith(u".arena"_s)) << path.toStdString();
        }
    }
}
