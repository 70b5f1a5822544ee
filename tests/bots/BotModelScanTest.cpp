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
using namespace Qt::StringLiterals;

namespace {

class ModelScanTest : public ::testing::Test {
protected:
    void pk3(const QString& name, const ZipBuilder& zip) { ASSERT_TRUE(zip.write(t.baseFolder() + u'/' + name)); }
    static ZipBuilder model(const char* folder)
    {
        return ZipBuilder().file(u"models/players/%1/model.glm"_s.arg(QString::fromLatin1(folder)));
    }
    bool scan() { return ScanBotModels(*t.app, progress, t.gameFolder(), u"Base"_s); }
    QString botList() const { return t.programFolder() + u"/BOT.txt"_s; }
    QString log() const { return QString::fromLatin1(fileBytes(t.programFolder() + u"/arena-steward.log"_s)); }

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
    pk3(u"assets1.pk3"_s, model("stock"));
    pk3(u"ASSETS0.PK3"_s, model("stock0"));
    pk3(u"kyle2.pk3"_s, ZipBuilder()
                            .folder(u"models/"_s)
                            .folder(u"models/players/"_s)
                            .folder(u"models/players/Kyle2/"_s)
                            .file(u"models/players/Kyle2/model.glm"_s));
    // Two models count once, under the first in the directory.
    pk3(u"pair.PK3"_s, ZipBuilder()
                           .file(u"maps/x.bsp"_s)
                           .file(u"models/players/Zeta/model.glm"_s)
                           .file(u"models/players/alpha/model.glm"_s));
    pk3(u"mypk3"_s, model("odd"));
    pk3(u"onlyfolder.pk3"_s, ZipBuilder().folder(u"models/players/"_s));
    pk3(u"weapons.pk3"_s, ZipBuilder().file(u"models/weapons2/saber/saber.glm"_s));
    writeFile(t.baseFolder() + u"/notes.txt"_s, "models/players/fake/");

    EXPECT_TRUE(scan());
    EXPECT_EQ(crlfLines(botList()), (QStringList{u"Kyle2,kyle2.pk3"_s, u"odd,mypk3"_s, u"Zeta,pair.PK3"_s}));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {u"Arena Steward"_s, Icon::Information,
                                         u"BOT scan complete. 3 have been found         "_s, Buttons::Ok}));

    // The progress: shown, one step per file of the folder, then hidden and back at 0.
    EXPECT_EQ(progress.maximum, 8);
    EXPECT_EQ(progress.values.front(), 1);
    EXPECT_EQ(progress.values.back(), 0);
    EXPECT_FALSE(progress.overshoot);
    EXPECT_EQ(progress.events, (QStringList{u"show"_s, u"busy"_s, u"hide"_s, u"idle"_s}));
    EXPECT_TRUE(progress.activities.contains(u"Scanning kyle2.pk3 ...."_s));
    EXPECT_FALSE(progress.activities.contains(u"Scanning assets1.pk3 ...."_s));
    EXPECT_TRUE(log().isEmpty());
}

TEST_F(ModelScanTest, NothingFoundLeavesAnEmptyList)
{
    writeFile(botList(), "Old,old.pk3\r\n");
    pk3(u"maps.pk3"_s, ZipBuilder().file(u"maps/x.bsp"_s));
    EXPECT_TRUE(scan());
    EXPECT_EQ(fileBytes(botList()), QByteArray());
    EXPECT_EQ(t.prompts.texts(), QStringList{u"No BOT's found         "_s});
    EXPECT_EQ(LoadBotList(*t.app), (QList<QStringList>{{u"BOT Name"_s, u"PK3"_s}}));
}

TEST_F(ModelScanTest, ADamagedArchiveIsLoggedAndSkipped)
{
    pk3(u"a_good.pk3"_s, model("First"));
    pk3(u"b_cut.pk3"_s, model("Cut"));
    ASSERT_TRUE(truncateFile(t.baseFolder() + u"/b_cut.pk3"_s, 40));
    writeFile(t.baseFolder() + u"/c_text.pk3"_s, "this is no zip archive at all");
    writeFile(t.baseFolder() + u"/d_empty.pk3"_s, QByteArray());
    pk3(u"e_good.pk3"_s, model("Last"));

    EXPECT_TRUE(scan());
    EXPECT_EQ(crlfLines(botList()), (QStringList{u"First,a_good.pk3"_s, u"Last,e_good.pk3"_s}));
    EXPECT_EQ(t.prompts.texts(), QStringList{u"BOT scan complete. 2 have been found         "_s});
    const QString entries = log();
    EXPECT_TRUE(entries.contains(u"b_cut.pk3"_s));
    EXPECT_TRUE(entries.contains(u"c_text.pk3"_s));
    EXPECT_TRUE(entries.contains(u"::CMapScanner.ExtractLevelShots(Function)"_s));
}

TEST_F(ModelScanTest, NamesWithCommasReadBackIntoTheirCells)
{
    pk3(u"odd, name.pk3"_s, model("Mod,el"));
    EXPECT_TRUE(scan());
    EXPECT_EQ(LoadBotList(*t.app), (QList<QStringList>{{u"BOT Name"_s, u"PK3"_s}, {u"Mod,el"_s, u"odd, name.pk3"_s}}));
}

TEST_F(ModelScanTest, AMissingGameFolderIsLoggedAndThrownOn)
{
    t.app->gameFolder = t.root() + u"/nowhere"_s;
    try {
        ScanBotModels(*t.app, progress, t.app->gameFolder, u"Base"_s);
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::PathNotFound);
        EXPECT_TRUE(e.source().contains(u"::CMapScanner.ExtractLevelShots(Function)"_s));
    }
    EXPECT_TRUE(t.prompts.shown.empty()) << "the box is the caller's";
    EXPECT_TRUE(log().contains(u"Error 76"_s));
    EXPECT_FALSE(QFile::exists(botList()));
}

TEST_F(ModelScanTest, TheScanButtonAsksFirst)
{
    pk3(u"kyle2.pk3"_s, model("Kyle2"));
    t.prompts.answerNext(Answer::No);
    EXPECT_FALSE(runBotScan(*t.app, progress));
    EXPECT_FALSE(QFile::exists(botList()));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(
        isBox(t.prompts.last(), {kProductTitle, Icon::Question, u"Run a new BOT scan?         "_s, Buttons::YesNo}));

    t.prompts.answerNext(Answer::Yes);
    EXPECT_TRUE(runBotScan(*t.app, progress));
    EXPECT_EQ(LoadBotList(*t.app).value(1), (QStringList{u"Kyle2"_s, u"kyle2.pk3"_s}));
}

TEST(PickerRules, OkMakesTheRowOrNothing)
{
    PickerInput input;
    input.name = u"Big Boss"_s;
    input.stockIndex = 21;
    input.skill = u"Hardcore"_s;
    input.team = u"BLUE"_s;
    input.ping = u"40"_s;
    EXPECT_EQ(pickedBotRow(input), (QStringList{u"Big_Boss"_s, u"Hardcore"_s, u"BLUE"_s, u"Kyle"_s, u"40"_s}));

    // On the tab "Custom" the model is the picked one, empty when none is picked.
    input.customTab = true;
    input.customModel = u"Kyle 2"_s;
    EXPECT_EQ(pickedBotRow(input)->value(3), u"Kyle 2"_s) << "the model keeps its blank";
    input.customModel.clear();
    EXPECT_EQ(pickedBotRow(input)->value(3), QString());

    // The name isn't trimmed, but a blank one does nothing.
    input.name = u" a "_s;
    EXPECT_EQ(pickedBotRow(input)->value(0), u"_a_"_s);
    for (const char* blank : {"", " ", "    "}) {
        input.name = QString::fromLatin1(blank);
        EXPECT_FALSE(pickedBotRow(input).has_value()) << '"' << blank << '"';
    }
}

TEST(PickerRules, TheGridsHeadingIsNoModel)
{
    EXPECT_EQ(pickedCustomModel(u"Kyle2"_s), u"Kyle2"_s);
    EXPECT_EQ(pickedCustomModel(u"BOT Name"_s), QString());
    EXPECT_EQ(pickedCustomModel(QString()), QString());
}

} // namespace
