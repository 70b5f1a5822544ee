#include "commands/Commands.h"
#include "model/Constants.h"
#include "commands/ToolDispatcher.h"
#include "commands/ToolTable.h"
#include "testkit/TestApp.h"

#include <QUrlQuery>
#include <gtest/gtest.h>

using namespace steward;

namespace {
const QStringList kEveryCommand = {
    "id_FileExit", "id_UtilitiesMapsScanfornewmaps", "id_UtilitiesConfigurationSave",
    "id_UtilitiesConfigurationLoad", "id_UtilitiesExportLinuxShellScript", "id_UtilitiesExportBatchFile",
    "id_UtilitiesExportServerConfiguration", "id_UtilitiesExportMapCycle", "id_UtilitiesServerConsole", "id_HelpContents",
    "id_HelpModCentral", "id_HelpOfficialSite", "id_HelpForumsForumPlanet", "id_HelpForumsModCentral",
    "id_HelpMailAuthor", "id_HelpAboutArenaSteward", "ID_AllStandardMPMaps", "ID_AllStandardSWMaps",
    "ID_AllStandardCPMaps", "ID_Cancel", "ID_MapWizard", "ID_SetStartingMap", "ID_SortAscending",
    "ID_SortDescending", "ID_RemoveMap", "ID_ClearList",
};
} // namespace

TEST(ToolTable, HoldsEveryCommandOnceInTableOrder)
{
    EXPECT_EQ(toolIdsInTableOrder(), kEveryCommand);
}

TEST(ToolTable, MenuCaptionsKeepTheirAccessKeys)
{
    const auto& bar = menuBarTools();
    ASSERT_EQ(bar.size(), 3u);
    EXPECT_EQ(bar[0].caption, QStringLiteral("&File"));
    EXPECT_EQ(bar[1].caption, QStringLiteral("&Utilities"));
    EXPECT_EQ(bar[2].caption, QStringLiteral("&Help"));
    const Tool& exportMenu = bar[1].children[2];
    EXPECT_EQ(exportMenu.id, QStringLiteral("id_UtilitiesExport"));
    EXPECT_EQ(exportMenu.children[3].tooltip, QStringLiteral("Save Map Cycle"));
    // The rotation pop-up: wizard, separator, starting map, separator, two sorts, ...
    const Tool& advanced = advancedPopup();
    EXPECT_EQ(advanced.caption, QStringLiteral("Advanced"));
    ASSERT_EQ(advanced.children.size(), 14u);
    EXPECT_TRUE(advanced.children[1].isSeparator());
    EXPECT_EQ(advanced.children[7].id, QStringLiteral("id_UtilitiesMapsScanfornewmaps"));
    EXPECT_EQ(standardsPopup().children.back().caption, QStringLiteral("Cancel"));
}

TEST(ToolDispatcher, EachIdReachesItsOwnRoutineAndNoOther)
{
    ToolDispatcher dispatcher;
    QStringList ran;
    for (const QString& id : kEveryCommand)
        if (id != QLatin1String("ID_Cancel")) {
            ASSERT_TRUE(dispatcher.on(id, [&ran, id] { ran << id; })) << id.toStdString();
        }
    for (const QString& id : kEveryCommand) {
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

TEST(Commands, AboutTextRunsLineByLine)
{
    EXPECT_EQ(aboutTitle(), QStringLiteral("About Arena Steward"));
    const QStringList lines = aboutLines();
    ASSERT_EQ(lines.size(), 7);
    EXPECT_EQ(lines[1], QStringLiteral("You are using version JUNE 13 2002 beta 1.4"));
    EXPECT_EQ(lines[2], QString());
    EXPECT_EQ(lines[3], QStringLiteral("Please submit all requests, bugs etc., to me "));
    EXPECT_EQ(lines[4], QStringLiteral("at ") + kContactAddress);
    EXPECT_EQ(lines[5], QString());
    EXPECT_EQ(lines[6], QStringLiteral("Thanks and Enjoy!"));
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
    EXPECT_TRUE(steward::testing::fileBytes(t.app->helpFile).contains("Starting the server")) << "the guide is written out";

    t.app->helpFile = QStringLiteral("/proc/no-such-folder/guide.html");
    openHelpContents(*t.app);
    ASSERT_EQ(t.prompts.shown.size(), 1u) << "a guide that can't be written is reported";
    EXPECT_EQ(t.prompts.last().request.icon, Icon::Critical);
    EXPECT_EQ(t.opener.opened.size(), 3u);
}
