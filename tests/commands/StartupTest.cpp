// Start-up (finding the game, the first run's scan, the -check switch, a second instance, a restart) and
// the main window's load: its steps in order, the lists it fills and how it passes over or reports an error.
#include "commands/MainFormLoad.h"
#include "commands/Startup.h"
#include "generate/ServerConfigWriter.h"
#include "model/Constants.h"
#include "model/FieldNames.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "support/TextFile.h"
#include "testkit/BoxExpect.h"
#include "testkit/FakeWindows.h"
#include "testkit/TestApp.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

const QString kAbsent = u"<absent>"_s;
const QStringList kOpened{u"load"_s, u"show"_s};

// A fresh process: the globals start empty; the three first-run steps are recorded, each with the
// result it is told to give. A test of many cases starts one per case.
struct Process {
    TestApp t;
    FakeWindowHost host{*t.app};
    QStringList scans;
    bool maps = true, shots = true, convert = true;
    int errorInShots = 0;
    Process()
    {
        t.app->gameFolder.clear();
        t.app->serverExecutable.clear();
    }
    FirstRunScan steps()
    {
        return {
            [this](AppContext&, const QString& base, const QString& catalogue, const QString& game) {
                scans << u"maps %1 %2 %3"_s.arg(base, catalogue, game);
                return maps;
            },
            [this](AppContext&, const QString& base, const QString& game) {
                scans << u"shots %1 %2"_s.arg(base, game);
                if (errorInShots)
                    raiseError(errorInShots, u"Level shots failed"_s, u"scanner"_s);
                return shots;
            },
            [this](AppContext&) {
                scans << u"convert"_s;
                return convert;
            },
        };
    }
    SettingsStore& store() { return *t.store; }
    QString stored(const QString& key) { return store().GetSetting(key, kAbsent); }
    void save(const QString& key, const QString& value) { store().SaveSetting(key, value); }
    StartupOutcome start(const QString& commandLine = {}) { return runStartup(*t.app, host, commandLine, steps()); }
    StartupOutcome restart() { return RestartProgram(*t.app, host, steps()); }
    const FakePrompts::Dialog& onlyDialog()
    {
        EXPECT_EQ(t.prompts.dialogs.size(), 1u);
        return t.prompts.dialogs.front();
    }
    // A store that needs nothing: the game found, the first scan done.
    void storeReadyGame()
    {
        writeFile(t.gameFolder() + u"jk2mvded"_s, "#!/bin/sh\n");
        save(kKeyPathToJedi, t.gameFolder());
        save(kKeyPathToServer, u"jk2mvded"_s);
        save(kKeyRunOnce, u"1"_s);
    }
};

struct Startup : ::testing::Test, Process {};

} // namespace

TEST_F(Startup, AReadyStoreOpensTheMainWindowWithoutAQuestion)
{
    storeReadyGame();
    EXPECT_EQ(start(), StartupOutcome::MainWindowOpen);
    EXPECT_EQ(host.calls, kOpened);
    EXPECT_EQ(t.app->gameFolder, t.gameFolder());
    EXPECT_EQ(t.app->serverExecutable, u"jk2mvded"_s);
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_TRUE(t.prompts.dialogs.empty());
    EXPECT_TRUE(scans.isEmpty());
    EXPECT_EQ(t.prompts.eventRuns, 1);
    EXPECT_EQ(t.prompts.pointerHistory, std::vector<int>{pointer::Default}) << "the cursor is restored at the end";
}

TEST_F(Startup, NeitherKeyWritesTheDefaultFolderBeforeTheDialogAndCancelEndsTheProcess)
{
    t.prompts.cancelNextDialog();
    EXPECT_EQ(start(), StartupOutcome::EndProcess);
    EXPECT_EQ(stored(kKeyPathToJedi), kDefaultGameFolder);
    EXPECT_EQ(stored(kKeyPathToServer), kAbsent);
    EXPECT_EQ(stored(kKeyRunOnce), kAbsent);
    const FakePrompts::Dialog& dialog = onlyDialog();
    EXPECT_TRUE(dialog.open);
    EXPECT_EQ(dialog.state.DialogTitle, u"Select Star Wars JK II Jedi Outcast"_s);
    EXPECT_EQ(dialog.state.Filter, u"Jedi Knight 2 Executable (*.exe)|*.exe|All files (*)|*"_s);
    EXPECT_EQ(dialog.state.InitialDir, kDefaultGameFolder + u'/');
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, u"User cancelled!"_s + kTail}));
    EXPECT_TRUE(host.calls.isEmpty()) << "no window, not even the scanner's";
    EXPECT_TRUE(t.prompts.pointerHistory.empty());
}

TEST_F(Startup, AFolderWithAnyFileNeedsNoExecutableNameButOneWithOnlySubfoldersCountsAsEmpty)
{
    // The game folder holds only its base folder.
    save(kKeyPathToJedi, t.gameFolder());
    save(kKeyRunOnce, u"1"_s);
    t.prompts.cancelNextDialog();
    EXPECT_EQ(start(), StartupOutcome::EndProcess);
    EXPECT_EQ(onlyDialog().state.InitialDir, t.gameFolder());
    Process fresh;
    writeFile(fresh.t.gameFolder() + u"whatever.txt"_s, "x");
    fresh.save(kKeyPathToJedi, fresh.t.root() + u"/game"_s); // no trailing slash
    fresh.save(kKeyRunOnce, u"1"_s);
    EXPECT_EQ(fresh.start(), StartupOutcome::MainWindowOpen);
    EXPECT_TRUE(fresh.t.prompts.dialogs.empty());
    EXPECT_TRUE(fresh.t.app->serverExecutable.isEmpty());
    EXPECT_EQ(fresh.stored(kKeyPathToServer), kAbsent);
    EXPECT_EQ(fresh.t.app->gameFolder, fresh.t.gameFolder()) << "the slash is added to the global itself";
    EXPECT_EQ(fresh.host.calls, kOpened);
}

TEST_F(Startup, AMissingExecutableIsAskedForAndTheChoiceIsStored)
{
    storeReadyGame();
    QFile::remove(t.gameFolder() + u"jk2mvded"_s);
    writeFile(t.gameFolder() + u"readme.txt"_s, "not the server");
    t.prompts.chooseFile(t.root() + u"/other/linuxjk2ded"_s);
    EXPECT_EQ(start(), StartupOutcome::MainWindowOpen);
    EXPECT_EQ(onlyDialog().state.InitialDir, t.gameFolder());
    EXPECT_EQ(t.app->gameFolder, t.root() + u"/other/"_s);
    EXPECT_EQ(t.app->serverExecutable, u"linuxjk2ded"_s);
    EXPECT_EQ(stored(kKeyPathToJedi), t.root() + u"/other/"_s);
    EXPECT_EQ(stored(kKeyPathToServer), u"linuxjk2ded"_s);
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_EQ(host.calls, kOpened);
}

TEST_F(Startup, TheStoredFolderLosesItsBlanksAndOneTrailingNul)
{
    const QChar nul(0);
    // The NUL is cut after the trim, so a blank before it stays; only blanks are trimmed.
    const std::pair<QString, QString> cases[] = {
        {u"   "_s, u"/"_s},
        {u"  /srv/jk2  "_s, u"/srv/jk2/"_s},
        {u"/srv/jk2"_s + nul + u"  "_s, u"/srv/jk2/"_s},
        {u"/srv/jk2 "_s + nul, u"/srv/jk2 /"_s},
        {u"/srv/jk2"_s + nul + nul, u"/srv/jk2"_s + nul + u"/"_s},
        {u"\t/srv/jk2\t"_s, u"\t/srv/jk2\t/"_s},
    };
    for (const auto& [stored, folder] : cases) {
        SCOPED_TRACE(stored.toUtf8().toHex().toStdString());
        Process fresh;
        fresh.save(kKeyPathToJedi, stored);
        fresh.save(kKeyPathToServer, u"jk2ded-not-here"_s);
        fresh.t.prompts.cancelNextDialog();
        EXPECT_EQ(fresh.start(), StartupOutcome::EndProcess);
        EXPECT_EQ(fresh.onlyDialog().state.InitialDir, folder);
        EXPECT_EQ(fresh.t.app->gameFolder, folder);
        EXPECT_EQ(fresh.stored(kKeyPathToJedi), stored) << "nothing written back";
    }
}

TEST_F(Startup, AnyRunOnceButZeroCountsAsDone)
{
    // nullptr: the key is absent.
    const std::pair<const char*, bool> cases[] = {{"1", false},  {"2", false}, {"", false},
                                                  {" 0", false}, {"0", true},  {nullptr, true}};
    for (const auto& [value, firstRun] : cases) {
        SCOPED_TRACE(value ? value : "absent");
        Process fresh;
        fresh.storeReadyGame();
        fresh.store().DeleteSetting(kKeyRunOnce);
        if (value)
            fresh.save(kKeyRunOnce, QString::fromLatin1(value));
        EXPECT_EQ(fresh.start(), StartupOutcome::MainWindowOpen);
        EXPECT_EQ(fresh.scans.size(), firstRun ? 3 : 0);
        EXPECT_EQ(fresh.stored(kKeyRunOnce), firstRun ? u"1"_s : QString::fromLatin1(value));
    }
}

TEST_F(Startup, TheFirstRunScansThenOpensTheWindow)
{
    storeReadyGame();
    store().DeleteSetting(kKeyRunOnce);
    EXPECT_EQ(start(), StartupOutcome::MainWindowOpen);
    EXPECT_EQ(scans,
              (QStringList{u"maps Base Jedi "_s + t.gameFolder(), u"shots Base "_s + t.gameFolder(), u"convert"_s}));
    EXPECT_EQ(stored(kKeyRunOnce), u"1"_s);
    ASSERT_EQ(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(isBox(t.prompts.shown[0],
                      {kProductTitle, Icon::Information,
                       u"As this is the first time you have run Arena Steward, a scan of your         \r\n"
                       "Jedi base folder for installed maps will be required, please be patient         "_s}));
    EXPECT_TRUE(isBox(t.prompts.shown[1], {kProductTitle, Icon::Information, u"Map Scan complete."_s + kTail}));
    EXPECT_EQ(host.calls, (QStringList{u"unloadScanner"_s, u"load"_s, u"show"_s}));
    // The hourglass during the scan, restored after it and again at the end.
    EXPECT_EQ(t.prompts.pointerHistory, (std::vector<int>{pointer::Hourglass, pointer::Default, pointer::Default}));
}

TEST_F(Startup, AFailedScanStepEndsTheProcessAndTheNextStartScansAgain)
{
    for (int failing = 1; failing <= 3; ++failing) {
        SCOPED_TRACE(failing);
        Process fresh;
        fresh.maps = failing != 1;
        fresh.shots = failing != 2;
        fresh.convert = failing != 3;
        fresh.storeReadyGame();
        fresh.save(kKeyRunOnce, u"0"_s);
        EXPECT_EQ(fresh.start(), StartupOutcome::EndProcess);
        EXPECT_EQ(fresh.scans.size(), failing);
        EXPECT_EQ(fresh.stored(kKeyRunOnce), u"0"_s);
        EXPECT_EQ(fresh.host.calls, QStringList{u"unloadScanner"_s});
        EXPECT_EQ(fresh.t.prompts.texts(), QStringList{firstRunText()}) << "the failing step told the user";
    }
}

TEST_F(Startup, AnErrorBeforeTheWindowIsShownInAnExclamationBoxAndNoWindowOpens)
{
    storeReadyGame();
    store().DeleteSetting(kKeyRunOnce);
    errorInShots = err::FileNotFound;
    EXPECT_EQ(start(), StartupOutcome::Returned);
    EXPECT_EQ(host.calls, QStringList{u"unloadScanner"_s});
    ASSERT_EQ(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, u"Level shots failed"_s}));
    EXPECT_EQ(stored(kKeyRunOnce), kAbsent);
    // The clean-up restores the cursor.
    EXPECT_EQ(t.prompts.pointer, pointer::Default);
    EXPECT_EQ(t.prompts.pointerHistory, (std::vector<int>{pointer::Hourglass, pointer::Default}));
    Process fresh; // an error while the window comes up unloads it
    fresh.storeReadyGame();
    fresh.host.afterLoad = [](ServerProfile&) { raiseError(err::PathNotFound); };
    EXPECT_EQ(fresh.start(), StartupOutcome::Returned);
    EXPECT_EQ(fresh.host.calls, (QStringList{u"load"_s, u"unloadScanner"_s, u"unloadMain"_s}));
    EXPECT_EQ(fresh.t.prompts.texts(), QStringList{u"Path not found"_s});
}

TEST_F(Startup, OnlyTheExactCheckSwitchSkipsTheGameSearch)
{
    const std::pair<const char*, bool> cases[] = {{"-check", true},   {"-ChEcK", true},    {" -check", false},
                                                  {"-check ", false}, {"-check x", false}, {"", false}};
    for (const auto& [commandLine, check] : cases) {
        SCOPED_TRACE(commandLine);
        Process fresh;
        fresh.t.prompts.cancelNextDialog();
        EXPECT_EQ(fresh.start(QString::fromLatin1(commandLine)),
                  check ? StartupOutcome::MainWindowOpen : StartupOutcome::EndProcess);
        EXPECT_EQ(fresh.stored(kKeyPathToJedi), check ? kAbsent : kDefaultGameFolder) << "the store is not looked at";
        EXPECT_EQ(fresh.t.prompts.dialogs.size(), check ? 0u : 1u);
        if (check) {
            EXPECT_EQ(fresh.host.calls, kOpened);
            EXPECT_TRUE(fresh.scans.isEmpty());
            EXPECT_EQ(fresh.t.app->baseFolder(), u"/Base"_s) << "the load sees a base folder under a lone slash";
        }
    }
}

TEST_F(Startup, ASecondInstanceIsRefusedOnlyWithMessagingOn)
{
    for (const bool otherRunning : {true, false})
        for (const bool sendMessage : {true, false}) {
            SCOPED_TRACE(::testing::Message() << otherRunning << sendMessage);
            Process fresh;
            fresh.t.instances.otherRunning = otherRunning;
            // The value that the load restores from the settings.
            fresh.host.afterLoad = [&](ServerProfile& p) { p.setValue(F::chkSendMessage, sendMessage); };
            const bool refused = otherRunning && sendMessage;
            EXPECT_EQ(fresh.start(u"-check"_s), refused ? StartupOutcome::EndProcess : StartupOutcome::MainWindowOpen);
            EXPECT_EQ(fresh.host.calls, refused ? (QStringList{u"load"_s, u"unloadMain"_s}) : kOpened);
            EXPECT_EQ(fresh.t.prompts.shown.size(), refused ? 1u : 0u);
            if (refused) {
                EXPECT_TRUE(isBox(fresh.t.prompts.last(),
                                  {kProductTitle, Icon::Information, u"Arena Steward is already running"_s + kTail}));
            }
        }
}

TEST_F(Startup, ARestartRunsStartUpAgainWithTheSameCommandLine)
{
    storeReadyGame();
    ASSERT_EQ(start(), StartupOutcome::MainWindowOpen);
    ASSERT_TRUE(scans.isEmpty());
    store().DeleteSetting(kKeyRunOnce); // the settings were cleared: it scans again
    EXPECT_EQ(restart(), StartupOutcome::MainWindowOpen);
    EXPECT_EQ(host.calls, (QStringList{u"load"_s, u"show"_s, u"closeAll"_s, u"unloadScanner"_s, u"load"_s, u"show"_s}));
    EXPECT_EQ(host.loads, 2);
    EXPECT_EQ(scans.size(), 3);
    EXPECT_EQ(stored(kKeyRunOnce), u"1"_s);
    EXPECT_EQ(t.prompts.texts(), (QStringList{firstRunText(), u"Map Scan complete."_s + kTail}));
    EXPECT_EQ(t.prompts.eventRuns, 4) << "once at the first start; before, inside and after the restart";
}

namespace {

const QStringList kSteps{u"columns"_s, u"size"_s, u"center"_s, u"disableClose"_s};

struct Form {
    void load() { MainFormLoad(*t.app, profile, host); }
    QStringList configs(int i) const { return profile.field(F::cboConfig(i)).items(); }
    TestApp t;
    ServerProfile profile;
    FakeFormLoadHost host;
};

struct MainFormLoadTest : ::testing::Test, Form {};

} // namespace

TEST_F(MainFormLoadTest, RunsItsStepsInOrderFillsTheListsAndStartsAnEmptyAutoCycleOnEntryOne)
{
    const QString base = t.baseFolder() + u'/';
    for (const char* name :
         {"server.cfg", "FFA.CFG", "jediMaps.cfg", "readme.txt", "autoexeccfg", "cfg.txt", ".hidden.cfg", "ctf.Cfg"})
        writeFile(base + QString::fromLatin1(name), "x");
    QDir().mkpath(base + u"maps.cfg"_s);
    QList<bool> loadingSeen;
    host.onCall = [&](const QString&) { loadingSeen << profile.isLoading(); };
    load();
    EXPECT_EQ(host.calls, kSteps);
    EXPECT_EQ(host.columns, (QList<int>{2205, 50, 0, 0}));
    EXPECT_EQ(std::pair(host.height, host.width), std::pair(7490, 9600));
    EXPECT_EQ(loadingSeen, (QList<bool>{true, true, true, true}));
    EXPECT_FALSE(profile.isLoading());
    EXPECT_EQ(t.app->helpFile, t.programFolder() + u"/arena-steward-guide.html"_s);
    EXPECT_EQ(profile.field(F::cboStartingMap).items().size(), 15);
    EXPECT_EQ(profile.text(F::cboStartingMap), u"ctf_imperial"_s) << "entry 1 stands selected";
    EXPECT_EQ(profile.value(F::vsMainTab), 0);
    EXPECT_TRUE(t.prompts.shown.empty());
    // Every name whose lower case ends in "cfg", under its own spelling, by name.
    for (int i = 0; i <= 3; ++i)
        EXPECT_EQ(configs(i),
                  (QStringList{u"autoexeccfg"_s, u"ctf.Cfg"_s, u"FFA.CFG"_s, u"jediMaps.cfg"_s, u"server.cfg"_s}))
            << i;
    profile.setValue(F::chkMapAutoCycle, 1);
    SessionFacts facts;
    facts.clock = &t.clock;
    SessionValues session;
    LineList out;
    writeSessionOpening(profile, facts, session, out);
    EXPECT_TRUE(out.lines.contains(u"map ctf_imperial"_s)) << out.lines.join(u'|').toStdString();
    EXPECT_FALSE(out.lines.contains(u"map "_s)) << "never a map line without a name";
    Form gone; // a game folder that is gone leaves the lists of configs empty
    gone.t.app->gameFolder = u"/nonexistent/jk2/"_s;
    gone.load();
    EXPECT_TRUE(gone.configs(0).isEmpty());
    EXPECT_EQ(gone.profile.field(F::cboStartingMap).items().size(), 15);
}

TEST_F(MainFormLoadTest, AnIndexOutOfRangeTurnsToPageTwoAndTheLoadGoesOn)
{
    // As a hand-edited setting that names a row the rotation doesn't have.
    writeFile(t.baseFolder() + u"/server.cfg"_s, "x");
    profile.setValue(F::vsMainTab, 4);
    host.failures.insert(u"columns"_s, 35600);
    load();
    EXPECT_EQ(profile.value(F::vsMainTab), 2);
    EXPECT_EQ(host.calls, kSteps);
    EXPECT_EQ(configs(3), QStringList{u"server.cfg"_s});
    EXPECT_FALSE(profile.isLoading());
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_TRUE(t.app->errorLog().lastFile().isEmpty()) << "nothing logged";
}

TEST_F(MainFormLoadTest, AnyOtherErrorIsLoggedWithTheLoadsTagAndEndsTheLoad)
{
    writeFile(t.baseFolder() + u"/server.cfg"_s, "x");
    host.failures.insert(u"size"_s, 13);
    load();
    EXPECT_EQ(host.calls, (QStringList{u"columns"_s, u"size"_s}));
    EXPECT_FALSE(profile.isLoading());
    EXPECT_TRUE(t.app->helpFile.isEmpty());
    EXPECT_TRUE(configs(0).isEmpty());
    EXPECT_TRUE(profile.field(F::cboStartingMap).items().isEmpty());
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(
        isBox(t.prompts.last(), {u"arena-steward Error"_s, Icon::Critical,
                                 u"Following error occurred in this application:\r\n\r\nType mismatch\r\nNumber: 13\r\n"
                                 "Source: arena-steward::frmMain.Form_Load(Sub) (frmMain)"_s}));
    EXPECT_EQ(crlfLines(t.programFolder() + u"/arena-steward.log"_s),
              (QStringList{QString(78, u'-'), u"---06/13/2002 21:05:33---"_s,
                           u"Error 13 in arena-steward::frmMain.Form_Load(Sub) (frmMain):"_s, u"Type mismatch"_s}));
}
