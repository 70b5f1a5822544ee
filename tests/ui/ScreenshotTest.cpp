// Pictures of every page of the main window for a person to look at. Runs only when
// STEWARD_SCREENSHOTS names a folder; the pictures go there.
#include "commands/MainFormLoad.h"
#include "model/ServerProfile.h"
#include "testkit/TestApp.h"
#include "ui/frmMain.h"

#include <QApplication>
#include <QDir>
#include <QTabWidget>
#include <cstdio>
#include <gtest/gtest.h>

using namespace steward;

TEST(MainWindowPictures, EveryPage)
{
    const QString folder = qEnvironmentVariable("STEWARD_SCREENSHOTS");
    if (folder.isEmpty())
        GTEST_SKIP() << "set STEWARD_SCREENSHOTS to a folder to take the pictures";
    QDir().mkpath(folder);
    steward::testing::TestApp t;
    frmMain window(*t.app);
    MainFormLoad(*t.app, window.profile(), window);
    // Some content, as the logic would give it.
    ServerProfile& p = window.profile();
    p.field(F::tvwAvailMaps).setItems({QStringLiteral("Jedi"), QStringLiteral("assets0.pk3")});
    p.field(F::lsvMapRotation)
        .setRows({{QStringLiteral("ffa_bespin"), QStringLiteral("Bespin Streets"), QStringLiteral("ffa")},
                  {QStringLiteral("ctf_yavin"), QStringLiteral("Yavin Temple"), QStringLiteral("ctf")}});
    p.field(F::grdBOTList)
        .setRows({{QStringLiteral("NAME"), QStringLiteral("SKILL"), QStringLiteral("TEAM"), QStringLiteral("MODEL"),
                   QStringLiteral("PING")},
                  {QStringLiteral("Gnubee"), QStringLiteral("Hardcore"), QStringLiteral("RED"),
                   QStringLiteral("Desann"), QStringLiteral("25")}});
    p.setText(F::lblLongMapName, QStringLiteral("Bespin Streets"));
    p.setText(F::lblMapType, QStringLiteral("ffa"));
    p.setText(F::lblMapsSelected, QStringLiteral("2 Selected Maps"));
    p.setText(F::lblNumberOfMapsAvailable, QStringLiteral("2 Maps Available"));
    p.field(F::lstBannedIPs).setItems({QStringLiteral("10.0.0.1")});
    window.show();
    std::printf("smallest size %d x %d\n", window.minimumSizeHint().width(), window.minimumSizeHint().height());
    QApplication::processEvents();
    auto* game = window.control<QTabWidget>(QStringLiteral("vsExtraGameFlags"));
    for (int page = 0; page < window.mainTab()->count(); ++page) {
        window.mainTab()->setCurrentIndex(page);
        const int subPages = page == 1 ? game->count() : 1;
        for (int sub = 0; sub < subPages; ++sub) {
            if (page == 1)
                game->setCurrentIndex(sub);
            QApplication::processEvents();
            const QString name = QStringLiteral("%1/page%2-%3.png").arg(folder).arg(page).arg(sub);
            EXPECT_TRUE(window.grab().save(name)) << name.toStdString();
        }
    }
}
