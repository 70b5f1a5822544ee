// The bots: the model scan on archives the test builds, the picker's row, and the roster
// with its two files, colours, layouts and buttons, on real files and scripted prompts.
#include "bots/BotModelScan.h"
#include "bots/BotPicker.h"
#include "bots/BotRoster.h"
#include "bots/BotRosterFile.h"
#include "commands/BotRosterCommands.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "support/ProductText.h"
#include "testkit/BoxExpect.h"
#include "testkit/RecordingScanProgress.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <tuple>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

/// A roster row from its five cells, '|' between them.
QStringList row(const char* cells) { return QString::fromLatin1(cells).split(u'|'); }
const QStringList kGnubee = row("Gnubee|Hardcore|RED|Desann|25");
const QStringList kBoss = row("Big_Boss|Hurt Me Plenty |BLUE|Kyle2|0");

Box information(const QString& text) { return {u"Arena Steward"_s, Icon::Information, text, Buttons::Ok}; }
Box question(const QString& text) { return {kProductTitle, Icon::Question, text, Buttons::YesNo}; }

/// The bots' set-up: a roster on the profile, the scan's progress recorded.
class ModelScanTest : public ::testing::Test {
protected:
    void pk3(const char* name, const ZipBuilder& zip)
    {
        ASSERT_TRUE(zip.write(t.baseFolder() + u'/' + QLatin1String(name)));
    }
    static ZipBuilder model(const char* folder)
    {
        return ZipBuilder().file(u"models/players/%1/model.glm"_s.arg(QLatin1String(folder)));
    }
    bool scan() { return ScanBotModels(*t.app, progress, t.gameFolder(), u"Base"_s); }
    QString botList() const { return t.programFolder() + u"/BOT.txt"_s; }
    QString log() const { return QString::fromLatin1(fileBytes(t.programFolder() + u"/arena-steward.log"_s)); }
    void SetUp() override { SetupBotControls(*t.app, profile); }
    QString lastBots() const { return t.programFolder() + u"/lastbots.csv"_s; }
    QList<QStringList> bots() const { return rosterBots(profile); }
    void add(const QStringList& r) { appendRosterBot(profile, r); }
    void click(int index)
    {
        cmdBOTs_Click(*t.app, profile, index, [this] { ++pickerShown; });
    }
    /// The last dialog: open or save, its title, filter and folder.
    QStringList dialog() const
    {
        const FakePrompts::Dialog& d = t.prompts.dialogs.back();
        return {d.open ? u"open"_s : u"save"_s, d.state.DialogTitle, d.state.Filter, d.state.InitialDir};
    }
    TestApp t;
    RecordingScanProgress progress;
    ServerProfile profile;
    int pickerShown = 0;
};

TEST(ModelEntries, OnlyAFolderBelowModelsPlayersIsAModelAndTheStockArchivesAreLeftOut)
{
    // The model's own folder entry keeps its case; models/players itself and a file beside the models are none.
    const std::pair<const char*, const char*> cases[] = {{"models\\players\\desann\\|model.glm", "desann"},
                                                         {"MODELS\\Players\\Kyle2\\|", "Kyle2"},
                                                         {"models\\players\\|", ""},
                                                         {"models\\players\\|readme.txt", ""},
                                                         {"players\\models\\x\\|y", ""},
                                                         {"|models", ""}};
    for (const auto& [text, model] : cases)
        EXPECT_EQ(playerModelOfEntry(QString::fromLatin1(text)), QString::fromLatin1(model)) << text;
    for (const char* name : {"assets0.pk3", "ASSETS1.PK3", "Assets2.Pk3", "readme.txt", "x.pk", "pk3.zip"})
        EXPECT_FALSE(isModelArchive(QString::fromLatin1(name))) << name;
    for (const char* name : {"x.PK3", "mypk3", "assets3.pk3", "assets1.pk3.pk3", "zzassets1.pk3"})
        EXPECT_TRUE(isModelArchive(QString::fromLatin1(name))) << name;
}

TEST_F(ModelScanTest, EachArchiveWithAModelGivesOneLine)
{
    pk3("assets1.pk3", model("stock"));
    pk3("ASSETS0.PK3", model("stock0"));
    pk3("kyle2.pk3", ZipBuilder()
                         .folder(u"models/"_s)
                         .folder(u"models/players/"_s)
                         .folder(u"models/players/Kyle2/"_s)
                         .file(u"models/players/Kyle2/model.glm"_s));
    // Two models count once, under the first in the directory.
    pk3("pair.PK3", ZipBuilder()
                        .file(u"maps/x.bsp"_s)
                        .file(u"models/players/Zeta/model.glm"_s)
                        .file(u"models/players/alpha/model.glm"_s));
    pk3("mypk3", model("odd"));
    pk3("onlyfolder.pk3", ZipBuilder().folder(u"models/players/"_s));
    pk3("weapons.pk3", ZipBuilder().file(u"models/weapons2/saber/saber.glm"_s));
    writeFile(t.baseFolder() + u"/notes.txt"_s, "models/players/fake/");
    EXPECT_TRUE(scan());
    EXPECT_EQ(crlfLines(botList()), (QStringList{u"Kyle2,kyle2.pk3"_s, u"odd,mypk3"_s, u"Zeta,pair.PK3"_s}));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), information(u"BOT scan complete. 3 have been found         "_s)));
    // The progress: shown, one step per file of the folder, then hidden and back at 0.
    EXPECT_EQ(QList<int>({progress.maximum, progress.values.front(), progress.values.back()}), QList<int>({8, 1, 0}));
    EXPECT_FALSE(progress.overshoot);
    EXPECT_EQ(progress.events, (QStringList{u"show"_s, u"busy"_s, u"hide"_s, u"idle"_s}));
    EXPECT_TRUE(progress.activities.contains(u"Scanning kyle2.pk3 ...."_s));
    EXPECT_FALSE(progress.activities.contains(u"Scanning assets1.pk3 ...."_s));
    EXPECT_TRUE(log().isEmpty());
}

TEST_F(ModelScanTest, NothingFoundLeavesAnEmptyList)
{
    writeFile(botList(), "Old,old.pk3\r\n");
    pk3("maps.pk3", ZipBuilder().file(u"maps/x.bsp"_s));
    EXPECT_TRUE(scan());
    EXPECT_EQ(fileBytes(botList()), QByteArray());
    EXPECT_EQ(t.prompts.texts(), QStringList{u"No BOT's found         "_s});
    EXPECT_EQ(LoadBotList(*t.app), (QList<QStringList>{{u"BOT Name"_s, u"PK3"_s}}));
}

TEST_F(ModelScanTest, ADamagedArchiveIsLoggedAndSkipped)
{
    pk3("a_good.pk3", model("First"));
    pk3("b_cut.pk3", model("Cut"));
    ASSERT_TRUE(truncateFile(t.baseFolder() + u"/b_cut.pk3"_s, 40));
    writeFile(t.baseFolder() + u"/c_text.pk3"_s, "this is no zip archive at all");
    writeFile(t.baseFolder() + u"/d_empty.pk3"_s, QByteArray());
    pk3("e_good.pk3", model("Last"));
    EXPECT_TRUE(scan());
    EXPECT_EQ(crlfLines(botList()), (QStringList{u"First,a_good.pk3"_s, u"Last,e_good.pk3"_s}));
    EXPECT_EQ(t.prompts.texts(), QStringList{u"BOT scan complete. 2 have been found         "_s});
    for (const QString& logged : {u"b_cut.pk3"_s, u"c_text.pk3"_s, u"::CMapScanner.ExtractLevelShots(Function)"_s})
        EXPECT_TRUE(log().contains(logged)) << logged.toStdString();
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

TEST_F(ModelScanTest, TheScanButtonAsksFirstAndNamesWithCommasReadBackIntoTheirCells)
{
    pk3("odd, name.pk3", model("Mod,el"));
    t.prompts.answerNext(Answer::No);
    EXPECT_FALSE(runBotScan(*t.app, progress));
    EXPECT_FALSE(QFile::exists(botList()));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), question(u"Run a new BOT scan?         "_s)));
    t.prompts.answerNext(Answer::Yes);
    EXPECT_TRUE(runBotScan(*t.app, progress));
    EXPECT_EQ(LoadBotList(*t.app), (QList<QStringList>{{u"BOT Name"_s, u"PK3"_s}, {u"Mod,el"_s, u"odd, name.pk3"_s}}));
}

TEST(PickerRules, OkMakesTheRowOrNothingAndTheGridsHeadingIsNoModel)
{
    PickerInput input;
    std::tie(input.name, input.stockIndex, input.skill, input.team, input.ping) =
        std::tuple(u"Big Boss"_s, 21, u"Hardcore"_s, u"BLUE"_s, u"40"_s);
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
    EXPECT_EQ(QStringList({pickedCustomModel(u"Kyle2"_s), pickedCustomModel(u"BOT Name"_s), pickedCustomModel({})}),
              QStringList({u"Kyle2"_s, QString(), QString()}));
}

TEST(RosterFile, BothFormsRoundTripEveryKindOfNameAndHandEditedLinesAreTakenAsTheyStand)
{
    // The whole lines are in the files below; a quote in front puts the field in quotes.
    EXPECT_EQ(rosterFileLine(row("\"Q\"|Hardcore|RED|Desann|25"), RosterForm::Comma),
              u"\"\"\"Q\"\"\",Hardcore,RED,Desann,25"_s);
    EXPECT_EQ(rosterFileLine(row("Boss, The|Hardcore|RED|Desann|25"), RosterForm::Tab),
              u"Boss, The\tHardcore\tRED\tDesann\t25"_s)
        << "a comma is nothing special in the tab form";
    EXPECT_EQ(rosterFileLine(row("Mid\"quote||||"), RosterForm::Comma), u"Mid\"quote,,,,"_s);
    const QList<QStringList> rows = {kGnubee,
                                     kBoss,
                                     row("Boss, The|Bring It On |RED|Luke|5"),
                                     row("a,b,,c||||"),
                                     row("\"Quoted\"|Nightmare|BLUE|Jan|1"),
                                     row("Tab\there|Nightmare|BLUE|Jan|1"),
                                     row("||||"),
                                     row("  blanks  | |RED|x y|99")};
    QTemporaryDir dir;
    const QString file = dir.path() + u"/roster.txt"_s;
    for (RosterForm form : {RosterForm::Comma, RosterForm::Tab}) {
        saveRosterFile(file, rows, form);
        EXPECT_EQ(loadRosterFile(file, form), rows) << (form == RosterForm::Comma ? "comma" : "tab");
        saveRosterFile(file, {}, form);
        EXPECT_EQ(fileBytes(file), QByteArray());
        EXPECT_TRUE(loadRosterFile(file, form).isEmpty());
    }
    try {
        loadRosterFile(dir.path() + u"/none.lst"_s, RosterForm::Tab);
        ADD_FAILURE() << "a missing file is an error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::FileNotFound);
    }

    // Hand-edited lines are taken as they stand.
    const std::pair<const char*, QStringList> cases[] = {{"Gnubee,Hardcore", row("Gnubee|Hardcore|||")},
                                                         {"", row("||||")},
                                                         {"a,b,c,d,e,f,g", row("a|b|c|d|e")},
                                                         {"\"unclosed,Hardcore", row("unclosed,Hardcore||||")},
                                                         {"\"x\"tail,y", row("xtail|y|||")},
                                                         {"say \"hi\",b", row("say \"hi\"|b|||")}};
    for (const auto& [line, cells] : cases)
        EXPECT_EQ(rosterFileRow(QString::fromLatin1(line), RosterForm::Comma), cells) << line;
}

using RosterTest = ModelScanTest;

TEST_F(RosterTest, SetUpGivesTheHeadingAloneAndTheUserDefinedBoxSwitchesThePage)
{
    EXPECT_EQ(profile.field(F::grdBOTList).rows(), QList<QStringList>{row("NAME|SKILL|TEAM|MODEL|PING")});
    EXPECT_EQ(profile.field(F::cboBOT).items().size(), 5);
    EXPECT_EQ(profile.field(F::cboBOT).text(), u"Hurt Me Plenty "_s);
    auto visible = [this](FieldId name) { return profile.field(name).isVisible(); };
    for (int on : {1, 0, 1}) {
        SCOPED_TRACE(on);
        profile.setValue(F::chkBOTs(5), on);
        chkBOTs_Click(profile, 5);
        EXPECT_EQ(visible(F::grdBOTList), on == 1);
        EXPECT_EQ(visible(F::cboBOT), on == 0);
        EXPECT_EQ(visible(F::txtBOTThinkTime), on == 0);
    }
    EXPECT_TRUE(botPageLayout(true).roster && !botPageLayout(false).roster);
}

TEST_F(RosterTest, LastBotsCarriesTheRosterFromOneRunToTheNext)
{
    add(kGnubee);
    add(row("Boss, The|Bring It On |BLUE|Luke|5"));
    saveLastBots(*t.app, profile);
    EXPECT_EQ(fileBytes(lastBots()),
              QByteArray("Gnubee,Hardcore,RED,Desann,25\r\n\"Boss, The\",Bring It On ,BLUE,Luke,5\r\n"));
    ServerProfile next;
    SetupBotControls(*t.app, next);
    loadLastBots(*t.app, next);
    EXPECT_EQ(next.field(F::grdBOTList).rows(), profile.field(F::grdBOTList).rows());
    // Leaving with an empty roster empties the file.
    replaceRosterBots(profile, {});
    saveLastBots(*t.app, profile);
    EXPECT_EQ(fileBytes(lastBots()), QByteArray());
    loadLastBots(*t.app, profile);
    EXPECT_EQ(rosterBotCount(profile), 0);
    // Leaving ignores a file that can't be written.
    t.app->programFolder = t.root() + u"/no/such/folder"_s;
    add(kGnubee);
    EXPECT_NO_THROW(saveLastBots(*t.app, profile));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(RosterTest, AnEmptyRosterIsLeftAloneAndClearAsksAndKeepsTheHeading)
{
    profile.setValue(F::chkBOTs(0), 1);
    profile.setValue(F::chkBOTs(5), 1);
    for (int index : {0, 2, 4})
        click(index);
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_TRUE(t.prompts.dialogs.empty());
    EXPECT_TRUE(t.opener.opened.empty());
    EXPECT_FALSE(QFile::exists(t.baseFolder() + u"/BOTFile.cfg"_s));
    click(3);
    EXPECT_EQ(pickerShown, 1);
    EXPECT_EQ(rosterBotCount(profile), 0) << "the picker adds the row itself";
    // Clear asks and keeps the heading.
    add(kGnubee);
    t.prompts.answerNext(Answer::No);
    click(2);
    EXPECT_EQ(rosterBotCount(profile), 1);
    t.prompts.answerNext(Answer::Yes);
    click(2);
    EXPECT_EQ(profile.field(F::grdBOTList).rows(), QList<QStringList>{rosterHeadings()});
    EXPECT_EQ(t.prompts.texts(), QStringList(2, u"Clear current BOT list?         "_s));
}

TEST_F(RosterTest, SaveWritesTheTabFormWhereTheUserChose)
{
    add(kGnubee);
    add(kBoss);
    const QString file = t.root() + u"/mine.lst"_s;
    t.prompts.chooseFile(file);
    click(0);
    EXPECT_EQ(dialog(), (QStringList{u"save"_s, u"Save BOT list"_s, u"BOT list (*.lst)|*.lst"_s, t.programFolder()}));
    EXPECT_EQ(fileBytes(file),
              QByteArray("Gnubee\tHardcore\tRED\tDesann\t25\r\nBig_Boss\tHurt Me Plenty \tBLUE\tKyle2\t0\r\n"));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), information(u"'mine.lst' has been saved         "_s)));
    // A cancelled dialog writes and shows nothing; a file that can't be written escapes
    // to the events' report.
    t.prompts.cancelNextDialog();
    click(0);
    EXPECT_EQ(t.prompts.shown.size(), 1u);
    t.prompts.chooseFile(t.root() + u"/no/such/folder/x.lst"_s);
    EXPECT_THROW(click(0), RuntimeError);
}

TEST_F(RosterTest, LoadReplacesTheRosterAfterAsking)
{
    const QString file = t.root() + u"/list.lst"_s;
    writeFile(file, "A\tHardcore\tBLUE\tLuke\t1\r\nB\tNightmare\tRED\tJan\r\n");
    const QList<QStringList> loaded = {row("A|Hardcore|BLUE|Luke|1"), row("B|Nightmare|RED|Jan|")};
    // An empty roster is not asked about.
    t.prompts.chooseFile(file);
    click(1);
    EXPECT_EQ(dialog(), (QStringList{u"open"_s, u"Load Arena Steward BOT List"_s,
                                     u"Arena Steward BOT List files (*.lst)|*.lst"_s, t.programFolder()}));
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_EQ(bots(), loaded);
    // With bots: No keeps them, Yes replaces them; there is no merge.
    replaceRosterBots(profile, {kGnubee});
    t.prompts.chooseFile(file);
    t.prompts.answerNext(Answer::No);
    click(1);
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), question(u"Clear current BOT list?         "_s)));
    EXPECT_EQ(bots(), QList<QStringList>{kGnubee});
    t.prompts.chooseFile(file);
    t.prompts.answerNext(Answer::Yes);
    click(1);
    EXPECT_EQ(bots(), loaded);
    // A cancelled dialog asks nothing.
    t.prompts.cancelNextDialog();
    click(1);
    EXPECT_EQ(t.prompts.shown.size(), 2u);
    EXPECT_EQ(bots(), loaded);
}

TEST_F(RosterTest, ViewWritesTheFileAndOpensItInTheEditor)
{
    add(kGnubee);
    profile.setValue(F::chkBOTs(0), 1);
    profile.setValue(F::chkBOTs(5), 1);
    click(4);
    ASSERT_EQ(t.opener.opened.size(), 1u);
    const QString file = t.baseFolder() + u"/BOTFile.cfg"_s;
    EXPECT_EQ(t.opener.opened.front(), QUrl::fromLocalFile(file));
    EXPECT_TRUE(crlfLines(file).contains(u"Addbot Desann 4 RED 25 Gnubee"_s));
    // A file that isn't to be used is not shown: automatic bots without a number.
    profile.setValue(F::chkBOTs(5), 0);
    profile.setText(F::txtServerConfigSpin(6), u"0"_s);
    click(4);
    EXPECT_EQ(t.opener.opened.size(), 1u);
    EXPECT_EQ(t.prompts.shown.size(), 1u) << "the writer's warning";
}

} // namespace
