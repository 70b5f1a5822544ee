#include "model/ServerProfile.h"
#include "testkit/Printers.h"
#include "support/Errors.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

using namespace steward;
using namespace Qt::StringLiterals;

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
    EXPECT_EQ(F::txtServerConfig(12).key(), u"txtServerConfig(12)"_s);
    EXPECT_EQ(F::cboStartingMap.key(), u"cboStartingMap"_s);
    EXPECT_EQ(&p.field(F::txtServerConfig(12)), p.findByName(u"txtServerConfig"_s, 12));
}

// The five master boxes are numbered for the user from 1, as are the cvars in their Tags.
TEST(ServerProfile, TheMasterBoxesAreNumberedFromOne)
{
    QStringList shown;
    for (const FieldDefinition& d : profileFieldTable())
        if (d.name.startsWith(QLatin1String("txtMaster")))
            shown << d.name + u' ' + d.caption + u' ' + d.tag;
    EXPECT_EQ(shown, (QStringList{u"txtMaster1 &1. sv_master1"_s, u"txtMaster2 &2. sv_master2"_s,
                                  u"txtMaster3 &3. sv_master3"_s, u"txtMaster4 &4. sv_master4"_s,
                                  u"txtMaster5 &5. sv_master5"_s}));
}
