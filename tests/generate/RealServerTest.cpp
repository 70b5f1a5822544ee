// A real Quake 3 engine dedicated server runs what OK writes and starts. It needs the
// OpenArena server from Debian (openarena-server) and is skipped where it is missing.
// A small start script stands in for the game's server and points the engine at the
// game folder, so that the session file and the map cycle in "base" are the ones it
// executes; the test then asks the running server for its status over UDP.
#include "generate/OkCommand.h"
#include "platform/System.h"
#include "shell/ServerProfile.h"
#include "testkit/FakeWindows.h"
#include "testkit/TestApp.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <QUdpSocket>
#include <gtest/gtest.h>

#include <csignal>

using namespace steward;

namespace {

const QString kEngine = QStringLiteral("/usr/lib/ioquake3/ioq3ded");
const QString kGameData = QStringLiteral("/usr/lib/openarena-server");

/// The status line of the server on the port, or an empty text when none answers in time.
QByteArray askStatus(quint16 port, int seconds)
{
    QUdpSocket socket;
    const QDeadlineTimer deadline(seconds * 1000);
    while (!deadline.hasExpired()) {
        socket.writeDatagram(QByteArray("\xff\xff\xff\xffgetstatus"), QHostAddress::LocalHost, port);
        if (socket.waitForReadyRead(500)) {
            QByteArray answer(static_cast<int>(socket.pendingDatagramSize()), 0);
            socket.readDatagram(answer.data(), answer.size());
            return answer;
        }
    }
    return {};
}

void stopServer(const QString& pidFile)
{
    QFile file(pidFile);
    if (file.open(QIODevice::ReadOnly)) {
        const int pid = QString::fromLatin1(file.readAll()).trimmed().toInt();
        if (pid > 0)
            ::kill(pid, SIGTERM);
    }
}

/// The player lines of a status answer: score, ping and the name in quotes.
QStringList playerNames(const QByteArray& status)
{
    QStringList names;
    const QList<QByteArray> lines = status.split('\n');
    for (qsizetype i = 2; i < lines.size(); ++i) {
        const QByteArray& line = lines.at(i);
        const qsizetype open = line.indexOf('"');
        const qsizetype close = line.lastIndexOf('"');
        if (open >= 0 && close > open)
            names << QString::fromLatin1(line.mid(open + 1, close - open - 1));
    }
    return names;
}

/// Asks the server until its status holds at least count players or the time is up;
/// the last answer.
QByteArray awaitPlayers(quint16 port, int count, int seconds)
{
    const QDeadlineTimer deadline(seconds * 1000);
    QByteArray status;
    while (!deadline.hasExpired()) {
        status = askStatus(port, 2);
        if (playerNames(status).size() >= count)
            break;
        QThread::msleep(500);
    }
    return status;
}

bool serverInstalled()
{
    return QFileInfo(kEngine).isExecutable() && QFileInfo(kGameData + QStringLiteral("/baseoa")).isDir();
}

/// A start script that stands in for the game's server: the engine on the OpenArena
/// data, with the game folder as its home, so that it runs the files in "base".
void installServerScript(steward::testing::TestApp& t)
{
    t.app->serverExecutable = QStringLiteral("q3server");
    const QString script = t.gameFolder() + QStringLiteral("q3server");
    steward::testing::writeFile(script, QStringLiteral("#!/bin/sh\n"
                                                       "exec %1 +set com_basegame baseoa +set fs_basepath %2 "
                                                       "+set fs_homepath \"$PWD\" +set fs_game base "
                                                       "+set com_legacyprotocol 71 +set com_protocol 71 \"$@\" "
                                                       ">/dev/null 2>&1\n")
                                            .arg(kEngine, kGameData)
                                            .toLatin1());
    QFile::setPermissions(script, QFile::permissions(script) | QFileDevice::ExeOwner);
}

/// A LAN server on the port with a rotation of two OpenArena maps.
void serverProfile(ServerProfile& profile, quint16 port)
{
    profile.setValue(QStringLiteral("chkServerType"), 1, 1); // LAN: no master servers
    profile.setText(QStringLiteral("txtServerConfig"), 2, QStringLiteral("Steward Test Arena"));
    profile.setText(QStringLiteral("txtServerConfig"), 12, QString::number(port));
    profile.setText(QStringLiteral("txtServerConfig"), 14, QStringLiteral("secret"));
    profile.field(QStringLiteral("lsvMapRotation")).setRows({{QStringLiteral("oa_dm1")}, {QStringLiteral("oa_dm2")}});
    profile.setStartingMap(QStringLiteral("oa_dm1"));
}

/// A port of its own for each case, so that cases in parallel processes don't meet.
quint16 casePort(int slot)
{
    return static_cast<quint16>(27000 + slot * 1000 + QCoreApplication::applicationPid() % 900);
}

} // namespace

TEST(RealServer, RunsTheSessionFileAndTheCycleThatOkStarts)
{
    if (!serverInstalled())
        GTEST_SKIP() << "no Quake 3 engine dedicated server here (Debian's openarena-server)";

    steward::testing::TestApp t;
    DetachedProcessLauncher launcher;
    t.app->services.launcher = &launcher;
    installServerScript(t);
    const quint16 port = casePort(0);
    ServerProfile profile;
    serverProfile(profile, port);
    steward::testing::FakeWindowHost windows(*t.app);

    cmdOk_Click(*t.app, profile, windows);
    ASSERT_TRUE(t.prompts.shown.empty()) << t.prompts.texts().join(QLatin1Char('|')).toStdString();

    const QByteArray status = askStatus(port, 20);
    stopServer(t.baseFolder() + QStringLiteral("/ioq3_server.pid"));
    ASSERT_FALSE(status.isEmpty()) << "the server did not answer on port " << port;
    EXPECT_TRUE(status.contains("\\sv_hostname\\Steward Test Arena\\")) << status.toStdString();
    EXPECT_TRUE(status.contains("\\mapname\\oa_dm1\\")) << status.toStdString();
    EXPECT_TRUE(status.contains("\\.Configured By\\Arena Steward: JUNE 13 2002 beta 1.4\\")) << status.toStdString();
}

// The roster's Addbot lines reach the engine: OpenArena defines the bot "sarge", so two
// roster rows with that MODEL join under the names the rows give them.
TEST(RealServer, RosterBotsJoinUnderTheirNames)
{
    if (!serverInstalled())
        GTEST_SKIP() << "no Quake 3 engine dedicated server here (Debian's openarena-server)";

    steward::testing::TestApp t;
    DetachedProcessLauncher launcher;
    t.app->services.launcher = &launcher;
    installServerScript(t);
    const quint16 port = casePort(1);
    ServerProfile profile;
    serverProfile(profile, port);
    profile.setValue(QStringLiteral("chkBOTs"), 0, 1);
    profile.setValue(QStringLiteral("chkBOTs"), 5, 1);
    profile.field(QStringLiteral("grdBOTList"))
        .setRows({{QStringLiteral("NAME"), QStringLiteral("SKILL"), QStringLiteral("TEAM"), QStringLiteral("MODEL"),
                   QStringLiteral("PING")},
                  {QStringLiteral("Gnubee"), QStringLiteral("Hardcore"), QStringLiteral("RED"), QStringLiteral("sarge"),
                   QStringLiteral("25")},
                  {QStringLiteral("Big_Boss"), QStringLiteral("I Can Win"), QStringLiteral("BLUE"),
                   QStringLiteral("sarge"), QStringLiteral("0")}});
    steward::testing::FakeWindowHost windows(*t.app);

    cmdOk_Click(*t.app, profile, windows);
    ASSERT_TRUE(t.prompts.shown.empty()) << t.prompts.texts().join(QLatin1Char('|')).toStdString();
    ASSERT_TRUE(steward::testing::crlfLines(t.baseFolder() + QStringLiteral("/BOTFile.cfg"))
                    .contains(QStringLiteral("Addbot sarge 4 RED 25 Gnubee")));

    const QByteArray status = awaitPlayers(port, 2, 30);
    stopServer(t.baseFolder() + QStringLiteral("/ioq3_server.pid"));
    ASSERT_FALSE(status.isEmpty()) << "the server did not answer on port " << port;
    const QStringList names = playerNames(status);
    EXPECT_TRUE(names.contains(QStringLiteral("Gnubee"))) << status.toStdString();
    EXPECT_TRUE(names.contains(QStringLiteral("Big_Boss"))) << status.toStdString();
}

// Automatic bots: the engine fills the server with bots of its own choice up to
// bot_minplayers; it checks that number every ten seconds or so.
TEST(RealServer, AutomaticBotsFillTheServerUpToTheMinimum)
{
    if (!serverInstalled())
        GTEST_SKIP() << "no Quake 3 engine dedicated server here (Debian's openarena-server)";

    steward::testing::TestApp t;
    DetachedProcessLauncher launcher;
    t.app->services.launcher = &launcher;
    installServerScript(t);
    const quint16 port = casePort(2);
    ServerProfile profile;
    serverProfile(profile, port);
    profile.setValue(QStringLiteral("chkBOTs"), 0, 1);
    profile.setText(QStringLiteral("txtServerConfigSpin"), 6, QStringLiteral("3"));
    profile.field(QStringLiteral("cboBOT")).setText(QStringLiteral("Hardcore"));
    steward::testing::FakeWindowHost windows(*t.app);

    cmdOk_Click(*t.app, profile, windows);
    ASSERT_TRUE(t.prompts.shown.empty()) << t.prompts.texts().join(QLatin1Char('|')).toStdString();

    const QByteArray status = awaitPlayers(port, 3, 45);
    stopServer(t.baseFolder() + QStringLiteral("/ioq3_server.pid"));
    ASSERT_FALSE(status.isEmpty()) << "the server did not answer on port " << port;
    EXPECT_EQ(playerNames(status).size(), 3) << status.toStdString();
}
