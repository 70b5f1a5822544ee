// arena-stewardctl run as a service manager runs it, watching Debian's OpenArena server.
#include "cli/CtlFixture.h"
#include "commands/WatchedStart.h"
#include "platform/ProcessIdentity.h"
#include "settings/ConfigurationFile.h"
#include "settings/MemorySettingsStore.h"
#include "settings/SaveSettings.h"
#include "settings/SettingsStore.h"
#include "watch/ServerFolder.h"
#include "watch/WatchState.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QThread>
#include <QUdpSocket>

#include <csignal>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

const QString kEngine = u"/usr/lib/ioquake3/ioq3ded"_s;
const QString kGameData = u"/usr/lib/openarena-server"_s;

bool haveServer() { return QFileInfo(kEngine).isExecutable() && QFileInfo(kGameData + u"/baseoa"_s).isDir(); }

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
        t.app->serverExecutable = u"q3server"_s;
        const QString script = t.gameFolder() + u"q3server"_s;
        writeFile(script,
                  QStringLiteral("#!/bin/sh\n"
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
        for (const QString& id : {u"duel_arena"_s, u"ffa"_s, u"duel"_s})
            if (const auto state = readWatchState(folder(id).stateFile()))
                signalProcess(state->server, SIGKILL);
    }

    /// The folder of a session's or a profile's server, where the child `run` keeps it.
    ServerFolder folder(const QString& id = u"duel_arena"_s) const
    {
        return ServerFolder(t.root() + u"/data/ArenaSteward"_s, id);
    }

    /// `run` with these options as a child, on the test's folders and without a display.
    static void watch(QProcess& process, const QString& program, const QStringList& options,
                      const QProcessEnvironment& environment)
    {
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, QStringList{u"run"_s} + options + QStringList{u"--restart-delay"_s, u"1"_s});
        ASSERT_TRUE(process.waitForStarted());
    }

    QProcessEnvironment childEnvironment() const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_DATA_HOME"_s, t.root() + u"/data"_s);
        environment.insert(u"XDG_CONFIG_HOME"_s, t.root() + u"/config"_s);
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(QString::fromLatin1(name));
        return environment;
    }

    /// Saves a watched server's settings as a configuration and starts `run` on it.
    void startWatching(int limit)
    {
        ServerProfile profile;
        serverSettings(profile);
        profile.setValue(F::chkBOTs(0), 0);
        profile.setValue(F::chkUseINI, 0);
        profile.setText(F::txtServerConfig(12), QString::number(port));
        profile.field(F::lsvMapRotation).setRows({{u"oa_dm1"_s}, {u"oa_dm2"_s}});
        profile.setStartingMap(u"oa_dm1"_s);
        profile.setValue(F::chkRestartServer, 1);
        profile.setText(F::txtRestartLimit, QString::number(limit));
        config = t.root() + u"/watched.asc"_s;
        writeConfigurationFile(config, profileSettings(*t.app, profile));
        watch(run, system.ownProgram, {u"--config"_s, config}, childEnvironment());
    }

    /// The server recorded in the folder once it runs with another process than before
    /// and answers on the port; none once its watcher has ended.
    static ProcessIdentity answering(const ServerFolder& folder, quint16 on, const ProcessIdentity& before, int ms,
                                     const QProcess& watcher)
    {
        const QDeadlineTimer deadline(ms);
        while (!deadline.hasExpired()) {
            const auto state = readWatchState(folder.stateFile());
            if (state && state->phase == WatchState::Phase::Running && !(state->server == before) &&
                stillRuns(state->server) && !askStatus(on, 250).isEmpty())
                return state->server;
            if (watcher.state() == QProcess::NotRunning)
                break;
            QThread::msleep(50);
        }
        return {};
    }
    ProcessIdentity answeringServer(const ProcessIdentity& before, int ms)
    {
        return answering(folder(), port, before, ms, run);
    }

    QStringList crashLogs() const
    {
        return QDir(folder().path()).entryList({u"crash-*.log"_s}, QDir::Files, QDir::Name);
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
    const QByteArray log = fileBytes(folder().path() + u'/' + crashLogs().first());
    EXPECT_TRUE(log.startsWith("The server crashed: ")) << log.toStdString();
    EXPECT_TRUE(log.contains("signal 11")) << log.toStdString();
    const auto state = readWatchState(folder().stateFile());
    EXPECT_EQ(state->restarts, 1);

    ::kill(static_cast<pid_t>(run.processId()), SIGTERM);
    EXPECT_TRUE(waitForEnd(second, 5000)) << "the server still runs 5 s after SIGTERM to run";
    ASSERT_TRUE(run.waitForFinished(5000));
    EXPECT_EQ(run.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(run.exitCode(), 0) << run.readAll().toStdString();
    EXPECT_EQ(readWatchState(folder().stateFile())->stoppedReason, u"Stopped"_s);
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

    system.programFolder = t.root() + u"/data/ArenaSteward"_s;
    EXPECT_EQ(ctl({u"status"_s, u"--config"_s, config}), 3) << err.toStdString();
    EXPECT_EQ(out, u"duel_arena.cfg: Stopped after 3 crashes in 10 minutes\n"_s);
}

namespace {

/// The settings of a watched profile with a saved cycle of two maps, as the window's
/// Defaults store them, in the profile's own settings file.
void saveProfile(TestApp& t, const QString& name, quint16 port, const QString& host, const QStringList& maps)
{
    const QString cycle = name + u"_cycle.cfg"_s;
    writeFile(t.baseFolder() + u'/' + cycle,
              QStringLiteral("set m1 \"map %1;set nextmap vstr m2\"\r\nset m2 \"map %2;set nextmap vstr m1\"\r\n"
                             "vstr m1\r\n//%1\r\n")
                  .arg(maps.at(0), maps.at(1))
                  .toLatin1());
    ServerProfile profile;
    profile.setValue(F::chkServerType(1), 1);
    profile.setText(F::txtServerConfig(1), name);
    profile.setText(F::txtServerConfig(2), host);
    profile.setText(F::txtServerConfig(12), QString::number(port));
    profile.setText(F::txtServerConfig(14), u"secret"_s);
    // The store gives an empty address box back as one blank, which the engine can't bind.
    profile.setText(F::txtServerConfig(16), u"127.0.0.1"_s);
    profile.setValue(F::chkSendMessage, 0);
    profile.setValue(F::chkUseINI, 1);
    profile.setText(F::txtServerINI, t.baseFolder() + u'/' + cycle);
    profile.setValue(F::chkRestartServer, 1);
    AppContext onFile = *t.app;
    IniSettingsStore store(t.root() + u"/config/ArenaSteward/profiles/"_s + name + u".conf"_s);
    onFile.services.store = &store;
    SaveMainSettings(onFile, profile);
    store.SaveSetting(u"PathToJedi"_s, t.gameFolder());
    store.SaveSetting(u"PathToServer"_s, t.app->serverExecutable);
}

/// What the server prints for an rcon command.
QByteArray rcon(quint16 port, const QByteArray& command)
{
    QUdpSocket socket;
    socket.writeDatagram("\xff\xff\xff\xffrcon secret " + command, QHostAddress::LocalHost, port);
    QByteArray answer;
    while (socket.waitForReadyRead(1000)) {
        QByteArray part(static_cast<int>(socket.pendingDatagramSize()), 0);
        socket.readDatagram(part.data(), part.size());
        answer += part;
    }
    return answer;
}

} // namespace

TEST_F(WatchedRealServer, TwoProfilesOnTwoPortsAndOneComesBackWithItsOwnRotation)
{
    const quint16 ffaPort = port;
    const quint16 duelPort = static_cast<quint16>(port + 1);
    saveProfile(t, u"ffa"_s, ffaPort, u"Profile FFA"_s, {u"oa_dm1"_s, u"oa_dm2"_s});
    saveProfile(t, u"duel"_s, duelPort, u"Profile Duel"_s, {u"oa_dm3"_s, u"oa_dm4"_s});

    QProcess duel;
    watch(run, system.ownProgram, {u"--profile"_s, u"ffa"_s}, childEnvironment());
    watch(duel, system.ownProgram, {u"--profile"_s, u"duel"_s}, childEnvironment());
    const ServerFolder ffaFolder = folder(u"ffa"_s);
    const ProcessIdentity ffaServer = answering(ffaFolder, ffaPort, {}, 30000, run);
    const ProcessIdentity duelServer = answering(folder(u"duel"_s), duelPort, {}, 30000, duel);
    if (ffaServer.isNull() || duelServer.isNull()) {
        ::kill(static_cast<pid_t>(run.processId()), SIGTERM);
        ::kill(static_cast<pid_t>(duel.processId()), SIGTERM);
        run.waitForFinished(5000);
        duel.waitForFinished(5000);
        FAIL() << "ffa: " << run.readAll().toStdString() << "\nduel: " << duel.readAll().toStdString()
               << "\nffa's log: " << fileBytes(ffaFolder.serverLog()).right(1500).toStdString();
    }
    EXPECT_TRUE(askStatus(ffaPort, 2000).contains("\\sv_hostname\\Profile FFA\\"));
    EXPECT_TRUE(askStatus(ffaPort, 2000).contains("\\mapname\\oa_dm1\\"));
    EXPECT_TRUE(askStatus(duelPort, 2000).contains("\\sv_hostname\\Profile Duel\\"));
    EXPECT_TRUE(askStatus(duelPort, 2000).contains("\\mapname\\oa_dm3\\"));

    ASSERT_TRUE(signalProcess(ffaServer, SIGSEGV));
    const ProcessIdentity back = answering(ffaFolder, ffaPort, ffaServer, 15000, run);
    ASSERT_FALSE(back.isNull()) << "the ffa profile's server did not come back";
    EXPECT_TRUE(askStatus(ffaPort, 2000).contains("\\sv_hostname\\Profile FFA\\"));
    EXPECT_TRUE(rcon(ffaPort, "nextmap").contains("vstr m2")) << rcon(ffaPort, "nextmap").toStdString();
    EXPECT_TRUE(rcon(ffaPort, "m2").contains("map oa_dm2")) << rcon(ffaPort, "m2").toStdString();
    EXPECT_TRUE(stillRuns(duelServer)) << "the other profile's server keeps running";
    EXPECT_TRUE(rcon(duelPort, "m2").contains("map oa_dm4"));

    // Listed one line a profile.
    system.settingsFile = t.root() + u"/config/ArenaSteward/ArenaSteward.conf"_s;
    system.programFolder = t.root() + u"/data/ArenaSteward"_s;
    writeFile(system.settingsFile, "[_Steward]\n");
    EXPECT_EQ(ctl({u"status"_s}), 0) << err.toStdString();
    EXPECT_TRUE(out.contains(
        QRegularExpression(u"^duel +%1 +Running since "_s.arg(duelPort), QRegularExpression::MultilineOption)))
        << out.toStdString();
    EXPECT_TRUE(out.contains(QRegularExpression(u"^ffa +%1 +Running since .* 1 restart"_s.arg(ffaPort),
                                                QRegularExpression::MultilineOption)))
        << out.toStdString();

    ::kill(static_cast<pid_t>(duel.processId()), SIGTERM);
    EXPECT_TRUE(duel.waitForFinished(10000));
    EXPECT_TRUE(waitForEnd(duelServer, 5000));
}
