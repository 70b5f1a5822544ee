#include "shell/ServerProfile.h"
#include "support/Errors.h"

#include <gtest/gtest.h>

using namespace steward;

TEST(ServerProfile, ArraysReportTheirBounds)
{
    ServerProfile p;
    const std::pair<const char*, std::pair<int, int>> arrays[] = {
        {"txtServerConfig", {0, 16}}, {"txtServerConfigSpin", {0, 17}}, {"txtSpeed", {0, 3}},
        {"txtGameLimits", {0, 3}},    {"txtForceReGen", {0, 0}},        {"txtAdvancedSaber", {0, 3}},
        {"chkAdvancedSaber", {0, 2}}, {"chkQuake3Specific", {0, 18}},   {"chkWeaponFlags", {0, 31}},
        {"chkPowerUpFlags", {0, 17}}, {"chkDMFlags", {0, 2}},           {"optDefaultGameType", {0, 6}},
        {"chkServerType", {0, 2}},    {"optLogging", {0, 5}},           {"chkBOTs", {0, 5}},
        {"cboConfig", {0, 3}},        {"txtMsg", {0, 1}},
    };
    for (const auto& [name, bounds] : arrays) {
        SCOPED_TRACE(name);
        EXPECT_EQ(p.lbound(QString::fromLatin1(name)), bounds.first);
        EXPECT_EQ(p.ubound(QString::fromLatin1(name)), bounds.second);
        for (int i = bounds.first; i <= bounds.second; ++i)
            EXPECT_TRUE(p.has(QString::fromLatin1(name), i)) << i;
    }
}

TEST(ServerProfile, AnUnknownFieldIsARunTimeError)
{
    ServerProfile p;
    EXPECT_THROW(p.field(QStringLiteral("txtServerConfig"), 17), RuntimeError);
    EXPECT_THROW(p.lbound(QStringLiteral("txtMaster1")), RuntimeError);
}

TEST(ServerProfile, WeaponHalvesRunThroughTheBitsInTheirOwnOrders)
{
    ServerProfile p;
    EXPECT_EQ(p.tag(QStringLiteral("chkWeaponFlags"), 2), QStringLiteral("4"));
    EXPECT_EQ(p.tag(QStringLiteral("chkWeaponFlags"), 17), QStringLiteral("4"));
    EXPECT_EQ(p.tag(QStringLiteral("chkWeaponFlags"), 24), QStringLiteral("2"));
    EXPECT_EQ(p.field(QStringLiteral("chkWeaponFlags"), 26).caption(), QStringLiteral("Repeater "));
    EXPECT_EQ(p.tag(QStringLiteral("chkPowerUpFlags"), 17), QStringLiteral("131072"));
    EXPECT_EQ(p.field(QStringLiteral("chkPowerUpFlags"), 11).caption(), QStringLiteral("Team Heal "));
    EXPECT_EQ(p.tag(QStringLiteral("chkAdvancedSaber"), 2), QStringLiteral("_saberalwaysboxtrace"));
    EXPECT_EQ(p.tag(QStringLiteral("chkBOTs"), 2), QString());
    EXPECT_EQ(p.tag(QStringLiteral("optDefaultGameType"), 6), QStringLiteral("8"));
}

TEST(ServerProfile, SelectingAnOptionClearsOnlyItsOwnGroup)
{
    ServerProfile p;
    p.setValue(QStringLiteral("optLogging"), 1, 1);
    EXPECT_EQ(p.value(QStringLiteral("optLogging"), 3), 0);
    EXPECT_EQ(p.value(QStringLiteral("optLogging"), 5), 1) << "the stats group is a frame of its own";
    p.setValue(QStringLiteral("chkServerType"), 0, 1);
    EXPECT_EQ(p.value(QStringLiteral("chkServerType"), 2), 0);
}

TEST(ServerProfile, OnlyARealChangeFiresTheReactions)
{
    ServerProfile p;
    Field& f = p.field(QStringLiteral("txtServerConfig"), 12);
    int fired = 0;
    QObject::connect(&f, &Field::changed, [&fired](Field*) { ++fired; });
    f.setText(QStringLiteral("28070"));
    EXPECT_EQ(fired, 0);
    f.setText(QStringLiteral("28071"));
    EXPECT_EQ(fired, 1);
    Field& check = p.field(QStringLiteral("chkDMFlags"), 0);
    QObject::connect(&check, &Field::changed, [&fired](Field*) { ++fired; });
    check.setValue(0);
    check.setValue(5); // any non-zero value ticks the box
    EXPECT_EQ(check.value(), 1);
    EXPECT_EQ(fired, 2);
}
