// The watcher and its parts: the folder of a session, the restart limit, the server's log, the state
// that status and the window read; and the watcher with a real child, a small shell script that stands
// in for the server and does what its mode file says at each start (run, crash by SIGSEGV, or quit).
#include "platform/ProcessIdentity.h"
#include "testkit/Fakes.h"
#include "testkit/TestApp.h"
#include "watch/PrivateFile.h"
#include "watch/RestartPolicy.h"
#include "watch/ServerFolder.h"
#include "watch/ServerLog.h"
#include "watch/ServerWatcher.h"
#include "watch/WatchState.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <unistd.h>

using namespace steward;
using steward::testing::fileBytes;
using steward::testing::writeFile;
using namespace Qt::StringLiterals;

namespace {

bool ownerOnly(const QString& path) { return (QFileInfo(path).permissions() & 0x0077) == 0; }

/// A process that has come and gone: its identity no longer runs.
ProcessIdentity endedProcess()
{
    QProcess child;
    child.start(u"/bin/true"_s);
    child.waitForStarted();
    const ProcessIdentity identity = identifyProcess(child.processId());
    child.waitForFinished();
    return identity.isNull() ? ProcessIdentity{child.processId(), 1} : identity;
}

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
    void watch(bool restartOnCrash, int restartLimit = ServerWatcher::Options{}.restartLimit)
    {
        ServerWatcher::Options options;
        options.restartOnCrash = restartOnCrash;
        options.restartLimit = restartLimit;
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

TEST_F(WatchedStub, ACrashIsLoggedAndTheServerStartsAgainButARestartOnRequestIsNoCrash)
{
    mode("crash");
    // The second start crashes as well, the third runs.
    beforeRelaunch = [this] {
        if (relaunches == 2)
            mode("run");
    };
    watch(true);
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
    EXPECT_TRUE(ownerOnly(folder.serverLog()));
    // A restart on request is no crash.
    const ProcessIdentity beforeRestart = watcher->state().server;
    const qsizetype logs = crashLogs().size();
    watcher->restart();
    ASSERT_TRUE(eventually([&] { return relaunches == 3 && watcher->serverRunning(); }));
    EXPECT_FALSE(stillRuns(beforeRestart));
    EXPECT_EQ(crashLogs().size(), logs);
    EXPECT_EQ(exitCode, -1);
    const ProcessIdentity server = watcher->state().server;
    watcher->stop();
    ASSERT_TRUE(eventually([&] { return exitCode == 0; }));
    EXPECT_FALSE(stillRuns(server));
    EXPECT_EQ(readWatchState(folder.stateFile())->stoppedReason, u"Stopped"_s);
}

TEST_F(WatchedStub, EachEndHasItsOwnOutcomeAndTheCrashPastTheLimitEndsTheWatch)
{
    // The mode, a restart on a crash, the limit, then the exit code, the restarts and the reason.
    const std::tuple<const char*, bool, int, int, int, const char*> cases[] = {
        {"quit", true, 5, 0, 0, "The server quit"},
        {"crash", false, 5, 1, 0, "Stopped after a crash, signal 11 (SIGSEGV)"},
        {"fail", false, 5, 1, 0, "Stopped after a crash, exit status 3"},
        {"fail", true, 2, 1, 2, "Stopped after 3 crashes in 10 minutes"},
    };
    for (const auto& [how, restartOnCrash, limit, code, restarts, reason] : cases) {
        SCOPED_TRACE(reason);
        for (const QString& log : crashLogs())
            QFile::remove(folder.path() + u'/' + log);
        exitCode = -1;
        relaunches = 0;
        mode(how);
        watch(restartOnCrash, limit);
        ASSERT_TRUE(eventually([&] { return exitCode != -1; }));
        EXPECT_EQ(exitCode, code);
        EXPECT_EQ(relaunches, restarts);
        EXPECT_EQ(readWatchState(folder.stateFile())->stoppedReason, QString::fromUtf8(reason));
        EXPECT_EQ(crashLogs().isEmpty(), code == 0);
    }
}

TEST_F(WatchedStub, AProgramThatCannotStartSaysWhy)
{
    ServerWatcher lone(folder, {}, {}, clock);
    QString error;
    EXPECT_FALSE(lone.start({dir.filePath(u"missing"_s), {}, dir.path()}, &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(lone.serverRunning());
}

namespace {
/// The parts on their own, in a temporary folder.
struct WatchParts : ::testing::Test {
    QTemporaryDir dir;
    QString file = dir.filePath(u"state.json"_s);
};
} // namespace

TEST_F(WatchParts, EverySessionNameGivesOneFolderInsideServersWhereCrashLogsOfOneSecondStayApart)
{
    const std::pair<const char*, const char*> cases[] = {
        {"luke.cfg", "luke"}, {"Duel Arena.CFG", "duel_arena"}, {"..cfg", "_."},    {"...cfg", "_.."},
        {".cfg", "_"},        {"a/b\\c.cfg", "a_b_c"},          {"ünï.cfg", "_n_"}, {"ctf-2_x.cfg", "ctf-2_x"}};
    for (const auto& [session, expected] : cases) {
        const QString id = ServerFolder::idForSession(QString::fromUtf8(session));
        EXPECT_EQ(id, QString::fromUtf8(expected)) << session;
        const ServerFolder folder(u"/p"_s, id);
        EXPECT_EQ(QFileInfo(folder.path()).absolutePath(), u"/p/servers"_s) << session;
    }
    const ServerFolder folder(dir.path(), u"luke"_s);
    ASSERT_TRUE(folder.make());
    const QDateTime when(QDate(2026, 11, 25), QTime(13, 58, 7));
    for (int i = 1; i <= 25; ++i)
        writeFile(folder.newCrashLog(when), QByteArray::number(i));
    folder.pruneCrashLogs(20); // the oldest go
    const QStringList kept = folder.crashLogs();
    ASSERT_EQ(kept.size(), 20);
    EXPECT_EQ(fileBytes(kept.first()), QByteArray("6"));
    EXPECT_TRUE(kept.last().endsWith(u"/crash-20261125-135807-25.log"_s));
    EXPECT_EQ(fileBytes(kept.last()), QByteArray("25"));
}

TEST(RestartPolicyTest, CountsCrashesInASlidingWindow)
{
    const qint64 minute = 60'000;
    // The limit, the window and the crashes in minutes, each allowed a restart or not.
    const std::tuple<int, int, std::vector<qint64>, std::vector<bool>> cases[] = {
        {2, 10, {0, 1, 2}, {true, true, false}},
        {2, 10, {0, 11, 22, 33}, {true, true, true, true}},
        {2, 10, {0, 5, 10, 12}, {true, true, true, false}}, // the first leaves the window at 10
        {1, 1, {0, 0}, {true, false}},
    };
    for (const auto& [limit, window, crashes, allowed] : cases) {
        RestartPolicy policy(limit, window);
        for (size_t i = 0; i < crashes.size(); ++i)
            EXPECT_EQ(policy.allowRestartAfterCrash(crashes[i] * minute), allowed[i]) << limit << ", crash " << i;
    }
}

TEST_F(WatchParts, TheServerLogKeepsTheLastLinesAndMovesAFullLogAside)
{
    file = dir.filePath(u"server.log"_s);
    ServerLog log(file, 1000);
    for (int i = 0; i < 300; ++i)
        log.append(QByteArray("line ") + QByteArray::number(i) + (i % 2 ? "\n" : "\r\n"));
    log.append("half a ");
    log.append("line");
    const QStringList last = log.lastLines();
    ASSERT_EQ(last.size(), ServerLog::kKeptLines);
    EXPECT_EQ(last.first(), u"line 101"_s);
    EXPECT_EQ(last.at(last.size() - 2), u"line 299"_s);
    EXPECT_EQ(last.last(), u"half a line"_s);
    EXPECT_LE(QFileInfo(file).size(), 1000);
    EXPECT_LE(QFileInfo(file + u".1"_s).size(), 1000);
    EXPECT_GT(QFileInfo(file + u".1"_s).size(), 900);
    EXPECT_FALSE(QFileInfo::exists(file + u".2"_s));
    EXPECT_TRUE(ownerOnly(file));
    EXPECT_TRUE(fileBytes(file).endsWith("half a line"));
}

TEST_F(WatchParts, TheStateSurvivesTheFileAndReadsAsOneLine)
{
    const QDateTime crash(QDate(2026, 11, 25), QTime(13, 58), Qt::LocalTime);
    const QDateTime since(QDate(2026, 11, 25), QTime(14, 2), Qt::LocalTime);
    WatchState running;
    running.session = u"luke.cfg"_s;
    running.port = 28070;
    running.watched = true;
    running.watcher = running.server = identifyProcess(::getpid());
    running.program = u"/games/jk2/jk2ded"_s;
    running.arguments = {u"+set"_s, u"dedicated 2"_s};
    running.phase = WatchState::Phase::Running;
    running.since = since;
    running.restarts = 2;
    running.lastCrash = crash;
    running.lastCrashCause = u"signal 11"_s;
    ASSERT_TRUE(writeWatchState(file, running));
    EXPECT_TRUE(ownerOnly(file));
    const auto back = readWatchState(file);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->toJson(), running.toJson());
    WatchState restarting = running;
    restarting.phase = WatchState::Phase::Restarting;
    WatchState oneRestart = running;
    oneRestart.restarts = 1;
    oneRestart.lastCrash = {};
    WatchState gone = running;
    gone.server = endedProcess();
    gone.watcher = endedProcess();
    WatchState stopped = gone;
    stopped.phase = WatchState::Phase::Stopped;
    stopped.stoppedReason = u"Stopped after 3 crashes in 10 minutes"_s;
    const std::pair<std::optional<WatchState>, const char*> cases[] = {
        {running, "Running since 14:02 · 2 restarts · last crash 13:58, signal 11"},
        {oneRestart, "Running since 14:02 · 1 restart"},
        {restarting, "Restarting after a crash at 13:58, signal 11"},
        {gone, "Not running"},
        {stopped, "Stopped after 3 crashes in 10 minutes"},
        {std::nullopt, "Not running"},
    };
    for (const auto& [state, summary] : cases)
        EXPECT_EQ(watchSummary(state), QString::fromUtf8(summary));
}

TEST_F(WatchParts, AnythingButAStateFileReadsAsNoneAndAFileThatCannotBeReplacedKeepsItsOldText)
{
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("{"), QByteArray("[1,2]"), QByteArray("\xff\xfe\x00", 3)}) {
        writeFile(file, bytes);
        EXPECT_FALSE(readWatchState(file)) << bytes.toHex().toStdString();
    }
    EXPECT_FALSE(readWatchState(dir.filePath(u"missing.json"_s)));
    // Fields of the wrong kind read as empty ones: nothing runs.
    writeFile(file, R"({"phase":"running","server":{"pid":"x"},"restarts":"many"})");
    const auto odd = readWatchState(file);
    ASSERT_TRUE(odd);
    EXPECT_EQ(watchSummary(odd), u"Not running"_s);
    ASSERT_TRUE(writePrivateFile(file, "old"));
    QString reason;
    EXPECT_FALSE(writePrivateFile(dir.filePath(u"no/such/folder/x"_s), "new", &reason));
    EXPECT_FALSE(reason.isEmpty());
    // The new text goes to a file beside the old one first; where that can't be made,
    // whoever runs the test, the old text stays.
    ASSERT_TRUE(QDir().mkpath(file + u".new.%1"_s.arg(QCoreApplication::applicationPid())));
    EXPECT_FALSE(writePrivateFile(file, "new"));
    EXPECT_EQ(fileBytes(file), QByteArray("old"));
}
