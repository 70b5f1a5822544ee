// The map rotation grid: stock sets, the starting map's mark, sorting, moving,
// removing and clearing, each with the boxes the user answers.
#include "commands/MapCycleCommands.h"
#include "commands/MapScanCommand.h"
#include "maps/MapRotation.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/ErrorBox.h"
#include "testkit/BoxExpect.h"
#include "MapsKit.h"

using namespace steward;
using namespace steward::testing;

namespace {

class MapRotationTest : public ::testing::Test {
protected:
    Field& grid() { return profile.field(F::lsvMapRotation); }
    /// The map names, one blank apart, each marked * when it bears the starting map's mark.
    QString rotation()
    {
        QStringList list;
        for (int row = 0; row < grid().count(); ++row)
            list << grid().cell(row, 0) + (rotationMark(grid(), row) == kMarkSelected ? u"*"_s : QString());
        return list.join(u' ');
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
    void answer(Answer answer, void (*command)(AppContext&, ServerProfile&))
    {
        t.prompts.answerNext(answer);
        command(*t.app, profile);
    }
    bool asked(const char* question) const
    {
        return isBox(t.prompts.last(),
                     {kProductTitle, Icon::Question, QString::fromLatin1(question) + kTail, Buttons::YesNo});
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
    EXPECT_EQ(rotation(), u"ctf_bespin ctf_imperial ctf_ns_streets ctf_yavin"_s);
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_EQ(selected(), u"4 Selected Maps"_s);
    EXPECT_TRUE(profile.isSet(F::optDefaultGameType(5))) << "the set's game type is selected";
    EXPECT_TRUE(profile.configurationChanged());
    EXPECT_TRUE(rotationMenuOpens(profile));
    setStart(3);
    EXPECT_EQ(profile.startingMap(), u"ctf_yavin"_s);
}

TEST_F(MapRotationTest, AStockSetOverRowsAsksFirst)
{
    rows({"mine"});
    profile.setValue(F::chkUseINI, 1);
    profile.setText(F::txtServerINI, u"/x/saved.cfg"_s);
    setFirstMapType(profile, u"FFA"_s);
    profile.setStartingMap(u"mine"_s);
    t.prompts.answerNext(Answer::No);
    AddStandardMaps(*t.app, profile, StockSet::Duel);
    EXPECT_TRUE(asked("Clear Map list?"));
    EXPECT_EQ(rotation(), u"mine"_s);
    EXPECT_TRUE(profile.isSet(F::optDefaultGameType(0)));
    EXPECT_FALSE(profile.configurationChanged());

    AddStandardMaps(*t.app, profile, StockSet::Duel);
    AddStandardMaps(*t.app, profile, StockSet::Duel);
    EXPECT_EQ(rotation(), u"duel_bay duel_carbon duel_jedi duel_pit"_s);
    EXPECT_EQ(firstMapType(profile), QString());
    EXPECT_EQ(profile.value(F::chkUseINI), 0);
    EXPECT_EQ(profile.text(F::txtServerINI), QString()); // the box's click ran
    EXPECT_EQ(profile.startingMap(), u"mine"_s);
    EXPECT_TRUE(profile.isSet(F::optDefaultGameType(3)));
}

TEST_F(MapRotationTest, SettingTheStartingMapMovesTheMarkAndTellsTheUser)
{
    rows({"a", "b", "c"});
    setStart(1);
    EXPECT_EQ(profile.startingMap(), u"b"_s);
    EXPECT_EQ(grid().tag(), u"1"_s);
    EXPECT_EQ(rotation(), u"a b* c"_s);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Information,
                                         u"b has been set as the starting map"_s + kTail, Buttons::Ok}));
    setStart(2);
    EXPECT_EQ(rotation(), u"a b c*"_s);
    // After a sort the Tag points at another row, which loses a mark it didn't have,
    // while the old mark moves with its row and stays.
    ID_SortDescending(profile);
    EXPECT_EQ(rotation(), u"c* b a"_s);
    EXPECT_EQ(grid().tag(), u"2"_s);
    setStart(1);
    EXPECT_EQ(rotation(), u"c* b* a"_s);
    EXPECT_EQ(profile.startingMap(), u"b"_s);
}

TEST_F(MapRotationTest, ATagPastTheLastRowIsSkipped)
{
    rows({"a", "b", "c"});
    setStart(2);
    grid().setCurrent(2);
    answer(Answer::Yes, ID_RemoveMap);
    answer(Answer::Yes, ID_RemoveMap);
    ASSERT_EQ(rotation(), u"a"_s);
    EXPECT_EQ(profile.startingMap(), u"c"_s);
    setStart(0);
    EXPECT_EQ(rotation(), u"a*"_s);
    EXPECT_EQ(grid().tag(), u"0"_s);
    rows({"b"});
    grid().setTag(u"2"_s); // exactly one past the last row: skipped, no error
    setStart(1);
    EXPECT_EQ(rotation(), u"a* b*"_s) << "the first row's mark stays, as the Tag didn't name it";
    EXPECT_TRUE(t.prompts.shown.back().request.text.startsWith(u"b has been set"_s));
}

TEST_F(MapRotationTest, SortsCompareTheMapNamesCaseSensitively)
{
    rows({"b", "B", "a", "A"});
    ID_SortAscending(profile);
    EXPECT_EQ(rotation(), u"A B a b"_s);
    ID_SortDescending(profile);
    EXPECT_EQ(rotation(), u"b a B A"_s);
    // A map that stands twice keeps the order of its rows either way.
    grid().setRows({rotationRow(u"x"_s, u"first"_s, {}), rotationRow(u"x"_s, u"second"_s, {})});
    for (auto sort : {ID_SortDescending, ID_SortAscending}) {
        sort(profile);
        EXPECT_EQ(grid().cell(0, 1), u"first"_s);
    }
}

TEST_F(MapRotationTest, RemovingAndClearingUseTheirOwnWordings)
{
    rows({"a", "b", "c"});
    setFirstMapType(profile, u"FFA"_s);
    profile.setStartingMap(u"a"_s);
    grid().setCurrent(0);
    answer(Answer::No, ID_RemoveMap);
    EXPECT_TRUE(asked("Remove Selected Map?"));
    EXPECT_EQ(rotation(), u"a b c"_s);
    answer(Answer::Yes, ID_RemoveMap);
    EXPECT_EQ(rotation(), u"b c"_s);
    EXPECT_EQ(selected(), u"2 Maps Selected"_s);
    EXPECT_EQ(firstMapType(profile), u"FFA"_s);
    answer(Answer::Yes, ID_RemoveMap);
    answer(Answer::Yes, ID_RemoveMap);
    EXPECT_EQ(rotation(), QString());
    EXPECT_EQ(selected(), u"0 Maps Selected"_s);
    EXPECT_EQ(firstMapType(profile), QString());
    EXPECT_EQ(profile.startingMap(), u"a"_s);

    // Clearing empties the starting map but keeps the Tag.
    rows({"a", "b"});
    setStart(1);
    profile.setValue(F::chkUseINI, 1);
    answer(Answer::No, ID_ClearList);
    EXPECT_TRUE(asked("Clear Map List?"));
    EXPECT_EQ(rotation(), u"a b*"_s);
    answer(Answer::Yes, ID_ClearList);
    EXPECT_EQ(rotation(), QString());
    EXPECT_EQ(selected(), u"0 Maps Selected"_s);
    EXPECT_EQ(profile.startingMap(), QString());
    EXPECT_EQ(grid().tag(), u"1"_s);
    EXPECT_EQ(profile.value(F::chkUseINI), 0);
    EXPECT_FALSE(rotationMenuOpens(profile));
}

TEST_F(MapRotationTest, AutoCycleHidesTheMapControlsAndShowsTheStartingMapCombo)
{
    auto shown = [&](bool maps, bool combo) {
        for (FieldId name : {F::tvwAvailMaps, F::picMap, F::lsvMapRotation, F::lblMapsSelected,
                             F::lblNumberOfMapsAvailable, F::lblMapType, F::lblLongMapName})
            EXPECT_EQ(profile.field(name).isVisible(), maps) << name.name;
        EXPECT_EQ(profile.field(F::cboStartingMap).isVisible(), combo);
    };
    profile.setValue(F::chkUseINI, 1);
    profile.setText(F::txtServerINI, u"/x/saved.cfg"_s);
    setCheckFromCode(profile, F::chkMapAutoCycle, 1);
    // Clearing chkUseINI ran its click, which showed the controls again behind step 1.
    EXPECT_EQ(profile.value(F::chkUseINI), 0);
    EXPECT_EQ(profile.text(F::txtServerINI), QString());
    shown(true, true);
    setCheckFromCode(profile, F::chkMapAutoCycle, 0);
    setCheckFromCode(profile, F::chkMapAutoCycle, 1);
    shown(false, true);
    setCheckFromCode(profile, F::chkMapAutoCycle, 0);
    shown(true, false);
}

TEST_F(MapRotationTest, MovingSwapsTheTextAndReportsABadRow)
{
    rows({"a", "b", "c"});
    setStart(0);
    m_MoveUpInList(*t.app, profile, 0);
    m_MoveDownInList(*t.app, profile, 2);
    EXPECT_EQ(rotation(), u"a* b c"_s);
    m_MoveDownInList(*t.app, profile, 0);
    EXPECT_EQ(rotation(), u"b* a c"_s); // the text moves, the mark stays
    m_MoveUpInList(*t.app, profile, 2);
    EXPECT_EQ(rotation(), u"b* c a"_s);
    const size_t boxes = t.prompts.shown.size();
    m_MoveUpInList(*t.app, profile, 7);
    ASSERT_EQ(t.prompts.shown.size(), boxes + 1);
    EXPECT_TRUE(isBox(t.prompts.last(), errorBox(err::IndexOutOfBounds,
                                                 u"arena-steward::frmMain.m_MoveUpInList(Sub) (arena-steward)"_s)));
}
