// Saving the profile, the writer held against the reader through a real settings file,
// and the change mark with its question.
#include "settings/MainSettings.h"
#include "commands/CancelCommand.h"
#include "commands/ConfigurationCommands.h"
#include "settings/SaveSettings.h"
#include "model/Constants.h"
#include "model/OptionRules.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "support/ErrorBox.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"
#include "RecordingHost.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {

class Save : public ::testing::Test {
protected:
    Save() { attachOptionRules(*t.app, profile); }

    QString stored(const QString& key) const { return t.store->GetSetting(key, QStringLiteral("<absent>")); }
    QString stored(const char* key) const { return stored(QString::fromLatin1(key)); }

    /// Saves with the Defaults button, then loads the store into a new profile, as the
    /// next start does.
    ServerProfile& saveAndRestart()
    {
        cmdDefault_Click(*t.app, profile);
        next = std::make_unique<ServerProfile>();
        attachOptionRules(*t.app, *next);
        GetMainSettings(*t.app, *next);
        return *next;
    }

    TestApp t;
    ServerProfile profile;
    std::unique_ptr<ServerProfile> next;
};

const QString kSaved = QStringLiteral("Settings have been saved") + kTail;
const QString kQuestion = QStringLiteral("Configuration has changed, set as default?") + kTail;

} // namespace

TEST_F(Save, TheDefaultsButtonSavesAndSaysSo)
{
    profile.setConfigurationChanged(true);
    profile.field(F::lstBannedIPs).setItems({QStringLiteral("1.2.3.4"), QStringLiteral(" 5.6.7.8 ")});
    profile.field(F::lsvMapRotation)
        .setRows({{QStringLiteral("ffa_bespin"), QStringLiteral("Bespin Streets"), QStringLiteral("ffa")},
                  {QStringLiteral("duel_pit")}});
    cmdDefault_Click(*t.app, profile);

    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Information, kSaved, Buttons::Ok}));
    EXPECT_FALSE(profile.configurationChanged());
    EXPECT_FALSE(t.store->HasSetting(QStringLiteral("Master1")));
    // Lists are written with a semicolon behind each item; an empty one is an empty text.
    EXPECT_EQ(stored("BannedIPs"), QStringLiteral("1.2.3.4; 5.6.7.8 ;"));
    EXPECT_EQ(stored("MapListSaved"), QStringLiteral("ffa_bespin;duel_pit;"));
    profile.field(F::lstBannedIPs).setItems({});
    profile.field(F::lsvMapRotation).setRows({});
    cmdDefault_Click(*t.app, profile);
    EXPECT_EQ(stored("BannedIPs"), QString());
    EXPECT_EQ(stored("MapListSaved"), QString());
}

TEST_F(Save, TheOptionsOfTheWindowAreStoredByIndexAndName)
{
    // Every key's way back is in EveryKeyRoundTripTest; here, the forms stored.
    profile.setValue(F::optDefaultGameType(6), 1);
    profile.setValue(F::optStartMinimize, 1);
    profile.setValue(F::chkUseINI, 1);
    ServerProfile& after = saveAndRestart();
    EXPECT_EQ(stored("GameType"), QStringLiteral("6"));
    EXPECT_EQ(stored("AppMinimize"), QStringLiteral("optStartMinimize"));
    EXPECT_EQ(stored("SelectAdvMapCfg"), QStringLiteral("True"));
    EXPECT_TRUE(after.isSet(F::optDefaultGameType(6))) << "the last option of its array";
}

TEST_F(Save, WithNoOptionSelectedTheOlderValueStands)
{
    t.store->SaveSetting(QStringLiteral("GameType"), QStringLiteral("5"));
    profile.setValue(F::optDefaultGameType(0), 0);
    profile.setValue(F::chkServerType(2), 0);
    cmdDefault_Click(*t.app, profile);
    EXPECT_EQ(stored("GameType"), QStringLiteral("5"));
    EXPECT_EQ(stored("ServerType"), QStringLiteral("<absent>"));
}

TEST_F(Save, CleanTextKeysComeBackRawOrDecodedAsTheReaderSays)
{
    // Key, field, index, decoded on reading.
    struct Row {
        const char* key;
        const char* field;
        int index;
        bool decoded;
        FieldId id() const { return FieldId{field, index}; }
    };
    const Row rows[] = {
        {"ServerInfo10", "txtServerConfig", 0, true},
        {"ServerInfo15", "txtServerConfig", 5, true},
        {"ServerInfo116", "txtServerConfig", 16, false},
        {"Msg1", "txtMsg", 0, false},
        {"Msg2", "txtMsg", 1, false},
        {"Master2", "txtMaster2", -1, false},
        {"Master5", "txtMaster5", -1, false},
        {"PathToMapsCFG", "txtServerINI", -1, false},
        {"Quad", "txtWeaponEnhancer", -1, false},
        {"Knockback", "txtKnockBack", -1, false},
        {"WeapRespawn", "txtWeapRespawn", -1, false},
    };
    // Typed, stored, shown after a restart when decoded, and when not.
    struct Value {
        const char* typed;
        const char* stored;
        const char* decoded;
        const char* raw;
    };
    const Value values[] = {{"a,b", "a%b", "a,b", "a%b"},
                            {"", " ", "", " "},
                            {"Welcome% all", "Welcome% all", "Welcome, all", "Welcome% all"},
                            {" x ", " x ", " x ", " x "}};
    for (const Value& v : values) {
        for (const Row& r : rows) {
            SCOPED_TRACE(std::string(r.key) + " <- '" + v.typed + "'");
            TestApp app;
            ServerProfile p;
            p.setText(r.id(), QString::fromLatin1(v.typed));
            SaveMainSettings(*app.app, p);
            EXPECT_EQ(app.store->GetSetting(QString::fromLatin1(r.key)), QString::fromLatin1(v.stored));
            ServerProfile after;
            GetMainSettings(*app.app, after);
            EXPECT_EQ(after.text(r.id()), QString::fromLatin1(r.decoded ? v.decoded : v.raw));
        }
    }
}

TEST_F(Save, RawKeysKeepTheirCommas)
{
    profile.setText(F::txtLogFileName, QStringLiteral("a,b.log"));
    profile.setText(F::txtServerConfigSpin(0), QStringLiteral("1,2"));
    profile.setText(F::cboConfig(2), QStringLiteral("x,y.cfg"));
    ServerProfile& after = saveAndRestart();
    EXPECT_EQ(stored("LogName"), QStringLiteral("a,b.log"));
    EXPECT_EQ(stored("ServerInfo20"), QStringLiteral("1,2"));
    EXPECT_EQ(stored("CFG12"), QStringLiteral("x,y.cfg"));
    EXPECT_EQ(after.text(F::txtLogFileName), QStringLiteral("a,b.log"));
    EXPECT_EQ(after.text(F::cboConfig(2)), QStringLiteral("x,y.cfg"));
}

TEST_F(Save, AnEmptyBoxOfAFamilyComesBackEmpty)
{
    profile.setText(F::txtServerConfig(5), QString());
    profile.setText(F::txtSpeed(0), QString());
    ServerProfile& after = saveAndRestart();
    EXPECT_EQ(stored("ServerInfo15"), QStringLiteral(" "));
    EXPECT_EQ(after.text(F::txtServerConfig(5)), QString());
    EXPECT_EQ(stored("SpeedGravity0"), QString());
    EXPECT_EQ(after.text(F::txtSpeed(0)), QStringLiteral("250")) << "an empty value counts as absent";
}

TEST_F(Save, FieldsWithoutAKeyStartEveryRunFromTheirInitialState)
{
    profile.setText(F::txtMaster1, QStringLiteral("edited.master"));
    profile.setText(F::txtStatsLogName, QStringLiteral("edited-stats.log"));
    profile.setText(F::txtBOTThinkTime, QStringLiteral("777"));
    profile.setText(F::cboBOT, QStringLiteral("Nightmare"));
    profile.setText(F::cboStartingMap, QStringLiteral("edited_map"));
    profile.setValue(F::chkMapAutoCycle, 1);
    profile.setValue(F::optLogging(4), 1);
    profile.setValue(F::chkWeaponFlags(5), 1);
    ServerProfile& after = saveAndRestart();

    const QByteArray file = fileBytes(t.storeFile());
    for (const char* edited : {"edited", "777", "Nightmare", "Master1"})
        EXPECT_FALSE(file.contains(edited)) << edited;
    EXPECT_EQ(stored("LoggingType"), QStringLiteral("3")) << "the game log choice comes first";
    EXPECT_EQ(after.text(F::txtMaster1), kMaster1);
    EXPECT_EQ(after.text(F::txtStatsLogName), QStringLiteral("stats.log"));
    EXPECT_EQ(after.text(F::txtBOTThinkTime), QStringLiteral("100"));
    EXPECT_EQ(after.text(F::cboStartingMap), QString());
    EXPECT_FALSE(after.isSet(F::chkMapAutoCycle));
    EXPECT_TRUE(after.isSet(F::optLogging(5)));
    EXPECT_FALSE(after.isSet(F::optLogging(4)));
    EXPECT_EQ(after.text(F::txtWeaponFlags), QStringLiteral("32")) << "the mask follows its boxes";
}

TEST_F(Save, ListItemsComeBackAsTheSplitSeesThem)
{
    profile.field(F::lstBannedIPs).setItems({QStringLiteral("1.1.1.1;2.2.2.2"), QStringLiteral("   ")});
    profile.field(F::lsvMapRotation).setRows({{QStringLiteral("a;b")}, {QStringLiteral(" ")}});
    ServerProfile& after = saveAndRestart();
    EXPECT_EQ(after.field(F::lstBannedIPs).items(),
              (QStringList{QStringLiteral("1.1.1.1"), QStringLiteral("2.2.2.2")}));
    const Field& rotation = after.field(F::lsvMapRotation);
    ASSERT_EQ(rotation.count(), 2);
    EXPECT_EQ(rotation.cell(0, 0), QStringLiteral("a"));
    EXPECT_EQ(rotation.cell(1, 0), QStringLiteral("b"));
    EXPECT_EQ(after.text(F::lblMapsSelected), QStringLiteral("2 Selected Maps"));
}

TEST_F(Save, AFailedSaveIsReportedAndStillSaysSaved)
{
    t.store->SaveSetting(QStringLiteral("LogName"), QStringLiteral("old.log"));
    QFile::remove(t.storeFile());
    QDir().mkpath(t.storeFile()); // the file can't be replaced
    profile.setConfigurationChanged(true);
    cmdDefault_Click(*t.app, profile);
    ASSERT_EQ(t.prompts.shown.size(), 2u);
    EXPECT_TRUE(
        isBox(t.prompts.shown[0],
              errorBox(err::PathFileAccess, QStringLiteral("arena-steward::Code.SaveMainSettings(Sub) (arena-steward)"),
                       QStringLiteral("Could not write the settings to ") + t.storeFile())));
    EXPECT_TRUE(isBox(t.prompts.shown[1], {kProductTitle, Icon::Information, kSaved, Buttons::Ok}));
    EXPECT_FALSE(profile.configurationChanged());
}

TEST_F(Save, NoAtTheOkQuestionClearsTheMarkWithoutSavingAndYesSaves)
{
    noteKeyPress(profile);
    t.prompts.answerNext(Answer::No);
    askSaveChangedConfiguration_Ok(*t.app, profile);
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Question, kQuestion, Buttons::YesNo}));
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
}

TEST_F(Save, NoBeforeSavingAConfigurationFileLeavesTheMark)
{
    noteKeyPress(profile);
    t.prompts.answerNext(Answer::No);
    askSaveChangedConfiguration_Save(*t.app, profile);
    EXPECT_TRUE(profile.configurationChanged());
    EXPECT_TRUE(t.store->GetAllSettings().isEmpty());

    t.prompts.answerNext(Answer::Yes);
    askSaveChangedConfiguration_Save(*t.app, profile);
    EXPECT_EQ(t.prompts.texts(), (QStringList{kQuestion, kQuestion, kSaved}));
    EXPECT_FALSE(profile.configurationChanged());
}

TEST_F(Save, CloseLosesTypedChangesWithoutAWord)
{
    RecordingHost host;
    profile.setText(F::txtServerConfig(0), QStringLiteral("typed"));
    noteKeyPress(profile);
    cmdCancel_Click(*t.app, profile, host);
    EXPECT_EQ(host.closes, 1);
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_TRUE(t.store->GetAllSettings().isEmpty());
}
