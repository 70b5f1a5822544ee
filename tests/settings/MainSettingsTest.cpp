// Reading the store into the profile: key families, read rules, literal defaults,
// the fixed order and the failure road.
#include "settings/MainSettings.h"
#include "model/Constants.h"
#include "model/OptionRules.h"
#include "model/ServerProfile.h"
#include "support/ErrorBox.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <functional>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {

class Load : public ::testing::Test {
protected:
    Load() { attachOptionRules(*t.app, profile); }

    void store(const char* key, const QString& value) { t.store->SaveSetting(QString::fromLatin1(key), value); }
    void load() { GetMainSettings(*t.app, profile); }
    QString text(FieldId name) const { return profile.text(name); }
    int value(FieldId name) const { return profile.value(name); }
    // The index of the selected option of an array, -1 for none.
    int selected(FieldArray name) const
    {
        for (Field* f : profile.array(name))
            if (f->isSet())
                return f->index();
        return -1;
    }

    TestApp t;
    ServerProfile profile;
};

} // namespace

TEST_F(Load, AnEmptyStoreGivesTheFirstRunStateAndWritesNothing)
{
    profile.setText(F::lblMapsSelected, QStringLiteral("untouched"));
    load();
    // The computer's and the user's names fill the host and admin boxes.
    EXPECT_EQ(text(F::txtServerConfig(2)), QStringLiteral("TESTHOST"));
    EXPECT_EQ(text(F::txtServerConfig(3)), QStringLiteral("tester"));
    EXPECT_EQ(text(F::txtServerConfig(12)), QStringLiteral("28070"));
    EXPECT_EQ(selected(F::chkServerType), 2);
    EXPECT_EQ(selected(F::optLogging), 3);
    EXPECT_EQ(value(F::optLogging(5)), 1) << "the stats choice starts from its initial state";
    EXPECT_EQ(text(F::lblMapsSelected), QStringLiteral("untouched"));
    EXPECT_TRUE(t.store->GetAllSettings().isEmpty()) << "reading writes nothing";
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(Load, ServerInfoIsDecodedButTheBoundAddress)
{
    t.names.computer = QStringLiteral("HOST") + QChar(0) + QStringLiteral("junk");
    store("ServerInfo10", QStringLiteral("Welcome% all"));
    store("ServerInfo12", QString());           // empty: the computer's name
    store("ServerInfo13", QStringLiteral(" ")); // one blank: an empty box, not the user's name
    store("ServerInfo19", QString());           // empty: the box stays
    store("ServerInfo114", QStringLiteral(" "));
    store("ServerInfo116", QStringLiteral("10.0.0.1%x"));
    store("ServerInfo111", QStringLiteral("50%"));
    store("Msg1", QStringLiteral("Hello% all"));
    store("Master2", QStringLiteral(" "));
    load();
    EXPECT_EQ(text(F::txtServerConfig(0)), QStringLiteral("Welcome, all"));
    EXPECT_EQ(text(F::txtServerConfig(2)), QStringLiteral("HOST"));
    EXPECT_EQ(text(F::txtServerConfig(3)), QString());
    EXPECT_EQ(text(F::txtServerConfig(9)), QStringLiteral("Now and Then"));
    EXPECT_EQ(text(F::txtServerConfig(14)), QString());
    EXPECT_EQ(text(F::txtServerConfig(16)), QStringLiteral("10.0.0.1%x"));
    EXPECT_EQ(text(F::txtServerConfig(11)), QStringLiteral("50,"));
    EXPECT_EQ(text(F::txtMsg(0)), QStringLiteral("Hello% all"));
    EXPECT_EQ(text(F::txtMaster2), QStringLiteral(" "));
}

TEST_F(Load, FamiliesWithThePresentRuleLeaveFieldsAloneWhenEmptyOrAbsent)
{
    profile.setValue(F::chkWeaponFlags(1), 1);
    profile.setValue(F::chkDMFlags(1), 1);
    profile.field(F::cboConfig(0)).setItems({QStringLiteral("server.cfg")});
    profile.setText(F::cboConfig(0), QStringLiteral("server.cfg"));
    store("ServerInfo20", QString());
    store("SpeedGravity1", QStringLiteral("900"));
    store("GameLimts1", QStringLiteral("abc"));
    store("AdvSaberValues0", QStringLiteral("-1"));
    store("WeaponFlags3", QStringLiteral("True"));
    store("WeaponFlags4", QStringLiteral("1"));
    store("ForceFlags0", QStringLiteral("true"));
    store("GameSpecificOptions0", QStringLiteral("-1"));
    store("AdvSaber0", QStringLiteral("False"));
    store("CFG11", QStringLiteral("a,b.cfg"));
    store("BOTs0", QStringLiteral("1.9"));
    store("BOTs1", QStringLiteral("0.9"));
    load();
    EXPECT_EQ(text(F::txtServerConfigSpin(0)), QStringLiteral("12"));
    EXPECT_EQ(text(F::txtSpeed(1)), QStringLiteral("900"));
    EXPECT_EQ(text(F::txtGameLimits(1)), QStringLiteral("abc")) << "no test of the text";
    EXPECT_EQ(text(F::txtAdvancedSaber(0)), QStringLiteral("-1"));
    EXPECT_EQ(value(F::chkWeaponFlags(1)), 1) << "WeaponFlags1 absent leaves the box";
    EXPECT_EQ(value(F::chkDMFlags(1)), 0) << "DMFlags1 absent clears the box";
    EXPECT_EQ(value(F::chkWeaponFlags(3)), 1);
    EXPECT_EQ(value(F::chkWeaponFlags(4)), 1);
    EXPECT_EQ(value(F::chkPowerUpFlags(0)), 1);
    EXPECT_EQ(value(F::chkQuake3Specific(0)), 1);
    EXPECT_EQ(value(F::chkAdvancedSaber(0)), 0);
    EXPECT_EQ(value(F::chkAdvancedSaber(1)), 1) << "initial state";
    EXPECT_EQ(text(F::cboConfig(0)), QString()) << "CFG10 absent empties the box";
    EXPECT_EQ(profile.field(F::cboConfig(0)).items(), QStringList{QStringLiteral("server.cfg")});
    EXPECT_EQ(text(F::cboConfig(1)), QStringLiteral("a,b.cfg"));
    EXPECT_EQ(value(F::chkBOTs(0)), 1);
    EXPECT_EQ(value(F::chkBOTs(1)), 0);
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(Load, ListsAreSplitAtSemicolonsAndKeepTheirBlanks)
{
    profile.setText(F::lblMapsSelected, QStringLiteral("untouched"));
    store("BannedIPs", QStringLiteral("1.2.3.4;;5.6.7.8; 9.9.9.9 ;   ;"));
    store("MapListSaved", QStringLiteral("ffa_bespin;;duel_pit;"));
    load();
    EXPECT_EQ(profile.field(F::lstBannedIPs).items(),
              (QStringList{QStringLiteral("1.2.3.4"), QStringLiteral("5.6.7.8"), QStringLiteral(" 9.9.9.9 ")}));
    EXPECT_EQ(profile.field(F::lsvMapRotation).rows(),
              (QList<QStringList>{{QStringLiteral("ffa_bespin"), {}, {}, {}, QStringLiteral("imgMapNotSelected")},
                                  {QStringLiteral("duel_pit"), {}, {}, {}, QStringLiteral("imgMapNotSelected")}}))
        << "each restored row carries the common mark";
    EXPECT_EQ(text(F::lblMapsSelected), QStringLiteral("2 Selected Maps"));
}

TEST_F(Load, OneStoredValueAndWhatItSelects)
{
    const struct {
        const char* key;
        const char* stored;
        std::function<bool(const ServerProfile&)> holds;
    } cases[] = {
        // The rotation's label changes only for a stored text.
        {"MapListSaved", "", [](const ServerProfile& p) { return p.text(F::lblMapsSelected) == "untouched"; }},
        {"MapListSaved", " ; ;",
         [](const ServerProfile& p) { return p.text(F::lblMapsSelected) == "0 Selected Maps"; }},
        // Only the exact name selects Minimize.
        {"AppMinimize", "optStartMinimize", [](const ServerProfile& p) { return p.isSet(F::optStartMinimize); }},
        {"AppMinimize", "optstartminimize", [](const ServerProfile& p) { return p.isSet(F::optStartClose); }},
        {"AppMinimize", "", [](const ServerProfile& p) { return p.isSet(F::optStartClose); }},
        // The saved cycle's box takes both stored forms.
        {"SelectAdvMapCfg", "True", [](const ServerProfile& p) { return p.value(F::chkUseINI) == 1; }},
        {"SelectAdvMapCfg", "1", [](const ServerProfile& p) { return p.value(F::chkUseINI) == 1; }},
        {"SelectAdvMapCfg", "False", [](const ServerProfile& p) { return p.value(F::chkUseINI) == 0; }},
        {"SelectAdvMapCfg", "0", [](const ServerProfile& p) { return p.value(F::chkUseINI) == 0; }},
        // Options are selected by their index, not their Tag.
        {"GameType", "4", [](const ServerProfile& p) { return p.isSet(F::optDefaultGameType(4)); }},
        {"LoggingType", "1", [](const ServerProfile& p) { return p.isSet(F::optLogging(1)); }},
        {"ServerType", "1", [](const ServerProfile& p) { return p.isSet(F::chkServerType(1)); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.key) + " = '" + c.stored + "'");
        TestApp fresh;
        ServerProfile p;
        p.setText(F::lblMapsSelected, QStringLiteral("untouched"));
        p.setValue(F::chkUseINI, QByteArray(c.stored) == "True" || QByteArray(c.stored) == "1" ? 0 : 1);
        fresh.store->SaveSetting(QString::fromLatin1(c.key), QString::fromLatin1(c.stored));
        GetMainSettings(*fresh.app, p);
        EXPECT_TRUE(c.holds(p));
        EXPECT_TRUE(fresh.prompts.shown.empty());
    }
}

TEST_F(Load, EachAssignmentRunsTheOptionRules)
{
    t.app->serverExecutable = QStringLiteral("jk2Ded.exe");
    store("WeaponFlags2", QStringLiteral("True"));
    store("WeaponFlags17", QStringLiteral("True"));
    store("DMFlags0", QStringLiteral("True"));
    store("DMFlags2", QStringLiteral("True"));
    store("GameSpecificOptions17", QStringLiteral("True"));
    store("GameType", QStringLiteral("3"));
    store("ServerType", QStringLiteral("0"));
    load();
    EXPECT_EQ(text(F::txtWeaponFlags), QStringLiteral("65531"));
    EXPECT_EQ(text(F::txtDuelWeaponFlags), QStringLiteral("4"));
    EXPECT_EQ(text(F::txtDMFlags), QStringLiteral("40"));
    EXPECT_EQ(text(F::txtForceFlags), QStringLiteral("262143"));
    EXPECT_TRUE(profile.field(F::lblSaberModeDuel).isVisible());
    ASSERT_EQ(t.prompts.texts(), QStringList{QStringLiteral("Listen server not supported with jk2Ded.exe") + kTail});
    EXPECT_EQ(selected(F::chkServerType), 1);
}

TEST_F(Load, AFailureIsReportedAndEndsTheReading)
{
    // Each stored value fails its step; what comes before it is read, nothing after it.
    struct Case {
        const char* key;
        const char* value;
        int number;
        const char* description; // the standard one when empty
    };
    const Case cases[] = {{"GameType", "abc", 13, ""},
                          {"GameType", "9", 340, "Control array element 'optDefaultGameType(9)' doesn't exist"},
                          {"GameType", "", 13, ""},
                          {"GameType", "99999", 6, ""}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.value);
        TestApp fresh;
        ServerProfile p;
        fresh.store->SaveSetting(QString::fromLatin1(c.key), QString::fromLatin1(c.value));
        fresh.store->SaveSetting(QStringLiteral("BannedIPs"), QStringLiteral("1.2.3.4;"));
        fresh.store->SaveSetting(QStringLiteral("LoggingType"), QStringLiteral("1"));
        fresh.store->SaveSetting(QStringLiteral("Msg1"), QStringLiteral("stored"));
        GetMainSettings(*fresh.app, p);

        ASSERT_EQ(fresh.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(fresh.prompts.last(),
                          errorBox(c.number, QStringLiteral("arena-steward::Code.GetMainSettings(Sub) (arena-steward)"),
                                   QString::fromLatin1(c.description))));
        const QString log = QString::fromLatin1(fileBytes(fresh.app->programFile(QStringLiteral("arena-steward.log"))));
        EXPECT_TRUE(log.contains(QStringLiteral("Error %1 in arena-steward::Code.GetMainSettings(Sub)").arg(c.number)));

        EXPECT_EQ(p.field(F::lstBannedIPs).count(), 1) << "read before the failure";
        EXPECT_TRUE(p.isSet(F::optLogging(3))) << "no LoggingType";
        EXPECT_EQ(p.text(F::txtMaster4), kMaster4) << "no masters";
        EXPECT_EQ(p.text(F::txtMsg(0)), QStringLiteral("^2This Server was configured by ^1Arena Steward"));
        EXPECT_EQ(fresh.store->GetSetting(QString::fromLatin1(c.key)), QString::fromLatin1(c.value))
            << "nothing is repaired in the store";
    }
}

TEST_F(Load, ABadFlagEndsTheReadingAtItsFamily)
{
    store("WeaponFlags3", QStringLiteral("yes"));
    store("DMFlags0", QStringLiteral("True"));
    store("MapTimeOut", QStringLiteral("60"));
    load();
    EXPECT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_EQ(value(F::chkDMFlags(0)), 0);
    EXPECT_EQ(text(F::txtMapTimeOut), QStringLiteral("300"));
}
