// The scan for installed player models on archives that the test builds, and the grid
// of the installed models that BOT.txt fills.
#include "bots/BotModelScan.h"
#include "bots/BotPicker.h"
#include "support/Errors.h"
#include "testkit/RecordingScanProgress.h"
#include "support/ProductText.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <gtest/gtest.h>

#include <QFile>

using namespace steward;
using namespace steward::testing;

namespace {

class ModelScanTest : public ::testing::Test {
protected:
    void pk3(const QString& name, const ZipBuilder& zip)
    {
        ASSERT_TRUE(zip.write(t.baseFolder() + QLatin1Char('/') + name));
    }
    static ZipBuilder model(const char* folder)
    {
        return ZipBuilder().file(QStringLiteral("models/players/%1/model.glm").arg(QString::fromLatin1(folder)));
    }
    bool scan() { return ScanBotModels(*t.app, progress, t.gameFolder(), QStringLiteral("Base")); }
    QString botList() const { return t.programFolder() + QStringLiteral("/BOT.txt"); }
    QString log() const
    {
        return QString::fromLatin1(fileBytes(t.programFolder() + QStringLiteral("/arena-steward.log")));
    }

    TestApp t;
    RecordingScanProgress progress;
};

TEST(ModelEntries, OnlyAFolderBelowModelsPlayersIsAModel)
{
    struct Case {
        const char* text;
        const char* model;
    };
    const Case cases[] = {
        {"models\\players\\desann\\|model.glm", "desann"},
        {"MODELS\\Players\\Kyle2\\|", "Kyle2"}, // the model's own folder entry; its case kept
        {"models\\players\\kyle2\\skins\\|a.skin", "kyle2"},
        {"models\\players\\|", ""},           // the folder models/players itself
        {"models\\players\\|readme.txt", ""}, // a file beside the models
        {"models\\weapons\\saber\\|saber.glm", ""},
        {"players\\models\\x\\|y", ""},
        {"maps\\|ffa_x.bsp", ""},
        {"|models", ""},
        {"", ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(playerModelOfEntry(QString::fromLatin1(c.text)), QString::fromLatin1(c.model)) << c.text;
}

TEST(ModelEntries, TheStockArchivesAreLeftOutInAnyCase)
{
    for (const char* name : {"assets0.pk3", "ASSETS1.PK3", "Assets2.Pk3", "readme.txt", "x.pk", "pk3.zip"})
        EXPECT_FALSE(isModelArchive(QString::fromLatin1(name))) << name;
    for (const char* name : {"x.PK3", "mypk3", "assets3.pk3", "assets1.pk3.pk3", "zzassets1.pk3"})
        EXPECT_TRUE(isModelArchive(QString::fromLatin1(name))) << name;
}

TEST_F(ModelScanTest, EachArchiveWithAModelGivesOneLine)
{
    pk3(QStringLiteral("assets1.pk3"), model("stock"));
    pk3(QStringLiteral("ASSETS0.PK3"), model("stock0"));
    pk3(QStringLiteral("kyle2.pk3"), ZipBuilder()
                                         .folder(QStringLiteral("models/"))
                                         .folder(QStringLiteral("models/players/"))
                                         .folder(QStringLiteral("models/players/Kyle2/"))
                                         .file(QStringLiteral("models/players/Kyle2/model.glm")));
    // Two models count once, under the first in the directory.
    pk3(QStringLiteral("pair.PK3"), ZipBuilder()
                                        .file(QStringLiteral("maps/x.bsp"))
                                        .file(QStringLiteral("models/players/Zeta/model.glm"))
                                        .file(QStringLiteral("models/players/alpha/model.glm")));
    pk3(QStringLiteral("mypk3"), model("odd"));
    pk3(QStringLiteral("onlyfolder.pk3"), ZipBuilder().folder(QStringLiteral("models/players/")));
    pk3(QStringLiteral("weapons.pk3"), ZipBuilder().file(QStringLiteral("models/weapons2/saber/saber.glm")));
    writeFile(t.baseFolder() + QStringLiteral("/notes.txt"), "models/players/fake/");

    EXPECT_TRUE(scan());
    EXPECT_EQ(crlfLines(botList()), (QStringList{QStringLiteral("Kyle2,kyle2.pk3"), QStringLiteral("odd,mypk3"),
                                                 QStringLiteral("Zeta,pair.PK3")}));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(
        isBox(t.prompts.last(), {QStringLiteral("Arena Steward"), Icon::Information,
                                 QStringLiteral("BOT scan complete. 3 have been found         "), Buttons::Ok}));

    // The progress: shown, one step per file of the folder, then hidden and back at 0.
    EXPECT_EQ(progress.maximum, 8);
    EXPECT_EQ(progress.values.front(), 1);
    EXPECT_EQ(progress.values.back(), 0);
    EXPECT_FALSE(progress.overshoot);
    EXPECT_EQ(progress.events, (QStringList{QStringLiteral("show"), QStringLiteral("busy"), QStringLiteral("hide"),
                                            QStringLiteral("idle")}));
    EXPECT_TRUE(progress.activities.contains(QStringLiteral("Scanning kyle2.pk3 ....")));
    EXPECT_FALSE(progress.activities.contains(QStringLiteral("Scanning assets1.pk3 ....")));
    EXPECT_TRUE(log().isEmpty());
}

TEST_F(ModelScanTest, NothingFoundLeavesAnEmptyList)
{
    writeFile(botList(), "Old,old.pk3\r\n");
    pk3(QStringLiteral("maps.pk3"), ZipBuilder().file(QStringLiteral("maps/x.bsp")));
    EXPECT_TRUE(scan());
    EXPECT_EQ(fileBytes(botList()), QByteArray());
    EXPECT_EQ(t.prompts.texts(), QStringList{QStringLiteral("No BOT's found         ")});
    EXPECT_EQ(LoadBotList(*t.app), (QList<QStringList>{{QStringLiteral("BOT Name"), QStringLiteral("PK3")}}));
}

TEST_F(ModelScanTest, ADamagedArchiveIsLoggedAndSkipped)
{
    pk3(QStringLiteral("a_good.pk3"), model("First"));
    pk3(QStringLiteral("b_cut.pk3"), model("Cut"));
    ASSERT_TRUE(truncateFile(t.baseFolder() + QStringLiteral("/b_cut.pk3"), 40));
    writeFile(t.baseFolder() + QStringLiteral("/c_text.pk3"), "this is no zip archive at all");
    writeFile(t.baseFolder() + QStringLiteral("/d_empty.pk3"), QByteArray());
    pk3(QStringLiteral("e_good.pk3"), model("Last"));

    EXPECT_TRUE(scan());
    EXPECT_EQ(crlfLines(botList()),
              (QStringList{QStringLiteral("First,a_good.pk3"), QStringLiteral("Last,e_good.pk3")}));
    EXPECT_EQ(t.prompts.texts(), QStringList{QStringLiteral("BOT scan complete. 2 have been found         ")});
    const QString entries = log();
    EXPECT_TRUE(entries.contains(QStringLiteral("b_cut.pk3")));
    EXPECT_TRUE(entries.contains(QStringLiteral("c_text.pk3")));
    EXPECT_TRUE(entries.contains(QStringLiteral("::CMapScanner.ExtractLevelShots(Function)")));
}

TEST_F(ModelScanTest, NamesWithCommasReadBackIntoTheirCells)
{
    pk3(QStringLiteral("odd, name.pk3"), model("Mod,el"));
    EXPECT_TRUE(scan());
    EXPECT_EQ(LoadBotList(*t.app), (QList<QStringList>{{QStringLiteral("BOT Name"), QStringLiteral("PK3")},
                                                       {QStringLiteral("Mod,el"), QStringLiteral("odd, name.pk3")}}));
}

TEST_F(ModelScanTest, AMissingGameFolderIsLoggedAndThrownOn)
{
    t.app->gameFolder = t.root() + QStringLiteral("/nowhere");
    try {
        ScanBotModels(*t.app, progress, t.app->gameFolder, QStringLiteral("Base"));
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::PathNotFound);
        EXPECT_TRUE(e.source().contains(QStringLiteral("::CMapScanner.ExtractLevelShots(Function)")));
    }
    EXPECT_TRUE(t.prompts.shown.empty()) << "the box is the caller's";
    EXPECT_TRUE(log().contains(QStringLiteral("Error 76")));
    EXPECT_FALSE(QFile::exists(botList()));
}

TEST_F(ModelScanTest, TheScanButtonAsksFirst)
{
    pk3(QStringLiteral("kyle2.pk3"), model("Kyle2"));
    t.prompts.answerNext(Answer::No);
    EXPECT_FALSE(runBotScan(*t.app, progress));
    EXPECT_FALSE(QFile::exists(botList()));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {kProductTitle, Icon::Question, QStringLiteral("Run a new BOT scan?         "), Buttons::YesNo}));

    t.prompts.answerNext(Answer::Yes);
    EXPECT_TRUE(runBotScan(*t.app, progress));
    EXPECT_EQ(LoadBotList(*t.app).value(1), (QStringList{QStringLiteral("Kyle2"), QStringLiteral("kyle2.pk3")}));
}

TEST(PickerRules, OkMakesTheRowOrNothing)
{
    PickerInput input;
    input.name = QStringLiteral("Big Boss");
    input.stockIndex = 21;
    input.skill = QStringLiteral("Hardcore");
    input.team = QStringLiteral("BLUE");
    input.ping = QStringLiteral("40");
    EXPECT_EQ(pickedBotRow(input), (QStringList{QStringLiteral("Big_Boss"), QStringLiteral("Hardcore"),
                                                QStringLiteral("BLUE"), QStringLiteral("Kyle"), QStringLiteral("40")}));

    // On the tab "Custom" the model is the picked one, empty when none is picked.
    input.customTab = true;
    input.customModel = QStringLiteral("Kyle 2");
    EXPECT_EQ(pickedBotRow(input)->value(3), QStringLiteral("Kyle 2")) << "the model keeps its blank";
    input.customModel.clear();
    EXPECT_EQ(pickedBotRow(input)->value(3), QString());

    // The name isn't trimmed, but a blank one does nothing.
    input.name = QStringLiteral(" a ");
    EXPECT_EQ(pickedBotRow(input)->value(0), QStringLiteral("_a_"));
    for (const char* blank : {"", " ", "    "}) {
        input.name = QString::fromLatin1(blank);
        EXPECT_FALSE(pickedBotRow(input).has_value()) << '"' << blank << '"';
    }
}

TEST(PickerRules, TheGridsHeadingIsNoModel)
{
    EXPECT_EQ(pickedCustomModel(QStringLiteral("Kyle2")), QStringLiteral("Kyle2"));
    EXPECT_EQ(pickedCustomModel(QStringLiteral("BOT Name")), QString());
    EXPECT_EQ(pickedCustomModel(QString()), QString());
}

} // namespace
