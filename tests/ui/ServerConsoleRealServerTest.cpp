// The console window against a real Quake 3 engine dedicated server (Debian's
// openarena-server; skipped where it is missing): its status shows the server's name,
// map and slots, and an rcon "status" comes back with the player table.
#include "console/ConsoleProtocol.h"
#include "testkit/RealServer.h"
#include "ui/WiredMainWindow.h"
#include "ui/frmServerConsole.h"

TEST(RealServerConsole, StatusAndAnRconStatusRoundTrip)
{
    if (realServerMissing())
        GTEST_SKIP() << "no Quake 3 engine dedicated server here (Debian's openarena-server)";
    TestApp t;
    const quint16 port = static_cast<quint16>(28900 + QCoreApplication::applicationPid() % 900);
    QProcess server;
    server.setWorkingDirectory(t.root());
    server.setProcessChannelMode(QProcess::MergedChannels);
    QStringList arguments = u"+set com_basegame baseoa +set dedicated 1 +set sv_maxclients 6 +set rconpassword secret "
                            "+set bot_enable 1 +set net_port %1"_s.arg(port)
                                .split(u' ');
    arguments << u"+set"_s << u"fs_basepath"_s << kRealGameData << u"+set"_s << u"fs_homepath"_s << t.root()
              << u"+set"_s << u"sv_hostname"_s << u"^1Steward ^7Console"_s << u"+map"_s << u"oa_dm2"_s << u"+addbot"_s
              << u"Angelyss"_s << u"1"_s;
    server.start(kRealEngine, arguments);
    ASSERT_TRUE(server.waitForStarted(10000));
    ServerProfile profile;
    profile.setText(F::txtServerConfig(12), QString::number(port));
    profile.setText(F::txtServerConfig(14), u"secret"_s);
    auto* window = new frmServerConsole(*t.app, profile);
    window->findChild<QSpinBox*>(u"spnStatusInterval"_s)->setValue(2);
    window->show();
    auto* map = window->findChild<QLabel*>(u"lblServerMap"_s);
    auto* grid = window->findChild<QTableWidget*>(u"grdPlayers"_s);
    const bool answered = waitUntil([&] { return map->text() == u"oa_dm2"_s; }, 30000);
    const bool botSeen = answered && waitUntil([&] { return grid->rowCount() == 1; }, 15000);
    const QString name = window->findChild<QLabel*>(u"lblServerName"_s)->text();
    const QString players = window->findChild<QLabel*>(u"lblServerPlayers"_s)->text();
    auto* line = window->findChild<QLineEdit*>(u"txtConsoleCommand"_s);
    line->setText(u"status"_s);
    sendKey(line, Qt::Key_Return);
    const bool table = waitUntil([&] { return !parseStatusTable(window->outputText()).isEmpty(); }, 10000);
    const QString output = window->outputText();
    delete window;
    server.terminate();
    server.waitForFinished(5000);
    ASSERT_TRUE(answered) << server.readAll().toStdString();
    EXPECT_EQ(name, u"<span style=\"color:#d00000\">Steward </span>Console"_s);
    EXPECT_TRUE(botSeen);
    EXPECT_EQ(players, botSeen ? u"1 / 6"_s : u"0 / 6"_s);
    ASSERT_TRUE(table) << output.toStdString();
    const QList<StatusTableRow> rows = parseStatusTable(output);
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0].name, u"Angelyss"_s);
    EXPECT_TRUE(output.contains(u"map: oa_dm2"_s));
}
