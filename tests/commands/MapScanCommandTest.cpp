// Map > Scan from the window: the question, the whole chain on a real archive, the Wine prefix and the failures.
#include "commands/MapCycleCommands.h"
#include "commands/MapScanCommand.h"
#include "maps/MapRotation.h"
#include "maps/MapScanner.h"
#include "maps/MapTreeModel.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "testkit/Printers.h"
#include "testkit/RecordingScanProgress.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"
#include "testkit/BoxExpect.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

class MapScanCommandTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        attachClickRoutines(*t.app, profile);
        t.app->services.scanProgress = &progress;
        ASSERT_TRUE(ZipBuilder()
                        .file(u"maps/mymap.bsp"_s)
                        .file(u"scripts/mymap.arena"_s, arenaScript(u"mymap"_s, u"My Map"_s, u"ffa"_s))
                        .file(u"levelshots/mymap.tga"_s, tgaPicture(8, 8, 9, 9, 9))
                        .write(t.baseFolder() + u"/mymap.pk3"_s));
        // The window as the user left it.
        profile.field(F::lsvMapRotation).addRow(rotationRow(u"old"_s, {}, {}));
        profile.setValue(F::chkUseINI, 1);
        profile.setText(F::txtServerINI, u"/x/saved.cfg"_s);
        for (FieldId label : {F::lblMapsSelected, F::lblLongMapName, F::lblMapType})
            profile.setText(label, u"something"_s);
        profile.setStartingMap(u"old"_s);
        setFirstMapType(profile, u"FFA"_s);
    }
    void run(const WineEnvironment& env = {}) { mnuMapScan_Click(*t.app, profile, env); }
    QString catalogueFile() const { return t.programFolder() + u"/Jedi.aml"_s; }
    TestApp t;
    ServerProfile profile;
    RecordingScanProgress progress;
};

} // namespace

TEST_F(MapScanCommandTest, AnsweringNoScansNothing)
{
    QFile::remove(catalogueFile());
    t.prompts.answerNext(Answer::No);
    run();
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(
        isBox(t.prompts.last(), {kProductTitle, Icon::Question, u"Scan for new maps?"_s + kTail, Buttons::YesNo}));
    EXPECT_FALSE(QFileInfo::exists(catalogueFile()));
    EXPECT_TRUE(progress.events.isEmpty());
    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 1);
}

TEST_F(MapScanCommandTest, TheWholeChainRewritesTheCatalogueReloadsTheTreeAndEmptiesTheRotation)
{
    run();
    EXPECT_EQ(crlfLines(catalogueFile()), QStringList{u"mymap.pk3,mymap,mymap,My Map,FFA"_s});
    const QString shots = t.programFolder() + u"/levelshots"_s;
    EXPECT_TRUE(QFileInfo::exists(shots + u"/mymap.bmp"_s));
    EXPECT_FALSE(QFileInfo::exists(shots + u"/mymap.tga"_s));
    MapTreeModel& tree = mapTreeOf(profile);
    ASSERT_NE(tree.findKey(u"mymap.pk3\\mymap"_s), nullptr);
    EXPECT_EQ(profile.text(F::lblNumberOfMapsAvailable), u"1 Maps available"_s);
    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 0);
    EXPECT_EQ(profile.value(F::chkUseINI), 0);
    EXPECT_EQ(profile.text(F::txtServerINI), QString());
    for (FieldId label : {F::lblMapsSelected, F::lblLongMapName, F::lblMapType})
        EXPECT_EQ(profile.text(label), QString()) << label.name;
    EXPECT_EQ(profile.startingMap(), u"old"_s);
    EXPECT_EQ(firstMapType(profile), u"FFA"_s);
    EXPECT_EQ(profile.text(F::picMap), shots + u"/unknown.bmp"_s);
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Information, u"Map scan complete "_s + kTail}));
    EXPECT_EQ(t.prompts.shown.size(), 2u);
    EXPECT_EQ(progress.events.last(), u"unload"_s);
    EXPECT_FALSE(progress.loaded);
    EXPECT_EQ(t.prompts.pointerHistory, (std::vector<int>{11, 0}));
    EXPECT_GE(t.prompts.eventRuns, 1);
}

TEST_F(MapScanCommandTest, WithoutAGameFolderTheWinePrefixNamesIt)
{
    const QString prefix = t.root() + u"/wine"_s;
    QDir().mkpath(prefix + u"/drive_c"_s);
    ASSERT_TRUE(QFile::link(t.gameFolder(), prefix + u"/drive_c/JK2"_s));
    writeFile(prefix + u"/system.reg"_s,
              "WINE REGISTRY Version 2\n\n[Software\\\\LucasArts Entertainment Company LLC\\\\Star Wars JK II Jedi "
              "Outcast\\\\1.0] 1\n\"Install Path\"=\"C:\\\\JK2\\\\\"\n");
    t.app->gameFolder.clear();
    run({prefix, QString()});
    EXPECT_EQ(crlfLines(catalogueFile()), QStringList{u"mymap.pk3,mymap,mymap,My Map,FFA"_s});
    EXPECT_TRUE(t.app->gameFolder.isEmpty());
    EXPECT_EQ(cutFolderEnd(u"/games/jk2/"_s + QChar(0)), u"/games/jk2/"_s);
    EXPECT_EQ(cutFolderEnd(u"/games/jk2/"_s), u"/games/jk2"_s);
}

TEST_F(MapScanCommandTest, AFailedScanEndsTheChainAndUnloadsTheWindow)
{
    t.app->gameFolder = t.root() + u"/nogame"_s;
    run();
    const MessageBoxRequest& box = t.prompts.last().request;
    EXPECT_TRUE(box.text.startsWith(u"Arena Steward was unable to locate any pk3 files"_s));
    EXPECT_TRUE(isBox(box, {kProductTitle, Icon::Critical, box.text}));
    EXPECT_FALSE(t.prompts.texts().contains(u"Map scan complete "_s + kTail));
    EXPECT_EQ(progress.events.last(), u"unload"_s);
    EXPECT_EQ(t.prompts.pointerHistory, (std::vector<int>{11, 0}));
    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 1);
    EXPECT_EQ(mapTreeOf(profile).nodeCount(), 0);
}

TEST_F(MapScanCommandTest, ABrokenPictureArchiveStillEndsInTheTreeAndTheClosingMessage)
{
    // The map scan skips ASSETS1.PK3; the picture phase reads it and fails on it.
    writeFile(t.baseFolder() + u"/assets1.pk3"_s, "broken");
    run();
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Information, u"Map scan complete "_s + kTail}));
    EXPECT_NE(mapTreeOf(profile).findKey(u"mymap.pk3\\mymap"_s), nullptr);
    EXPECT_TRUE(
        QString::fromLatin1(fileBytes(t.programFolder() + u"/arena-steward.log"_s)).contains(u"ExtractLevelShots"_s));
}
