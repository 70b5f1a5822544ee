// BOTFile.cfg: each mode checked byte for byte against the whole expected file, with
// the fixed clock of the test kit, and the boxes and results that go with it.
#include "bots/BotRoster.h"
#include "generate/BotConfigLines.h"
#include "commands/BotConfigWriter.h"
#include "generate/BotSkills.h"
#include "model/ServerProfile.h"
#include "support/ProductText.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

using namespace steward;
using namespace steward::testing;

namespace {

const QString kNoCount =
    QStringLiteral("You have selected to enable BOT's but you have not specified how many, however,         \r\n"
                   "this does allows admins to manually add bots, e.g., /rcon addbot Desann red 4 25 Gnubee.         ");

QStringList heading()
{
    const QString slashes(63, QLatin1Char('/'));
    return {
        QStringLiteral("// JK2 BOT Configuration File"),
        slashes,
        QStringLiteral("// File Created by: Arena Steward ver: JUNE 13 2002 beta 1.4"),
        QStringLiteral("// File Created On: Thursday, June 13, 2002 at 9:05 PM"),
        QStringLiteral("// arena.steward@example.org"),
        slashes,
        QString(),
        QStringLiteral("// This file is automatically executed by jk2mvded"),
        QString(),
        QString(),
    };
}

class BotConfigTest : public ::testing::Test {
protected:
    TestApp t;
    ServerProfile profile;

    void SetUp() override
    {
        profile.field(F::cboBOT).setItems(botSkillNames());
        profile.setText(F::cboBOT, QStringLiteral("Hurt Me Plenty "));
        profile.field(F::grdBOTList).setRows({rosterHeadings()});
    }

    void tick(int index, int value = 1) { profile.setValue(F::chkBOTs(index), value); }
    void players(const QString& text) { profile.setText(F::txtServerConfigSpin(6), text); }
    void addBot(const char* name, const char* skill, const char* team, const char* model, const char* ping)
    {
        profile.field(F::grdBOTList)
            .addRow({QString::fromLatin1(name), QString::fromLatin1(skill), QString::fromLatin1(team),
                     QString::fromLatin1(model), QString::fromLatin1(ping)});
    }
    QString file() const { return t.baseFolder() + QStringLiteral("/BOTFile.cfg"); }
    bool run() { return gbln_MakeBOTConfig(*t.app, profile); }

    void expectFile(const QStringList& lines)
    {
        EXPECT_EQ(fileBytes(file()), crlfText(lines));
        EXPECT_EQ(crlfLines(file()), lines); // the same, readable line by line on failure
    }
    void expectOneBox(const QString& text, Icon icon)
    {
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, icon, text, Buttons::Ok}));
    }
};

QString seta(const char* key, const char* value)
{
    return QStringLiteral("seta %1 \"%2\"").arg(QString::fromLatin1(key), QString::fromLatin1(value));
}

/// The file of automatic bots with the behaviour boxes clear, up to the think time.
QStringList automatic(const char* players, const char* thinkTime = "100")
{
    return heading() + QStringList{seta("bot_enable", "1"),         seta("bot_minplayers", players),
                                   seta("bot_nochat", "1"),         seta("bot_fastchat", "0"),
                                   seta("bot_challenge", "0"),      seta("bot_groundonly", "0"),
                                   seta("bot_thinktime", thinkTime)};
}

TEST_F(BotConfigTest, AutomaticBotsFillUpToTheNumberOfPlayers)
{
    tick(0);
    players(QStringLiteral("3x")); // written as it stands
    profile.setText(F::txtBOTThinkTime, QStringLiteral("150"));

    EXPECT_TRUE(run());
    expectFile(automatic("3x", "150") << seta("g_spSkill", "3"));
    EXPECT_TRUE(t.prompts.shown.empty());
}

// The boxes of the page against the five behaviour lines: chat is written as "no chat",
// fast chat needs chat, and "Enable Jumping" writes ground-only as it is ticked.
struct BehaviourCase {
    const char* name;
    int challenge, jumping, chat, fastChat;
    const char* nochat;
    const char* fastchat;
    const char* challengeValue;
    const char* groundonly;
};

class BotBehaviourTest : public BotConfigTest, public ::testing::WithParamInterface<BehaviourCase> {};

TEST_P(BotBehaviourTest, EachBoxWritesItsOwnSense)
{
    const BehaviourCase& c = GetParam();
    tick(0);
    tick(1, c.challenge);
    tick(2, c.jumping);
    tick(3, c.chat);
    tick(4, c.fastChat);
    players(QStringLiteral("2"));
    EXPECT_TRUE(run());
    expectFile(heading() + QStringList{seta("bot_enable", "1"), seta("bot_minplayers", "2"),
                                       seta("bot_nochat", c.nochat), seta("bot_fastchat", c.fastchat),
                                       seta("bot_challenge", c.challengeValue), seta("bot_groundonly", c.groundonly),
                                       seta("bot_thinktime", "100"), seta("g_spSkill", "3")});
}

INSTANTIATE_TEST_SUITE_P(Boxes, BotBehaviourTest,
                         ::testing::Values(BehaviourCase{"all_clear", 0, 0, 0, 0, "1", "0", "0", "0"},
                                           BehaviourCase{"chat", 0, 0, 1, 0, "0", "0", "0", "0"},
                                           BehaviourCase{"chat_and_fast_chat", 0, 0, 1, 1, "0", "1", "0", "0"},
                                           BehaviourCase{"fast_chat_without_chat", 0, 0, 0, 1, "1", "0", "0", "0"},
                                           BehaviourCase{"challenge", 1, 0, 0, 0, "1", "0", "1", "0"},
                                           BehaviourCase{"jumping_writes_ground_only", 0, 1, 0, 0, "1", "0", "0", "1"},
                                           BehaviourCase{"all_ticked", 1, 1, 1, 1, "0", "1", "1", "1"}),
                         [](const ::testing::TestParamInfo<BehaviourCase>& c) { return std::string(c.param.name); });

TEST_F(BotConfigTest, NoNumberOfPlayersWarnsAndLeavesTheHeadingOnly)
{
    for (const char* text : {"0", "", "abc", " 0x"}) {
        SCOPED_TRACE(text);
        t.prompts.shown.clear();
        tick(0);
        players(QString::fromLatin1(text));
        EXPECT_FALSE(run());
        expectFile(heading());
        expectOneBox(kNoCount, Icon::Exclamation);
    }
}

TEST_F(BotConfigTest, ASkillNameWithoutItsTrailingBlankMatchesNothing)
{
    tick(0);
    players(QStringLiteral("5"));
    profile.setText(F::cboBOT, QStringLiteral("Bring It On"));
    EXPECT_TRUE(run()) << "the file is used without a skill line";
    expectFile(automatic("5"));
    expectOneBox(QStringLiteral("Please select a BOT level         "), Icon::Information);
}

TEST_F(BotConfigTest, RosterBotsGiveOneAddbotLineEach)
{
    tick(0);
    tick(5);
    tick(3);
    players(QStringLiteral("7"));                           // ignored in this mode
    profile.setText(F::cboBOT, QStringLiteral("nonsense")); // no skill line in this mode
    addBot("Gnubee", "Hardcore", "RED", "Desann", "25");
    addBot("Big_Boss", "I Can Win", "BLUE", "Kyle2", "0");
    addBot("Odd", "Bring It On", "BLUE", "Luke", "40");  // unknown: the number of the row above
    addBot("Two Words", "Nightmare", "RED", "Jan", "5"); // a blank in a name is written as it stands
    addBot("Mid", "Bring It On ", "RED", "Reborn", "5"); // the trailing blank belongs to the name

    EXPECT_TRUE(run());
    expectFile(heading() +
               QStringList{seta("bot_enable", "1"), seta("bot_minplayers", "0"), seta("bot_nochat", "0"),
                           seta("bot_fastchat", "0"), seta("bot_challenge", "0"), seta("bot_groundonly", "0"),
                           seta("bot_thinktime", "100"), QString(), QStringLiteral("Addbot Desann 4 RED 25 Gnubee"),
                           QStringLiteral("Addbot Kyle2 1 BLUE 0 Big_Boss"),
                           QStringLiteral("Addbot Luke 1 BLUE 40 Odd"), QStringLiteral("Addbot Jan 5 RED 5 Two Words"),
                           QStringLiteral("Addbot Reborn 2 RED 5 Mid")});
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(BotConfigTest, AnUnknownSkillInTheFirstRowWritesZero)
{
    tick(0);
    tick(5);
    addBot("Gnubee", "hardcore", "RED", "Desann", "25");
    addBot("Tav", "Hurt Me Plenty ", "RED", "Tavion", "25");
    EXPECT_TRUE(run());
    const QStringList lines = crlfLines(file());
    ASSERT_GE(lines.size(), 2);
    EXPECT_EQ(lines.at(lines.size() - 2), QStringLiteral("Addbot Desann 0 RED 25 Gnubee"));
    EXPECT_EQ(lines.last(), QStringLiteral("Addbot Tavion 3 RED 25 Tav"));
}

TEST_F(BotConfigTest, AnEmptyRosterWarnsAndIsUsedWithTheHeadingOnly)
{
    tick(0);
    tick(5);
    EXPECT_TRUE(run());
    expectFile(heading());
    expectOneBox(QStringLiteral("No custom BOT's have been added         "), Icon::Exclamation);
}

TEST_F(BotConfigTest, WithoutEnableBotTheFileSwitchesBotsOff)
{
    const QStringList noBots = heading() + QStringList{seta("bot_minplayers", "0"), seta("bot_enable", "0")};
    writeFile(file(), QByteArray(5000, 'x')); // an existing file is replaced whole
    // "Enable User Defined BOT's" alone has no effect, and its roster is ignored.
    addBot("Gnubee", "Hardcore", "RED", "Desann", "25");
    for (int roster : {0, 1}) {
        SCOPED_TRACE(roster);
        tick(5, roster);
        EXPECT_TRUE(run());
        expectFile(noBots);
    }
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(BotConfigTest, AFileThatCantBeWrittenIsShownAndNotUsed)
{
    t.app->gameFolder = t.root() + QStringLiteral("/missing/");
    tick(0);
    players(QStringLiteral("2"));
    EXPECT_FALSE(run());
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {QStringLiteral("Function::gbln_MakeBOTConfig"), Icon::Information,
                                         QStringLiteral("Path not found"), Buttons::Ok}));
    EXPECT_FALSE(QDir(t.root() + QStringLiteral("/missing")).exists()) << "no folder is made";
}

TEST(BotConfigLines, TheHeadingTakesItsFactsAsTheyAre)
{
    ServerProfile profile;
    const BotConfig config = botConfigLines(
        profile, {QStringLiteral("linuxjk2ded"), QStringLiteral("Monday, 1 July 2024"), QStringLiteral("14:30")});
    EXPECT_EQ(config.lines.value(3), QStringLiteral("// File Created On: Monday, 1 July 2024 at 14:30"));
    EXPECT_EQ(config.lines.value(7), QStringLiteral("// This file is automatically executed by linuxjk2ded"));
    EXPECT_EQ(config.notice, BotConfigNotice::None);
    EXPECT_TRUE(config.use);
}

} // namespace
