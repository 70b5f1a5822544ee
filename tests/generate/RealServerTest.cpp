// A real Quake 3 engine dedicated server runs what OK writes and starts. It needs the
// OpenArena server from Debian (openarena-server) and is skipped where it is missing.
// A small start script stands in for the game's server and points the engine at the
// game folder, so that the session file and the map cycle in "base" are the ones it
// executes; the tests then ask the running server for its status over UDP and read
// its console output.
#include "generate/OkCommand.h"
#include "messaging/ServerMessaging.h"
#include "platform/System.h"
#include "platform/UdpSocket.h"
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

/// The start script that stands in for the game's server; the engine's console output
/// goes to output.
void writeServerScript(steward::testing::TestApp& t, const QString& output)
{
    t.app->serverExecutable = QStringLiteral("q3server");
    const QString script = t.gameFolder() + QStringLiteral("q3server");
    steward::testing::writeFile(script, QStringLiteral("#!/bin/sh\n"
                                                       "exec %1 +set com_basegame baseoa +set fs_basepath %2 "
                                                       "+set fs_homepath \"$PWD\" +set fs_game base "
                                                       "+set com_legacyprotocol 71 +set com_protocol 71 \"$@\" "
                                                       ">'%3' 2>&1\n")
                                            .arg(kEngine, kGameData, output)
                                            .toLatin1());
    QFile::setPermissions(script, QFile::permissions(script) | QFileDevice::ExeOwner);
}

bool haveRealServer()
{
    return QFileInfo(kEngine).isExecutable() && QFileInfo(kGameData + QStringLiteral("/baseoa")).isDir();
}

/// A LAN server on a port of its own with the password "secret" and two maps.
void setUpLanServer(ServerProfile& profile, quint16 port)
{
    profile.setValue(QStringLiteral("chkServerType"), 1, 1); // LAN: no master servers
    profile.setText(QStringLiteral("txtServerConfig"), 2, QStringLiteral("Steward Test Arena"));
    profile.setText(QStringLiteral("txtServerConfig"), 12, QString::number(port));
    profile.setText(QStringLiteral("txtServerConfig"), 14, QStringLiteral("secret"));
    profile.field(QStringLiteral("lsvMapRotation")).setRows({{QStringLiteral("oa_dm1")}, {QStringLiteral("oa_dm2")}});
    profile.setStartingMap(QStringLiteral("oa_dm1"));
}

/// Whether the file comes to hold the text within the time.
bool fileComesToHold(const QString& path, const QByteArray& text, int seconds)
{
    const QDeadlineTimer deadline(seconds * 1000);
    while (!deadline.hasExpired()) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly) && file.readAll().contains(text))
            return true;
        QThread::msleep(100);
    }
    return false;
}

} // namespace

TEST(RealServer, RunsTheSessionFileAndTheCycleThatOkStarts)
{
    if (!haveRealServer())
        GTEST_SKIP() << "no Quake 3 engine dedicated server here (Debian's openarena-server)";

    steward::testing::TestApp t;
    DetachedProcessLauncher launcher;
    t.app->services.launcher = &launcher;
    writeServerScript(t, QStringLiteral("/dev/null"));

    const quint16 port = static_cast<quint16>(27000 + QCoreApplication::applicationPid() % 900);
    ServerProfile profile;
    setUpLanServer(profile, port);
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

TEST(RealServer, TheTimedMessagesReachItsRemoteConsole)
{
    if (!haveRealServer())
        GTEST_SKIP() << "no Quake 3 engine dedicated server here (Debian's openarena-server)";

    steward::testing::TestApp t;
    DetachedProcessLauncher launcher;
    t.app->services.launcher = &launcher;
    ThreadSleepWait realWait;
    t.app->services.blockingWait = &realWait;
    // No address: the messages go to the computer's own name.
    t.names.computer = QStringLiteral("localhost");
    const QString console = t.root() + QStringLiteral("/console.log");
    writeServerScript(t, console);

    const quint16 port = static_cast<quint16>(27900 + QCoreApplication::applicationPid() % 900 + 1);
    ServerProfile profile;
    setUpLanServer(profile, port);
    profile.setValue(QStringLiteral("chkSendMessage"), 1);
    profile.setText(QStringLiteral("txtMsgTimer"), QStringLiteral("1"));
    profile.setText(QStringLiteral("txtMsg"), 0, QStringLiteral("^2This Server was configured by ^1Arena Steward"));
    profile.setText(QStringLiteral("txtMsg"), 1, QStringLiteral("^3second line"));
    steward::testing::FakeWindowHost windows(*t.app);

    cmdOk_Click(*t.app, profile, windows);
    ASSERT_TRUE(t.prompts.shown.empty()) << t.prompts.texts().join(QLatin1Char('|')).toStdString();
    const bool up = !askStatus(port, 20).isEmpty();
    ServerMessaging* messaging = ServerMessaging::find(profile);
    if (up && messaging)
        messaging->tmrServerMessage_Timer();
    const bool first =
        up && fileComesToHold(console, "Rcon from 127.0.0.1: say ^2This Server was configured by ^1Arena Steward\n", 10);
    const bool second = up && fileComesToHold(console, "Rcon from 127.0.0.1: say ^3second line\n", 10);
    stopServer(t.baseFolder() + QStringLiteral("/ioq3_server.pid"));
    ASSERT_TRUE(up) << "the server did not answer on port " << port;
    ASSERT_NE(messaging, nullptr);
    EXPECT_TRUE(first) << steward::testing::fileBytes(console).toStdString();
    EXPECT_TRUE(second) << steward::testing::fileBytes(console).toStdString();
}
