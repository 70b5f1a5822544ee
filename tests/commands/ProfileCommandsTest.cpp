// Named profiles through the Profile menu's routines, on real settings files.
#include "bots/BotRoster.h"
#include "commands/OkCommand.h"
#include "commands/ProfileCommands.h"
#include "commands/ProfileSet.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "platform/ProcessIdentity.h"
#include "commands/ConfigurationCommands.h"
#include "settings/SaveSettings.h"
#include "settings/SettingsStore.h"
#include "testkit/FakeWindows.h"
#include "testkit/TestApp.h"
#include "watch/ServerFolder.h"
#include "watch/WatchState.h"
#include "testkit/BoxExpect.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {

class Profiles : public ::testing::Test {
protected:
    void SetUp() override
    {
        writeFile(t.gameFolder() + QStringLiteral("jk2mvded"), "#!/bin/sh\n");
        profiles.use(*t.app, QString());
        location();
        windows.loadMainWindow();
    }

    /// The game's place, as start-up stores it.
    void location()
    {
        t.app->store().SaveSetting(QStringLiteral("PathToJedi"), t.gameFolder());
        t.app->store().SaveSetting(QStringLiteral("PathToServer"), QStringLiteral("jk2mvded"));
        t.app->store().SaveSetting(QStringLiteral("RunOnce"), QStringLiteral("1"));
    }

    ServerProfile& window() { return *windows.profile; }

    /// The window's fields as the user makes them, saved with Defaults.
    void fill(const QString& host, const QStringList& maps, const QString& bot)
    {
        window().setText(F::txtServerConfig(2), host);
        QList<QStringList> rows;
        for (const QString& map : maps)
            rows << QStringList{map};
        window().field(F::lsvMapRotation).setRows(rows);
        appendRosterBot(window(), {bot, QStringLiteral("Hardcore"), QStringLiteral("RED"), bot, QStringLiteral("50")});
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
        sleeper.start(QStringLiteral("sleep"), {QStringLiteral("30")});
        ASSERT_TRUE(sleeper.waitForStarted());
        WatchState state;
        state.session = QStringLiteral("ctf.cfg");
        state.profile = QStringLiteral("ctf");
        state.port = port;
        state.server = identifyProcess(sleeper.processId());
        state.phase = WatchState::Phase::Running;
        const ServerFolder folder(t.programFolder(), QStringLiteral("ctf"));
        ASSERT_TRUE(folder.make());
        ASSERT_TRUE(writeWatchState(folder.stateFile(), state));
    }
    void TearDown() override
    {
        sleeper.kill();
        sleeper.waitForFinished();
    }

    TestApp t;
    ProfileSet profiles{t.root() + QStringLiteral("/config")};
    FakeWindowHost windows{*t.app};
    QProcess sleeper;
};

} // namespace

TEST_F(Profiles, EachProfileKeepsItsFieldsRotationAndRosterAcrossSwitches)
{
    fill(QStringLiteral("Free For All"), {QStringLiteral("ffa_bespin"), QStringLiteral("ffa_yavin")},
         QStringLiteral("Kyle"));
    newProfile(QStringLiteral("ctf"), Answer::No);
    ASSERT_EQ(profiles.current(), QStringLiteral("ctf"));
    EXPECT_EQ(t.prompts.asked.back().title, QStringLiteral("New Profile"));
    // A new profile from the defaults: nothing of the other profile but the game's place.
    EXPECT_EQ(window().text(F::txtServerConfig(2)), t.names.computer) << "a first run's host name";
    EXPECT_EQ(window().field(F::lsvMapRotation).count(), 0);
    EXPECT_EQ(rosterBots(window()).size(), 0);
    EXPECT_EQ(t.app->gameFolder, t.gameFolder());
    fill(QStringLiteral("Capture the Flag"), {QStringLiteral("ctf_bespin")}, QStringLiteral("Jan"));

    for (int round = 0; round < 2; ++round) {
        mnuProfileSwitch_Click(*t.app, window(), windows, profiles, QStringLiteral("default"));
        EXPECT_TRUE(profiles.current().isEmpty());
        expectWindow(QStringLiteral("Free For All"), {QStringLiteral("ffa_bespin"), QStringLiteral("ffa_yavin")},
                     QStringLiteral("Kyle"));
        mnuProfileSwitch_Click(*t.app, window(), windows, profiles, QStringLiteral("ctf"));
        EXPECT_EQ(profiles.current(), QStringLiteral("ctf"));
        expectWindow(QStringLiteral("Capture the Flag"), {QStringLiteral("ctf_bespin")}, QStringLiteral("Jan"));
    }
    EXPECT_TRUE(QFileInfo(t.root() + QStringLiteral("/config/profiles/ctf.conf")).isFile());
    EXPECT_TRUE(QFileInfo(t.programFolder() + QStringLiteral("/servers/ctf/lastbots.csv")).isFile());
    EXPECT_EQ(fileBytes(t.programFolder() + QStringLiteral("/lastbots.csv")), "Kyle,Hardcore,RED,Kyle,50\r\n");
    EXPECT_EQ(mainWindowTitle(profiles.current()), QStringLiteral("Arena Steward - ctf"));
    EXPECT_EQ(mainWindowTitle(QString()), QStringLiteral("Arena Steward"));
    EXPECT_EQ(profiles.names(), QStringList({QStringLiteral("default"), QStringLiteral("ctf")}));
}

TEST_F(Profiles, ANewProfileFromTheCurrentSettingsCopiesWhatTheWindowHolds)
{
    fill(QStringLiteral("Duel"), {QStringLiteral("duel_bay")}, QStringLiteral("Luke"));
    window().setText(F::txtServerConfig(2), QStringLiteral("Duel, typed and not saved"));
    newProfile(QStringLiteral("duel-2"), Answer::Yes);
    ASSERT_EQ(profiles.current(), QStringLiteral("duel-2"));
    expectWindow(QStringLiteral("Duel, typed and not saved"), {QStringLiteral("duel_bay")}, QStringLiteral("Luke"));
}

TEST_F(Profiles, ABadOrTakenNameSaysWhyAndMakesNothing)
{
    newProfile(QStringLiteral("ctf"), Answer::No);
    mnuProfileSwitch_Click(*t.app, window(), windows, profiles, QStringLiteral("default"));
    const QString rule = QStringLiteral("A profile name is 1 to 32 letters, digits, - and _, and not \"default\"");
    const struct {
        QString name;
        QString says;
    } cases[] = {
        {QStringLiteral("a b"), rule},
        {QStringLiteral("../x"), rule},
        {QStringLiteral("ünï"), rule},
        {QString(33, QLatin1Char('a')), rule},
        {QStringLiteral("DEFAULT"), rule},
        {QStringLiteral(" "), rule},
        {QStringLiteral("ctf"), QStringLiteral("A profile named ctf already exists")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        t.prompts.shown.clear();
        t.prompts.typed << c.name;
        mnuProfileNew_Click(*t.app, window(), windows, profiles);
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, c.says + kTail}));
        EXPECT_TRUE(profiles.current().isEmpty());
        EXPECT_EQ(profiles.names(), QStringList({QStringLiteral("default"), QStringLiteral("ctf")}));
    }
    EXPECT_FALSE(QFileInfo::exists(t.root() + QStringLiteral("/x.conf")));
    // A cancelled dialog asks nothing more.
    t.prompts.shown.clear();
    mnuProfileNew_Click(*t.app, window(), windows, profiles);
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(Profiles, TheDefaultProfileStaysAndANamedOneRenamesAndGoes)
{
    for (auto routine : {mnuProfileRename_Click, mnuProfileDelete_Click}) {
        t.prompts.shown.clear();
        routine(*t.app, window(), windows, profiles);
        ASSERT_EQ(t.prompts.shown.size(), 1u);
    }
    EXPECT_EQ(t.prompts.texts(), QStringList{QStringLiteral("The default profile can't be deleted") + kTail});

    newProfile(QStringLiteral("ctf"), Answer::No);
    fill(QStringLiteral("Capture the Flag"), {QStringLiteral("ctf_bespin")}, QStringLiteral("Jan"));
    t.prompts.typed << QStringLiteral("ctf_night");
    mnuProfileRename_Click(*t.app, window(), windows, profiles);
    EXPECT_EQ(t.prompts.asked.back().title, QStringLiteral("Rename Profile"));
    EXPECT_EQ(t.prompts.asked.back().text, QStringLiteral("ctf"));
    EXPECT_EQ(profiles.current(), QStringLiteral("ctf_night"));
    expectWindow(QStringLiteral("Capture the Flag"), {QStringLiteral("ctf_bespin")}, QStringLiteral("Jan"));
    EXPECT_EQ(profiles.names(), QStringList({QStringLiteral("default"), QStringLiteral("ctf_night")}));

    t.prompts.answerNext(Answer::No);
    mnuProfileDelete_Click(*t.app, window(), windows, profiles);
    EXPECT_EQ(profiles.current(), QStringLiteral("ctf_night"));
    t.prompts.answerNext(Answer::Yes);
    mnuProfileDelete_Click(*t.app, window(), windows, profiles);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {kProductTitle, Icon::Question,
                       QStringLiteral("Delete the profile ctf_night with its settings?") + kTail, Buttons::YesNo}));
    EXPECT_TRUE(profiles.current().isEmpty());
    EXPECT_EQ(profiles.names(), QStringList{QStringLiteral("default")});
    EXPECT_FALSE(QFileInfo::exists(t.programFolder() + QStringLiteral("/servers/ctf_night")));
}

TEST_F(Profiles, APortThatAnotherProfilesServerUsesIsRefused)
{
    ctfServerRuns(28070);

    window().setValue(F::chkMapAutoCycle, 1);
    window().setValue(F::chkSendMessage, 0);
    cmdOk_Click(*t.app, window(), windows);
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(
        isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation,
                                 QStringLiteral("The port 28070 is in use by the server of the profile ctf") + kTail}));
    EXPECT_TRUE(t.launcher.started.empty());
    EXPECT_TRUE(QDir(t.baseFolder()).entryList(QDir::Files).isEmpty());

    // Another port starts; the profile's own server never stands in its way.
    t.prompts.shown.clear();
    window().setText(F::txtServerConfig(12), QStringLiteral("28071"));
    cmdOk_Click(*t.app, window(), windows);
    EXPECT_EQ(t.launcher.started.size(), 1u) << t.prompts.texts().join(QLatin1Char('|')).toStdString();
}

TEST_F(Profiles, AWatchedStartOfANamedProfileKeepsItsFilesInItsOwnFolder)
{
    newProfile(QStringLiteral("ctf"), Answer::No);
    window().setValue(F::chkMapAutoCycle, 1);
    window().setValue(F::chkSendMessage, 0);
    window().setValue(F::chkRestartServer, 1);
    t.app->watcherProgram = QStringLiteral("/opt/arena-stewardctl");
    cmdOk_Click(*t.app, window(), windows);
    ASSERT_EQ(t.launcher.started.size(), 1u) << t.prompts.texts().join(QLatin1Char('|')).toStdString();
    const QString folder = t.programFolder() + QStringLiteral("/servers/ctf");
    EXPECT_EQ(t.launcher.started.back().arguments,
              QStringList({QStringLiteral("run"), QStringLiteral("--config"), folder + QStringLiteral("/started.asc"),
                           QStringLiteral("--roster"), folder + QStringLiteral("/started-bots.csv"),
                           QStringLiteral("--profile"), QStringLiteral("ctf")}));
    EXPECT_TRUE(QFileInfo(folder + QStringLiteral("/started.asc")).isFile());
}

TEST_F(Profiles, AProfileWhoseServerRunsIsNeitherRenamedNorDeleted)
{
    newProfile(QStringLiteral("ctf"), Answer::No);
    ctfServerRuns(0);

    for (auto routine : {mnuProfileRename_Click, mnuProfileDelete_Click}) {
        t.prompts.shown.clear();
        t.prompts.typed << QStringLiteral("other");
        t.prompts.answerNext(Answer::Yes);
        routine(*t.app, window(), windows, profiles);
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(),
                          {kProductTitle, Icon::Exclamation,
                           QStringLiteral("The server of the profile ctf is running: stop it first") + kTail}));
        EXPECT_EQ(profiles.current(), QStringLiteral("ctf"));
        EXPECT_EQ(profiles.names(), QStringList({QStringLiteral("default"), QStringLiteral("ctf")}));
    }
}
