// The rules of the option fields on a profile: masks, the options that act on other
// options, the duel note and the starting-map combo; and the keyboard rules' table.
#include "model/Constants.h"
#include "model/KeyRules.h"
#include "model/OptionRules.h"
#include "model/ServerProfile.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

class Rules : public ::testing::Test {
protected:
    Rules() { attachOptionRules(*t.app, profile); }
    void tick(FieldArray name, int index, int value = 1) { profile.setValue(name(index), value); }
    QString text(FieldId name) const { return profile.text(name); }
    bool visible(FieldId name) const { return profile.field(name).isVisible(); }

    TestApp t;
    ServerProfile profile;
};

} // namespace

TEST_F(Rules, MasksFollowTheirBoxes)
{
    struct Case {
        FieldArray boxes;
        std::vector<int> ticked;
        FieldId maskBox;
        const char* mask;
    };
    const Case cases[] = {
        {F::chkWeaponFlags, {}, F::txtWeaponFlags, "0"},
        {F::chkWeaponFlags, {2}, F::txtWeaponFlags, "65531"},
        {F::chkWeaponFlags, {2, 1}, F::txtWeaponFlags, "6"},
        {F::chkWeaponFlags, {1}, F::txtWeaponFlags, "2"},
        {F::chkWeaponFlags, {0, 2}, F::txtWeaponFlags, "5"},
        {F::chkWeaponFlags, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}, F::txtWeaponFlags, "65535"},
        {F::chkWeaponFlags, {17}, F::txtDuelWeaponFlags, "4"},
        {F::chkWeaponFlags, {24, 17}, F::txtDuelWeaponFlags, "6"},
        {F::chkWeaponFlags, {31, 16}, F::txtDuelWeaponFlags, "32769"},
        {F::chkPowerUpFlags, {0, 17}, F::txtForceFlags, "131073"},
        {F::chkPowerUpFlags,
         {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17},
         F::txtForceFlags,
         "262143"},
        {F::chkPowerUpFlags, {2}, F::txtForceFlags, "4"},
        {F::chkDMFlags, {0, 1, 2}, F::txtDMFlags, "56"},
        {F::chkDMFlags, {1}, F::txtDMFlags, "16"},
        {F::chkDMFlags, {2}, F::txtDMFlags, "32"}, // the lone saber rule is the weapons' only
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.maskBox.name) + " <- " + std::to_string(c.ticked.size()) + " boxes");
        TestApp app;
        ServerProfile p;
        attachOptionRules(*app.app, p);
        for (int i : c.ticked)
            p.setValue(c.boxes(i), 1);
        EXPECT_EQ(p.text(c.maskBox), QString::fromLatin1(c.mask));
        // Clearing them again gives "0".
        for (int i : c.ticked)
            p.setValue(c.boxes(i), 0);
        EXPECT_EQ(p.text(c.maskBox), u"0"_s);
    }
}

TEST_F(Rules, TheWeaponHalvesAreIndependent)
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
}

TEST_F(Rules, DisableTheForceTicksEveryForceBoxAndClearingItLeavesThem)
{
    tick(F::chkQuake3Specific, 17);
    for (Field* f : profile.array(F::chkPowerUpFlags))
        EXPECT_TRUE(f->isSet()) << f->index();
    EXPECT_EQ(text(F::txtForceFlags), u"262143"_s);
    tick(F::chkQuake3Specific, 17, 0);
    EXPECT_EQ(text(F::txtForceFlags), u"262143"_s);

    TestApp app;
    ServerProfile p;
    attachOptionRules(*app.app, p);
    for (int i = 0; i <= 18; ++i)
        if (i != 17)
            p.setValue(F::chkQuake3Specific(i), 1);
    EXPECT_EQ(p.text(F::txtForceFlags), u"0"_s);
}

TEST_F(Rules, AListenServerIsRefusedOnlyForTheExactDedicatedName)
{
    const std::pair<const char*, bool> cases[] = {
        {"jk2Ded.exe", true}, {"jk2mp.exe", false}, {"JK2DED.EXE", false}, {"jk2mvded", false}, {"", false}};
    for (const auto& [exe, refused] : cases) {
        SCOPED_TRACE(exe);
        TestApp app;
        ServerProfile p;
        attachOptionRules(*app.app, p);
        app.app->serverExecutable = QString::fromLatin1(exe);
        p.setValue(F::chkServerType(0), 1);
        if (refused) {
            ASSERT_EQ(app.prompts.shown.size(), 1u);
            const auto& box = app.prompts.last().request;
            EXPECT_TRUE(isBox(box, {u"Arena Steward"_s, Icon::Information,
                                    u"Listen server not supported with jk2Ded.exe"_s + kTail, Buttons::Ok}));
            EXPECT_TRUE(p.isSet(F::chkServerType(1)));
            EXPECT_FALSE(p.isSet(F::chkServerType(0)));
        } else {
            EXPECT_TRUE(app.prompts.shown.empty());
            EXPECT_TRUE(p.isSet(F::chkServerType(0)));
        }
    }
}

TEST_F(Rules, OtherServerTypesAreNotQuestioned)
{
    t.app->serverExecutable = u"jk2Ded.exe"_s;
    tick(F::chkServerType, 1);
    tick(F::chkServerType, 2);
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(Rules, TheDuelNoteShowsOnlyForDuel)
{
    EXPECT_FALSE(visible(F::lblSaberModeDuel)) << "free for all at the start";
    tick(F::optDefaultGameType, 3);
    EXPECT_TRUE(visible(F::lblSaberModeDuel));
    tick(F::optDefaultGameType, 0);
    EXPECT_FALSE(visible(F::lblSaberModeDuel));
    tick(F::optDefaultGameType, 3);
    tick(F::optDefaultGameType, 6);
    EXPECT_FALSE(visible(F::lblSaberModeDuel));
}

TEST_F(Rules, ASecondAttachAddsNoSecondRule)
{
    attachOptionRules(*t.app, profile);
    t.app->serverExecutable = u"jk2Ded.exe"_s;
    tick(F::chkServerType, 0);
    EXPECT_EQ(t.prompts.shown.size(), 1u);
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

    EXPECT_TRUE(keyGivesCharacter(u"a"_s));
    EXPECT_TRUE(keyGivesCharacter(u"\b"_s));
    EXPECT_FALSE(keyGivesCharacter(QString()));
    EXPECT_FALSE(keyGivesCharacter(u"\x7f"_s));
    EXPECT_FALSE(keyGivesCharacter(u"\t"_s)) << "Tab moves the focus and gives no key press";
}
