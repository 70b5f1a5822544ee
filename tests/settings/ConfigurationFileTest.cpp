// Copies of the store in .asc files, taking them back, and the reset.
#include "commands/ConfigurationCommands.h"
#include "settings/ConfigurationFile.h"
#include "settings/SaveSettings.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"
#include "RecordingHost.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {

using Rows = QList<QPair<QString, QString>>;

class ConfigFile : public ::testing::Test {
protected:
    void store(const char* key, const QString& value) { t.store->SaveSetting(QString::fromLatin1(key), value); }
    QString stored(const char* key) const
    {
        return t.store->GetSetting(QString::fromLatin1(key), QStringLiteral("<absent>"));
    }
    QString ascFile() const { return t.root() + QStringLiteral("/mine.asc"); }
    void saveToFile()
    {
        t.prompts.chooseFile(ascFile());
        SaveConfiguration(*t.app);
    }
    /// Loads the file; what the store holds when the restart closes the windows.
    Rows loadAtRestart()
    {
        Rows atRestart;
        host.onClose = [&] { atRestart = t.store->GetAllSettings(); };
        t.prompts.chooseFile(ascFile());
        LoadConfiguration(*t.app, host);
        return atRestart;
    }

    TestApp t;
    RecordingHost host;
};

const QString kNotFound = QStringLiteral("Registry settings not found!") + kTail;

void expectDialog(const FakePrompts::Dialog& d, bool open, const char* title, const QString& folder)
{
    EXPECT_EQ(d.open, open);
    EXPECT_EQ(d.state.DialogTitle, QString::fromLatin1(title));
    EXPECT_EQ(d.state.Filter, QStringLiteral("Arena Steward Configuration (*asc)|*.asc"));
    EXPECT_EQ(d.state.DefaultExt, QStringLiteral("asc"));
    EXPECT_EQ(d.state.InitialDir, folder);
}

Box warning(const QString& text) { return {kProductTitle, Icon::Exclamation, text, Buttons::Ok}; }
Box information(const QString& text) { return {kProductTitle, Icon::Information, text, Buttons::Ok}; }

} // namespace

TEST(ConfigurationFields, AreReadAsAStreamOfPairs)
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
         {"LogName", "a", "b.log", "MsgTime", "5", "ServerInfo20", "1", "2"}},
    };
    for (const auto& [text, fields] : cases)
        EXPECT_EQ(readConfigurationFields(QString::fromLatin1(text)), fields) << text;
}

TEST(ConfigurationFields, FailWithoutPairs)
{
    const std::pair<const char*, int> cases[] = {
        {"", err::SubscriptOutOfRange},     {"a,1\r\nb\r\n", err::InputPastEnd},
        {"a,1\r\n\r\n", err::InputPastEnd}, {"a,1,b", err::InputPastEnd},
        {"a", err::InputPastEnd},
    };
    for (const auto& [text, number] : cases) {
        try {
            readConfigurationFields(QString::fromLatin1(text));
            ADD_FAILURE() << "no error for " << text;
        } catch (const RuntimeError& e) {
            EXPECT_EQ(e.number(), number) << text;
        }
    }
}

TEST_F(ConfigFile, SavingAnEmptyStoreSaysSoWithoutADialog)
{
    SaveConfiguration(*t.app);
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), warning(kNotFound)));
    EXPECT_TRUE(t.prompts.dialogs.empty());
}

TEST_F(ConfigFile, SaveWritesEveryKeyAsALine)
{
    store("MsgTime", QStringLiteral("5"));
    store("LogName", QStringLiteral("a,b.log"));
    store("ServerInfo15", QStringLiteral(" "));
    store("PathToJedi", QStringLiteral("/games/jk2/"));
    store("Empty", QString());
    saveToFile();

    ASSERT_EQ(t.prompts.dialogs.size(), 1u);
    expectDialog(t.prompts.dialogs[0], false, "Save Arena Steward configuration file", t.app->gameFolder);

    EXPECT_EQ(fileBytes(ascFile()),
              QByteArray("Empty,\r\nLogName,a,b.log\r\nMsgTime,5\r\nPathToJedi,/games/jk2/\r\nServerInfo15, \r\n"));
    EXPECT_EQ(QFile::permissions(ascFile()) & (QFileDevice::ReadOther | QFileDevice::ReadGroup), 0)
        << "the copy holds passwords";

    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      information(QStringLiteral("'") + ascFile() + QStringLiteral("' configuration saved") + kTail)));
}

TEST_F(ConfigFile, NoAtTheOverwriteQuestionWritesNothing)
{
    store("MsgTime", QStringLiteral("5"));
    writeFile(ascFile(), "old\r\n");
    t.prompts.answerNext(Answer::No);
    saveToFile();
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Question,
                                         QStringLiteral("Over-write existing file?") + kTail, Buttons::YesNo}));
    EXPECT_EQ(fileBytes(ascFile()), QByteArray("old\r\n"));

    t.prompts.answerNext(Answer::Yes);
    saveToFile();
    EXPECT_EQ(fileBytes(ascFile()), QByteArray("MsgTime,5\r\n"));
}

TEST_F(ConfigFile, ACancelledDialogEndsSilently)
{
    store("MsgTime", QStringLiteral("5"));
    t.prompts.cancelNextDialog();
    SaveConfiguration(*t.app);
    t.prompts.cancelNextDialog();
    EXPECT_EQ(LoadConfiguration(*t.app, host), StartupOutcome::MainWindowOpen);
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_EQ(host.closes, 0);
}

TEST_F(ConfigFile, AFileThatCannotBeWrittenGivesAWarning)
{
    store("MsgTime", QStringLiteral("5"));
    const QString path = t.root() + QStringLiteral("/no/such/folder/x.asc");
    t.prompts.chooseFile(path);
    SaveConfiguration(*t.app);
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      warning(QStringLiteral("Could not write ") + path + QStringLiteral(" (Path not found)"))));
}

TEST_F(ConfigFile, SaveThenLoadEmptiesABlankValueAndRestarts)
{
    store("ServerInfo15", QStringLiteral(" "));
    store("MsgTime", QStringLiteral("5"));
    saveToFile();
    store("MsgTime", QStringLiteral("9"));
    store("Other", QStringLiteral("kept"));
    const QString gameFolder = t.app->gameFolder;
    const Rows atRestart = loadAtRestart();

    ASSERT_GE(t.prompts.dialogs.size(), 2u) << "the restart may ask for the executable again";
    expectDialog(t.prompts.dialogs[1], true, "Load Arena Steward configuration file", gameFolder);

    ASSERT_GE(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(isBox(t.prompts.shown[1],
                      information(QStringLiteral("Arena Steward will now restart to load settings") + kTail)));
    EXPECT_GE(host.closes, 1) << "the restart closes the windows first";
    EXPECT_EQ(atRestart, (Rows{{QStringLiteral("MsgTime"), QStringLiteral("5")},
                               {QStringLiteral("Other"), QStringLiteral("kept")},
                               {QStringLiteral("ServerInfo15"), QString()}}));
}

TEST_F(ConfigFile, ARawValueWithACommaShiftsEveryLaterPair)
{
    store("LogName", QStringLiteral("a,b.log"));
    store("MsgTime", QStringLiteral("5"));
    store("ServerInfo20", QStringLiteral("1,2"));
    saveToFile();
    EXPECT_EQ(fileBytes(ascFile()), QByteArray("LogName,a,b.log\r\nMsgTime,5\r\nServerInfo20,1,2\r\n"));
    EXPECT_EQ(loadAtRestart(), (Rows{{QStringLiteral("1"), QStringLiteral("2")},
                                     {QStringLiteral("5"), QStringLiteral("ServerInfo20")},
                                     {QStringLiteral("LogName"), QStringLiteral("a")},
                                     {QStringLiteral("MsgTime"), QStringLiteral("5")},
                                     {QStringLiteral("ServerInfo20"), QStringLiteral("1,2")},
                                     {QStringLiteral("b.log"), QStringLiteral("MsgTime")}}));
}

TEST_F(ConfigFile, AFileThatFailsLeavesTheStoreUntouched)
{
    const struct {
        const char* name;
        QByteArray bytes;
        const char* text;
    } cases[] = {{"odd.asc", "LogName,x.log\r\nMsgTime\r\n", "The configuration file ends in the middle of a setting"},
                 {"empty.asc", "", "The configuration file holds no settings"},
                 {"missing.asc", {}, "Could not find %1"}};
    for (const auto& [name, bytes, text] : cases) {
        SCOPED_TRACE(name);
        TestApp app;
        RecordingHost windows;
        app.store->SaveSetting(QStringLiteral("LogName"), QStringLiteral("games.log"));
        const QString path = app.root() + QStringLiteral("/") + QString::fromLatin1(name);
        if (QByteArray(name) != "missing.asc")
            writeFile(path, bytes);
        app.prompts.chooseFile(path);
        EXPECT_EQ(LoadConfiguration(*app.app, windows), StartupOutcome::MainWindowOpen);
        ASSERT_EQ(app.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(app.prompts.last(), warning(QString::fromLatin1(text).arg(path))));
        EXPECT_EQ(windows.closes, 0) << "no restart";
        EXPECT_EQ(app.store->GetAllSettings(), (Rows{{QStringLiteral("LogName"), QStringLiteral("games.log")}}));
    }
}

TEST_F(ConfigFile, AKeyTheStoreRefusesEndsTheLoadAndKeepsWhatWasStored)
{
    writeFile(ascFile(), "A,1\r\n,2\r\nC,3\r\n");
    t.prompts.chooseFile(ascFile());
    EXPECT_EQ(LoadConfiguration(*t.app, host), StartupOutcome::MainWindowOpen);
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), warning(QStringLiteral("A setting needs a name"))));
    EXPECT_EQ(host.closes, 0);
    EXPECT_EQ(t.store->GetAllSettings(), (Rows{{QStringLiteral("A"), QStringLiteral("1")}}));
}

TEST_F(ConfigFile, TheSaveToolAsksFirstAndNoKeepsTheMark)
{
    ServerProfile profile;
    profile.setText(F::txtLogFileName, QStringLiteral("shown.log"));
    store("LogName", QStringLiteral("stored.log"));
    noteKeyPress(profile);
    t.prompts.answerNext(Answer::No);
    t.prompts.chooseFile(ascFile());
    UtilitiesConfigurationSave(*t.app, profile);
    EXPECT_TRUE(isBox(t.prompts.shown[0],
                      {kProductTitle, Icon::Question,
                       QStringLiteral("Configuration has changed, set as default?") + kTail, Buttons::YesNo}));
    EXPECT_TRUE(profile.configurationChanged());
    EXPECT_EQ(fileBytes(ascFile()), QByteArray("LogName,stored.log\r\n")) << "the store's older values";
}

TEST_F(ConfigFile, ResetAsksWithNoAsTheDefaultAndDeletesEveryKey)
{
    store("LogName", QStringLiteral("games.log"));
    store("PathToJedi", QStringLiteral("/games/jk2/"));
    store("RunOnce", QStringLiteral("1"));
    Rows atRestart{{QStringLiteral("not"), QStringLiteral("called")}};
    host.onClose = [&] { atRestart = t.store->GetAllSettings(); };
    t.prompts.answerNext(Answer::Yes);
    cmdReset_Click(*t.app, host);

    ASSERT_GE(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(isBox(t.prompts.shown[0],
                      {kProductTitle, Icon::Exclamation,
                       QStringLiteral("WARNING - All Arena Steward settings will be lost. It is         \r\n"
                                      "recommended that you backup your configuration first.         \r\n\r\n"
                                      "                  Do you wish to continue?         "),
                       Buttons::YesNo}));
    EXPECT_EQ(t.prompts.shown[0].request.defaultButton, 1);
    EXPECT_TRUE(isBox(t.prompts.shown[1], information(QStringLiteral("Arena Steward will now restart") + kTail)));
    EXPECT_TRUE(atRestart.isEmpty());
}

TEST_F(ConfigFile, ResetStopsAtAnythingButYes)
{
    store("LogName", QStringLiteral("games.log"));
    cmdReset_Click(*t.app, host); // the default button is No
    EXPECT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_EQ(t.prompts.last().answer, Answer::No);
    EXPECT_EQ(stored("LogName"), QStringLiteral("games.log"));
    EXPECT_EQ(host.closes, 0);
}

TEST_F(ConfigFile, ResetOfAnEmptyStoreAsksFirstThenSaysSo)
{
    t.prompts.answerNext(Answer::Yes);
    EXPECT_EQ(cmdReset_Click(*t.app, host), StartupOutcome::MainWindowOpen);
    ASSERT_EQ(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(isBox(t.prompts.shown[0], {kProductTitle, Icon::Exclamation, resetWarningText(), Buttons::YesNo}));
    EXPECT_TRUE(isBox(t.prompts.shown[1], warning(kNotFound)));
    EXPECT_EQ(host.closes, 0);
}

TEST_F(ConfigFile, AResetThatFailsSaysSoAndDoesNotRestart)
{
    // Run as any user, a real settings file can't be made to refuse a deletion while
    // it still lists its keys; this store does.
    struct StuckStore : SettingsStore {
        QString GetSetting(const QString&, const QString& d) const override { return d; }
        void SaveSetting(const QString&, const QString&) override {}
        void DeleteSetting(const QString&) override { raiseError(err::PathFileAccess); }
        bool HasSetting(const QString&) const override { return true; }
        Rows GetAllSettings() const override { return {{QStringLiteral("LogName"), QStringLiteral("games.log")}}; }
    } stuck;
    t.app->services.store = &stuck;
    t.prompts.answerNext(Answer::Yes);
    EXPECT_EQ(cmdReset_Click(*t.app, host), StartupOutcome::MainWindowOpen);
    ASSERT_EQ(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(isBox(t.prompts.last(), warning(QStringLiteral("Could not reset registry settings") + kTail)));
    EXPECT_EQ(host.closes, 0);
}
