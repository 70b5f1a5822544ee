// Named profiles through the Profile menu's routines, on real settings files.
#include "bots/BotRoster.h"
#include "commands/OkCommand.h"
#include "commands/ProfileCommands.h"
#include "commands/ProfileSet.h"
#include "commands/ConfigurationCommands.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "platform/ProcessIdentity.h"
#include "testkit/BoxExpect.h"
#include "testkit/FakeWindows.h"
#include "testkit/TestApp.h"
#include "watch/ServerFolder.h"
#include "watch/WatchState.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

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
    EXPECT_EQ(mainWindowTitle(profiles.current()), u"Arena Steward - ctf"_s);
    EXPECT_EQ(mainWindowTitle(QString()), u"Arena Steward"_s);
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
