// The roster: its set-up, its two files, its colours, the page's two layouts and the
// five buttons, run against real files in a temporary folder and the scripted prompts.
#include "bots/BotRoster.h"
#include "commands/BotRosterCommands.h"
#include "bots/BotRosterFile.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "support/ProductText.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

QStringList row(const char* name, const char* skill, const char* team, const char* model, const char* ping)
{
    return {QString::fromLatin1(name), QString::fromLatin1(skill), QString::fromLatin1(team),
            QString::fromLatin1(model), QString::fromLatin1(ping)};
}

const QStringList kGnubee = row("Gnubee", "Hardcore", "RED", "Desann", "25");
const QStringList kBoss = row("Big_Boss", "Hurt Me Plenty ", "BLUE", "Kyle2", "0");

class RosterTest : public ::testing::Test {
protected:
    void SetUp() override { SetupBotControls(*t.app, profile); }

    QString programFile(const char* name) const { return t.programFolder() + u'/' + QLatin1String(name); }
    QList<QStringList> bots() const { return rosterBots(profile); }
    void add(const QStringList& r) { appendRosterBot(profile, r); }
    void click(int index)
    {
        cmdBOTs_Click(*t.app, profile, index, [this] { ++pickerShown; });
    }

    TestApp t;
    ServerProfile profile;
    int pickerShown = 0;
};

TEST_F(RosterTest, SetUpGivesTheHeadingAloneAndTheDefaultSkill)
{
    EXPECT_EQ(profile.field(F::grdBOTList).rows(), QList<QStringList>{row("NAME", "SKILL", "TEAM", "MODEL", "PING")});
    EXPECT_EQ(profile.field(F::cboBOT).items().size(), 5);
    EXPECT_EQ(profile.field(F::cboBOT).text(), u"Hurt Me Plenty "_s);
}

TEST(RosterFile, LinesHoldTheFieldsInColumnOrder)
{
    // The whole lines are in the files below; a quote in front puts the field in quotes.
    EXPECT_EQ(rosterFileLine(row("\"Q\"", "Hardcore", "RED", "Desann", "25"), RosterForm::Comma),
              u"\"\"\"Q\"\"\",Hardcore,RED,Desann,25"_s);
    EXPECT_EQ(rosterFileLine(row("Boss, The", "Hardcore", "RED", "Desann", "25"), RosterForm::Tab),
              u"Boss, The\tHardcore\tRED\tDesann\t25"_s)
        << "a comma is nothing special in the tab form";
    EXPECT_EQ(rosterFileLine(row("Mid\"quote", "", "", "", ""), RosterForm::Comma), u"Mid\"quote,,,,"_s);
}

TEST(RosterFile, BothFormsRoundTripEveryKindOfName)
{
    const QList<QStringList> rows = {
        kGnubee,
        kBoss,
        row("Boss, The", "Bring It On ", "RED", "Luke", "5"),
        row("a,b,,c", "", "", "", ""),
        row("\"Quoted\"", "Nightmare", "BLUE", "Jan", "1"),
        row("Mid\"quote", "Nightmare", "BLUE", "Jan", "1"),
        row("Tab\there", "Nightmare", "BLUE", "Jan", "1"),
        row("", "", "", "", ""),
        row("  blanks  ", " ", "RED", "x y", "99"),
    };
    QTemporaryDir dir;
    for (RosterForm form : {RosterForm::Comma, RosterForm::Tab}) {
        const QString file = dir.path() + u"/roster.txt"_s;
        saveRosterFile(file, rows, form);
        EXPECT_EQ(loadRosterFile(file, form), rows) << (form == RosterForm::Comma ? "comma" : "tab");
    }
}

TEST(RosterFile, AnEmptyRosterIsAnEmptyFile)
{
    QTemporaryDir dir;
    const QString file = dir.path() + u"/lastbots.csv"_s;
    writeFile(file, "old contents\r\n");
    saveRosterFile(file, {}, RosterForm::Comma);
    EXPECT_EQ(fileBytes(file), QByteArray());
    EXPECT_TRUE(loadRosterFile(file, RosterForm::Comma).isEmpty());
}

TEST(RosterFile, HandEditedLinesAreTakenAsTheyStand)
{
    struct Case {
        const char* line;
        QStringList cells;
    };
    const Case cases[] = {
        {"Gnubee,Hardcore", row("Gnubee", "Hardcore", "", "", "")},
        {"", row("", "", "", "", "")},
        {"a,b,c,d,e,f,g", row("a", "b", "c", "d", "e")},
        {"Gnubee,Hardcore,blue,Desann,25", row("Gnubee", "Hardcore", "blue", "Desann", "25")},
        {"\"unclosed,Hardcore", row("unclosed,Hardcore", "", "", "", "")},
        {"\"x\"tail,y", row("xtail", "y", "", "", "")},
        {"say \"hi\",b", row("say \"hi\"", "b", "", "", "")},
    };
    for (const Case& c : cases)
        EXPECT_EQ(rosterFileRow(QString::fromLatin1(c.line), RosterForm::Comma), c.cells) << c.line;
}

TEST(RosterFile, AMissingFileIsAnError)
{
    QTemporaryDir dir;
    try {
        loadRosterFile(dir.path() + u"/none.lst"_s, RosterForm::Tab);
        FAIL() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::FileNotFound);
    }
}

TEST_F(RosterTest, LastBotsCarriesTheRosterFromOneRunToTheNext)
{
    add(kGnubee);
    add(row("Boss, The", "Bring It On ", "BLUE", "Luke", "5"));
    saveLastBots(*t.app, profile);
    EXPECT_EQ(fileBytes(programFile("lastbots.csv")),
              QByteArray("Gnubee,Hardcore,RED,Desann,25\r\n\"Boss, The\",Bring It On ,BLUE,Luke,5\r\n"));

    ServerProfile next;
    SetupBotControls(*t.app, next);
    loadLastBots(*t.app, next);
    EXPECT_EQ(next.field(F::grdBOTList).rows(), profile.field(F::grdBOTList).rows());
}

TEST_F(RosterTest, LeavingWithAnEmptyRosterEmptiesLastBots)
{
    writeFile(programFile("lastbots.csv"), "Gnubee,Hardcore,RED,Desann,25\r\n");
    saveLastBots(*t.app, profile);
    EXPECT_EQ(fileBytes(programFile("lastbots.csv")), QByteArray());
    loadLastBots(*t.app, profile);
    EXPECT_EQ(rosterBotCount(profile), 0);
}

TEST_F(RosterTest, LeavingIgnoresALastBotsThatCantBeWritten)
{
    t.app->programFolder = t.root() + u"/no/such/folder"_s;
    add(kGnubee);
    EXPECT_NO_THROW(saveLastBots(*t.app, profile));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST(RosterColours, OnlyBlueInCapitalsIsBlue)
{
    EXPECT_EQ(rosterRowColours(u"BLUE"_s).background, qRgb(0, 0, 255));
    for (const char* team : {"RED", "blue", "Blue", "BLUE ", "", "GREEN"})
        EXPECT_EQ(rosterRowColours(QString::fromLatin1(team)).background, qRgb(255, 0, 0)) << team;
    EXPECT_EQ(rosterRowColours(u"BLUE"_s).text, qRgb(255, 255, 255));
    EXPECT_EQ(rosterRowColours(u"RED"_s).text, qRgb(255, 255, 255));
}

TEST_F(RosterTest, TheUserDefinedBoxSwitchesThePage)
{
    auto visible = [this](FieldId name) { return profile.field(name).isVisible(); };
    for (int on : {1, 0, 1}) {
        SCOPED_TRACE(on);
        profile.setValue(F::chkBOTs(5), on);
        chkBOTs_Click(profile, 5);
        EXPECT_EQ(visible(F::grdBOTList), on == 1);
        EXPECT_EQ(visible(F::cboBOT), on == 0);
        EXPECT_EQ(visible(F::txtBOTThinkTime), on == 0);
    }
    EXPECT_TRUE(botPageLayout(true).roster);
    EXPECT_FALSE(botPageLayout(false).roster);

    // The other boxes have no click of their own.
    profile.setValue(F::chkBOTs(0), 1);
    chkBOTs_Click(profile, 0);
    EXPECT_TRUE(visible(F::grdBOTList));
}

TEST_F(RosterTest, SaveClearAndViewDoNothingWithAnEmptyRoster)
{
    profile.setValue(F::chkBOTs(0), 1);
    profile.setValue(F::chkBOTs(5), 1);
    for (int index : {0, 2, 4})
        click(index);
    EXPECT_TRUE(t.prompts.shown.empty());
    EXPECT_TRUE(t.prompts.dialogs.empty());
    EXPECT_TRUE(t.opener.opened.empty());
    EXPECT_FALSE(QFile::exists(t.baseFolder() + u"/BOTFile.cfg"_s));
}

TEST_F(RosterTest, SaveWritesTheTabFormWhereTheUserChose)
{
    add(kGnubee);
    add(kBoss);
    const QString file = t.root() + u"/mine.lst"_s;
    t.prompts.chooseFile(file);
    click(0);

    ASSERT_EQ(t.prompts.dialogs.size(), 1u);
    const FileDialogState& d = t.prompts.dialogs.front().state;
    EXPECT_FALSE(t.prompts.dialogs.front().open);
    EXPECT_EQ(d.DialogTitle, u"Save BOT list"_s);
    EXPECT_EQ(d.Filter, u"BOT list (*.lst)|*.lst"_s);
    EXPECT_EQ(d.InitialDir, t.programFolder());

    EXPECT_EQ(fileBytes(file),
              QByteArray("Gnubee\tHardcore\tRED\tDesann\t25\r\nBig_Boss\tHurt Me Plenty \tBLUE\tKyle2\t0\r\n"));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {u"Arena Steward"_s, Icon::Information, u"'mine.lst' has been saved         "_s, Buttons::Ok}));

    // A cancelled dialog writes and shows nothing.
    t.prompts.cancelNextDialog();
    click(0);
    EXPECT_EQ(t.prompts.shown.size(), 1u);
}

TEST_F(RosterTest, LoadReplacesTheRosterAfterAsking)
{
    const QString file = t.root() + u"/list.lst"_s;
    writeFile(file, "A\tHardcore\tBLUE\tLuke\t1\r\nB\tNightmare\tRED\tJan\r\n");

    // An empty roster is not asked about.
    t.prompts.chooseFile(file);
    click(1);
    ASSERT_EQ(t.prompts.dialogs.size(), 1u);
    const FileDialogState& d = t.prompts.dialogs.front().state;
    EXPECT_TRUE(t.prompts.dialogs.front().open);
    EXPECT_EQ(d.DialogTitle, u"Load Arena Steward BOT List"_s);
    EXPECT_EQ(d.Filter, u"Arena Steward BOT List files (*.lst)|*.lst"_s);
    EXPECT_EQ(d.InitialDir, t.programFolder());
    EXPECT_TRUE(t.prompts.shown.empty());
    const QList<QStringList> loaded = {row("A", "Hardcore", "BLUE", "Luke", "1"),
                                       row("B", "Nightmare", "RED", "Jan", "")};
    EXPECT_EQ(bots(), loaded);

    // With bots: No keeps them, Yes replaces them; there is no merge.
    replaceRosterBots(profile, {kGnubee});
    t.prompts.chooseFile(file);
    t.prompts.answerNext(Answer::No);
    click(1);
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(),
                      {kProductTitle, Icon::Question, u"Clear current BOT list?         "_s, Buttons::YesNo}));
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

TEST_F(RosterTest, ClearAsksAndKeepsTheHeading)
{
    add(kGnubee);
    t.prompts.answerNext(Answer::No);
    click(2);
    EXPECT_EQ(rosterBotCount(profile), 1);
    t.prompts.answerNext(Answer::Yes);
    click(2);
    EXPECT_EQ(profile.field(F::grdBOTList).rows(), QList<QStringList>{rosterHeadings()});
    EXPECT_EQ(t.prompts.texts(), QStringList(2, u"Clear current BOT list?         "_s));
}

TEST_F(RosterTest, AddOpensThePicker)
{
    click(3);
    EXPECT_EQ(pickerShown, 1);
    EXPECT_EQ(rosterBotCount(profile), 0) << "the picker adds the row itself";
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

TEST_F(RosterTest, AFileThatCantBeWrittenEscapesToTheEventsReport)
{
    add(kGnubee);
    t.prompts.chooseFile(t.root() + u"/no/such/folder/x.lst"_s);
    EXPECT_THROW(click(0), RuntimeError);
}

} // namespace
