#include "commands/Commands.h"
#include "model/Constants.h"
#include "commands/ToolDispatcher.h"
#include "commands/ToolTable.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <QUrlQuery>
#include <gtest/gtest.h>

using namespace steward;

TEST(ToolDispatcher, EachIdReachesItsOwnRoutineAndNoOther)
{
    ToolDispatcher dispatcher;
    QStringList ran;
    const QStringList ids = toolIdsInTableOrder();
    ASSERT_TRUE(ids.contains(QStringLiteral("ID_Cancel")));
    for (const QString& id : ids)
        if (id != QLatin1String("ID_Cancel")) {
            ASSERT_TRUE(dispatcher.on(id, [&ran, id] { ran << id; })) << id.toStdString();
        }
    for (const QString& id : ids) {
        ran.clear();
        dispatcher.SSActiveToolBars1_ToolClick(id);
        if (id == QLatin1String("ID_Cancel"))
            EXPECT_TRUE(ran.isEmpty());
        else
            EXPECT_EQ(ran, QStringList{id});
    }
}

TEST(ToolDispatcher, UnknownAndNearlyKnownIdsDoNothing)
{
    ToolDispatcher dispatcher;
    int runs = 0;
    dispatcher.on(QStringLiteral("ID_ClearList"), [&runs] { ++runs; });
    for (const char* id : {"", "id_clearlist", "ID_ClearList ", "ID_Clear", "id_Nothing"})
        EXPECT_FALSE(dispatcher.SSActiveToolBars1_ToolClick(QString::fromLatin1(id))) << id;
    EXPECT_EQ(runs, 0);
    EXPECT_FALSE(dispatcher.on(QStringLiteral("id_Nothing"), [] {})) << "ids outside the tables are refused";
    EXPECT_TRUE(dispatcher.SSActiveToolBars1_ToolClick(QStringLiteral("ID_Cancel")));
}

TEST(Commands, MailCarriesTheVersionInItsSubject)
{
    const QUrl mail = mailAuthorAddress();
    EXPECT_EQ(mail.scheme(), QStringLiteral("mailto"));
    EXPECT_EQ(mail.path(), kContactAddress);
    EXPECT_EQ(QUrlQuery(mail).queryItemValue(QStringLiteral("subject"), QUrl::FullyDecoded),
              QStringLiteral("Arena Steward JUNE 13 2002 beta 1.4"));
}

TEST(Commands, LinksAndHelpGoThroughTheOpenAction)
{
    steward::testing::TestApp t;
    openLink(*t.app, Link::ProductForum);
    mailAuthor(*t.app);
    ASSERT_EQ(t.opener.opened.size(), 2u);
    EXPECT_EQ(t.opener.opened[0], QUrl(kProductForum));
    EXPECT_EQ(t.opener.opened[1].scheme(), QStringLiteral("mailto"));

    t.app->helpFile = t.programFolder() + QStringLiteral("/guide/arena-steward-guide.html");
    openHelpContents(*t.app);
    EXPECT_TRUE(t.prompts.shown.empty());
    ASSERT_EQ(t.opener.opened.size(), 3u);
    EXPECT_EQ(t.opener.opened[2], QUrl::fromLocalFile(t.app->helpFile));
    EXPECT_TRUE(steward::testing::fileBytes(t.app->helpFile).contains("Starting the server"))
        << "the guide is written out";

    t.app->helpFile = QStringLiteral("/proc/no-such-folder/guide.html");
    openHelpContents(*t.app);
    ASSERT_EQ(t.prompts.shown.size(), 1u) << "a guide that can't be written is reported";
    const MessageBoxRequest& box = t.prompts.last().request;
    EXPECT_TRUE(box.text.contains(QStringLiteral("File not found\r\nNumber: 53"))) << box.text.toStdString();
    EXPECT_TRUE(steward::testing::isBox(box, {QStringLiteral("arena-steward Error"), Icon::Critical, box.text}));
    EXPECT_EQ(t.opener.opened.size(), 3u);
}
