// The map page: the tree of maps from the catalogue, its clicks and double clicks, and the
// rotation grid's commands with the boxes the user answers.
#include "commands/MapCycleCommands.h"
#include "commands/MapScanCommand.h"
#include "maps/MapRotation.h"
#include "maps/MapTree.h"
#include "maps/MapTreeModel.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/ErrorBox.h"
#include "testkit/BoxExpect.h"
#include "MapsKit.h"

#include <QImage>

using namespace steward;
using namespace steward::testing;

namespace {

class MapTreeTest : public ::testing::Test {
protected:
    void load(const QByteArray& catalogue)
    {
        writeFile(t.programFolder() + u"/Jedi.aml"_s, catalogue);
        LoadMapTree(*t.app, profile, u"Jedi"_s, u"Jedi"_s);
    }
    MapTreeModel& tree() { return mapTreeOf(profile); }
    MapTreeNode* node(const QString& key) { return tree().findKey(key); }
    QStringList texts(const QString& key)
    {
        QStringList list;
        for (const auto& child : (key.isEmpty() ? tree().root() : node(key))->children)
            list << child->text;
        return list;
    }
    void click(const QString& key) { tvwAvailMaps_NodeClick(*t.app, profile, node(key)); }
    void doubleClick() { tvwAvailMaps_DblClick(*t.app, profile); }
    QString shots() const { return t.programFolder() + u"/levelshots"_s; }
    QString label(FieldId name) const { return profile.text(name); }
    /// The level shot, long name and type shown, the level shots folder written as ~.
    QString shown() const
    {
        return QString(label(F::picMap)).replace(shots(), u"~"_s) + u'|' + label(F::lblLongMapName) + u'|' +
               label(F::lblMapType);
    }
    TestApp t;
    ServerProfile profile;
};

class MapRotationTest : public MapTreeTest {
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
    bool clicksAttached = (attachClickRoutines(*t.app, profile), true);
};

} // namespace

TEST_F(MapTreeTest, AMissingCatalogueWarnsAndLeavesTheTreeAsItWasAndAnEmptyOneGivesTheRootAlone)
{
    QFile::remove(t.programFolder() + u"/Jedi.aml"_s);
    profile.setText(F::lblNumberOfMapsAvailable, u"7 Maps available"_s);
    profile.setFormPointer(11);
    LoadMapTree(*t.app, profile, u"Jedi"_s, u"Jedi"_s);
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(
        isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation,
                                 u"Unable to locate Jedi file, please run a new Map Scan"_s + kTail, Buttons::Ok}));
    EXPECT_EQ(tree().nodeCount(), 0);
    EXPECT_EQ(label(F::lblNumberOfMapsAvailable), u"7 Maps available"_s);
    EXPECT_EQ(profile.formPointer(), 0);
    load("");
    ASSERT_EQ(tree().roots().size(), 1u);
    EXPECT_EQ(tree().root()->text, u"Jedi"_s);
    EXPECT_EQ(tree().nodeCount(), 1);
    EXPECT_EQ(label(F::lblNumberOfMapsAvailable), u"0 Maps available"_s);
    EXPECT_EQ(t.prompts.shown.size(), 1u);
    // The fallback pictures are in place for the preview.
    EXPECT_TRUE(QFile::exists(shots() + u"/unknown.jpg"_s));
}

TEST_F(MapTreeTest, ArchivesAreSortedMapsKeepTheirOrderADuplicateKeyAddsNothingButCountsAndACommaShiftsTheRest)
{
    load("zeta.pk3,z2,z2,Zed Two,FFA\r\nzeta.pk3,z1,z1,Zed One,DUEL\r\n"
         "assets0.pk3,ffa_yavin,ffa_yavin,Massassi Temple,ffa holocron jedimaster team\r\n"
         "assets0.pk3,duel_bay,duel_bay,Imperial Shuttle Bay,duel\r\n"
         "Beta.pk3,b,b,Bee,unknown\r\nBETA.PK3,b2,b2,Bee Two,unknown\r\n");
    EXPECT_EQ(texts({}), (QStringList{u"assets0.pk3"_s, u"Beta.pk3"_s, u"zeta.pk3"_s}));
    EXPECT_EQ(texts(u"Jedi\\assets0.pk3"_s), (QStringList{u"ffa_yavin"_s, u"duel_bay"_s}));
    EXPECT_EQ(texts(u"Jedi\\Beta.pk3"_s), (QStringList{u"b"_s, u"b2"_s}));
    EXPECT_EQ(texts(u"Jedi\\zeta.pk3"_s), (QStringList{u"z2"_s, u"z1"_s}));
    EXPECT_EQ(label(F::lblNumberOfMapsAvailable), u"6 Maps available"_s);
    EXPECT_EQ(node(u"zeta.pk3\\z1"_s)->tag, u"z1,Zed One,DUEL"_s);
    EXPECT_TRUE(node(u"Jedi\\zeta.pk3"_s)->tag.isEmpty());
    // The same through the item model a view reads.
    const QModelIndex top = tree().index(0, 0);
    EXPECT_EQ(tree().rowCount(top), 3);
    const QModelIndex archive = tree().index(2, 0, top);
    EXPECT_EQ(archive.data().toString(), u"zeta.pk3"_s);
    EXPECT_EQ(tree().index(1, 0, archive).data(MapTreeModel::TagRole).toString(), u"z1,Zed One,DUEL"_s);
    EXPECT_EQ(tree().parent(archive), top);
    // A reload: a duplicate key adds nothing but counts, and a comma shifts the rest.
    load("a.pk3,m,m,First,FFA\r\na.pk3,m,m,Again,FFA\r\n  \"q.pk3\"  junk,q,q,\"Q, quoted\",FFA\r\n"
         "b.pk3,n,n,Long, Comma,DUEL\r\nc.pk3,o,o,Oh,CTF\r\n");
    // Records: a/m, a/m (no node), q/q (quotes keep a comma), b/n of type "Comma", "DUEL,c.pk3,o,o,Oh",
    // then the lone "CTF" that the end of the file cuts short, keeping the other four values.
    EXPECT_EQ(label(F::lblNumberOfMapsAvailable), u"6 Maps available"_s);
    EXPECT_EQ(texts({}), (QStringList{u"a.pk3"_s, u"b.pk3"_s, u"CTF"_s, u"DUEL"_s, u"q.pk3"_s}));
    EXPECT_EQ(node(u"q.pk3\\q"_s)->tag, u"q,Q, quoted,FFA"_s);
    EXPECT_EQ(texts(u"Jedi\\a.pk3"_s), QStringList{u"m"_s});
    EXPECT_EQ(node(u"a.pk3\\m"_s)->tag, u"m,First,FFA"_s);
    EXPECT_EQ(node(u"b.pk3\\n"_s)->tag, u"n,Long,Comma"_s);
    EXPECT_EQ(node(u"DUEL\\c.pk3"_s)->tag, u"o,o,Oh"_s);
    EXPECT_EQ(node(u"CTF\\c.pk3"_s)->tag, u"o,o,Oh"_s);
}

TEST_F(MapTreeTest, AClickShowsTheLevelShotTheLongNameAndTheTypeAndADoubleClickAddsTheMapWithThem)
{
    load("m.pk3,one,one,One,FFA\r\nm.pk3,two,two,Two,DUEL\r\nUPPER.PK3,three,three,Three,CTF\r\n");
    Field& grid = profile.field(F::lsvMapRotation);
    click(u"m.pk3\\one"_s);
    doubleClick();
    doubleClick();
    click(u"m.pk3\\two"_s);
    doubleClick();
    ASSERT_EQ(grid.count(), 3);
    EXPECT_EQ(grid.rows().at(0), rotationRow(u"one"_s, u"One"_s, u"FFA"_s));
    EXPECT_EQ(grid.rows().at(1), grid.rows().at(0)); // the same map may stand twice
    EXPECT_EQ(grid.rows().at(2), (QStringList{u"two"_s, u"Two"_s, u"DUEL"_s, QString(), u"imgMapNotSelected"_s}));
    EXPECT_EQ(label(F::lblMapsSelected), u"3 Selected Maps"_s);
    EXPECT_EQ(firstMapType(profile), u"FFA"_s);
    EXPECT_TRUE(profile.configurationChanged());
    // The root and an archive in small letters add nothing and show the unknown picture.
    click(u"m.pk3\\two"_s);
    tree().setSelectedNode(node(u"Jedi\\m.pk3"_s));
    doubleClick();
    EXPECT_EQ(grid.count(), 3);
    EXPECT_EQ(shown(), u"~/unknown.jpg||"_s);
    tree().setSelectedNode(tree().root());
    doubleClick();
    EXPECT_EQ(grid.count(), 3);
    // An archive named in capitals counts as a map, with the labels of the last click.
    click(u"m.pk3\\two"_s);
    tree().setSelectedNode(node(u"Jedi\\UPPER.PK3"_s));
    doubleClick();
    ASSERT_EQ(grid.count(), 4);
    EXPECT_EQ(grid.rows().at(3).mid(0, 3), (QStringList{u"UPPER.PK3"_s, u"Two"_s, u"DUEL"_s}));
    EXPECT_EQ(firstMapType(profile), u"FFA"_s);
    // A reload replaces the tree and forgets the selection.
    load("b.pk3,two,two,Two,FFA\r\n");
    EXPECT_EQ(tree().selectedNode(), nullptr);
    EXPECT_EQ(node(u"m.pk3\\one"_s), nullptr);
    EXPECT_NE(node(u"b.pk3\\two"_s), nullptr);
    doubleClick();
    EXPECT_EQ(grid.count(), 4);
    // A click shows the level shot, the long name and the type.
    load("m.pk3,withjpg,withjpg,With Jpg,FFA\r\nm.pk3,withbmp,withbmp,With Bmp,duel\r\nm.pk3,none,none,None,x\r\n");
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    for (const char* name : {"withjpg.jpg", "withjpg.bmp", "withbmp.bmp"})
        ASSERT_TRUE(image.save(shots() + u'/' + QString::fromLatin1(name)));
    writeFile(shots() + u"/none.jpg"_s, "a broken picture");
    for (const auto& [key, expected] : {std::pair{u"m.pk3\\withjpg"_s, u"~/withjpg.jpg|With Jpg|FFA"_s},
                                        {u"m.pk3\\withbmp"_s, u"~/withbmp.bmp|With Bmp|duel"_s},
                                        {u"m.pk3\\none"_s, u"~/unknown.jpg|None|x"_s},
                                        {u"Jedi\\m.pk3"_s, u"~/unknown.jpg||"_s}}) {
        click(key);
        EXPECT_EQ(shown(), expected);
    }
    // Without any fallback picture the last picture stays.
    click(u"m.pk3\\withjpg"_s);
    QFile::remove(shots() + u"/unknown.jpg"_s);
    click(u"m.pk3\\none"_s);
    EXPECT_EQ(shown(), u"~/withjpg.jpg|None|x"_s);
}

TEST_F(MapRotationTest, AStockSetOnAnEmptyGridIsAddedWithoutAQuestionAndOverRowsAsksFirst)
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
    // Over rows it asks first.
    grid().setRows({});
    rows({"mine"});
    profile.setConfigurationChanged(false);
    profile.setValue(F::chkUseINI, 1);
    profile.setText(F::txtServerINI, u"/x/saved.cfg"_s);
    setFirstMapType(profile, u"FFA"_s);
    profile.setStartingMap(u"mine"_s);
    t.prompts.answerNext(Answer::No);
    AddStandardMaps(*t.app, profile, StockSet::Duel);
    EXPECT_TRUE(asked("Clear Map list?"));
    EXPECT_EQ(rotation(), u"mine"_s);
    EXPECT_TRUE(profile.isSet(F::optDefaultGameType(5)));
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

TEST_F(MapRotationTest, SettingTheStartingMapMovesTheMarkTellsTheUserAndSkipsATagPastTheLastRow)
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
    // After a sort the Tag points at another row; the old mark moves with its row and stays.
    ID_SortDescending(profile);
    EXPECT_EQ(rotation(), u"c* b a"_s);
    EXPECT_EQ(grid().tag(), u"2"_s);
    setStart(1);
    EXPECT_EQ(rotation(), u"c* b* a"_s);
    EXPECT_EQ(profile.startingMap(), u"b"_s);
    // A Tag past the last row is skipped.
    grid().setRows({});
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

TEST_F(MapRotationTest, SortsCompareTheMapNamesCaseSensitivelyAndMovingSwapsTheTextAndReportsABadRow)
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
    // Moving swaps the text and reports a bad row.
    grid().setRows({});
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
