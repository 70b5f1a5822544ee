#include "maps/LevelShots.h"
#include "maps/MapScanner.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"
#include "ui/MainWindowHost.h"
#include "ui/ScannerWindow.h"

#include <QLabel>
#include <QProgressBar>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

TEST(ScannerWindow, ShowsTheScanAndGoesAwayWhenUnloaded)
{
    ScannerWindowProgress progress;
    EXPECT_EQ(progress.window(), nullptr);
    progress.show();
    ScannerWindow* window = progress.window();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->objectName(), QStringLiteral("frmScanner"));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Map Scanner"));
    EXPECT_EQ(window->scanningLabel()->text(), QStringLiteral("Current Progress:"));
    EXPECT_TRUE(window->isVisible());

    progress.setActivity(QStringLiteral("Scanning a.pk3 ...."));
    EXPECT_EQ(window->findChild<QLabel*>(QStringLiteral("lblScannerShow"))->text(), QStringLiteral("Scanning a.pk3 ...."));
    progress.setMaximum(4);
    progress.setValue(3);
    EXPECT_EQ(window->findChild<QProgressBar*>(QStringLiteral("pctCurrentProg"))->value(), 3);
    progress.setValue(9);
    EXPECT_EQ(window->progressBar()->value(), 4);
    progress.setBusy(true);
    EXPECT_EQ(window->cursor().shape(), Qt::WaitCursor);
    progress.setBusy(false);
    EXPECT_EQ(window->cursor().shape(), Qt::ArrowCursor);
    EXPECT_FALSE(window->close());

    progress.hide();
    EXPECT_FALSE(window->isVisible());
    progress.unload();
    EXPECT_EQ(progress.window(), nullptr);
}

TEST(ScannerWindow, StaysOnScreenBetweenThePhasesOfARealScan)
{
    TestApp t;
    ScannerWindowProgress progress;
    t.app->services.scanProgress = &progress;
    ASSERT_TRUE(ZipBuilder()
                    .file(QStringLiteral("maps/duel_pit.bsp"))
                    .file(QStringLiteral("levelshots/duel_pit.tga"), tgaPicture(4, 4, 1, 2, 3))
                    .write(t.baseFolder() + QStringLiteral("/assets0.pk3")));
    ASSERT_TRUE(ScanForMaps(*t.app, QStringLiteral("Base"), QStringLiteral("Jedi"), t.gameFolder()));
    ASSERT_NE(progress.window(), nullptr);
    EXPECT_TRUE(progress.window()->isVisible());
    EXPECT_TRUE(ExtractLevelShots(*t.app, QStringLiteral("Base"), t.gameFolder()));
    EXPECT_EQ(progress.window()->activityLabel()->text(), QStringLiteral("Done"));
    EXPECT_TRUE(ConvertTgaToBmp(*t.app));
    EXPECT_EQ(progress.window()->activityLabel()->text(), QStringLiteral("Converting duel_pit.tga...."));
    progress.unload();
}

TEST(ScannerWindow, TheWindowHostUnloadsItBeforeTheClosingBox)
{
    steward::testing::TestApp t;
    ScannerWindowProgress progress;
    t.app->services.scanProgress = &progress;
    QtWindowHost host(*t.app);
    progress.show();
    ASSERT_NE(progress.window(), nullptr);
    host.unloadScanner();
    EXPECT_EQ(progress.window(), nullptr) << "a plain close is refused by the scanner's window";
}
