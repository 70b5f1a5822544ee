// A picture of the server console for the guide, taken against a fake server. Runs only
// when STEWARD_SCREENSHOTS names a folder; the picture goes there.
#include "../console/FakeServer.h"
#include "console/ColourText.h"
#include "model/ServerProfile.h"
#include "testkit/TestApp.h"
#include "ui/ServerConsoleWindow.h"

#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>
#include <QToolButton>
#include <gtest/gtest.h>

using namespace steward;

TEST(ServerConsolePicture, StatusAndAnAnswer)
{
    const QString folder = qEnvironmentVariable("STEWARD_SCREENSHOTS");
    if (folder.isEmpty())
        GTEST_SKIP() << "set STEWARD_SCREENSHOTS to a folder to take the picture";
    QDir().mkpath(folder);
    steward::testing::TestApp t;
    steward::testing::FakeServer server;
    const QByteArray oob(4, '\xff');
    server.answer = [oob](const QByteArray& request) -> QList<QByteArray> {
        if (request == oob + "getstatus")
            return {oob + "statusResponse\n\\sv_hostname\\^1Steward ^4Arena\\mapname\\ffa_bespin\\sv_maxclients\\16"
                          "\\g_gametype\\0\\g_needpass\\0\\version\\JK2MP: v1.04\n"
                          "31 0 \"^1Gnubee\"\n17 45 \"^5Kyle\"\n9 62 \"Luke\"\n"};
        // The server pads the names by their visible length.
        const auto row = [](int num, int score, int ping, const QString& name, int lastmsg, const char* address,
                            int qport) {
            QString padded = name + QString(16 - stripColourCodes(name).size(), QLatin1Char(' '));
            return QStringLiteral("%1 %2 %3 ").arg(num, 3).arg(score, 5).arg(ping, 4) + padded +
                   QStringLiteral("%1 %2%3 %4\n")
                       .arg(lastmsg, 7)
                       .arg(QString::fromLatin1(address), -22)
                       .arg(qport, 5)
                       .arg(25000, 5);
        };
        const QString table = QStringLiteral("map: ffa_bespin\n"
                                             "num score ping name            lastmsg address               qport rate\n"
                                             "--- ----- ---- --------------- ------- --------------------- ----- -----\n") +
                              row(0, 31, 0, QStringLiteral("^1Gnubee^7"), 0, "bot", 0) +
                              row(1, 17, 45, QStringLiteral("^5Kyle^7"), 50, "192.168.1.20:29070", 31337) +
                              row(2, 9, 62, QStringLiteral("Luke^7"), 50, "192.168.1.21:29070", 4711);
        return {oob + "print\n" + table.toLatin1()};
    };
    ServerProfile profile;
    profile.setText(F::txtServerConfig(16), QStringLiteral("127.0.0.1"));
    profile.setText(F::txtServerConfig(12), QString::number(server.port()));
    profile.setText(F::txtServerConfig(14), QStringLiteral("secret"));
    frmServerConsole window(*t.app, profile);
    window.resize(1000, 540);
    window.show();
    auto* grid = window.findChild<QTableWidget*>(QStringLiteral("grdPlayers"));
    ASSERT_TRUE(steward::testing::waitUntil([&] { return grid->rowCount() == 3; }));
    grid->selectRow(1);
    window.sendCommand(QStringLiteral("status"));
    ASSERT_TRUE(steward::testing::waitUntil([&] { return window.outputText().contains(QStringLiteral("Luke")); }));
    window.findChild<QLineEdit*>(QStringLiteral("txtConsoleCommand"))->setText(QStringLiteral("^2Next map in 5 minutes"));
    steward::testing::runEvents(100);
    const QString name = folder + QStringLiteral("/server-console.png");
    EXPECT_TRUE(window.grab().save(name)) << name.toStdString();
}
