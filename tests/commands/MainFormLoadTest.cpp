// The main window's load: its steps in order, the lists it fills and how it passes over or reports an error.
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
using namespace Qt::StringLiterals;

namespace {

QStringList configItems(const ServerProfile& profile, int i) { return profile.field(F::cboConfig(i)).items(); }

QStringList stockMaps()
{
    QStringList maps;
    for (const char* m : kStockStartingMaps)
        maps << QString::fromLatin1(m);
    return maps;
}

const QStringList kSteps{u"columns"_s, u"size"_s, u"center"_s, u"disableClose"_s};

struct Form {
    void load() { MainFormLoad(*t.app, profile, host); }
    TestApp t;
    ServerProfile profile;
    FakeFormLoadHost host;
};

struct MainFormLoadTest : ::testing::Test, Form {};

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
    EXPECT_EQ(t.app->helpFile, t.programFolder() + u"/arena-steward-guide.html"_s);
    EXPECT_EQ(profile.field(F::cboStartingMap).items(), stockMaps());
    EXPECT_EQ(profile.text(F::cboStartingMap), u"ctf_imperial"_s) << "entry 1 stands selected";
    EXPECT_EQ(profile.value(F::vsMainTab), 0);
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(MainFormLoadTest, ConfigListsHoldTheCfgFilesOfTheBaseFolderOrNoneWithoutIt)
{
    const QString base = t.baseFolder() + u'/';
    for (const char* name :
         {"server.cfg", "FFA.CFG", "jediMaps.cfg", "readme.txt", "autoexeccfg", "cfg.txt", ".hidden.cfg", "ctf.Cfg"})
        writeFile(base + QString::fromLatin1(name), "x");
    QDir().mkpath(base + u"maps.cfg"_s);
    load();
    // Every name whose lower case ends in "cfg", under its own spelling, by name.
    const QStringList expected{u"autoexeccfg"_s, u"ctf.Cfg"_s, u"FFA.CFG"_s, u"jediMaps.cfg"_s, u"server.cfg"_s};
    for (int i = 0; i <= 3; ++i)
        EXPECT_EQ(configItems(profile, i), expected) << i;
    for (const QString& folder : {u"/nonexistent/jk2/"_s, QString()}) {
        SCOPED_TRACE(folder.toStdString());
        Form fresh;
        fresh.t.app->gameFolder = folder;
        fresh.load();
        for (int i = 0; i <= 3; ++i)
            EXPECT_TRUE(configItems(fresh.profile, i).isEmpty());
        EXPECT_EQ(fresh.profile.field(F::cboStartingMap).items().size(), 15);
        EXPECT_EQ(fresh.host.calls.size(), 4);
    }
}

TEST_F(MainFormLoadTest, AnIndexOutOfRangeTurnsToPageTwoAndTheLoadGoesOn)
{
    writeFile(t.baseFolder() + u"/server.cfg"_s, "x");
    profile.setValue(F::vsMainTab, 4);
    host.failures.insert(u"columns"_s, 35600);
    load();
    EXPECT_EQ(profile.value(F::vsMainTab), 2);
    EXPECT_EQ(host.calls, kSteps);
    EXPECT_EQ(host.height, 7490);
    EXPECT_FALSE(t.app->helpFile.isEmpty());
    EXPECT_EQ(configItems(profile, 3), QStringList{u"server.cfg"_s});
    EXPECT_FALSE(profile.isLoading());
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_TRUE(t.app->errorLog().lastFile().isEmpty()) << "nothing logged";
    // Every out-of-range step is passed over.
    Form all;
    for (const QString& call : kSteps)
        all.host.failures.insert(call, 35600);
    int pageChanges = 0;
    QObject::connect(&all.profile.field(F::vsMainTab), &Field::changed, [&] { ++pageChanges; });
    all.load();
    EXPECT_EQ(all.host.calls.size(), 4);
    EXPECT_EQ(pageChanges, 1) << "turned once, then already on page 2";
    EXPECT_EQ(all.profile.field(F::cboStartingMap).items().size(), 15);
}

TEST_F(MainFormLoadTest, AnyOtherErrorIsLoggedWithTheLoadsTagAndEndsTheLoad)
{
    writeFile(t.baseFolder() + u"/server.cfg"_s, "x");
    host.failures.insert(u"size"_s, 13);
    load();
    EXPECT_EQ(host.calls, (QStringList{u"columns"_s, u"size"_s}));
    EXPECT_FALSE(profile.isLoading());
    EXPECT_TRUE(t.app->helpFile.isEmpty());
    EXPECT_TRUE(configItems(profile, 0).isEmpty());
    EXPECT_TRUE(profile.field(F::cboStartingMap).items().isEmpty());
    EXPECT_EQ(profile.value(F::vsMainTab), 0);
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(
        isBox(t.prompts.last(),
              {u"arena-steward Error"_s, Icon::Critical,
               QStringLiteral("Following error occurred in this application:\r\n\r\nType mismatch\r\nNumber: 13\r\n"
                              "Source: arena-steward::frmMain.Form_Load(Sub) (frmMain)")}));
    EXPECT_EQ(crlfLines(t.programFolder() + u"/arena-steward.log"_s),
              (QStringList{QString(78, u'-'), u"---06/13/2002 21:05:33---"_s,
                           u"Error 13 in arena-steward::frmMain.Form_Load(Sub) (frmMain):"_s, u"Type mismatch"_s}));
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
    EXPECT_TRUE(out.lines.contains(u"map ctf_imperial"_s)) << out.lines.join(u'|').toStdString();
    EXPECT_FALSE(out.lines.contains(u"map "_s)) << "never a map line without a name";
}
