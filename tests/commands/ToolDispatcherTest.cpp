#include "commands/Commands.h"
#include "model/Constants.h"
#include "commands/ToolDispatcher.h"
#include "commands/ToolTable.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <QUrlQuery>
#include <gtest/gtest.h>

using namespace steward;
using namespace Qt::StringLiterals;

TEST(ToolDispatcher, EachIdReachesItsOwnRoutineAndNoOther)
{
    ToolDispatcher dispatcher;
    QStringList ran;
    const QStringList ids = toolIdsInTableOrder();
    ASSERT_TRUE(ids.contains(u"ID_Cancel"_s));
    for (const QString& id : ids)
        if (id != u"ID_Cancel"_s) {
            ASSERT_TRUE(dispatcher.on(id, [&ran, id] { ran << id; })) << id.toStdString();
        }
    for (const QString& id : ids) {
        ran.clear();
        dispatcher.SSActiveToolBars1_ToolClick(id);
        if (id == u"ID_Cancel"_s)
            EXPECT_TRUE(ran.isEmpty());
        else
            EXPECT_EQ(ran, QStringList{id});
    }
}

TEST(ToolDispatcher, UnknownAndNearlyKnownIdsDoNothing)
{
    ToolDispatcher dispatcher;
    int runs = 0;
    dispatcher.on(u"ID_ClearList"_s, [&runs] { ++runs; });
    for (const char* id : {"", "id_clearlist", "ID_ClearList ", "ID_Clear", "id_Nothing"})
        EXPECT_FALSE(dispatcher.SSActiveToolBars1_ToolClick(QString::fromLatin1(id))) << id;
    EXPECT_EQ(runs, 0);
    EXPECT_FALSE(dispatcher.on(u"id_Nothing"_s, [] {})) << "ids outside the tables are refused";
    EXPECT_TRUE(dispatcher.SSActiveToolBars1_ToolClick(u"ID_Cancel"_s));
}

TEST(Commands, MailCarriesTheVersionInItsSubject)
{
    const QUrl mail = mailAuthorAddress();
    EXPECT_EQ(mail.scheme(), u"mailto"_s);
    EXPECT_EQ(mail.path(), kContactAddress);
    EXPECT_EQ(QUrlQuery(mail).queryItemValue(u"subject"_s, QUrl::FullyDecoded),
              u"Arena Steward JUNE 13 2002 beta 1.4"_s);
}

TEST(Commands, LinksAndHelpGoThroughTheOpenAction)
{
    steward::testing::TestApp t;
    openLink(*t.app, Link::ProductForum);
    mailAuthor(*t.app);
    ASSERT_EQ(t.opener.opened.size(), 2u);
    EXPECT_EQ(t.opener.opened[0], QUrl(kProductForum));
    EXPECT_EQ(t.opener.opened[1].scheme(), u"mailto"_s);

    t.app->helpFile = t.programFolder() + u"/guide/arena-steward-guide.html"_s;
    openHelpContents(*t.app);
    EXPECT_TRUE(t.prompts.shown.empty());
    ASSERT_EQ(t.opener.opened.size(), 3u);
    EXPECT_EQ(t.opener.opened[2], QUrl::fromLocalFile(t.app->helpFile));
    EXPECT_TRUE(steward::testing::fileBytes(t.app->helpFile).contains("Starting the server"))
        << "the guide is written out";

    t.app->helpFile = u"/proc/no-such-folder/guide.html"_s;
    openHelpContents(*t.app);
    ASSERT_EQ(t.prompts.shown.size(), 1u) << "a guide that can't be written is reported";
    const MessageBoxRequest& box = t.prompts.last().request;
    EXPECT_TRUE(box.text.contains(u"File not found\r\nNumber: 53"_s)) << box.text.toStdString();
    EXPECT_TRUE(steward::testing::isBox(box, {u"arena-steward Error"_s, Icon::Critical, box.text}));
    EXPECT_EQ(t.opener.opened.size(), 3u);
}
