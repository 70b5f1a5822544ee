// The timed messages on the real main window: the first run's start option, the box's
// click, and Close shutting the message socket.
#include "messaging/ServerMessaging.h"
#include "model/ServerProfile.h"
#include "support/LocalAddress.h"
#include "testkit/NoAddressLookup.h"
#include "testkit/TestApp.h"
#include "ui/CommandWiring.h"
#include "ui/MainWindowHost.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <gtest/gtest.h>

using namespace steward;

namespace {

class MessagingWindow : public ::testing::Test {
protected:
    void SetUp() override
    {
        t.app->services.sockets = &sockets;
        profile = host.loadMainWindow();
        window = host.mainWindow();
        ASSERT_NE(window, nullptr);
        host.showMainWindow();
    }
    void TearDown() override
    {
        host.closeAllForms();
        QApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    /// Arms the window's messaging and sends once, so that its socket is open.
    void armAndSend()
    {
        profile->setText(F::txtMsgTimer, QStringLiteral("1"));
        ServerMessaging& messaging = ServerMessaging::of(*t.app, *profile);
        messaging.arm();
        messaging.tmrServerMessage_Timer();
        ASSERT_TRUE(messaging.udpPeerA().isOpen());
        sockets.journal.clear();
    }

    steward::testing::TestApp t;
    steward::testing::RecordingSockets sockets;
    QtWindowHost host{*t.app};
    steward::testing::NoAddressLookup addresses;
    CommandWiring wiring{*t.app, host, addresses};
    ServerProfile* profile = nullptr;
    frmMain* window = nullptr;
};

} // namespace

TEST_F(MessagingWindow, AFirstRunEndsWithMinimiseSelectedByTheTickedBox)
{
    EXPECT_EQ(window->control<QCheckBox>(QStringLiteral("chkSendMessage"))->checkState(), Qt::Checked);
    EXPECT_TRUE(window->control<QRadioButton>(QStringLiteral("optStartMinimize"))->isChecked());
    EXPECT_FALSE(window->control<QRadioButton>(QStringLiteral("optStartClose"))->isChecked());
}

TEST_F(MessagingWindow, ClickingTheBoxOnSelectsMinimiseAndOffChangesNothing)
{
    auto* box = window->control<QCheckBox>(QStringLiteral("chkSendMessage"));
    auto* close = window->control<QRadioButton>(QStringLiteral("optStartClose"));
    auto* minimise = window->control<QRadioButton>(QStringLiteral("optStartMinimize"));
    box->click();
    ASSERT_EQ(box->checkState(), Qt::Unchecked);
    close->click();
    box->click();
    EXPECT_TRUE(minimise->isChecked());
    close->click();
    box->click();
    EXPECT_TRUE(close->isChecked());
}

TEST_F(MessagingWindow, CloseShutsTheMessageSocket)
{
    armAndSend();
    window->findChild<QPushButton*>(QStringLiteral("cmdCancel"))->click();
    EXPECT_EQ(sockets.journal, QStringList{QStringLiteral("close")});
}

TEST_F(MessagingWindow, FileExitShutsTheMessageSocketToo)
{
    armAndSend();
    window->menuBar()->findChild<QAction*>(QStringLiteral("id_FileExit"))->trigger();
    QApplication::processEvents();
    EXPECT_EQ(sockets.journal.value(0), QStringLiteral("close"));
}
