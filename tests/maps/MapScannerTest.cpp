// The map scan: the catalogue it writes from the archives and their arena scripts, the
// progress window, and the boxes that end it, for broken and hostile archives too,
// which never write outside the program's folder and keep the catalogue so far.
#include "maps/MapTreeModel.h"
#include "model/Constants.h"
#include "testkit/BoxExpect.h"
#include "testkit/Golden.h"
#include "MapsKit.h"

#include <QTemporaryDir>

using namespace steward;
using namespace steward::testing;

namespace {

class MapScanTest : public ScanTest {
protected:
    // The folder takes the case of the first archive that brought a script.
    QString scripts() const { return scriptFolder(*t.app); }
};

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
    // The scripts read are deleted; the folder stays.
    EXPECT_TRUE(QFileInfo(scripts()).isDir());
    EXPECT_EQ(filesUnder(scripts()), QStringList());
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
    EXPECT_EQ(fileAttributes(scripts() + u"/ro.arena"_s), 1);
    EXPECT_TRUE(log().contains(u"The script s\\x0ab.arena of s.pk3 was left out"_s)) << log().toStdString();
    EXPECT_TRUE(log().contains(u"The script t\\x7f.arena of t.pk3 was left out"_s));
    EXPECT_TRUE(t.prompts.shown.empty());
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

TEST(MapScanHostile, ArchivesEndTheScanWithTheirBoxWithoutWritingOutsideAndKeepTheCatalogueSoFar)
{
    QTemporaryDir outside;
    const QString victim = outside.path() + u"/victim"_s;
    writeFile(victim, "untouched");
    struct Hostile {
        const char* name;
        ZipBuilder zip;
        std::function<void(const QString& path)> spoil;
        QString title, text; ///< the box that ends the scan, and its text or (from the reader) a part of it
    };
    const QString arenaBox = kProductTitle, reader = u"ArchiveReader"_s;
    const Hostile cases[] = {
        {"outside the scripts folder", zipOf({"maps/b.bsp", entry("b.arena", "{\r\n}\r\n")}), nullptr, arenaBox,
         kArenaMessage},
        {"zip slip", zipOf({"maps/b.bsp", entry("scripts/../../../../evil.arena", "{\r\n}\r\n")}), nullptr, arenaBox,
         kArenaMessage},
        {"absolute", zipOf({"maps/b.bsp", entry(victim + u".arena"_s, "{\r\n}\r\n")}), nullptr, arenaBox,
         kArenaMessage},
        {"link", zipOf({"maps/b.bsp"}).symlink(u"scripts/b.arena"_s, victim), nullptr, arenaBox, kArenaMessage},
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
        const QString b = app.baseFolder() + u"/b.pk3"_s;
        ASSERT_TRUE(zipOf({"maps/duel_pit.bsp"}).write(app.baseFolder() + u"/a.pk3"_s));
        ASSERT_TRUE(c.zip.write(b));
        if (c.spoil)
            c.spoil(b);
        ASSERT_TRUE(zipOf({"maps/ffa_yavin.bsp"}).write(app.baseFolder() + u"/c.pk3"_s));

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
        EXPECT_EQ(shown.value, 0);
        EXPECT_FALSE(shown.busy);
        EXPECT_EQ(app.store->GetSetting(u"RunOnce"_s, u"unset"_s), u"unset"_s);
        EXPECT_EQ(fileBytes(victim), QByteArray("untouched"));
        EXPECT_EQ(filesUnder(outside.path()), QStringList{u"victim"_s});
        for (const QString& path : filesUnder(app.root()))
            EXPECT_FALSE(path.contains(u"evil"_s) || path.endsWith(u".arena"_s)) << path.toStdString();
    }
}
