// The profile's fields (bounds, option groups, change signals, names, the master boxes)
// and the rules attached to them: masks, the options that act on other options, the duel
// note and the listen server; and the keyboard rules' table.
#include "model/Constants.h"
#include "model/KeyRules.h"
#include "model/OptionRules.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "testkit/BoxExpect.h"
#include "testkit/Printers.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>
#include <numeric>
#include <string>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

TEST(ServerProfile, AnUnknownFieldOrRowIsARunTimeError)
{
    ServerProfile p;
    EXPECT_NO_THROW(p.field(F::txtServerConfig(16)));
    EXPECT_THROW(p.field(F::txtServerConfig(17)), RuntimeError);
    EXPECT_THROW(p.lbound(FieldArray{"txtMaster1"}), RuntimeError) << "a field of its own is no array";
    Field& rows = p.field(F::lsvMapRotation);
    rows.setRows({{u"a"_s}, {u"b"_s}});
    EXPECT_THROW(rows.removeRow(2), RuntimeError) << "one past the last row";
    EXPECT_THROW(rows.removeRow(-1), RuntimeError);
    rows.removeRow(1);
    EXPECT_EQ(rows.rows(), QList<QStringList>{QStringList{u"a"_s}});
    Field& list = p.field(F::lstBannedIPs);
    list.setItems({u"1.2.3.4"_s});
    EXPECT_THROW(list.removeItem(1), RuntimeError) << "one past the last item";
    EXPECT_EQ(list.items(), QStringList{u"1.2.3.4"_s});
}

TEST(ServerProfile, OnlyARealChangeFiresAndAnOptionClearsOnlyItsOwnGroup)
{
    ServerProfile p;
    Field& f = p.field(F::txtServerConfig(12));
    int fired = 0;
    QObject::connect(&f, &Field::changed, [&fired](Field*) { ++fired; });
    f.setText(u"28070"_s);
    EXPECT_EQ(fired, 0);
    f.setText(u"28071"_s);
    EXPECT_EQ(fired, 1);
    Field& check = p.field(F::chkDMFlags(0));
    QObject::connect(&check, &Field::changed, [&fired](Field*) { ++fired; });
    check.setValue(0);
    check.setValue(5); // any non-zero value ticks the box
    EXPECT_EQ(check.value(), 1);
    EXPECT_EQ(fired, 2);
    p.setValue(F::optLogging(1), 1);
    EXPECT_EQ(p.value(F::optLogging(3)), 0);
    EXPECT_EQ(p.value(F::optLogging(5)), 1) << "the stats group is a frame of its own";
    p.setValue(F::chkServerType(0), 1);
    EXPECT_EQ(p.value(F::chkServerType(2)), 0);
}

TEST(ServerProfile, TheTypedNamesAndTheMasterBoxes)
{
    ServerProfile p;
    EXPECT_EQ(F::txtServerConfig(12).key() + F::cboStartingMap.key(), u"txtServerConfig(12)cboStartingMap"_s);
    EXPECT_EQ(&p.field(F::txtServerConfig(12)), p.findByName(u"txtServerConfig"_s, 12));
    // The five master boxes are numbered for the user from 1, as are the cvars in their Tags.
    QStringList shown;
    for (const FieldDefinition& d : profileFieldTable())
        if (d.name.startsWith(QLatin1String("txtMaster")))
            shown << d.name + u' ' + d.caption + u' ' + d.tag;
    EXPECT_EQ(shown, (QStringList{u"txtMaster1 &1. sv_master1"_s, u"txtMaster2 &2. sv_master2"_s,
                                  u"txtMaster3 &3. sv_master3"_s, u"txtMaster4 &4. sv_master4"_s,
                                  u"txtMaster5 &5. sv_master5"_s}));
}

class Rules : public ::testing::Test {
protected:
    Rules() { attachOptionRules(*t.app, profile); }
    void tick(FieldArray name, int index, int value = 1) { profile.setValue(name(index), value); }
    QString text(FieldId name) const { return profile.text(name); }
    bool duelNote() const { return profile.field(F::lblSaberModeDuel).isVisible(); }
    TestApp t;
    ServerProfile profile;
};

/// The boxes 0 to last.
std::vector<int> upTo(int last)
{
    std::vector<int> all(last + 1);
    std::iota(all.begin(), all.end(), 0);
    return all;
}

TEST(RuleMasks, FollowTheirBoxes)
{
    const struct {
        FieldArray boxes;
        std::vector<int> ticked;
        FieldId maskBox;
        const char* mask;
    } cases[] = {
        {F::chkWeaponFlags, {}, F::txtWeaponFlags, "0"},
        {F::chkWeaponFlags, {2}, F::txtWeaponFlags, "65531"},
        {F::chkWeaponFlags, {2, 1}, F::txtWeaponFlags, "6"},
        {F::chkWeaponFlags, upTo(15), F::txtWeaponFlags, "65535"},
        {F::chkWeaponFlags, {24, 17}, F::txtDuelWeaponFlags, "6"},
        {F::chkWeaponFlags, {31, 16}, F::txtDuelWeaponFlags, "32769"},
        {F::chkPowerUpFlags, {0, 17}, F::txtForceFlags, "131073"},
        {F::chkPowerUpFlags, upTo(17), F::txtForceFlags, "262143"},
        {F::chkDMFlags, {0, 1, 2}, F::txtDMFlags, "56"},
        {F::chkDMFlags, {2}, F::txtDMFlags, "32"}, // the lone saber rule is the weapons' only
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.maskBox.name) + " <- " + std::to_string(c.ticked.size()) + " boxes");
        TestApp app;
        ServerProfile p;
        attachOptionRules(*app.app, p);
        for (int i : c.ticked)
            p.setValue(c.boxes(i), 1);
        EXPECT_EQ(p.text(c.maskBox), QString::fromLatin1(c.mask));
        for (int i : c.ticked) // clearing them again gives "0"
            p.setValue(c.boxes(i), 0);
        EXPECT_EQ(p.text(c.maskBox), u"0"_s);
    }
}

TEST_F(Rules, TheWeaponHalvesAreIndependentAndDisableTheForceTicksEveryForceBox)
{
    profile.setText(F::txtDuelWeaponFlags, u"untouched"_s);
    tick(F::chkWeaponFlags, 2);
    EXPECT_EQ(text(F::txtWeaponFlags), u"65531"_s);
    EXPECT_EQ(text(F::txtDuelWeaponFlags), u"untouched"_s);
    tick(F::chkWeaponFlags, 17);
    EXPECT_EQ(text(F::txtDuelWeaponFlags), u"4"_s);
    EXPECT_EQ(text(F::txtWeaponFlags), u"65531"_s);
    tick(F::chkWeaponFlags, 2, 0);
    EXPECT_EQ(text(F::txtWeaponFlags), u"0"_s);
    // Disable the force ticks every force box, and clearing it leaves them.
    for (int i : upTo(18))
        if (i != 17)
            tick(F::chkQuake3Specific, i);
    EXPECT_EQ(text(F::txtForceFlags), u"0"_s) << "only box 17 acts on the force";
    tick(F::chkQuake3Specific, 17);
    for (Field* f : profile.array(F::chkPowerUpFlags))
        EXPECT_TRUE(f->isSet()) << f->index();
    EXPECT_EQ(text(F::txtForceFlags), u"262143"_s);
    tick(F::chkQuake3Specific, 17, 0);
    EXPECT_EQ(text(F::txtForceFlags), u"262143"_s);
}

TEST(RuleListenServer, IsRefusedOnlyForTheExactDedicatedNameAndOnlyOnce)
{
    const std::pair<const char*, bool> cases[] = {
        {"jk2Ded.exe", true}, {"jk2mp.exe", false}, {"JK2DED.EXE", false}, {"jk2mvded", false}, {"", false}};
    for (const auto& [exe, refused] : cases) {
        SCOPED_TRACE(exe);
        TestApp app;
        ServerProfile p;
        attachOptionRules(*app.app, p);
        attachOptionRules(*app.app, p); // a second attach adds no second rule
        app.app->serverExecutable = QString::fromLatin1(exe);
        p.setValue(F::chkServerType(1), 1);
        p.setValue(F::chkServerType(2), 1);
        EXPECT_TRUE(app.prompts.shown.empty()) << "other server types are not questioned";
        p.setValue(F::chkServerType(0), 1);
        EXPECT_EQ(p.isSet(F::chkServerType(1)), refused);
        EXPECT_EQ(p.isSet(F::chkServerType(0)), !refused);
        ASSERT_EQ(app.prompts.shown.size(), refused ? 1u : 0u);
        if (refused) {
            EXPECT_TRUE(
                isBox(app.prompts.last(), {u"Arena Steward"_s, Icon::Information,
                                           u"Listen server not supported with jk2Ded.exe"_s + kTail, Buttons::Ok}));
        }
    }
}

TEST_F(Rules, TheDuelNoteShowsOnlyForDuel)
{
    EXPECT_FALSE(duelNote()) << "free for all at the start";
    for (const auto& [type, shown] : {std::pair{3, true}, {0, false}, {3, true}, {6, false}}) {
        tick(F::optDefaultGameType, type);
        EXPECT_EQ(duelNote(), shown) << type;
    }
}

TEST(KeyRules, TheFiltersPassWhatTheyShould)
{
    EXPECT_TRUE(keyDownPasses(Qt::Key_Backspace, false));
    for (int k = Qt::Key_0; k <= Qt::Key_9; ++k) {
        EXPECT_TRUE(keyDownPasses(k, false));
        EXPECT_FALSE(keyDownPasses(k, true)) << "the keypad's digits";
    }
    for (int k : {Qt::Key_Minus, Qt::Key_Left, Qt::Key_Delete, Qt::Key_A, Qt::Key_Period, Qt::Key_Return})
        EXPECT_FALSE(keyDownPasses(k, false)) << k;
    for (int c = 0; c < 128; ++c)
        EXPECT_EQ(characterPasses(c), c == 8 || (c >= '(' && c <= '9')) << c;
    // Tab moves the focus and gives no key press.
    for (const auto& [text, gives] :
         {std::pair{u"a"_s, true}, {u"\b"_s, true}, {QString(), false}, {u"\x7f"_s, false}, {u"\t"_s, false}})
        EXPECT_EQ(keyGivesCharacter(text), gives) << text.toStdString();
}

} // namespace
