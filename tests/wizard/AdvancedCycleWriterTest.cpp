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

namespace {

const QString kTitle = QStringLiteral("cycle.cfg");

WizardMapRecord unconfigured(const QString& map, const QString& gameType = QStringLiteral("g_gametype 0"))
{
    WizardMapRecord r;
    r.MapName = map;
    r.GameType = gameType;
    return r;
}

/// A map as page 3 stores it with the pages' defaults, gravity and time limit given.
WizardMapRecord configured(const QString& map, const QString& gameType, const QString& gravity = QStringLiteral("800"),
                           const QString& timeLimit = QStringLiteral("20"))
{
    WizardMapRecord r = unconfigured(map, gameType);
    r.Configured = true;
    r.TimeLimit = QStringLiteral("timelimit ") + timeLimit;
    r.CaptureLimit = QStringLiteral("capturelimit 0");
    r.DuelFragLimit = QStringLiteral("duel_fraglimit 0");
    r.FragLimit = QStringLiteral("fraglimit 0");
    r.FriendlyFire = QStringLiteral("g_friendlyfire 0");
    r.Warmup = QStringLiteral("g_warmup 60");
    r.Gravity = QStringLiteral("g_gravity ") + gravity;
    r.RunSpeed = QStringLiteral("g_speed 250");
    r.DmFlags = QStringLiteral("dmflags 8");
    r.PrivateDuel = QStringLiteral("g_privateDuel 1");
    r.SaberLock = QStringLiteral("g_saberLocking 0");
    r.FriendlySaber = QStringLiteral("g_friendlySaber 0");
    return r;
}

QStringList companion(const QString& timeLimit = QStringLiteral("20"), const QString& duelWeapons = QStringLiteral("0"),
                      const QString& force = QStringLiteral("0"))
{
    return {QStringLiteral("set g_warmup 60"),
            QStringLiteral("set timelimit ") + timeLimit,
            QStringLiteral("set fraglimit 0"),
            QStringLiteral("set capturelimit 0"),
            QStringLiteral("set duel_fraglimit 0"),
            QStringLiteral("set g_speed 250"),
            QStringLiteral("set g_friendlyfire 0"),
            QStringLiteral("set g_privateDuel 1"),
            QStringLiteral("set g_friendlySaber 0"),
            QStringLiteral("set g_saberLocking 0"),
            QStringLiteral("set g_duelweapondisable ") + duelWeapons,
            QStringLiteral("set g_forcePowerDisable ") + force};
}

QStringList tail(const QString& startingMap)
{
    return {QString(), QStringLiteral("vstr m1"), QStringLiteral("// ***    DO NOT DELETE MAP NAME ***"),
            QStringLiteral("// ***      REQ BY ARENA STEWARD   ***"), QStringLiteral("//") + startingMap};
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
    QString folder() const { return t.baseFolder() + QLatin1Char('/'); }
    QStringList cfgFiles() const
    {
        return QDir(t.baseFolder()).entryList({QStringLiteral("*.cfg")}, QDir::Files, QDir::Name);
    }
    TestApp t;
};

} // namespace

TEST_F(AdvancedCycleTest, WritesTheMainFileAndTheCompanionsByteForByte)
{
    const CycleCase cases[] = {
        {"one configured map points at itself, with the blank of the last line",
         {configured(QStringLiteral("duel_bay"), QStringLiteral("g_gametype 3"))},
         QStringLiteral("duel_bay"),
         QStringList{QStringLiteral(
             "set m1 \"set g_gametype 3; map duel_bay;set g_gravity 800; exec 1cycle.cfg; set nextmap vstr m1\"")} +
             tail(QStringLiteral("duel_bay")),
         {{QStringLiteral("1cycle.cfg"), companion()}}},
        {"first configured, second left out",
         {configured(QStringLiteral("duel_bay"), QStringLiteral("g_gametype 3")),
          unconfigured(QStringLiteral("ffa_yavin"))},
         QStringLiteral("duel_bay"),
         QStringList{
             QStringLiteral(
                 "set m1 \"set g_gametype 3;map duel_bay;set g_gravity 800; exec 1cycle.cfg; set nextmap vstr m2\""),
             QStringLiteral("set m2 \"set g_gametype 0;map ffa_yavin; set nextmap vstr m1\"")} +
             tail(QStringLiteral("duel_bay")),
         {{QStringLiteral("1cycle.cfg"), companion()}}},
        {"three maps, the second configured, no starting map: an empty first line, the last map dropped",
         {unconfigured(QStringLiteral("ffa_bespin")),
          configured(QStringLiteral("ffa_raven"), QStringLiteral("g_gametype 0"), QStringLiteral("350"),
                     QStringLiteral("15")),
          unconfigured(QStringLiteral("ffa_yavin"))},
         QString(),
         QStringList{QStringLiteral("set m1 \"set ;map ; set nextmap vstr m2\""),
                     QStringLiteral("set m2 \"set g_gametype 0;map ffa_bespin; set nextmap vstr m3\""),
                     QStringLiteral("set m3 \"set g_gametype 0; map ffa_raven;set g_gravity 350; exec 3cycle.cfg; set "
                                    "nextmap vstr m1\"")} +
             tail(QString()),
         {{QStringLiteral("3cycle.cfg"), companion(QStringLiteral("15"))}}},
        {"the starting map moves to the front and the others keep their order",
         {unconfigured(QStringLiteral("a")), unconfigured(QStringLiteral("b")),
          configured(QStringLiteral("c"), QStringLiteral("g_gametype 7"))},
         QStringLiteral("c"),
         QStringList{QStringLiteral(
                         "set m1 \"set g_gametype 7;map c;set g_gravity 800; exec 1cycle.cfg; set nextmap vstr m2\""),
                     QStringLiteral("set m2 \"set g_gametype 0;map a; set nextmap vstr m3\""),
                     QStringLiteral("set m3 \"set g_gametype 0;map b; set nextmap vstr m1\"")} +
             tail(QStringLiteral("c")),
         {{QStringLiteral("1cycle.cfg"), companion()}}},
        {"two configured maps of the same name get their own companions",
         {configured(QStringLiteral("duel_pit"), QStringLiteral("g_gametype 3"), QStringLiteral("800"),
                     QStringLiteral("10")),
          configured(QStringLiteral("duel_pit"), QStringLiteral("g_gametype 3"), QStringLiteral("400"),
                     QStringLiteral("30"))},
         QStringLiteral("duel_pit"),
         QStringList{
             QStringLiteral(
                 "set m1 \"set g_gametype 3;map duel_pit;set g_gravity 800; exec 1cycle.cfg; set nextmap vstr m2\""),
             QStringLiteral(
                 "set m2 \"set g_gametype 3; map duel_pit;set g_gravity 400; exec 2cycle.cfg; set nextmap vstr m1\"")} +
             tail(QStringLiteral("duel_pit")),
         {{QStringLiteral("1cycle.cfg"), companion(QStringLiteral("10"))},
          {QStringLiteral("2cycle.cfg"), companion(QStringLiteral("30"))}}},
    };
    for (const CycleCase& c : cases) {
        SCOPED_TRACE(c.name);
        TestApp app;
        WizardState state;
        state.records = c.records;
        state.upper = static_cast<int>(c.records.size()) - 1;
        state.startingMap = c.startingMap;
        const QString path = app.baseFolder() + QLatin1Char('/') + kTitle;
        ASSERT_TRUE(saveAdvancedMapCycle(*app.app, state, path, kTitle));
        EXPECT_TRUE(app.prompts.shown.empty());
        EXPECT_EQ(fileBytes(path), crlfText(c.main));
        QStringList expectedFiles{kTitle};
        for (const auto& [name, lines] : c.companions) {
            EXPECT_EQ(fileBytes(app.baseFolder() + QLatin1Char('/') + name), crlfText(lines)) << name.toStdString();
            expectedFiles << name;
        }
        expectedFiles.sort();
        EXPECT_EQ(QDir(app.baseFolder()).entryList({QStringLiteral("*.cfg")}, QDir::Files, QDir::Name), expectedFiles);
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
        {"Duel with Saber Only", QStringLiteral("g_gametype 3"), true, false,
         QStringLiteral("set g_duelweapondisable 65531"), QStringLiteral("set g_forcePowerDisable 0")},
        {"Free For All with the box ticked", QStringLiteral("g_gametype 0"), true, false,
         QStringLiteral("set g_duelweapondisable 0"), QStringLiteral("set g_forcePowerDisable 0")},
        {"Duel without the box", QStringLiteral("g_gametype 3"), false, true,
         QStringLiteral("set g_duelweapondisable 0"), QStringLiteral("set g_forcePowerDisable 262143")},
        {"a game type with a trailing blank is not Duel", QStringLiteral("g_gametype 3 "), true, false,
         QStringLiteral("set g_duelweapondisable 0"), QStringLiteral("set g_forcePowerDisable 0")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        WizardMapRecord r = configured(QStringLiteral("duel_bay"), c.gameType);
        r.DuelNoWeapons = c.saberOnly;
        r.ForceDisabled = c.forceDisabled;
        const QStringList lines = companionLines(r);
        ASSERT_EQ(lines.size(), 12);
        EXPECT_EQ(lines[10], c.duelLine);
        EXPECT_EQ(lines[11], c.forceLine);
        EXPECT_FALSE(lines.join(QLatin1Char('\n')).contains(QStringLiteral("dmflags"))) << "the DM flags go nowhere";
    }
}

TEST(AdvancedCycleLines, BuildCycleRecordsMovesTheFirstMatchOnlyAndCarriesEveryField)
{
    WizardMapRecord twin = configured(QStringLiteral("b"), QStringLiteral("g_gametype 3"), QStringLiteral("100"));
    const QList<WizardMapRecord> records{unconfigured(QStringLiteral("a")), twin, unconfigured(QStringLiteral("b"))};
    const QList<WizardMapRecord> ordered = BuildCycleRecords(records, QStringLiteral("b"));
    ASSERT_EQ(ordered.size(), 3);
    EXPECT_TRUE(ordered[0].Configured);
    EXPECT_EQ(ordered[0].Gravity, QStringLiteral("g_gravity 100"));
    EXPECT_EQ(ordered[1].MapName, QStringLiteral("a"));
    EXPECT_FALSE(ordered[2].Configured);

    const QList<WizardMapRecord> unmatched = BuildCycleRecords(records, QStringLiteral("zzz"));
    ASSERT_EQ(unmatched.size(), 4) << "an empty record in front, all others behind";
    EXPECT_TRUE(unmatched[0].MapName.isEmpty());
    EXPECT_EQ(unmatched[3].MapName, QStringLiteral("b"));
}

TEST_F(AdvancedCycleTest, TheLoaderReadsTheStartingMapBackFromTheMarkerLine)
{
    WizardState state;
    state.records = {unconfigured(QStringLiteral("ffa_yavin")),
                     configured(QStringLiteral("duel_bay"), QStringLiteral("g_gametype 3"))};
    state.startingMap = QStringLiteral("duel_bay");
    const QString path = folder() + kTitle;
    ASSERT_TRUE(saveAdvancedMapCycle(*t.app, state, path, kTitle));
    ServerProfile profile;
    EXPECT_EQ(gbln_LoadMapCycle(*t.app, profile, path), QStringLiteral("duel_bay"));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(AdvancedCycleTest, AFolderThatCantBeWrittenGivesTheErrorBoxAndFalse)
{
    WizardState state;
    state.records = {configured(QStringLiteral("duel_bay"), QStringLiteral("g_gametype 3"))};
    state.startingMap = QStringLiteral("duel_bay");

    const QString missing = t.root() + QStringLiteral("/no/such/folder/cycle.cfg");
    EXPECT_FALSE(saveAdvancedMapCycle(*t.app, state, missing, kTitle));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {QStringLiteral("Error saving file"), Icon::Exclamation, missing, Buttons::Ok}))
        << "the failure's source: the file";

    // A companion that can't be written: the main file keeps what was written before it.
    QDir().mkpath(folder() + QStringLiteral("1cycle.cfg"));
    EXPECT_FALSE(saveAdvancedMapCycle(*t.app, state, folder() + kTitle, kTitle));
    EXPECT_TRUE(isBox(t.prompts.last(), {QStringLiteral("Error saving file"), Icon::Exclamation,
                                         folder() + QStringLiteral("1cycle.cfg"), Buttons::Ok}));
    EXPECT_EQ(
        fileBytes(folder() + kTitle),
        crlfText({QStringLiteral(
            "set m1 \"set g_gametype 3; map duel_bay;set g_gravity 800; exec 1cycle.cfg; set nextmap vstr m1\"")}));
    EXPECT_EQ(cfgFiles(), QStringList{kTitle}) << "nothing else is written";
}
