#include "model/Constants.h"
#include "commands/MainFormLoad.h"
#include "generate/ServerConfigWriter.h"
#include "model/ServerProfile.h"
#include "support/TextFile.h"
#include "testkit/FakeWindows.h"
#include "testkit/TestApp.h"
#include "testkit/BoxExpect.h"

#include <gtest/gtest.h>

#include <QDir>

using namespace steward;
using namespace steward::testing;

namespace {

QStringList configItems(const ServerProfile& profile, int i) { return profile.field(F::cboConfig(i)).items(); }

QStringList stockMaps()
{
    QStringList maps;
    for (const char* m : kStockStartingMaps)
        maps << QString::fromLatin1(m);
    return maps;
}

const QStringList kSteps{QStringLiteral("columns"), QStringLiteral("size"), QStringLiteral("center"),
                         QStringLiteral("disableClose")};

struct MainFormLoadTest : ::testing::Test {
    void load() { MainFormLoad(*t.app, profile, host); }
    TestApp t;
    ServerProfile profile;
    FakeFormLoadHost host;
};

} // namespace

TEST_F(MainFormLoadTest, RunsItsStepsInOrderAndClearsTheLoadingFlag)
{
    QList<bool> loadingSeen;
    host.onCall = [&](const QString&) { loadingSeen << profile.isLoading(); };

    load();

    EXPECT_EQ(host.calls, kSteps);
    EXPECT_EQ(loadingSeen, (QList<bool>{true, true, true, true}));
    EXPECT_FALSE(profile.isLoading());
    EXPECT_EQ(host.columns, (QList<int>{2205, 50, 0, 0}));
    EXPECT_EQ(host.height, 7490);
    EXPECT_EQ(host.width, 9600);
    EXPECT_EQ(t.app->helpFile, t.programFolder() + QStringLiteral("/arena-steward-guide.html"));
    EXPECT_EQ(profile.field(F::cboStartingMap).items(), stockMaps());
    EXPECT_EQ(profile.text(F::cboStartingMap), QStringLiteral("ctf_imperial")) << "entry 1 stands selected";
    EXPECT_EQ(profile.value(F::vsMainTab), 0);
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(MainFormLoadTest, ConfigListsHoldTheCfgFilesOfTheBaseFolder)
{
    const QString base = t.baseFolder() + QLatin1Char('/');
    for (const char* name :
         {"server.cfg", "FFA.CFG", "jediMaps.cfg", "readme.txt", "autoexeccfg", "cfg.txt", ".hidden.cfg", "ctf.Cfg"})
        writeFile(base + QString::fromLatin1(name), "x");
    QDir().mkpath(base + QStringLiteral("maps.cfg"));
    load();

    // Every name whose lower case ends in "cfg", under its own spelling, by name.
    const QStringList expected{QStringLiteral("autoexeccfg"), QStringLiteral("ctf.Cfg"), QStringLiteral("FFA.CFG"),
                               QStringLiteral("jediMaps.cfg"), QStringLiteral("server.cfg")};
    for (int i = 0; i <= 3; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(configItems(profile, i), expected);
    }
}

TEST(MainFormLoadFolder, AMissingBaseFolderLeavesTheConfigListsEmpty)
{
    for (const QString& folder : {QStringLiteral("/nonexistent/jk2/"), QString()}) {
        SCOPED_TRACE(folder.toStdString());
        TestApp t;
        t.app->gameFolder = folder;
        ServerProfile profile;
        FakeFormLoadHost host;
        MainFormLoad(*t.app, profile, host);
        for (int i = 0; i <= 3; ++i)
            EXPECT_TRUE(configItems(profile, i).isEmpty());
        EXPECT_EQ(profile.field(F::cboStartingMap).items().size(), 15);
        EXPECT_EQ(host.calls.size(), 4);
    }
}

TEST_F(MainFormLoadTest, AnIndexOutOfRangeTurnsToPageTwoAndTheLoadGoesOn)
{
    writeFile(t.baseFolder() + QStringLiteral("/server.cfg"), "x");
    profile.setValue(F::vsMainTab, 4);
    host.failures.insert(QStringLiteral("columns"), 35600);

    load();

    EXPECT_EQ(profile.value(F::vsMainTab), 2);
    EXPECT_EQ(host.calls, kSteps);
    EXPECT_EQ(host.height, 7490);
    EXPECT_FALSE(t.app->helpFile.isEmpty());
    EXPECT_EQ(configItems(profile, 3), QStringList{QStringLiteral("server.cfg")});
    EXPECT_FALSE(profile.isLoading());
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_TRUE(t.app->errorLog().lastFile().isEmpty()) << "nothing logged";
}

TEST_F(MainFormLoadTest, EveryOutOfRangeStepIsPassedOver)
{
    for (const QString& call : kSteps)
        host.failures.insert(call, 35600);
    int pageChanges = 0;
    QObject::connect(&profile.field(F::vsMainTab), &Field::changed, [&] { ++pageChanges; });
    load();

    EXPECT_EQ(host.calls.size(), 4);
    EXPECT_EQ(pageChanges, 1) << "turned once, then already on page 2";
    EXPECT_EQ(profile.field(F::cboStartingMap).items().size(), 15);
}

TEST_F(MainFormLoadTest, AnyOtherErrorIsLoggedWithTheLoadsTagAndEndsTheLoad)
{
    writeFile(t.baseFolder() + QStringLiteral("/server.cfg"), "x");
    host.failures.insert(QStringLiteral("size"), 13);
    load();

    EXPECT_EQ(host.calls, (QStringList{QStringLiteral("columns"), QStringLiteral("size")}));
    EXPECT_FALSE(profile.isLoading());
    EXPECT_TRUE(t.app->helpFile.isEmpty());
    EXPECT_TRUE(configItems(profile, 0).isEmpty());
    EXPECT_TRUE(profile.field(F::cboStartingMap).items().isEmpty());
    EXPECT_EQ(profile.value(F::vsMainTab), 0);

    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(
        isBox(t.prompts.last(),
              {QStringLiteral("arena-steward Error"), Icon::Critical,
               QStringLiteral("Following error occurred in this application:\r\n\r\nType mismatch\r\nNumber: 13\r\n"
                              "Source: arena-steward::frmMain.Form_Load(Sub) (frmMain)")}));
    EXPECT_EQ(crlfLines(t.programFolder() + QStringLiteral("/arena-steward.log")),
              (QStringList{QString(78, QLatin1Char('-')), QStringLiteral("---06/13/2002 21:05:33---"),
                           QStringLiteral("Error 13 in arena-steward::frmMain.Form_Load(Sub) (frmMain):"),
                           QStringLiteral("Type mismatch")}));
}

TEST_F(MainFormLoadTest, AnAutoCycleWithAnEmptyRotationStartsOnTheListsEntryOne)
{
    load();
    profile.setValue(F::chkMapAutoCycle, 1);

    SessionFacts facts;
    facts.clock = &t.clock;
    SessionValues session;
    LineList out;
    writeSessionOpening(profile, facts, session, out);
    EXPECT_TRUE(out.lines.contains(QStringLiteral("map ctf_imperial")))
        << out.lines.join(QLatin1Char('|')).toStdString();
    EXPECT_FALSE(out.lines.contains(QStringLiteral("map "))) << "never a map line without a name";
}
