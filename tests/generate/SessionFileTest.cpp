// The session file: every variant held line by line against the whole expected file, CR LF
// included, with the fixed clock of the test kit; the export command that writes and shows it.
#include "FileChanges.h"
#include "commands/CreateJediConfiguration.h"
#include "commands/ExportServer.h"
#include "commands/MapCycleCommands.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/ErrorBox.h"
#include "support/ProductText.h"
#include "testkit/BoxExpect.h"
#include "testkit/LaunchKit.h"

#include <QDir>
#include <functional>

using namespace steward;
using namespace steward::testing;

namespace {

const QString kTaggedSource = u"arena-steward::Code.CreateJediConfiguration(Function)"_s;
const QString kCreated = u"'luke.cfg' has been created         "_s;
const QString kMaps = u"exec \"jediMaps.cfg\""_s;
const QString kDefault = u"generate/luke.cfg"_s; // a Listen server whose rotation starts with ffa_bespin

class SessionFileTest : public ::testing::Test {
protected:
    SessionFileTest()
    {
        fresh();
        QObject::connect(&profile.field(F::MousePointer), &Field::valueChanged,
                         [this](Field* f) { pointers.push_back(f->value()); });
    }

    void fresh()
    {
        profile.resetAll();
        profile.setValue(F::chkServerType(0), 1);
        profile.field(F::lsvMapRotation).setRows({{u"ffa_bespin"_s}, {u"ffa_yavin"_s}});
        profile.setStartingMap(u"ffa_bespin"_s);
    }
    /// The file is the same on both roads; the export road starts no process.
    bool run(bool useSavedCycle = false, bool exportOnly = true)
    {
        return CreateJediConfiguration(*t.app, profile, exportOnly, useSavedCycle, session);
    }
    QString file() const { return t.baseFolder() + u"/"_s + session; }
    void set(const char* name, int index, const QString& text) { profile.setText(FieldId{name, index}, text); }
    void tick(const char* name, int index, int value = 1) { profile.setValue(FieldId{name, index}, value); }
    /// The one box shown is the run-time error box with this number; the log has it too.
    void expectErrorReported(int number, const QString& inner = u"arena-steward"_s)
    {
        EXPECT_TRUE(onlyBox(t, errorBox(number, kTaggedSource + u" (%1)"_s.arg(inner))));
        const QString log = QString::fromLatin1(fileBytes(t.programFolder() + u"/arena-steward.log"_s));
        EXPECT_TRUE(log.contains(u"Error %1 in "_s.arg(number) + kTaggedSource)) << log.toStdString();
        EXPECT_EQ(profile.formPointer(), 0);
    }

    TestApp t;
    ServerProfile profile;
    QString session = u"luke.cfg"_s;
    std::vector<int> pointers;
};

TEST_F(SessionFileTest, AFreshProfileGivesTheWholeDefaultFileOnBothRoads)
{
    writeFile(file(), QByteArray(20000, 'x')); // the old file is replaced whole
    EXPECT_TRUE(run());
    expectGolden(file(), kDefault);
    EXPECT_EQ(t.prompts.texts(), QStringList{kCreated}) << "the export's announcement alone";
    EXPECT_EQ(pointers.front(), 11) << "the hourglass while the file is written";
    EXPECT_EQ(profile.formPointer(), 0) << "and the pointer reset at the end";

    EXPECT_TRUE(run(false, false));
    expectGolden(file(), kDefault);
    EXPECT_EQ(profile.formPointer(), 0);
}

TEST_F(SessionFileTest, TheNameGetsUnderscoresAndLowerCaseAndTheBaseFolderIsFoundInAnyCase)
{
    ASSERT_TRUE(QDir(t.baseFolder()).removeRecursively());
    ASSERT_TRUE(QDir().mkpath(t.gameFolder() + u"BASE"_s));
    writeFile(t.gameFolder() + u"base"_s, "a file, not the folder");
    session = u"My Server.CFG"_s;
    EXPECT_TRUE(run());
    EXPECT_EQ(session, u"my_server.cfg"_s) << "for the caller too";
    expectGolden(t.gameFolder() + u"BASE/my_server.cfg"_s, kDefault);
    EXPECT_FALSE(QFile::exists(t.gameFolder() + u"BASE/My Server.CFG"_s));
}

TEST_F(SessionFileTest, FieldTextGoesOutAsItStandsInLatin1)
{
    set("txtServerConfig", 0, u"Say \"hi\" at the caf\u00e9"_s);
    EXPECT_TRUE(run());
    EXPECT_TRUE(fileBytes(file()).contains("seta g_motd \"Say \"hi\" at the caf\xe9\"\r\n"));
}

using Edit = std::function<void(ServerProfile&)>;
/// Fields set in order: boxes and options take the number, a grid the text as its one row (none when
/// empty), the others the text.
template <class... Rest>
Edit with(Rest... rest)
{
    std::vector<std::pair<FieldId, QString>> fields;
    const auto add = [&](auto self, FieldId id, const QString& text, auto... more) -> void {
        fields.emplace_back(id, text);
        if constexpr (sizeof...(more) > 0)
            self(self, more...);
    };
    add(add, rest...);
    return [=](ServerProfile& p) {
        for (const auto& [id, text] : fields) {
            Field& f = p.field(id);
            if (f.kind() == FieldKind::Check || f.kind() == FieldKind::Option)
                f.setValue(text.toInt());
            else if (f.kind() == FieldKind::Grid)
                f.setRows(text.isEmpty() ? QList<QStringList>{} : QList<QStringList>{{text}});
            else
                f.setText(text);
        }
    };
}
Edit cfg(int index, const char* text) { return with(F::txtServerConfig(index), text); }
Edit spin(int index, const char* text) { return with(F::txtServerConfigSpin(index), text); }
Edit speed(int index, const char* text) { return with(F::txtSpeed(index), text); }
Change line(const QString& was, const QString& is) { return {was, {is}}; }

// Each case changes the profile; its whole file is luke-<case>.cfg among the expected files.
struct Variant {
    const char* name;
    Edit setup;
};

void PrintTo(const Variant& v, std::ostream* os) { *os << v.name; }

class SessionFileVariants : public SessionFileTest, public ::testing::WithParamInterface<Variant> {};

TEST_P(SessionFileVariants, ChangeOnlyTheirOwnLines)
{
    GetParam().setup(profile);
    EXPECT_TRUE(run());
    expectGolden(file(), u"generate/luke-%1.cfg"_s.arg(QString::fromLatin1(GetParam().name)));
}

const Variant variants[] = {
    {"ServerInfo", with(F::txtServerConfig(0), "", F::txtServerConfig(1), "Other Name", F::txtServerConfig(2),
                        "My Host", F::txtServerConfig(3), "Bob", F::txtServerConfig(4), "", F::txtServerConfig(8),
                        "2 GHz", F::txtServerConfig(13), "p1", F::txtServerConfig(14), "r1", F::txtServerConfig(15),
                        " x ", F::txtServerConfig(16), "10.0.0.5")},
    {"Numbers", with(F::txtServerConfigSpin(0), "", F::txtServerConfigSpin(5), "abc", F::txtServerConfigSpin(11),
                     "16.5", F::txtServerConfigSpin(12), "17.5mb", F::txtServerConfigSpin(17), "4x",
                     F::txtAdvancedSaber(1), "", F::chkAdvancedSaber(2), "0")},
    {"Speeds", with(F::txtSpeed(0), "0", F::txtSpeed(1), "350", F::txtSpeed(2), "", F::txtSpeed(3), "5",
                    F::txtMaxForceRank, "7", F::txtWeapRespawn, "0.5")},
    {"Internet", with(F::chkServerType(0), "0", F::chkServerType(2), "1", F::txtMaster1, "  one.example.org  ",
                      F::txtMaster3, "three.example.org:27950")}, // the masters, trimmed
    {"Options", with(F::chkQuake3Specific(0), "1", F::chkQuake3Specific(17), "1", F::chkQuake3Specific(18), "1")},
    {"EmptyPort", cfg(12, "")},
    {"PortWithBlanks", cfg(12, " 27960 ")},
    {"BlankPort", cfg(12, "   ")},
    {"SpeedLeadingNumber", speed(0, "12abc")},
    {"Flags",
     with(F::txtWeaponFlags, "12", F::txtForceFlags, "131072", F::txtDMFlags, "40", F::txtDuelWeaponFlags, "4")},
    {"DuelWeapons", with(F::optDefaultGameType(3), "1", F::txtDuelWeaponFlags, "4")},
    {"EmptyLimits",
     with(F::txtGameLimits(0), "", F::txtGameLimits(1), "", F::txtGameLimits(2), "", F::txtGameLimits(3), "")},
    {"Stats", with(F::optLogging(4), "1")},
    {"NoGameLog", with(F::optLogging(0), "1", F::txtLogFileName, "my.log")},
    {"NoLogging", with(F::optLogging(3), "0", F::optLogging(5), "0")},
    {"StartingMapFirst", with(F::StartingMap, "ffa_yavin")},
    {"AutoCycle",
     with(F::chkMapAutoCycle, "1", F::lsvMapRotation, "", F::StartingMap, "", F::cboStartingMap, "ffa_raven")},
    {"MoreConfigs", with(F::cboConfig(0), "  first.cfg ", F::cboConfig(1), "   ", F::cboConfig(3), "my cfg.cfg")},
};
INSTANTIATE_TEST_SUITE_P(Lines, SessionFileVariants, ::testing::ValuesIn(variants), caseName<Variant>);

// Values that fall back or are never written, no starting map (the first row) and a LAN server (no
// masters) leave the file as it was.
TEST_F(SessionFileTest, FallBacksLeaveTheDefaultFile)
{
    for (const Edit& edit :
         {with(F::txtServerConfig(15), "   ", F::txtServerConfigSpin(3), "99", F::txtSpeed(1), "abc", F::txtSpeed(3),
               "abc", F::txtMaxForceRank, "abc", F::txtForceReGen(0), "0", F::txtMapTimeOut, "-5",
               F::txtMaxHolocronCarry, "0", F::txtWeapRespawn, "0", F::txtKnockBack, "abc", F::txtWeaponEnhancer, "9"),
          with(F::StartingMap, ""), with(F::chkServerType(0), "0", F::chkServerType(1), "1")}) {
        fresh();
        edit(profile);
        EXPECT_TRUE(run());
        expectGolden(file(), kDefault);
    }
}

TEST_F(SessionFileTest, ASavedCycleStartsWithItsMarkedMapAndIsExecuted)
{
    const QString saved = t.root() + u"/cycles/My Cycle.cfg"_s;
    writeFile(saved, "// an advanced cycle\r\n// ***    DO NOT DELETE MAP NAME ***\r\n//\r\n//ffa_raven\r\n");
    with(F::txtServerINI, saved, F::lsvMapRotation, "", F::StartingMap, "")(profile);
    const QString first = gbln_LoadMapCycle(*t.app, profile, saved); // what the cycle loader reads from the file

    EXPECT_TRUE(run(true));
    expectFile(file(), kDefault, {line("Map ffa_bespin", "Map " + first), line(kMaps, "exec \"My Cycle.cfg\"")});
    EXPECT_FALSE(QFile::exists(t.baseFolder() + u"/jediMaps.cfg"_s)) << "no cycle is made";
}

TEST_F(SessionFileTest, BotsAndBansAreExecutedExactlyWhenTheirFilesWereMade)
{
    // User-defined bots with a password don't refuse, and their file is executed.
    tick("chkBOTs", 5);
    set("txtServerConfig", 15, u"secret"_s);
    profile.field(F::lstBannedIPs).setItems({u"10.0.0.9"_s});
    EXPECT_TRUE(run());
    expectFile(file(), kDefault,
               {to("g_needpass", "1"), to("g_password", "secret"),
                after(kMaps, {"exec \"BOTFile.cfg\"", "exec \"BAN.cfg\""})});
    EXPECT_EQ(t.prompts.texts(), QStringList{kCreated}) << "the export's announcement alone";
    // Automatic bots without a number of players: the bot writer warns, its file is not executed.
    fresh();
    t.prompts.shown.clear();
    tick("chkBOTs", 0);
    set("txtServerConfigSpin", 6, u"0"_s);
    EXPECT_TRUE(run()) << "the server starts without the bots";
    expectGolden(file(), kDefault);
    EXPECT_EQ(t.prompts.shown.front().request.icon, Icon::Exclamation);
    EXPECT_EQ(t.prompts.shown.size(), 2u);
}

TEST_F(SessionFileTest, APasswordRefusesEnabledBotsAndCutsTheFileOff)
{
    const Box refusal{kProductTitle, Icon::Exclamation,
                      u"Arena Steward does not support adding BOT's to a password enabled server         \r\n"
                      "either uncheck enable BOT's or remove password to continue         "_s,
                      Buttons::Ok};
    const std::pair<const char*, std::vector<Change>> cases[] = {
        {"secret", {to("g_needpass", "1"), to("g_password", "secret")}}, {"   ", {}}, // trimmed above, not here
    };
    for (const auto& [password, changes] : cases) {
        SCOPED_TRACE(password);
        tick("chkBOTs", 0);
        tick("chkBOTs", 5);
        set("txtServerConfig", 15, QString::fromLatin1(password));
        EXPECT_FALSE(run());
        EXPECT_TRUE(onlyBox(t, refusal));
        expectFile(file(), cutAt(changed(goldenLines(kDefault), changes), kMaps, true));
        EXPECT_EQ(profile.formPointer(), 11) << "the hourglass stays after a refusal";
    }
    tick("chkBOTs", 0, 0);
    tick("chkBOTs", 5, 0);
    EXPECT_TRUE(run());
    EXPECT_EQ(profile.formPointer(), 0) << "the next run puts the pointer back";
}

// A run-time error ends the file where it happened, reports with the routine's tag and
// gives false; the complete lines written before it stay on disk.
TEST_F(SessionFileTest, ARunTimeErrorEndsTheFileWhereItHappensAndIsReported)
{
    const struct {
        Edit setup;
        std::vector<Change> changes; ///< of the default file, before it is cut
        const char* fileEndsBefore;
        int number;
    } cases[] = {
        {cfg(12, "28a70"),
         {line("//seta net_port \"28070\"", "//seta net_port \"28a70\"")},
         "// ZoneMegs = 16",
         err::TypeMismatch},
        {spin(5, "40000"), {to("com_HunkMegs", "40000")}, "// ZoneMegs = 16", err::Overflow},
        {with(F::lsvMapRotation, "", F::StartingMap, ""), {}, "Map ffa_bespin", err::IndexOutOfBounds},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.number);
        fresh();
        c.setup(profile);
        EXPECT_FALSE(run());
        expectFile(file(),
                   cutAt(changed(goldenLines(kDefault), c.changes), QString::fromLatin1(c.fileEndsBefore), false));
        expectErrorReported(c.number);
    }
}

TEST_F(SessionFileTest, AMissingBaseFolderIsThePathNotFoundRoad)
{
    ASSERT_TRUE(QDir(t.baseFolder()).removeRecursively());
    tick("chkMapAutoCycle", -1); // no cycle file, so the session file is the first to miss the folder
    session = u"Luke.cfg"_s;
    EXPECT_FALSE(run());
    EXPECT_EQ(session, u"luke.cfg"_s) << "the name was already changed";
    EXPECT_FALSE(QFile::exists(t.gameFolder() + u"Base/luke.cfg"_s));
    expectErrorReported(err::PathNotFound, t.gameFolder() + u"Base/luke.cfg"_s);
}

// The export command: each failed check with its wording and page, then the written file
// announced and shown, nothing started and the change mark left alone.
TEST_F(SessionFileTest, ExportChecksTheSessionAndTheMapsThenWritesAndShowsTheFile)
{
    CountingLauncher launcher;
    t.app->services.launcher = &launcher;
    const QString gone = t.root() + u"/gone.cfg"_s;
    const struct {
        Edit setup;
        QString text;
        int page;
    } cases[] = {
        {with(F::txtServerConfig(1), ""), u"A Session name is required"_s, 0},
        {with(F::txtServerConfig(1), "a<b"), u"Invalid session name, you cannot use \\/:*?<>| in a session name"_s, 3},
        {with(F::chkMapAutoCycle, "0", F::chkUseINI, "1", F::txtServerINI, gone),
         "Selected Map List " + gone + " is missing, please define a new map list", 2},
        {with(F::chkMapAutoCycle, "0"), u"No Maps have been selected"_s, 2},
        {with(F::chkMapAutoCycle, "0", F::lsvMapRotation, "ffa_bespin"), u"No Starting Map has been selected"_s, 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text.toStdString());
        profile.resetAll();
        profile.setValue(F::chkMapAutoCycle, 1);
        profile.setValue(F::vsMainTab, 3);
        c.setup(profile);
        mnuExportServer_Click(*t.app, profile);
        EXPECT_TRUE(onlyBox(t, {kProductTitle, Icon::Exclamation, c.text + kTail, Buttons::Ok}));
        EXPECT_EQ(profile.value(F::vsMainTab), c.page);
    }
    EXPECT_TRUE(t.opener.opened.empty());

    profile.resetAll();
    profile.setValue(F::chkMapAutoCycle, 1);
    profile.setText(F::txtServerConfig(1), u"My Server"_s);
    profile.setConfigurationChanged(true);
    profile.setFormPointer(pointer::Hourglass);
    mnuExportServer_Click(*t.app, profile);
    EXPECT_TRUE(
        onlyBox(t, {kProductTitle, Icon::Information, "'my_server.cfg' has been created" + kTail, Buttons::Ok}));
    EXPECT_EQ(t.opener.opened, std::vector<QUrl>{QUrl::fromLocalFile(t.baseFolder() + u"/my_server.cfg"_s)});
    EXPECT_EQ(launcher.starts, 0);
    EXPECT_TRUE(profile.configurationChanged()) << "an export leaves the change mark alone";
    EXPECT_EQ(profile.formPointer(), pointer::Default);
}

} // namespace
