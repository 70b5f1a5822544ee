#include "commands/CreateJediConfiguration.h"
#include "testkit/LaunchKit.h"

#include "commands/OkCommand.h"
#include "commands/SessionName.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "testkit/TestApp.h"
#include "testkit/BoxExpect.h"

#include <QDir>
#include <QFile>
#include <functional>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

constexpr auto kCfg = F::txtServerConfig;

class OkCommand : public ::testing::Test {
protected:
    OkCommand()
    {
        t.app->services.launcher = &launcher;
        t.app->serverExecutable = u"jk2ded"_s;
        // The game cycles the maps itself unless a test wants the map checks.
        profile.setValue(F::chkMapAutoCycle, 1);
    }
    StubServer stub() const { return StubServer(t.gameFolder(), u"jk2ded"_s, record()); }
    QString record() const { return t.root() + u"/record.txt"_s; }
    void ok() { cmdOk_Click(*t.app, profile, windows); }

    TestApp t;
    CountingLauncher launcher;
    RecordingWindows windows;
    ServerProfile profile;
};

} // namespace

TEST(SessionName, ForbiddenCharactersRaiseOneBoxEach)
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
    for (const char* fine : {"x y", "a\"b", "Luke.CFG", " ", "a;b"})
        EXPECT_TRUE(ValidSessionName(*t.app, QString::fromLatin1(fine))) << fine;
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST(SessionName, CfgIsAppendedUnlessTheNameEndsInItInAnyCase)
{
    const std::pair<const char*, const char*> cases[] = {
        {"abc", "abc.cfg"}, {".cfg", ".cfg"},   {"A.CFG", "A.CFG"},       {"x y", "x y.cfg"},
        {"x ", "x .cfg"},   {"cfg", "cfg.cfg"}, {"a.cfgx", "a.cfgx.cfg"}, {"a.Cfg", "a.Cfg"},
    };
    for (const auto& [in, out] : cases)
        EXPECT_EQ(completeSessionName(QString::fromLatin1(in)), QString::fromLatin1(out)) << in;
}

TEST_F(OkCommand, EachRefusalShowsItsBoxAndStartsNothing)
{
    struct Case {
        const char* name;
        std::function<void(ServerProfile&)> setup;
        QString text;
        int page;
    };
    const auto manualCycle = [](ServerProfile& p) { p.setValue(F::chkMapAutoCycle, 0); };
    const auto oneMap = [&](ServerProfile& p) {
        manualCycle(p);
        p.field(F::lsvMapRotation).addRow({u"ffa_bespin"_s});
    };
    const Case cases[] = {
        {"saved cycle missing",
         [&](ServerProfile& p) {
             manualCycle(p);
             p.setValue(F::chkUseINI, 1);
             p.setText(F::txtServerINI, t.root() + u"/gone.cfg"_s);
         },
         u"Selected mapcycle file does not exist"_s, 3},
        {"empty rotation", manualCycle, u"No maps have been selected"_s, 2},
        {"no starting map", oneMap, u"No Starting map has been selected"_s, 2},
        {"no session", [](ServerProfile& p) { p.setText(kCfg(1), {}); }, u"A Session name is required"_s, 3},
        {"forbidden character", [](ServerProfile& p) { p.setText(kCfg(1), u"a|b"_s); },
         u"Invalid session name, you cannot use \\/:*?<>| in a session name"_s, 3},
        {"messages without password", [](ServerProfile& p) { p.setValue(F::chkSendMessage, 1); },
         u"An rcon password is required to enable server messaging"_s, 3},
        {"watched with no restarts",
         [](ServerProfile& p) {
             p.setValue(F::chkRestartServer, 1);
             p.setText(F::txtRestartLimit, u"0"_s);
         },
         u"The restart limit must be a whole number from 1 to 1000"_s, 3},
        {"watched with an empty window",
         [](ServerProfile& p) {
             p.setValue(F::chkRestartServer, 1);
             p.setText(F::txtRestartWindow, QString());
         },
         u"The restart window must be a whole number of minutes from 1 to 1440"_s, 3},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        profile.resetAll();
        profile.setValue(F::chkMapAutoCycle, 1);
        profile.setValue(F::vsMainTab, 3);
        t.prompts.shown.clear();
        c.setup(profile);
        ok();
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, c.text + kTail}));
        EXPECT_EQ(profile.value(F::vsMainTab), c.page);
    }
    EXPECT_EQ(launcher.starts, 0);
    EXPECT_EQ(windows.closed + windows.minimized, 0);
}

TEST_F(OkCommand, ASavedCycleThatExistsNeedsNoRotation)
{
    const StubServer server = stub();
    const QString cycle = t.baseFolder() + u"/mycycle.cfg"_s;
    writeFile(cycle, "set a 1\r\n");
    profile.setValue(F::chkMapAutoCycle, 0);
    profile.setValue(F::chkUseINI, 1);
    profile.setText(F::txtServerINI, cycle);
    ok();
    EXPECT_TRUE(server.waitForRecord());
    EXPECT_FALSE(t.prompts.texts().contains(u"No maps have been selected"_s + kTail));
}

TEST_F(OkCommand, TheSessionNameReachesTheExecLineCompletedAndLowerCased)
{
    const std::pair<const char*, const char*> cases[] = {
        {"abc", "abc.cfg"}, {".cfg", ".cfg"}, {"A.CFG", "a.cfg"}, {"x y", "x_y.cfg"}, {"x ", "x_.cfg"},
    };
    for (const auto& [typed, exec] : cases) {
        SCOPED_TRACE(typed);
        const StubServer server = stub();
        profile.setText(kCfg(1), QString::fromLatin1(typed));
        ok();
        const auto started = server.waitForRecord();
        ASSERT_TRUE(started);
        EXPECT_EQ(started->arguments.last(), QString::fromLatin1(exec));
        EXPECT_EQ(started->arguments.at(started->arguments.size() - 2), u"+exec"_s);
    }
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(OkCommand, TheQuestionComesBeforeTheRconRefusalAndClearsTheMark)
{
    profile.setConfigurationChanged(true);
    profile.setValue(F::chkSendMessage, 1);
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
    EXPECT_EQ(launcher.starts, 0);

    t.prompts.shown.clear();
    ok();
    ASSERT_EQ(t.prompts.shown.size(), 1u) << "the mark stays clear, so no second question";
}

TEST_F(OkCommand, NoLeavesTheStoreAloneButClearsTheMarkAndTheLaunchGoesOn)
{
    const StubServer server = stub();
    profile.setConfigurationChanged(true);
    t.prompts.answerNext(Answer::No);
    ok();
    ASSERT_TRUE(server.waitForRecord());
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_FALSE(profile.configurationChanged());
    EXPECT_TRUE(t.store->GetAllSettings().isEmpty()) << "No saves nothing";
}

TEST_F(OkCommand, AStartedServerClosesTheProgramOrMinimisesItAndMessagingOverridesClose)
{
    const struct {
        const char* name;
        bool minimise;
        bool messaging;
        int closed;
        int minimised;
    } cases[] = {{"close", false, false, 1, 0}, {"minimise", true, false, 0, 1}, {"messaging", false, true, 0, 1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        RecordingWindows fresh;
        profile.resetAll();
        profile.setValue(F::chkMapAutoCycle, 1);
        ASSERT_TRUE(profile.isSet(F::optStartClose));
        profile.setValue(F::optStartMinimize, c.minimise);
        profile.setValue(F::chkSendMessage, c.messaging);
        profile.setText(kCfg(14), u"secret"_s);
        const StubServer server = stub();
        cmdOk_Click(*t.app, profile, fresh);
        ASSERT_TRUE(server.waitForRecord());
        EXPECT_EQ(fresh.closed, c.closed);
        EXPECT_EQ(fresh.minimized, c.minimised);
        EXPECT_EQ(profile.isSet(F::optStartMinimize), c.minimise || c.messaging)
            << "messaging leaves minimise selected";
        EXPECT_EQ(profile.isSet(F::optStartClose), !c.minimise && !c.messaging);
    }
}

TEST_F(OkCommand, AFailedStartNamesWhatFailedThenSaysTheServerCouldNotStart)
{
    struct Case {
        const char* name;
        std::function<void()> setup;
        int number;
        QString culprit;
    };
    const Case cases[] = {
        {"no server anywhere", [] {}, 53, u"(jk2ded)"_s},
        {"server without execute permission", [&] { StubServer(t.gameFolder(), u"jk2ded"_s, record(), false); }, 70,
         t.gameFolder() + u"jk2ded"_s},
        {"session file that cannot be written",
         [&] {
             QFile::remove(t.baseFolder() + u"/luke.cfg"_s);
             QDir(t.baseFolder()).mkdir(u"luke.cfg"_s);
         },
         75, t.baseFolder() + u"/luke.cfg"_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        t.prompts.shown.clear();
        c.setup();
        ok();
        ASSERT_EQ(t.prompts.shown.size(), 2u);
        const auto& report = t.prompts.shown.front().request;
        EXPECT_EQ(report.icon, Icon::Critical);
        EXPECT_TRUE(report.text.contains(u"Number: %1"_s.arg(c.number))) << report.text.toStdString();
        EXPECT_TRUE(report.text.contains(u"::Code.CreateJediConfiguration(Function)"_s));
        EXPECT_TRUE(report.text.contains(c.culprit)) << report.text.toStdString();
        EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Critical, u"Could not start server!"_s + kTail}));
        EXPECT_EQ(windows.closed + windows.minimized, 0);
        EXPECT_EQ(profile.formPointer(), pointer::Default);
    }
}
