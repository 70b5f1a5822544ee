// The messaging's part of OK and of the window's load: the password test, the arming at
// the end of the launch, the check box's rule and the first run.
#include "commands/OkCommand.h"
#include "messaging/ArmMessaging.h"
#include "messaging/ServerMessaging.h"
#include "settings/MainSettings.h"
#include "model/Constants.h"
#include "model/OptionRules.h"
#include "model/ServerProfile.h"
#include "testkit/FakeWindows.h"
#include "support/ErrorBox.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <QFileInfo>
#include <QUdpSocket>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

constexpr auto kConfig = F::txtServerConfig;

class MessagingOk : public ::testing::Test {
protected:
    MessagingOk()
    {
        receiver.bind(QHostAddress::LocalHost, 0);
        profile.setValue(F::chkMapAutoCycle, 1);
        profile.setValue(F::chkSendMessage, 1);
        profile.setText(kConfig(16), u"127.0.0.1"_s);
        profile.setText(kConfig(12), QString::number(receiver.localPort()));
        profile.setText(kConfig(14), u"secret"_s);
        profile.setText(F::txtMsgTimer, u"1"_s);
    }
    void ok() { cmdOk_Click(*t.app, profile, windows); }
    int datagrams()
    {
        int count = 0;
        receiver.waitForReadyRead(1000);
        while (receiver.hasPendingDatagrams()) {
            receiver.readDatagram(nullptr, 0);
            ++count;
            if (!receiver.hasPendingDatagrams())
                receiver.waitForReadyRead(50);
        }
        return count;
    }

    TestApp t;
    ServerProfile profile;
    FakeWindowHost windows{*t.app};
    QUdpSocket receiver;
};

} // namespace

TEST_F(MessagingOk, WithoutAPasswordOkIsRefusedBeforeAnythingIsWritten)
{
    profile.setText(kConfig(14), QString());
    ok();
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(
        isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation,
                                 u"An rcon password is required to enable server messaging"_s + kTail, Buttons::Ok}));
    EXPECT_TRUE(t.launcher.started.empty());
    EXPECT_EQ(ServerMessaging::find(profile), nullptr);
    EXPECT_FALSE(QFileInfo::exists(t.baseFolder() + u"/luke.cfg"_s));

    // Without the box ticked, no password is needed and nothing is armed.
    profile.setValue(F::chkSendMessage, 0);
    t.prompts.shown.clear();
    ok();
    EXPECT_TRUE(t.prompts.shown.empty()) << t.prompts.texts().join(u'|').toStdString();
    EXPECT_EQ(t.launcher.started.size(), 1u);
    EXPECT_EQ(ServerMessaging::find(profile), nullptr);
}

TEST_F(MessagingOk, OkArmsAfterTheStartAndASecondOkKeepsTheCount)
{
    ok();
    ASSERT_TRUE(t.prompts.shown.empty()) << t.prompts.texts().join(u'|').toStdString();
    ASSERT_EQ(t.launcher.started.size(), 1u);
    ServerMessaging* messaging = ServerMessaging::find(profile);
    ASSERT_NE(messaging, nullptr);
    EXPECT_TRUE(messaging->tmrServerMessage().isActive());
    EXPECT_EQ(messaging->tmrServerMessage().interval(), 65535);

    profile.setText(F::txtMsgTimer, u"3"_s);
    messaging->tmrServerMessage_Timer();
    messaging->tmrServerMessage_Timer();
    ok();
    EXPECT_EQ(ServerMessaging::find(profile), messaging);
    EXPECT_EQ(messaging->counter(), 2);
    messaging->tmrServerMessage_Timer();
    EXPECT_EQ(datagrams(), 2);
    EXPECT_EQ(t.launcher.started.size(), 2u);
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

TEST(MessagingRules, TickingTheBoxSelectsMinimiseAndClearingItChangesNothing)
{
    ServerProfile profile;
    attachMessagingRules(profile);
    attachMessagingRules(profile);
    ASSERT_TRUE(profile.isSet(F::optStartClose));
    profile.setValue(F::chkSendMessage, 1);
    EXPECT_TRUE(profile.isSet(F::optStartMinimize));
    EXPECT_FALSE(profile.isSet(F::optStartClose));
    profile.setValue(F::optStartClose, 1);
    profile.setValue(F::chkSendMessage, 0);
    EXPECT_TRUE(profile.isSet(F::optStartClose));
    EXPECT_FALSE(profile.isSet(F::optStartMinimize));
}

TEST(MessagingRules, TheLoadRunsTheBoxsRuleAfterTheStoredStartOption)
{
    struct Case {
        const char* what;
        const char* appMinimize; // nullptr: not stored
        const char* msgOn;       // nullptr: not stored
        bool minimize;
    };
    const Case cases[] = {
        {"a first run: no option stored, messaging on by default", nullptr, nullptr, true},
        {"close stored, messaging on", "optStartClose", "1", true},
        {"close stored, messaging off", "optStartClose", "0", false},
        {"minimise stored, messaging off", "optStartMinimize", "0", true},
        {"nothing but messaging off", nullptr, "0", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TestApp t;
        if (c.appMinimize)
            t.store->SaveSetting(u"AppMinimize"_s, QString::fromLatin1(c.appMinimize));
        if (c.msgOn)
            t.store->SaveSetting(u"MsgOn"_s, QString::fromLatin1(c.msgOn));
        ServerProfile profile;
        attachOptionRules(*t.app, profile);
        attachMessagingRules(profile);
        GetMainSettings(*t.app, profile);
        EXPECT_EQ(profile.isSet(F::optStartMinimize), c.minimize);
        EXPECT_EQ(profile.isSet(F::optStartClose), !c.minimize);
    }
}
