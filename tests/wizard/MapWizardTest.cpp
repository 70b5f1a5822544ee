// The map wizard's flow on its three pages with the windows recorded, and the advanced
// cycle it saves: the main file and its companions against expected files.
#include "commands/MapCycleCommands.h"
#include "maps/MapRotation.h"
#include "model/FieldNames.h"
#include "model/ServerProfile.h"
#include "support/ProductText.h"
#include "testkit/BoxExpect.h"
#include "testkit/Golden.h"
#include "testkit/TestApp.h"
#include "wizard/AdvancedCycleSave.h"
#include "wizard/AdvancedCycleWriter.h"
#include "wizard/MapWizard.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

class RecordingWizardWindows : public WizardWindows {
public:
    void hideMainWindow() override { calls << u"hideMain"_s; }
    void showMainWindow() override { calls << u"showMain"_s; }
    void showPage(int page) override { calls << u"show%1"_s.arg(page); }
    void hidePage(int page) override { calls << u"hide%1"_s.arg(page); }
    void unloadPage(int page) override { calls << u"unload%1"_s.arg(page); }
    QStringList calls;
};

class MapWizardFlow : public ::testing::Test {
protected:
    MapWizardFlow() : wizard(*t.app, windows)
    {
        for (const char* map : {"ffa_bespin", "duel_bay", "ffa_yavin"})
            profile.field(F::lsvMapRotation).addRow(rotationRow(QString::fromLatin1(map), u"Long"_s, u"ffa"_s));
        profile.setValue(F::optDefaultGameType(4), 1);
        rotation = profile.field(F::lsvMapRotation).rows();
    }
    Field& page(const char* name, int index = -1) { return wizard.fields().field(QString::fromLatin1(name), index); }
    const WizardMapRecord& record(int i) const { return wizard.state().records.at(i); }
    /// The windows' calls since the last look, blank-separated.
    QString calls()
    {
        const QString seen = windows.calls.join(u' ');
        windows.calls.clear();
        return seen;
    }
    /// Pages 1 to 3 for the row, with page 2's and page 3's values as they stand.
    void configure(int row)
    {
        wizard.grdMapList_Click(row);
        wizard.cmdNext_Click(1);
        wizard.cmdNext_Click(2);
    }
    Box question(const QString& text) const { return {kProductTitle, Icon::Question, text, Buttons::YesNo}; }
    TestApp t;
    ServerProfile profile;
    RecordingWizardWindows windows;
    MapWizard wizard;
    QList<QStringList> rotation;
};

TEST_F(MapWizardFlow, StartHidesTheMainWindowAndFillsPageOne)
{
    profile.setText(F::txtServerConfig(0), u"Welcome"_s);
    wizard.ID_MapWizard(profile);
    EXPECT_EQ(calls(), u"hideMain show1"_s);
    EXPECT_TRUE(wizard.pageLoaded(1));
    EXPECT_EQ(page("txtMOTD").text(), u"Welcome"_s);
    const Field& grid = page("grdMapList");
    ASSERT_EQ(grid.count(), 3);
    EXPECT_EQ(grid.rows()[1], (QStringList{u"duel_bay"_s, u"1"_s, QString(), QString(), u"imgMapNotSelected"_s}));
    EXPECT_TRUE(grid.tag().isEmpty());
    EXPECT_FALSE(page("cmdNext").isEnabled()) << "Next waits for a click on a row";
    EXPECT_EQ(record(2).GameType, u"g_gametype 5"_s);
    // An empty rotation shows nothing but the message.
    TestApp other;
    RecordingWizardWindows none;
    MapWizard empty(*other.app, none);
    profile.field(F::lsvMapRotation).setRows({});
    empty.ID_MapWizard(profile);
    EXPECT_TRUE(none.calls.isEmpty());
    EXPECT_EQ(other.prompts.texts(),
              QStringList{u"There are no maps in the list, please select at least one map         "_s});
}

TEST_F(MapWizardFlow, AClickMarksOneRowBackKeepsConfiguredAndASortedGridFindsItsRecord)
{
    wizard.ID_MapWizard(profile);
    Field& grid = page("grdMapList");
    wizard.grdMapList_Click(0);
    wizard.grdMapList_Click(2);
    EXPECT_EQ(rotationMark(grid, 0), u"imgMapNotSelected"_s);
    EXPECT_EQ(rotationMark(grid, 2), u"imgSelectedMap"_s);
    EXPECT_EQ(grid.tag(), u"2"_s);
    EXPECT_TRUE(page("cmdNext").isEnabled());
    configure(2);
    wizard.cmdNextMap_Click();
    EXPECT_TRUE(grid.tag().isEmpty());
    EXPECT_EQ(rotationMark(grid, 2), u"imgMapNotSelected"_s) << "every row loses its mark";
    EXPECT_TRUE(page("cmdNext").isEnabled()) << "and Next stays enabled";
    wizard.grdMapList_Click(0);
    wizard.cmdNext_Click(1);
    wizard.cmdBack_Click(2);
    EXPECT_TRUE(record(0).Configured) << "Back doesn't undo Configured";
    EXPECT_TRUE(record(0).Gravity.isEmpty());
    wizard.runPopupTool(u"ID_SortDescending"_s);
    EXPECT_EQ(page("grdMapList").cell(0, 0), u"ffa_yavin"_s);
    wizard.grdMapList_Click(0);
    t.prompts.answerNext(Answer::Yes); // configured above
    wizard.cmdNext_Click(1);
    EXPECT_EQ(wizard.state().current, 2) << "the row's number leads to ffa_yavin's record";
}

TEST_F(MapWizardFlow, PageTwoShowsSaberOnlyForDuelAndSumsTheFlags)
{
    wizard.ID_MapWizard(profile);
    wizard.grdMapList_Click(1);
    wizard.cmdNext_Click(1);
    EXPECT_EQ(calls(), u"hideMain show1 hide1 show2"_s);
    EXPECT_TRUE(record(1).Configured);
    Field& saberOnly = page("chkWizardDuelNoWeapons");
    EXPECT_FALSE(saberOnly.isVisible());
    for (int index : {0, 1, 2, 3, 4, 5, 6, 3}) {
        page("optDefaultGameType", index).setValue(1);
        wizard.optDefaultGameType_Click(index);
        EXPECT_EQ(saberOnly.isVisible(), index == 3) << index;
    }
    saberOnly.setValue(1);
    page("chkDMFlags", 0).setValue(1);
    page("chkDMFlags", 2).setValue(1);
    wizard.cmdNext_Click(2);
    EXPECT_EQ(record(1).GameType, u"g_gametype 3"_s);
    EXPECT_TRUE(record(1).DuelNoWeapons);
    EXPECT_EQ(record(1).DmFlags, u"dmflags 40"_s);
    EXPECT_EQ(record(0).GameType, u"g_gametype 5"_s) << "a map left out keeps the start's game type";
}

TEST_F(MapWizardFlow, PageThreeStoresItsFieldsAsTheRecordFormsAndAConfiguredMapAsksBeforeItIsOpenedAgain)
{
    wizard.ID_MapWizard(profile);
    configure(0);
    page("txtSpeed", 1).setText(u"300"_s);
    page("txtGameLimits", 1).setText(u"15"_s);
    page("txtWarmup", 1).setText(u"5"_s);
    page("chkQuake3Specific", 11).setValue(1);
    page("chkQuake3Specific", 0).setValue(1);
    wizard.cmdNextMap_Click();
    const WizardMapRecord& r = record(0); // page 2 starts on Free For All
    EXPECT_EQ(QStringList({r.TimeLimit, r.Warmup, r.Gravity, r.FriendlyFire, r.Spare, r.GameType}),
              QStringList({u"timelimit 15"_s, u"g_warmup 5"_s, u"g_gravity 300"_s, u"g_friendlyfire 0"_s, QString(),
                           u"g_gametype 0"_s}));
    EXPECT_TRUE(r.ForceDisabled);
    configure(1);
    wizard.cmdNextMap_Click();
    EXPECT_EQ(record(1).Gravity, u"g_gravity 300"_s) << "the next map starts with the last one's values";
    // A configured map asks before it is opened again.
    page("txtSpeed", 1).setText(u"100"_s);
    calls();
    wizard.grdMapList_Click(0);
    t.prompts.answerNext(Answer::No);
    wizard.cmdNext_Click(1);
    EXPECT_TRUE(isBox(t.prompts.last(), question(u"This map has already been selected, continue?         \r\n"
                                                 "WARNING - All previous settings will be removed         "_s)));
    EXPECT_EQ(calls(), QString()) << "No stays on page 1";
    EXPECT_EQ(rotationMark(page("grdMapList"), 0), u"imgMapNotSelected"_s);
    EXPECT_EQ(record(0).Gravity, u"g_gravity 300"_s) << "its settings stay in force";
    t.prompts.answerNext(Answer::Yes);
    wizard.cmdNext_Click(1);
    EXPECT_EQ(calls(), u"hide1 show2"_s);
}

TEST_F(MapWizardFlow, SetStartingMapMarksNothingAndFinishHandsTheCycleToTheMainWindow)
{
    profile.setStartingMap(u"ffa_yavin"_s);
    wizard.ID_MapWizard(profile);
    EXPECT_TRUE(wizard.state().startingMap.isEmpty());
    Field& grid = page("grdMapList");
    grid.setCurrent(1);
    wizard.runPopupTool(u"ID_SetStartingMap"_s);
    EXPECT_EQ(wizard.state().startingMap, u"duel_bay"_s);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Information,
                                         u"duel_bay has been set as the starting map         "_s, Buttons::Ok}));
    EXPECT_EQ(rotationMark(grid, 1), u"imgMapNotSelected"_s);
    EXPECT_TRUE(wizard.popupOpens());
    configure(1);
    calls();
    const QString cycle = t.baseFolder() + u"/cycle.cfg"_s;
    t.prompts.chooseFile(cycle);
    wizard.cmdFinish_Click();
    ASSERT_EQ(t.prompts.dialogs.size(), 1u) << "only the save dialog: the saved cycle's click stands aside";
    EXPECT_EQ(t.prompts.dialogs[0].state.DialogTitle, u"Save Advanced Map Cycle"_s);
    EXPECT_EQ(t.prompts.dialogs[0].state.InitialDir, t.gameFolder() + u"base"_s);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {u"Advanced Map Cycle"_s, Icon::Information, u"File has been Saved         "_s, Buttons::Ok}));
    EXPECT_EQ(profile.text(F::txtServerINI), cycle);
    EXPECT_EQ(profile.value(F::chkUseINI), 1);
    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 0);
    EXPECT_TRUE(calls().endsWith(u"unload1 unload2 unload3 showMain"_s));
    EXPECT_TRUE(QFile::exists(t.baseFolder() + u"/1cycle.cfg"_s));
    EXPECT_FALSE(wizard.pageLoaded(1));
}

TEST_F(MapWizardFlow, FinishWithoutANameOrInAnUnwritableFolderLosesNothing)
{
    profile.setText(F::txtServerINI, QString());
    wizard.ID_MapWizard(profile);
    configure(0);
    calls();
    t.prompts.cancelNextDialog();
    wizard.cmdFinish_Click();
    EXPECT_EQ(calls(), QString()) << "no name stays on page 3";
    EXPECT_TRUE(wizard.pageLoaded(3));
    EXPECT_TRUE(t.prompts.shown.empty());
    // A folder below a plain file can never be written, whoever runs the test.
    const QString blocked = t.root() + u"/blocked"_s;
    writeFile(blocked, "not a folder");
    t.prompts.chooseFile(blocked + u"/cycle.cfg"_s);
    wizard.cmdFinish_Click();
    ASSERT_EQ(t.prompts.shown.size(), 1u) << t.prompts.texts().join(u'|').toStdString();
    EXPECT_TRUE(
        isBox(t.prompts.last(), {u"Error saving file"_s, Icon::Exclamation, blocked + u"/cycle.cfg"_s, Buttons::Ok}));
    EXPECT_TRUE(profile.text(F::txtServerINI).isEmpty());
    EXPECT_EQ(profile.value(F::chkUseINI), 0);
    EXPECT_EQ(profile.field(F::lsvMapRotation).rows(), rotation) << "the rotation is as it was";
    EXPECT_TRUE(calls().endsWith(u"showMain"_s)) << "the wizard closes all the same";
    EXPECT_EQ(fileBytes(blocked), QByteArray("not a folder"));
}

TEST_F(MapWizardFlow, CancelAsksAndOnNoKeepsThePages)
{
    wizard.ID_MapWizard(profile);
    wizard.grdMapList_Click(0);
    wizard.cmdNext_Click(1);
    calls();
    t.prompts.answerNext(Answer::No);
    wizard.cmdCancel_Click();
    EXPECT_TRUE(isBox(t.prompts.last(), question(u"Do you want to cancel the wizard?         "_s)));
    EXPECT_EQ(calls(), QString());
    EXPECT_TRUE(wizard.pageLoaded(2));
    t.prompts.answerNext(Answer::Yes);
    wizard.cmdCancel_Click();
    EXPECT_EQ(calls(), u"unload1 unload2 showMain"_s);
    EXPECT_EQ(profile.field(F::lsvMapRotation).rows(), rotation);
    EXPECT_TRUE(record(0).Configured) << "the lists stay until the next start";
    wizard.ID_MapWizard(profile);
    EXPECT_FALSE(record(0).Configured);
    EXPECT_FALSE(page("cmdNext").isEnabled()) << "a page loads again with its defaults";
}

const QString kTitle = u"cycle.cfg"_s;

WizardMapRecord unconfigured(const char* map, const QString& gameType = u"g_gametype 0"_s)
{
    WizardMapRecord r;
    r.MapName = QString::fromLatin1(map);
    r.GameType = gameType;
    return r;
}

/// A map as page 3 stores it with the pages' defaults, gravity and time limit given.
WizardMapRecord configured(const char* map, const QString& gameType, int gravity = 800, int timeLimit = 20)
{
    WizardMapRecord r = unconfigured(map, gameType);
    r.Configured = true;
    r.TimeLimit = u"timelimit %1"_s.arg(timeLimit);
    r.Gravity = u"g_gravity %1"_s.arg(gravity);
    using R = WizardMapRecord;
    const QStringList texts = u"capturelimit 0|duel_fraglimit 0|fraglimit 0|g_friendlyfire 0|g_warmup 60|g_speed 250|"
                              "dmflags 8|g_privateDuel 1|g_saberLocking 0|g_friendlySaber 0"_s.split(u'|');
    QString R::*const fields[] = {&R::CaptureLimit, &R::DuelFragLimit, &R::FragLimit, &R::FriendlyFire,
                                  &R::Warmup,       &R::RunSpeed,      &R::DmFlags,   &R::PrivateDuel,
                                  &R::SaberLock,    &R::FriendlySaber};
    for (int i = 0; i < texts.size(); ++i)
        r.*fields[i] = texts[i];
    return r;
}

QStringList cfgFiles(const QString& folder) { return QDir(folder).entryList({u"*.cfg"_s}, QDir::Files, QDir::Name); }

TEST(AdvancedCycle, WritesTheMainFileAndTheCompanionsByteForByte)
{
    const QString duel = u"g_gametype 3"_s;
    const struct {
        const char* expected; // a folder of expected files: the main file and its companions
        QList<WizardMapRecord> records;
        QString startingMap;
    } cases[] = {
        // One configured map points at itself, with the blank of the last line.
        {"one", {configured("duel_bay", duel)}, u"duel_bay"_s},
        {"left-out", {configured("duel_bay", duel), unconfigured("ffa_yavin")}, u"duel_bay"_s},
        // No starting map: an empty first line, the last map dropped.
        {"no-start",
         {unconfigured("ffa_bespin"), configured("ffa_raven", u"g_gametype 0"_s, 350, 15), unconfigured("ffa_yavin")},
         QString()},
        // The starting map moves to the front and the others keep their order.
        {"start-first", {unconfigured("a"), unconfigured("b"), configured("c", u"g_gametype 7"_s)}, u"c"_s},
        // Two configured maps of the same name get their own companions.
        {"twins", {configured("duel_pit", duel, 800, 10), configured("duel_pit", duel, 400, 30)}, u"duel_pit"_s}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.expected);
        TestApp t;
        WizardState state;
        state.records = c.records;
        state.upper = static_cast<int>(c.records.size()) - 1;
        state.startingMap = c.startingMap;
        ASSERT_TRUE(saveAdvancedMapCycle(*t.app, state, t.baseFolder() + u'/' + kTitle, kTitle));
        EXPECT_TRUE(t.prompts.shown.empty());
        const QString expected = u"wizard/cycle/"_s + QLatin1String(c.expected) + u'/';
        const QStringList files = cfgFiles(goldenPath(expected));
        EXPECT_EQ(cfgFiles(t.baseFolder()), files);
        for (const QString& file : files)
            expectGolden(t.baseFolder() + u'/' + file, expected + file);
    }
}

TEST(AdvancedCycle, SaberOnlyAndForceCountOnlyWhereTheyApply)
{
    const struct {
        const char* name;
        QString gameType;
        bool saberOnly, forceDisabled;
        const char *duelWeapons, *force;
    } cases[] = {{"Duel with Saber Only", u"g_gametype 3"_s, true, false, "65531", "0"},
                 {"Free For All with the box ticked", u"g_gametype 0"_s, true, false, "0", "0"},
                 {"Duel without the box", u"g_gametype 3"_s, false, true, "0", "262143"},
                 {"a game type with a trailing blank is not Duel", u"g_gametype 3 "_s, true, false, "0", "0"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        WizardMapRecord r = configured("duel_bay", c.gameType);
        r.DuelNoWeapons = c.saberOnly;
        r.ForceDisabled = c.forceDisabled;
        const QStringList lines = companionLines(r);
        ASSERT_EQ(lines.size(), 12);
        EXPECT_EQ(lines[10], u"set g_duelweapondisable "_s + QLatin1String(c.duelWeapons));
        EXPECT_EQ(lines[11], u"set g_forcePowerDisable "_s + QLatin1String(c.force));
        EXPECT_FALSE(lines.join(u'\n').contains(u"dmflags"_s)) << "the DM flags go nowhere";
    }
}

TEST(AdvancedCycle, TheLoaderReadsTheStartingMapBackAndAFailedSaveSaysWhichFile)
{
    TestApp t;
    WizardState state;
    state.records = {unconfigured("ffa_yavin"), configured("duel_bay", u"g_gametype 3"_s)};
    state.startingMap = u"duel_bay"_s;
    const QString folder = t.baseFolder() + u'/';
    ASSERT_TRUE(saveAdvancedMapCycle(*t.app, state, folder + kTitle, kTitle));
    ServerProfile profile;
    EXPECT_EQ(gbln_LoadMapCycle(*t.app, profile, folder + kTitle), u"duel_bay"_s);
    EXPECT_TRUE(t.prompts.shown.empty());
    state.records.removeFirst();
    const QString missing = t.root() + u"/no/such/folder/cycle.cfg"_s;
    EXPECT_FALSE(saveAdvancedMapCycle(*t.app, state, missing, kTitle));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {u"Error saving file"_s, Icon::Exclamation, missing, Buttons::Ok}));
    // A companion that can't be written: the main file keeps what was written before it.
    QFile::remove(folder + u"1cycle.cfg"_s);
    QDir().mkpath(folder + u"1cycle.cfg"_s);
    EXPECT_FALSE(saveAdvancedMapCycle(*t.app, state, folder + kTitle, kTitle));
    EXPECT_TRUE(
        isBox(t.prompts.last(), {u"Error saving file"_s, Icon::Exclamation, folder + u"1cycle.cfg"_s, Buttons::Ok}));
    EXPECT_EQ(fileBytes(folder + kTitle),
              "set m1 \"set g_gametype 3; map duel_bay;set g_gravity 800; exec 1cycle.cfg; set nextmap vstr m1\"\r\n");
    EXPECT_EQ(cfgFiles(folder), QStringList{kTitle}) << "nothing else is written";
}

} // namespace
