#include "commands/BanListCommands.h"
#include "generate/BanListWriter.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "testkit/BoxExpect.h"
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

TEST(BanList, TheButtonsAddDeleteAndClearWithoutTouchingAFile)
{
    TestApp t;
    ServerProfile p;
    Field& list = p.field(kList);
    // Add takes the input whatever it is and empties it.
    p.setText(kInput, QStringLiteral("10.0.*.*"));
    cmdThreeWave_Click(*t.app, p, 2);
    cmdThreeWave_Click(*t.app, p, 2);
    p.setText(kInput, QStringLiteral("not an address"));
    cmdThreeWave_Click(*t.app, p, 2);
    EXPECT_EQ(list.items(), QStringList({"10.0.*.*", "", "not an address"}));
    EXPECT_EQ(p.text(kInput), QString());

    // Delete removes the first selected item only, and nothing without a selection.
    list.setItems({"a", "b", "c", "d"});
    cmdThreeWave_Click(*t.app, p, 3);
    EXPECT_EQ(list.count(), 4);
    list.setSelection({3, 1});
    cmdThreeWave_Click(*t.app, p, 3);
    EXPECT_EQ(list.items(), QStringList({"a", "c", "d"}));
    EXPECT_TRUE(t.prompts.shown.empty());

    // Clear asks, without the tail.
    t.prompts.answerNext(Answer::No);
    cmdThreeWave_Click(*t.app, p, 4);
    EXPECT_EQ(list.count(), 3);
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(
        isBox(t.prompts.last(), {kProductTitle, Icon::Question, QStringLiteral("Clear list?"), Buttons::YesNo}));
    t.prompts.answerNext(Answer::Yes);
    cmdThreeWave_Click(*t.app, p, 4);
    EXPECT_EQ(list.count(), 0);
    cmdThreeWave_Click(*t.app, p, 4);
    EXPECT_EQ(t.prompts.shown.size(), 2u) << "an empty list asks nothing";

    p.setText(kInput, QStringLiteral("1.2.3.4"));
    for (int index : {0, 1, 2, 3, 5})
        cmdThreeWave_Click(*t.app, p, index);
    EXPECT_TRUE(QDir(t.baseFolder()).isEmpty());
}

TEST(BanList, TheFileHoldsTheHeadingTheFilterAndOneLinePerItem)
{
    TestApp t;
    ServerProfile p;
    const QString slashes(63, QLatin1Char('/'));
    const QStringList heading = {"// JK2 BAN Configuration File",
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
                                 "// Begin Banned IP's List"};
    const QString file = t.baseFolder() + QStringLiteral("/BAN.cfg");
    writeFile(file, "an older list that is much longer than the new one\r\n");
    p.field(kList).setItems({"10.0.0.1", "", "192.168.*.*", "evil.example.org"});
    ASSERT_TRUE(gbln_MakeBANList(*t.app, p, 4));
    EXPECT_EQ(fileBytes(file), crlfText(heading + QStringList{"addIP 10.0.0.1", "addIP 192.168.*.*",
                                                              "addIP evil.example.org", "// End Banned IP's List"}));
    // A list of one empty item leaves the comments alone.
    p.field(kList).setItems({""});
    ASSERT_TRUE(gbln_MakeBANList(*t.app, p, 1));
    EXPECT_EQ(fileBytes(file), crlfText(heading + QStringList{"// End Banned IP's List"}));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST(BanList, AFailureIsAnInformationBoxAndNoLogEntry)
{
    TestApp t;
    ServerProfile p;
    p.field(kList).setItems({"10.0.0.1"});
    t.app->gameFolder = t.root() + QStringLiteral("/no game here");
    EXPECT_FALSE(gbln_MakeBANList(*t.app, p, 1));
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(isBox(t.prompts.last(), {QStringLiteral("Function::gbln_MakeBANList"), Icon::Information,
                                         QStringLiteral("Path not found"), Buttons::Ok}));
    EXPECT_FALSE(QFileInfo::exists(t.programFolder() + QStringLiteral("/arena-steward.log")))
        << "nothing goes to the log";
}
