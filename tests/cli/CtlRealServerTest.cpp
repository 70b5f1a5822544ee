// arena-stewardctl run as a service manager runs it, watching Debian's OpenArena server
// (a Quake 3 engine dedicated server): a crash brings the server back on its port with
// a new process and a crash log, the limit stops the watch and says why, and SIGTERM
// leaves no server behind.
#include "cli/CtlFixture.h"
#include "commands/WatchedStart.h"
#include "platform/ProcessIdentity.h"
#include "settings/ConfigurationFile.h"
#include "watch/ServerFolder.h"
#include "watch/WatchState.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QThread>
#include <QUdpSocket>

#include <csignal>

using namespace steward;
using namespace steward::testing;

namespace {

const QString kEngine = QStringLiteral("/usr/lib/ioquake3/ioq3ded");
const QString kGameData = QStringLiteral("/usr/lib/openarena-server");

bool haveServer() { return QFileInfo(kEngine).isExecutable() && QFileInfo(kGameData + QStringLiteral("/baseoa")).isDir(); }

/// The server's status answer on the port, or an empty text when none comes in time.
QByteArray askStatus(quint16 port, int ms)
{
    QUdpSocket socket;
    const QDeadlineTimer deadline(ms);
    while (!deadline.hasExpired()) {
        socket.writeDatagram(QByteArray("\xff\xff\xff\xffgetstatus"), QHostAddress::LocalHost, port);
        if (socket.waitForReadyRead(250)) {
            QByteArray answer(static_cast<int>(socket.pendingDatagramSize()), 0);
            socket.readDatagram(answer.data(), answer.size());
            return answer;
        }
    }
    return {};
}

class WatchedRealServer : public CtlFixture {
protected:
    void SetUp() override
    {
        if (!haveServer()) {
            if (qEnvironmentVariableIntValue("STEWARD_REQUIRE_REAL_SERVER") == 1)
                FAIL() << "no Quake 3 engine dedicated server here (Debian's openarena-server)";
            GTEST_SKIP() << "no Quake 3 engine dedicated server here (Debian's openarena-server)";
        }
        // The stand-in for the game's server: the engine on the game folder, its output
        // left to the watcher.
        t.app->serverExecutable = QStringLiteral("q3server");
        const QString script = t.gameFolder() + QStringLiteral("q3server");
        writeFile(script, QStringLiteral("#!/bin/sh\n"
                                         "exec %1 +set com_basegame baseoa +set fs_basepath %2 +set fs_homepath \"$PWD\" "
                                         "+set fs_game base +set com_legacyprotocol 71 +set com_protocol 71 \"$@\"\n")
                              .arg(kEngine, kGameData)
                              .toLatin1());
        QFile::setPermissions(script, QFile::permissions(script) | QFileDevice::ExeOwner);
        port = static_cast<quint16>(27000 + 7000 + QCoreApplication::applicationPid() % 900);
    }

    void TearDown() override
    {
        if (run.state() != QProcess::NotRunning) {
            run.kill();
            run.waitForFinished();
        }
        if (const auto state = readWatchState(folder().stateFile()))
            signalProcess(state->server, SIGKILL);
    }

    ServerFolder folder() const
    {
        return ServerFolder(t.root() + QStringLiteral("/data/ArenaSteward"), QStringLiteral("duel_arena"));
    }

    /// Saves a watched server's settings as a configuration and starts `run` on it.
    void startWatching(int limit)
    {
        ServerProfile profile;
        serverSettings(profile);
        profile.setValue(F::chkBOTs(0), 0);
        profile.setValue(F::chkUseINI, 0);
        profile.setText(F::txtServerConfig(12), QString::number(port));
        profile.field(F::lsvMapRotation).setRows({{QStringLiteral("oa_dm1")}, {QStringLiteral("oa_dm2")}});
        profile.setStartingMap(QStringLiteral("oa_dm1"));
        profile.setValue(F::chkRestartServer, 1);
        profile.setText(F::txtRestartLimit, QString::number(limit));
        config = t.root() + QStringLiteral("/watched.asc");
        writeConfigurationFile(config, profileSettings(*t.app, profile));

        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_DATA_HOME"), t.root() + QStringLiteral("/data"));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), t.root() + QStringLiteral("/config"));
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(QString::fromLatin1(name));
        run.setProcessEnvironment(environment);
        run.setProcessChannelMode(QProcess::MergedChannels);
        run.start(system.ownProgram, {QStringLiteral("run"), QStringLiteral("--config"), config,
                                      QStringLiteral("--restart-delay"), QStringLiteral("1")});
        ASSERT_TRUE(run.waitForStarted());
    }

    /// The recorded server once it runs with another process than before and answers.
    ProcessIdentity answeringServer(const ProcessIdentity& before, int ms)
    {
        const QDeadlineTimer deadline(ms);
        while (!deadline.hasExpired()) {
            const auto state = readWatchState(folder().stateFile());
            if (state && state->phase == WatchState::Phase::Running && !(state->server == before) &&
                stillRuns(state->server) && !askStatus(port, 250).isEmpty())
                return state->server;
            if (run.state() == QProcess::NotRunning)
                break;
            QThread::msleep(50);
        }
        return {};
    }

    QStringList crashLogs() const
    {
        return QDir(folder().path()).entryList({QStringLiteral("crash-*.log")}, QDir::Files, QDir::Name);
    }

    quint16 port = 0;
    QString config;
    QProcess run;
};

} // namespace

TEST_F(WatchedRealServer, ACrashedServerAnswersAgainAndSigtermLeavesNoServer)
{
    startWatching(5);
    const ProcessIdentity first = answeringServer({}, 30000);
    ASSERT_FALSE(first.isNull()) << run.readAll().toStdString();
    EXPECT_TRUE(askStatus(port, 2000).contains("\\mapname\\oa_dm1\\"));

    ASSERT_TRUE(signalProcess(first, SIGSEGV));
    QElapsedTimer back;
    back.start();
    const ProcessIdentity second = answeringServer(first, 15000);
    ASSERT_FALSE(second.isNull()) << "no answer within 15 s of the crash";
    EXPECT_LT(back.elapsed(), 15000);
    EXPECT_NE(second.pid, first.pid);
    EXPECT_TRUE(askStatus(port, 2000).contains("\\sv_hostname\\Steward Test Arena\\"));

    ASSERT_EQ(crashLogs().size(), 1);
    const QByteArray log = fileBytes(folder().path() + QLatin1Char('/') + crashLogs().first());
    EXPECT_TRUE(log.startsWith("The server crashed: ")) << log.toStdString();
    EXPECT_TRUE(log.contains("signal 11")) << log.toStdString();
    const auto state = readWatchState(folder().stateFile());
    EXPECT_EQ(state->restarts, 1);

    ::kill(static_cast<pid_t>(run.processId()), SIGTERM);
    EXPECT_TRUE(waitForEnd(second, 5000)) << "the server still runs 5 s after SIGTERM to run";
    ASSERT_TRUE(run.waitForFinished(5000));
    EXPECT_EQ(run.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(run.exitCode(), 0) << run.readAll().toStdString();
    EXPECT_EQ(readWatchState(folder().stateFile())->stoppedReason, QStringLiteral("Stopped"));
}

TEST_F(WatchedRealServer, TheCrashPastTheLimitLeavesItStoppedAndStatusSaysWhy)
{
    startWatching(2);
    ProcessIdentity server = answeringServer({}, 30000);
    ASSERT_FALSE(server.isNull()) << run.readAll().toStdString();
    for (int crash = 1; crash <= 2; ++crash) {
        ASSERT_TRUE(signalProcess(server, SIGSEGV));
        server = answeringServer(server, 15000);
        ASSERT_FALSE(server.isNull()) << "crash " << crash;
    }
    ASSERT_TRUE(signalProcess(server, SIGSEGV));
    ASSERT_TRUE(run.waitForFinished(10000));
    EXPECT_NE(run.exitCode(), 0);
    EXPECT_TRUE(waitForEnd(server, 5000));
    EXPECT_EQ(crashLogs().size(), 3);

    system.programFolder = t.root() + QStringLiteral("/data/ArenaSteward");
    EXPECT_EQ(ctl({QStringLiteral("status"), QStringLiteral("--config"), config}), 3) << err.toStdString();
    EXPECT_EQ(out, QStringLiteral("duel_arena.cfg: Stopped after 3 crashes in 10 minutes\n"));
}
