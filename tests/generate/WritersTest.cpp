// The other files and lines that the program writes: the map cycle, the bot file, the ban
// list, the batch file and shell script, and the server's command line; each whole file
// held against its expected file, with the boxes and results that go with it.
#include "FileChanges.h"
#include "bots/BotRoster.h"
#include "commands/BanListCommands.h"
#include "commands/BotConfigWriter.h"
#include "commands/ExportScriptCommands.h"
#include "commands/MapCycleCommands.h"
#include "generate/BanListWriter.h"
#include "generate/BotSkills.h"
#include "generate/MapCycleWriter.h"
#include "generate/ServerCommandLine.h"
#include "maps/MapRotation.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/ErrorBox.h"
#include "support/ProductText.h"
#include "testkit/BoxExpect.h"
#include "testkit/LaunchKit.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

using namespace steward;
using namespace steward::testing;

namespace {

Box warning(const QString& text) { return {kProductTitle, Icon::Exclamation, text, Buttons::Ok}; }

class Writers : public ::testing::Test {
protected:
    void rows(const QStringList& maps)
    {
        for (const QString& map : maps)
            profile.field(F::lsvMapRotation).addRow(rotationRow(map, u"Long"_s, u"ffa"_s));
    }
    TestApp t;
    ServerProfile profile;
};

// --- The map cycle ---

TEST(MapCycle, IsWrittenByteForByte)
{
    const std::tuple<const char*, QStringList, QString, QString> cases[] = {
        // expected file, rows, start, gravity
        {"two", {"ffa_yavin", "ffa_bespin"}, "ffa_bespin", "800"}, // the starting map's row comes first
        {"three", {"a", "b", "c"}, "b", "400"},
        {"one", {"duel_pit"}, "", "350"},
        {"twice", {"b", "a", "c", "a"}, "a", "800"},
        {"unmatched", {"a", "b"}, "B", "800"}, // matched with regard to case: no row
        {"empty", {}, "", "800"},
    };
    for (const auto& [golden, maps, start, gravity] : cases) {
        SCOPED_TRACE(golden);
        TestApp app;
        ServerProfile p;
        for (const QString& map : maps)
            p.field(F::lsvMapRotation).addRow(rotationRow(map, {}, {}));
        p.setStartingMap(start);
        p.setText(F::txtSpeed(1), gravity);
        QString name = u"before"_s;
        ASSERT_TRUE(MakeMapCycle(*app.app, p, name, false, false));
        EXPECT_EQ(name, u"jediMaps.cfg"_s);
        expectGolden(app.baseFolder() + u"/jediMaps.cfg"_s, u"generate/jediMaps-%1.cfg"_s.arg(golden));
    }
}

TEST_F(Writers, TheSavedAndExportFormsOfTheMapCycle)
{
    rows({"a"});
    profile.setText(F::txtServerINI, u"/games/jk2/base/advanced.cfg"_s);
    QString name;
    ASSERT_TRUE(MakeMapCycle(*t.app, profile, name, false, true));
    EXPECT_EQ(name, u"advanced.cfg"_s);
    EXPECT_FALSE(QFileInfo::exists(t.baseFolder() + u"/jediMaps.cfg"_s));

    QString target = t.root() + u"/export/mine"_s; // no extension is added
    EXPECT_FALSE(MakeMapCycle(*t.app, profile, target, true, false));
    EXPECT_TRUE(onlyBox(t, warning(u"Path not found"_s)));
    target = t.root() + u"/mine"_s;
    EXPECT_TRUE(MakeMapCycle(*t.app, profile, target, true, false));
    EXPECT_EQ(crlfLines(target).value(6), u"Map a"_s);
    // The starting map of a saved cycle is its last line.
    const QString file = t.root() + u"/advanced.cfg"_s;
    writeFile(file, "set m1 \"map x\"\r\n// ***    DO NOT DELETE MAP NAME ***\r\n//\r\n//ffa_yavin\r\n");
    EXPECT_EQ(gbln_LoadMapCycle(*t.app, profile, file), u"ffa_yavin"_s);
    writeFile(file, "vstr m1\r\n// EOF\r\n");
    EXPECT_EQ(gbln_LoadMapCycle(*t.app, profile, file), u" EOF"_s);
    EXPECT_TRUE(t.prompts.shown.empty());
    writeFile(file, "//" + QByteArray(1200, 'm') + "\r\n");
    EXPECT_EQ(gbln_LoadMapCycle(*t.app, profile, file).size(), 999);

    writeFile(file, "//ffa_yavin\r\n\r\n");
    EXPECT_EQ(gbln_LoadMapCycle(*t.app, profile, file), QString());
    EXPECT_TRUE(onlyBox(
        t, warning("Arena Steward was unable to set a starting map from the selected configuration file" + kTail +
                   "\r\nthis is probably because an older configuration file has been selected." + kTail +
                   "\r\nPlease re-create a new map configuration file with Arena Steward and run again.")));
    EXPECT_EQ(gbln_LoadMapCycle(*t.app, profile, t.root() + u"/missing.cfg"_s), QString());
    EXPECT_TRUE(isBox(t.prompts.last(),
                      errorBox(err::FileNotFound,
                               u"arena-steward::Code.gbln_LoadMapCycle(Function) (%1/missing.cfg)"_s.arg(t.root()))));
}

TEST_F(Writers, TheMapCycleExportChecksTheRotationAsksForAFileAndShowsIt)
{
    attachClickRoutines(*t.app, profile);
    for (const char* text : {"No Maps have been selected", "No Starting Map has been selected"}) {
        profile.setValue(F::vsMainTab, 0);
        mnuExportMapCycle_Click(*t.app, profile);
        EXPECT_TRUE(onlyBox(t, warning(text + kTail)));
        EXPECT_EQ(profile.value(F::vsMainTab), 2);
        rows({"a", "b"});
    }
    EXPECT_TRUE(t.prompts.dialogs.empty());

    profile.setStartingMap(u"b"_s);
    t.prompts.cancelNextDialog();
    mnuExportMapCycle_Click(*t.app, profile);
    ASSERT_EQ(t.prompts.dialogs.size(), 1u);
    EXPECT_EQ(t.prompts.dialogs.back().state.DialogTitle, u"Save Arena Steward Map Cycle"_s);
    EXPECT_EQ(t.prompts.dialogs.back().state.InitialDir, t.baseFolder());
    EXPECT_TRUE(t.opener.opened.empty());

    const QString target = t.root() + u"/exported.cfg"_s;
    t.prompts.chooseFile(target);
    mnuExportMapCycle_Click(*t.app, profile);
    EXPECT_EQ(crlfLines(target).value(6), u"set m1 \"map b;set g_gravity \"800\";set nextmap vstr m2\""_s);
    EXPECT_EQ(t.opener.opened, std::vector<QUrl>{QUrl::fromLocalFile(target)});
}

TEST_F(Writers, UseSavedCycleChoosesAFileOrFallsBack)
{
    attachClickRoutines(*t.app, profile);
    auto visible = [&](bool expected) {
        for (FieldId name : {F::tvwAvailMaps, F::picMap, F::lsvMapRotation, F::lblMapsSelected,
                             F::lblNumberOfMapsAvailable, F::lblMapType, F::lblLongMapName})
            EXPECT_EQ(profile.field(name).isVisible(), expected) << name.name;
    };
    rows({"a"});
    profile.setLoading(true); // while the window loads, setting the box does nothing more
    setCheckFromCode(profile, F::chkUseINI, 1);
    EXPECT_TRUE(t.prompts.dialogs.empty());
    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 1);
    profile.setLoading(false);
    profile.setValue(F::chkUseINI, 0);

    profile.setValue(F::chkMapAutoCycle, 1);
    t.prompts.chooseFile(t.baseFolder() + u"/advanced.cfg"_s);
    setCheckFromCode(profile, F::chkUseINI, 1);
    ASSERT_EQ(t.prompts.dialogs.size(), 1u);
    EXPECT_EQ(t.prompts.dialogs.back().state.DialogTitle, u"Select Advanced Map Cycle"_s);
    EXPECT_EQ(t.prompts.dialogs.back().state.InitialDir, t.baseFolder());
    EXPECT_EQ(profile.value(F::chkMapAutoCycle), 0);
    EXPECT_EQ(profile.text(F::txtServerINI), t.baseFolder() + u"/advanced.cfg"_s);
    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 0);
    visible(false);
    setCheckFromCode(profile, F::chkUseINI, 0); // unticked, or a cancelled dialog: no saved cycle
    visible(true);
    t.prompts.cancelNextDialog();
    setCheckFromCode(profile, F::chkUseINI, 1);
    EXPECT_EQ(profile.value(F::chkUseINI), 0);
    EXPECT_EQ(profile.text(F::txtServerINI), QString());
    visible(true);
    profile.setText(F::txtServerINI, u"   "_s); // a blank saved cycle isn't opened by a double click
    txtServerINI_DblClick(*t.app, profile);
    EXPECT_TRUE(t.opener.opened.empty());
}

// --- BOTFile.cfg ---

const QString kAutomatic = u"generate/BOTFile-automatic.cfg"_s; // 3x players, think time 150, Hurt Me Plenty

class BotFile : public Writers {
protected:
    BotFile()
    {
        profile.field(F::cboBOT).setItems(botSkillNames());
        profile.setText(F::cboBOT, u"Hurt Me Plenty "_s);
        profile.field(F::grdBOTList).setRows({rosterHeadings()});
    }
    void tick(int index, int value = 1) { profile.setValue(F::chkBOTs(index), value); }
    void automatic(const QString& players = u"3x"_s)
    {
        tick(0);
        profile.setText(F::txtServerConfigSpin(6), players); // written as it stands
        profile.setText(F::txtBOTThinkTime, u"150"_s);
    }
    void addBot(const QStringList& row) { profile.field(F::grdBOTList).addRow(row); }
    QString file() const { return t.baseFolder() + u"/BOTFile.cfg"_s; }
    bool run() { return gbln_MakeBOTConfig(*t.app, profile); }
    void expectOneBox(const QString& text, Icon icon, const QString& title = kProductTitle)
    {
        EXPECT_TRUE(onlyBox(t, {title, icon, text, Buttons::Ok}));
    }
    static QStringList heading() { return cutAt(goldenLines(kAutomatic), seta("bot_enable", "1"), false); }
};

// The boxes of the page against the behaviour lines: chat is written as "no chat", fast
// chat needs chat, and "Enable Jumping" writes ground-only as it is ticked.
TEST_F(BotFile, AutomaticBotsFillUpToTheNumberOfPlayersAndEachBoxWritesItsOwnSense)
{
    const struct {
        int challenge, jumping, chat, fastChat;
        const char *nochat, *fastchat, *challengeValue, *groundonly;
    } cases[] = {
        {0, 0, 0, 0, "1", "0", "0", "0"}, {0, 0, 1, 0, "0", "0", "0", "0"}, {0, 0, 1, 1, "0", "1", "0", "0"},
        {0, 0, 0, 1, "1", "0", "0", "0"}, {1, 0, 0, 0, "1", "0", "1", "0"}, {0, 1, 0, 0, "1", "0", "0", "1"},
        {1, 1, 1, 1, "0", "1", "1", "1"},
    };
    automatic();
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.challenge << c.jumping << c.chat << c.fastChat);
        tick(1, c.challenge);
        tick(2, c.jumping);
        tick(3, c.chat);
        tick(4, c.fastChat);
        EXPECT_TRUE(run());
        expectFile(file(), kAutomatic,
                   {value("bot_nochat", "1", c.nochat), value("bot_fastchat", "0", c.fastchat),
                    value("bot_challenge", "0", c.challengeValue), value("bot_groundonly", "0", c.groundonly)});
    }
    EXPECT_TRUE(t.prompts.shown.empty());
}

// No number of players warns and leaves the heading only; a skill name without its trailing
// blank matches nothing; a file that can't be written is shown and not used.
TEST_F(BotFile, WarningsAndFailuresComeWithTheirBoxes)
{
    for (const char* text : {"0", "", "abc", " 0x"}) {
        SCOPED_TRACE(text);
        automatic(QString::fromLatin1(text));
        EXPECT_FALSE(run());
        expectFile(file(), heading());
        expectOneBox(
            u"You have selected to enable BOT's but you have not specified how many, however,         \r\n"
            "this does allows admins to manually add bots, e.g., /rcon addbot Desann red 4 25 Gnubee.         "_s,
            Icon::Exclamation);
    }
    automatic();
    profile.setText(F::cboBOT, u"Bring It On"_s);
    EXPECT_TRUE(run()) << "the file is used without a skill line";
    expectFile(file(), kAutomatic, {{seta("g_spSkill", "3"), {}}});
    expectOneBox(u"Please select a BOT level         "_s, Icon::Information);
    t.app->gameFolder = t.root() + u"/missing/"_s;
    EXPECT_FALSE(run());
    expectOneBox(u"Path not found"_s, Icon::Information, u"Function::gbln_MakeBOTConfig"_s);
    EXPECT_FALSE(QDir(t.root() + u"/missing"_s).exists()) << "no folder is made";
}

TEST_F(BotFile, RosterBotsGiveOneAddbotLineEach)
{
    automatic(u"7"_s); // the number is ignored in this mode
    tick(5);
    tick(3);
    profile.setText(F::txtBOTThinkTime, u"100"_s);
    profile.setText(F::cboBOT, u"nonsense"_s); // no skill line in this mode
    addBot({"Gnubee", "Hardcore", "RED", "Desann", "25"});
    addBot({"Big_Boss", "I Can Win", "BLUE", "Kyle2", "0"});
    addBot({"Odd", "Bring It On", "BLUE", "Luke", "40"});  // unknown: the number of the row above
    addBot({"Two Words", "Nightmare", "RED", "Jan", "5"}); // a blank in a name is written as it stands
    addBot({"Mid", "Bring It On ", "RED", "Reborn", "5"}); // the trailing blank belongs to the name
    EXPECT_TRUE(run());
    expectGolden(file(), u"generate/BOTFile-roster.cfg"_s);
    EXPECT_TRUE(t.prompts.shown.empty());

    profile.field(F::grdBOTList).setRows({rosterHeadings()});
    addBot({"Gnubee", "hardcore", "RED", "Desann", "25"}); // unknown in the first row: zero
    addBot({"Tav", "Hurt Me Plenty ", "RED", "Tavion", "25"});
    EXPECT_TRUE(run());
    EXPECT_EQ(crlfLines(file()).mid(18), (QStringList{"Addbot Desann 0 RED 25 Gnubee", "Addbot Tavion 3 RED 25 Tav"}));

    profile.field(F::grdBOTList).setRows({rosterHeadings()});
    EXPECT_TRUE(run()) << "an empty roster warns and is used with the heading only";
    expectFile(file(), heading());
    expectOneBox(u"No custom BOT's have been added         "_s, Icon::Exclamation);
}

TEST_F(BotFile, WithoutEnableBotTheFileSwitchesBotsOff)
{
    writeFile(file(), QByteArray(5000, 'x')); // an existing file is replaced whole
    // "Enable User Defined BOT's" alone has no effect, and its roster is ignored.
    addBot({"Gnubee", "Hardcore", "RED", "Desann", "25"});
    for (int roster : {0, 1}) {
        SCOPED_TRACE(roster);
        tick(5, roster);
        EXPECT_TRUE(run());
        expectGolden(file(), u"generate/BOTFile-off.cfg"_s);
    }
    EXPECT_TRUE(t.prompts.shown.empty());
}

// --- BAN.cfg and its buttons ---

TEST_F(Writers, TheBanButtonsAddDeleteAndClearWithoutTouchingAFile)
{
    Field& list = profile.field(F::lstBannedIPs);
    const auto click = [&](int index) { cmdThreeWave_Click(*t.app, profile, index); };
    profile.setText(F::txtServerIP, u"10.0.*.*"_s); // add takes the input whatever it is and empties it
    click(2);
    click(2);
    profile.setText(F::txtServerIP, u"not an address"_s);
    click(2);
    EXPECT_EQ(list.items(), QStringList({"10.0.*.*", "", "not an address"}));
    EXPECT_EQ(profile.text(F::txtServerIP), QString());

    list.setItems({"a", "b", "c", "d"}); // delete removes the first selected item only
    click(3);
    EXPECT_EQ(list.count(), 4);
    list.setSelection({3, 1});
    click(3);
    EXPECT_EQ(list.items(), QStringList({"a", "c", "d"}));
    EXPECT_TRUE(t.prompts.shown.empty());

    const Box clear{kProductTitle, Icon::Question, u"Clear list?"_s, Buttons::YesNo}; // without the tail
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        t.prompts.answerNext(answer);
        click(4);
        EXPECT_TRUE(onlyBox(t, clear));
        EXPECT_EQ(list.count(), answer == Answer::No ? 3 : 0);
    }
    click(4);
    EXPECT_TRUE(t.prompts.shown.empty()) << "an empty list asks nothing";

    profile.setText(F::txtServerIP, u"1.2.3.4"_s);
    for (int index : {0, 1, 2, 3, 5})
        click(index);
    EXPECT_TRUE(QDir(t.baseFolder()).isEmpty());
}

TEST_F(Writers, TheBanFileHoldsTheHeadingTheFilterAndOneLinePerItem)
{
    const QString file = t.baseFolder() + u"/BAN.cfg"_s;
    writeFile(file, "an older list that is much longer than the new one\r\n");
    profile.field(F::lstBannedIPs).setItems({"10.0.0.1", "", "192.168.*.*", "evil.example.org"});
    ASSERT_TRUE(gbln_MakeBANList(*t.app, profile, 4));
    expectGolden(file, u"generate/BAN.cfg"_s);
    profile.field(F::lstBannedIPs).setItems({""}); // a list of one empty item leaves the comments alone
    ASSERT_TRUE(gbln_MakeBANList(*t.app, profile, 1));
    expectFile(file, u"generate/BAN.cfg"_s,
               {{"addIP 10.0.0.1", {}}, {"addIP 192.168.*.*", {}}, {"addIP evil.example.org", {}}});
    EXPECT_TRUE(t.prompts.shown.empty());
    t.app->gameFolder = t.root() + u"/no game here"_s;
    EXPECT_FALSE(gbln_MakeBANList(*t.app, profile, 1));
    EXPECT_TRUE(onlyBox(t, {u"Function::gbln_MakeBANList"_s, Icon::Information, u"Path not found"_s, Buttons::Ok}));
    EXPECT_FALSE(QFileInfo::exists(t.programFolder() + u"/arena-steward.log"_s)) << "nothing goes to the log";
}

// --- The batch file and the shell script ---

class Scripts : public Writers {
protected:
    Scripts()
    {
        t.app->services.launcher = &launcher;
        t.app->serverExecutable = u"jk2ded.exe"_s;
        profile.setText(F::txtServerConfig(1), u"My Cfg"_s);
    }
    CountingLauncher launcher;
};

TEST_F(Scripts, TheBatchFileAndTheShellScriptAreWrittenWhole)
{
    const struct {
        const char *port, *ip, *zone, *hunk, *sound;
        bool merc;
        const char* golden;
    } cases[] = {
        {"28070", "", "16", "32", "16", false, "defaults"},
        {"0", "", "016", "32.5", "", false, "memory"}, // port 0 and memory as leading numbers
        {"abc", "", "16", "32", "16", false, "defaults"},
        {"123abc", "10.1.2.3", "24", "64", "8", true, "merc"}, // the shell script has no address
    };
    const QString batch = t.root() + u"/run.bat"_s, shell = t.root() + u"/start server.sh"_s;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.port);
        for (auto [id, text] : {std::pair{F::txtServerConfig(12), c.port},
                                {F::txtServerConfig(16), c.ip},
                                {F::txtServerConfigSpin(11), c.zone},
                                {F::txtServerConfigSpin(5), c.hunk},
                                {F::txtServerConfigSpin(12), c.sound}})
            profile.setText(id, QString::fromLatin1(text));
        profile.setValue(F::chkQuake3Specific(18), c.merc ? 1 : 0);
        t.prompts.shown.clear();
        t.prompts.chooseFile(batch);
        mnuBatchFile_Click(*t.app, profile);
        t.prompts.chooseFile(shell);
        mnuLinux_Click(*t.app, profile);
        expectGolden(batch, u"generate/run-%1.bat"_s.arg(c.golden));
        expectGolden(shell, u"generate/start_server-%1.sh"_s.arg(c.golden));
        ASSERT_EQ(t.prompts.shown.size(), 3u);
        EXPECT_TRUE(isBox(t.prompts.shown[0],
                          {u"Batch File"_s, Icon::Information, "'" + batch + "' has been Saved" + kTail, Buttons::Ok}));
        EXPECT_TRUE(isBox(t.prompts.shown[2], {u"Linux Shell Script"_s, Icon::Information,
                                               "Shell script has been Saved" + kTail, Buttons::Ok}));
    }
}

TEST_F(Scripts, CancellingTouchesNoFileAndSaysNothingButTheShellScriptsIntroduction)
{
    const QString existing = t.root() + u"/keep.bat"_s;
    writeFile(existing, "old\r\n");
    t.prompts.cancelNextDialog();
    mnuBatchFile_Click(*t.app, profile);
    EXPECT_TRUE(t.prompts.shown.empty());
    t.prompts.cancelNextDialog();
    mnuLinux_Click(*t.app, profile);
    EXPECT_TRUE(onlyBox(
        t, {kProductTitle, Icon::Information,
            "The following shell script is a guide and will need paths adjusted to point to your JK2 folder" + kTail +
                "\r\nPlace this file in your Jedi Knight II folder that contains the jk2ded executable and execute it "
                "from "
                "there." +
                kTail + "\r\nDon't forget to include the my_cfg.cfg file, place that in your main folder" + kTail +
                "\r\nalong with your map cycle configuration.",
            Buttons::Ok}));
    EXPECT_EQ(fileBytes(existing), QByteArray("old\r\n"));
    EXPECT_EQ(QDir(t.root()).entryList(QDir::Files), QStringList({"keep.bat"}));

    const std::pair<const char*, const char*> expected[] = {
        // both dialogs ask in the game folder
        {"Save Batch File", "Batch File (*.bat)|*.bat"},
        {"Save Linux Shell Script", "Linux Shell Script (*.sh)|*.sh"}};
    ASSERT_EQ(t.prompts.dialogs.size(), 2u);
    for (size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(t.prompts.dialogs[i].state.DialogTitle, QString::fromLatin1(expected[i].first));
        EXPECT_EQ(t.prompts.dialogs[i].state.Filter, QString::fromLatin1(expected[i].second));
        EXPECT_EQ(t.prompts.dialogs[i].state.InitialDir, t.gameFolder());
    }

    // The session is checked before any dialog.
    t.prompts.dialogs.clear();
    using Command = void (*)(AppContext&, ServerProfile&);
    for (const Command command : {Command(mnuBatchFile_Click), Command(mnuLinux_Click)}) {
        for (const auto& [session, text] :
             {std::pair{"", u"A Session name is required"_s},
              {"a:b", u"Invalid session name, you cannot use \\/:*?<>| in a session name"_s}}) {
            profile.setText(F::txtServerConfig(1), QString::fromLatin1(session));
            command(*t.app, profile);
            EXPECT_TRUE(onlyBox(t, warning(text + kTail)));
        }
    }
    EXPECT_TRUE(t.prompts.dialogs.empty());
}

TEST_F(Scripts, IgnoreTheServerTypeTheMapsAndTheChangeMarkAndReportAFileThatCannotBeWritten)
{
    profile.setValue(F::chkServerType(0), 1);
    profile.setValue(F::chkMapAutoCycle, 0); // and the rotation is empty
    profile.setConfigurationChanged(true);
    profile.setText(F::txtServerConfig(1), u"Duel Night.CFG"_s);
    const QString file = t.root() + u"/run.bat"_s;
    t.prompts.chooseFile(file);
    mnuBatchFile_Click(*t.app, profile);
    const QString line = QString::fromLatin1(fileBytes(file));
    EXPECT_TRUE(line.contains(u" +set dedicated 2 "_s)) << line.toStdString();
    EXPECT_TRUE(line.endsWith(u" +exec Duel_Night.CFG\r\n"_s)) << line.toStdString();
    EXPECT_TRUE(profile.configurationChanged());
    EXPECT_EQ(launcher.starts, 0);

    t.prompts.shown.clear();
    t.prompts.chooseFile(t.root() + u"/no such folder/run.bat"_s);
    mnuBatchFile_Click(*t.app, profile);
    t.prompts.chooseFile(t.root() + u"/no such folder/run.sh"_s);
    mnuLinux_Click(*t.app, profile);
    ASSERT_EQ(t.prompts.shown.size(), 3u);
    for (const auto& [at, tag] : {std::pair{0, "mnuBatchFile_Click(Function) (%1/no such folder/run.bat)"},
                                  {2, "mnuLinux_Click(Function) (%1/no such folder/run.sh)"}})
        EXPECT_TRUE(
            isBox(t.prompts.shown[at],
                  errorBox(err::PathNotFound, "arena-steward::frmMain." + QString::fromLatin1(tag).arg(t.root()))));
}

// --- The server's command line ---

TEST(ServerCommandLine, EachShapeEachValueOneArgumentAndTheFirstSelectedTypes)
{
    // The address and port, the address alone, the port alone, neither; Merc and the game
    // type go in wherever they are set; Internet with Merc has no port form.
    // Server type, Merc, address, port, game type, and the line between the executable and the zone memory.
    const std::tuple<int, bool, const char*, int, const char*, const char*> cases[] = {
        {0, false, "10.0.0.5", 28070, "",
         "+set dedicated 0 +set net_ip 10.0.0.5 +set vm_game 0 +set net_port 28070 +set com_hunkmegs 48"},
        {1, true, "10.0.0.5", 0, "7",
         "+set dedicated 1 +set g_jediVmerc 1 +set net_ip 10.0.0.5 +set vm_game 0 +set com_hunkmegs 48"},
        {1, false, "10.0.0.5", -5, "", "+set dedicated 1 +set net_ip 10.0.0.5 +set vm_game 0 +set com_hunkmegs 48"},
        {2, false, "", 28070, "", "+set dedicated 2 +set net_port 28070 +set vm_game 0 +set com_hunkmegs 48"},
        {1, true, "", 28070, "",
         "+set dedicated 1 +set g_jediVmerc 1 +set net_port 28070 +set vm_game 0 +set com_hunkmegs 48"},
        {0, true, "", -1, "0", "+set dedicated 0 +set g_jediVmerc 1 +set com_hunkmegs 48 +set vm_game 0"},
        {2, false, "", 0, "", "+set dedicated 2 +set com_hunkmegs 48 +set vm_game 0"},
        {2, true, "", 28070, "",
         "+set dedicated 2 +set g_jediVmerc 1 +set net_ip  +set vm_game 0 +set com_hunkmegs 48"},
    };
    ServerCommandValues v;
    v.executable = u"jk2ded"_s;
    v.hunk = 48;
    v.zone = 24;
    v.session = u"luke.cfg"_s;
    for (const auto& [d, merc, ip, port, gameType, middle] : cases) {
        SCOPED_TRACE(middle);
        v.serverType = d;
        v.merc = merc;
        v.ip = QString::fromLatin1(ip);
        v.port = port;
        v.gameType = QString::fromLatin1(gameType);
        const QString game = *gameType ? u" +set g_gametype "_s + gameType : QString();
        const QString line = u"jk2ded "_s + middle + " +set com_zonemegs 24" + game + " +exec luke.cfg";
        const ServerCommand command = buildServerCommand(v);
        EXPECT_EQ(command.text(), line);
        // Split at every single blank: the two blanks behind an empty address are an empty argument.
        QStringList words = line.split(QLatin1Char(' '));
        EXPECT_EQ(command.executable, words.takeFirst());
        EXPECT_EQ(command.arguments, words);
    }

    v.serverType = 1;
    v.merc = false;
    v.ip = u"1.2.3.4 +set rconPassword x; $(touch pwned)"_s;
    v.port = 27960;
    v.gameType.clear();
    v.executable = u"my server"_s;
    v.session = u"a b.cfg"_s;
    const ServerCommand command = buildServerCommand(v);
    EXPECT_EQ(command.executable, u"my server"_s);
    QStringList arguments = u"+set dedicated 1 +set net_ip IP +set vm_game 0 +set net_port 27960 +set com_hunkmegs 48 "
                            "+set com_zonemegs 24 +exec a_b.cfg"_s.split(u' ');
    arguments.replace(5, v.ip);
    arguments.last() = v.session;
    EXPECT_EQ(command.arguments, arguments) << "the address and the session are one argument each";

    // The server and game type are the first selected.
    ServerProfile p;
    EXPECT_EQ(selectedServerType(p), 2) << "Internet is the design default";
    p.setValue(F::chkServerType(0), 1);
    EXPECT_EQ(selectedServerType(p), 0);
    p.setValue(F::chkServerType(0), 0);
    EXPECT_EQ(selectedServerType(p), std::nullopt);
    EXPECT_EQ(selectedGameType(p), u"0"_s);
    p.setValue(F::optDefaultGameType(5), 1);
    EXPECT_EQ(selectedGameType(p), u"7"_s) << "the Tag, not the index";
    p.setValue(F::optDefaultGameType(5), 0);
    EXPECT_EQ(selectedGameType(p), QString());
}

} // namespace
