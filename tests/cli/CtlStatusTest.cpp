#include "cli/CtlFixture.h"
#include "cli/ServiceUnit.h"
#include "platform/ProcessIdentity.h"
#include "watch/ServerFolder.h"
#include "watch/WatchState.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QUdpSocket>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

class CtlState : public CtlFixture {
protected:
    void SetUp() override
    {
        saveSettings();
        folder.make();
    }
    void TearDown() override
    {
        if (sleeper.state() != QProcess::NotRunning) {
            sleeper.kill();
            sleeper.waitForFinished();
        }
    }

    /// A process that stands in for a running server.
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
        ASSERT_TRUE(writeWatchState(folder.stateFile(), state));
    }

    ServerFolder folder{t.programFolder(), u"duel_arena"_s};
    QProcess sleeper;
};

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
    const QJsonObject json = QJsonDocument::fromJson(out.toUtf8()).object();
    EXPECT_FALSE(json.value(u"running"_s).toBool());
    EXPECT_FALSE(json.contains(u"pid"_s));
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
                fake.writeDatagram(
                    "\xff\xff\xff\xffstatusResponse\n\\sv_hostname\\Steward Test Arena\\mapname\\ffa_bespin\n"
                    "3 50 \"Kyle\"\n",
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
    const QJsonObject json = QJsonDocument::fromJson(out.toUtf8()).object();
    EXPECT_TRUE(json.value(u"running"_s).toBool());
    EXPECT_EQ(json.value(u"pid"_s).toInteger(), server.pid);
    EXPECT_EQ(json.value(u"answer"_s).toObject().value(u"map"_s).toString(), u"ffa_bespin"_s);

    fake.close();
    EXPECT_EQ(ctl({u"status"_s, u"--timeout"_s, u"200"_s}), 1);
    EXPECT_TRUE(out.contains(u"Answer: none on port"_s)) << out.toStdString();

    EXPECT_EQ(ctl({u"stop"_s}), 0) << err.toStdString();
    EXPECT_TRUE(sleeper.waitForFinished(5000));
    EXPECT_FALSE(stillRuns(server));
    EXPECT_EQ(ctl({u"status"_s}), 3);
    EXPECT_EQ(out, u"duel_arena.cfg: Stopped\n"_s);
}

namespace {
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

TEST_F(CtlState, TheServiceUnitIsOneThatSystemdAccepts)
{
    writeFile(t.root() + u"/my 50% $server.asc"_s, "MsgOn,0\r\n");
    for (const QStringList& extra : {QStringList{}, QStringList{u"--config"_s, t.root() + u"/my 50% $server.asc"_s}}) {
        ASSERT_EQ(ctl(QStringList{u"unit"_s} + extra), 0) << err.toStdString();
        const QString unit = t.root() + u"/arena-steward.service"_s;
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
    ASSERT_EQ(ctl({u"unit"_s, u"--profile"_s, u"ctf"_s}), 0);
    EXPECT_TRUE(out.contains(u"ExecStart="_s + system.ownProgram + u" run --profile %i\n"_s));
    const QString instance = t.root() + u"/arena-steward@ctf.service"_s;
    writeFile(instance, out.toUtf8());
    EXPECT_EQ(systemdSays(instance), QByteArray()) << out.toStdString();
    ASSERT_EQ(ctl({u"unit"_s, u"--profile"_s, u"ctf"_s, u"--install"_s}), 0);
    EXPECT_TRUE(QFileInfo(system.unitFolder + u"/arena-steward@.service"_s).isFile());
    EXPECT_TRUE(out.contains(u"systemctl --user enable --now arena-steward@ctf.service\n"_s));
}
