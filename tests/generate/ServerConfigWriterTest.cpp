// The session file: every section checked line by line against the whole expected
// file, CR LF included, with the fixed clock of the test kit.
#include "commands/CreateJediConfiguration.h"
#include "commands/MapCycleCommands.h"
#include "generate/ServerConfigWriter.h"
#include "model/ServerProfile.h"
#include "support/ErrorBox.h"
#include "support/ProductText.h"
#include "testkit/Golden.h"
#include "testkit/Printers.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <algorithm>
#include <functional>

using namespace steward;
using namespace steward::testing;

namespace {

const QString kTaggedSource = QStringLiteral("arena-steward::Code.CreateJediConfiguration(Function)");
const QString kCreated = QStringLiteral("'luke.cfg' has been created         ");

QString L(const char* text) { return QString::fromUtf8(text); }
QString seta(const char* key, const char* value) { return QStringLiteral("seta %1 \"%2\"").arg(L(key), L(value)); }
QString sets(const char* key, const char* value) { return QStringLiteral("sets \"%1\" \"%2\"").arg(L(key), L(value)); }

/// The file that a fresh profile gives as a Listen server whose rotation starts with
/// ffa_bespin.
QStringList defaultFile() { return goldenLines(QStringLiteral("generate/luke.cfg")); }

/// One line of the expected file exchanged for none, one or several.
struct Change {
    QString line;
    QStringList replacement;
};

/// The changes in file order: each one is looked for behind the one before it, so that
/// a line standing twice can be told apart.
QStringList changed(QStringList lines, const std::vector<Change>& changes)
{
    qsizetype from = 0;
    for (const Change& c : changes) {
        const auto at = lines.indexOf(c.line, from);
        if (at < 0) {
            ADD_FAILURE() << "the expected file has no line " << c.line.toStdString() << " from line " << from + 1;
            continue;
        }
        lines.removeAt(at);
        for (qsizetype i = 0; i < c.replacement.size(); ++i)
            lines.insert(at + i, c.replacement.at(i));
        from = at + c.replacement.size();
    }
    return lines;
}

/// One setting's line with another value.
Change value(const char* key, const char* was, const char* is) { return {seta(key, was), {seta(key, is)}}; }

/// The line itself, then the new ones behind it.
Change after(const QString& line, const QStringList& added) { return {line, QStringList{line} + added}; }

/// The lines before the first one equal to stop, or up to and with it.
QStringList cutAt(const QStringList& lines, const QString& stop, bool keepStop)
{
    const auto at = lines.indexOf(stop);
    EXPECT_GE(at, 0) << stop.toStdString();
    return lines.mid(0, at + (keepStop ? 1 : 0));
}

void expectFile(const QString& path, const QStringList& expected)
{
    ASSERT_TRUE(QFile::exists(path)) << path.toStdString();
    EXPECT_EQ(crlfLines(path), expected);
    EXPECT_TRUE(fileBytes(path) == crlfText(expected)) << "every line ends in CR LF, the last one too";
}

class SessionFileTest : public ::testing::Test {
protected:
    SessionFileTest()
    {
        profile.setValue(F::chkServerType(0), 1);
        profile.field(F::lsvMapRotation).setRows({{QStringLiteral("ffa_bespin")}, {QStringLiteral("ffa_yavin")}});
        profile.setStartingMap(QStringLiteral("ffa_bespin"));
        QObject::connect(&profile.field(F::MousePointer), &Field::valueChanged,
                         [this](Field* f) { pointers.push_back(f->value()); });
    }

    /// The file is the same on both roads; the export road starts no process.
    bool run(bool useSavedCycle = false, bool exportOnly = true)
    {
        return CreateJediConfiguration(*t.app, profile, exportOnly, useSavedCycle, session);
    }
    QString file() const { return t.baseFolder() + QStringLiteral("/") + session; }
    void set(const char* name, int index, const QString& text) { profile.setText(FieldId{name, index}, text); }
    void tick(const char* name, int index, int value = 1) { profile.setValue(FieldId{name, index}, value); }
    QString log() const
    {
        return QString::fromLatin1(fileBytes(t.programFolder() + QStringLiteral("/arena-steward.log")));
    }
    /// The one box shown is the run-time error box with this number; the log has it too.
    void expectErrorReported(int number, const QString& inner = QStringLiteral("arena-steward"))
    {
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(), errorBox(number, kTaggedSource + QStringLiteral(" (%1)").arg(inner))));
        EXPECT_TRUE(log().contains(QStringLiteral("Error %1 in ").arg(number) + kTaggedSource)) << log().toStdString();
        EXPECT_EQ(profile.formPointer(), 0);
    }

    TestApp t;
    ServerProfile profile;
    QString session = QStringLiteral("luke.cfg");
    std::vector<int> pointers;
};

TEST_F(SessionFileTest, AFreshProfileGivesTheWholeDefaultFileOnBothRoads)
{
    writeFile(file(), QByteArray(20000, 'x')); // the old file is replaced whole
    EXPECT_TRUE(run());
    expectFile(file(), defaultFile());
    EXPECT_EQ(t.prompts.texts(), QStringList{kCreated}) << "the export's announcement alone";
    EXPECT_EQ(pointers.front(), 11) << "the hourglass while the file is written";
    EXPECT_EQ(profile.formPointer(), 0) << "and the pointer reset at the end";

    EXPECT_TRUE(run(false, false));
    expectFile(file(), defaultFile());
    EXPECT_EQ(profile.formPointer(), 0);
}

TEST_F(SessionFileTest, TheSessionNameGetsUnderscoresAndLowerCaseForTheCallerToo)
{
    session = QStringLiteral("My Server.CFG");
    EXPECT_TRUE(run());
    EXPECT_EQ(session, QStringLiteral("my_server.cfg"));
    expectFile(t.baseFolder() + QStringLiteral("/my_server.cfg"), defaultFile());
    EXPECT_FALSE(QFile::exists(t.baseFolder() + QStringLiteral("/My Server.CFG")));
}

TEST_F(SessionFileTest, TheBaseFolderIsFoundWithoutRegardToCase)
{
    ASSERT_TRUE(QDir(t.baseFolder()).removeRecursively());
    ASSERT_TRUE(QDir().mkpath(t.gameFolder() + QStringLiteral("BASE")));
    writeFile(t.gameFolder() + QStringLiteral("base"), "a file, not the folder");
    EXPECT_TRUE(run());
    expectFile(t.gameFolder() + QStringLiteral("BASE/luke.cfg"), defaultFile());
}

TEST_F(SessionFileTest, FieldTextGoesOutAsItStandsInLatin1)
{
    set("txtServerConfig", 0, QStringLiteral("Say \"hi\" at the caf\u00e9"));
    EXPECT_TRUE(run());
    EXPECT_TRUE(fileBytes(file()).contains("seta g_motd \"Say \"hi\" at the caf\xe9\"\r\n"));
}

// Each case changes the profile and names the lines of the default file that change.
struct Variant {
    const char* name;
    std::function<void(ServerProfile&)> setup;
    std::vector<Change> changes;
};

void PrintTo(const Variant& v, std::ostream* os) { *os << v.name; }

template <class Case>
std::string caseName(const ::testing::TestParamInfo<Case>& param)
{
    return param.param.name;
}

class SessionFileVariants : public SessionFileTest, public ::testing::WithParamInterface<Variant> {};

TEST_P(SessionFileVariants, ChangeOnlyTheirOwnLines)
{
    GetParam().setup(profile);
    EXPECT_TRUE(run());
    expectFile(file(), changed(defaultFile(), GetParam().changes));
}

auto setText(const char* name, int index, const char* text)
{
    return [=](ServerProfile& p) { p.setText(FieldId{name, index}, QString::fromUtf8(text)); };
}

auto cfg(int index, const char* text) { return setText("txtServerConfig", index, text); }
auto spin(int index, const char* text) { return setText("txtServerConfigSpin", index, text); }

auto setValue(const char* name, int index, int value)
{
    return [=](ServerProfile& p) { p.setValue(FieldId{name, index}, value); };
}

const Variant variants[] = {
    {"EmptyMotdIsStillWritten", cfg(0, ""), {value("g_motd", "Frag the weak, hurdle the dead...", "")}},
    {"HostName", cfg(2, "My Host"), {value("sv_hostname", "", "My Host")}},
    {"AdminWithAQuotedKey", cfg(3, "Bob"), {after(seta("sv_hostname", ""), {sets("Admin", "Bob")})}},
    {"EmptyDescriptiveFieldsAreLeftOut", cfg(4, ""), {{sets("Admin E-Mail", "arena.steward@example.org"), {}}}},
    {"KeysWithBlanksStay",
     cfg(8, "2 GHz"),
     {after(sets("URL", "http://www.jk2files.com"), {sets("Server Spec", "2 GHz")})}},
    {"EmptyPortHasNoLineButTheNoteSays28070", cfg(12, ""), {{L("//seta net_port \"28070\""), {}}}},
    {"PortWithBlanksIsCommentedAsItStandsAndConvertedTrimmed",
     cfg(12, " 27960 "),
     {{L("//seta net_port \"28070\""), {L("//seta net_port \" 27960 \"")}},
      {L("// Port = 28070"), {L("// Port = 27960")}}}},
    {"BlanksOnlyPortCountsAsEmpty", cfg(12, "   "), {{L("//seta net_port \"28070\""), {L("//seta net_port \"   \"")}}}},
    {"AddressIsCommentedOutAndNoted",
     cfg(16, "10.0.0.5"),
     {after(seta("g_password", ""), {L("//seta net_ip \"10.0.0.5\"")}), {L("// IP = "), {L("// IP = 10.0.0.5")}}}},
    {"PrivatePassword", cfg(13, "p1"), {value("sv_privatePassword", "", "p1")}},
    {"RemotePassword", cfg(14, "r1"), {value("rconPassword", "", "r1")}},
    {"ServerPasswordAsItStands", cfg(15, " x "), {value("g_needpass", "0", "1"), value("g_password", "", " x ")}},
    {"BlanksOnlyPasswordCountsAsNone", cfg(15, "   "), {}},
    {"SessionFieldAsTyped", cfg(1, "Other Name"), {{sets("Config File", "Luke"), {sets("Config File", "Other Name")}}}},
    {"SpawnProtectIsNeverWritten", spin(3, "99"), {}},
    {"EmptyNumberIsLeftOut", spin(0, ""), {{seta("sv_maxclients", "12"), {}}}},
    {"NumberAsItStands", spin(17, "4x"), {value("g_minGameClients", "0", "4x")}},
    {"EmptySaberValueIsLeftOut", setText("txtAdvancedSaber", 1, ""), {{seta("g_saberdmgvelocityscale", "0"), {}}}},
    {"ClearSaberCheckWritesZero", setValue("chkAdvancedSaber", 2, 0), {value("_saberalwaysboxtrace", "1", "0")}},
    {"MemoryRoundsHalfToEven", spin(11, "16.5"), {value("com_zoneMegs", "16", "16.5")}},
    {"MemoryByLeadingNumber",
     spin(12, "17.5mb"),
     {value("com_SoundMegs", "16", "17.5mb"), {L("// SoundMegs = 16"), {L("// SoundMegs = 18")}}}},
    {"MemoryWithoutNumberIsZero",
     spin(5, "abc"),
     {value("com_HunkMegs", "32", "abc"), {L("// HunkMegs = 32"), {L("// HunkMegs = 0")}}}},
    {"GravityLettersFallBack", setText("txtSpeed", 1, "abc"), {}},
    {"GravityOwnValue", setText("txtSpeed", 1, "350"), {value("g_gravity", "800", "350")}},
    {"SpeedZeroFallsBackTo280", setText("txtSpeed", 0, "0"), {value("g_speed", "250", "280")}},
    {"SpeedLeadingNumberKeepsTheText", setText("txtSpeed", 0, "12abc"), {value("g_speed", "250", "12abc")}},
    {"SpecTimeOutEmptyFallsBackTo180", setText("txtSpeed", 2, ""), {value("g_timeouttospec", "70", "180")}},
    {"DismemberAboveZero",
     setText("txtSpeed", 3, "5"),
     {after(seta("g_timeouttospec", "70"), {seta("g_dismember", "5")})}},
    {"DismemberLettersWriteNothing", setText("txtSpeed", 3, "abc"), {}},
    {"ForceRankLetters", setText("txtMaxForceRank", -1, "abc"), {}},
    {"ForceRankOwnValue", setText("txtMaxForceRank", -1, "7"), {value("g_maxForceRank", "0", "7")}},
    {"ForceRegenZero", setText("txtForceReGen", 0, "0"), {}},
    {"MapTimeOutNegative", setText("txtMapTimeOut", -1, "-5"), {}},
    {"HolocronsZeroFallBackTo3", setText("txtMaxHolocronCarry", -1, "0"), {}},
    {"WeaponsStayIsWrittenAs5", setText("txtWeapRespawn", -1, "0"), {}},
    {"WeaponRespawnFraction", setText("txtWeapRespawn", -1, "0.5"), {value("g_weaponrespawn", "5", "0.5")}},
    {"KnockbackIsNotWritten", setText("txtKnockBack", -1, "abc"), {}},
    {"QuadFactorIsNotWritten", setText("txtWeaponEnhancer", -1, "9"), {}},
    {"TickedOptionWritesOne", setValue("chkQuake3Specific", 0, 1), {value("g_allowvote", "0", "1")}},
    {"DisableTheForceComesBeforeTheFlagLine",
     setValue("chkQuake3Specific", 17, 1),
     {value("g_forcePowerDisable", "0", "1")}},
    {"JediVsMercTickedWritesNoLine", setValue("chkQuake3Specific", 18, 1), {{seta("g_jediVmerc", "0"), {}}}},
    {"FlagFieldsAsTheyStand",
     [](ServerProfile& p) {
         p.setText(F::txtWeaponFlags, QStringLiteral("12"));
         p.setText(F::txtForceFlags, QStringLiteral("131072"));
         p.setText(F::txtDMFlags, QStringLiteral("40"));
         p.setText(F::txtDuelWeaponFlags, QStringLiteral("4"));
     },
     {{L("seta g_weaponDisable \"0\" // Weapons Disabled"), {L("seta g_weaponDisable \"12\" // Weapons Disabled")}},
      {L("seta g_forcePowerDisable \"0\" // Force Power Disabled"),
       {L("seta g_forcePowerDisable \"131072\" // Force Power Disabled")}},
      value("dmflags", "0", "40")}},
    {"DuelWritesTheDuelWeapons",
     [](ServerProfile& p) {
         p.setValue(F::optDefaultGameType(3), 1);
         p.setText(F::txtDuelWeaponFlags, QStringLiteral("4"));
     },
     {after(L("seta g_weaponDisable \"0\" // Weapons Disabled"),
            {L("seta g_duelWeaponDisable \"4\" // Weapons Disabled Duel Only")})}},
    {"LimitsAsTheyStand",
     [](ServerProfile& p) {
         for (int i = 0; i < 4; ++i)
             p.setText(F::txtGameLimits(i), QString());
     },
     {value("fraglimit", "0", ""), value("timelimit", "20", ""), value("capturelimit", "0", ""),
      value("duel_fraglimit", "1", "")}},
    {"StatsEnabled",
     setValue("optLogging", 4, 1),
     {{seta("g_statLog", "5"), {seta("g_statLog", "1"), seta("g_statLogFile", "stats.log")}},
      {seta("g_log", "games.log"), {}}}}, // the stats frame gives no second g_log
    {"NoGameLogging",
     [](ServerProfile& p) {
         p.setValue(F::optLogging(0), 1);
         p.setText(F::txtLogFileName, QStringLiteral("my.log"));
     },
     {value("logfile", "3", "0"), value("g_log", "games.log", "my.log"), value("g_log", "games.log", "my.log")}},
    {"NothingSelectedInEitherFrame",
     [](ServerProfile& p) {
         p.setValue(F::optLogging(3), 0);
         p.setValue(F::optLogging(5), 0);
     },
     {{seta("logfile", "3"), {}},
      {seta("g_log", "games.log"), {}},
      {seta("g_statLog", "5"), {}},
      {seta("g_log", "games.log"), {}}}},
    {"FirstRowWhenNoStartingMap",
     [](ServerProfile& p) { p.setStartingMap(QString()); },
     {{L("Map ffa_bespin"), {L("Map ffa_bespin")}}}},
    {"StartingMapBeforeTheFirstRow",
     [](ServerProfile& p) { p.setStartingMap(QStringLiteral("ffa_yavin")); },
     {{L("Map ffa_bespin"), {L("Map ffa_yavin")}}}},
    {"AutoCycleNeedsNoRotation",
     [](ServerProfile& p) {
         p.setValue(F::chkMapAutoCycle, 1);
         p.field(F::lsvMapRotation).setRows({});
         p.setStartingMap(QString());
         p.setText(F::cboStartingMap, QStringLiteral("ffa_raven"));
     },
     {{L("g_autoMapCycle \"0\""), {L("g_autoMapCycle \"1\"")}},
      {L("Map ffa_bespin"), {L("map ffa_raven")}},
      {L("exec \"jediMaps.cfg\""), {}}}},
    {"AdditionalConfigsTrimmedAndUnquoted",
     [](ServerProfile& p) {
         p.setText(F::cboConfig(0), QStringLiteral("  first.cfg "));
         p.setText(F::cboConfig(1), QStringLiteral("   "));
         p.setText(F::cboConfig(3), QStringLiteral("my cfg.cfg"));
     },
     {after(L("exec \"jediMaps.cfg\""), {L("exec first.cfg"), L("exec my cfg.cfg")})}},
};
INSTANTIATE_TEST_SUITE_P(Lines, SessionFileVariants, ::testing::ValuesIn(variants), caseName<Variant>);

TEST_F(SessionFileTest, OtherGameTypesNeverWriteTheDuelWeapons)
{
    for (int type : {0, 1, 2, 4, 5, 6}) {
        SCOPED_TRACE(type);
        tick("optDefaultGameType", type);
        for (int i = 16; i <= 31; ++i)
            tick("chkWeaponFlags", i);
        set("txtDuelWeaponFlags", -1, QStringLiteral("65535"));
        EXPECT_TRUE(run());
        for (const QString& l : crlfLines(file()))
            EXPECT_FALSE(l.contains(QStringLiteral("g_duelWeaponDisable")));
    }
}

TEST_F(SessionFileTest, OnlyAnInternetServerListsTheMasters)
{
    for (int type : {0, 1}) {
        tick("chkServerType", type);
        EXPECT_TRUE(run());
        expectFile(file(), defaultFile());
    }

    tick("chkServerType", 2);
    profile.setText(F::txtMaster1, QStringLiteral("  one.example.org  "));
    profile.setText(F::txtMaster3, QStringLiteral("three.example.org:27950"));
    EXPECT_TRUE(run());
    const QStringList masterBlock = {L("// ------------------- Additional Master Server List -------------------"),
                                     seta("sv_master5", ""),
                                     seta("sv_master4", "master.jkhub.org"),
                                     seta("sv_master3", "three.example.org:27950"),
                                     seta("sv_master2", "master.jk2mv.org"),
                                     seta("sv_master1", "one.example.org"),
                                     L("// --------------------------------------------------------------------"),
                                     QString()};
    expectFile(file(), changed(defaultFile(), {after(seta("dmflags", "0"), masterBlock)}));
}

TEST_F(SessionFileTest, ASavedCycleStartsWithItsMarkedMapAndIsExecuted)
{
    const QString saved = t.root() + QStringLiteral("/cycles/My Cycle.cfg");
    writeFile(saved, "// an advanced cycle\r\n// ***    DO NOT DELETE MAP NAME ***\r\n//\r\n//ffa_raven\r\n");
    profile.setText(F::txtServerINI, saved);
    profile.field(F::lsvMapRotation).setRows({});
    profile.setStartingMap(QString());
    // The map is what the cycle loader reads from the file.
    const QString first = gbln_LoadMapCycle(*t.app, profile, saved);

    EXPECT_TRUE(run(true));
    expectFile(file(), changed(defaultFile(), {{L("Map ffa_bespin"), {QStringLiteral("Map ") + first}},
                                               {L("exec \"jediMaps.cfg\""), {L("exec \"My Cycle.cfg\"")}}}));
    EXPECT_FALSE(QFile::exists(t.baseFolder() + QStringLiteral("/jediMaps.cfg"))) << "no cycle is made";
}

TEST_F(SessionFileTest, BotsAndBansAreExecutedExactlyWhenTheirFilesWereMade)
{
    // User-defined bots with a password don't refuse; the exec line follows the bot
    // writer's success, and the ban line the ban writer's.
    tick("chkBOTs", 5);
    set("txtServerConfig", 15, QStringLiteral("secret"));
    profile.field(F::lstBannedIPs).setItems({QStringLiteral("10.0.0.9")});
    EXPECT_TRUE(run());

    QStringList added;
    if (QFile::exists(t.baseFolder() + QStringLiteral("/BOTFile.cfg")))
        added << L("exec \"BOTFile.cfg\"");
    if (QFile::exists(t.baseFolder() + QStringLiteral("/BAN.cfg")))
        added << L("exec \"BAN.cfg\"");
    expectFile(file(), changed(defaultFile(), {{seta("g_needpass", "0"), {seta("g_needpass", "1")}},
                                               {seta("g_password", ""), {seta("g_password", "secret")}},
                                               after(L("exec \"jediMaps.cfg\""), added)}));
    EXPECT_EQ(t.prompts.texts(), QStringList{kCreated}) << "the export's announcement alone";
}

TEST_F(SessionFileTest, BotsWithoutANumberOfPlayersAreWarnedAboutAndNotExecuted)
{
    tick("chkBOTs", 0);
    for (const auto& [players, executed] : {std::pair{"2", true}, {"0", false}}) {
        SCOPED_TRACE(players);
        t.prompts.shown.clear();
        set("txtServerConfigSpin", 6, QString::fromLatin1(players));
        EXPECT_TRUE(run()) << "the server starts with or without the bots";
        const QStringList lines = crlfLines(file());
        EXPECT_EQ(lines.last(), QStringLiteral("//EOF"));
        EXPECT_EQ(lines.contains(QStringLiteral("exec \"BOTFile.cfg\"")), executed);
        const auto warnings = std::count_if(t.prompts.shown.begin(), t.prompts.shown.end(),
                                            [](const auto& s) { return s.request.icon == Icon::Exclamation; });
        EXPECT_EQ(warnings, executed ? 0 : 1) << "the bot writer's warning";
    }
}

TEST_F(SessionFileTest, APasswordRefusesEnabledBotsAndCutsTheFileOff)
{
    const Box refusal{
        kProductTitle, Icon::Exclamation,
        QStringLiteral("Arena Steward does not support adding BOT's to a password enabled server         \r\n"
                       "either uncheck enable BOT's or remove password to continue         "),
        Buttons::Ok};
    const std::pair<const char*, QStringList> cases[] = {
        {"secret", {seta("g_needpass", "1"), seta("g_password", "secret")}},
        {"   ", {seta("g_needpass", "0"), seta("g_password", "")}}, // trimmed above, not here
    };
    for (const auto& [password, lines] : cases) {
        SCOPED_TRACE(password);
        t.prompts.shown.clear();
        tick("chkBOTs", 0);
        tick("chkBOTs", 5);
        set("txtServerConfig", 15, QString::fromLatin1(password));

        EXPECT_FALSE(run());
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(), refusal));
        expectFile(file(), cutAt(changed(defaultFile(), {{seta("g_needpass", "0"), {lines.at(0)}},
                                                         {seta("g_password", ""), {lines.at(1)}}}),
                                 L("exec \"jediMaps.cfg\""), true));
        EXPECT_EQ(profile.formPointer(), 11) << "the hourglass stays after a refusal";
    }

    // The next run puts the pointer back.
    tick("chkBOTs", 0, 0);
    tick("chkBOTs", 5, 0);
    EXPECT_TRUE(run());
    EXPECT_EQ(profile.formPointer(), 0);
}

// A run-time error ends the file where it happened, reports with the routine's tag and
// gives false; the complete lines written before it stay on disk.
struct ErrorCase {
    const char* name;
    std::function<void(ServerProfile&)> setup;
    std::vector<Change> changes; ///< of the default file, before it is cut
    const char* fileEndsBefore;
    int number;
};

void PrintTo(const ErrorCase& c, std::ostream* os) { *os << c.name; }

class SessionFileErrors : public SessionFileTest, public ::testing::WithParamInterface<ErrorCase> {};

const ErrorCase errorCases[] = {
    {"PortWithLetters",
     setText("txtServerConfig", 12, "28a70"),
     {{L("//seta net_port \"28070\""), {L("//seta net_port \"28a70\"")}}},
     "// ZoneMegs = 16",
     err::TypeMismatch},
    {"HunkAbove32767",
     setText("txtServerConfigSpin", 5, "40000"),
     {{seta("com_HunkMegs", "32"), {seta("com_HunkMegs", "40000")}}},
     "// ZoneMegs = 16",
     err::Overflow},
    {"NoRotationAndNoStartingMap",
     [](ServerProfile& p) {
         p.field(F::lsvMapRotation).setRows({});
         p.setStartingMap(QString());
     },
     {},
     "Map ffa_bespin",
     err::IndexOutOfBounds},
};

TEST_P(SessionFileErrors, EndTheFileWhereTheyHappenAndAreReported)
{
    const ErrorCase& c = GetParam();
    c.setup(profile);
    EXPECT_FALSE(run());
    expectFile(file(), cutAt(changed(defaultFile(), c.changes), QString::fromLatin1(c.fileEndsBefore), false));
    expectErrorReported(c.number);
}

INSTANTIATE_TEST_SUITE_P(RunTime, SessionFileErrors, ::testing::ValuesIn(errorCases), caseName<ErrorCase>);

TEST_F(SessionFileTest, AMissingBaseFolderIsThePathNotFoundRoad)
{
    ASSERT_TRUE(QDir(t.baseFolder()).removeRecursively());
    // Auto cycling makes no cycle file, so the session file is the first to miss the folder.
    tick("chkMapAutoCycle", -1);
    session = QStringLiteral("Luke.cfg");
    EXPECT_FALSE(run());
    EXPECT_EQ(session, QStringLiteral("luke.cfg")) << "the name was already changed";
    EXPECT_FALSE(QFile::exists(t.gameFolder() + QStringLiteral("Base/luke.cfg")));
    expectErrorReported(err::PathNotFound, t.gameFolder() + QStringLiteral("Base/luke.cfg"));
}

} // namespace
