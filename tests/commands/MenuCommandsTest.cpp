// The toolbar's dispatch by id, and every "open" of the menus: through the desktop's opener, or a box
// that names what could not be opened when there is none.
#include "bots/BotRoster.h"
#include "commands/BotRosterCommands.h"
#include "commands/Commands.h"
#include "commands/CreateJediConfiguration.h"
#include "commands/MapCycleCommands.h"
#include "commands/ToolDispatcher.h"
#include "commands/ToolTable.h"
#include "maps/MapRotation.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/DesktopOpen.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <QUrlQuery>
#include <functional>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

TEST(ToolDispatcher, EachIdReachesItsOwnRoutineAndNoOtherAndUnknownIdsDoNothing)
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
        EXPECT_EQ(ran, id == u"ID_Cancel"_s ? QStringList{} : QStringList{id});
    }
    ran.clear();
    for (const char* id : {"", "id_clearlist", "ID_ClearList ", "ID_Clear", "id_Nothing"})
        EXPECT_FALSE(dispatcher.SSActiveToolBars1_ToolClick(QString::fromLatin1(id))) << id;
    EXPECT_TRUE(ran.isEmpty());
    EXPECT_FALSE(dispatcher.on(u"id_Nothing"_s, [] {})) << "ids outside the tables are refused";
    EXPECT_TRUE(dispatcher.SSActiveToolBars1_ToolClick(u"ID_Cancel"_s));
}

TEST(DesktopOpen, LinksMailAndHelpGoThroughTheOpenAction)
{
    const QUrl mail = mailAuthorAddress();
    EXPECT_EQ(mail.scheme(), u"mailto"_s);
    EXPECT_EQ(mail.path(), kContactAddress);
    EXPECT_EQ(QUrlQuery(mail).queryItemValue(u"subject"_s, QUrl::FullyDecoded),
              u"Arena Steward JUNE 13 2002 beta 1.4"_s);
    TestApp t;
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
    EXPECT_TRUE(fileBytes(t.app->helpFile).contains("Starting the server")) << "the guide is written out";
    t.app->helpFile = u"/proc/no-such-folder/guide.html"_s;
    openHelpContents(*t.app);
    ASSERT_EQ(t.prompts.shown.size(), 1u) << "a guide that can't be written is reported";
    const MessageBoxRequest& box = t.prompts.last().request;
    EXPECT_TRUE(box.text.contains(u"File not found\r\nNumber: 53"_s)) << box.text.toStdString();
    EXPECT_TRUE(isBox(box, {u"arena-steward Error"_s, Icon::Critical, box.text}));
    EXPECT_EQ(t.opener.opened.size(), 3u);
    // The box names the file or address and the opener's package.
    const QString file = openFailedText(QUrl::fromLocalFile(u"/home/me/My Guide.html"_s));
    EXPECT_TRUE(file.startsWith(u"Could not open /home/me/My Guide.html"_s)) << file.toStdString();
    EXPECT_TRUE(file.contains(u"xdg-utils"_s));
    const QString web = openFailedText(QUrl(u"https://example.org/a b"_s));
    EXPECT_TRUE(web.startsWith(u"Could not open https://example.org/a b"_s)) << web.toStdString();
}

TEST(DesktopOpen, WithoutAnOpenerEachRoadSaysWhatCouldNotBeOpened)
{
    const struct {
        const char* name;
        std::function<void(TestApp&, ServerProfile&)> run;
    } roads[] = {
        {"a web link", [](TestApp& t, ServerProfile&) { openLink(*t.app, Link::ProductForum); }},
        {"mail to the author", [](TestApp& t, ServerProfile&) { mailAuthor(*t.app); }},
        {"Help > Contents",
         [](TestApp& t, ServerProfile&) {
             t.app->helpFile = t.programFolder() + u"/arena-steward-guide.html"_s;
             openHelpContents(*t.app);
         }},
        {"View of the bot file",
         [](TestApp& t, ServerProfile& profile) {
             appendRosterBot(profile, {u"Kyle"_s, u"Hardcore"_s, u"RED"_s, u"kyle"_s, u"0"_s});
             cmdBOTs_Click(*t.app, profile, 4);
         }},
        {"the exported map cycle",
         [](TestApp& t, ServerProfile& profile) {
             profile.field(F::lsvMapRotation).addRow(rotationRow(u"ffa_bespin"_s, u"Bespin"_s, u"ffa"_s));
             profile.setStartingMap(u"ffa_bespin"_s);
             t.prompts.chooseFile(t.baseFolder() + u"/export.cfg"_s);
             mnuExportMapCycle_Click(*t.app, profile);
         }},
        {"the saved cycle's double click",
         [](TestApp& t, ServerProfile& profile) {
             writeFile(t.baseFolder() + u"/saved.cfg"_s, "//ffa_bespin\r\n");
             profile.setText(F::txtServerINI, t.baseFolder() + u"/saved.cfg"_s);
             txtServerINI_DblClick(*t.app, profile);
         }},
        {"the exported session file",
         [](TestApp& t, ServerProfile& profile) {
             profile.setValue(F::chkMapAutoCycle, 1);
             QString session = u"arena.cfg"_s;
             CreateJediConfiguration(*t.app, profile, true, false, session);
         }},
    };
    for (const auto& road : roads) {
        for (const bool opener : {true, false}) {
            SCOPED_TRACE(std::string(road.name) + (opener ? " with an opener" : " without one"));
            TestApp t;
            t.opener.desktopHasOpener = opener;
            ServerProfile profile;
            road.run(t, profile);
            ASSERT_EQ(t.opener.opened.size(), 1u);
            const QString failed = openFailedText(t.opener.opened[0]);
            EXPECT_EQ(t.prompts.texts().contains(failed), !opener) << t.prompts.texts().join(u'|').toStdString();
            if (!opener) {
                EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, failed}));
            }
        }
    }
}
