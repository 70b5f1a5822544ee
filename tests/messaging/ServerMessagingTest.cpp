// The timed messages on a real UDP socket on 127.0.0.1 (the tick driven directly, the
// blocking wait recorded), the say datagram, and the messaging's part of OK and the load.
#include "commands/OkCommand.h"
#include "messaging/ArmMessaging.h"
#include "messaging/SayDatagram.h"
#include "messaging/ServerMessaging.h"
#include "model/Constants.h"
#include "model/OptionRules.h"
#include "model/ServerProfile.h"
#include "platform/UdpSocket.h"
#include "settings/MainSettings.h"
#include "support/ErrorBox.h"
#include "support/Errors.h"
#include "testkit/BoxExpect.h"
#include "testkit/FakeWindows.h"
#include "testkit/TestApp.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QNetworkDatagram>
#include <QUdpSocket>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

constexpr auto kConfig = F::txtServerConfig;

QByteArray oob(const char* rest, int size = -1) { return QByteArray(4, '\xff') + QByteArray(rest, size); }

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
    /// Arms afresh: the count at 0 and no waits seen.
    void rearm()
    {
        messaging().setCounter(0);
        t.blockingWait.waits.clear();
        arm();
    }
    void tick(int times = 1)
    {
        for (int i = 0; i < times; ++i)
            messaging().tmrServerMessage_Timer();
    }
    /// Every datagram that has arrived, waiting a little for the first.
    std::vector<QByteArray> received(int waitMs = 1000)
    {
        std::vector<QByteArray> got;
        for (int wait = waitMs; receiver.hasPendingDatagrams() || receiver.waitForReadyRead(wait); wait = 50)
            got.push_back(receiver.receiveDatagram().data());
        return got;
    }
    /// Sends through the recording sockets instead of real ones.
    void record() { t.app->services.sockets = &sockets; }
    QStringList sent() const { return sockets.journal.filter(u"send:"_s); }
    TestApp t;
    RecordingSockets sockets;
    ServerProfile profile;
    QUdpSocket receiver;
};

TEST(SayDatagram, BothFormsByteForByte)
{
    const struct {
        const char* what;
        QString password, text;
        QByteArray bytes;
    } cases[] = {
        {"password", u"secret"_s, u"hello"_s, oob("rcon secret say hello")},
        {"blanks in and around the password are kept", u" my pass "_s, u"x"_s, oob("rcon  my pass  say x")},
        {"no password: the say follows the word directly", QString(), u"^3hi"_s, oob("rcon say ^3hi")},
        {"a blank password is a password", u" "_s, u"hi"_s, oob("rcon   say hi")},
        {"a character above 127 is its Latin-1 byte", u"p\u00e4ss"_s, u"caf\u00e9 \u00ff"_s,
         oob("rcon p\xe4ss say caf\xe9 \xff")},
        {"a character outside Latin-1 becomes a question mark", u"pw"_s, u"5 \u20ac"_s, oob("rcon pw say 5 ?")},
        {"quotes, semicolons and a trailing blank go as they stand", u"pw"_s, u"a \"b\"; quit "_s,
         oob("rcon pw say a \"b\"; quit ")},
        {"no terminator, and a NUL in the text goes as it stands", u"pw"_s, u"a"_s + QChar(0) + u"b"_s,
         oob("rcon pw say a\0b", 15)}};
    for (const auto& c : cases)
        EXPECT_EQ(sayDatagram(c.password, c.text), c.bytes) << c.what;
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
    EXPECT_EQ(duringWait, std::vector<QByteArray>{oob("rcon secret say ^2first")});
    EXPECT_EQ(received(), std::vector<QByteArray>{oob("rcon secret say ^1changed")});
    EXPECT_EQ(t.blockingWait.waits, std::vector<int>{2000});
    EXPECT_EQ(messaging().counter(), 0);
    // And again every interval, both lines each time; without a password the short form.
    t.blockingWait.during = nullptr;
    profile.setText(kConfig(14), QString());
    tick(2);
    EXPECT_EQ(received(), (std::vector<QByteArray>{oob("rcon say ^2first"), oob("rcon say ^1changed")}));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(Messaging, TheIntervalIsTheLeadingNumberOfItsTextAndNeverLessThanOne)
{
    const std::pair<const char*, int> cases[] = {{"3 minutes", 3}, {" 2", 2},  {"1e0", 1}, {"4.0", 4}, {"0", 0},
                                                 {"abc", 0},       {"2.5", 0}, {"", 0},    {"-1", 0}};
    for (const auto& [interval, ticks] : cases) {
        SCOPED_TRACE(interval);
        profile.setText(F::txtMsgTimer, QString::fromLatin1(interval));
        rearm();
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
    // An interval lowered below the count stops the messages for good.
    profile.setText(F::txtMsgTimer, u"5"_s);
    rearm();
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
        const char *first, *second;
        std::vector<QByteArray> sent;
    } cases[] = {{"", "^1second", {oob("rcon secret say ^1second")}},
                 {"^2first", "", {oob("rcon secret say ^2first")}},
                 {"", "", {}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.first) + "|" + c.second);
        profile.setText(F::txtMsg(0), QString::fromLatin1(c.first));
        profile.setText(F::txtMsg(1), QString::fromLatin1(c.second));
        rearm();
        tick(2);
        EXPECT_EQ(received(100), c.sent);
        EXPECT_EQ(t.blockingWait.waits, std::vector<int>{2000});
        EXPECT_EQ(messaging().counter(), 0);
    }
}

TEST_F(Messaging, TheAddressIsTrimmedHostAndPortAreFixedAtArmingAndASecondArmingReopens)
{
    record();
    profile.setText(kConfig(16), u"  10.0.0.5 "_s);
    profile.setText(kConfig(12), u" 29070 "_s);
    profile.setText(F::txtMsgTimer, u"3"_s);
    arm();
    profile.setText(kConfig(16), u"10.9.9.9"_s);
    profile.setText(kConfig(12), u"1"_s);
    tick(4);
    EXPECT_EQ(sockets.journal, QStringList({u"host:10.0.0.5"_s, u"port:29070"_s, u"send:rcon secret say ^2first"_s,
                                            u"send:rcon secret say ^1second"_s}));
    sockets.journal.clear();
    arm();
    EXPECT_EQ(sockets.journal.value(0), u"close"_s);
    EXPECT_EQ(messaging().counter(), 1);
    tick(2);
    EXPECT_EQ(sent().size(), 2);
}

TEST_F(Messaging, FailedSendsAndHostsThatCannotBeFoundAreNoErrorOfTheTick)
{
    sockets.failSends = true;
    record();
    arm();
    tick(2);
    EXPECT_EQ(sent().size(), 2);
    EXPECT_EQ(messaging().counter(), 0);
    EXPECT_EQ(t.blockingWait.waits.size(), 1u);
    t.app->services.sockets = &t.sockets;
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
    // A port that is no number fails at arming, before the timer starts.
    for (const char* port : {"abc", "", "28070x"}) {
        SCOPED_TRACE(port);
        ServerProfile p;
        p.setText(kConfig(12), QString::fromLatin1(port));
        EXPECT_THROW(ArmServerMessaging(*t.app, p), RuntimeError);
        EXPECT_FALSE(ServerMessaging::of(*t.app, p).tmrServerMessage().isActive());
    }
}

TEST_F(Messaging, AnEmptyAddressIsTheComputersNameAndUncheckingTheBoxSendsUntilTheSocketIsClosedOnTheWayOut)
{
    t.names.computer = u"localhost"_s;
    profile.setText(kConfig(16), u"   "_s);
    profile.setValue(F::chkSendMessage, 1);
    arm();
    EXPECT_EQ(messaging().udpPeerA().remoteHost(), u"localhost"_s);
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

class MessagingOk : public Messaging {
protected:
    void SetUp() override
    {
        Messaging::SetUp();
        profile.setValue(F::chkMapAutoCycle, 1);
        profile.setValue(F::chkSendMessage, 1);
        profile.setText(F::txtMsgTimer, u"1"_s);
    }
    void ok() { cmdOk_Click(*t.app, profile, windows); }
    std::string shown() const { return t.prompts.texts().join(u'|').toStdString(); }
    FakeWindowHost windows{*t.app};
};

// The refusal without a password is the launch checks' (tests/commands).
TEST_F(MessagingOk, OkArmsAfterTheStartOnlyWithTheBoxAndASecondOkKeepsTheCount)
{
    profile.setValue(F::chkSendMessage, 0);
    profile.setText(kConfig(14), QString()); // without the box no password is needed
    ok();
    EXPECT_EQ(ServerMessaging::find(profile), nullptr);
    profile.setValue(F::chkSendMessage, 1);
    profile.setText(kConfig(14), u"secret"_s);
    ok();
    ASSERT_TRUE(t.prompts.shown.empty()) << shown();
    ASSERT_EQ(t.launcher.started.size(), 2u);
    ServerMessaging* messaging = ServerMessaging::find(profile);
    ASSERT_NE(messaging, nullptr);
    EXPECT_TRUE(messaging->tmrServerMessage().isActive());
    EXPECT_EQ(messaging->tmrServerMessage().interval(), 65535);
    EXPECT_FALSE(messaging->tmrServerMessage().isSingleShot());
    EXPECT_EQ(messaging->counter(), 0);
    profile.setText(F::txtMsgTimer, u"3"_s);
    ASSERT_TRUE(QMetaObject::invokeMethod(&messaging->tmrServerMessage(), "timeout"));
    messaging->tmrServerMessage_Timer();
    ok();
    EXPECT_EQ(ServerMessaging::find(profile), messaging);
    EXPECT_EQ(messaging->counter(), 2) << "the timer's tick and one more";
    messaging->tmrServerMessage_Timer();
    EXPECT_EQ(received().size(), 2u);
    EXPECT_EQ(t.launcher.started.size(), 3u);
}

TEST_F(MessagingOk, APortThatIsNoNumberGivesTheLaunchsErrorBoxBeforeOrAfterTheStart)
{
    // The session takes an empty port as the default one and starts the server; the
    // socket wants a number. Letters are refused before the start.
    for (const auto& [port, starts] : {std::pair{"", 1u}, {"abc", 0u}}) {
        SCOPED_TRACE(port);
        TestApp app;
        FakeWindowHost host{*app.app};
        ServerProfile p;
        p.setValue(F::chkMapAutoCycle, 1);
        p.setValue(F::chkSendMessage, 1);
        p.setText(kConfig(14), u"secret"_s);
        p.setText(kConfig(12), QString::fromLatin1(port));
        cmdOk_Click(*app.app, p, host);
        ASSERT_EQ(app.prompts.shown.size(), 2u) << app.prompts.texts().join(u'|').toStdString();
        EXPECT_TRUE(isBox(
            app.prompts.shown.front(),
            errorBox(err::TypeMismatch, u"arena-steward::Code.CreateJediConfiguration(Function) (arena-steward)"_s)));
        EXPECT_TRUE(isBox(app.prompts.last(),
                          {kProductTitle, Icon::Critical, u"Could not start server!"_s + kTail, Buttons::Ok}));
        EXPECT_EQ(app.launcher.started.size(), starts);
        ServerMessaging* armed = ServerMessaging::find(p);
        EXPECT_EQ(armed != nullptr, starts == 1u);
        EXPECT_FALSE(armed && armed->tmrServerMessage().isActive());
        EXPECT_EQ(host.calls.filter(u"minimize"_s).size(), 0);
    }
}

TEST(MessagingRules, TickingTheBoxSelectsMinimiseAndTheLoadRunsTheRuleAfterTheStoredOption)
{
    ServerProfile profile;
    attachMessagingRules(profile);
    attachMessagingRules(profile);
    ASSERT_TRUE(profile.isSet(F::optStartClose));
    auto minimiseAndClose = [](const ServerProfile& p) {
        return std::pair(p.isSet(F::optStartMinimize), p.isSet(F::optStartClose));
    };
    profile.setValue(F::chkSendMessage, 1);
    EXPECT_EQ(minimiseAndClose(profile), std::pair(true, false));
    profile.setValue(F::optStartClose, 1);
    profile.setValue(F::chkSendMessage, 0);
    EXPECT_EQ(minimiseAndClose(profile), std::pair(false, true));
    // The load runs the box's rule after the stored start option.
    const struct {
        const char *what, *appMinimize, *msgOn; // nullptr: not stored
        bool minimize;
    } cases[] = {{"a first run: no option stored, messaging on by default", nullptr, nullptr, true},
                 {"close stored, messaging on", "optStartClose", "1", true},
                 {"close stored, messaging off", "optStartClose", "0", false},
                 {"minimise stored, messaging off", "optStartMinimize", "0", true},
                 {"nothing but messaging off", nullptr, "0", false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        TestApp t;
        if (c.appMinimize)
            t.store->SaveSetting(u"AppMinimize"_s, QString::fromLatin1(c.appMinimize));
        if (c.msgOn)
            t.store->SaveSetting(u"MsgOn"_s, QString::fromLatin1(c.msgOn));
        ServerProfile loaded;
        attachOptionRules(*t.app, loaded);
        attachMessagingRules(loaded);
        GetMainSettings(*t.app, loaded);
        EXPECT_EQ(minimiseAndClose(loaded), std::pair(c.minimize, !c.minimize));
    }
}

} // namespace
