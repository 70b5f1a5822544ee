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

namespace {

class MapScanCommandTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        attachClickRoutines(*t.app, profile);
        t.app->services.scanProgress = &progress;
        ASSERT_TRUE(ZipBuilder()
                        .file(QStringLiteral("maps/mymap.bsp"))
                        .file(QStringLiteral("scripts/mymap.arena"),
                              arenaScript(QStringLiteral("mymap"), QStringLiteral("My Map"), QStringLiteral("ffa")))
                        .file(QStringLiteral("levelshots/mymap.tga"), tgaPicture(8, 8, 9, 9, 9))
                        .write(t.baseFolder() + QStringLiteral("/mymap.pk3")));
        // The window as the user left it.
        profile.field(F::lsvMapRotation).addRow(rotationRow(QStringLiteral("old"), {}, {}));
        profile.setValue(F::chkUseINI, 1);
        profile.setText(F::txtServerINI, QStringLiteral("/x/saved.cfg"));
        for (FieldId label : {F::lblMapsSelected, F::lblLongMapName, F::lblMapType})
            profile.setText(label, QStringLiteral("something"));
        profile.setStartingMap(QStringLiteral("old"));
        setFirstMapType(profile, QStringLiteral("FFA"));
    }
    void run(const WineEnvironment& env = {}) { mnuMapScan_Click(*t.app, profile, env); }
    QString catalogueFile() const { return t.programFolder() + QStringLiteral("/Jedi.aml"); }

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
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {kProductTitle, Icon::Question, QStringLiteral("Scan for new maps?") + kTail, Buttons::YesNo}));
    EXPECT_FALSE(QFileInfo::exists(catalogueFile()));
    EXPECT_TRUE(progress.events.isEmpty());
    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 1);
}

TEST_F(MapScanCommandTest, TheWholeChainRewritesTheCatalogueReloadsTheTreeAndEmptiesTheRotation)
{
    run();
    EXPECT_EQ(crlfLines(catalogueFile()), QStringList{QStringLiteral("mymap.pk3,mymap,mymap,My Map,FFA")});
    const QString shots = t.programFolder() + QStringLiteral("/levelshots");
    EXPECT_TRUE(QFileInfo::exists(shots + QStringLiteral("/mymap.bmp")));
    EXPECT_FALSE(QFileInfo::exists(shots + QStringLiteral("/mymap.tga")));

    MapTreeModel& tree = mapTreeOf(profile);
    ASSERT_NE(tree.findKey(QStringLiteral("mymap.pk3\\mymap")), nullptr);
    EXPECT_EQ(profile.text(F::lblNumberOfMapsAvailable), QStringLiteral("1 Maps available"));

    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 0);
    EXPECT_EQ(profile.value(F::chkUseINI), 0);
    EXPECT_EQ(profile.text(F::txtServerINI), QString());
    for (FieldId label : {F::lblMapsSelected, F::lblLongMapName, F::lblMapType})
        EXPECT_EQ(profile.text(label), QString()) << label.name;
    EXPECT_EQ(profile.startingMap(), QStringLiteral("old"));
    EXPECT_EQ(firstMapType(profile), QStringLiteral("FFA"));
    EXPECT_EQ(profile.text(F::picMap), shots + QStringLiteral("/unknown.bmp"));

    EXPECT_TRUE(
        isBox(t.prompts.last(), {kProductTitle, Icon::Information, QStringLiteral("Map scan complete ") + kTail}));
    EXPECT_EQ(t.prompts.shown.size(), 2u);
    EXPECT_EQ(progress.events.last(), QStringLiteral("unload"));
    EXPECT_FALSE(progress.loaded);
    EXPECT_EQ(t.prompts.pointerHistory, (std::vector<int>{11, 0}));
    EXPECT_GE(t.prompts.eventRuns, 1);
}

TEST_F(MapScanCommandTest, WithoutAGameFolderTheWinePrefixNamesIt)
{
    const QString prefix = t.root() + QStringLiteral("/wine");
    QDir().mkpath(prefix + QStringLiteral("/drive_c"));
    ASSERT_TRUE(QFile::link(t.gameFolder(), prefix + QStringLiteral("/drive_c/JK2")));
    writeFile(prefix + QStringLiteral("/system.reg"),
              "WINE REGISTRY Version 2\n\n[Software\\\\LucasArts Entertainment Company LLC\\\\Star Wars JK II Jedi "
              "Outcast\\\\1.0] 1\n\"Install Path\"=\"C:\\\\JK2\\\\\"\n");
    t.app->gameFolder.clear();
    run({prefix, QString()});
    EXPECT_EQ(crlfLines(catalogueFile()), QStringList{QStringLiteral("mymap.pk3,mymap,mymap,My Map,FFA")});
    EXPECT_TRUE(t.app->gameFolder.isEmpty());
    EXPECT_EQ(cutFolderEnd(QStringLiteral("/games/jk2/") + QChar(0)), QStringLiteral("/games/jk2/"));
    EXPECT_EQ(cutFolderEnd(QStringLiteral("/games/jk2/")), QStringLiteral("/games/jk2"));
}

TEST_F(MapScanCommandTest, AFailedScanEndsTheChainAndUnloadsTheWindow)
{
    t.app->gameFolder = t.root() + QStringLiteral("/nogame");
    run();
    const MessageBoxRequest& box = t.prompts.last().request;
    EXPECT_TRUE(box.text.startsWith(QStringLiteral("Arena Steward was unable to locate any pk3 files")));
    EXPECT_TRUE(isBox(box, {kProductTitle, Icon::Critical, box.text}));
    EXPECT_FALSE(t.prompts.texts().contains(QStringLiteral("Map scan complete ") + kTail));
    EXPECT_EQ(progress.events.last(), QStringLiteral("unload"));
    EXPECT_EQ(t.prompts.pointerHistory, (std::vector<int>{11, 0}));
    EXPECT_EQ(profile.field(F::lsvMapRotation).count(), 1);
    EXPECT_EQ(mapTreeOf(profile).nodeCount(), 0);
}

TEST_F(MapScanCommandTest, ABrokenPictureArchiveStillEndsInTheTreeAndTheClosingMessage)
{
    // The map scan skips ASSETS1.PK3; the picture phase reads it and fails on it.
    writeFile(t.baseFolder() + QStringLiteral("/assets1.pk3"), "broken");
    run();
    EXPECT_TRUE(
        isBox(t.prompts.last(), {kProductTitle, Icon::Information, QStringLiteral("Map scan complete ") + kTail}));
    EXPECT_NE(mapTreeOf(profile).findKey(QStringLiteral("mymap.pk3\\mymap")), nullptr);
    EXPECT_TRUE(QString::fromLatin1(fileBytes(t.programFolder() + QStringLiteral("/arena-steward.log")))
                    .contains(QStringLiteral("ExtractLevelShots")));
}
