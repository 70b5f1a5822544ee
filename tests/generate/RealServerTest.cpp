// A real Quake 3 engine dedicated server runs what OK writes and starts. It needs the
// OpenArena server from Debian (openarena-server) and is skipped where it is missing.
// A small start script stands in for the game's server and points the engine at the
// game folder, so that the session file and the map cycle in "base" are the ones it
// executes; the test then asks the running server for its status over UDP.
#include "commands/OkCommand.h"
#include "platform/System.h"
#include "model/ServerProfile.h"
#include "messaging/ServerMessaging.h"
#include "platform/UdpSocket.h"
#include "testkit/FakeWindows.h"
#include "testkit/TestApp.h"
#include "wizard/MapWizard.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <QUdpSocket>
#include <gtest/gtest.h>

#include <csignal>
#include <functional>

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

/// Sends a remote console command to the server on the port; its printed answer, if any.
QByteArray rcon(quint16 port, const QByteArray& password, const QByteArray& command)
{
    QUdpSocket socket;
    socket.writeDatagram(QByteArray("\xff\xff\xff\xffrcon ") + password + ' ' + command, QHostAddress::LocalHost, port);
    QByteArray answer;
    while (socket.waitForReadyRead(1500)) {
        QByteArray part(static_cast<int>(socket.pendingDatagramSize()), 0);
        socket.readDatagram(part.data(), part.size());
        answer += part;
    }
    return answer;
}

/// Asks the server until its status passes the test or the time is up; the last answer.
QByteArray awaitStatus(quint16 port, int seconds, const std::function<bool(const QByteArray&)>& done)
{
    const QDeadlineTimer deadline(seconds * 1000);
    QByteArray status;
    while (!deadline.hasExpired()) {
        status = askStatus(port, 2);
        if (done(status))
            break;
        QThread::msleep(300);
    }
    return status;
}

/// The status of the server once its map is the one named, or the last status seen.
QByteArray awaitMap(quint16 port, const QByteArray& map, int seconds)
{
    return awaitStatus(port, seconds, [&](const QByteArray& s) { return s.contains("\\mapname\\" + map + "\\"); });
}

/// Stops the server of the pid file once: the file goes with it.
void stopServer(const QString& pidFile)
{
    QFile file(pidFile);
    if (file.open(QIODevice::ReadOnly)) {
        const int pid = QString::fromLatin1(file.readAll()).trimmed().toInt();
        if (pid > 0)
            ::kill(pid, SIGTERM);
        file.close();
        file.remove();
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

/// The status once it holds at least count players, or the last status seen.
QByteArray awaitPlayers(quint16 port, int count, int seconds)
{
    return awaitStatus(port, seconds, [&](const QByteArray& s) { return playerNames(s).size() >= count; });
}

bool haveServer()
{
    return QFileInfo(kEngine).isExecutable() && QFileInfo(kGameData + QStringLiteral("/baseoa")).isDir();
}

// Skips a test without a Quake 3 engine dedicated server here. CI sets
// STEWARD_REQUIRE_REAL_SERVER=1: there a missing server is a failure.
#define STEWARD_NEED_REAL_SERVER()                                                                                     \
    if (!haveServer()) {                                                                                               \
        if (qEnvironmentVariableIntValue("STEWARD_REQUIRE_REAL_SERVER") == 1)                                          \
            FAIL() << "no Quake 3 engine dedicated server here, and STEWARD_REQUIRE_REAL_SERVER=1 asks for it "        \
                      "(install Debian's openarena-server, or run with STEWARD_REAL_SERVER=1)";                        \
        GTEST_SKIP() << "no Quake 3 engine dedicated server here (Debian's openarena-server)";                         \
    }

/// The start script in the game folder that stands in for the game's server.
/// Its console output goes to output.
void standInServer(steward::testing::TestApp& t, DetachedProcessLauncher& launcher,
                   const QString& output = QStringLiteral("/dev/null"))
{
    t.app->services.launcher = &launcher;
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

/// A LAN server on the port with a host name and a remote console password.
void serverSettings(ServerProfile& profile, quint16 port)
{
    profile.setValue(F::chkServerType(1), 1); // LAN: no master servers
    profile.setText(F::txtServerConfig(2), QStringLiteral("Steward Test Arena"));
    profile.setText(F::txtServerConfig(12), QString::number(port));
    profile.setText(F::txtServerConfig(14), QStringLiteral("secret"));
}

/// The same with a rotation of two OpenArena maps.
void serverProfile(ServerProfile& profile, quint16 port)
{
    serverSettings(profile, port);
    profile.field(F::lsvMapRotation).setRows({{QStringLiteral("oa_dm1")}, {QStringLiteral("oa_dm2")}});
    profile.setStartingMap(QStringLiteral("oa_dm1"));
}

/// A port of its own for each case, so that cases in parallel processes don't meet.
quint16 casePort(int slot)
{
    return static_cast<quint16>(27000 + slot * 1000 + QCoreApplication::applicationPid() % 900);
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

/// Each case: a program context, the launcher that really starts the stand-in server,
/// and the server stopped at the end, also when the case failed half-way.
class RealServer : public ::testing::Test {
protected:
    void SetUp() override { STEWARD_NEED_REAL_SERVER(); }
    void TearDown() override { stopServer(t.baseFolder() + QStringLiteral("/ioq3_server.pid")); }
    void startWith(const QString& output = QStringLiteral("/dev/null")) { standInServer(t, launcher, output); }

    steward::testing::TestApp t;
    DetachedProcessLauncher launcher;
};

} // namespace

TEST_F(RealServer, RunsTheSessionFileAndTheCycleThatOkStarts)
{
    startWith();
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

TEST_F(RealServer, RunsTheWizardsCycleWithTheSecondMapsOwnSettings)
{
    startWith();

    const quint16 port = casePort(3);
    ServerProfile profile;
    serverSettings(profile, port);
    profile.field(F::lsvMapRotation).setRows({{QStringLiteral("oa_dm1")}, {QStringLiteral("oa_dm2")}});

    // The wizard: oa_dm1 is the starting map and left out, oa_dm2 gets its own gravity
    // and time limit.
    steward::testing::QuietWizardWindows windows;
    MapWizard wizard(*t.app, windows);
    wizard.ID_MapWizard(profile);
    wizard.fields().field(QStringLiteral("grdMapList")).setCurrent(0);
    wizard.runPopupTool(QStringLiteral("ID_SetStartingMap"));
    wizard.grdMapList_Click(1);
    wizard.cmdNext_Click(1);
    wizard.cmdNext_Click(2);
    wizard.fields().field(F::txtSpeed(1)).setText(QStringLiteral("300"));
    wizard.fields().field(F::txtGameLimits(1)).setText(QStringLiteral("15"));
    t.prompts.chooseFile(t.baseFolder() + QStringLiteral("/wizard.cfg"));
    wizard.cmdFinish_Click();
    ASSERT_TRUE(profile.isSet(F::chkUseINI));
    const int boxes = static_cast<int>(t.prompts.shown.size()); // the starting map and "File has been Saved"

    steward::testing::FakeWindowHost host(*t.app);
    cmdOk_Click(*t.app, profile, host);
    ASSERT_EQ(static_cast<int>(t.prompts.shown.size()), boxes)
        << t.prompts.texts().join(QLatin1Char('|')).toStdString();

    const QByteArray first = awaitMap(port, "oa_dm1", 20);
    QByteArray second;
    QByteArray gravity;
    if (first.contains("\\mapname\\oa_dm1\\")) {
        rcon(port, "secret", "vstr nextmap");
        second = awaitMap(port, "oa_dm2", 20);
        gravity = rcon(port, "secret", "g_gravity");
    }
    stopServer(t.baseFolder() + QStringLiteral("/ioq3_server.pid"));
    ASSERT_TRUE(first.contains("\\mapname\\oa_dm1\\")) << first.toStdString();
    EXPECT_TRUE(second.contains("\\mapname\\oa_dm2\\")) << second.toStdString();
    EXPECT_TRUE(second.contains("\\timelimit\\15\\")) << second.toStdString();
    // The game keeps g_gravity out of its server info, so the console is asked for it.
    EXPECT_TRUE(second.contains("\\g_gravity\\300\\") || gravity.contains("\"g_gravity\" is:\"300"))
        << second.toStdString() << "\n"
        << gravity.toStdString();
}

// The roster's Addbot lines reach the engine: OpenArena defines the bot "sarge", so two
// roster rows with that MODEL join under the names the rows give them.
TEST_F(RealServer, RosterBotsJoinUnderTheirNames)
{
    startWith();
    const quint16 port = casePort(1);
    ServerProfile profile;
    serverProfile(profile, port);
    profile.setValue(F::chkBOTs(0), 1);
    profile.setValue(F::chkBOTs(5), 1);
    profile.field(F::grdBOTList)
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
TEST_F(RealServer, AutomaticBotsFillTheServerUpToTheMinimum)
{
    startWith();
    const quint16 port = casePort(2);
    ServerProfile profile;
    serverProfile(profile, port);
    profile.setValue(F::chkBOTs(0), 1);
    profile.setText(F::txtServerConfigSpin(6), QStringLiteral("3"));
    profile.field(F::cboBOT).setText(QStringLiteral("Hardcore"));
    steward::testing::FakeWindowHost windows(*t.app);

    cmdOk_Click(*t.app, profile, windows);
    ASSERT_TRUE(t.prompts.shown.empty()) << t.prompts.texts().join(QLatin1Char('|')).toStdString();

    const QByteArray status = awaitPlayers(port, 3, 45);
    stopServer(t.baseFolder() + QStringLiteral("/ioq3_server.pid"));
    ASSERT_FALSE(status.isEmpty()) << "the server did not answer on port " << port;
    EXPECT_EQ(playerNames(status).size(), 3) << status.toStdString();
}

TEST_F(RealServer, TheTimedMessagesReachItsRemoteConsole)
{
    ThreadSleepWait realWait;
    t.app->services.blockingWait = &realWait;
    // No address: the messages go to the computer's own name.
    t.names.computer = QStringLiteral("localhost");
    const QString console = t.root() + QStringLiteral("/console.log");
    startWith(console);

    const quint16 port = casePort(4);
    ServerProfile profile;
    serverProfile(profile, port);
    profile.setValue(F::chkSendMessage, 1);
    profile.setText(F::txtMsgTimer, QStringLiteral("1"));
    profile.setText(F::txtMsg(0), QStringLiteral("^2This Server was configured by ^1Arena Steward"));
    profile.setText(F::txtMsg(1), QStringLiteral("^3second line"));
    steward::testing::FakeWindowHost windows(*t.app);

    cmdOk_Click(*t.app, profile, windows);
    ASSERT_TRUE(t.prompts.shown.empty()) << t.prompts.texts().join(QLatin1Char('|')).toStdString();
    const bool up = !askStatus(port, 20).isEmpty();
    ServerMessaging* messaging = ServerMessaging::find(profile);
    if (up && messaging)
        messaging->tmrServerMessage_Timer();
    const bool first =
        up &&
        fileComesToHold(console, "Rcon from 127.0.0.1: say ^2This Server was configured by ^1Arena Steward\n", 10);
    const bool second = up && fileComesToHold(console, "Rcon from 127.0.0.1: say ^3second line\n", 10);
    stopServer(t.baseFolder() + QStringLiteral("/ioq3_server.pid"));
    ASSERT_TRUE(up) << "the server did not answer on port " << port;
    ASSERT_NE(messaging, nullptr);
    EXPECT_TRUE(first) << steward::testing::fileBytes(console).toStdString();
    EXPECT_TRUE(second) << steward::testing::fileBytes(console).toStdString();
}
