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

namespace {

class MapScanTest : public ::testing::Test {
protected:
    void SetUp() override { t.app->services.scanProgress = &progress; }

    QString base() const { return t.baseFolder(); }
    void pk3(const QString& name, const ZipBuilder& zip)
    {
        ASSERT_TRUE(zip.write(base() + QStringLiteral("/") + name));
    }
    bool scan() { return ScanForMaps(*t.app, QStringLiteral("Base"), QStringLiteral("Jedi"), t.gameFolder()); }
    QStringList catalogue() const { return crlfLines(t.programFolder() + QStringLiteral("/Jedi.aml")); }
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
    pk3(QStringLiteral("assets0.pk3"), ZipBuilder()
                                           .file(QStringLiteral("maps/ffa_bespin.bsp"))
                                           .file(QStringLiteral("maps/mp_training.bsp"))
                                           .file(QStringLiteral("maps/duel_pit.bsp")));
    pk3(QStringLiteral("Assets1.PK3"), ZipBuilder().file(QStringLiteral("maps/ctf_yavin.bsp")));
    pk3(QStringLiteral("custompk3"), ZipBuilder().file(QStringLiteral("maps/ffa_raven.bsp")));
    writeFile(base() + QStringLiteral("/readme.txt"), "not an archive");
    QDir().mkpath(base() + QStringLiteral("/sub.pk3"));

    ASSERT_TRUE(scan());
    EXPECT_EQ(
        catalogue(),
        (QStringList{
            QStringLiteral("assets0.pk3,ffa_bespin,ffa_bespin,Bespin Streets,ffa holocron jedimaster team"),
            QStringLiteral("assets0.pk3,duel_pit,duel_pit,Trial Pit,duel"),
            QStringLiteral("custompk3,ffa_raven,ffa_raven,Imperial Labs: Raven,ffa holocron jedimaster duel team"),
        }));
    const QByteArray bytes = fileBytes(t.programFolder() + QStringLiteral("/Jedi.aml"));
    EXPECT_TRUE(bytes.endsWith("duel team\r\n"));

    // The window: shown, busy for the scan, one activity per archive, the bar over
    // every file of the folder, back at 0 at the end; it stays on screen.
    EXPECT_EQ(progress.events, (QStringList{QStringLiteral("show"), QStringLiteral("busy"), QStringLiteral("idle")}));
    EXPECT_TRUE(progress.visible);
    EXPECT_EQ(progress.maximum, 4);
    EXPECT_EQ(progress.values, (std::vector<int>{1, 1, 2, 3, 4, 0}));
    EXPECT_EQ(progress.activities, (QStringList{QString(), QStringLiteral("Scanning assets0.pk3 ...."),
                                                QStringLiteral("Scanning custompk3 ....")}));
}

TEST_F(MapScanTest, TakesOneCustomMapPerArchiveWithItsArenaScript)
{
    // Listing order: a, b, c, ... The long name and type carry over from one script
    // to the next, and the type is upper-cased.
    pk3(QStringLiteral("a_stockfirst.pk3"),
        ZipBuilder()
            .file(QStringLiteral("maps/ffa_bespin.bsp"))
            .file(QStringLiteral("maps/mymap.bsp"))
            .file(QStringLiteral("maps/second.bsp"))
            .file(QStringLiteral("scripts/mymap.arena"),
                  arenaScript(QStringLiteral("mymap"), QStringLiteral("My Map"), QStringLiteral("ffa duel"))));
    pk3(QStringLiteral("b_customfirst.pk3"),
        ZipBuilder()
            .file(QStringLiteral("maps/other.bsp"))
            .file(QStringLiteral("maps/ffa_yavin.bsp"))
            .file(QStringLiteral("scripts/other.arena"),
                  script("{\nmap \"other\"\ntype \"ctf\"\nlongname \"Other\"\n}\n")));
    pk3(QStringLiteral("c_upper.pk3"),
        ZipBuilder()
            .file(QStringLiteral("maps/FFA_BESPIN.bsp"))
            .file(QStringLiteral("Scripts/upper.arena"), script("{\n  longname \"Upper\"\n  type \"team\"  \n}\n")));
    pk3(QStringLiteral("d_longonly.pk3"),
        ZipBuilder()
            .file(QStringLiteral("maps/d.bsp"))
            .file(QStringLiteral("scripts/d.arena"), script("{\nlongname \"D Only\"\n}\n")));
    pk3(QStringLiteral("e_oneline.pk3"),
        ZipBuilder()
            .file(QStringLiteral("maps/e.bsp"))
            .file(QStringLiteral("scripts/e.arena"), script("{ map \"e\" longname \"E\" type \"duel\" }\n")));
    pk3(QStringLiteral("f_noscript.pk3"),
        ZipBuilder().file(QStringLiteral("maps/f.bsp")).file(QStringLiteral("f.txt")));
    pk3(QStringLiteral("g_nobsp.pk3"), ZipBuilder()
                                           .file(QStringLiteral("textures/g.jpg"))
                                           .file(QStringLiteral("g.arena"), "no bsp, so never looked at"));
    pk3(QStringLiteral("h_multi.pk3"),
        ZipBuilder()
            .file(QStringLiteral("maps/h.bsp"))
            .file(QStringLiteral("scripts/h.arena"),
                  script("{\nmap \"h\"\nlongname \"H One\"\ntype \"duel\"\n}\n{\nmap \"h2\"\nlongname \"H Two\"\ntype "
                         "\"ctf\"\n}\n")));
    pk3(QStringLiteral("i_noblock.pk3"),
        ZipBuilder()
            .file(QStringLiteral("maps/i.bsp"))
            .file(QStringLiteral("scripts/i.arena"), script("map \"i\"\nlongname \"I, the map\"\ngametype \"ffa\"\n")));

    ASSERT_TRUE(scan());
    EXPECT_EQ(catalogue(),
              (QStringList{
                  QStringLiteral("a_stockfirst.pk3,ffa_bespin,ffa_bespin,Bespin Streets,ffa holocron jedimaster team"),
                  QStringLiteral("a_stockfirst.pk3,mymap,mymap,My Map,FFA DUEL"),
                  QStringLiteral("b_customfirst.pk3,other,other,Other,CTF"),
                  QStringLiteral("c_upper.pk3,FFA_BESPIN,FFA_BESPIN,Upper,TEAM"),
                  QStringLiteral("d_longonly.pk3,d,d,D Only,TEAM"),
                  QStringLiteral("e_oneline.pk3,e,e,D Only,TEAM"),
                  QStringLiteral("f_noscript.pk3,f,f,f,unknown"),
                  QStringLiteral("h_multi.pk3,h,h,H One,DUEL"),
                  QStringLiteral("i_noblock.pk3,i,i,I, the map,FFA"),
              }));
    // The scripts read are deleted; the folder stays.
    EXPECT_TRUE(QFileInfo(scripts()).isDir());
    EXPECT_TRUE(QDir(scripts()).entryList(QDir::Files | QDir::Hidden).isEmpty());
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(MapScanTest, AReadOnlyScriptIsLeftBehind)
{
    pk3(QStringLiteral("ro.pk3"),
        ZipBuilder()
            .file(QStringLiteral("maps/ro.bsp"))
            .readOnlyFile(QStringLiteral("scripts/ro.arena"),
                          arenaScript(QStringLiteral("ro"), QStringLiteral("Kept"), QStringLiteral("duel"))));
    pk3(QStringLiteral("rw.pk3"),
        ZipBuilder()
            .file(QStringLiteral("maps/rw.bsp"))
            .file(QStringLiteral("scripts/rw.arena"),
                  arenaScript(QStringLiteral("rw"), QStringLiteral("Gone"), QStringLiteral("ffa"))));
    ASSERT_TRUE(scan());
    EXPECT_EQ(catalogue(),
              (QStringList{QStringLiteral("ro.pk3,ro,ro,Kept,DUEL"), QStringLiteral("rw.pk3,rw,rw,Gone,FFA")}));
    EXPECT_EQ(QDir(scripts()).entryList(QDir::Files), QStringList{QStringLiteral("ro.arena")});
    EXPECT_EQ(fileAttributes(scripts() + QStringLiteral("/ro.arena")), 1);
}

TEST_F(MapScanTest, AnArenaScriptOutsideTheScriptsFolderEndsTheScanWithTheArchiveBox)
{
    pk3(QStringLiteral("a.pk3"), ZipBuilder().file(QStringLiteral("maps/duel_pit.bsp")));
    pk3(QStringLiteral("b.pk3"),
        ZipBuilder().file(QStringLiteral("maps/b.bsp")).file(QStringLiteral("b.arena"), "{\r\n}\r\n"));
    pk3(QStringLiteral("c.pk3"), ZipBuilder().file(QStringLiteral("maps/ffa_yavin.bsp")));

    EXPECT_FALSE(scan());
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, kArenaMessage, Buttons::Ok}));
    EXPECT_EQ(catalogue(), QStringList{QStringLiteral("a.pk3,duel_pit,duel_pit,Trial Pit,duel")});
    EXPECT_FALSE(progress.visible);
    EXPECT_EQ(progress.value, 0);
    EXPECT_FALSE(progress.busy);
    EXPECT_EQ(t.store->GetSetting(QStringLiteral("RunOnce"), QStringLiteral("unset")), QStringLiteral("unset"));
}

TEST_F(MapScanTest, ABspNameWithoutADotEndsTheScanWithItsOwnDescription)
{
    pk3(QStringLiteral("a.pk3"), ZipBuilder().file(QStringLiteral("maps/duel_pit.bsp")));
    pk3(QStringLiteral("b.pk3"), ZipBuilder().file(QStringLiteral("maps/nodotbsp")));
    EXPECT_FALSE(scan());
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {QStringLiteral("arena-steward"), Icon::Exclamation,
                                         QStringLiteral("Invalid procedure call or argument"), Buttons::Ok}));
    EXPECT_EQ(catalogue(), QStringList{QStringLiteral("a.pk3,duel_pit,duel_pit,Trial Pit,duel")});
    EXPECT_TRUE(progress.visible); // only the first two kinds hide the window
    EXPECT_FALSE(progress.busy);
}

TEST_F(MapScanTest, AMissingBaseFolderResetsThePathAndTheFirstRunMarker)
{
    t.store->SaveSetting(QStringLiteral("PathToJedi"), QStringLiteral("/somewhere"));
    t.store->SaveSetting(QStringLiteral("RunOnce"), QStringLiteral("1"));
    EXPECT_FALSE(
        ScanForMaps(*t.app, QStringLiteral("Base"), QStringLiteral("Jedi"), t.root() + QStringLiteral("/nogame")));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    const QString tail = kTail;
    EXPECT_TRUE(isBox(
        t.prompts.last(),
        {kProductTitle, Icon::Critical,
         QStringLiteral("Arena Steward was unable to locate any pk3 files in your Jedi base folder") + tail +
             QStringLiteral("\r\nThis might be because the path to Jedi Knight 2 is inncorrect") + tail +
             QStringLiteral("\r\nArena Steward will now close and reset the selected path to Jedi Knight 2") + tail +
             QStringLiteral("\r\nRestart Arena Steward and make sure you select the correct path to Jedi Knight 2") +
             tail + QStringLiteral("\r\nIf this problem continues please contact ") + kContactAddress + tail,
         Buttons::Ok}));
    EXPECT_EQ(t.store->GetSetting(QStringLiteral("PathToJedi"), QStringLiteral("unset")), QString());
    EXPECT_EQ(t.store->GetSetting(QStringLiteral("RunOnce")), QStringLiteral("0"));
    EXPECT_FALSE(progress.visible);
}

TEST_F(MapScanTest, ABaseFolderWithoutArchivesGivesAnEmptyCatalogue)
{
    writeFile(t.programFolder() + QStringLiteral("/Jedi.aml"), "old.pk3,x,x,x,x\r\n");
    EXPECT_TRUE(scan());
    EXPECT_TRUE(QFileInfo::exists(t.programFolder() + QStringLiteral("/Jedi.aml")));
    EXPECT_EQ(fileBytes(t.programFolder() + QStringLiteral("/Jedi.aml")), QByteArray());
    EXPECT_TRUE(t.prompts.shown.empty());
}

namespace {
/// The archive b.pk3 with its map, for one entry more.
ZipBuilder withMap() { return ZipBuilder().file(QStringLiteral("maps/b.bsp")); }

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
             withMap().file(QStringLiteral("scripts/../../../../evil.arena"), "{\r\n}\r\n").write(p);
         },
         true},
        {"absolute",
         [](const QString& p, const QString& victim) {
             withMap().file(victim + QStringLiteral(".arena"), "{\r\n}\r\n").write(p);
         },
         true},
        {"link",
         [](const QString& p, const QString& victim) {
             withMap().symlink(QStringLiteral("scripts/b.arena"), victim).write(p);
         },
         true},
        {"truncated",
         [](const QString& p, const QString&) {
             withMap().file(QStringLiteral("scripts/b.arena"), QByteArray(3000, 'x')).write(p);
             truncateFile(p, QFileInfo(p).size() / 2);
         },
         false},
        {"not a zip", [](const QString& p, const QString&) { writeFile(p, QByteArray(5000, 'P')); }, false},
        {"huge claim",
         [](const QString& p, const QString&) {
             withMap().file(QStringLiteral("scripts/b.arena"), QByteArray(3000, ' ')).write(p);
             patchClaimedSize(p, QStringLiteral("scripts/b.arena"), 0xFFFFFF00u);
         },
         false},
    };
    for (const Hostile& c : cases) {
        SCOPED_TRACE(c.name);
        TestApp app;
        RecordingScanProgress shown;
        app.app->services.scanProgress = &shown;
        const QString victim = app.root() + QStringLiteral("/victim");
        writeFile(victim, "untouched");
        ASSERT_TRUE(
            ZipBuilder().file(QStringLiteral("maps/duel_pit.bsp")).write(app.baseFolder() + QStringLiteral("/a.pk3")));
        c.make(app.baseFolder() + QStringLiteral("/b.pk3"), victim);
        ASSERT_TRUE(
            ZipBuilder().file(QStringLiteral("maps/ffa_yavin.bsp")).write(app.baseFolder() + QStringLiteral("/c.pk3")));

        EXPECT_FALSE(ScanForMaps(*app.app, QStringLiteral("Base"), QStringLiteral("Jedi"), app.gameFolder()));
        EXPECT_EQ(crlfLines(app.programFolder() + QStringLiteral("/Jedi.aml")),
                  QStringList{QStringLiteral("a.pk3,duel_pit,duel_pit,Trial Pit,duel")});
        ASSERT_EQ(app.prompts.shown.size(), 1u);
        if (c.arenaBox) {
            EXPECT_TRUE(isBox(app.prompts.last(), {kProductTitle, Icon::Exclamation, kArenaMessage, Buttons::Ok}));
        } else {
            EXPECT_TRUE(app.prompts.last().request.text.contains(QStringLiteral("b.pk3")))
                << app.prompts.last().request.text.toStdString();
            EXPECT_EQ(app.prompts.last().request.title, QStringLiteral("ArchiveReader"));
        }
        EXPECT_EQ(fileBytes(victim), QByteArray("untouched"));
        QDirIterator all(app.root(), QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
        while (all.hasNext()) {
            const QString path = all.next();
            EXPECT_FALSE(path.contains(QStringLiteral("evil")) || path.endsWith(QStringLiteral(".arena")))
                << path.toStdString();
        }
    }
}
