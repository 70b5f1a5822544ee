// Every tool id of the tool table reaches a routine of the wired program: a misspelled id
// on either side leaves a menu entry that does nothing, and fails here.
#include "commands/ToolTable.h"
#include "testkit/NoAddressLookup.h"
#include "testkit/TestApp.h"
#include "ui/CommandWiring.h"
#include "ui/MainWindowHost.h"

#include <gtest/gtest.h>

using namespace steward;

TEST(ToolTableRoutes, EveryIdOfTheTablesReachesARoutine)
{
    steward::testing::TestApp t;
    QtWindowHost host{*t.app};
    steward::testing::NoAddressLookup addresses;
    CommandWiring wiring{*t.app, host, addresses};
    // No main window is loaded, so a routine that is reached runs nothing.
    const QStringList ids = toolIdsInTableOrder();
    ASSERT_FALSE(ids.isEmpty());
    for (const QString& id : ids)
        EXPECT_TRUE(wiring.dispatcher().SSActiveToolBars1_ToolClick(id)) << id.toStdString() << " reaches nothing";
    for (const Tool& menu : menuBarTools())
        EXPECT_FALSE(wiring.dispatcher().SSActiveToolBars1_ToolClick(menu.id)) << "a menu of its own is no command";
    EXPECT_FALSE(wiring.dispatcher().SSActiveToolBars1_ToolClick(QStringLiteral("id_FileExlt")));
    EXPECT_FALSE(wiring.dispatcher().on(QStringLiteral("id_FileExlt"), [] {})) << "an id outside the tables is refused";
    EXPECT_TRUE(t.prompts.shown.empty());
}
