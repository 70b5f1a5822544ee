// The session file: every section checked line by line against the whole expected
// file, CR LF included, with the fixed clock of the test kit.
#include "commands/BanListCommands.h"
#include "commands/MapCycleCommands.h"
#include "generate/MapCycleWriter.h"
#include "commands/CreateJediConfiguration.h"
#include "generate/ServerConfigWriter.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <algorithm>
#include <functional>

using namespace steward;
using namespace steward::testing;

namespace {

const QString kSlashes = QString(63, QLatin1Char('/'));
const QString kTaggedSource = QStringLiteral("arena-steward::Code.CreateJediConfiguration(Function)");
const QString kSource = QStringLiteral("Source: ") + kTaggedSource;

/// The file that a fresh profile gives as a Listen server whose rotation starts with
/// ffa_bespin.
QStringList defaultFile()
{
    return {
        QStringLiteral("// JK2 Server Configuration File"),
        kSlashes,
        QStringLiteral("// File Created by: Arena Steward ver: JUNE 13 2002 beta 1.4"),
        QStringLiteral("// File Created On: Thursday, June 13, 2002 at 9:05 PM"),
        QStringLiteral("// arena.steward@example.org"),
        kSlashes,
        QString(),
        QStringLiteral("// This file is automatically executed by jk2mvded"),
        QString(),
        QString(),
        QStringLiteral("seta g_motd \"Frag the weak, hurdle the dead...\""),
        QStringLiteral("sets \"Config File\" \"Luke\""),
        QStringLiteral("seta sv_hostname \"\""),
        QStringLiteral("sets \"Admin E-Mail\" \"arena.steward@example.org\""),
        QStringLiteral("sets \"URL\" \"http://www.jk2files.com\""),
        QStringLiteral("sets \"Hours\" \"Now and Then\""),
        QStringLiteral("sets \"IRC\" \"#JK2 @ irc.quakenet.org\""),
        QStringLiteral("//seta net_port \"28070\""),
        QStringLiteral("seta sv_privatePassword \"\""),
        QStringLiteral("seta rconPassword \"\""),
        QStringLiteral("seta g_needpass \"0\""),
        QStringLiteral("seta g_password \"\""),
        QStringLiteral("sets \".Configured By\" \"Arena Steward: JUNE 13 2002 beta 1.4\""),
        QString(),
        QStringLiteral("seta sv_maxclients \"12\""),
        QStringLiteral("seta sv_privateClients \"0\""),
        QStringLiteral("seta sv_maxPing \"0\""),
        QStringLiteral("seta g_inactivity \"360\""),
        QStringLiteral("seta com_HunkMegs \"32\""),
        QStringLiteral("seta sv_minclients \"0\""),
        QStringLiteral("seta sv_maxRate \"5000\""),
        QStringLiteral("seta sv_minPing \"0\""),
        QStringLiteral("seta g_forcerespawn \"3\""),
        QStringLiteral("seta sv_fps \"50\""),
        QStringLiteral("seta com_zoneMegs \"16\""),
        QStringLiteral("seta com_SoundMegs \"16\""),
        QStringLiteral("seta sv_reconnectlimit \"3\""),
        QStringLiteral("seta g_warmup \"20\""),
        QStringLiteral("seta sv_zombietime \"30\""),
        QStringLiteral("seta g_maxGameClients \"0\""),
        QStringLiteral("seta g_minGameClients \"0\""),
        QStringLiteral("//Advanced Saber Begin//"),
        QStringLiteral("seta g_saberboxtracesize \"2\""),
        QStringLiteral("seta g_saberdmgvelocityscale \"0\""),
        QStringLiteral("seta g_saberdmgdelay_idle \"350\""),
        QStringLiteral("seta g_saberdmgdelay_wound \"0\""),
        QStringLiteral("seta g_saberghoul2collision \"1\""),
        QStringLiteral("seta g_sabertracesaberfirst \"1\""),
        QStringLiteral("seta _saberalwaysboxtrace \"1\""),
        QStringLiteral("//Advanced Saber End//"),
        QStringLiteral("seta g_gravity \"800\""),
        QStringLiteral("seta g_speed \"250\""),
        QStringLiteral("seta g_timeouttospec \"70\""),
        QStringLiteral("seta g_maxForceRank \"0\""),
        QStringLiteral("seta g_ForceRegenTime \"200\""),
        QStringLiteral("seta sv_timeout \"300\""),
        QStringLiteral("seta g_maxHolocronCarry \"3\""),
        QStringLiteral("seta g_weaponrespawn \"5\""),
        QStringLiteral("seta g_allowvote \"0\""),
        QStringLiteral("seta sv_allowDownload \"0\""),
        QStringLiteral("seta sv_allowAnonymous \"0\""),
        QStringLiteral("seta g_doWarmup \"0\""),
        QStringLiteral("seta sv_floodProtect \"0\""),
        QStringLiteral("seta g_friendlyfire \"0\""),
        QStringLiteral("seta g_teamForceBalance \"0\""),
        QStringLiteral("seta g_forceBasedTeams \"0\""),
        QStringLiteral("seta sv_pure \"0\""),
        QStringLiteral("seta g_synchronousclients \"0\""),
        QStringLiteral("seta g_teamAutoJoin \"0\""),
        QStringLiteral("seta g_privateDuel \"0\""),
        QStringLiteral("seta g_adaptrespawn \"0\""),
        QStringLiteral("seta g_smoothClients \"0\""),
        QStringLiteral("seta sv_padPackets \"0\""),
        QStringLiteral("seta g_saberLocking \"0\""),
        QStringLiteral("seta g_friendlySaber \"0\""),
        QStringLiteral("seta g_forcePowerDisable \"0\""),
        QStringLiteral("seta g_jediVmerc \"0\""),
        QStringLiteral("seta g_weaponDisable \"0\" // Weapons Disabled"),
        QStringLiteral("seta g_forcePowerDisable \"0\" // Force Power Disabled"),
        QStringLiteral("seta dmflags \"0\""),
        QStringLiteral("seta logfile \"3\""),
        QStringLiteral("seta g_log \"games.log\""),
        QStringLiteral("seta g_statLog \"5\""),
        QStringLiteral("seta g_log \"games.log\""),
        QString(),
        QStringLiteral("seta fraglimit \"0\""),
        QStringLiteral("seta timelimit \"20\""),
        QStringLiteral("seta capturelimit \"0\""),
        QStringLiteral("seta duel_fraglimit \"1\""),
        QString(),
        QStringLiteral("// ZoneMegs = 16"),
        QStringLiteral("// HunkMegs = 32"),
        QStringLiteral("// SoundMegs = 16"),
        QStringLiteral("// IP = "),
        QStringLiteral("// Port = 28070"),
        QString(),
        QStringLiteral("//----------------"),
        QStringLiteral("//#### THE FOLLOWING KICKS THE SERVER INTO GEAR ####"),
        QStringLiteral("//----------------"),
        QString(),
        QStringLiteral("g_autoMapCycle \"0\""),
        QStringLiteral("Map ffa_bespin"),
        QStringLiteral("exec \"jediMaps.cfg\""),
        QStringLiteral("//"),
        QStringLiteral("writeconfig jk2mpconfig.cfg"),
        QStringLiteral("wait"),
        QStringLiteral("//EOF"),
    };
}

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

/// The line itself, then the new ones behind it.
Change after(const QString& line, const QStringList& added)
{
    return {line, QStringList{line} + added};
}

/// The lines before the first one equal to stop.
QStringList before(const QStringList& lines, const QString& stop)
{
    const auto at = lines.indexOf(stop);
    EXPECT_GE(at, 0) << stop.toStdString();
    return lines.mid(0, at);
}

/// Lines up to and with the first one equal to last.
QStringList upTo(const QStringList& lines, const QString& last)
{
    const auto at = lines.indexOf(last);
    EXPECT_GE(at, 0) << last.toStdString();
    return lines.mid(0, at + 1);
}

void expectFile(const QString& path, const QStringList& expected)
{
    ASSERT_TRUE(QFile::exists(path)) << path.toStdString();
    const QStringList actual = crlfLines(path);
    const auto n = std::max(actual.size(), expected.size());
    for (qsizetype i = 0; i < n; ++i) {
        const QString a = i < actual.size() ? actual.at(i) : QStringLiteral("<end of file>");
        const QString e = i < expected.size() ? expected.at(i) : QStringLiteral("<end of file>");
        if (a != e) {
            ADD_FAILURE() << "line " << i + 1 << "\n  written:  " << a.toStdString() << "\n  expected: "
                          << e.toStdString();
            return;
        }
    }
    EXPECT_TRUE(fileBytes(path) == crlfText(expected)) << "every line ends in CR LF, the last one too";
}

class SessionFileTest : public ::testing::Test {
protected:
    SessionFileTest()
    {
        profile.setValue(F::chkServerType(0), 1);
        profile.field(F::lsvMapRotation)
            .setRows({{QStringLiteral("ffa_bespin")}, {QStringLiteral("ffa_yavin")}});
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
    void set(const char* name, int index, const QString& text)
    {
        profile.setText(FieldId{name, index}, text);
    }
    void tick(const char* name, int index, int value = 1) { profile.setValue(FieldId{name, index}, value); }

    /// The boxes shown with this icon.
    std::vector<MessageBoxRequest> boxes(Icon icon) const
    {
        std::vector<MessageBoxRequest> found;
        for (const auto& s : t.prompts.shown)
            if (s.request.icon == icon)
                found.push_back(s.request);
        return found;
    }

    TestApp t;
    ServerProfile profile;
    QString session = QStringLiteral("luke.cfg");
    std::vector<int> pointers;
};

TEST_F(SessionFileTest, AFreshProfileAsAListenServerGivesTheWholeDefaultFile)
{
    EXPECT_TRUE(run());
    expectFile(file(), defaultFile());
    EXPECT_TRUE(boxes(Icon::Critical).empty());
    EXPECT_TRUE(boxes(Icon::Exclamation).empty());
    EXPECT_EQ(pointers.front(), 11) << "the hourglass while the file is written";
    EXPECT_EQ(profile.formPointer(), 0) << "and the pointer reset at the end";
}

TEST_F(SessionFileTest, TheServerRoadWritesTheSameFile)
{
    EXPECT_TRUE(run(false, false));
    expectFile(file(), defaultFile());
    EXPECT_EQ(profile.formPointer(), 0);
}

TEST_F(SessionFileTest, ARunReplacesTheOldFileWhole)
{
    writeFile(file(), QByteArray(20000, 'x'));
    EXPECT_TRUE(run());
    expectFile(file(), defaultFile());
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

QString L(const char* text) { return QString::fromUtf8(text); }

auto setText(const char* name, int index, const char* text)
{
    return [=](ServerProfile& p) { p.setText(FieldId{name, index}, QString::fromUtf8(text)); };
}

auto setValue(const char* name, int index, int value)
{
    return [=](ServerProfile& p) { p.setValue(FieldId{name, index}, value); };
}

const Variant identityCases[] = {
    {"EmptyMotdIsStillWritten", setText("txtServerConfig", 0, ""),
     {{L("seta g_motd \"Frag the weak, hurdle the dead...\""), {L("seta g_motd \"\"")}}}},
    {"HostName", setText("txtServerConfig", 2, "My Host"),
     {{L("seta sv_hostname \"\""), {L("seta sv_hostname \"My Host\"")}}}},
    {"AdminWithAQuotedKey", setText("txtServerConfig", 3, "Bob"),
     {after(L("seta sv_hostname \"\""), {L("sets \"Admin\" \"Bob\"")})}},
    {"EmptyDescriptiveFieldsAreLeftOut", setText("txtServerConfig", 4, ""),
     {{L("sets \"Admin E-Mail\" \"arena.steward@example.org\""), {}}}},
    {"KeysWithBlanksStay", setText("txtServerConfig", 8, "2 GHz"),
     {after(L("sets \"URL\" \"http://www.jk2files.com\""), {L("sets \"Server Spec\" \"2 GHz\"")})}},
    {"EmptyPortHasNoLineButTheNoteSays28070", setText("txtServerConfig", 12, ""),
     {{L("//seta net_port \"28070\""), {}}}},
    {"PortWithBlanksIsCommentedAsItStandsAndConvertedTrimmed", setText("txtServerConfig", 12, " 27960 "),
     {{L("//seta net_port \"28070\""), {L("//seta net_port \" 27960 \"")}},
      {L("// Port = 28070"), {L("// Port = 27960")}}}},
    {"BlanksOnlyPortCountsAsEmpty", setText("txtServerConfig", 12, "   "),
     {{L("//seta net_port \"28070\""), {L("//seta net_port \"   \"")}}}},
    {"AddressIsCommentedOutAndNoted", setText("txtServerConfig", 16, "10.0.0.5"),
     {after(L("seta g_password \"\""), {L("//seta net_ip \"10.0.0.5\"")}), {L("// IP = "), {L("// IP = 10.0.0.5")}}}},
    {"PrivatePassword", setText("txtServerConfig", 13, "p1"),
     {{L("seta sv_privatePassword \"\""), {L("seta sv_privatePassword \"p1\"")}}}},
    {"RemotePassword", setText("txtServerConfig", 14, "r1"),
     {{L("seta rconPassword \"\""), {L("seta rconPassword \"r1\"")}}}},
    {"ServerPasswordAsItStands", setText("txtServerConfig", 15, " x "),
     {{L("seta g_needpass \"0\""), {L("seta g_needpass \"1\"")}},
      {L("seta g_password \"\""), {L("seta g_password \" x \"")}}}},
    {"BlanksOnlyPasswordCountsAsNone", setText("txtServerConfig", 15, "   "), {}},
    {"SessionFieldAsTyped", setText("txtServerConfig", 1, "Other Name"),
     {{L("sets \"Config File\" \"Luke\""), {L("sets \"Config File\" \"Other Name\"")}}}},
};
INSTANTIATE_TEST_SUITE_P(Identity, SessionFileVariants, ::testing::ValuesIn(identityCases),
                         caseName<Variant>);

const Variant numberCases[] = {
    {"SpawnProtectIsNeverWritten", setText("txtServerConfigSpin", 3, "99"), {}},
    {"EmptyNumberIsLeftOut", setText("txtServerConfigSpin", 0, ""), {{L("seta sv_maxclients \"12\""), {}}}},
    {"NumberAsItStands", setText("txtServerConfigSpin", 17, "4x"),
     {{L("seta g_minGameClients \"0\""), {L("seta g_minGameClients \"4x\"")}}}},
    {"EmptySaberValueIsLeftOut", setText("txtAdvancedSaber", 1, ""), {{L("seta g_saberdmgvelocityscale \"0\""), {}}}},
    {"ClearSaberCheckWritesZero", setValue("chkAdvancedSaber", 2, 0),
     {{L("seta _saberalwaysboxtrace \"1\""), {L("seta _saberalwaysboxtrace \"0\"")}}}},
    {"MemoryRoundsHalfToEven", setText("txtServerConfigSpin", 11, "16.5"),
     {{L("seta com_zoneMegs \"16\""), {L("seta com_zoneMegs \"16.5\"")}}}},
    {"MemoryByLeadingNumber", setText("txtServerConfigSpin", 12, "17.5mb"),
     {{L("seta com_SoundMegs \"16\""), {L("seta com_SoundMegs \"17.5mb\"")}},
      {L("// SoundMegs = 16"), {L("// SoundMegs = 18")}}}},
    {"MemoryWithoutNumberIsZero", setText("txtServerConfigSpin", 5, "abc"),
     {{L("seta com_HunkMegs \"32\""), {L("seta com_HunkMegs \"abc\"")}},
      {L("// HunkMegs = 32"), {L("// HunkMegs = 0")}}}},
};
INSTANTIATE_TEST_SUITE_P(Numbers, SessionFileVariants, ::testing::ValuesIn(numberCases),
                         caseName<Variant>);

const Variant gameValueCases[] = {
    {"GravityLettersFallBack", setText("txtSpeed", 1, "abc"), {}},
    {"GravityOwnValue", setText("txtSpeed", 1, "350"), {{L("seta g_gravity \"800\""), {L("seta g_gravity \"350\"")}}}},
    {"SpeedZeroFallsBackTo280", setText("txtSpeed", 0, "0"),
     {{L("seta g_speed \"250\""), {L("seta g_speed \"280\"")}}}},
    {"SpeedLeadingNumberKeepsTheText", setText("txtSpeed", 0, "12abc"),
     {{L("seta g_speed \"250\""), {L("seta g_speed \"12abc\"")}}}},
    {"SpecTimeOutEmptyFallsBackTo180", setText("txtSpeed", 2, ""),
     {{L("seta g_timeouttospec \"70\""), {L("seta g_timeouttospec \"180\"")}}}},
    {"DismemberAboveZero", setText("txtSpeed", 3, "5"),
     {after(L("seta g_timeouttospec \"70\""), {L("seta g_dismember \"5\"")})}},
    {"DismemberLettersWriteNothing", setText("txtSpeed", 3, "abc"), {}},
    {"ForceRankLetters", setText("txtMaxForceRank", -1, "abc"), {}},
    {"ForceRankOwnValue", setText("txtMaxForceRank", -1, "7"),
     {{L("seta g_maxForceRank \"0\""), {L("seta g_maxForceRank \"7\"")}}}},
    {"ForceRegenZero", setText("txtForceReGen", 0, "0"), {}},
    {"MapTimeOutNegative", setText("txtMapTimeOut", -1, "-5"), {}},
    {"HolocronsZeroFallBackTo3", setText("txtMaxHolocronCarry", -1, "0"), {}},
    {"WeaponsStayIsWrittenAs5", setText("txtWeapRespawn", -1, "0"), {}},
    {"WeaponRespawnFraction", setText("txtWeapRespawn", -1, "0.5"),
     {{L("seta g_weaponrespawn \"5\""), {L("seta g_weaponrespawn \"0.5\"")}}}},
    {"KnockbackIsNotWritten", setText("txtKnockBack", -1, "abc"), {}},
    {"QuadFactorIsNotWritten", setText("txtWeaponEnhancer", -1, "9"), {}},
};
INSTANTIATE_TEST_SUITE_P(GameValues, SessionFileVariants, ::testing::ValuesIn(gameValueCases),
                         caseName<Variant>);

const Variant optionCases[] = {
    {"TickedOptionWritesOne", setValue("chkQuake3Specific", 0, 1),
     {{L("seta g_allowvote \"0\""), {L("seta g_allowvote \"1\"")}}}},
    {"DisableTheForceComesBeforeTheFlagLine", setValue("chkQuake3Specific", 17, 1),
     {{L("seta g_forcePowerDisable \"0\""), {L("seta g_forcePowerDisable \"1\"")}}}},
    {"JediVsMercTickedWritesNoLine", setValue("chkQuake3Specific", 18, 1), {{L("seta g_jediVmerc \"0\""), {}}}},
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
      {L("seta dmflags \"0\""), {L("seta dmflags \"40\"")}}}},
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
     {{L("seta fraglimit \"0\""), {L("seta fraglimit \"\"")}},
      {L("seta timelimit \"20\""), {L("seta timelimit \"\"")}},
      {L("seta capturelimit \"0\""), {L("seta capturelimit \"\"")}},
      {L("seta duel_fraglimit \"1\""), {L("seta duel_fraglimit \"\"")}}}},
};
INSTANTIATE_TEST_SUITE_P(Options, SessionFileVariants, ::testing::ValuesIn(optionCases),
                         caseName<Variant>);

const Variant loggingCases[] = {
    {"StatsEnabled", setValue("optLogging", 4, 1),
     {{L("seta g_statLog \"5\""), {L("seta g_statLog \"1\""), L("seta g_statLogFile \"stats.log\"")}},
      {L("seta g_log \"games.log\""), {}}}}, // the stats frame gives no second g_log
    {"NoGameLogging",
     [](ServerProfile& p) {
         p.setValue(F::optLogging(0), 1);
         p.setText(F::txtLogFileName, QStringLiteral("my.log"));
     },
     {{L("seta logfile \"3\""), {L("seta logfile \"0\"")}},
      {L("seta g_log \"games.log\""), {L("seta g_log \"my.log\"")}},
      {L("seta g_log \"games.log\""), {L("seta g_log \"my.log\"")}}}},
    {"NothingSelectedInEitherFrame",
     [](ServerProfile& p) {
         p.setValue(F::optLogging(3), 0);
         p.setValue(F::optLogging(5), 0);
     },
     {{L("seta logfile \"3\""), {}}, {L("seta g_log \"games.log\""), {}}, {L("seta g_statLog \"5\""), {}},
      {L("seta g_log \"games.log\""), {}}}},
};
INSTANTIATE_TEST_SUITE_P(Logging, SessionFileVariants, ::testing::ValuesIn(loggingCases),
                         caseName<Variant>);

const Variant mapCases[] = {
    {"FirstRowWhenNoStartingMap", [](ServerProfile& p) { p.setStartingMap(QString()); },
     {{L("Map ffa_bespin"), {L("Map ffa_bespin")}}}},
    {"StartingMapBeforeTheFirstRow", [](ServerProfile& p) { p.setStartingMap(QStringLiteral("ffa_yavin")); },
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
INSTANTIATE_TEST_SUITE_P(Maps, SessionFileVariants, ::testing::ValuesIn(mapCases),
                         caseName<Variant>);

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
    const QStringList masterBlock = {
        L("// ------------------- Additional Master Server List -------------------"),
        L("seta sv_master5 \"\""),
        L("seta sv_master4 \"master.jkhub.org\""),
        L("seta sv_master3 \"three.example.org:27950\""),
        L("seta sv_master2 \"master.jk2mv.org\""),
        L("seta sv_master1 \"one.example.org\""),
        L("// --------------------------------------------------------------------"),
        QString(),
    };
    expectFile(file(), changed(defaultFile(), {after(L("seta dmflags \"0\""), masterBlock)}));
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
    expectFile(file(), changed(defaultFile(), {{L("seta g_needpass \"0\""), {L("seta g_needpass \"1\"")}},
                                               {L("seta g_password \"\""), {L("seta g_password \"secret\"")}},
                                               after(L("exec \"jediMaps.cfg\""), added)}));
    EXPECT_TRUE(boxes(Icon::Exclamation).empty());
}

TEST_F(SessionFileTest, BotsWithoutAPasswordAreNotRefused)
{
    tick("chkBOTs", 0);
    set("txtServerConfigSpin", 6, QStringLiteral("2"));
    EXPECT_TRUE(run());
    const QStringList lines = crlfLines(file());
    EXPECT_EQ(lines.last(), QStringLiteral("//EOF"));
    EXPECT_TRUE(lines.contains(QStringLiteral("exec \"BOTFile.cfg\"")));
    EXPECT_TRUE(boxes(Icon::Exclamation).empty());
}

TEST_F(SessionFileTest, BotsWithoutANumberOfPlayersAreWarnedAboutAndNotExecuted)
{
    tick("chkBOTs", 0);
    set("txtServerConfigSpin", 6, QStringLiteral("0"));
    EXPECT_TRUE(run()) << "the server starts without the bots";
    const QStringList lines = crlfLines(file());
    EXPECT_EQ(lines.last(), QStringLiteral("//EOF"));
    EXPECT_FALSE(lines.contains(QStringLiteral("exec \"BOTFile.cfg\"")));
    EXPECT_EQ(boxes(Icon::Exclamation).size(), 1u);
}

TEST_F(SessionFileTest, APasswordRefusesEnabledBotsAndCutsTheFileOff)
{
    const QString refusal = QStringLiteral(
        "Arena Steward does not support adding BOT's to a password enabled server         \r\n"
        "either uncheck enable BOT's or remove password to continue         ");
    struct Case {
        const char* password;
        QStringList passwordLines;
    };
    const Case cases[] = {
        {"secret", {L("seta g_needpass \"1\""), L("seta g_password \"secret\"")}},
        {"   ", {L("seta g_needpass \"0\""), L("seta g_password \"\"")}}, // trimmed above, not here
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.password);
        t.prompts.shown.clear();
        tick("chkBOTs", 0);
        tick("chkBOTs", 5);
        set("txtServerConfig", 15, QString::fromLatin1(c.password));

        EXPECT_FALSE(run());
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        const MessageBoxRequest& box = t.prompts.last().request;
        EXPECT_EQ(box.text, refusal);
        EXPECT_EQ(box.title, QStringLiteral("Arena Steward"));
        EXPECT_EQ(box.icon, Icon::Exclamation);
        EXPECT_EQ(box.buttons, Buttons::Ok);
        expectFile(file(), upTo(changed(defaultFile(), {{L("seta g_needpass \"0\""), {c.passwordLines.at(0)}},
                                                        {L("seta g_password \"\""), {c.passwordLines.at(1)}}}),
                                L("exec \"jediMaps.cfg\"")));
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
    {"PortWithLetters", setText("txtServerConfig", 12, "28a70"),
     {{L("//seta net_port \"28070\""), {L("//seta net_port \"28a70\"")}}}, "// ZoneMegs = 16", err::TypeMismatch},
    {"HunkAbove32767", setText("txtServerConfigSpin", 5, "40000"),
     {{L("seta com_HunkMegs \"32\""), {L("seta com_HunkMegs \"40000\"")}}}, "// ZoneMegs = 16", err::Overflow},
    {"NoRotationAndNoStartingMap",
     [](ServerProfile& p) {
         p.field(F::lsvMapRotation).setRows({});
         p.setStartingMap(QString());
     },
     {}, "Map ffa_bespin", err::IndexOutOfBounds},
};

TEST_P(SessionFileErrors, EndTheFileWhereTheyHappenAndAreReported)
{
    const ErrorCase& c = GetParam();
    c.setup(profile);
    EXPECT_FALSE(run());
    expectFile(file(), before(changed(defaultFile(), c.changes), QString::fromLatin1(c.fileEndsBefore)));

    const auto critical = boxes(Icon::Critical);
    ASSERT_EQ(critical.size(), 1u);
    EXPECT_EQ(critical[0].title, QStringLiteral("arena-steward Error"));
    EXPECT_EQ(critical[0].buttons, Buttons::Ok);
    EXPECT_TRUE(critical[0].text.contains(QStringLiteral("Number: %1").arg(c.number)))
        << critical[0].text.toStdString();
    EXPECT_TRUE(critical[0].text.contains(kSource));

    const QString log = QString::fromLatin1(fileBytes(t.programFolder() + QStringLiteral("/arena-steward.log")));
    EXPECT_TRUE(log.contains(QStringLiteral("Error %1 in ").arg(c.number) + kTaggedSource))
        << log.toStdString();
    EXPECT_EQ(profile.formPointer(), 0);
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
    const auto critical = boxes(Icon::Critical);
    ASSERT_EQ(critical.size(), 1u);
    EXPECT_TRUE(critical[0].text.contains(QStringLiteral("Number: 76")));
    EXPECT_TRUE(QString::fromLatin1(fileBytes(t.programFolder() + QStringLiteral("/arena-steward.log")))
                    .contains(QStringLiteral("Error 76 in ") + kTaggedSource));
    EXPECT_EQ(profile.formPointer(), 0);
}

} // namespace
