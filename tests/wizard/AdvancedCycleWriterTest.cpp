#include "commands/MapCycleCommands.h"
#include "generate/MapCycleWriter.h"
#include "model/ServerProfile.h"
#include "support/ProductText.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"
#include "wizard/AdvancedCycleSave.h"
#include "wizard/AdvancedCycleWriter.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

const QString kTitle = u"cycle.cfg"_s;

WizardMapRecord unconfigured(const QString& map, const QString& gameType = u"g_gametype 0"_s)
{
    WizardMapRecord r;
    r.MapName = map;
    r.GameType = gameType;
    return r;
}

/// A map as page 3 stores it with the pages' defaults, gravity and time limit given.
WizardMapRecord configured(const QString& map, const QString& gameType, const QString& gravity = u"800"_s,
                           const QString& timeLimit = u"20"_s)
{
    WizardMapRecord r = unconfigured(map, gameType);
    r.Configured = true;
    r.TimeLimit = u"timelimit "_s + timeLimit;
    r.CaptureLimit = u"capturelimit 0"_s;
    r.DuelFragLimit = u"duel_fraglimit 0"_s;
    r.FragLimit = u"fraglimit 0"_s;
    r.FriendlyFire = u"g_friendlyfire 0"_s;
    r.Warmup = u"g_warmup 60"_s;
    r.Gravity = u"g_gravity "_s + gravity;
    r.RunSpeed = u"g_speed 250"_s;
    r.DmFlags = u"dmflags 8"_s;
    r.PrivateDuel = u"g_privateDuel 1"_s;
    r.SaberLock = u"g_saberLocking 0"_s;
    r.FriendlySaber = u"g_friendlySaber 0"_s;
    return r;
}

QStringList companion(const QString& timeLimit = u"20"_s, const QString& duelWeapons = u"0"_s,
                      const QString& force = u"0"_s)
{
    return {u"set g_warmup 60"_s,
            u"set timelimit "_s + timeLimit,
            u"set fraglimit 0"_s,
            u"set capturelimit 0"_s,
            u"set duel_fraglimit 0"_s,
            u"set g_speed 250"_s,
            u"set g_friendlyfire 0"_s,
            u"set g_privateDuel 1"_s,
            u"set g_friendlySaber 0"_s,
            u"set g_saberLocking 0"_s,
            u"set g_duelweapondisable "_s + duelWeapons,
            u"set g_forcePowerDisable "_s + force};
}

QStringList tail(const QString& startingMap)
{
    return {QString(), u"vstr m1"_s, u"// ***    DO NOT DELETE MAP NAME ***"_s,
            u"// ***      REQ BY ARENA STEWARD   ***"_s, u"//"_s + startingMap};
}

struct CycleCase {
    const char* name;
    QList<WizardMapRecord> records;
    QString startingMap;
    QStringList main;
    /// Companion file name and its lines.
    QList<QPair<QString, QStringList>> companions;
};

class AdvancedCycleTest : public ::testing::Test {
protected:
    QString folder() const { return t.baseFolder() + u'/'; }
    QStringList cfgFiles() const { return QDir(t.baseFolder()).entryList({u"*.cfg"_s}, QDir::Files, QDir::Name); }
    TestApp t;
};

} // namespace

TEST_F(AdvancedCycleTest, WritesTheMainFileAndTheCompanionsByteForByte)
{
    const CycleCase cases[] = {
        {"one configured map points at itself, with the blank of the last line",
         {configured(u"duel_bay"_s, u"g_gametype 3"_s)},
         u"duel_bay"_s,
         QStringList{
             u"set m1 \"set g_gametype 3; map duel_bay;set g_gravity 800; exec 1cycle.cfg; set nextmap vstr m1\""_s} +
             tail(u"duel_bay"_s),
         {{u"1cycle.cfg"_s, companion()}}},
        {"first configured, second left out",
         {configured(u"duel_bay"_s, u"g_gametype 3"_s), unconfigured(u"ffa_yavin"_s)},
         u"duel_bay"_s,
         QStringList{
             u"set m1 \"set g_gametype 3;map duel_bay;set g_gravity 800; exec 1cycle.cfg; set nextmap vstr m2\""_s,
             u"set m2 \"set g_gametype 0;map ffa_yavin; set nextmap vstr m1\""_s} +
             tail(u"duel_bay"_s),
         {{u"1cycle.cfg"_s, companion()}}},
        {"three maps, the second configured, no starting map: an empty first line, the last map dropped",
         {unconfigured(u"ffa_bespin"_s), configured(u"ffa_raven"_s, u"g_gametype 0"_s, u"350"_s, u"15"_s),
          unconfigured(u"ffa_yavin"_s)},
         QString(),
         QStringList{u"set m1 \"set ;map ; set nextmap vstr m2\""_s,
                     u"set m2 \"set g_gametype 0;map ffa_bespin; set nextmap vstr m3\""_s,
                     u"set m3 \"set g_gametype 0; map ffa_raven;set g_gravity 350; exec 3cycle.cfg; set "
                     "nextmap vstr m1\""_s} +
             tail(QString()),
         {{u"3cycle.cfg"_s, companion(u"15"_s)}}},
        {"the starting map moves to the front and the others keep their order",
         {unconfigured(u"a"_s), unconfigured(u"b"_s), configured(u"c"_s, u"g_gametype 7"_s)},
         u"c"_s,
         QStringList{u"set m1 \"set g_gametype 7;map c;set g_gravity 800; exec 1cycle.cfg; set nextmap vstr m2\""_s,
                     u"set m2 \"set g_gametype 0;map a; set nextmap vstr m3\""_s,
                     u"set m3 \"set g_gametype 0;map b; set nextmap vstr m1\""_s} +
             tail(u"c"_s),
         {{u"1cycle.cfg"_s, companion()}}},
        {"two configured maps of the same name get their own companions",
         {configured(u"duel_pit"_s, u"g_gametype 3"_s, u"800"_s, u"10"_s),
          configured(u"duel_pit"_s, u"g_gametype 3"_s, u"400"_s, u"30"_s)},
         u"duel_pit"_s,
         QStringList{
             u"set m1 \"set g_gametype 3;map duel_pit;set g_gravity 800; exec 1cycle.cfg; set nextmap vstr m2\""_s,
             u"set m2 \"set g_gametype 3; map duel_pit;set g_gravity 400; exec 2cycle.cfg; set nextmap vstr m1\""_s} +
             tail(u"duel_pit"_s),
         {{u"1cycle.cfg"_s, companion(u"10"_s)}, {u"2cycle.cfg"_s, companion(u"30"_s)}}},
    };
    for (const CycleCase& c : cases) {
        SCOPED_TRACE(c.name);
        TestApp app;
        WizardState state;
        state.records = c.records;
        state.upper = static_cast<int>(c.records.size()) - 1;
        state.startingMap = c.startingMap;
        const QString path = app.baseFolder() + u'/' + kTitle;
        ASSERT_TRUE(saveAdvancedMapCycle(*app.app, state, path, kTitle));
        EXPECT_TRUE(app.prompts.shown.empty());
        EXPECT_EQ(fileBytes(path), crlfText(c.main));
        QStringList expectedFiles{kTitle};
        for (const auto& [name, lines] : c.companions) {
            EXPECT_EQ(fileBytes(app.baseFolder() + u'/' + name), crlfText(lines)) << name.toStdString();
            expectedFiles << name;
        }
        expectedFiles.sort();
        EXPECT_EQ(QDir(app.baseFolder()).entryList({u"*.cfg"_s}, QDir::Files, QDir::Name), expectedFiles);
    }
}

TEST(AdvancedCycleLines, SaberOnlyAndForceCountOnlyWhereTheyApply)
{
    struct Case {
        const char* name;
        QString gameType;
        bool saberOnly;
        bool forceDisabled;
        QString duelLine;
        QString forceLine;
    } cases[] = {
        {"Duel with Saber Only", u"g_gametype 3"_s, true, false, u"set g_duelweapondisable 65531"_s,
         u"set g_forcePowerDisable 0"_s},
        {"Free For All with the box ticked", u"g_gametype 0"_s, true, false, u"set g_duelweapondisable 0"_s,
         u"set g_forcePowerDisable 0"_s},
        {"Duel without the box", u"g_gametype 3"_s, false, true, u"set g_duelweapondisable 0"_s,
         u"set g_forcePowerDisable 262143"_s},
        {"a game type with a trailing blank is not Duel", u"g_gametype 3 "_s, true, false,
         u"set g_duelweapondisable 0"_s, u"set g_forcePowerDisable 0"_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        WizardMapRecord r = configured(u"duel_bay"_s, c.gameType);
        r.DuelNoWeapons = c.saberOnly;
        r.ForceDisabled = c.forceDisabled;
        const QStringList lines = companionLines(r);
        ASSERT_EQ(lines.size(), 12);
        EXPECT_EQ(lines[10], c.duelLine);
        EXPECT_EQ(lines[11], c.forceLine);
        EXPECT_FALSE(lines.join(u'\n').contains(u"dmflags"_s)) << "the DM flags go nowhere";
    }
}

TEST(AdvancedCycleLines, BuildCycleRecordsMovesTheFirstMatchOnlyAndCarriesEveryField)
{
    WizardMapRecord twin = configured(u"b"_s, u"g_gametype 3"_s, u"100"_s);
    const QList<WizardMapRecord> records{unconfigured(u"a"_s), twin, unconfigured(u"b"_s)};
    const QList<WizardMapRecord> ordered = BuildCycleRecords(records, u"b"_s);
    ASSERT_EQ(ordered.size(), 3);
    EXPECT_TRUE(ordered[0].Configured);
    EXPECT_EQ(ordered[0].Gravity, u"g_gravity 100"_s);
    EXPECT_EQ(ordered[1].MapName, u"a"_s);
    EXPECT_FALSE(ordered[2].Configured);

    const QList<WizardMapRecord> unmatched = BuildCycleRecords(records, u"zzz"_s);
    ASSERT_EQ(unmatched.size(), 4) << "an empty record in front, all others behind";
    EXPECT_TRUE(unmatched[0].MapName.isEmpty());
    EXPECT_EQ(unmatched[3].MapName, u"b"_s);
}

TEST_F(AdvancedCycleTest, TheLoaderReadsTheStartingMapBackFromTheMarkerLine)
{
    WizardState state;
    state.records = {unconfigured(u"ffa_yavin"_s), configured(u"duel_bay"_s, u"g_gametype 3"_s)};
    state.startingMap = u"duel_bay"_s;
    const QString path = folder() + kTitle;
    ASSERT_TRUE(saveAdvancedMapCycle(*t.app, state, path, kTitle));
    ServerProfile profile;
    EXPECT_EQ(gbln_LoadMapCycle(*t.app, profile, path), u"duel_bay"_s);
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(AdvancedCycleTest, AFolderThatCantBeWrittenGivesTheErrorBoxAndFalse)
{
    WizardState state;
    state.records = {configured(u"duel_bay"_s, u"g_gametype 3"_s)};
    state.startingMap = u"duel_bay"_s;

    const QString missing = t.root() + u"/no/such/folder/cycle.cfg"_s;
    EXPECT_FALSE(saveAdvancedMapCycle(*t.app, state, missing, kTitle));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {u"Error saving file"_s, Icon::Exclamation, missing, Buttons::Ok}))
        << "the failure's source: the file";

    // A companion that can't be written: the main file keeps what was written before it.
    QDir().mkpath(folder() + u"1cycle.cfg"_s);
    EXPECT_FALSE(saveAdvancedMapCycle(*t.app, state, folder() + kTitle, kTitle));
    EXPECT_TRUE(
        isBox(t.prompts.last(), {u"Error saving file"_s, Icon::Exclamation, folder() + u"1cycle.cfg"_s, Buttons::Ok}));
    EXPECT_EQ(
        fileBytes(folder() + kTitle),
        crlfText(
            {u"set m1 \"set g_gametype 3; map duel_bay;set g_gravity 800; exec 1cycle.cfg; set nextmap vstr m1\""_s}));
    EXPECT_EQ(cfgFiles(), QStringList{kTitle}) << "nothing else is written";
}
