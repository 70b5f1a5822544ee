#include "model/ServerProfile.h"
#include "support/Errors.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

using namespace steward;

TEST(ServerProfile, ArraysReportTheirBounds)
{
    ServerProfile p;
    const std::pair<FieldArray, std::pair<int, int>> arrays[] = {
        {F::txtServerConfig, {0, 16}}, {F::txtServerConfigSpin, {0, 17}}, {F::txtSpeed, {0, 3}},
        {F::txtGameLimits, {0, 3}},    {F::txtForceReGen, {0, 0}},        {F::txtAdvancedSaber, {0, 3}},
        {F::chkAdvancedSaber, {0, 2}}, {F::chkQuake3Specific, {0, 18}},   {F::chkWeaponFlags, {0, 31}},
        {F::chkPowerUpFlags, {0, 17}}, {F::chkDMFlags, {0, 2}},           {F::optDefaultGameType, {0, 6}},
        {F::chkServerType, {0, 2}},    {F::optLogging, {0, 5}},           {F::chkBOTs, {0, 5}},
        {F::cboConfig, {0, 3}},        {F::txtMsg, {0, 1}},
    };
    for (const auto& [name, bounds] : arrays) {
        SCOPED_TRACE(name.name);
        EXPECT_EQ(p.lbound(name), bounds.first);
        EXPECT_EQ(p.ubound(name), bounds.second);
        for (int i = bounds.first; i <= bounds.second; ++i)
            EXPECT_NO_THROW(p.field(name(i))) << i;
    }
}

TEST(ServerProfile, AnUnknownFieldIsARunTimeError)
{
    ServerProfile p;
    EXPECT_THROW(p.field(F::txtServerConfig(17)), RuntimeError);
    EXPECT_THROW(p.lbound(FieldArray{"txtMaster1"}), RuntimeError) << "a field of its own is no array";
}

TEST(ServerProfile, WeaponHalvesRunThroughTheBitsInTheirOwnOrders)
{
    ServerProfile p;
    EXPECT_EQ(p.tag(F::chkWeaponFlags(2)), QStringLiteral("4"));
    EXPECT_EQ(p.tag(F::chkWeaponFlags(17)), QStringLiteral("4"));
    EXPECT_EQ(p.tag(F::chkWeaponFlags(24)), QStringLiteral("2"));
    EXPECT_EQ(p.field(F::chkWeaponFlags(26)).caption(), QStringLiteral("Repeater "));
    EXPECT_EQ(p.tag(F::chkPowerUpFlags(17)), QStringLiteral("131072"));
    EXPECT_EQ(p.field(F::chkPowerUpFlags(11)).caption(), QStringLiteral("Team Heal "));
    EXPECT_EQ(p.tag(F::chkAdvancedSaber(2)), QStringLiteral("_saberalwaysboxtrace"));
    EXPECT_EQ(p.tag(F::chkBOTs(2)), QString());
    EXPECT_EQ(p.tag(F::optDefaultGameType(6)), QStringLiteral("8"));
}

TEST(ServerProfile, SelectingAnOptionClearsOnlyItsOwnGroup)
{
    ServerProfile p;
    p.setValue(F::optLogging(1), 1);
    EXPECT_EQ(p.value(F::optLogging(3)), 0);
    EXPECT_EQ(p.value(F::optLogging(5)), 1) << "the stats group is a frame of its own";
    p.setValue(F::chkServerType(0), 1);
    EXPECT_EQ(p.value(F::chkServerType(2)), 0);
}

TEST(ServerProfile, OnlyARealChangeFiresTheReactions)
{
    ServerProfile p;
    Field& f = p.field(F::txtServerConfig(12));
    int fired = 0;
    QObject::connect(&f, &Field::changed, [&fired](Field*) { ++fired; });
    f.setText(QStringLiteral("28070"));
    EXPECT_EQ(fired, 0);
    f.setText(QStringLiteral("28071"));
    EXPECT_EQ(fired, 1);
    Field& check = p.field(F::chkDMFlags(0));
    QObject::connect(&check, &Field::changed, [&fired](Field*) { ++fired; });
    check.setValue(0);
    check.setValue(5); // any non-zero value ticks the box
    EXPECT_EQ(check.value(), 1);
    EXPECT_EQ(fired, 2);
}

TEST(ServerProfile, TheTypedNamesAndTheTableNameTheSameFields)
{
    // Every typed name has its field, and every field of the table has its typed name.
    ServerProfile p;
    std::set<std::pair<std::string, bool>> fromTable;
    for (const Field* f : p.fields())
        fromTable.insert({f->name().toStdString(), f->index() >= 0});
    std::set<std::pair<std::string, bool>> fromNames;
    for (const FieldNameEntry& entry : allFieldNames())
        fromNames.insert({entry.name, entry.array});
    EXPECT_EQ(fromTable, fromNames);
    EXPECT_EQ(F::txtServerConfig(12).key(), QStringLiteral("txtServerConfig(12)"));
    EXPECT_EQ(F::cboStartingMap.key(), QStringLiteral("cboStartingMap"));
    EXPECT_EQ(&p.field(F::txtServerConfig(12)), p.findByName(QStringLiteral("txtServerConfig"), 12));
}
