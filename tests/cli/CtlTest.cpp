// arena-stewardctl: run in this process on a test's folders and fakes (a real settings file, a game
// folder with a base folder and an executable, a fixed clock, a launcher that records), it writes and
// starts what the window's OK does and nothing after a refusal; run as a child, as a service manager
// runs it, it watches Debian's OpenArena server.
#include "bots/BotRoster.h"
#include "cli/Ctl.h"
#include "cli/CtlSystem.h"
#include "commands/MainFormLoad.h"
#include "commands/OkCommand.h"
#include "commands/ProfileLoad.h"
#include "commands/WatchedStart.h"
#include "model/ServerProfile.h"
#include "platform/ProcessIdentity.h"
#include "settings/ConfigurationFile.h"
#include "settings/SaveSettings.h"
#include "settings/SettingsStore.h"
#include "testkit/FakeWindows.h"
#include "testkit/RealServer.h"
#include "testkit/TestApp.h"
#include "watch/ServerFolder.h"
#include "watch/WatchState.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QTextStream>
#include <QThread>
#include <QUdpSocket>
#include <functional>
#include <gtest/gtest.h>

#include <csignal>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

using Settings = std::function<void(ServerProfile&)>;

class CtlFixture : public ::testing::Test {
protected:
    CtlFixture()
    {
        system.clock = &t.clock;
        system.launcher = &t.launcher;
        system.names = &t.names;
        system.sockets = &t.sockets;
        system.blockingWait = &t.blockingWait;
        system.programFolder = t.programFolder();
        system.settingsFile = t.storeFile();
        system.unitFolder = t.root() + u"/units"_s;
        system.ownProgram = QStringLiteral(STEWARD_CTL_PROGRAM);
        system.out = &m_out;
        system.err = &m_err;
        t.app->watcherProgram = system.ownProgram;
        const QString executable = t.gameFolder() + t.app->serverExecutable;
        writeFile(executable, "#!/bin/sh\n");
        QFile::setPermissions(executable, QFile::permissions(executable) | QFileDevice::ExeOwner);
    }
    /// Runs arena-stewardctl with these arguments; its output lands in out and err.
    int ctl(const QStringList& arguments)
    {
        out.clear();
        err.clear();
        const int code = runCtl(QStringList{u"arena-stewardctl"_s} + arguments, system);
        m_out.flush();
        m_err.flush();
        return code;
    }
    /// A LAN server on port 28070 with a rotation of two maps, a saved cycle that starts on the
    /// first, a host name and a bot.
    void serverSettings(ServerProfile& profile)
    {
        profile.setValue(F::chkServerType(1), 1);
        profile.setText(F::txtServerConfig(1), u"Duel Arena"_s);
        profile.setText(F::txtServerConfig(2), u"Steward Test Arena"_s);
        profile.setText(F::txtServerConfig(12), u"28070"_s);
        profile.setText(F::txtServerConfig(14), u"secret"_s);
        profile.field(F::lsvMapRotation).setRows({{u"ffa_bespin"_s}, {u"ffa_deathstar"_s}});
        profile.setStartingMap(u"ffa_bespin"_s);
        // A saved cycle names its own starting map, which the settings file keeps.
        writeFile(savedCycle(), "set m1 \"map ffa_bespin\"\r\nvstr m1\r\n//ffa_bespin\r\n");
        profile.setValue(F::chkUseINI, 1);
        profile.setText(F::txtServerINI, savedCycle());
        profile.setValue(F::chkBOTs(0), 1);
        profile.setValue(F::chkBOTs(5), 1);
        appendRosterBot(profile, {u"Kyle"_s, u"Hardcore"_s, u"RED"_s, u"kyle"_s, u"50"_s});
    }
    /// serverSettings, changed by more, saved as the window's Defaults save them, with the game's
    /// folder and executable.
    void saveSettings(const Settings& more = {})
    {
        ServerProfile profile;
        serverSettings(profile);
        if (more)
            more(profile);
        SaveMainSettings(*t.app, profile);
        saveLastBots(*t.app, profile);
        t.store->SaveSetting(u"PathToJedi"_s, t.gameFolder());
        t.store->SaveSetting(u"PathToServer"_s, t.app->serverExecutable);
        t.store->SaveSetting(u"RunOnce"_s, u"1"_s);
    }
    /// Every file of the base folder with its bytes.
    QMap<QString, QByteArray> baseFiles() const
    {
        QMap<QString, QByteArray> files;
        const QDir base(t.baseFolder());
        for (const QString& name : base.entryList(QDir::Files | QDir::Hidden))
            files.insert(name, fileBytes(base.filePath(name)));
        return files;
    }
    void clearBase()
    {
        QDir(t.baseFolder()).removeRecursively();
        QDir().mkpath(t.baseFolder());
    }
    QString savedCycle() const { return t.root() + u"/saved.cfg"_s; }
    ServerFolder folder(const QString& id = u"duel_arena"_s) const { return ServerFolder(system.programFolder, id); }
    /// The user's road in the window: the settings were saved as the defaults; the window opens on
    /// them, the starting map is set again (the window never keeps it), then OK.
    void okInTheWindow(const Settings& more = {})
    {
        saveSettings(more);
        ServerProfile profile;
        attachProfileRules(*t.app, profile);
        FakeFormLoadHost form;
        MainFormLoad(*t.app, profile, form);
        if (!profile.isSet(F::chkUseINI))
            profile.setStartingMap(u"ffa_bespin"_s); // as ID_SetStartingMap sets it
        FakeWindowHost windows(*t.app);
        cmdOk_Click(*t.app, profile, windows);
        ASSERT_TRUE(t.prompts.shown.empty()) << t.prompts.texts().join(u'|').toStdString();
    }
    TestApp t;
    QString out;
    QString err;
    CtlSystem system;

private:
    QTextStream m_out{&out};
    QTextStream m_err{&err};
};

using CtlStart = CtlFixture;

} // namespace

TEST_F(CtlStart, WritesWhatOkWritesAndStartsWhatOkStarts)
{
    okInTheWindow();
    ASSERT_EQ(t.launcher.started.size(), 1u);
    const LaunchRequest byWindow = t.launcher.started.front();
    const auto windowFiles = baseFiles();
    ASSERT_TRUE(windowFiles.contains(u"duel_arena.cfg"_s));
    ASSERT_TRUE(windowFiles.contains(u"BOTFile.cfg"_s));
    clearBase();
    ASSERT_EQ(ctl({u"start"_s}), 0) << err.toStdString();
    ASSERT_EQ(t.launcher.started.size(), 2u);
    const LaunchRequest byCtl = t.launcher.started.back();
    EXPECT_EQ(byCtl.program, byWindow.program);
    EXPECT_EQ(byCtl.arguments, byWindow.arguments);
    EXPECT_EQ(byCtl.workingFolder, byWindow.workingFolder);
    EXPECT_EQ(baseFiles(), windowFiles);
    EXPECT_TRUE(err.isEmpty()) << err.toStdString();
}

TEST_F(CtlStart, AWatchedOkStartsTheWatcherOnWhatItStarted)
{
    okInTheWindow([](ServerProfile& settings) {
        settings.setValue(F::chkRestartServer, 1);
        settings.setText(F::txtRestartLimit, u"3"_s);
        settings.setValue(F::chkSendMessage, 1);
    });
    const auto windowFiles = baseFiles();
    ASSERT_EQ(t.launcher.started.size(), 1u);
    const LaunchRequest watcher = t.launcher.started.front();
    EXPECT_EQ(watcher.program, system.ownProgram);
    EXPECT_EQ(watcher.arguments, (QStringList{u"run"_s, u"--config"_s, folder().startedConfiguration(), u"--roster"_s,
                                              folder().startedRoster(), u"--no-messages"_s}));
    // The settings it started with hold passwords.
    EXPECT_EQ(QFileInfo(folder().startedConfiguration()).permissions() & 0x0077, 0);
    const auto started = readConfigurationFile(folder().startedConfiguration());
    EXPECT_TRUE(started.contains({u"RestartLimit"_s, u"3"_s}));
    EXPECT_TRUE(started.contains({u"PathToJedi"_s, t.gameFolder()}));
    // What the watcher runs from that file is what OK wrote: the same files.
    QFile::remove(t.storeFile());
    QFile::remove(t.programFolder() + u"/lastbots.csv"_s);
    clearBase();
    ASSERT_EQ(ctl({u"start"_s, u"--config"_s, watcher.arguments.at(2), u"--roster"_s, watcher.arguments.at(4)}), 0)
        << err.toStdString();
    EXPECT_EQ(baseFiles(), windowFiles);
    // Here the watcher started by start sends the messages itself.
    EXPECT_FALSE(t.launcher.started.back().arguments.contains(u"--no-messages"_s));
}

TEST_F(CtlStart, TheWindowsSettingsAloneHoldNoStartingMapAndSaySoWithTheWayOut)
{
    // The window keeps the starting map only while it runs: its settings alone are refused as OK
    // refuses them after a restart of the window.
    const auto rotationAlone = [](ServerProfile& settings) { settings.setValue(F::chkUseINI, 0); };
    saveSettings(rotationAlone);
    EXPECT_EQ(ctl({u"start"_s}), 2);
    EXPECT_EQ(err, u"No Starting map has been selected\n"_s);
    // After a start from the window its settings are at hand.
    okInTheWindow(rotationAlone);
    clearBase();
    EXPECT_EQ(ctl({u"start"_s}), 2);
    EXPECT_TRUE(err.endsWith(
        u"are in %1: give them with --config to start that again\n"_s.arg(folder().startedConfiguration())))
        << err.toStdString();
    EXPECT_EQ(ctl({u"start"_s, u"--config"_s, folder().startedConfiguration()}), 0) << err.toStdString();
}

TEST_F(CtlStart, ARefusalSaysWhyAndWritesNothing)
{
    // OK's own refusals are its tests'; here one of them shows that start and run go through them.
    const QString start = u"start"_s, profile = u"--profile"_s, config = u"--config"_s, run = u"run"_s;
    const Settings badWindow = [](ServerProfile& p) {
        p.setValue(F::chkRestartServer, 1);
        p.setText(F::txtRestartWindow, u"ten"_s);
    };
    const auto unparsable = [&] { writeFile(t.root() + u"/bad.asc"_s, "MsgOn,1\r\nLone"); };
    const auto noExecutable = [&] { t.store->SaveSetting(u"PathToServer"_s, u"gone"_s); };
    // /proc/self takes no new file from anyone, root included.
    const auto unwritable = [&] {
        QDir(t.baseFolder()).removeRecursively();
        QFile::link(u"/proc/self"_s, t.baseFolder());
    };
    const auto noStore = [&] { QFile::remove(t.storeFile()); };
    std::optional<QLockFile> held; // another watcher's lock on the session
    const auto watched = [&] {
        folder().make();
        held.emplace(folder().lockFile());
        held->tryLock(0);
    };
    const struct {
        const char* name;
        QStringList arguments;
        int exitCode;
        const char* says;
        Settings settings = {};
        std::function<void()> place = {};
    } cases[] = {
        {"unknown option", {u"--bogus"_s, start}, 64, "Unknown option 'bogus'"},
        {"unknown command", {u"begin"_s}, 64, "Unknown command: begin"},
        {"no command", {}, 64, "No command given."},
        {"two commands", {start, u"stop"_s}, 64, "One command at a time"},
        {"bad delay", {run, u"--restart-delay"_s, u"soon"_s}, 64, "--restart-delay"},
        {"bad profile name", {start, profile, u"../x"_s}, 64, "A profile name is 1 to 32 letters, digits, - and _"},
        {"missing profile", {start, profile, u"ctf"_s}, 2, "There is no profile named ctf"},
        {"missing settings file", {start}, 2, "No settings in", {}, noStore},
        {"missing configuration", {start, config, u"/nowhere/x.asc"_s}, 2, "Could not find /nowhere/x.asc"},
        {"bad configuration", {start, config, u"@/bad.asc"_s}, 2, "ends in the middle of a setting", {}, unparsable},
        {"missing executable", {start}, 2, "Could not find the server executable", {}, noExecutable},
        {"unwritable base folder", {start}, 2, "can't be written", {}, unwritable},
        {"bad window", {run}, 2, "window must be a whole number of minutes from 1 to 1440", badWindow},
        {"a second watcher", {run}, 2, "The server of duel_arena.cfg is already watched by process", {}, watched},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        QFile::remove(t.baseFolder());
        clearBase();
        saveSettings(c.settings);
        if (c.place)
            c.place();
        QStringList arguments = c.arguments;
        arguments.replaceInStrings(u"@"_s, t.root());
        EXPECT_EQ(ctl(arguments), c.exitCode);
        EXPECT_TRUE(err.contains(QString::fromUtf8(c.says))) << err.toStdString();
        EXPECT_TRUE(out.isEmpty()) << out.toStdString();
        EXPECT_TRUE(t.launcher.started.empty());
        if (QFileInfo(t.baseFolder()).isSymLink())
            QFile::remove(t.baseFolder());
        else
            EXPECT_TRUE(baseFiles().isEmpty()) << QStringList(baseFiles().keys()).join(u' ').toStdString();
    }
}

namespace {

/// status and stop on a recorded server: a real process stands in for it.
class CtlState : public CtlFixture {
protected:
    void SetUp() override
    {
        saveSettings();
        folder().make();
    }
    void TearDown() override
    {
        sleeper.kill();
        sleeper.waitForFinished();
    }
    ProcessIdentity startSleeper()
    {
        sleeper.start(u"sleep"_s, {u"30"_s});
        sleeper.waitForStarted();
        return identifyProcess(sleeper.processId());
    }
    void record(const ProcessIdentity& server, quint16 port = 28070)
    {
        WatchState state;
        state.session = u"duel_arena.cfg"_s;
        state.host = u"127.0.0.1"_s;
        state.port = port;
        state.server = server;
        state.phase = WatchState::Phase::Running;
        state.since = t.clock.now();
        ASSERT_TRUE(writeWatchState(folder().stateFile(), state));
    }
    QJsonObject json() const { return QJsonDocument::fromJson(out.toUtf8()).object(); }
    QProcess sleeper;
};

/// systemd-analyze's word on a unit file: empty when it accepts it.
QByteArray systemdSays(const QString& unit)
{
    QProcess verify;
    verify.setProcessChannelMode(QProcess::MergedChannels);
    verify.start(u"systemd-analyze"_s, {u"verify"_s, unit});
    if (!verify.waitForFinished(30000))
        return "systemd-analyze (Debian's systemd) is needed";
    return verify.exitCode() == 0 ? verify.readAll() : "exit code " + QByteArray::number(verify.exitCode());
}

} // namespace

TEST_F(CtlState, AStalePidIsLeftAlone)
{
    const ProcessIdentity live = startSleeper();
    // The recorded process began at another moment: the pid now belongs to another one.
    record({live.pid, live.startTicks + 7});
    for (const QString& command : {u"status"_s, u"stop"_s}) {
        EXPECT_EQ(ctl({command}), 3) << command.toStdString();
        EXPECT_TRUE(out.contains(u"Not running"_s)) << out.toStdString();
    }
    EXPECT_TRUE(stillRuns(live));
    EXPECT_EQ(ctl({u"status"_s, u"--json"_s}), 3);
    EXPECT_FALSE(json().value(u"running"_s).toBool());
    EXPECT_FALSE(json().contains(u"pid"_s));
}

TEST_F(CtlState, StatusTellsTheAnswerOrTheSilenceAndStopEndsTheServer)
{
    QUdpSocket fake;
    ASSERT_TRUE(fake.bind(QHostAddress::LocalHost, 0));
    QObject::connect(&fake, &QUdpSocket::readyRead, [&fake] {
        while (fake.hasPendingDatagrams()) {
            QHostAddress from;
            quint16 port = 0;
            QByteArray datagram(static_cast<int>(fake.pendingDatagramSize()), 0);
            fake.readDatagram(datagram.data(), datagram.size(), &from, &port);
            if (datagram == "\xff\xff\xff\xffgetstatus")
                fake.writeDatagram("\xff\xff\xff\xffstatusResponse\n\\sv_hostname\\Steward Test Arena\\mapname\\"
                                   "ffa_bespin\n3 50 \"Kyle\"\n",
                                   from, port);
        }
    });
    const ProcessIdentity server = startSleeper();
    record(server, fake.localPort());
    EXPECT_EQ(ctl({u"status"_s}), 0) << err.toStdString();
    EXPECT_TRUE(out.startsWith(u"duel_arena.cfg: Running since "_s)) << out.toStdString();
    EXPECT_TRUE(out.contains(u"Process: %1\n"_s.arg(server.pid))) << out.toStdString();
    EXPECT_TRUE(out.contains(u"Answer: Steward Test Arena · ffa_bespin · 1 player"_s)) << out.toStdString();
    EXPECT_EQ(ctl({u"status"_s, u"--json"_s}), 0);
    EXPECT_TRUE(json().value(u"running"_s).toBool());
    EXPECT_EQ(json().value(u"pid"_s).toInteger(), server.pid);
    EXPECT_EQ(json().value(u"answer"_s).toObject().value(u"map"_s).toString(), u"ffa_bespin"_s);
    fake.close();
    EXPECT_EQ(ctl({u"status"_s, u"--timeout"_s, u"200"_s}), 1);
    EXPECT_TRUE(out.contains(u"Answer: none on port"_s)) << out.toStdString();
    EXPECT_EQ(ctl({u"stop"_s}), 0) << err.toStdString();
    EXPECT_TRUE(sleeper.waitForFinished(5000));
    EXPECT_FALSE(stillRuns(server));
    EXPECT_EQ(ctl({u"status"_s}), 3);
    EXPECT_EQ(out, u"duel_arena.cfg: Stopped\n"_s);
}

TEST_F(CtlState, TheServiceUnitIsOneThatSystemdAccepts)
{
    const QString odd = t.root() + u"/my 50% $server.asc"_s;
    writeFile(odd, "MsgOn,0\r\n");
    const QString unit = t.root() + u"/arena-steward.service"_s;
    for (const QStringList& extra : {QStringList{}, QStringList{u"--config"_s, odd}}) {
        ASSERT_EQ(ctl(QStringList{u"unit"_s} + extra), 0) << err.toStdString();
        writeFile(unit, out.toUtf8());
        EXPECT_TRUE(out.contains(u"ExecStart="_s + system.ownProgram + u" run"_s));
        EXPECT_TRUE(out.contains(u"Restart=on-failure\n"_s));
        EXPECT_TRUE(out.contains(u"StartLimitBurst="_s));
        EXPECT_EQ(systemdSays(unit), QByteArray()) << out.toStdString();
    }
    EXPECT_TRUE(out.contains(uR"(--config "%1/my 50%% $$server.asc")"_s.arg(t.root()))) << out.toStdString();
    ASSERT_EQ(ctl({u"unit"_s, u"--install"_s}), 0);
    const QString installed = system.unitFolder + u"/arena-steward.service"_s;
    EXPECT_TRUE(out.startsWith(u"Wrote "_s + installed + u'\n'));
    EXPECT_TRUE(out.contains(u"systemctl --user enable --now arena-steward.service\n"_s));
    EXPECT_TRUE(out.contains(u"loginctl enable-linger "_s + t.names.userName()));
    EXPECT_TRUE(fileBytes(installed).startsWith("[Unit]\n"));
    EXPECT_EQ(ctl({u"unit"_s, u"--config"_s, u"/nowhere.asc"_s}), 2);
    // A named profile's service is a template, run as arena-steward@<profile>.
    ASSERT_EQ(ctl({u"unit"_s, u"--profile"_s, u"ctf"_s, u"--install"_s}), 0);
    const QString instance = system.unitFolder + u"/arena-steward@.service"_s;
    EXPECT_TRUE(fileBytes(instance).contains(u"ExecStart=%1 run --profile %i\n"_s.arg(system.ownProgram).toUtf8()));
    EXPECT_TRUE(out.contains(u"systemctl --user enable --now arena-steward@ctf.service\n"_s));
}

namespace {

/// The child `run` on the test's folders, without a display, watching the engine.
class WatchedRealServer : public CtlFixture {
protected:
    void SetUp() override
    {
        if (realServerMissing())
            GTEST_SKIP() << "no Quake 3 engine dedicated server here (Debian's openarena-server)";
        // The stand-in for the game's server: the engine on the game folder, its output left to the watcher.
        t.app->serverExecutable = u"q3server"_s;
        const QString script = t.gameFolder() + u"q3server"_s;
        writeFile(script, u"#!/bin/sh\nexec %1 +set com_basegame baseoa +set fs_basepath %2 +set fs_homepath \"$PWD\" "
                          "+set fs_game base +set com_legacyprotocol 71 +set com_protocol 71 \"$@\"\n"_s
                              .arg(kRealEngine, kRealGameData)
                              .toLatin1());
        QFile::setPermissions(script, QFile::permissions(script) | QFileDevice::ExeOwner);
        port = static_cast<quint16>(27000 + 7000 + QCoreApplication::applicationPid() % 900);
        system.programFolder = t.root() + u"/data/ArenaSteward"_s; // where the child keeps its folders
    }
    void TearDown() override
    {
        run.kill();
        run.waitForFinished();
        for (const QString& id : {u"duel_arena"_s, u"ffa"_s, u"duel"_s})
            if (const auto state = readWatchState(folder(id).stateFile()))
                signalProcess(state->server, SIGKILL);
    }
    void watch(QProcess& process, const QStringList& options) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_DATA_HOME"_s, t.root() + u"/data"_s);
        environment.insert(u"XDG_CONFIG_HOME"_s, t.root() + u"/config"_s);
        for (const QString& name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s})
            environment.remove(name);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(system.ownProgram, QStringList{u"run"_s} + options + QStringList{u"--restart-delay"_s, u"1"_s});
        ASSERT_TRUE(process.waitForStarted());
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
        watch(run, {u"--config"_s, config});
    }
    /// The settings of a watched profile with a saved cycle of two maps, as the window's Defaults
    /// store them, in the profile's own settings file.
    void saveProfile(const QString& name, quint16 on, const QString& host, const QString& map1, const QString& map2)
    {
        const QString cycle = t.baseFolder() + u'/' + name + u"_cycle.cfg"_s;
        writeFile(cycle, u"set m1 \"map %1;set nextmap vstr m2\"\r\nset m2 \"map %2;set nextmap vstr m1\"\r\n"
                         "vstr m1\r\n//%1\r\n"_s.arg(map1, map2)
                             .toLatin1());
        ServerProfile profile;
        profile.setValue(F::chkServerType(1), 1);
        profile.setText(F::txtServerConfig(1), name);
        profile.setText(F::txtServerConfig(2), host);
        profile.setText(F::txtServerConfig(12), QString::number(on));
        profile.setText(F::txtServerConfig(14), u"secret"_s);
        // The store gives an empty address box back as one blank, which the engine can't bind.
        profile.setText(F::txtServerConfig(16), u"127.0.0.1"_s);
        profile.setValue(F::chkSendMessage, 0);
        profile.setValue(F::chkUseINI, 1);
        profile.setText(F::txtServerINI, cycle);
        profile.setValue(F::chkRestartServer, 1);
        AppContext onFile = *t.app;
        IniSettingsStore store(t.root() + u"/config/ArenaSteward/profiles/"_s + name + u".conf"_s);
        onFile.services.store = &store;
        SaveMainSettings(onFile, profile);
        store.SaveSetting(u"PathToJedi"_s, t.gameFolder());
        store.SaveSetting(u"PathToServer"_s, t.app->serverExecutable);
    }
    /// The server recorded in the folder once it runs with another process than before and answers
    /// on the port; none once its watcher has ended.
    static ProcessIdentity answering(const ServerFolder& folder, quint16 on, const ProcessIdentity& before, int ms,
                                     const QProcess& watcher)
    {
        const QDeadlineTimer deadline(ms);
        while (!deadline.hasExpired()) {
            const auto state = readWatchState(folder.stateFile());
            if (state && state->phase == WatchState::Phase::Running && !(state->server == before) &&
                stillRuns(state->server) && !awaitStatus(on, 250).isEmpty())
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

TEST_F(WatchedRealServer, ACrashedServerAnswersAgainAndTheCrashPastTheLimitLeavesItStoppedAndStatusSaysWhy)
{
    startWatching(2);
    const ProcessIdentity first = answeringServer({}, 30000);
    ASSERT_FALSE(first.isNull()) << run.readAll().toStdString();
    EXPECT_TRUE(awaitStatus(port, 2000).contains("\\mapname\\oa_dm1\\"));
    ASSERT_TRUE(signalProcess(first, SIGSEGV));
    ProcessIdentity server = answeringServer(first, 15000);
    ASSERT_FALSE(server.isNull()) << "no answer within 15 s of the crash";
    EXPECT_TRUE(awaitStatus(port, 2000).contains("\\sv_hostname\\Steward Test Arena\\"));
    ASSERT_EQ(crashLogs().size(), 1);
    const QByteArray log = fileBytes(folder().path() + u'/' + crashLogs().first());
    EXPECT_TRUE(log.startsWith("The server crashed: ")) << log.toStdString();
    EXPECT_TRUE(log.contains("signal 11")) << log.toStdString();
    EXPECT_EQ(readWatchState(folder().stateFile())->restarts, 1);

    ASSERT_TRUE(signalProcess(server, SIGSEGV));
    server = answeringServer(server, 15000);
    ASSERT_FALSE(server.isNull()) << "second crash";
    ASSERT_TRUE(signalProcess(server, SIGSEGV));
    ASSERT_TRUE(run.waitForFinished(10000));
    EXPECT_NE(run.exitCode(), 0);
    EXPECT_TRUE(waitForEnd(server, 5000));
    EXPECT_EQ(crashLogs().size(), 3);
    EXPECT_EQ(ctl({u"status"_s, u"--config"_s, config}), 3) << err.toStdString();
    EXPECT_EQ(out, u"duel_arena.cfg: Stopped after 3 crashes in 10 minutes\n"_s);
}

TEST_F(WatchedRealServer, TwoProfilesOnTwoPortsAndOneComesBackWithItsOwnRotation)
{
    const quint16 ffaPort = port;
    const quint16 duelPort = static_cast<quint16>(port + 1);
    saveProfile(u"ffa"_s, ffaPort, u"Profile FFA"_s, u"oa_dm1"_s, u"oa_dm2"_s);
    saveProfile(u"duel"_s, duelPort, u"Profile Duel"_s, u"oa_dm3"_s, u"oa_dm4"_s);
    QProcess duel;
    watch(run, {u"--profile"_s, u"ffa"_s});
    watch(duel, {u"--profile"_s, u"duel"_s});
    const ServerFolder ffaFolder = folder(u"ffa"_s);
    const ProcessIdentity ffaServer = answering(ffaFolder, ffaPort, {}, 30000, run);
    const ProcessIdentity duelServer = answering(folder(u"duel"_s), duelPort, {}, 30000, duel);
    ASSERT_FALSE(ffaServer.isNull()) << fileBytes(ffaFolder.serverLog()).right(1500).toStdString();
    ASSERT_FALSE(duelServer.isNull()) << duel.readAll().toStdString();
    EXPECT_TRUE(awaitStatus(ffaPort, 2000).contains("\\sv_hostname\\Profile FFA\\"));
    EXPECT_TRUE(awaitStatus(ffaPort, 2000).contains("\\mapname\\oa_dm1\\"));
    EXPECT_TRUE(awaitStatus(duelPort, 2000).contains("\\sv_hostname\\Profile Duel\\"));
    EXPECT_TRUE(awaitStatus(duelPort, 2000).contains("\\mapname\\oa_dm3\\"));
    ASSERT_TRUE(signalProcess(ffaServer, SIGSEGV));
    const ProcessIdentity back = answering(ffaFolder, ffaPort, ffaServer, 15000, run);
    ASSERT_FALSE(back.isNull()) << "the ffa profile's server did not come back";
    EXPECT_TRUE(awaitStatus(ffaPort, 2000).contains("\\sv_hostname\\Profile FFA\\"));
    EXPECT_TRUE(rcon(ffaPort, "nextmap").contains("vstr m2")) << rcon(ffaPort, "nextmap").toStdString();
    EXPECT_TRUE(rcon(ffaPort, "m2").contains("map oa_dm2")) << rcon(ffaPort, "m2").toStdString();
    EXPECT_TRUE(stillRuns(duelServer)) << "the other profile's server keeps running";
    EXPECT_TRUE(rcon(duelPort, "m2").contains("map oa_dm4"));
    // Listed one line a profile.
    system.settingsFile = t.root() + u"/config/ArenaSteward/ArenaSteward.conf"_s;
    writeFile(system.settingsFile, "[_Steward]\n");
    EXPECT_EQ(ctl({u"status"_s}), 0) << err.toStdString();
    const auto listed = [&](const QString& pattern) {
        return out.contains(QRegularExpression(pattern, QRegularExpression::MultilineOption));
    };
    EXPECT_TRUE(listed(u"^duel +%1 +Running since "_s.arg(duelPort))) << out.toStdString();
    EXPECT_TRUE(listed(u"^ffa +%1 +Running since .* 1 restart"_s.arg(ffaPort))) << out.toStdString();
    // SIGTERM to a watcher leaves no server.
    ::kill(static_cast<pid_t>(duel.processId()), SIGTERM);
    EXPECT_TRUE(waitForEnd(duelServer, 5000)) << "the server still runs 5 s after SIGTERM to run";
    ASSERT_TRUE(duel.waitForFinished(10000));
    EXPECT_EQ(duel.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(duel.exitCode(), 0) << duel.readAll().toStdString();
    EXPECT_EQ(readWatchState(folder(u"duel"_s).stateFile())->stoppedReason, u"Stopped"_s);
}
