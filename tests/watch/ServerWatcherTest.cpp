// The watcher with a real child: a small shell script stands in for the server and
// does what its mode file says at each start (run, crash by SIGSEGV, or quit).
#include "platform/ProcessIdentity.h"
#include "testkit/Fakes.h"
#include "testkit/TestApp.h"
#include "watch/ServerWatcher.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>

using namespace steward;
using steward::testing::fileBytes;
using steward::testing::writeFile;
using namespace Qt::StringLiterals;

namespace {

/// Lets events run until the condition holds or the time is up.
bool eventually(const std::function<bool()>& condition, int ms = 10000)
{
    const QDeadlineTimer deadline(ms);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

class WatchedStub : public ::testing::Test {
protected:
    void SetUp() override
    {
        script = dir.filePath(u"stub"_s);
        writeFile(script, "#!/bin/sh\n"
                          "echo \"stub $$ started\"\n"
                          "case \"$(cat \"$(dirname \"$0\")/mode\")\" in\n"
                          "crash) echo 'going down'; kill -SEGV $$ ;;\n"
                          "fail) exit 3 ;;\n"
                          "quit) exit 0 ;;\n"
                          "*) exec sleep 60 ;;\n"
                          "esac\n");
        QFile::setPermissions(script, QFile::permissions(script) | QFileDevice::ExeOwner);
        folder.make();
    }
    void TearDown() override { watcher.reset(); }

    void mode(const char* m) { writeFile(dir.filePath(u"mode"_s), m); }

    void watch(ServerWatcher::Options options)
    {
        options.restartDelayMs = 50;
        options.stopGraceMs = 2000;
        WatchState session;
        session.session = u"luke.cfg"_s;
        session.port = 28070;
        watcher = std::make_unique<ServerWatcher>(folder, session, options, clock);
        watcher->setRelaunch([this](QString* why) {
            ++relaunches;
            if (beforeRelaunch)
                beforeRelaunch();
            return watcher->start(request(), why);
        });
        QObject::connect(watcher.get(), &ServerWatcher::finished, [this](int code) { exitCode = code; });
        QString error;
        ASSERT_TRUE(watcher->start(request(), &error)) << error.toStdString();
    }

    LaunchRequest request() const { return {script, {u"+set"_s, u"x"_s}, dir.path()}; }

    QStringList crashLogs() const { return QDir(folder.path()).entryList({u"crash-*.log"_s}, QDir::Files); }

    QTemporaryDir dir;
    ServerFolder folder{dir.path() + u"/program"_s, u"luke"_s};
    QString script;
    steward::testing::FixedClock clock;
    std::unique_ptr<ServerWatcher> watcher;
    int relaunches = 0;
    int exitCode = -1;
    std::function<void()> beforeRelaunch;
};

} // namespace

TEST_F(WatchedStub, ACrashIsLoggedAndTheServerStartsAgain)
{
    mode("crash");
    ServerWatcher::Options options;
    options.restartOnCrash = true;
    // The second start crashes as well, the third runs.
    beforeRelaunch = [this] {
        if (relaunches == 2)
            mode("run");
    };
    watch(options);
    const ProcessIdentity first = watcher->state().server;
    ASSERT_TRUE(eventually([&] { return relaunches == 2 && watcher->serverRunning(); }));

    const WatchState state = *readWatchState(folder.stateFile());
    EXPECT_EQ(state.phase, WatchState::Phase::Running);
    EXPECT_EQ(state.restarts, 2);
    EXPECT_NE(state.server.pid, first.pid);
    EXPECT_TRUE(stillRuns(state.server));
    EXPECT_EQ(state.lastCrashCause, u"signal 11 (SIGSEGV)"_s);
    EXPECT_EQ(state.arguments, request().arguments);

    ASSERT_FALSE(crashLogs().isEmpty());
    const QByteArray log = fileBytes(folder.path() + u'/' + crashLogs().first());
    EXPECT_TRUE(log.startsWith("The server crashed: signal 11 (SIGSEGV)\n")) << log.toStdString();
    EXPECT_TRUE(log.contains("going down\n"));
    EXPECT_TRUE(fileBytes(folder.serverLog()).contains("going down\n"));
    EXPECT_EQ(QFileInfo(folder.serverLog()).permissions() & 0x0077, 0);
    EXPECT_EQ(exitCode, -1);

    const ProcessIdentity server = watcher->state().server;
    watcher->stop();
    ASSERT_TRUE(eventually([&] { return exitCode == 0; }));
    EXPECT_FALSE(stillRuns(server));
    EXPECT_EQ(readWatchState(folder.stateFile())->stoppedReason, u"Stopped"_s);
}

TEST_F(WatchedStub, TheCrashPastTheLimitEndsTheWatch)
{
    mode("fail");
    ServerWatcher::Options options;
    options.restartOnCrash = true;
    options.restartLimit = 2;
    watch(options);
    ASSERT_TRUE(eventually([&] { return exitCode != -1; }));
    EXPECT_EQ(exitCode, 1);
    EXPECT_EQ(relaunches, 2);
    const WatchState state = *readWatchState(folder.stateFile());
    EXPECT_EQ(state.stoppedReason, u"Stopped after 3 crashes in 10 minutes"_s);
    EXPECT_EQ(state.lastCrashCause, u"exit status 3"_s);
    EXPECT_EQ(watchSummary(state), u"Stopped after 3 crashes in 10 minutes"_s);
}

TEST_F(WatchedStub, EachEndHasItsOwnOutcome)
{
    const struct {
        const char* mode;
        bool restartOnCrash;
        int exitCode;
        const char* reason;
        bool crashLog;
    } cases[] = {
        {"quit", true, 0, "The server quit", false},
        {"crash", false, 1, "Stopped after a crash, signal 11 (SIGSEGV)", true},
        {"fail", false, 1, "Stopped after a crash, exit status 3", true},
    };
    for (const auto& c : cases) {
        for (const QString& log : crashLogs())
            QFile::remove(folder.path() + u'/' + log);
        exitCode = -1;
        relaunches = 0;
        mode(c.mode);
        ServerWatcher::Options options;
        options.restartOnCrash = c.restartOnCrash;
        watch(options);
        ASSERT_TRUE(eventually([&] { return exitCode != -1; })) << c.mode;
        EXPECT_EQ(exitCode, c.exitCode) << c.mode;
        EXPECT_EQ(relaunches, 0) << c.mode;
        EXPECT_EQ(readWatchState(folder.stateFile())->stoppedReason, QString::fromUtf8(c.reason));
        EXPECT_EQ(crashLogs().isEmpty(), !c.crashLog) << c.mode;
    }
}

TEST_F(WatchedStub, ARestartOnRequestIsNoCrash)
{
    mode("run");
    watch({});
    const ProcessIdentity first = watcher->state().server;
    watcher->restart();
    ASSERT_TRUE(eventually([&] { return relaunches == 1 && watcher->serverRunning(); }));
    EXPECT_FALSE(stillRuns(first));
    EXPECT_TRUE(crashLogs().isEmpty());
    EXPECT_FALSE(readWatchState(folder.stateFile())->lastCrash.isValid());
    EXPECT_EQ(exitCode, -1);
}

TEST_F(WatchedStub, AProgramThatCannotStartSaysWhy)
{
    ServerWatcher::Options options;
    WatchState session;
    ServerWatcher lone(folder, session, options, clock);
    QString error;
    EXPECT_FALSE(lone.start({dir.filePath(u"missing"_s), {}, dir.path()}, &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(lone.serverRunning());
}
