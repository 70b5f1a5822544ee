// Every tool id of the tool table reaches a routine of the wired program: a misspelled id
// on either side leaves a menu entry that does nothing, and fails here.
#include "commands/ToolTable.h"
#include "ui/WiredMainWindow.h"

using namespace steward;

using ToolTableRoutes = steward::testing::WiredMainWindow;

TEST_F(ToolTableRoutes, EveryIdOfTheTablesReachesARoutine)
{
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
