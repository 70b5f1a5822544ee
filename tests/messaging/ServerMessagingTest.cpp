// The timed messages on a real UDP socket: a receiver on 127.0.0.1 stands in for the
// server, the tick is driven directly, and the blocking wait is recorded rather than slept.
#include "messaging/ArmMessaging.h"
#include "messaging/ServerMessaging.h"
#include "platform/UdpSocket.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "testkit/TestApp.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QUdpSocket>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

constexpr auto kConfig = F::txtServerConfig;

QByteArray say(const char* password, const char* text)
{
    QByteArray d(4, '\xff');
    d += "rcon ";
    if (*password)
        d += QByteArray(password) + ' ';
    return d + "say " + text;
}

class Messaging : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(receiver.bind(QHostAddress::LocalHost, 0));
        profile.setText(kConfig(16), u"127.0.0.1"_s);
        profile.setText(kConfig(12), QString::number(receiver.localPort()));
        profile.setText(kConfig(14), u"secret"_s);
        profile.setText(F::txtMsgTimer, u"2"_s);
        profile.setText(F::txtMsg(0), u"^2first"_s);
        profile.setText(F::txtMsg(1), u"^1second"_s);
    }
    ServerMessaging& messaging() { return ServerMessaging::of(*t.app, profile); }
    void arm() { ArmServerMessaging(*t.app, profile); }
    void tick(int times = 1)
    {
        for (int i = 0; i < times; ++i)
            messaging().tmrServerMessage_Timer();
    }
    /// Every datagram that has arrived, waiting a little for the first.
    std::vector<QByteArray> received(int waitMs = 1000)
    {
        std::vector<QByteArray> got;
        if (!receiver.hasPendingDatagrams())
            receiver.waitForReadyRead(waitMs);
        while (receiver.hasPendingDatagrams()) {
            QByteArray d(static_cast<int>(receiver.pendingDatagramSize()), 0);
            receiver.readDatagram(d.data(), d.size());
            got.push_back(d);
            if (!receiver.hasPendingDatagrams())
                receiver.waitForReadyRead(50);
        }
        return got;
    }

    TestApp t;
    RecordingSockets sockets;
    ServerProfile profile;
    QUdpSocket receiver;
};

} // namespace

TEST_F(Messaging, ArmingStartsTheTimerOfTicksOf65535MillisecondsThatRunTheTick)
{
    profile.setText(F::txtMsgTimer, u"99"_s);
    arm();
    EXPECT_EQ(messaging().tmrServerMessage().interval(), 65535);
    EXPECT_TRUE(messaging().tmrServerMessage().isActive());
    EXPECT_FALSE(messaging().tmrServerMessage().isSingleShot());
    EXPECT_EQ(messaging().udpPeerA().remoteHost(), u"127.0.0.1"_s);
    EXPECT_EQ(messaging().udpPeerA().remotePort(), receiver.localPort());
    EXPECT_EQ(messaging().counter(), 0);
    ASSERT_TRUE(QMetaObject::invokeMethod(&messaging().tmrServerMessage(), "timeout"));
    EXPECT_EQ(messaging().counter(), 1);
}

TEST_F(Messaging, AtTheIntervalBothLinesGoTwoSecondsApartAndTheCountStartsAgain)
{
    arm();
    tick();
    EXPECT_TRUE(received(100).empty());
    EXPECT_TRUE(t.blockingWait.waits.empty());
    EXPECT_EQ(messaging().counter(), 1);

    // During the wait the first line has gone and the second not yet; the second is read
    // after the wait, so a change made meanwhile goes out.
    std::vector<QByteArray> duringWait;
    t.blockingWait.during = [&] {
        duringWait = received();
        profile.setText(F::txtMsg(1), u"^1changed"_s);
    };
    tick();
    ASSERT_EQ(duringWait.size(), 1u);
    EXPECT_EQ(duringWait[0], say("secret", "^2first"));
    const auto after = received();
    ASSERT_EQ(after.size(), 1u);
    EXPECT_EQ(after[0], say("secret", "^1changed"));
    EXPECT_EQ(t.blockingWait.waits, std::vector<int>{2000});
    EXPECT_EQ(messaging().counter(), 0);

    // And again every interval, both lines each time.
    t.blockingWait.during = nullptr;
    tick(2);
    const auto next = received();
    ASSERT_EQ(next.size(), 2u);
    EXPECT_EQ(next[0], say("secret", "^2first"));
    EXPECT_EQ(next[1], say("secret", "^1changed"));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(Messaging, APasswordClearedAfterOkGivesTheFormWithoutPassword)
{
    arm();
    profile.setText(kConfig(14), QString());
    tick(2);
    const auto got = received();
    ASSERT_EQ(got.size(), 2u);
    EXPECT_EQ(got[0], say("", "^2first"));
    EXPECT_EQ(got[1], say("", "^1second"));
}

TEST_F(Messaging, TheIntervalIsTheLeadingNumberOfItsTextAndNeverLessThanOne)
{
    const std::pair<const char*, int> cases[] = {{"3 minutes", 3}, {" 2", 2},  {"1e0", 1}, {"4.0", 4}, {"0", 0},
                                                 {"abc", 0},       {"2.5", 0}, {"", 0},    {"-1", 0}};
    for (const auto& [interval, ticks] : cases) {
        SCOPED_TRACE(interval);
        profile.setText(F::txtMsgTimer, QString::fromLatin1(interval));
        messaging().setCounter(0);
        t.blockingWait.waits.clear();
        arm();
        tick(ticks > 0 ? ticks - 1 : 20);
        EXPECT_TRUE(received(50).empty());
        if (ticks == 0) {
            EXPECT_TRUE(t.blockingWait.waits.empty()) << "an interval that is never a count sends nothing";
            continue;
        }
        tick();
        EXPECT_EQ(received().size(), 2u);
    }
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(Messaging, AnIntervalLoweredBelowTheCountStopsTheMessagesForGood)
{
    profile.setText(F::txtMsgTimer, u"5"_s);
    arm();
    tick(3);
    profile.setText(F::txtMsgTimer, u"2"_s);
    tick(200);
    EXPECT_TRUE(received(100).empty());
    EXPECT_EQ(messaging().counter(), 203);
    EXPECT_TRUE(messaging().tmrServerMessage().isActive());
}

TEST_F(Messaging, AnEmptyLineIsLeftOutAndTheWaitAndCountStay)
{
    const struct {
        const char* first;
        const char* second;
        std::vector<QByteArray> sent;
    } cases[] = {
        {"", "^1second", {say("secret", "^1second")}}, {"^2first", "", {say("secret", "^2first")}}, {"", "", {}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.first) + "|" + c.second);
        profile.setText(F::txtMsg(0), QString::fromLatin1(c.first));
        profile.setText(F::txtMsg(1), QString::fromLatin1(c.second));
        messaging().setCounter(0);
        t.blockingWait.waits.clear();
        arm();
        tick(2);
        EXPECT_EQ(received(100), c.sent);
        EXPECT_EQ(t.blockingWait.waits, std::vector<int>{2000});
        EXPECT_EQ(messaging().counter(), 0);
    }
}

TEST_F(Messaging, AnEmptyAddressSendsToTheComputersOwnName)
{
    t.names.computer = u"localhost"_s;
    profile.setText(kConfig(16), u"   "_s);
    arm();
    EXPECT_EQ(messaging().udpPeerA().remoteHost(), u"localhost"_s);
    tick(2);
    EXPECT_EQ(received().size(), 2u);
}

TEST_F(Messaging, TheAddressIsTrimmedAndHostAndPortAreFixedAtArming)
{
    t.app->services.sockets = &sockets;
    profile.setText(kConfig(16), u"  10.0.0.5 "_s);
    profile.setText(kConfig(12), u" 29070 "_s);
    arm();
    profile.setText(kConfig(16), u"10.9.9.9"_s);
    profile.setText(kConfig(12), u"1"_s);
    tick(2);
    EXPECT_EQ(sockets.journal, QStringList({u"host:10.0.0.5"_s, u"port:29070"_s, u"send:rcon secret say ^2first"_s,
                                            u"send:rcon secret say ^1second"_s}));
}

TEST_F(Messaging, ASecondArmingReopensTheSocketAndKeepsTheCount)
{
    t.app->services.sockets = &sockets;
    profile.setText(F::txtMsgTimer, u"3"_s);
    arm();
    tick(3);
    tick(1);
    sockets.journal.clear();
    arm();
    EXPECT_EQ(sockets.journal.value(0), u"close"_s);
    EXPECT_EQ(messaging().counter(), 1);
    tick(2);
    EXPECT_EQ(sockets.journal.filter(u"send:"_s).size(), 2);
}

TEST_F(Messaging, FailedSendsAreIgnoredAndTheCountStartsAgain)
{
    sockets.failSends = true;
    t.app->services.sockets = &sockets;
    arm();
    tick(2);
    EXPECT_EQ(sockets.journal.filter(u"send:"_s).size(), 2);
    EXPECT_EQ(messaging().counter(), 0);
    EXPECT_EQ(t.blockingWait.waits.size(), 1u);
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(Messaging, AHostThatCannotBeFoundOrAClosedPortIsNoErrorOfTheTick)
{
    for (const char* host : {"no-such-host.invalid", "256.1.1.1"}) {
        SCOPED_TRACE(host);
        ServerProfile p;
        p.setText(kConfig(16), QString::fromLatin1(host));
        p.setText(kConfig(12), u"70000"_s);
        p.setText(F::txtMsgTimer, u"1"_s);
        p.setText(F::txtMsg(0), u"x"_s);
        ArmServerMessaging(*t.app, p);
        ServerMessaging& m = ServerMessaging::of(*t.app, p);
        EXPECT_NO_THROW(m.tmrServerMessage_Timer());
        EXPECT_EQ(m.counter(), 0);
    }
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(Messaging, APortThatIsNoNumberFailsAtArmingBeforeTheTimerStarts)
{
    t.app->services.sockets = &sockets;
    for (const char* port : {"abc", "", "28070x"}) {
        SCOPED_TRACE(port);
        ServerProfile p;
        p.setText(kConfig(12), QString::fromLatin1(port));
        try {
            ArmServerMessaging(*t.app, p);
            ADD_FAILURE() << "no error";
        } catch (const RuntimeError& e) {
            EXPECT_EQ(e.number(), err::TypeMismatch);
        }
        EXPECT_FALSE(ServerMessaging::of(*t.app, p).tmrServerMessage().isActive());
    }
}

TEST_F(Messaging, UncheckingTheBoxLeavesTheMessagesUntilTheSocketIsClosedOnTheWayOut)
{
    profile.setValue(F::chkSendMessage, 1);
    arm();
    profile.setValue(F::chkSendMessage, 0);
    tick(2);
    ASSERT_EQ(received().size(), 2u);
    EXPECT_TRUE(messaging().udpPeerA().isOpen());
    closeMessagingSocket(profile);
    EXPECT_FALSE(messaging().udpPeerA().isOpen());
    // A window that never armed has nothing to close.
    ServerProfile fresh;
    EXPECT_NO_FATAL_FAILURE(closeMessagingSocket(fresh));
    EXPECT_EQ(ServerMessaging::find(fresh), nullptr);
}

TEST(BlockingWait, TheRealWaitSleepsWithoutRunningEvents)
{
    bool ran = false;
    QObject context;
    QMetaObject::invokeMethod(
        &context, [&ran] { ran = true; }, Qt::QueuedConnection);
    QElapsedTimer clock;
    clock.start();
    ThreadSleepWait().wait(60);
    EXPECT_GE(clock.elapsed(), 60);
    EXPECT_FALSE(ran);
    QCoreApplication::sendPostedEvents(&context);
    EXPECT_TRUE(ran);
}
