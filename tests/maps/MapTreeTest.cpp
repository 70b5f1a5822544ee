#include "maps/MapRotation.h"
#include "maps/MapTree.h"
#include "maps/MapTreeModel.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "testkit/Printers.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {

class MapTreeTest : public ::testing::Test {
protected:
    void catalogue(const QByteArray& bytes) { writeFile(t.programFolder() + QStringLiteral("/Jedi.aml"), bytes); }
    void load() { LoadMapTree(*t.app, profile, QStringLiteral("Jedi"), QStringLiteral("Jedi")); }
    MapTreeModel& tree() { return mapTreeOf(profile); }
    QStringList texts(const MapTreeNode* node) const
    {
        QStringList list;
        for (const auto& child : node->children)
            list << child->text;
        return list;
    }
    QString shots() const { return t.programFolder() + QStringLiteral("/levelshots"); }
    void picture(const QString& name, const char* format)
    {
        QDir().mkpath(shots());
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(Qt::red);
        ASSERT_TRUE(image.save(shots() + QStringLiteral("/") + name, format));
    }
    MapTreeNode* node(const QString& key) { return tree().findKey(key); }
    QString label(FieldId name) const { return profile.text(name); }

    TestApp t;
    ServerProfile profile;
};

} // namespace

TEST(CatalogueReader, ReadsValuesAsOneStreamSoACommaInALongNameShiftsTheRecordsBehindIt)
{
    CatalogueReader reader(
        "a.pk3,m1,m1,Long, with comma,FFA\r\nb.pk3,m2,m2,Two,DUEL\r\n  \"quoted, value\"  junk,x\r\n");
    QStringList values;
    QString v;
    while (reader.next(v))
        values << v;
    EXPECT_EQ(values,
              (QStringList{QStringLiteral("a.pk3"), QStringLiteral("m1"), QStringLiteral("m1"), QStringLiteral("Long"),
                           QStringLiteral("with comma"), QStringLiteral("FFA"), QStringLiteral("b.pk3"),
                           QStringLiteral("m2"), QStringLiteral("m2"), QStringLiteral("Two"), QStringLiteral("DUEL"),
                           QStringLiteral("quoted, value"), QStringLiteral("x")}));
    EXPECT_TRUE(reader.atEnd());

    CatalogueReader records("a.pk3,m1,m1,Long, with comma,FFA\r\nb.pk3,m2,m2,Two,DUEL\r\n");
    MapEntry entry;
    ASSERT_TRUE(records.read(entry));
    EXPECT_EQ(entry.MapType, QStringLiteral("with comma"));
    ASSERT_TRUE(records.read(entry));
    EXPECT_EQ(entry.Pk3File, QStringLiteral("FFA"));
    EXPECT_EQ(entry.MapName, QStringLiteral("b.pk3"));
    EXPECT_EQ(entry.MapType, QStringLiteral("Two"));
    EXPECT_FALSE(records.read(entry));
    EXPECT_EQ(entry.Pk3File, QStringLiteral("DUEL")); // the rest keep the last record's values
    EXPECT_EQ(entry.MapName, QStringLiteral("b.pk3"));
}

TEST_F(MapTreeTest, AMissingCatalogueWarnsAndLeavesTheTreeAsItWas)
{
    QFile::remove(t.programFolder() + QStringLiteral("/Jedi.aml"));
    profile.setText(F::lblNumberOfMapsAvailable, QStringLiteral("7 Maps available"));
    profile.setFormPointer(11);
    load();
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {kProductTitle, Icon::Exclamation,
                       QStringLiteral("Unable to locate Jedi file, please run a new Map Scan") + kTail, Buttons::Ok}));
    EXPECT_EQ(tree().nodeCount(), 0);
    EXPECT_EQ(label(F::lblNumberOfMapsAvailable), QStringLiteral("7 Maps available"));
    EXPECT_EQ(profile.formPointer(), 0);
}

TEST_F(MapTreeTest, AnEmptyCatalogueGivesTheRootAlone)
{
    catalogue("");
    load();
    ASSERT_EQ(tree().roots().size(), 1u);
    EXPECT_EQ(tree().root()->text, QStringLiteral("Jedi"));
    EXPECT_EQ(tree().nodeCount(), 1);
    EXPECT_EQ(label(F::lblNumberOfMapsAvailable), QStringLiteral("0 Maps available"));
    EXPECT_TRUE(t.prompts.shown.empty());
    // The fallback pictures are in place for the preview.
    EXPECT_TRUE(QFile::exists(shots() + QStringLiteral("/unknown.jpg")));
}

TEST_F(MapTreeTest, ArchivesAreSortedAndMapsKeepTheirOrder)
{
    catalogue("zeta.pk3,z2,z2,Zed Two,FFA\r\n"
              "zeta.pk3,z1,z1,Zed One,DUEL\r\n"
              "assets0.pk3,ffa_yavin,ffa_yavin,Massassi Temple,ffa holocron jedimaster team\r\n"
              "assets0.pk3,duel_bay,duel_bay,Imperial Shuttle Bay,duel\r\n"
              "Beta.pk3,b,b,Bee,unknown\r\n"
              "BETA.PK3,b2,b2,Bee Two,unknown\r\n");
    load();
    MapTreeNode* root = tree().root();
    EXPECT_EQ(texts(root),
              (QStringList{QStringLiteral("assets0.pk3"), QStringLiteral("Beta.pk3"), QStringLiteral("zeta.pk3")}));
    EXPECT_EQ(texts(root->children[0].get()), (QStringList{QStringLiteral("ffa_yavin"), QStringLiteral("duel_bay")}));
    EXPECT_EQ(texts(root->children[1].get()), (QStringList{QStringLiteral("b"), QStringLiteral("b2")}));
    EXPECT_EQ(texts(root->children[2].get()), (QStringList{QStringLiteral("z2"), QStringLiteral("z1")}));
    EXPECT_EQ(label(F::lblNumberOfMapsAvailable), QStringLiteral("6 Maps available"));

    const MapTreeNode* map = node(QStringLiteral("zeta.pk3\\z1"));
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(map->tag, QStringLiteral("z1,Zed One,DUEL"));
    EXPECT_EQ(map->image, 5);
    EXPECT_EQ(node(QStringLiteral("Jedi\\zeta.pk3"))->image, 3);
    EXPECT_EQ(root->image, 1);
    EXPECT_TRUE(node(QStringLiteral("Jedi\\zeta.pk3"))->tag.isEmpty());

    // The same through the item model a view reads.
    const QModelIndex top = tree().index(0, 0);
    EXPECT_EQ(tree().rowCount(top), 3);
    const QModelIndex archive = tree().index(2, 0, top);
    EXPECT_EQ(archive.data().toString(), QStringLiteral("zeta.pk3"));
    EXPECT_EQ(tree().index(1, 0, archive).data(MapTreeModel::TagRole).toString(), QStringLiteral("z1,Zed One,DUEL"));
    EXPECT_EQ(archive.data(MapTreeModel::ImageKeyRole).toString(), QStringLiteral("PAK"));
    EXPECT_EQ(tree().parent(archive), top);
}

TEST_F(MapTreeTest, ADuplicateKeyAddsNothingButCountsAndACommaShiftsTheRest)
{
    catalogue("a.pk3,m,m,First,FFA\r\n"
              "a.pk3,m,m,Again,FFA\r\n"
              "b.pk3,n,n,Long, Comma,DUEL\r\n"
              "c.pk3,o,o,Oh,CTF\r\n");
    load();
    // Records read: a/m, a/m again (no node), b/n with the type "Comma", then
    // "DUEL,c.pk3,o,o,Oh", then the lone "CTF" that the end of the file cuts short and
    // that keeps the other four values.
    EXPECT_EQ(label(F::lblNumberOfMapsAvailable), QStringLiteral("5 Maps available"));
    EXPECT_EQ(texts(tree().root()), (QStringList{QStringLiteral("a.pk3"), QStringLiteral("b.pk3"),
                                                 QStringLiteral("CTF"), QStringLiteral("DUEL")}));
    EXPECT_EQ(texts(node(QStringLiteral("Jedi\\a.pk3"))), QStringList{QStringLiteral("m")});
    EXPECT_EQ(node(QStringLiteral("a.pk3\\m"))->tag, QStringLiteral("m,First,FFA"));
    EXPECT_EQ(node(QStringLiteral("b.pk3\\n"))->tag, QStringLiteral("n,Long,Comma"));
    EXPECT_EQ(node(QStringLiteral("DUEL\\c.pk3"))->tag, QStringLiteral("o,o,Oh"));
    EXPECT_EQ(node(QStringLiteral("CTF\\c.pk3"))->tag, QStringLiteral("o,o,Oh"));
}

TEST_F(MapTreeTest, AClickShowsTheLevelShotTheLongNameAndTheType)
{
    catalogue("m.pk3,withjpg,withjpg,With Jpg,FFA\r\n"
              "m.pk3,withbmp,withbmp,With Bmp,duel\r\n"
              "m.pk3,none,none,None,unknown\r\n");
    load();
    picture(QStringLiteral("withjpg.jpg"), "JPG");
    picture(QStringLiteral("withjpg.bmp"), "BMP");
    picture(QStringLiteral("withbmp.bmp"), "BMP");
    writeFile(shots() + QStringLiteral("/none.jpg"), "a broken picture");

    tvwAvailMaps_NodeClick(*t.app, profile, node(QStringLiteral("m.pk3\\withjpg")));
    EXPECT_EQ(profile.text(F::picMap), shots() + QStringLiteral("/withjpg.jpg"));
    EXPECT_EQ(label(F::lblLongMapName), QStringLiteral("With Jpg"));
    EXPECT_EQ(label(F::lblMapType), QStringLiteral("FFA"));

    tvwAvailMaps_NodeClick(*t.app, profile, node(QStringLiteral("m.pk3\\withbmp")));
    EXPECT_EQ(profile.text(F::picMap), shots() + QStringLiteral("/withbmp.bmp"));
    EXPECT_EQ(label(F::lblMapType), QStringLiteral("duel"));

    tvwAvailMaps_NodeClick(*t.app, profile, node(QStringLiteral("m.pk3\\none")));
    EXPECT_EQ(profile.text(F::picMap), shots() + QStringLiteral("/unknown.jpg"));
    EXPECT_EQ(label(F::lblLongMapName), QStringLiteral("None"));

    tvwAvailMaps_NodeClick(*t.app, profile, node(QStringLiteral("m.pk3\\withjpg")));
    tvwAvailMaps_NodeClick(*t.app, profile, tree().indexOf(node(QStringLiteral("Jedi\\m.pk3"))));
    EXPECT_EQ(profile.text(F::picMap), shots() + QStringLiteral("/unknown.jpg"));
    EXPECT_EQ(label(F::lblLongMapName), QString());
    EXPECT_EQ(label(F::lblMapType), QString());

    // Without any fallback picture the last picture stays.
    tvwAvailMaps_NodeClick(*t.app, profile, node(QStringLiteral("m.pk3\\withjpg")));
    QFile::remove(shots() + QStringLiteral("/unknown.jpg"));
    tvwAvailMaps_NodeClick(*t.app, profile, node(QStringLiteral("m.pk3\\none")));
    EXPECT_EQ(profile.text(F::picMap), shots() + QStringLiteral("/withjpg.jpg"));
}

TEST_F(MapTreeTest, ADoubleClickAddsTheMapWithTheLabelsOfTheClickBeforeIt)
{
    catalogue("m.pk3,one,one,One,FFA\r\n"
              "m.pk3,two,two,Two,DUEL\r\n"
              "UPPER.PK3,three,three,Three,CTF\r\n");
    load();
    Field& grid = profile.field(F::lsvMapRotation);

    tvwAvailMaps_NodeClick(*t.app, profile, node(QStringLiteral("m.pk3\\one")));
    tvwAvailMaps_DblClick(*t.app, profile);
    tvwAvailMaps_DblClick(*t.app, profile);
    tvwAvailMaps_NodeClick(*t.app, profile, node(QStringLiteral("m.pk3\\two")));
    tvwAvailMaps_DblClick(*t.app, profile);
    ASSERT_EQ(grid.count(), 3);
    EXPECT_EQ(grid.rows().at(0), rotationRow(QStringLiteral("one"), QStringLiteral("One"), QStringLiteral("FFA")));
    EXPECT_EQ(grid.rows().at(1), grid.rows().at(0)); // the same map may stand twice
    EXPECT_EQ(grid.rows().at(2), (QStringList{QStringLiteral("two"), QStringLiteral("Two"), QStringLiteral("DUEL"),
                                              QString(), QStringLiteral("imgMapNotSelected")}));
    EXPECT_EQ(label(F::lblMapsSelected), QStringLiteral("3 Selected Maps"));
    EXPECT_EQ(firstMapType(profile), QStringLiteral("FFA"));
    EXPECT_TRUE(profile.configurationChanged());

    // The root and an archive in small letters add nothing and show the unknown picture.
    tvwAvailMaps_NodeClick(*t.app, profile, node(QStringLiteral("m.pk3\\two")));
    tree().setSelectedNode(node(QStringLiteral("Jedi\\m.pk3")));
    tvwAvailMaps_DblClick(*t.app, profile);
    EXPECT_EQ(grid.count(), 3);
    EXPECT_EQ(label(F::lblMapType), QString());
    EXPECT_EQ(profile.text(F::picMap), shots() + QStringLiteral("/unknown.jpg"));
    tree().setSelectedNode(tree().root());
    tvwAvailMaps_DblClick(*t.app, profile);
    EXPECT_EQ(grid.count(), 3);

    // An archive named in capitals counts as a map, with the labels of the last click.
    tvwAvailMaps_NodeClick(*t.app, profile, node(QStringLiteral("m.pk3\\two")));
    tree().setSelectedNode(node(QStringLiteral("Jedi\\UPPER.PK3")));
    tvwAvailMaps_DblClick(*t.app, profile);
    ASSERT_EQ(grid.count(), 4);
    EXPECT_EQ(grid.rows().at(3).mid(0, 3),
              (QStringList{QStringLiteral("UPPER.PK3"), QStringLiteral("Two"), QStringLiteral("DUEL")}));
    EXPECT_EQ(firstMapType(profile), QStringLiteral("FFA"));
}

TEST_F(MapTreeTest, AReloadReplacesTheTreeAndForgetsTheSelection)
{
    catalogue("a.pk3,one,one,One,FFA\r\n");
    load();
    tvwAvailMaps_NodeClick(*t.app, profile, node(QStringLiteral("a.pk3\\one")));
    catalogue("b.pk3,two,two,Two,FFA\r\n");
    load();
    EXPECT_EQ(tree().selectedNode(), nullptr);
    EXPECT_EQ(node(QStringLiteral("a.pk3\\one")), nullptr);
    EXPECT_NE(node(QStringLiteral("b.pk3\\two")), nullptr);
    tvwAvailMaps_DblClick(*t.app, profile);
    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 0);
}
