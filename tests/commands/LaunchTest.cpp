// OK and the launch behind it: the refusals, the session name, the question about the defaults, what
// the window does after a start, and the server started as a real child with plain arguments; and the
// named profiles through the Profile menu's routines, on real settings files.
#include "bots/BotRoster.h"
#include "commands/ConfigurationCommands.h"
#include "commands/CreateJediConfiguration.h"
#include "commands/OkCommand.h"
#include "commands/ProfileCommands.h"
#include "commands/ProfileSet.h"
#include "commands/ServerLaunch.h"
#include "commands/SessionName.h"
#include "generate/ServerConfigWriter.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "platform/ProcessIdentity.h"
#include "support/Errors.h"
#include "testkit/BoxExpect.h"
#include "testkit/FakeWindows.h"
#include "testkit/LaunchKit.h"
#include "testkit/TestApp.h"
#include "watch/ServerFolder.h"
#include "watch/WatchState.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QThread>
#include <functional>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

constexpr auto kCfg = F::txtServerConfig;

class Launch : public ::testing::Test {
protected:
    Launch()
    {
        t.app->services.launcher = &launcher;
        t.app->serverExecutable = u"jk2ded"_s;
        // The game cycles the maps itself unless a test wants the map checks.
        profile.setValue(F::chkMapAutoCycle, 1);
        session.sessionName = u"luke.cfg"_s;
        session.fileName = t.baseFolder() + u"/luke.cfg"_s;
        session.hunk = 32;
        session.zone = 16;
        session.port = 28070;
    }
    QString record() const { return t.root() + u"/record.txt"_s; }
    StubServer stub(const QString& name = u"jk2ded"_s) const { return StubServer(t.gameFolder(), name, record()); }
    void ok() { cmdOk_Click(*t.app, profile, windows); }
    std::optional<StartRecord> launch()
    {
        const StubServer server = stub(t.app->serverExecutable);
        EXPECT_TRUE(startServerAfterConfiguration(*t.app, profile, session));
        auto started = server.waitForRecord();
        EXPECT_TRUE(started);
        EXPECT_EQ(started ? started->program : QString(), server.path());
        return started;
    }
    TestApp t;
    CountingLauncher launcher;
    RecordingWindows windows;
    ServerProfile profile;
    SessionValues session;
};

/// Keeps the process-wide retry counter of a test to itself.
struct RetryCounterScope {
    explicit RetryCounterScope(int start) { setLaunchRetryCount(start); }
    ~RetryCounterScope() { setLaunchRetryCount(saved); }
    int saved = launchRetryCount();
};

} // namespace

TEST(SessionName, ForbiddenCharactersRaiseOneBoxEachAndCfgIsAppendedUnlessTheNameEndsInIt)
{
    TestApp t;
    for (const QChar c : u"\\/:*?<>|"_s) {
        SCOPED_TRACE(QString(c).toStdString());
        t.prompts.shown.clear();
        EXPECT_FALSE(ValidSessionName(*t.app, u"my"_s + c + u"server??"_s));
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(
            isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation,
                                     u"Invalid session name, you cannot use \\/:*?<>| in a session name"_s + kTail}));
    }
    t.prompts.shown.clear();
    for (const char* fine : {"x y", "a\"b", " ", "a;b"})
        EXPECT_TRUE(ValidSessionName(*t.app, QString::fromLatin1(fine))) << fine;
    EXPECT_TRUE(t.prompts.shown.empty());
    const std::pair<const char*, const char*> cases[] = {
        {"abc", "abc.cfg"}, {".cfg", ".cfg"}, {"A.CFG", "A.CFG"}, {"cfg", "cfg.cfg"}, {"a.cfgx", "a.cfgx.cfg"}};
    for (const auto& [in, out] : cases)
        EXPECT_EQ(completeSessionName(QString::fromLatin1(in)), QString::fromLatin1(out)) << in;
}

TEST_F(Launch, EachRefusalOfOkShowsItsBoxAndStartsNothing)
{
    const auto manualCycle = [](ServerProfile& p) { p.setValue(F::chkMapAutoCycle, 0); };
    const auto oneMap = [&](ServerProfile& p) {
        manualCycle(p);
        p.field(F::lsvMapRotation).addRow({u"ffa_bespin"_s});
    };
    const auto cycleGone = [&](ServerProfile& p) {
        manualCycle(p);
        p.setValue(F::chkUseINI, 1);
        p.setText(F::txtServerINI, t.root() + u"/gone.cfg"_s);
    };
    const auto watched = [](const char* limit, const char* window) {
        return [=](ServerProfile& p) {
            p.setValue(F::chkRestartServer, 1);
            if (limit)
                p.setText(F::txtRestartLimit, QString::fromLatin1(limit));
            if (window)
                p.setText(F::txtRestartWindow, QString::fromLatin1(window));
        };
    };
    // What the user left, the box's text and the page that OK turns to.
    const std::tuple<std::function<void(ServerProfile&)>, QString, int> cases[] = {
        {cycleGone, u"Selected mapcycle file does not exist"_s, 3},
        {manualCycle, u"No maps have been selected"_s, 2},
        {oneMap, u"No Starting map has been selected"_s, 2},
        {[](ServerProfile& p) { p.setText(kCfg(1), {}); }, u"A Session name is required"_s, 3},
        {[](ServerProfile& p) { p.setText(kCfg(1), u"a|b"_s); },
         u"Invalid session name, you cannot use \\/:*?<>| in a session name"_s, 3},
        {watched("0", nullptr), u"The restart limit must be a whole number from 1 to 1000"_s, 3},
        {watched(nullptr, ""), u"The restart window must be a whole number of minutes from 1 to 1440"_s, 3},
    };
    for (const auto& [setup, text, page] : cases) {
        SCOPED_TRACE(text.toStdString());
        profile.resetAll();
        profile.setValue(F::chkMapAutoCycle, 1);
        profile.setValue(F::vsMainTab, 3);
        t.prompts.shown.clear();
        setup(profile);
        ok();
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, text + kTail}));
        EXPECT_EQ(profile.value(F::vsMainTab), page);
    }
    EXPECT_EQ(launcher.starts, 0);
    EXPECT_EQ(windows.closed + windows.minimized, 0);
    // A saved cycle that exists needs no rotation.
    const StubServer server = stub();
    const QString cycle = t.baseFolder() + u"/mycycle.cfg"_s;
    writeFile(cycle, "set a 1\r\n");
    profile.resetAll();
    profile.setValue(F::chkUseINI, 1);
    profile.setText(F::txtServerINI, cycle);
    t.prompts.shown.clear();
    ok();
    EXPECT_TRUE(server.waitForRecord());
    EXPECT_FALSE(t.prompts.texts().contains(u"No maps have been selected"_s + kTail));
}

TEST_F(Launch, TheSessionNameReachesTheExecLineCompletedAndLowerCased)
{
    const std::pair<const char*, const char*> cases[] = {{"abc", "abc.cfg"}, {"A.CFG", "a.cfg"}, {"x y", "x_y.cfg"}};
    for (const auto& [typed, exec] : cases) {
        SCOPED_TRACE(typed);
        const StubServer server = stub();
        profile.setText(kCfg(1), QString::fromLatin1(typed));
        ok();
        const auto started = server.waitForRecord();
        ASSERT_TRUE(started);
        EXPECT_EQ(started->arguments.mid(started->arguments.size() - 2),
                  (QStringList{u"+exec"_s, QString::fromLatin1(exec)}));
    }
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(Launch, TheQuestionAboutTheDefaultsComesFirstAndClearsTheMark)
{
    // No leaves the store alone but clears the mark, and the launch goes on.
    const StubServer server = stub();
    profile.setConfigurationChanged(true);
    t.prompts.answerNext(Answer::No);
    ok();
    ASSERT_TRUE(server.waitForRecord());
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_FALSE(profile.configurationChanged());
    EXPECT_TRUE(t.store->GetAllSettings().isEmpty()) << "No saves nothing";
    profile.setConfigurationChanged(true);
    profile.setValue(F::chkSendMessage, 1);
    t.prompts.shown.clear();
    t.prompts.answerNext(Answer::Yes);
    ok();
    ASSERT_GE(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(
        isBox(t.prompts.shown.front(), {kProductTitle, Icon::Question,
                                        u"Configuration has changed, set as default?"_s + kTail, Buttons::YesNo}));
    // Yes has saved the defaults before the refusal, whatever that save says itself.
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation,
                                         u"An rcon password is required to enable server messaging"_s + kTail}));
    EXPECT_FALSE(profile.configurationChanged());
    EXPECT_EQ(launcher.starts, 1);
    t.prompts.shown.clear();
    ok();
    ASSERT_EQ(t.prompts.shown.size(), 1u) << "the mark stays clear, so no second question";
}

TEST_F(Launch, AStartedServerClosesTheProgramOrMinimisesItAndMessagingOverridesClose)
{
    // Minimise, messaging; then closed, minimised.
    const std::tuple<bool, bool, int, int> cases[] = {{false, false, 1, 0}, {true, false, 0, 1}, {false, true, 0, 1}};
    for (const auto& [minimise, messaging, closed, minimised] : cases) {
        SCOPED_TRACE(::testing::Message() << minimise << messaging);
        RecordingWindows fresh;
        profile.resetAll();
        profile.setValue(F::chkMapAutoCycle, 1);
        ASSERT_TRUE(profile.isSet(F::optStartClose));
        profile.setValue(F::optStartMinimize, minimise);
        profile.setValue(F::chkSendMessage, messaging);
        profile.setText(kCfg(14), u"secret"_s);
        const StubServer server = stub();
        cmdOk_Click(*t.app, profile, fresh);
        ASSERT_TRUE(server.waitForRecord());
        EXPECT_EQ(fresh.closed, closed);
        EXPECT_EQ(fresh.minimized, minimised);
        EXPECT_EQ(profile.isSet(F::optStartMinimize), minimise || messaging) << "messaging leaves minimise selected";
        EXPECT_EQ(profile.isSet(F::optStartClose), !minimise && !messaging);
    }
}

TEST_F(Launch, AFailedStartNamesWhatFailedThenSaysTheServerCouldNotStart)
{
    // What goes wrong, the error's number and the file or program that it names.
    const std::tuple<std::function<void()>, int, QString> cases[] = {
        {[] {}, 53, u"(jk2ded)"_s}, // no server anywhere
        {[&] { StubServer(t.gameFolder(), u"jk2ded"_s, record(), false); }, 70, t.gameFolder() + u"jk2ded"_s},
        {[&] {
             QFile::remove(t.baseFolder() + u"/luke.cfg"_s);
             QDir(t.baseFolder()).mkdir(u"luke.cfg"_s);
         },
         75, t.baseFolder() + u"/luke.cfg"_s},
    };
    for (const auto& [setup, number, culprit] : cases) {
        SCOPED_TRACE(number);
        t.prompts.shown.clear();
        setup();
        ok();
        ASSERT_EQ(t.prompts.shown.size(), 2u);
        const auto& report = t.prompts.shown.front().request;
        EXPECT_EQ(report.icon, Icon::Critical);
        EXPECT_TRUE(report.text.contains(u"Number: %1"_s.arg(number))) << report.text.toStdString();
        EXPECT_TRUE(report.text.contains(u"::Code.CreateJediConfiguration(Function)"_s));
        EXPECT_TRUE(report.text.contains(culprit)) << report.text.toStdString();
        EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Critical, u"Could not start server!"_s + kTail}));
        EXPECT_EQ(windows.closed + windows.minimized, 0);
        EXPECT_EQ(profile.formPointer(), pointer::Default);
    }
}

TEST_F(Launch, TheServerRunsInTheGameFolderWithTheSessionsValues)
{
    session.merc = true; // Internet with Merc
    profile.setValue(F::optDefaultGameType(3), 1);
    const auto started = launch();
    ASSERT_TRUE(started);
    EXPECT_EQ(started->workingFolder, canonical(t.gameFolder()));
    EXPECT_EQ(started->arguments.mid(0, 9),
              QStringList({"+set", "dedicated", "2", "+set", "g_jediVmerc", "1", "+set", "net_ip", ""}));
    EXPECT_FALSE(started->arguments.contains(u"net_port"_s));
    EXPECT_EQ(started->arguments.mid(started->arguments.size() - 5),
              QStringList({"+set", "g_gametype", "3", "+exec", "luke.cfg"}));
}

TEST_F(Launch, FieldTextReachesTheServerAsPlainArgumentsAndRunsNothing)
{
    const QString payload = u"1.2.3.4; touch pwned1 $(touch pwned2) `touch pwned3` | touch pwned4 & \"'"_s;
    t.app->serverExecutable = u"jk2 ded; touch pwned5 $(touch pwned6)"_s;
    session.ip = payload;
    session.sessionName = u"a b;c.cfg"_s;
    const auto started = launch();
    ASSERT_TRUE(started);
    EXPECT_EQ(started->arguments.at(5), payload);
    EXPECT_EQ(started->arguments.last(), u"a b;c.cfg"_s);
    QThread::msleep(200);
    for (const QString& folder : {t.gameFolder(), t.root(), QDir::currentPath()})
        EXPECT_TRUE(QDir(folder).entryList({u"pwned*"_s}).isEmpty()) << folder.toStdString();
    // A bare name is looked up in the game folder first: "true" also lies on the path, where it would record nothing.
    t.app->serverExecutable = u"true"_s;
    ASSERT_TRUE(launch());
    EXPECT_EQ(launcher.requests.back().workingFolder, t.gameFolder());
}

TEST_F(Launch, WithoutAServerTypeNothingStartsTheRunGoesOnAndDefaultCfgIsCreatedEmptyOnlyWhenMissing)
{
    profile.setValue(F::chkServerType(2), 0);
    const int before = launchRetryCount();
    EXPECT_TRUE(startServerAfterConfiguration(*t.app, profile, session));
    EXPECT_EQ(launcher.starts, 0);
    EXPECT_EQ(launchRetryCount(), before + 1) << "the messaging step runs all the same";
    // Default.cfg, in the base folder (whatever its case: the base-folder roads check that).
    const QString file = t.baseFolder() + u"/Default.cfg"_s;
    ASSERT_TRUE(QFileInfo(file).isFile());
    EXPECT_EQ(QFileInfo(file).size(), 0);
    writeFile(file, "set a 1\r\n");
    EnsureDefaultCfg(*t.app);
    EXPECT_EQ(fileBytes(file), QByteArray("set a 1\r\n"));
}

TEST_F(Launch, MessagingIsArmedWhenTheBoxIsOneAndAnAddressInUseIsTriedUntilTheCounterPassesOneThousand)
{
    int arms = 0;
    const auto arm = [&](AppContext&, ServerProfile&) { ++arms; };
    const auto busy = [&](int times) {
        return [&arms, times](AppContext&, ServerProfile&) {
            if (++arms <= times)
                raiseError(err::AddressInUse);
        };
    };
    RetryCounterScope scope(0);
    runMessagingStep(*t.app, profile, arm);
    EXPECT_EQ(arms, 0);
    profile.setValue(F::chkSendMessage, 1);
    runMessagingStep(*t.app, profile, arm);
    EXPECT_EQ(arms, 1);
    EXPECT_EQ(launchRetryCount(), 2) << "every pass counts, armed or not";
    arms = 0;
    runMessagingStep(*t.app, profile, busy(2));
    EXPECT_EQ(arms, 3);
    setLaunchRetryCount(995);
    arms = 0;
    EXPECT_NO_THROW(runMessagingStep(*t.app, profile, busy(100)));
    EXPECT_EQ(arms, 6) << "passes 996 to 1001; above 1000 it gives up silently";
    // Other errors go to the caller.
    EXPECT_THROW(runMessagingStep(*t.app, profile, [](AppContext&, ServerProfile&) { raiseError(err::TypeMismatch); }),
                 RuntimeError);
}

namespace {

class Profiles : public ::testing::Test {
protected:
    void SetUp() override
    {
        writeFile(t.gameFolder() + u"jk2mvded"_s, "#!/bin/sh\n");
        profiles.use(*t.app, QString());
        // The game's place, as start-up stores it.
        t.app->store().SaveSetting(u"PathToJedi"_s, t.gameFolder());
        t.app->store().SaveSetting(u"PathToServer"_s, u"jk2mvded"_s);
        t.app->store().SaveSetting(u"RunOnce"_s, u"1"_s);
        windows.loadMainWindow();
    }
    void TearDown() override
    {
        sleeper.kill();
        sleeper.waitForFinished();
    }
    ServerProfile& window() { return *windows.profile; }
    void switchTo(const QString& name) { mnuProfileSwitch_Click(*t.app, window(), windows, profiles, name); }
    void startable()
    {
        window().setValue(F::chkMapAutoCycle, 1);
        window().setValue(F::chkSendMessage, 0);
    }
    /// The window's fields as the user makes them, saved with Defaults.
    void fill(const QString& host, const QStringList& maps, const QString& bot)
    {
        window().setText(F::txtServerConfig(2), host);
        QList<QStringList> rows;
        for (const QString& map : maps)
            rows << QStringList{map};
        window().field(F::lsvMapRotation).setRows(rows);
        appendRosterBot(window(), {bot, u"Hardcore"_s, u"RED"_s, bot, u"50"_s});
        cmdDefault_Click(*t.app, window());
    }
    void expectWindow(const QString& host, const QStringList& maps, const QString& bot)
    {
        EXPECT_EQ(window().text(F::txtServerConfig(2)), host);
        QStringList shown;
        for (const QStringList& row : window().field(F::lsvMapRotation).rows())
            shown << row.value(0);
        EXPECT_EQ(shown, maps);
        ASSERT_EQ(rosterBots(window()).size(), 1);
        EXPECT_EQ(rosterBots(window()).first().value(0), bot);
    }
    /// Close's part of a switch keeps the roster: the roster is the window's own.
    void newProfile(const QString& name, Answer fromCurrent)
    {
        t.prompts.typed << name;
        t.prompts.answerNext(fromCurrent);
        mnuProfileNew_Click(*t.app, window(), windows, profiles);
    }
    /// A server of the profile ctf on this port, recorded as running: a real process.
    void ctfServerRuns(int port)
    {
        sleeper.start(u"sleep"_s, {u"30"_s});
        ASSERT_TRUE(sleeper.waitForStarted());
        WatchState state;
        state.profile = u"ctf"_s;
        state.port = port;
        state.server = identifyProcess(sleeper.processId());
        state.phase = WatchState::Phase::Running;
        const ServerFolder folder(t.programFolder(), u"ctf"_s);
        ASSERT_TRUE(folder.make() && writeWatchState(folder.stateFile(), state));
    }
    TestApp t;
    ProfileSet profiles{t.root() + u"/config"_s};
    FakeWindowHost windows{*t.app};
    QProcess sleeper;
};

} // namespace

TEST_F(Profiles, EachProfileKeepsItsFieldsRotationAndRosterAcrossSwitches)
{
    fill(u"Free For All"_s, {u"ffa_bespin"_s, u"ffa_yavin"_s}, u"Kyle"_s);
    newProfile(u"ctf"_s, Answer::No);
    ASSERT_EQ(profiles.current(), u"ctf"_s);
    EXPECT_EQ(t.prompts.asked.back().title, u"New Profile"_s);
    // A new profile from the defaults: nothing of the other profile but the game's place.
    EXPECT_EQ(window().text(F::txtServerConfig(2)), t.names.computer) << "a first run's host name";
    EXPECT_EQ(window().field(F::lsvMapRotation).count(), 0);
    EXPECT_EQ(rosterBots(window()).size(), 0);
    EXPECT_EQ(t.app->gameFolder, t.gameFolder());
    fill(u"Capture the Flag"_s, {u"ctf_bespin"_s}, u"Jan"_s);
    for (int round = 0; round < 2; ++round) {
        switchTo(u"default"_s);
        EXPECT_TRUE(profiles.current().isEmpty());
        expectWindow(u"Free For All"_s, {u"ffa_bespin"_s, u"ffa_yavin"_s}, u"Kyle"_s);
        switchTo(u"ctf"_s);
        EXPECT_EQ(profiles.current(), u"ctf"_s);
        expectWindow(u"Capture the Flag"_s, {u"ctf_bespin"_s}, u"Jan"_s);
    }
    EXPECT_TRUE(QFileInfo(t.root() + u"/config/profiles/ctf.conf"_s).isFile());
    EXPECT_TRUE(QFileInfo(t.programFolder() + u"/servers/ctf/lastbots.csv"_s).isFile());
    EXPECT_EQ(fileBytes(t.programFolder() + u"/lastbots.csv"_s), "Kyle,Hardcore,RED,Kyle,50\r\n");
    EXPECT_EQ(profiles.names(), (QStringList{u"default"_s, u"ctf"_s}));
    // A new profile from the current settings copies what the window holds, saved or not.
    window().setText(F::txtServerConfig(2), u"CTF, typed and not saved"_s);
    newProfile(u"ctf-2"_s, Answer::Yes);
    ASSERT_EQ(profiles.current(), u"ctf-2"_s);
    expectWindow(u"CTF, typed and not saved"_s, {u"ctf_bespin"_s}, u"Jan"_s);
}

TEST_F(Profiles, ABadOrTakenNameSaysWhyAndMakesNothing)
{
    newProfile(u"ctf"_s, Answer::No);
    switchTo(u"default"_s);
    // Which names are good is the settings' tests'; here a bad one and a taken one reach their boxes.
    const std::pair<QString, QString> cases[] = {
        {u"../x"_s, u"A profile name is 1 to 32 letters, digits, - and _, and not \"default\""_s},
        {u"ctf"_s, u"A profile named ctf already exists"_s}};
    for (const auto& [name, says] : cases) {
        SCOPED_TRACE(name.toStdString());
        t.prompts.shown.clear();
        t.prompts.typed << name;
        mnuProfileNew_Click(*t.app, window(), windows, profiles);
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, says + kTail}));
        EXPECT_TRUE(profiles.current().isEmpty());
        EXPECT_EQ(profiles.names(), (QStringList{u"default"_s, u"ctf"_s}));
    }
    EXPECT_FALSE(QFileInfo::exists(t.root() + u"/x.conf"_s));
    t.prompts.shown.clear();
    mnuProfileNew_Click(*t.app, window(), windows, profiles);
    EXPECT_TRUE(t.prompts.shown.empty()) << "a cancelled dialog asks nothing more";
}

TEST_F(Profiles, TheDefaultProfileStaysAndANamedOneRenamesAndGoes)
{
    for (auto routine : {mnuProfileRename_Click, mnuProfileDelete_Click}) {
        t.prompts.shown.clear();
        routine(*t.app, window(), windows, profiles);
        ASSERT_EQ(t.prompts.shown.size(), 1u);
    }
    EXPECT_EQ(t.prompts.texts(), QStringList{u"The default profile can't be deleted"_s + kTail});
    newProfile(u"ctf"_s, Answer::No);
    fill(u"Capture the Flag"_s, {u"ctf_bespin"_s}, u"Jan"_s);
    t.prompts.typed << u"ctf_night"_s;
    mnuProfileRename_Click(*t.app, window(), windows, profiles);
    EXPECT_EQ(t.prompts.asked.back().title, u"Rename Profile"_s);
    EXPECT_EQ(t.prompts.asked.back().text, u"ctf"_s);
    EXPECT_EQ(profiles.current(), u"ctf_night"_s);
    expectWindow(u"Capture the Flag"_s, {u"ctf_bespin"_s}, u"Jan"_s);
    EXPECT_EQ(profiles.names(), (QStringList{u"default"_s, u"ctf_night"_s}));
    t.prompts.answerNext(Answer::No);
    mnuProfileDelete_Click(*t.app, window(), windows, profiles);
    EXPECT_EQ(profiles.current(), u"ctf_night"_s);
    t.prompts.answerNext(Answer::Yes);
    mnuProfileDelete_Click(*t.app, window(), windows, profiles);
    EXPECT_TRUE(
        isBox(t.prompts.last(), {kProductTitle, Icon::Question,
                                 u"Delete the profile ctf_night with its settings?"_s + kTail, Buttons::YesNo}));
    EXPECT_TRUE(profiles.current().isEmpty());
    EXPECT_EQ(profiles.names(), QStringList{u"default"_s});
    EXPECT_FALSE(QFileInfo::exists(t.programFolder() + u"/servers/ctf_night"_s));
}

TEST_F(Profiles, APortThatAnotherProfilesServerUsesIsRefused)
{
    ctfServerRuns(28070);
    startable();
    cmdOk_Click(*t.app, window(), windows);
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation,
                                         u"The port 28070 is in use by the server of the profile ctf"_s + kTail}));
    EXPECT_TRUE(t.launcher.started.empty());
    EXPECT_TRUE(QDir(t.baseFolder()).entryList(QDir::Files).isEmpty());
    // Another port starts; the profile's own server never stands in its way.
    t.prompts.shown.clear();
    window().setText(F::txtServerConfig(12), u"28071"_s);
    cmdOk_Click(*t.app, window(), windows);
    EXPECT_EQ(t.launcher.started.size(), 1u) << t.prompts.texts().join(u'|').toStdString();
}

TEST_F(Profiles, AWatchedStartOfANamedProfileKeepsItsFilesInItsOwnFolder)
{
    newProfile(u"ctf"_s, Answer::No);
    startable();
    window().setValue(F::chkRestartServer, 1);
    t.app->watcherProgram = u"/opt/arena-stewardctl"_s;
    cmdOk_Click(*t.app, window(), windows);
    ASSERT_EQ(t.launcher.started.size(), 1u) << t.prompts.texts().join(u'|').toStdString();
    const QString folder = t.programFolder() + u"/servers/ctf"_s;
    EXPECT_EQ(t.launcher.started.back().arguments,
              (QStringList{u"run"_s, u"--config"_s, folder + u"/started.asc"_s, u"--roster"_s,
                           folder + u"/started-bots.csv"_s, u"--profile"_s, u"ctf"_s}));
    EXPECT_TRUE(QFileInfo(folder + u"/started.asc"_s).isFile());
}

TEST_F(Profiles, AProfileWhoseServerRunsIsNeitherRenamedNorDeleted)
{
    newProfile(u"ctf"_s, Answer::No);
    ctfServerRuns(0);
    for (auto routine : {mnuProfileRename_Click, mnuProfileDelete_Click}) {
        t.prompts.shown.clear();
        t.prompts.typed << u"other"_s;
        t.prompts.answerNext(Answer::Yes);
        routine(*t.app, window(), windows, profiles);
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation,
                                             u"The server of the profile ctf is running: stop it first"_s + kTail}));
        EXPECT_EQ(profiles.current(), u"ctf"_s);
        EXPECT_EQ(profiles.names(), (QStringList{u"default"_s, u"ctf"_s}));
    }
}
