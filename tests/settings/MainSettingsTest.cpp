// Reading the store into the profile: key families, read rules, literal defaults, the
// fixed order and the failure road.
#include "settings/MainSettings.h"
#include "model/Constants.h"
#include "model/OptionRules.h"
#include "model/ServerProfile.h"
#include "support/ErrorBox.h"
#include "testkit/BoxExpect.h"
#include "testkit/Printers.h"
#include "testkit/TestApp.h"

#include <functional>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

class Load : public ::testing::Test {
protected:
    Load() { attachOptionRules(*t.app, profile); }

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

    TestApp t;
    ServerProfile profile;
};

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

} // namespace
