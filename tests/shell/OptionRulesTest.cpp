// The rules of the option fields on a profile: masks, the options that act on other
// options, the duel note and the starting-map combo; and the keyboard rules' table.
#include "shell/Constants.h"
#include "shell/KeyRules.h"
#include "shell/OptionRules.h"
#include "shell/ServerProfile.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {

class Rules : public ::testing::Test {
protected:
    Rules() { attachOptionRules(*t.app, profile); }
    void tick(const char* name, int index, int value = 1) { profile.setValue(QString::fromLatin1(name), index, value); }
    QString text(const char* name) const { return profile.text(QString::fromLatin1(name)); }
    bool visible(const char* name) const { return profile.field(QString::fromLatin1(name)).isVisible(); }

    TestApp t;
    ServerProfile profile;
};

} // namespace

TEST_F(Rules, MasksFollowTheirBoxes)
{
    struct Case {
        const char* boxes;
        std::vector<int> ticked;
        const char* maskBox;
        const char* mask;
    };
    const Case cases[] = {
        {"chkWeaponFlags", {}, "txtWeaponFlags", "0"},
        {"chkWeaponFlags", {2}, "txtWeaponFlags", "65531"},
        {"chkWeaponFlags", {2, 1}, "txtWeaponFlags", "6"},
        {"chkWeaponFlags", {1}, "txtWeaponFlags", "2"},
        {"chkWeaponFlags", {0, 2}, "txtWeaponFlags", "5"},
        {"chkWeaponFlags", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}, "txtWeaponFlags", "65535"},
        {"chkWeaponFlags", {17}, "txtDuelWeaponFlags", "4"},
        {"chkWeaponFlags", {24, 17}, "txtDuelWeaponFlags", "6"},
        {"chkWeaponFlags", {31, 16}, "txtDuelWeaponFlags", "32769"},
        {"chkPowerUpFlags", {0, 17}, "txtForceFlags", "131073"},
        {"chkPowerUpFlags", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17}, "txtForceFlags", "262143"},
        {"chkPowerUpFlags", {2}, "txtForceFlags", "4"},
        {"chkDMFlags", {0, 1, 2}, "txtDMFlags", "56"},
        {"chkDMFlags", {1}, "txtDMFlags", "16"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.maskBox) + " <- " + std::to_string(c.ticked.size()) + " boxes");
        TestApp app;
        ServerProfile p;
        attachOptionRules(*app.app, p);
        for (int i : c.ticked)
            p.setValue(QString::fromLatin1(c.boxes), i, 1);
        EXPECT_EQ(p.text(QString::fromLatin1(c.maskBox)), QString::fromLatin1(c.mask));
        // Clearing them again gives "0".
        for (int i : c.ticked)
            p.setValue(QString::fromLatin1(c.boxes), i, 0);
        EXPECT_EQ(p.text(QString::fromLatin1(c.maskBox)), QStringLiteral("0"));
    }
}

TEST_F(Rules, TheWeaponHalvesAreIndependent)
{
    profile.setText(QStringLiteral("txtDuelWeaponFlags"), QStringLiteral("untouched"));
    tick("chkWeaponFlags", 2);
    EXPECT_EQ(text("txtWeaponFlags"), QStringLiteral("65531"));
    EXPECT_EQ(text("txtDuelWeaponFlags"), QStringLiteral("untouched"));
    tick("chkWeaponFlags", 17);
    EXPECT_EQ(text("txtDuelWeaponFlags"), QStringLiteral("4"));
    EXPECT_EQ(text("txtWeaponFlags"), QStringLiteral("65531"));
    tick("chkWeaponFlags", 2, 0);
    EXPECT_EQ(text("txtWeaponFlags"), QStringLiteral("0"));
}

TEST_F(Rules, DisableTheForceTicksEveryForceBoxAndClearingItLeavesThem)
{
    tick("chkQuake3Specific", 17);
    for (Field* f : profile.array(QStringLiteral("chkPowerUpFlags")))
        EXPECT_TRUE(f->isSet()) << f->index();
    EXPECT_EQ(text("txtForceFlags"), QStringLiteral("262143"));
    tick("chkQuake3Specific", 17, 0);
    EXPECT_EQ(text("txtForceFlags"), QStringLiteral("262143"));

    TestApp app;
    ServerProfile p;
    attachOptionRules(*app.app, p);
    for (int i = 0; i <= 18; ++i)
        if (i != 17)
            p.setValue(QStringLiteral("chkQuake3Specific"), i, 1);
    EXPECT_EQ(p.text(QStringLiteral("txtForceFlags")), QStringLiteral("0"));
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
        p.setValue(QStringLiteral("chkServerType"), 0, 1);
        if (refused) {
            ASSERT_EQ(app.prompts.shown.size(), 1u);
            const auto& box = app.prompts.last().request;
            EXPECT_EQ(box.text, QStringLiteral("Listen server not supported with jk2Ded.exe") + kTail);
            EXPECT_EQ(box.icon, Icon::Information);
            EXPECT_EQ(box.title, QStringLiteral("Arena Steward"));
            EXPECT_TRUE(p.isSet(QStringLiteral("chkServerType"), 1));
            EXPECT_FALSE(p.isSet(QStringLiteral("chkServerType"), 0));
        } else {
            EXPECT_TRUE(app.prompts.shown.empty());
            EXPECT_TRUE(p.isSet(QStringLiteral("chkServerType"), 0));
        }
    }
}

TEST_F(Rules, OtherServerTypesAreNotQuestioned)
{
    t.app->serverExecutable = QStringLiteral("jk2Ded.exe");
    tick("chkServerType", 1);
    tick("chkServerType", 2);
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(Rules, TheDuelNoteShowsOnlyForDuel)
{
    EXPECT_FALSE(visible("lblSaberModeDuel")) << "free for all at the start";
    tick("optDefaultGameType", 3);
    EXPECT_TRUE(visible("lblSaberModeDuel"));
    tick("optDefaultGameType", 0);
    EXPECT_FALSE(visible("lblSaberModeDuel"));
    tick("optDefaultGameType", 3);
    tick("optDefaultGameType", 6);
    EXPECT_FALSE(visible("lblSaberModeDuel"));
}

TEST_F(Rules, ASecondAttachAddsNoSecondRule)
{
    attachOptionRules(*t.app, profile);
    t.app->serverExecutable = QStringLiteral("jk2Ded.exe");
    tick("chkServerType", 0);
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

    EXPECT_TRUE(keyGivesCharacter(QStringLiteral("a")));
    EXPECT_TRUE(keyGivesCharacter(QStringLiteral("\b")));
    EXPECT_FALSE(keyGivesCharacter(QString()));
    EXPECT_FALSE(keyGivesCharacter(QStringLiteral("\x7f")));
    EXPECT_FALSE(keyGivesCharacter(QStringLiteral("\t"))) << "Tab moves the focus and gives no key press";
}

TEST(KeyRules, EachBoxHasItsRules)
{
    for (const char* name : {"txtServerConfigSpin", "txtSpeed", "txtGameLimits", "txtForceReGen", "txtMaxHolocronCarry",
                             "txtMaxForceRank", "txtKnockBack", "txtMapTimeOut", "txtWeaponEnhancer", "txtWeapRespawn"}) {
        const auto r = textBoxKeyRules(QString::fromLatin1(name));
        EXPECT_TRUE(r.selectOnFocus && r.keyDownFilter && r.characterFilter && !r.selectOnChange) << name;
    }
    for (const char* name : {"txtServerConfig", "txtLogFileName", "txtMsg", "txtMsgTimer", "txtServerIP", "txtMaster1",
                             "txtMaster2", "txtMaster3", "txtMaster4", "txtMaster5"}) {
        const auto r = textBoxKeyRules(QString::fromLatin1(name));
        EXPECT_TRUE(r.selectOnFocus && !r.keyDownFilter && !r.characterFilter && !r.selectOnChange) << name;
    }
    const auto saber = textBoxKeyRules(QStringLiteral("txtAdvancedSaber"));
    EXPECT_TRUE(!saber.selectOnFocus && !saber.keyDownFilter && !saber.characterFilter && saber.selectOnChange);
    const auto other = textBoxKeyRules(QStringLiteral("txtStatsLogName"));
    EXPECT_FALSE(other.selectOnFocus || other.keyDownFilter || other.characterFilter || other.selectOnChange);
}
