#include "commands/BanListCommands.h"
#include "commands/MapCycleCommands.h"
#include "commands/BanListCommands.h"
#include "generate/BanListWriter.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "testkit/TestApp.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {
constexpr auto kList = F::lstBannedIPs;
constexpr auto kInput = F::txtServerIP;
} // namespace

TEST(BanList, AddTakesTheInputWhateverItIsAndEmptiesIt)
{
    TestApp t;
    ServerProfile p;
    p.setText(kInput, QStringLiteral("10.0.*.*"));
    cmdThreeWave_Click(*t.app, p, 2);
    cmdThreeWave_Click(*t.app, p, 2);
    p.setText(kInput, QStringLiteral("not an address"));
    cmdThreeWave_Click(*t.app, p, 2);
    EXPECT_EQ(p.field(kList).items(), QStringList({"10.0.*.*", "", "not an address"}));
    EXPECT_EQ(p.text(kInput), QString());
}

TEST(BanList, DeleteRemovesTheFirstSelectedItemOnly)
{
    TestApp t;
    ServerProfile p;
    Field& list = p.field(kList);
    list.setItems({"a", "b", "c", "d"});
    cmdThreeWave_Click(*t.app, p, 3);
    EXPECT_EQ(list.items().size(), 4) << "nothing selected, nothing removed";
    list.setSelection({3, 1});
    cmdThreeWave_Click(*t.app, p, 3);
    EXPECT_EQ(list.items(), QStringList({"a", "c", "d"}));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST(BanList, ClearAsksWithoutTheTail)
{
    TestApp t;
    ServerProfile p;
    Field& list = p.field(kList);
    cmdThreeWave_Click(*t.app, p, 4);
    EXPECT_TRUE(t.prompts.shown.empty()) << "an empty list asks nothing";

    list.setItems({"a", "b"});
    t.prompts.answerNext(Answer::No);
    cmdThreeWave_Click(*t.app, p, 4);
    EXPECT_EQ(list.count(), 2);
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    const MessageBoxRequest& box = t.prompts.last().request;
    EXPECT_EQ(box.text, QStringLiteral("Clear list?"));
    EXPECT_EQ(box.title, kProductTitle);
    EXPECT_EQ(box.icon, Icon::Question);
    EXPECT_EQ(box.buttons, Buttons::YesNo);

    t.prompts.answerNext(Answer::Yes);
    cmdThreeWave_Click(*t.app, p, 4);
    EXPECT_EQ(list.count(), 0);
}

TEST(BanList, TheButtonsTouchNoFile)
{
    TestApp t;
    ServerProfile p;
    p.setText(kInput, QStringLiteral("1.2.3.4"));
    for (int index : {0, 1, 2, 3, 4, 5})
        cmdThreeWave_Click(*t.app, p, index);
    EXPECT_TRUE(QDir(t.baseFolder()).isEmpty());
}

TEST(BanList, TheFileHoldsTheHeadingTheFilterAndOneLinePerItem)
{
    TestApp t;
    ServerProfile p;
    p.field(kList).setItems({"10.0.0.1", "", "192.168.*.*", "evil.example.org"});
    writeFile(t.baseFolder() + QStringLiteral("/BAN.cfg"), "an older list that is much longer than the new one\r\n");
    ASSERT_TRUE(gbln_MakeBANList(*t.app, p, 4));
    const QString slashes(63, QLatin1Char('/'));
    EXPECT_EQ(fileBytes(t.baseFolder() + QStringLiteral("/BAN.cfg")),
              crlfText({
                  "// JK2 BAN Configuration File",
                  slashes,
                  "// File Created by: Arena Steward ver: JUNE 13 2002 beta 1.4",
                  "// File Created On: Thursday, June 13, 2002 at 9:05 PM",
                  "// " + kContactAddress,
                  slashes,
                  "",
                  "// This file is automatically executed by jk2mvded",
                  "",
                  "",
                  "seta g_filterBan \"1\"",
                  "// Begin Banned IP's List",
                  "addIP 10.0.0.1",
                  "addIP 192.168.*.*",
                  "addIP evil.example.org",
                  "// End Banned IP's List",
              }));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST(BanList, AListOfOneEmptyItemLeavesTheCommentsAlone)
{
    TestApp t;
    ServerProfile p;
    p.field(kList).setItems({""});
    ASSERT_TRUE(gbln_MakeBANList(*t.app, p, 1));
    const QStringList lines = crlfLines(t.baseFolder() + QStringLiteral("/BAN.cfg"));
    ASSERT_EQ(lines.size(), 13);
    EXPECT_EQ(lines.mid(10),
              QStringList({"seta g_filterBan \"1\"", "// Begin Banned IP's List", "// End Banned IP's List"}));
}

TEST(BanList, AFailureIsAnInformationBoxAndNoLogEntry)
{
    TestApp t;
    ServerProfile p;
    p.field(kList).setItems({"10.0.0.1"});
    t.app->gameFolder = t.root() + QStringLiteral("/no game here");
    EXPECT_FALSE(gbln_MakeBANList(*t.app, p, 1));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    const MessageBoxRequest& box = t.prompts.last().request;
    EXPECT_EQ(box.title, QStringLiteral("Function::gbln_MakeBANList"));
    EXPECT_EQ(box.icon, Icon::Information);
    EXPECT_EQ(box.buttons, Buttons::Ok);
    EXPECT_EQ(box.text, QStringLiteral("Path not found"));
    EXPECT_FALSE(QFileInfo::exists(t.programFolder() + QStringLiteral("/arena-steward.log"))) << "nothing goes to the log";
}
