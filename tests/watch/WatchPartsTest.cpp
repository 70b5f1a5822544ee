// The watcher's parts on their own: the folder of a session, the restart limit, the
// server's log and the state that status and the window read.
#include "platform/ProcessIdentity.h"
#include "testkit/TestApp.h"
#include "watch/PrivateFile.h"
#include "watch/RestartPolicy.h"
#include "watch/ServerFolder.h"
#include "watch/ServerLog.h"
#include "watch/WatchState.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <unistd.h>

using namespace steward;
using namespace Qt::StringLiterals;

namespace {

bool ownerOnly(const QString& path)
{
    const QFileDevice::Permissions p = QFileInfo(path).permissions();
    return p == (QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadUser | QFileDevice::WriteUser);
}

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

} // namespace

TEST(ServerFolderTest, EverySessionNameGivesOneFolderInsideServers)
{
    const struct {
        const char* session;
        const char* id;
    } cases[] = {
        {"luke.cfg", "luke"}, {"Duel Arena.CFG", "duel_arena"}, {"..cfg", "_."},    {"...cfg", "_.."},
        {".cfg", "_"},        {"a/b\\c.cfg", "a_b_c"},          {"ünï.cfg", "_n_"}, {"ctf-2_x.cfg", "ctf-2_x"},
    };
    for (const auto& c : cases) {
        const QString id = ServerFolder::idForSession(QString::fromUtf8(c.session));
        EXPECT_EQ(id, QString::fromUtf8(c.id)) << c.session;
        const ServerFolder folder(u"/p"_s, id);
        EXPECT_EQ(QFileInfo(folder.path()).absolutePath(), u"/p/servers"_s) << c.session;
    }
}

TEST(RestartPolicyTest, CountsCrashesInASlidingWindow)
{
    const qint64 minute = 60'000;
    const struct {
        int limit;
        int window;
        std::vector<qint64> crashes; // minutes
        std::vector<bool> allowed;
    } cases[] = {
        {2, 10, {0, 1, 2}, {true, true, false}},
        {2, 10, {0, 11, 22, 33}, {true, true, true, true}},
        {2, 10, {0, 5, 10, 12}, {true, true, true, false}}, // the first leaves the window at 10
        {1, 1, {0, 0}, {true, false}},
    };
    for (const auto& c : cases) {
        RestartPolicy policy(c.limit, c.window);
        for (size_t i = 0; i < c.crashes.size(); ++i)
            EXPECT_EQ(policy.allowRestartAfterCrash(c.crashes[i] * minute), c.allowed[i])
                << "limit " << c.limit << ", crash " << i;
    }
}

TEST(ServerLogTest, KeepsTheLastLinesAndMovesAFullLogAside)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(u"server.log"_s);
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
    EXPECT_TRUE(steward::testing::fileBytes(file).endsWith("half a line"));
}

TEST(ProcessIdentityTest, OnlyTheRecordedProcessCountsAsRunning)
{
    const ProcessIdentity self = identifyProcess(::getpid());
    ASSERT_FALSE(self.isNull());
    EXPECT_TRUE(stillRuns(self));
    // The same pid with another start is a process that reused the pid: left alone.
    EXPECT_FALSE(stillRuns({self.pid, self.startTicks + 1}));
    EXPECT_FALSE(signalProcess({self.pid, self.startTicks + 1}, 0));
    EXPECT_FALSE(stillRuns(endedProcess()));
    EXPECT_FALSE(stillRuns({}));
    EXPECT_TRUE(identifyProcess(-1).isNull());
}

TEST(WatchStateTest, SurvivesTheFileAndReadsAsOneLine)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(u"state.json"_s);
    const QDateTime crash(QDate(2026, 11, 25), QTime(13, 58), Qt::LocalTime);
    const QDateTime since(QDate(2026, 11, 25), QTime(14, 2), Qt::LocalTime);

    WatchState running;
    running.session = u"luke.cfg"_s;
    running.port = 28070;
    running.watched = true;
    running.watcher = identifyProcess(::getpid());
    running.server = identifyProcess(::getpid());
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

    const struct {
        std::optional<WatchState> state;
        const char* summary;
    } cases[] = {
        {running, "Running since 14:02 · 2 restarts · last crash 13:58, signal 11"},
        {oneRestart, "Running since 14:02 · 1 restart"},
        {restarting, "Restarting after a crash at 13:58, signal 11"},
        {gone, "Not running"},
        {stopped, "Stopped after 3 crashes in 10 minutes"},
        {std::nullopt, "Not running"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(watchSummary(c.state), QString::fromUtf8(c.summary));
}

TEST(WatchStateTest, AnythingButAStateFileReadsAsNone)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(u"state.json"_s);
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("{"), QByteArray("[1,2]"), QByteArray("\xff\xfe\x00", 3)}) {
        steward::testing::writeFile(file, bytes);
        EXPECT_FALSE(readWatchState(file)) << bytes.toHex().toStdString();
    }
    EXPECT_FALSE(readWatchState(dir.filePath(u"missing.json"_s)));
    // Fields of the wrong kind read as empty ones: nothing runs.
    steward::testing::writeFile(file, R"({"phase":"running","server":{"pid":"x"},"restarts":"many"})");
    const auto odd = readWatchState(file);
    ASSERT_TRUE(odd);
    EXPECT_EQ(watchSummary(odd), u"Not running"_s);
}

TEST(PrivateFileTest, AFileThatCannotBeReplacedKeepsItsOldText)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(u"state.json"_s);
    ASSERT_TRUE(writePrivateFile(file, "old"));
    QString reason;
    EXPECT_FALSE(writePrivateFile(dir.filePath(u"no/such/folder/x"_s), "new", &reason));
    EXPECT_FALSE(reason.isEmpty());
    // The new text goes to a file beside the old one first; where that can't be made,
    // whoever runs the test, the old text stays.
    ASSERT_TRUE(QDir().mkpath(file + u".new.%1"_s.arg(QCoreApplication::applicationPid())));
    EXPECT_FALSE(writePrivateFile(file, "new"));
    EXPECT_EQ(steward::testing::fileBytes(file), QByteArray("old"));
}

TEST(ServerFolderTest, CrashLogsOfOneSecondStayApartAndTheOldestGo)
{
    QTemporaryDir dir;
    const ServerFolder folder(dir.path(), u"luke"_s);
    ASSERT_TRUE(folder.make());
    const QDateTime when(QDate(2026, 11, 25), QTime(13, 58, 7));
    for (int i = 1; i <= 25; ++i)
        steward::testing::writeFile(folder.newCrashLog(when), QByteArray::number(i));
    folder.pruneCrashLogs(20);
    const QStringList kept = folder.crashLogs();
    ASSERT_EQ(kept.size(), 20);
    EXPECT_EQ(steward::testing::fileBytes(kept.first()), QByteArray("6"));
    EXPECT_TRUE(kept.last().endsWith(u"/crash-20261125-135807-25.log"_s));
    EXPECT_EQ(steward::testing::fileBytes(kept.last()), QByteArray("25"));
}
