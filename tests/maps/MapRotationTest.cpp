#include "commands/MapCycleCommands.h"
#include "commands/MapScanCommand.h"
#include "maps/MapRotation.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "testkit/Printers.h"
#include "support/ErrorBox.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {

class MapRotationTest : public ::testing::Test {
protected:
    Field& grid() { return profile.field(F::lsvMapRotation); }
    /// The map names, one blank apart.
    QString names()
    {
        QStringList list;
        for (int row = 0; row < grid().count(); ++row)
            list << grid().cell(row, 0);
        return list.join(QLatin1Char(' '));
    }
    /// One character a row: * for the starting map's mark, - for none.
    QString marks()
    {
        QString list;
        for (int row = 0; row < grid().count(); ++row)
            list += rotationMark(grid(), row) == kMarkSelected ? QLatin1Char('*') : QLatin1Char('-');
        return list;
    }
    void rows(std::initializer_list<const char*> maps)
    {
        for (const char* map : maps)
            grid().addRow(rotationRow(QString::fromLatin1(map), QString(), QString()));
    }
    void setStart(int row)
    {
        grid().setCurrent(row);
        ID_SetStartingMap(*t.app, profile);
    }
    QString selected() const { return profile.text(F::lblMapsSelected); }

    TestApp t;
    ServerProfile profile;
    bool clicksAttached = (attachClickRoutines(*t.app, profile), true);
};

} // namespace

TEST_F(MapRotationTest, AStockSetOnAnEmptyGridIsAddedWithoutAQuestion)
{
    profile.setValue(F::optDefaultGameType(1), 1);
    AddStandardMaps(*t.app, profile, StockSet::CaptureTheFlag);
    EXPECT_EQ(names(), QStringLiteral("ctf_bespin ctf_imperial ctf_ns_streets ctf_yavin"));
    EXPECT_EQ(marks(), QStringLiteral("----"));
    EXPECT_EQ(grid().rows().at(3), (QStringList{QStringLiteral("ctf_yavin"), QStringLiteral("Temple Tournament"),
                                                QStringLiteral("ctf cty team ffa holocron jedimaster"), QString(),
                                                QStringLiteral("imgMapNotSelected")}));
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_EQ(selected(), QStringLiteral("4 Selected Maps"));
    EXPECT_TRUE(profile.isSet(F::optDefaultGameType(5))) << "the set's game type is selected";
    EXPECT_TRUE(profile.configurationChanged());
    EXPECT_TRUE(rotationMenuOpens(profile));
    grid().setCurrent(3);
    ID_SetStartingMap(*t.app, profile);
    EXPECT_EQ(profile.startingMap(), QStringLiteral("ctf_yavin"));
}

TEST_F(MapRotationTest, AStockSetOverRowsAsksFirst)
{
    rows({"mine"});
    profile.setValue(F::chkUseINI, 1);
    profile.setText(F::txtServerINI, QStringLiteral("/x/saved.cfg"));
    setFirstMapType(profile, QStringLiteral("FFA"));
    profile.setStartingMap(QStringLiteral("mine"));
    t.prompts.answerNext(Answer::No);
    AddStandardMaps(*t.app, profile, StockSet::Duel);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {kProductTitle, Icon::Question, QStringLiteral("Clear Map list?") + kTail, Buttons::YesNo}));
    EXPECT_EQ(names(), QStringLiteral("mine"));
    EXPECT_TRUE(profile.isSet(F::optDefaultGameType(0)));
    EXPECT_FALSE(profile.configurationChanged());

    AddStandardMaps(*t.app, profile, StockSet::Duel);
    AddStandardMaps(*t.app, profile, StockSet::Duel);
    EXPECT_EQ(names(), QStringLiteral("duel_bay duel_carbon duel_jedi duel_pit"));
    EXPECT_EQ(firstMapType(profile), QString());
    EXPECT_EQ(profile.value(F::chkUseINI), 0);
    EXPECT_EQ(profile.text(F::txtServerINI), QString()); // the box's click ran
    EXPECT_EQ(profile.startingMap(), QStringLiteral("mine"));
    EXPECT_TRUE(profile.isSet(F::optDefaultGameType(3)));
}

TEST_F(MapRotationTest, SettingTheStartingMapMovesTheMarkAndTellsTheUser)
{
    rows({"a", "b", "c"});
    setStart(1);
    EXPECT_EQ(profile.startingMap(), QStringLiteral("b"));
    EXPECT_EQ(grid().tag(), QStringLiteral("1"));
    EXPECT_EQ(marks(), QStringLiteral("-*-"));
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Information,
                                         QStringLiteral("b has been set as the starting map") + kTail, Buttons::Ok}));

    setStart(2);
    EXPECT_EQ(marks(), QStringLiteral("--*"));

    // After a sort the Tag points at another row, which loses a mark it didn't have,
    // while the old mark moves with its row and stays.
    ID_SortDescending(profile);
    EXPECT_EQ(names(), QStringLiteral("c b a"));
    EXPECT_EQ(grid().tag(), QStringLiteral("2"));
    setStart(1);
    EXPECT_EQ(marks(), QStringLiteral("**-"));
    EXPECT_EQ(profile.startingMap(), QStringLiteral("b"));
}

TEST_F(MapRotationTest, ATagPastTheLastRowIsSkipped)
{
    rows({"a", "b", "c"});
    setStart(2);
    t.prompts.answerNext(Answer::Yes);
    grid().setCurrent(2);
    ID_RemoveMap(*t.app, profile);
    t.prompts.answerNext(Answer::Yes);
    ID_RemoveMap(*t.app, profile);
    ASSERT_EQ(names(), QStringLiteral("a"));
    EXPECT_EQ(profile.startingMap(), QStringLiteral("c"));
    setStart(0);
    EXPECT_EQ(marks(), QStringLiteral("*"));
    EXPECT_EQ(grid().tag(), QStringLiteral("0"));

    rows({"b"});
    grid().setTag(QStringLiteral("2")); // exactly one past the last row: skipped, no error
    setStart(1);
    EXPECT_EQ(marks(), QStringLiteral("**")) << "the first row's mark stays, as the Tag didn't name it";
    EXPECT_TRUE(t.prompts.shown.back().request.text.startsWith(QStringLiteral("b has been set")));
}

TEST_F(MapRotationTest, SortsCompareTheMapNamesCaseSensitively)
{
    rows({"b", "B", "a", "A"});
    ID_SortAscending(profile);
    EXPECT_EQ(names(), QStringLiteral("A B a b"));
    ID_SortDescending(profile);
    EXPECT_EQ(names(), QStringLiteral("b a B A"));

    // A map that stands twice keeps the order of its rows either way.
    grid().setRows({rotationRow(QStringLiteral("x"), QStringLiteral("first"), {}),
                    rotationRow(QStringLiteral("x"), QStringLiteral("second"), {})});
    for (auto sort : {ID_SortDescending, ID_SortAscending}) {
        sort(profile);
        EXPECT_EQ(grid().cell(0, 1), QStringLiteral("first"));
    }
}

TEST_F(MapRotationTest, RemovingUsesItsOwnWordings)
{
    rows({"a", "b", "c"});
    setFirstMapType(profile, QStringLiteral("FFA"));
    profile.setStartingMap(QStringLiteral("a"));
    grid().setCurrent(0);
    t.prompts.answerNext(Answer::No);
    ID_RemoveMap(*t.app, profile);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {kProductTitle, Icon::Question, QStringLiteral("Remove Selected Map?") + kTail, Buttons::YesNo}));
    EXPECT_EQ(grid().count(), 3);

    ID_RemoveMap(*t.app, profile);
    EXPECT_EQ(names(), QStringLiteral("b c"));
    EXPECT_EQ(selected(), QStringLiteral("2 Maps Selected"));
    EXPECT_EQ(firstMapType(profile), QStringLiteral("FFA"));
    ID_RemoveMap(*t.app, profile);
    ID_RemoveMap(*t.app, profile);
    EXPECT_EQ(grid().count(), 0);
    EXPECT_EQ(selected(), QStringLiteral("0 Maps Selected"));
    EXPECT_EQ(firstMapType(profile), QString());
    EXPECT_EQ(profile.startingMap(), QStringLiteral("a"));
}

TEST_F(MapRotationTest, ClearingEmptiesTheStartingMapButKeepsTheTag)
{
    rows({"a", "b"});
    setStart(1);
    profile.setValue(F::chkUseINI, 1);
    t.prompts.answerNext(Answer::No);
    ID_ClearList(*t.app, profile);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {kProductTitle, Icon::Question, QStringLiteral("Clear Map List?") + kTail, Buttons::YesNo}));
    EXPECT_EQ(grid().count(), 2);
    ID_ClearList(*t.app, profile);
    EXPECT_EQ(grid().count(), 0);
    EXPECT_EQ(selected(), QStringLiteral("0 Maps Selected"));
    EXPECT_EQ(profile.startingMap(), QString());
    EXPECT_EQ(grid().tag(), QStringLiteral("1"));
    EXPECT_EQ(profile.value(F::chkUseINI), 0);
    EXPECT_FALSE(rotationMenuOpens(profile));
}

TEST_F(MapRotationTest, AutoCycleHidesTheMapControlsAndShowsTheStartingMapCombo)
{
    const FieldId controls[] = {
        F::tvwAvailMaps, F::picMap,        F::lsvMapRotation, F::lblMapsSelected, F::lblNumberOfMapsAvailable,
        F::lblMapType,   F::lblLongMapName};
    profile.setValue(F::chkUseINI, 1);
    profile.setText(F::txtServerINI, QStringLiteral("/x/saved.cfg"));
    setCheckFromCode(profile, F::chkMapAutoCycle, 1);
    // Clearing chkUseINI ran its click, which showed the controls again behind step 1.
    EXPECT_EQ(profile.value(F::chkUseINI), 0);
    EXPECT_EQ(profile.text(F::txtServerINI), QString());
    for (FieldId name : controls)
        EXPECT_TRUE(profile.field(name).isVisible()) << name.name;
    EXPECT_TRUE(profile.field(F::cboStartingMap).isVisible());

    setCheckFromCode(profile, F::chkMapAutoCycle, 0);
    setCheckFromCode(profile, F::chkMapAutoCycle, 1);
    for (FieldId name : controls)
        EXPECT_FALSE(profile.field(name).isVisible()) << name.name;
    setCheckFromCode(profile, F::chkMapAutoCycle, 0);
    for (FieldId name : controls)
        EXPECT_TRUE(profile.field(name).isVisible()) << name.name;
    EXPECT_FALSE(profile.field(F::cboStartingMap).isVisible());
}

TEST_F(MapRotationTest, MovingSwapsTheTextAndReportsABadRow)
{
    rows({"a", "b", "c"});
    setStart(0);
    m_MoveUpInList(*t.app, profile, 0);
    m_MoveDownInList(*t.app, profile, 2);
    EXPECT_EQ(names(), QStringLiteral("a b c"));
    m_MoveDownInList(*t.app, profile, 0);
    EXPECT_EQ(names(), QStringLiteral("b a c"));
    EXPECT_EQ(marks(), QStringLiteral("*--"));
    m_MoveUpInList(*t.app, profile, 2);
    EXPECT_EQ(names(), QStringLiteral("b c a"));

    const size_t boxes = t.prompts.shown.size();
    m_MoveUpInList(*t.app, profile, 7);
    ASSERT_EQ(t.prompts.shown.size(), boxes + 1);
    EXPECT_TRUE(isBox(
        t.prompts.last(),
        errorBox(err::IndexOutOfBounds, QStringLiteral("arena-steward::frmMain.m_MoveUpInList(Sub) (arena-steward)"))));
}
