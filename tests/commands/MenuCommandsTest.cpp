// The menus' commands: the toolbar's dispatch by id; every "open" through the desktop's opener, or a box
// that names what could not be opened; Map > Scan on a real archive; and every dialog, writer and reader
// of the game's base folder, which finds it however its name is spelled on disk.
#include "bots/BotRoster.h"
#include "commands/BanListCommands.h"
#include "commands/BotConfigWriter.h"
#include "commands/BotRosterCommands.h"
#include "commands/Commands.h"
#include "commands/CreateJediConfiguration.h"
#include "commands/MainFormLoad.h"
#include "commands/MapCycleCommands.h"
#include "commands/MapScanCommand.h"
#include "commands/ProfileLoad.h"
#include "commands/ServerLaunch.h"
#include "commands/ToolDispatcher.h"
#include "commands/ToolTable.h"
#include "maps/MapRotation.h"
#include "maps/MapScanner.h"
#include "maps/MapTreeModel.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/DesktopOpen.h"
#include "testkit/BoxExpect.h"
#include "testkit/Printers.h"
#include "testkit/RecordingScanProgress.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrlQuery>
#include <functional>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

TEST(ToolDispatcher, EachIdReachesItsOwnRoutineAndNoOtherAndUnknownIdsDoNothing)
{
    ToolDispatcher dispatcher;
    QStringList ran;
    const QStringList ids = toolIdsInTableOrder();
    ASSERT_TRUE(ids.contains(u"ID_Cancel"_s));
    for (const QString& id : ids)
        if (id != u"ID_Cancel"_s) {
            ASSERT_TRUE(dispatcher.on(id, [&ran, id] { ran << id; })) << id.toStdString();
        }
    for (const QString& id : ids) {
        ran.clear();
        dispatcher.SSActiveToolBars1_ToolClick(id);
        EXPECT_EQ(ran, id == u"ID_Cancel"_s ? QStringList{} : QStringList{id});
    }
    ran.clear();
    for (const char* id : {"", "id_clearlist", "ID_ClearList ", "ID_Clear", "id_Nothing"})
        EXPECT_FALSE(dispatcher.SSActiveToolBars1_ToolClick(QString::fromLatin1(id))) << id;
    EXPECT_TRUE(ran.isEmpty());
    EXPECT_FALSE(dispatcher.on(u"id_Nothing"_s, [] {})) << "ids outside the tables are refused";
    EXPECT_TRUE(dispatcher.SSActiveToolBars1_ToolClick(u"ID_Cancel"_s));
}

TEST(DesktopOpen, LinksMailAndHelpGoThroughTheOpenAction)
{
    const QUrl mail = mailAuthorAddress();
    EXPECT_EQ(mail.scheme(), u"mailto"_s);
    EXPECT_EQ(mail.path(), kContactAddress);
    EXPECT_EQ(QUrlQuery(mail).queryItemValue(u"subject"_s, QUrl::FullyDecoded),
              u"Arena Steward JUNE 13 2002 beta 1.4"_s);
    TestApp t;
    openLink(*t.app, Link::ProductForum);
    mailAuthor(*t.app);
    ASSERT_EQ(t.opener.opened.size(), 2u);
    EXPECT_EQ(t.opener.opened[0], QUrl(kProductForum));
    EXPECT_EQ(t.opener.opened[1].scheme(), u"mailto"_s);
    t.app->helpFile = t.programFolder() + u"/guide/arena-steward-guide.html"_s;
    openHelpContents(*t.app);
    EXPECT_TRUE(t.prompts.shown.empty());
    ASSERT_EQ(t.opener.opened.size(), 3u);
    EXPECT_EQ(t.opener.opened[2], QUrl::fromLocalFile(t.app->helpFile));
    EXPECT_TRUE(fileBytes(t.app->helpFile).contains("Starting the server")) << "the guide is written out";
    t.app->helpFile = u"/proc/no-such-folder/guide.html"_s;
    openHelpContents(*t.app);
    ASSERT_EQ(t.prompts.shown.size(), 1u) << "a guide that can't be written is reported";
    const MessageBoxRequest& box = t.prompts.last().request;
    EXPECT_TRUE(box.text.contains(u"File not found\r\nNumber: 53"_s)) << box.text.toStdString();
    EXPECT_TRUE(isBox(box, {u"arena-steward Error"_s, Icon::Critical, box.text}));
    EXPECT_EQ(t.opener.opened.size(), 3u);
    // The box names the file or address and the opener's package.
    const QString file = openFailedText(QUrl::fromLocalFile(u"/home/me/My Guide.html"_s));
    EXPECT_TRUE(file.startsWith(u"Could not open /home/me/My Guide.html"_s)) << file.toStdString();
    EXPECT_TRUE(file.contains(u"xdg-utils"_s));
    const QString web = openFailedText(QUrl(u"https://example.org/a b"_s));
    EXPECT_TRUE(web.startsWith(u"Could not open https://example.org/a b"_s)) << web.toStdString();
    t.opener.desktopHasOpener = false;
    mailAuthor(*t.app);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, openFailedText(mail)}));
}

TEST(DesktopOpen, WithoutAnOpenerEachFileRoadSaysWhatCouldNotBeOpened)
{
    const std::pair<const char*, std::function<void(TestApp&, ServerProfile&)>> roads[] = {
        {"View of the bot file",
         [](TestApp& t, ServerProfile& profile) {
             appendRosterBot(profile, {u"Kyle"_s, u"Hardcore"_s, u"RED"_s, u"kyle"_s, u"0"_s});
             cmdBOTs_Click(*t.app, profile, 4);
         }},
        {"the exported map cycle",
         [](TestApp& t, ServerProfile& profile) {
             profile.field(F::lsvMapRotation).addRow(rotationRow(u"ffa_bespin"_s, u"Bespin"_s, u"ffa"_s));
             profile.setStartingMap(u"ffa_bespin"_s);
             t.prompts.chooseFile(t.baseFolder() + u"/export.cfg"_s);
             mnuExportMapCycle_Click(*t.app, profile);
         }},
        {"the exported session file",
         [](TestApp& t, ServerProfile& profile) {
             profile.setValue(F::chkMapAutoCycle, 1);
             QString session = u"arena.cfg"_s;
             CreateJediConfiguration(*t.app, profile, true, false, session);
         }},
    };
    for (const auto& [name, road] : roads) {
        SCOPED_TRACE(name);
        TestApp t;
        t.opener.desktopHasOpener = false;
        ServerProfile profile;
        road(t, profile);
        ASSERT_EQ(t.opener.opened.size(), 1u);
        EXPECT_TRUE(t.opener.opened[0].isLocalFile());
        EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, openFailedText(t.opener.opened[0])}));
    }
}

namespace {

class MapScanCommandTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        attachClickRoutines(*t.app, profile);
        t.app->services.scanProgress = &progress;
        ASSERT_TRUE(ZipBuilder()
                        .file(u"maps/mymap.bsp"_s)
                        .file(u"scripts/mymap.arena"_s, arenaScript(u"mymap"_s, u"My Map"_s, u"ffa"_s))
                        .file(u"levelshots/mymap.tga"_s, tgaPicture(8, 8, 9, 9, 9))
                        .write(t.baseFolder() + u"/mymap.pk3"_s));
        // The window as the user left it.
        profile.field(F::lsvMapRotation).addRow(rotationRow(u"old"_s, {}, {}));
        profile.setValue(F::chkUseINI, 1);
        profile.setText(F::txtServerINI, u"/x/saved.cfg"_s);
        for (FieldId label : {F::lblMapsSelected, F::lblLongMapName, F::lblMapType})
            profile.setText(label, u"something"_s);
        profile.setStartingMap(u"old"_s);
        setFirstMapType(profile, u"FFA"_s);
    }
    void run(const WineEnvironment& env = {}) { mnuMapScan_Click(*t.app, profile, env); }
    QString catalogueFile() const { return t.programFolder() + u"/Jedi.aml"_s; }
    TestApp t;
    ServerProfile profile;
    RecordingScanProgress progress;
};

} // namespace

TEST_F(MapScanCommandTest, NoScansNothingAndYesRewritesTheCatalogueReloadsTheTreeAndEmptiesTheRotation)
{
    QFile::remove(catalogueFile());
    t.prompts.answerNext(Answer::No);
    run();
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(
        isBox(t.prompts.last(), {kProductTitle, Icon::Question, u"Scan for new maps?"_s + kTail, Buttons::YesNo}));
    EXPECT_FALSE(QFileInfo::exists(catalogueFile()));
    EXPECT_TRUE(progress.events.isEmpty());
    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 1);
    t.prompts.shown.clear();
    run();
    EXPECT_EQ(crlfLines(catalogueFile()), QStringList{u"mymap.pk3,mymap,mymap,My Map,FFA"_s});
    const QString shots = t.programFolder() + u"/levelshots"_s;
    EXPECT_TRUE(QFileInfo::exists(shots + u"/mymap.bmp"_s));
    EXPECT_FALSE(QFileInfo::exists(shots + u"/mymap.tga"_s));
    MapTreeModel& tree = mapTreeOf(profile);
    ASSERT_NE(tree.findKey(u"mymap.pk3\\mymap"_s), nullptr);
    EXPECT_EQ(profile.text(F::lblNumberOfMapsAvailable), u"1 Maps available"_s);
    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 0);
    EXPECT_EQ(profile.value(F::chkUseINI), 0);
    EXPECT_EQ(profile.text(F::txtServerINI), QString());
    for (FieldId label : {F::lblMapsSelected, F::lblLongMapName, F::lblMapType})
        EXPECT_EQ(profile.text(label), QString()) << label.name;
    EXPECT_EQ(profile.startingMap(), u"old"_s);
    EXPECT_EQ(firstMapType(profile), u"FFA"_s);
    EXPECT_EQ(profile.text(F::picMap), shots + u"/unknown.bmp"_s);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Information, u"Map scan complete "_s + kTail}));
    EXPECT_EQ(t.prompts.shown.size(), 2u);
    EXPECT_FALSE(progress.loaded);
    EXPECT_EQ(t.prompts.pointerHistory, (std::vector<int>{11, 0}));
}

TEST_F(MapScanCommandTest, ABrokenPictureArchiveStillEndsInTheTreeAndTheClosingMessage)
{
    // The map scan skips ASSETS1.PK3; the picture phase reads it and fails on it.
    writeFile(t.baseFolder() + u"/assets1.pk3"_s, "broken");
    run();
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Information, u"Map scan complete "_s + kTail}));
    EXPECT_NE(mapTreeOf(profile).findKey(u"mymap.pk3\\mymap"_s), nullptr);
    EXPECT_TRUE(fileBytes(t.programFolder() + u"/arena-steward.log"_s).contains("ExtractLevelShots"));
}

TEST_F(MapScanCommandTest, WithoutAGameFolderTheWinePrefixNamesIt)
{
    const QString prefix = t.root() + u"/wine"_s;
    QDir().mkpath(prefix + u"/drive_c"_s);
    ASSERT_TRUE(QFile::link(t.gameFolder(), prefix + u"/drive_c/JK2"_s));
    writeFile(prefix + u"/system.reg"_s,
              "WINE REGISTRY Version 2\n\n[Software\\\\LucasArts Entertainment Company LLC\\\\Star Wars JK II Jedi "
              "Outcast\\\\1.0] 1\n\"Install Path\"=\"C:\\\\JK2\\\\\"\n");
    t.app->gameFolder.clear();
    run({prefix, QString()});
    EXPECT_EQ(crlfLines(catalogueFile()), QStringList{u"mymap.pk3,mymap,mymap,My Map,FFA"_s});
    EXPECT_TRUE(t.app->gameFolder.isEmpty());
    EXPECT_EQ(cutFolderEnd(u"/games/jk2/"_s + QChar(0)), u"/games/jk2/"_s);
    EXPECT_EQ(cutFolderEnd(u"/games/jk2/"_s), u"/games/jk2"_s);
}

TEST_F(MapScanCommandTest, AFailedScanEndsTheChainAndUnloadsTheWindow)
{
    t.app->gameFolder = t.root() + u"/nogame"_s;
    run();
    const MessageBoxRequest& box = t.prompts.last().request;
    EXPECT_TRUE(box.text.startsWith(u"Arena Steward was unable to locate any pk3 files"_s));
    EXPECT_TRUE(isBox(box, {kProductTitle, Icon::Critical, box.text}));
    EXPECT_FALSE(t.prompts.texts().contains(u"Map scan complete "_s + kTail));
    EXPECT_EQ(progress.events.last(), u"unload"_s);
    EXPECT_EQ(t.prompts.pointerHistory, (std::vector<int>{11, 0}));
    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 1);
    EXPECT_EQ(mapTreeOf(profile).nodeCount(), 0);
}

namespace {

using Road = std::function<QString(TestApp&, ServerProfile&)>;

/// The folder the last dialog opened on.
QString dialogFolder(TestApp& t)
{
    return t.prompts.dialogs.empty() ? QString() : t.prompts.dialogs.back().state.InitialDir;
}

/// Where each road went: the folder its dialog opened on, or the file it wrote or found. The export's
/// dialog stands for the dialogs, which all start in the folder that the base folder's lookup gives.
const std::pair<const char*, Road> kRoads[] = {
    {"the map cycle export's dialog",
     [](TestApp& t, ServerProfile& profile) {
         t.prompts.cancelNextDialog();
         mnuExportMapCycle_Click(*t.app, profile);
         return dialogFolder(t);
     }},
    {"the map cycle",
     [](TestApp& t, ServerProfile& profile) {
         QString name;
         MakeMapCycle(*t.app, profile, name, false, false);
         return t.baseFolder() + u'/' + name;
     }},
    {"the bot file",
     [](TestApp& t, ServerProfile& profile) {
         gbln_MakeBOTConfig(*t.app, profile);
         return t.baseFolder() + u"/BOTFile.cfg"_s;
     }},
    {"the ban file",
     [](TestApp& t, ServerProfile& profile) {
         gbln_MakeBANList(*t.app, profile, 1);
         return t.baseFolder() + u"/BAN.cfg"_s;
     }},
    {"the session file",
     [](TestApp& t, ServerProfile& profile) {
         QString session = u"arena.cfg"_s;
         CreateJediConfiguration(*t.app, profile, true, false, session);
         return t.baseFolder() + u"/arena.cfg"_s;
     }},
    {"the empty Default.cfg",
     [](TestApp& t, ServerProfile&) {
         EnsureDefaultCfg(*t.app);
         return t.baseFolder() + u"/Default.cfg"_s;
     }},
    {"the list of configs to execute",
     [](TestApp& t, ServerProfile&) {
         writeFile(t.baseFolder() + u"/extra.cfg"_s, "set a 1\r\n");
         return baseFolderConfigs(*t.app).contains(u"extra.cfg"_s) ? t.baseFolder() + u"/extra.cfg"_s : QString();
     }},
    {"the archives that the map and bot scans read",
     [](TestApp& t, ServerProfile&) {
         writeFile(t.baseFolder() + u"/maps.pk3"_s, "PK");
         QString folder;
         const QStringList files = baseFolderFiles(*t.app, t.gameFolder(), u"Base"_s, &folder);
         return files.contains(u"maps.pk3"_s) ? QDir(folder).filePath(u"maps.pk3"_s) : QString();
     }},
};

} // namespace

TEST(BaseFolderCase, EveryRoadFindsTheBaseFolderHoweverItIsSpelled)
{
    for (const char* spelling : {"base", "Base", "BASE"}) {
        for (const auto& [name, road] : kRoads) {
            SCOPED_TRACE(std::string(spelling) + ": " + name);
            TestApp t{QString::fromLatin1(spelling)};
            ServerProfile profile;
            for (const QString& map : {u"ffa_bespin"_s, u"duel_bay"_s})
                profile.field(F::lsvMapRotation).addRow(rotationRow(map, u"Long"_s, u"ffa"_s));
            profile.setStartingMap(u"ffa_bespin"_s);
            profile.setValue(F::optDefaultGameType(4), 1);
            profile.setValue(F::chkMapAutoCycle, 1);
            profile.field(F::lstBannedIPs).addItem(u"10.0.0.7"_s);
            const QString where = QDir::cleanPath(road(t, profile));
            const QString base = QDir::cleanPath(t.baseFolder());
            EXPECT_TRUE(where == base || QFileInfo(where).absolutePath() == base) << where.toStdString();
            EXPECT_TRUE(where == base || QFileInfo(where).isFile()) << where.toStdString();
            EXPECT_EQ(QDir(t.gameFolder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
                      QStringList{QString::fromLatin1(spelling)})
                << "nothing beside the base folder";
        }
    }
}
