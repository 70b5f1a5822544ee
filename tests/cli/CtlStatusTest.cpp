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
        sleeper.start(QStringLiteral("sleep"), {QStringLiteral("30")});
        sleeper.waitForStarted();
        return identifyProcess(sleeper.processId());
    }

    void record(const ProcessIdentity& server, quint16 port = 28070)
    {
        WatchState state;
        state.session = QStringLiteral("duel_arena.cfg");
        state.host = QStringLiteral("127.0.0.1");
        state.port = port;
        state.server = server;
        state.phase = WatchState::Phase::Running;
        state.since = t.clock.now();
        ASSERT_TRUE(writeWatchState(folder.stateFile(), state));
    }

    ServerFolder folder{t.programFolder(), QStringLiteral("duel_arena")};
    QProcess sleeper;
};

} // namespace

TEST_F(CtlState, AStalePidIsLeftAlone)
{
    const ProcessIdentity live = startSleeper();
    // The recorded process began at another moment: the pid now belongs to another one.
    record({live.pid, live.startTicks + 7});
    for (const QString& command : {QStringLiteral("status"), QStringLiteral("stop")}) {
        EXPECT_EQ(ctl({command}), 3) << command.toStdString();
        EXPECT_TRUE(out.contains(QStringLiteral("Not running"))) << out.toStdString();
    }
    EXPECT_TRUE(stillRuns(live));
    EXPECT_EQ(ctl({QStringLiteral("status"), QStringLiteral("--json")}), 3);
    const QJsonObject json = QJsonDocument::fromJson(out.toUtf8()).object();
    EXPECT_FALSE(json.value(QStringLiteral("running")).toBool());
    EXPECT_FALSE(json.contains(QStringLiteral("pid")));
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

    EXPECT_EQ(ctl({QStringLiteral("status")}), 0) << err.toStdString();
    EXPECT_TRUE(out.startsWith(QStringLiteral("duel_arena.cfg: Running since "))) << out.toStdString();
    EXPECT_TRUE(out.contains(QStringLiteral("Process: %1\n").arg(server.pid))) << out.toStdString();
    EXPECT_TRUE(out.contains(QStringLiteral("Answer: Steward Test Arena · ffa_bespin · 1 player")))
        << out.toStdString();

    EXPECT_EQ(ctl({QStringLiteral("status"), QStringLiteral("--json")}), 0);
    const QJsonObject json = QJsonDocument::fromJson(out.toUtf8()).object();
    EXPECT_TRUE(json.value(QStringLiteral("running")).toBool());
    EXPECT_EQ(json.value(QStringLiteral("pid")).toInteger(), server.pid);
    EXPECT_EQ(json.value(QStringLiteral("answer")).toObject().value(QStringLiteral("map")).toString(),
              QStringLiteral("ffa_bespin"));

    fake.close();
    EXPECT_EQ(ctl({QStringLiteral("status"), QStringLiteral("--timeout"), QStringLiteral("200")}), 1);
    EXPECT_TRUE(out.contains(QStringLiteral("Answer: none on port"))) << out.toStdString();

    EXPECT_EQ(ctl({QStringLiteral("stop")}), 0) << err.toStdString();
    EXPECT_TRUE(sleeper.waitForFinished(5000));
    EXPECT_FALSE(stillRuns(server));
    EXPECT_EQ(ctl({QStringLiteral("status")}), 3);
    EXPECT_EQ(out, QStringLiteral("duel_arena.cfg: Stopped\n"));
}

namespace {
/// systemd-analyze's word on a unit file: empty when it accepts it.
QByteArray systemdSays(const QString& unit)
{
    QProcess verify;
    verify.setProcessChannelMode(QProcess::MergedChannels);
    verify.start(QStringLiteral("systemd-analyze"), {QStringLiteral("verify"), unit});
    if (!verify.waitForFinished(30000))
        return "systemd-analyze (Debian's systemd) is needed";
    return verify.exitCode() == 0 ? verify.readAll() : "exit code " + QByteArray::number(verify.exitCode());
}
} // namespace

TEST_F(CtlState, TheServiceUnitIsOneThatSystemdAccepts)
{
    writeFile(t.root() + QStringLiteral("/my 50% $server.asc"), "MsgOn,0\r\n");
    for (const QStringList& extra :
         {QStringList{}, QStringList{QStringLiteral("--config"), t.root() + QStringLiteral("/my 50% $server.asc")}}) {
        ASSERT_EQ(ctl(QStringList{QStringLiteral("unit")} + extra), 0) << err.toStdString();
        const QString unit = t.root() + QStringLiteral("/arena-steward.service");
        writeFile(unit, out.toUtf8());
        EXPECT_TRUE(out.contains(QStringLiteral("ExecStart=") + system.ownProgram + QStringLiteral(" run")));
        EXPECT_TRUE(out.contains(QStringLiteral("Restart=on-failure\n")));
        EXPECT_TRUE(out.contains(QStringLiteral("StartLimitBurst=")));

        EXPECT_EQ(systemdSays(unit), QByteArray()) << out.toStdString();
    }
    EXPECT_TRUE(out.contains(QStringLiteral(R"(--config "%1/my 50%% $$server.asc")").arg(t.root())))
        << out.toStdString();

    ASSERT_EQ(ctl({QStringLiteral("unit"), QStringLiteral("--install")}), 0);
    const QString installed = system.unitFolder + QStringLiteral("/arena-steward.service");
    EXPECT_TRUE(out.startsWith(QStringLiteral("Wrote ") + installed + QLatin1Char('\n')));
    EXPECT_TRUE(out.contains(QStringLiteral("systemctl --user enable --now arena-steward.service\n")));
    EXPECT_TRUE(out.contains(QStringLiteral("loginctl enable-linger ") + t.names.userName()));
    EXPECT_TRUE(fileBytes(installed).startsWith("[Unit]\n"));

    EXPECT_EQ(ctl({QStringLiteral("unit"), QStringLiteral("--config"), QStringLiteral("/nowhere.asc")}), 2);

    // A named profile's service is a template, run as arena-steward@<profile>.
    ASSERT_EQ(ctl({QStringLiteral("unit"), QStringLiteral("--profile"), QStringLiteral("ctf")}), 0);
    EXPECT_TRUE(out.contains(QStringLiteral("ExecStart=") + system.ownProgram + QStringLiteral(" run --profile %i\n")));
    const QString instance = t.root() + QStringLiteral("/arena-steward@ctf.service");
    writeFile(instance, out.toUtf8());
    EXPECT_EQ(systemdSays(instance), QByteArray()) << out.toStdString();
    ASSERT_EQ(
        ctl({QStringLiteral("unit"), QStringLiteral("--profile"), QStringLiteral("ctf"), QStringLiteral("--install")}),
        0);
    EXPECT_TRUE(QFileInfo(system.unitFolder + QStringLiteral("/arena-steward@.service")).isFile());
    EXPECT_TRUE(out.contains(QStringLiteral("systemctl --user enable --now arena-steward@ctf.service\n")));
}
