#include "testkit/LaunchKit.h"

#include "generate/ServerConfigWriter.h"
#include "commands/ServerLaunch.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "testkit/TestApp.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

class ServerLaunch : public ::testing::Test {
protected:
    ServerLaunch()
    {
        t.app->services.launcher = &launcher;
        t.app->serverExecutable = u"jk2ded"_s;
        session.sessionName = u"luke.cfg"_s;
        session.fileName = t.baseFolder() + u"/luke.cfg"_s;
        session.hunk = 32;
        session.zone = 16;
        session.port = 28070;
    }
    QString record() const { return t.root() + u"/record.txt"_s; }
    StubServer stub(const QString& name = u"jk2ded"_s, bool executable = true) const
    {
        return StubServer(t.gameFolder(), name, record(), executable);
    }

    TestApp t;
    CountingLauncher launcher;
    ServerProfile profile;
    SessionValues session;
};

} // namespace

TEST_F(ServerLaunch, TheServerGetsEachShapeAsArgumentsInTheGameFolder)
{
    struct Case {
        int serverType;
        bool merc;
        const char* ip;
        int port;
    };
    const Case cases[] = {{0, false, "192.168.0.2", 28070},
                          {1, true, "192.168.0.2", 0},
                          {2, false, "", 27960},
                          {1, false, "", 0},
                          {2, true, "", 28070}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.serverType * 100 + c.merc * 10 + c.port);
        const StubServer server = stub();
        profile.setValue(F::chkServerType(c.serverType), 1);
        session.merc = c.merc;
        session.ip = QString::fromLatin1(c.ip);
        session.port = c.port;

        EXPECT_TRUE(startServerAfterConfiguration(*t.app, profile, session));
        const auto started = server.waitForRecord();
        ASSERT_TRUE(started);
        EXPECT_EQ(started->workingFolder, canonical(t.gameFolder()));
        EXPECT_EQ(started->program, server.path());
        EXPECT_EQ(started->arguments, launchCommand(*t.app, profile, session, c.serverType).arguments);
        EXPECT_EQ(started->arguments.first(), u"+set"_s);
        EXPECT_EQ(started->arguments.last(), u"luke.cfg"_s);
    }
    EXPECT_EQ(launcher.starts, 5);
}

TEST_F(ServerLaunch, TheEmptyAddressOfInternetWithMercArrivesAsAnEmptyArgumentAndTheGameTypeComesLast)
{
    const StubServer server = stub();
    session.merc = true;
    profile.setValue(F::optDefaultGameType(3), 1);
    startServerAfterConfiguration(*t.app, profile, session);
    const auto started = server.waitForRecord();
    ASSERT_TRUE(started);
    EXPECT_EQ(started->arguments.mid(0, 9),
              QStringList({"+set", "dedicated", "2", "+set", "g_jediVmerc", "1", "+set", "net_ip", ""}));
    EXPECT_FALSE(started->arguments.contains(u"net_port"_s));
    EXPECT_EQ(started->arguments.mid(started->arguments.size() - 5),
              QStringList({"+set", "g_gametype", "3", "+exec", "luke.cfg"}));
}

TEST_F(ServerLaunch, FieldTextReachesTheServerAsPlainArgumentsAndRunsNothing)
{
    const QString payload = u"1.2.3.4; touch pwned1 $(touch pwned2) `touch pwned3` | touch pwned4 & \"'"_s;
    const QString name = u"jk2 ded; touch pwned5 $(touch pwned6)"_s;
    t.app->serverExecutable = name;
    const StubServer server = stub(name);
    session.ip = payload;
    session.sessionName = u"a b;c.cfg"_s;

    EXPECT_TRUE(startServerAfterConfiguration(*t.app, profile, session));
    const auto started = server.waitForRecord();
    ASSERT_TRUE(started);
    EXPECT_EQ(started->program, server.path());
    EXPECT_EQ(started->arguments.at(5), payload);
    EXPECT_EQ(started->arguments.last(), u"a b;c.cfg"_s);
    QThread::msleep(200);
    for (const QString& folder : {t.gameFolder(), t.root(), QDir::currentPath()})
        EXPECT_TRUE(QDir(folder).entryList({u"pwned*"_s}).isEmpty()) << folder.toStdString();
}

TEST_F(ServerLaunch, ABareNameIsLookedUpInTheGameFolderFirst)
{
    // "true" also lies on the path, where it would record nothing.
    t.app->serverExecutable = u"true"_s;
    const StubServer server = stub(u"true"_s);
    startServerAfterConfiguration(*t.app, profile, session);
    const auto started = server.waitForRecord();
    ASSERT_TRUE(started);
    EXPECT_EQ(started->program, server.path());
    EXPECT_EQ(launcher.requests.at(0).workingFolder, t.gameFolder());
}

TEST_F(ServerLaunch, WithoutAServerTypeNothingStartsTheRunGoesOnAndDefaultCfgIsCreatedEmptyOnlyWhenMissing)
{
    profile.setValue(F::chkServerType(2), 0);
    const int before = launchRetryCount();
    EXPECT_TRUE(startServerAfterConfiguration(*t.app, profile, session));
    EXPECT_EQ(launcher.starts, 0);
    EXPECT_EQ(launchRetryCount(), before + 1) << "the messaging step runs all the same";

    // Default.cfg, in the base folder whatever its case.
    const QString file = t.baseFolder() + u"/Default.cfg"_s;
    ASSERT_TRUE(QFileInfo(file).isFile());
    EXPECT_EQ(QFileInfo(file).size(), 0);

    writeFile(file, "set a 1\r\n");
    EnsureDefaultCfg(*t.app);
    EXPECT_EQ(fileBytes(file), QByteArray("set a 1\r\n"));

    QFile::remove(file);
    QDir(t.gameFolder()).rename(u"base"_s, u"BASE"_s);
    EnsureDefaultCfg(*t.app);
    EXPECT_TRUE(QFileInfo::exists(t.gameFolder() + u"BASE/Default.cfg"_s));
    EXPECT_FALSE(QFileInfo::exists(t.gameFolder() + u"Base"_s));
}

namespace {
/// Keeps the process-wide retry counter of a test to itself.
class RetryCounterScope {
public:
    explicit RetryCounterScope(int start) : m_saved(launchRetryCount()) { setLaunchRetryCount(start); }
    ~RetryCounterScope() { setLaunchRetryCount(m_saved); }

private:
    int m_saved;
};
} // namespace

TEST_F(ServerLaunch, MessagingIsArmedOnlyWhenTheBoxHasTheValueOne)
{
    RetryCounterScope scope(0);
    int arms = 0;
    const auto arm = [&](AppContext&, ServerProfile&) { ++arms; };
    runMessagingStep(*t.app, profile, arm);
    EXPECT_EQ(arms, 0);
    profile.setValue(F::chkSendMessage, 1);
    runMessagingStep(*t.app, profile, arm);
    EXPECT_EQ(arms, 1);
    EXPECT_EQ(launchRetryCount(), 2) << "every pass counts, armed or not";
}

TEST_F(ServerLaunch, AnAddressInUseIsTriedAgainUntilTheCounterPassesOneThousand)
{
    profile.setValue(F::chkSendMessage, 1);
    {
        RetryCounterScope scope(0);
        int arms = 0;
        runMessagingStep(*t.app, profile, [&](AppContext&, ServerProfile&) {
            if (++arms < 3)
                raiseError(err::AddressInUse);
        });
        EXPECT_EQ(arms, 3);
        EXPECT_EQ(launchRetryCount(), 3);
    }
    {
        RetryCounterScope scope(995);
        int arms = 0;
        EXPECT_NO_THROW(runMessagingStep(*t.app, profile, [&](AppContext&, ServerProfile&) {
            ++arms;
            raiseError(err::AddressInUse);
        }));
        EXPECT_EQ(arms, 6) << "passes 996 to 1001; above 1000 it gives up silently";
        EXPECT_EQ(launchRetryCount(), 1001);
        arms = 0;
        runMessagingStep(*t.app, profile, [&](AppContext&, ServerProfile&) {
            ++arms;
            raiseError(err::AddressInUse);
        });
        EXPECT_EQ(arms, 1) << "the counter is never reset, so a later launch gives up at once";
    }
}

TEST_F(ServerLaunch, OtherMessagingErrorsAndTheCountersOverflowGoToTheCaller)
{
    profile.setValue(F::chkSendMessage, 1);
    RetryCounterScope scope(0);
    EXPECT_THROW(runMessagingStep(*t.app, profile, [](AppContext&, ServerProfile&) { raiseError(err::TypeMismatch); }),
                 RuntimeError);
    setLaunchRetryCount(32767);
    try {
        runMessagingStep(*t.app, profile, [](AppContext&, ServerProfile&) {});
        FAIL() << "a 16-bit counter overflows";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::Overflow);
    }
}
