#include "model/ServerProfile.h"
#include "testkit/Printers.h"
#include "support/Errors.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

using namespace steward;

TEST(ServerProfile, AnUnknownFieldOrRowIsARunTimeError)
{
    ServerProfile p;
    EXPECT_NO_THROW(p.field(F::txtServerConfig(16)));
    EXPECT_THROW(p.field(F::txtServerConfig(17)), RuntimeError);
    EXPECT_THROW(p.lbound(FieldArray{"txtMaster1"}), RuntimeError) << "a field of its own is no array";
    Field& rows = p.field(F::lsvMapRotation);
    rows.setRows({{QStringLiteral("a")}, {QStringLiteral("b")}});
    EXPECT_THROW(rows.removeRow(2), RuntimeError) << "one past the last row";
    EXPECT_THROW(rows.removeRow(-1), RuntimeError);
    rows.removeRow(1);
    EXPECT_EQ(rows.rows(), QList<QStringList>{QStringList{QStringLiteral("a")}});
    Field& list = p.field(F::lstBannedIPs);
    list.setItems({QStringLiteral("1.2.3.4")});
    EXPECT_THROW(list.removeItem(1), RuntimeError) << "one past the last item";
    EXPECT_EQ(list.items(), QStringList{QStringLiteral("1.2.3.4")});
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

// The five master boxes are numbered for the user from 1, as are the cvars in their Tags.
TEST(ServerProfile, TheMasterBoxesAreNumberedFromOne)
{
    QStringList shown;
    for (const FieldDefinition& d : profileFieldTable())
        if (d.name.startsWith(QLatin1String("txtMaster")))
            shown << d.name + QLatin1Char(' ') + d.caption + QLatin1Char(' ') + d.tag;
    EXPECT_EQ(shown,
              (QStringList{QStringLiteral("txtMaster1 &1. sv_master1"), QStringLiteral("txtMaster2 &2. sv_master2"),
                           QStringLiteral("txtMaster3 &3. sv_master3"), QStringLiteral("txtMaster4 &4. sv_master4"),
                           QStringLiteral("txtMaster5 &5. sv_master5")}));
}
