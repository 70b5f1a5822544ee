// The advanced map cycle: the main file and its companions against expected files, the
// companion's lines, the order of the records, the loader's marker line and a failed save.
#include "commands/MapCycleCommands.h"
#include "model/ServerProfile.h"
#include "testkit/BoxExpect.h"
#include "testkit/Golden.h"
#include "testkit/TestApp.h"
#include "wizard/AdvancedCycleSave.h"
#include "wizard/AdvancedCycleWriter.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

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
    for (const auto& [field, text] : {std::pair{&R::CaptureLimit, "capturelimit 0"},
                                      {&R::DuelFragLimit, "duel_fraglimit 0"},
                                      {&R::FragLimit, "fraglimit 0"},
                                      {&R::FriendlyFire, "g_friendlyfire 0"},
                                      {&R::Warmup, "g_warmup 60"},
                                      {&R::RunSpeed, "g_speed 250"},
                                      {&R::DmFlags, "dmflags 8"},
                                      {&R::PrivateDuel, "g_privateDuel 1"},
                                      {&R::SaberLock, "g_saberLocking 0"},
                                      {&R::FriendlySaber, "g_friendlySaber 0"}})
        r.*field = QString::fromLatin1(text);
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
        {"twins", {configured("duel_pit", duel, 800, 10), configured("duel_pit", duel, 400, 30)}, u"duel_pit"_s},
    };
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
        bool saberOnly;
        bool forceDisabled;
        const char* duelWeapons;
        const char* force;
    } cases[] = {
        {"Duel with Saber Only", u"g_gametype 3"_s, true, false, "65531", "0"},
        {"Free For All with the box ticked", u"g_gametype 0"_s, true, false, "0", "0"},
        {"Duel without the box", u"g_gametype 3"_s, false, true, "0", "262143"},
        {"a game type with a trailing blank is not Duel", u"g_gametype 3 "_s, true, false, "0", "0"},
    };
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

TEST(AdvancedCycle, BuildCycleRecordsMovesTheFirstMatchOnlyAndCarriesEveryField)
{
    const QList<WizardMapRecord> records{unconfigured("a"), configured("b", u"g_gametype 3"_s, 100), unconfigured("b")};
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
