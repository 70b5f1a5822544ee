// The settings: saving the profile and reading it back through a real settings file, the
// change mark with its question, copies of the store in .asc files, the reset, the reader's
// key families, defaults and failure road, the settings file itself and every stored key.
#include "commands/CancelCommand.h"
#include "commands/ConfigurationCommands.h"
#include "commands/Startup.h"
#include "model/Constants.h"
#include "model/FieldIndexes.h"
#include "model/OptionRules.h"
#include "model/RotationRows.h"
#include "model/ServerProfile.h"
#include "settings/ConfigurationFile.h"
#include "settings/MainSettings.h"
#include "settings/MemorySettingsStore.h"
#include "settings/PlainIniFormat.h"
#include "settings/Profiles.h"
#include "settings/SaveSettings.h"
#include "settings/SettingsStore.h"
#include "settings/StartKeys.h"
#include "settings/StoredKeys.h"
#include "support/ErrorBox.h"
#include "support/Errors.h"
#include "testkit/BoxExpect.h"
#include "testkit/Printers.h"
#include "testkit/TestApp.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <utility>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

using Rows = QList<QPair<QString, QString>>;

/// A window host that records what the restart asks of the windows.
class RecordingHost : public WindowHost {
public:
    ServerProfile* loadMainWindow() override { return profiles.emplace_back(std::make_unique<ServerProfile>()).get(); }
    void showMainWindow() override {}
    void unloadMainWindow() override {}
    void closeAllForms() override
    {
        ++closes;
        if (onClose)
            onClose();
    }
    void unloadScanner() override {}
    void minimizeMainWindow() override {}
    int closes = 0;
    std::function<void()> onClose; ///< runs when all windows are closed: the first thing a restart does
    std::vector<std::unique_ptr<ServerProfile>> profiles;
};

const QString kSaved = u"Settings have been saved"_s + kTail;
const QString kQuestion = u"Configuration has changed, set as default?"_s + kTail;
const QString kNotFound = u"Registry settings not found!"_s + kTail;

Box warning(const QString& text) { return {kProductTitle, Icon::Exclamation, text, Buttons::Ok}; }
Box information(const QString& text) { return {kProductTitle, Icon::Information, text, Buttons::Ok}; }
Box question(const QString& text) { return {kProductTitle, Icon::Question, text, Buttons::YesNo}; }

class Saving : public ::testing::Test {
protected:
    Saving() { attachOptionRules(*t.app, profile); }
    /// Keys and their values, in turn.
    template <class... Rest>
    void store(const char* key, const char* value, Rest... rest)
    {
        t.store->SaveSetting(QString::fromUtf8(key), QString::fromUtf8(value));
        if constexpr (sizeof...(rest) > 0)
            store(rest...);
    }
    void load() { GetMainSettings(*t.app, profile); }
    /// Fields and their texts or values, in turn.
    template <class... Rest>
    void expect(FieldId id, const char* text, Rest... rest) const
    {
        EXPECT_EQ(profile.text(id), QString::fromUtf8(text)) << id.key().toStdString();
        if constexpr (sizeof...(rest) > 0)
            expect(rest...);
    }
    template <class... Rest>
    void expect(FieldId id, int value, Rest... rest) const
    {
        EXPECT_EQ(profile.value(id), value) << id.key().toStdString();
        if constexpr (sizeof...(rest) > 0)
            expect(rest...);
    }
    /// The index of the selected option of an array, -1 for none.
    int selected(FieldArray name) const
    {
        for (Field* f : profile.array(name))
            if (f->isSet())
                return f->index();
        return -1;
    }
    /// A folder where the file should be: no write can replace it.
    void blockTheFile()
    {
        QFile::remove(t.storeFile());
        QDir().mkpath(t.storeFile());
    }
    QString stored(const char* key) const { return t.store->GetSetting(QString::fromLatin1(key), u"<absent>"_s); }
    /// Saves with the Defaults button, then loads the store into a new profile, as the next start does.
    ServerProfile& saveAndRestart()
    {
        cmdDefault_Click(*t.app, profile);
        next = std::make_unique<ServerProfile>();
        attachOptionRules(*t.app, *next);
        GetMainSettings(*t.app, *next);
        return *next;
    }
    QString ascFile() const { return t.root() + u"/mine.asc"_s; }
    void saveToFile()
    {
        t.prompts.chooseFile(ascFile());
        SaveConfiguration(*t.app);
    }
    /// Loads the file; what the store holds when the restart closes the windows.
    Rows loadAtRestart()
    {
        Rows atRestart{{"not", "called"}};
        host.onClose = [&] { atRestart = t.store->GetAllSettings(); };
        t.prompts.chooseFile(ascFile());
        LoadConfiguration(*t.app, host);
        return atRestart;
    }
    /// The boxes shown since the last look are this one alone; the next look starts afresh.
    ::testing::AssertionResult onlyBox(const Box& box)
    {
        const auto shown = std::exchange(t.prompts.shown, {});
        if (shown.size() != 1)
            return ::testing::AssertionFailure() << shown.size() << " boxes shown instead of one";
        return isBox(shown.front(), box);
    }
    void expectDialog(size_t index, bool open, const char* title) const
    {
        ASSERT_GT(t.prompts.dialogs.size(), index);
        const auto& d = t.prompts.dialogs[index];
        EXPECT_EQ(d.open, open);
        EXPECT_EQ(d.state.DialogTitle, QString::fromLatin1(title));
        EXPECT_EQ(d.state.Filter, u"Arena Steward Configuration (*asc)|*.asc"_s);
        EXPECT_EQ(d.state.DefaultExt, u"asc"_s);
        EXPECT_EQ(d.state.InitialDir, t.gameFolder());
    }
    TestApp t;
    ServerProfile profile;
    std::unique_ptr<ServerProfile> next;
    RecordingHost host;
};

// --- Saving the profile ---

TEST_F(Saving, TheDefaultsButtonSavesAndSaysSo)
{
    profile.setConfigurationChanged(true);
    profile.field(F::lstBannedIPs).setItems({"1.2.3.4", " 5.6.7.8 ", "a;b"});
    profile.field(F::lsvMapRotation).setRows({{"ffa_bespin", "Bespin Streets", "ffa"}, {"duel_pit"}});
    cmdDefault_Click(*t.app, profile);
    EXPECT_TRUE(onlyBox(information(kSaved)));
    EXPECT_FALSE(profile.configurationChanged());
    EXPECT_FALSE(t.store->HasSetting(u"Master1"_s));
    // Lists are written with a semicolon behind each item as it stands; an empty one is an empty text.
    EXPECT_EQ(stored("BannedIPs"), u"1.2.3.4; 5.6.7.8 ;a;b;"_s);
    EXPECT_EQ(stored("MapListSaved"), u"ffa_bespin;duel_pit;"_s);
    profile.field(F::lstBannedIPs).setItems({});
    profile.field(F::lsvMapRotation).setRows({});
    cmdDefault_Click(*t.app, profile);
    EXPECT_EQ(stored("BannedIPs"), QString());
    EXPECT_EQ(stored("MapListSaved"), QString());
}

TEST_F(Saving, OptionsAreStoredByIndexAndNameAndWithNoneSelectedTheOlderValueStands)
{
    // Every key's way back is in EveryKeyRoundTripTest; here, the forms stored.
    profile.setValue(F::optDefaultGameType(6), 1);
    profile.setValue(F::optStartMinimize, 1);
    profile.setValue(F::chkUseINI, 1);
    ServerProfile& after = saveAndRestart();
    EXPECT_EQ(stored("GameType"), u"6"_s);
    EXPECT_EQ(stored("AppMinimize"), u"optStartMinimize"_s);
    EXPECT_EQ(stored("SelectAdvMapCfg"), u"True"_s);
    EXPECT_TRUE(after.isSet(F::optDefaultGameType(6))) << "the last option of its array";
    TestApp other;
    other.store->SaveSetting(u"GameType"_s, u"5"_s);
    profile.setValue(F::optDefaultGameType(6), 0);
    profile.setValue(F::chkServerType(2), 0);
    cmdDefault_Click(*other.app, profile);
    EXPECT_EQ(other.store->GetSetting(u"GameType"_s), u"5"_s);
    EXPECT_FALSE(other.store->HasSetting(u"ServerType"_s));
}

TEST_F(Saving, CleanTextKeysComeBackRawOrDecodedAsTheReaderSays)
{
    // The keys and their fields; the first two are decoded on reading.
    const char* keys[] = {"ServerInfo10", "ServerInfo15",  "ServerInfo116", "Msg1",      "Msg2",       "Master2",
                          "Master5",      "PathToMapsCFG", "Quad",          "Knockback", "WeapRespawn"};
    const FieldId fields[] = {F::txtServerConfig(0), F::txtServerConfig(5), F::txtServerConfig(16), F::txtMsg(0),
                              F::txtMsg(1),          F::txtMaster2,         F::txtMaster5,          F::txtServerINI,
                              F::txtWeaponEnhancer,  F::txtKnockBack,       F::txtWeapRespawn};
    // Typed, stored, shown after a restart when decoded, and when not.
    const std::tuple<const char*, const char*, const char*, const char*> values[] = {
        {"a,b", "a%b", "a,b", "a%b"},
        {"", " ", "", " "},
        {"Welcome% all", "Welcome% all", "Welcome, all", "Welcome% all"},
        {" x ", " x ", " x ", " x "}};
    for (const auto& [typed, storedText, decodedText, raw] : values) {
        for (size_t i = 0; i < std::size(keys); ++i) {
            const auto [key, id, decoded] = std::tuple{keys[i], fields[i], i < 2};
            SCOPED_TRACE(std::string(key) + " <- '" + typed + "'");
            TestApp app;
            ServerProfile p;
            p.setText(id, QString::fromLatin1(typed));
            SaveMainSettings(*app.app, p);
            EXPECT_EQ(app.store->GetSetting(QString::fromLatin1(key)), QString::fromLatin1(storedText));
            ServerProfile after;
            GetMainSettings(*app.app, after);
            EXPECT_EQ(after.text(id), QString::fromLatin1(decoded ? decodedText : raw));
        }
    }
}

TEST_F(Saving, RawKeysKeepTheirCommasAndAnEmptyBoxOfAFamilyComesBackEmpty)
{
    profile.setText(F::txtLogFileName, u"a,b.log"_s);
    profile.setText(F::txtServerConfigSpin(0), u"1,2"_s);
    profile.setText(F::cboConfig(2), u"x,y.cfg"_s);
    profile.setText(F::txtServerConfig(5), QString());
    profile.setText(F::txtSpeed(0), QString());
    ServerProfile& after = saveAndRestart();
    for (const auto& [key, value] : {std::pair{"LogName", "a,b.log"}, {"ServerInfo20", "1,2"}, {"CFG12", "x,y.cfg"}})
        EXPECT_EQ(stored(key), QString::fromLatin1(value));
    EXPECT_EQ(after.text(F::txtLogFileName), u"a,b.log"_s);
    EXPECT_EQ(after.text(F::cboConfig(2)), u"x,y.cfg"_s);
    EXPECT_EQ(stored("ServerInfo15"), u" "_s);
    EXPECT_EQ(after.text(F::txtServerConfig(5)), QString());
    EXPECT_EQ(stored("SpeedGravity0"), QString());
    EXPECT_EQ(after.text(F::txtSpeed(0)), u"250"_s) << "an empty value counts as absent";
}

TEST_F(Saving, FieldsWithoutAKeyStartEveryRunFromTheirInitialState)
{
    for (const auto& [id, text] : {std::pair{F::txtMaster1, "edited.master"},
                                   {F::txtStatsLogName, "edited-stats.log"},
                                   {F::txtBOTThinkTime, "777"},
                                   {F::cboBOT, "Nightmare"},
                                   {F::cboStartingMap, "edited_map"}})
        profile.setText(id, QString::fromLatin1(text));
    profile.setValue(F::chkMapAutoCycle, 1);
    profile.setValue(F::optLogging(4), 1);
    profile.setValue(F::chkWeaponFlags(5), 1);
    ServerProfile& after = saveAndRestart();
    const QByteArray file = fileBytes(t.storeFile());
    for (const char* edited : {"edited", "777", "Nightmare", "Master1"})
        EXPECT_FALSE(file.contains(edited)) << edited;
    EXPECT_EQ(stored("LoggingType"), u"3"_s) << "the game log choice comes first";
    EXPECT_EQ(after.text(F::txtMaster1), kMaster1);
    EXPECT_EQ(after.text(F::txtStatsLogName), u"stats.log"_s);
    EXPECT_EQ(after.text(F::txtBOTThinkTime), u"100"_s);
    EXPECT_EQ(after.text(F::cboStartingMap), QString());
    EXPECT_FALSE(after.isSet(F::chkMapAutoCycle));
    EXPECT_TRUE(after.isSet(F::optLogging(5)));
    EXPECT_FALSE(after.isSet(F::optLogging(4)));
    EXPECT_EQ(after.text(F::txtWeaponFlags), u"32"_s) << "the mask follows its boxes";
}

TEST_F(Saving, AFailedSaveIsReportedAndStillSaysSaved)
{
    t.store->SaveSetting(u"LogName"_s, u"old.log"_s);
    blockTheFile();
    profile.setConfigurationChanged(true);
    cmdDefault_Click(*t.app, profile);
    ASSERT_EQ(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(isBox(t.prompts.shown[0],
                      errorBox(err::PathFileAccess, u"arena-steward::Code.SaveMainSettings(Sub) (arena-steward)"_s,
                               "Could not write the settings to " + t.storeFile())));
    EXPECT_TRUE(isBox(t.prompts.shown[1], information(kSaved)));
    EXPECT_FALSE(profile.configurationChanged());
}

TEST_F(Saving, TheChangeMarksQuestionBeforeOkAndBeforeSavingAFileAndCloseWithoutAWord)
{
    // At OK, No clears the mark without saving and asks no more; Yes saves.
    noteKeyPress(profile);
    t.prompts.answerNext(Answer::No);
    askSaveChangedConfiguration_Ok(*t.app, profile);
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), question(kQuestion)));
    EXPECT_FALSE(profile.configurationChanged());
    EXPECT_TRUE(t.store->GetAllSettings().isEmpty());
    askSaveChangedConfiguration_Ok(*t.app, profile);
    EXPECT_EQ(t.prompts.shown.size(), 1u) << "no second question";
    noteKeyPress(profile);
    t.prompts.answerNext(Answer::Yes);
    askSaveChangedConfiguration_Ok(*t.app, profile);
    EXPECT_EQ(t.prompts.texts(), (QStringList{kQuestion, kQuestion, kSaved}));
    EXPECT_FALSE(profile.configurationChanged());
    EXPECT_FALSE(t.store->GetAllSettings().isEmpty());
    // The save tool asks first; No leaves the mark and the file gets the store's older values.
    TestApp other;
    profile.setText(F::txtLogFileName, u"shown.log"_s);
    other.store->SaveSetting(u"LogName"_s, u"stored.log"_s);
    noteKeyPress(profile);
    other.prompts.answerNext(Answer::No);
    other.prompts.chooseFile(ascFile());
    UtilitiesConfigurationSave(*other.app, profile);
    EXPECT_TRUE(profile.configurationChanged());
    EXPECT_EQ(fileBytes(ascFile()), QByteArray("LogName,stored.log\r\n"));
    other.prompts.answerNext(Answer::Yes);
    askSaveChangedConfiguration_Save(*other.app, profile);
    EXPECT_EQ(other.prompts.texts().mid(2), (QStringList{kQuestion, kSaved}));
    EXPECT_EQ(other.prompts.texts().value(0), kQuestion) << "the save tool asks first";
    EXPECT_FALSE(profile.configurationChanged());
    // Close loses typed changes without a word.
    TestApp closing;
    profile.setText(F::txtServerConfig(0), u"typed"_s);
    noteKeyPress(profile);
    cmdCancel_Click(*closing.app, profile, host);
    EXPECT_EQ(host.closes, 1);
    EXPECT_TRUE(closing.prompts.shown.empty());
    EXPECT_TRUE(closing.store->GetAllSettings().isEmpty());
}

// --- Configuration files ---

TEST(ConfigurationFields, AreReadAsAStreamOfPairsAndFailWithoutPairs)
{
    const std::pair<const char*, QStringList> cases[] = {
        {"a,b\r\n", {"a", "b"}},
        {"a,b", {"a", "b"}},
        {"k, \r\n", {"k", ""}},
        {"  k,   v w \r\n", {"k", "v w "}},
        {"\"a,b\",c\r\n", {"a,b", "c"}},
        {"k,\"x\"tail,m,n\r\n", {"k", "x", "m", "n"}},
        {"a,b\nc,d\re,f\r\n", {"a", "b", "c", "d", "e", "f"}},
        {"k,\r\nm,n\r\n", {"k", "", "m", "n"}},
        {"LogName,a,b.log\r\nMsgTime,5\r\nServerInfo20,1,2\r\n",
         {"LogName", "a", "b.log", "MsgTime", "5", "ServerInfo20", "1", "2"}}};
    for (const auto& [text, fields] : cases)
        EXPECT_EQ(readConfigurationFields(QString::fromLatin1(text)), fields) << text;
    const std::pair<const char*, int> failures[] = {{"", err::SubscriptOutOfRange},
                                                    {"a,1\r\nb\r\n", err::InputPastEnd},
                                                    {"a,1\r\n\r\n", err::InputPastEnd},
                                                    {"a,1,b", err::InputPastEnd},
                                                    {"a", err::InputPastEnd}};
    for (const auto& [text, number] : failures) {
        try {
            readConfigurationFields(QString::fromLatin1(text));
            ADD_FAILURE() << "no error for " << text;
        } catch (const RuntimeError& e) {
            EXPECT_EQ(e.number(), number) << text;
        }
    }
}

TEST_F(Saving, SaveWritesEveryKeyAsAnOwnerOnlyLineAndAsksBeforeOverwriting)
{
    SaveConfiguration(*t.app);
    EXPECT_TRUE(onlyBox(warning(kNotFound))) << "an empty store says so without a dialog";
    EXPECT_TRUE(t.prompts.dialogs.empty());
    store("MsgTime", "5", "LogName", "a,b.log", "ServerInfo15", " ", "PathToJedi", "/games/jk2/", "Empty", "");
    saveToFile();
    expectDialog(0, false, "Save Arena Steward configuration file");
    EXPECT_EQ(fileBytes(ascFile()),
              QByteArray("Empty,\r\nLogName,a,b.log\r\nMsgTime,5\r\nPathToJedi,/games/jk2/\r\nServerInfo15, \r\n"));
    EXPECT_EQ(QFile::permissions(ascFile()) & (QFileDevice::ReadOther | QFileDevice::ReadGroup), 0)
        << "the copy holds passwords";
    EXPECT_TRUE(onlyBox(information("'" + ascFile() + "' configuration saved" + kTail)));
    t.store->DeleteSetting(u"Empty"_s);
    t.prompts.answerNext(Answer::No);
    saveToFile();
    EXPECT_TRUE(onlyBox(question("Over-write existing file?" + kTail)));
    EXPECT_TRUE(fileBytes(ascFile()).startsWith("Empty,")) << "No writes nothing";
    t.prompts.answerNext(Answer::Yes);
    saveToFile();
    EXPECT_TRUE(fileBytes(ascFile()).startsWith("LogName,"));
}

TEST_F(Saving, ACancelledDialogEndsSilentlyAndAFileThatCannotBeWrittenGivesAWarning)
{
    store("MsgTime", "5");
    t.prompts.cancelNextDialog();
    SaveConfiguration(*t.app);
    t.prompts.cancelNextDialog();
    EXPECT_EQ(LoadConfiguration(*t.app, host), StartupOutcome::MainWindowOpen);
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_EQ(host.closes, 0);
    const QString path = t.root() + u"/no/such/folder/x.asc"_s;
    t.prompts.chooseFile(path);
    SaveConfiguration(*t.app);
    EXPECT_TRUE(onlyBox(warning("Could not write " + path + " (Path not found)")));
}

TEST_F(Saving, SaveThenLoadEmptiesABlankValueAndRestarts)
{
    store("ServerInfo15", " ", "MsgTime", "5");
    saveToFile();
    store("MsgTime", "9", "Other", "kept");
    const Rows atRestart = loadAtRestart();
    expectDialog(1, true, "Load Arena Steward configuration file"); // the restart may ask for the executable again
    ASSERT_GE(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(isBox(t.prompts.shown[1], information("Arena Steward will now restart to load settings" + kTail)));
    EXPECT_GE(host.closes, 1) << "the restart closes the windows first";
    EXPECT_EQ(atRestart, (Rows{{"MsgTime", "5"}, {"Other", "kept"}, {"ServerInfo15", ""}}));
}

TEST(ConfigurationFile, AFileThatFailsLeavesTheStoreUntouched)
{
    const std::tuple<const char*, QByteArray, const char*> cases[] = {
        {"odd.asc", "LogName,x.log\r\nMsgTime\r\n", "The configuration file ends in the middle of a setting"},
        {"empty.asc", "", "The configuration file holds no settings"},
        {"missing.asc", {}, "Could not find %1"},
        {"refused.asc", "A,1\r\n,2\r\nC,3\r\n", "A setting needs a name"}}; // what was stored before it stays
    for (const auto& [name, bytes, text] : cases) {
        SCOPED_TRACE(name);
        TestApp app;
        RecordingHost windows;
        app.store->SaveSetting(u"LogName"_s, u"games.log"_s);
        const QString path = app.root() + u"/"_s + QString::fromLatin1(name);
        if (QByteArray(name) != "missing.asc")
            writeFile(path, bytes);
        app.prompts.chooseFile(path);
        EXPECT_EQ(LoadConfiguration(*app.app, windows), StartupOutcome::MainWindowOpen);
        ASSERT_EQ(app.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(app.prompts.last(), warning(QString::fromLatin1(text).replace(u"%1"_s, path))));
        EXPECT_EQ(windows.closes, 0) << "no restart";
        EXPECT_EQ(app.store->GetAllSettings(),
                  (QByteArray(name) == "refused.asc" ? Rows{{"A", "1"}, {"LogName", "games.log"}}
                                                     : Rows{{"LogName", "games.log"}}));
    }
}

TEST_F(Saving, ResetAsksWithNoAsTheDefaultAndDeletesEveryKeyOnlyAtYes)
{
    const Box warn{kProductTitle, Icon::Exclamation,
                   u"WARNING - All Arena Steward settings will be lost. It is         \r\n"
                   "recommended that you backup your configuration first.         \r\n\r\n"
                   "                  Do you wish to continue?         "_s,
                   Buttons::YesNo};
    t.prompts.answerNext(Answer::Yes);
    EXPECT_EQ(cmdReset_Click(*t.app, host), StartupOutcome::MainWindowOpen);
    ASSERT_EQ(t.prompts.texts(), (QStringList{warn.text, kNotFound})) << "an empty store says so";
    t.prompts.shown.clear();
    store("LogName", "games.log", "PathToJedi", "/games/jk2/", "RunOnce", "1");
    cmdReset_Click(*t.app, host);
    EXPECT_EQ(t.prompts.last().request.defaultButton, 1);
    EXPECT_EQ(t.prompts.last().answer, Answer::No);
    EXPECT_TRUE(onlyBox(warn));
    EXPECT_EQ(stored("LogName"), u"games.log"_s);
    EXPECT_EQ(host.closes, 0);
    Rows atRestart{{"not", "called"}};
    host.onClose = [&] { atRestart = t.store->GetAllSettings(); };
    t.prompts.answerNext(Answer::Yes);
    cmdReset_Click(*t.app, host);
    ASSERT_GE(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(isBox(t.prompts.shown[1], information("Arena Steward will now restart" + kTail)));
    EXPECT_TRUE(atRestart.isEmpty());
}

TEST_F(Saving, AResetThatFailsSaysSoAndDoesNotRestart)
{
    // Run as any user, a real settings file can't be made to refuse a deletion while it
    // still lists its keys; this store does.
    struct StuckStore : SettingsStore {
        QString GetSetting(const QString&, const QString& d) const override { return d; }
        void SaveSetting(const QString&, const QString&) override {}
        void DeleteSetting(const QString&) override { raiseError(err::PathFileAccess); }
        bool HasSetting(const QString&) const override { return true; }
        Rows GetAllSettings() const override { return {{"LogName", "games.log"}}; }
    } stuck;
    t.app->services.store = &stuck;
    t.prompts.answerNext(Answer::Yes);
    EXPECT_EQ(cmdReset_Click(*t.app, host), StartupOutcome::MainWindowOpen);
    ASSERT_EQ(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(isBox(t.prompts.last(), warning("Could not reset registry settings" + kTail)));
    EXPECT_EQ(host.closes, 0);
}

// --- Reading the store into the profile: key families, read rules, literal defaults, the fixed
// order and the failure road ---

using Load = Saving;

TEST_F(Load, AnEmptyStoreGivesTheFirstRunStateAndWritesNothing)
{
    profile.setText(F::lblMapsSelected, u"untouched"_s);
    load();
    // The computer's and the user's names fill the host and admin boxes.
    expect(F::txtServerConfig(2), "TESTHOST", F::txtServerConfig(3), "tester", F::txtServerConfig(12), "28070",
           F::lblMapsSelected, "untouched");
    EXPECT_EQ(selected(F::chkServerType), 2);
    EXPECT_EQ(selected(F::optLogging), 3);
    EXPECT_EQ(profile.value(F::optLogging(5)), 1) << "the stats choice starts from its initial state";
    EXPECT_TRUE(t.store->GetAllSettings().isEmpty()) << "reading writes nothing";
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(Load, ServerInfoIsDecodedButTheBoundAddress)
{
    // An empty ServerInfo12 gives the computer's name, a blank ServerInfo13 an empty box (not the
    // user's name), an empty ServerInfo19 leaves the box.
    t.names.computer = u"HOST"_s + QChar(0) + u"junk"_s;
    store("ServerInfo10", "Welcome% all", "ServerInfo12", "", "ServerInfo13", " ", "ServerInfo19", "", "ServerInfo114",
          " ", "ServerInfo116", "10.0.0.1%x", "ServerInfo111", "50%", "Msg1", "Hello% all", "Master2", " ");
    load();
    expect(F::txtServerConfig(0), "Welcome, all", F::txtServerConfig(2), "HOST", F::txtServerConfig(3), "",
           F::txtServerConfig(9), "Now and Then", F::txtServerConfig(14), "", F::txtServerConfig(16), "10.0.0.1%x",
           F::txtServerConfig(11), "50,", F::txtMsg(0), "Hello% all", F::txtMaster2, " ");
}

TEST_F(Load, FamiliesWithThePresentRuleLeaveFieldsAloneWhenEmptyOrAbsent)
{
    // No test of the text; WeaponFlags1 absent leaves its box, DMFlags1 absent clears its box,
    // CFG10 absent empties its box but not its list.
    profile.setValue(F::chkWeaponFlags(1), 1);
    profile.setValue(F::chkDMFlags(1), 1);
    profile.field(F::cboConfig(0)).setItems({u"server.cfg"_s});
    profile.setText(F::cboConfig(0), u"server.cfg"_s);
    store("ServerInfo20", "", "SpeedGravity1", "900", "GameLimts1", "abc", "AdvSaberValues0", "-1", "WeaponFlags3",
          "True", "WeaponFlags4", "1", "ForceFlags0", "true", "GameSpecificOptions0", "-1", "AdvSaber0", "False",
          "CFG11", "a,b.cfg", "BOTs0", "1.9", "BOTs1", "0.9");
    load();
    expect(F::txtServerConfigSpin(0), "12", F::txtSpeed(1), "900", F::txtGameLimits(1), "abc", F::txtAdvancedSaber(0),
           "-1", F::cboConfig(0), "", F::cboConfig(1), "a,b.cfg");
    expect(F::chkWeaponFlags(1), 1, F::chkDMFlags(1), 0, F::chkWeaponFlags(3), 1, F::chkWeaponFlags(4), 1,
           F::chkPowerUpFlags(0), 1, F::chkQuake3Specific(0), 1, F::chkAdvancedSaber(0), 0, F::chkAdvancedSaber(1), 1,
           F::chkBOTs(0), 1, F::chkBOTs(1), 0);
    EXPECT_EQ(profile.field(F::cboConfig(0)).items(), QStringList{u"server.cfg"_s});
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(Load, ListsAreSplitAtSemicolonsAndKeepTheirBlanks)
{
    store("BannedIPs", "1.2.3.4;;5.6.7.8; 9.9.9.9 ;   ;", "MapListSaved", "ffa_bespin;;duel_pit;");
    load();
    EXPECT_EQ(profile.field(F::lstBannedIPs).items(), (QStringList{"1.2.3.4", "5.6.7.8", " 9.9.9.9 "}));
    EXPECT_EQ(profile.field(F::lsvMapRotation).rows(),
              (QList<QStringList>{{"ffa_bespin", "", "", "", "imgMapNotSelected"},
                                  {"duel_pit", "", "", "", "imgMapNotSelected"}}))
        << "each restored row carries the common mark";
    EXPECT_EQ(profile.text(F::lblMapsSelected), u"2 Selected Maps"_s);
}

TEST_F(Load, OneStoredValueAndWhatItSelects)
{
    using Holds = std::function<bool(const ServerProfile&)>;
    const auto isSet = [](FieldId id) -> Holds { return [=](const ServerProfile& p) { return p.isSet(id); }; };
    const auto label = [](const char* text) -> Holds {
        return [=](const ServerProfile& p) { return p.text(F::lblMapsSelected) == QLatin1String(text); };
    };
    const Holds useIni = isSet(F::chkUseINI);
    const Holds noIni = [](const ServerProfile& p) { return p.value(F::chkUseINI) == 0; };
    const std::tuple<const char*, const char*, Holds> cases[] = {
        {"MapListSaved", "", label("untouched")}, // the rotation's label changes only for a stored text
        {"MapListSaved", " ; ;", label("0 Selected Maps")},
        {"AppMinimize", "optStartMinimize", isSet(F::optStartMinimize)}, // only the exact name selects Minimize
        {"AppMinimize", "optstartminimize", isSet(F::optStartClose)},
        {"AppMinimize", "", isSet(F::optStartClose)},
        {"SelectAdvMapCfg", "True", useIni}, // the saved cycle's box takes both stored forms
        {"SelectAdvMapCfg", "1", useIni},
        {"SelectAdvMapCfg", "False", noIni},
        {"SelectAdvMapCfg", "0", noIni},
        {"GameType", "4", isSet(F::optDefaultGameType(4))}, // options are selected by their index, not their Tag
        {"LoggingType", "1", isSet(F::optLogging(1))},
        {"ServerType", "1", isSet(F::chkServerType(1))}};
    for (const auto& [key, stored, holds] : cases) {
        SCOPED_TRACE(std::string(key) + " = '" + stored + "'");
        TestApp fresh;
        ServerProfile p;
        p.setText(F::lblMapsSelected, u"untouched"_s);
        p.setValue(F::chkUseINI, QByteArray(stored) == "True" || QByteArray(stored) == "1" ? 0 : 1);
        fresh.store->SaveSetting(QString::fromLatin1(key), QString::fromLatin1(stored));
        GetMainSettings(*fresh.app, p);
        EXPECT_TRUE(holds(p));
        EXPECT_TRUE(fresh.prompts.shown.empty());
    }
}

TEST_F(Load, EachAssignmentRunsTheOptionRules)
{
    t.app->serverExecutable = u"jk2Ded.exe"_s;
    store("WeaponFlags2", "True", "WeaponFlags17", "True", "DMFlags0", "True", "DMFlags2", "True",
          "GameSpecificOptions17", "True", "GameType", "3", "ServerType", "0");
    load();
    expect(F::txtWeaponFlags, "65531", F::txtDuelWeaponFlags, "4", F::txtDMFlags, "40", F::txtForceFlags, "262143");
    EXPECT_TRUE(profile.field(F::lblSaberModeDuel).isVisible());
    ASSERT_EQ(t.prompts.texts(), QStringList{u"Listen server not supported with jk2Ded.exe"_s + kTail});
    EXPECT_EQ(selected(F::chkServerType), 1);
}

TEST_F(Load, AFailureIsReportedAndEndsTheReading)
{
    // Each stored value fails its step; what comes before it is read, nothing after it.
    const std::tuple<const char*, int, const char*> cases[] = {
        {"abc", 13, ""}, // the standard description when empty
        {"9", 340, "Control array element 'optDefaultGameType(9)' doesn't exist"},
        {"", 13, ""},
        {"99999", 6, ""}};
    for (const auto& [value, number, description] : cases) {
        SCOPED_TRACE(value);
        TestApp fresh;
        ServerProfile p;
        for (const auto& [key, stored] :
             {std::pair{"GameType", value}, {"BannedIPs", "1.2.3.4;"}, {"LoggingType", "1"}, {"Msg1", "stored"}})
            fresh.store->SaveSetting(QString::fromLatin1(key), QString::fromLatin1(stored));
        GetMainSettings(*fresh.app, p);
        ASSERT_EQ(fresh.prompts.shown.size(), 1u);
        EXPECT_TRUE(
            isBox(fresh.prompts.last(), errorBox(number, u"arena-steward::Code.GetMainSettings(Sub) (arena-steward)"_s,
                                                 QString::fromLatin1(description))));
        const QString log = QString::fromLatin1(fileBytes(fresh.app->programFile(u"arena-steward.log"_s)));
        EXPECT_TRUE(log.contains(u"Error %1 in arena-steward::Code.GetMainSettings(Sub)"_s.arg(number)));
        EXPECT_EQ(p.field(F::lstBannedIPs).count(), 1) << "read before the failure";
        EXPECT_TRUE(p.isSet(F::optLogging(3))) << "no LoggingType";
        EXPECT_EQ(p.text(F::txtMaster4), kMaster4) << "no masters";
        EXPECT_EQ(p.text(F::txtMsg(0)), u"^2This Server was configured by ^1Arena Steward"_s);
        EXPECT_EQ(fresh.store->GetSetting(u"GameType"_s), QString::fromLatin1(value)) << "nothing is repaired";
    }
    store("WeaponFlags3", "yes", "DMFlags0", "True", "MapTimeOut", "60"); // a bad flag ends it at its family
    load();
    EXPECT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_EQ(profile.value(F::chkDMFlags(0)), 0);
    EXPECT_EQ(profile.text(F::txtMapTimeOut), u"300"_s);
}

// --- The settings file itself: plain strings in both directions, hand-edited files, the owner-only
// file mode, batches and a write that fails; where a profile's file lies, and a start's own
// copy of the exact texts of its boxes.
using StoreFile = Saving;

TEST_F(StoreFile, EveryTextAndKeyNameComesBackAsItWasSaved)
{
    // Split at '|'; the last two are a lone quote and a lone backslash.
    const QStringList values = u"a,b| |Welcome% all|  both ends  ||\"quoted\"|back\\slash|1.2.3.4;;5.6.7.8;|#hash|=x=y|"
                               "tab\there|two\r\nlines|@Variant(x)|C:\\Program Files\\Lucas Arts\\x|\\x41 is not A|"
                               "\u00fcmlaut|\"|\\"_s.split(u'|');
    // A configuration file read one field out of step turns values into key names.
    const QStringList keys = u"b.log|^2This server is configured by ^1Arena Steward|C:\\Program Files\\x|a/b|100%|x=y|"
                             "[section]"_s.split(u'|');
    for (qsizetype i = 0; i < values.size(); ++i)
        t.store->SaveSetting(u"K%1"_s.arg(i), values[i]);
    for (const QString& k : keys)
        t.store->SaveSetting(k, k + u"!"_s);
    IniSettingsStore reopened(t.storeFile());
    for (qsizetype i = 0; i < values.size(); ++i) {
        EXPECT_EQ(reopened.GetSetting(u"K%1"_s.arg(i), u"absent"_s), values[i]) << i;
        EXPECT_TRUE(reopened.HasSetting(u"K%1"_s.arg(i)));
    }
    const Rows all = reopened.GetAllSettings();
    EXPECT_EQ(all.size(), values.size() + keys.size());
    for (const QString& k : keys) {
        EXPECT_TRUE(all.contains({k, k + u"!"_s})) << k.toStdString();
        EXPECT_EQ(reopened.GetSetting(k), k + u"!"_s);
    }
}

TEST_F(StoreFile, AHandEditedFileIsReadAsItStands)
{
    writeFile(t.storeFile(), "; written by hand\r\n[Other]\r\nLogName=elsewhere\r\n[_Steward]\r\nLogName=a,b.log\r\n"
                             "Msg1=Hello, all\r\nBannedIPs=1.2.3.4;;5.6.7.8;\r\nQuoted=\"a,b\"\r\nHalf=\"a\",b\r\n"
                             "Stray=x\"y\r\nPathToJedi=C:\\Program Files\\Lucas Arts\\x\r\n"
                             "  Padded  =  value with blanks inside  \r\n# a comment\r\nEmpty=\r\nBlank=\" \"\r\n"
                             "no equals sign here\r\nLatin=caf\xe9\r\n");
    // Keys and their values, in turn.
    const QStringList expected =
        u"LogName|a,b.log|Msg1|Hello, all|BannedIPs|1.2.3.4;;5.6.7.8;|Quoted|a,b|Half|\"a\",b|"
        "Stray|x\"y|PathToJedi|C:\\Program Files\\Lucas Arts\\x|Padded|value with blanks inside|"
        "Empty||Blank| |Latin|caf\u00e9"_s.split(u'|');
    for (qsizetype i = 0; i < expected.size(); i += 2)
        EXPECT_EQ(t.store->GetSetting(expected[i], u"absent"_s), expected[i + 1]) << expected[i].toStdString();
    EXPECT_EQ(t.store->GetAllSettings().size(), expected.size() / 2);
    // A save keeps the hand-edited values and the other section.
    t.store->SaveSetting(u"MsgTime"_s, u"5"_s);
    IniSettingsStore reopened(t.storeFile());
    EXPECT_EQ(reopened.GetSetting(u"LogName"_s), u"a,b.log"_s);
    EXPECT_EQ(reopened.GetSetting(u"Half"_s), u"\"a\",b"_s);
    EXPECT_TRUE(fileBytes(t.storeFile()).contains("[Other]\nLogName=\"elsewhere\"\n"));
}

TEST_F(StoreFile, TheFileIsReadableByItsOwnerOnly)
{
    const auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    const auto all = ownerOnly | QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ReadOther |
                     QFileDevice::WriteOther | QFileDevice::ExeOwner;
    t.store->SaveSetting(u"rconPassword"_s, u"secret"_s);
    EXPECT_EQ(QFile(t.storeFile()).permissions() & all, ownerOnly);
    // A file that a user made readable for all is closed again by the next save.
    QFile(t.storeFile()).setPermissions(ownerOnly | QFileDevice::ReadGroup | QFileDevice::ReadOther);
    t.store->SaveSetting(u"MsgTime"_s, u"5"_s);
    EXPECT_EQ(QFile(t.storeFile()).permissions() & all, ownerOnly);
}

TEST_F(StoreFile, AWriteThatFailsThrowsAndTheNextOneWorks)
{
    t.store->SaveSetting(u"A"_s, u"1"_s);
    blockTheFile();
    try {
        t.store->SaveSetting(u"B"_s, u"2"_s);
        ADD_FAILURE() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::PathFileAccess);
        EXPECT_TRUE(e.description().contains(u"'B'"_s));
    }
    EXPECT_THROW(t.store->DeleteSetting(u"A"_s), RuntimeError);
    QDir().rmdir(t.storeFile());
    t.store->SaveSetting(u"C"_s, u"3"_s);
    IniSettingsStore reopened(t.storeFile());
    EXPECT_EQ(reopened.GetSetting(u"C"_s), u"3"_s);
    EXPECT_FALSE(reopened.HasSetting(u"B"_s)) << "a failed change is dropped, not kept for later";
}

TEST_F(StoreFile, TwoInstancesKeepEachOthersKeysAndDeleteRemovesOne)
{
    IniSettingsStore other(t.storeFile());
    t.store->SaveSetting(u"A"_s, u"1"_s);
    other.SaveSetting(u"B"_s, u"2"_s);
    {
        SettingsBatch batch(*t.store);
        t.store->SaveSetting(u"C"_s, u"3"_s);
        other.DeleteSetting(u"A"_s);
        batch.commit();
    }
    EXPECT_EQ(t.store->GetAllSettings(), (Rows{{"B", "2"}, {"C", "3"}}));
    t.store->DeleteSetting(u"C"_s);
    t.store->DeleteSetting(u"never there"_s);
    EXPECT_EQ(t.store->GetAllSettings(), (Rows{{"B", "2"}}));
}

TEST(PlainIniValue, QuotedStringsAndTheTextAsItStands)
{
    // Raw texts and what they are read as, in turn.
    const QStringList cases = u"\"a\\\\b\"|a\\b|\"\\\"\"|\"|\"\\x41\"|A|\"\\x4\"|\\x4|\"\\q\"|\\q|\"a\\\"|\"a\\\"|"
                              "\"|\"|\"\"||a\\nb|a\\nb|\"a\" \"b\"|\"a\" \"b\""_s.split(u'|');
    for (qsizetype i = 0; i < cases.size(); i += 2)
        EXPECT_EQ(unquotePlainIniValue(cases[i]), cases[i + 1]) << cases[i].toStdString();
    EXPECT_EQ(quotePlainIniValue(u"a\x01\"\\"_s), u"\"a\\x01\\\"\\\\\""_s);
}

TEST_F(StoreFile, ABatchWritesOnceAtItsEndAndKeepsWhatWasDoneBeforeAnError)
{
    t.store->SaveSetting(u"Old"_s, u"1"_s);
    {
        SettingsBatch batch(*t.store);
        for (int i = 0; i < 3; ++i)
            t.store->SaveSetting(u"K%1"_s.arg(i), QString::number(i));
        t.store->DeleteSetting(u"Old"_s);
        EXPECT_EQ(t.store->GetSetting(u"K2"_s), u"2"_s) << "the batch reads its own changes";
        batch.commit();
    }
    EXPECT_EQ(IniSettingsStore(t.storeFile()).GetAllSettings(), (Rows{{"K0", "0"}, {"K1", "1"}, {"K2", "2"}}));
    try { // an empty key name is refused; the batch left by the error keeps what was done
        SettingsBatch batch(*t.store);
        t.store->SaveSetting(u"A"_s, u"1"_s);
        t.store->SaveSetting(QString(), u"refused"_s);
        ADD_FAILURE() << "an empty key name was taken";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::InvalidProcedureCall);
    }
    EXPECT_EQ(IniSettingsStore(t.storeFile()).GetAllSettings().size(), 4);
    EXPECT_EQ(IniSettingsStore(t.storeFile()).GetSetting(u"A"_s), u"1"_s);
    SettingsBatch batch(*t.store);
    t.store->SaveSetting(u"B"_s, u"1"_s);
    blockTheFile();
    EXPECT_THROW(batch.commit(), RuntimeError) << "a batch that cannot be written throws at its commit";
}

TEST(ProfileNames, LettersDigitsDashAndUnderscoreUpTo32AndNotDefaultInProfilesBesideTheDefaultFile)
{
    for (const QString& name : {u"azAZ09-_"_s, u"z"_s, u"Z"_s, u"9"_s, QString(32, u'x'), u"defaults"_s})
        EXPECT_TRUE(validProfileName(name)) << name.toStdString();
    for (const QString& name : {QString(33, u'x'), QString(), u"a b"_s, u"a.b"_s, u"a/b"_s, u"\u00e9"_s, u"default"_s,
                                u"Default"_s, u"a@b"_s, u"a[b"_s, u"a`b"_s, u"a{b"_s})
        EXPECT_FALSE(validProfileName(name)) << name.toStdString();
    // A named profile lies in "profiles" beside the default file.
    QTemporaryDir dir;
    EXPECT_EQ(profileSettingsFile(dir.path(), QString()), dir.filePath(u"ArenaSteward.conf"_s));
    EXPECT_EQ(profileSettingsFile(dir.path(), u"default"_s), dir.filePath(u"ArenaSteward.conf"_s));
    EXPECT_EQ(profileSettingsFile(dir.path(), u"ctf"_s), dir.filePath(u"profiles/ctf.conf"_s));
    for (const char* name : {"ctf.conf", "duel.conf", "bad name.conf", "default.conf", "notes.txt"})
        writeFile(dir.filePath(u"profiles/"_s + QLatin1String(name)), "");
    EXPECT_EQ(namedProfiles(dir.path()), QStringList({"ctf", "duel"}));
}

// The store's own keys change the texts of the boxes (an empty box into a blank, a comma
// into "%"); a start's own copy gives them back exactly.
TEST(ExactTexts, TextAndComboBoxesComeBackAsTheyStood)
{
    ServerProfile started;
    started.setText(F::txtServerConfig(ServerBox::Address), QString());
    started.setText(F::txtServerConfig(ServerBox::HostName), u"Luke's, 100% \"fair\""_s);
    started.setText(F::cboConfig(0), u"my server.cfg"_s);
    MemorySettingsStore store;
    saveExactTexts(store, started);
    store.SaveSetting(u"Exact txtNoSuchBox(3)"_s, u"x"_s); // names no field: left alone
    ServerProfile restored;
    restored.setText(F::txtServerConfig(ServerBox::Address), u" "_s);
    restored.setText(F::cboConfig(0), u"other.cfg"_s);
    restoreExactTexts(store, restored);
    for (FieldId id :
         {F::txtServerConfig(ServerBox::Address), F::txtServerConfig(ServerBox::HostName), F::cboConfig(0)})
        EXPECT_EQ(restored.text(id), started.text(id)) << id.key().toStdString();
}

// --- Every key of the stored-key table, walked through the writer and the reader with a
// value that a first start doesn't give: what was saved into the real settings file
// comes back into a new profile, field by field. A key written under one spelling and
// read under another, or left out by either side, loses its value here.

// The fields behind a key: one, or every member of its array.
std::vector<Field*> fieldsOf(ServerProfile& profile, const StoredKey& key)
{
    return key.shape == KeyShape::One ? std::vector<Field*>{&profile.field(key.field)} : profile.array(key.array());
}

// What the store keeps of the key's fields, as one text.
QString stateOf(ServerProfile& profile, const StoredKey& key)
{
    QStringList states;
    for (const Field* field : fieldsOf(profile, key)) {
        QStringList state{field->text()};
        if (field->kind() == FieldKind::Check || field->kind() == FieldKind::Option)
            state = {QString::number(field->value())};
        else if (field->kind() == FieldKind::List)
            state = field->items();
        else if (field->kind() == FieldKind::Grid)
            for (int row = 0; row < field->count(); ++row)
                state << field->cell(row, 0);
        states << field->key() + u'=' + state.join(u'|');
    }
    return states.join(u' ');
}

// Gives every field of the key a state other than its own.
void changeAll(ServerProfile& profile, const StoredKey& key)
{
    const std::vector<Field*> fields = fieldsOf(profile, key);
    if (key.shape == KeyShape::Choice) {
        // Select the next member of the selected one's group (an array may hold more than
        // one group of options; the key keeps the first selected member).
        std::size_t selected = 0;
        while (selected + 1 < fields.size() && !fields[selected]->isSet())
            ++selected;
        for (std::size_t step = 1; step < fields.size(); ++step) {
            Field* next = fields[(selected + step) % fields.size()];
            if (next->definition().optionGroup == fields[selected]->definition().optionGroup) {
                next->setValue(1);
                break;
            }
        }
        return;
    }
    for (Field* field : fields) {
        if (field->kind() == FieldKind::Check || field->kind() == FieldKind::Option)
            field->setValue(field->isSet() ? 0 : 1);
        else if (field->kind() == FieldKind::List)
            field->setItems({u"10.0.0.1"_s, u"10.0.0.2"_s});
        else if (field->kind() == FieldKind::Grid)
            field->setRows({rotationRow(u"ffa_bespin"_s, {}, {}), rotationRow(u"ctf_yavin"_s, {}, {})});
        else
            field->setText(u"v%1 %2"_s.arg(key.text()).arg(field->index()));
    }
}

TEST(EveryStoredKey, ComesBackFromTheSettingsFileWithAValueOfItsOwn)
{
    TestApp t;
    // The option rules stay detached: each key is held to its own fields alone.
    ServerProfile first;
    GetMainSettings(*t.app, first);
    ServerProfile saved;
    GetMainSettings(*t.app, saved);
    for (const StoredKey& key : allStoredKeys())
        changeAll(saved, key);
    SaveMainSettings(*t.app, saved);
    ServerProfile loaded;
    GetMainSettings(*t.app, loaded);
    EXPECT_TRUE(t.prompts.shown.empty());
    ASSERT_FALSE(allStoredKeys().empty());
    for (const StoredKey& key : allStoredKeys()) {
        SCOPED_TRACE(key.name);
        EXPECT_NE(stateOf(saved, key), stateOf(first, key)) << "the value differs from a first start's";
        EXPECT_EQ(stateOf(loaded, key), stateOf(saved, key));
        if (key.shape == KeyShape::Each) {
            for (const Field* field : fieldsOf(saved, key))
                EXPECT_TRUE(t.store->HasSetting(key.text(field->index())));
        } else {
            EXPECT_TRUE(t.store->HasSetting(key.text()));
        }
    }
}

TEST(EveryStoredKey, IsSpeltOnceAndKeepsFieldsOfItsOwn)
{
    QStringList names;
    QStringList fields;
    ServerProfile profile;
    for (const StoredKey& key : allStoredKeys()) {
        EXPECT_FALSE(names.contains(key.text())) << key.name;
        names << key.text();
        for (const Field* field : fieldsOf(profile, key)) {
            EXPECT_FALSE(fields.contains(field->key())) << key.name << " shares " << field->key().toStdString();
            fields << field->key();
        }
    }
}

} // namespace
