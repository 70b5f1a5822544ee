#include "messaging/ServerMessaging.h"
#include "model/ServerProfile.h"
#include "ui/WiredMainWindow.h"

#include <QCheckBox>
#include <QRadioButton>

using namespace steward;

namespace {

class MessagingWindow : public steward::testing::WiredMainWindow {
protected:
    void SetUp() override
    {
        t.app->services.sockets = &sockets;
        openMainWindow();
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

    steward::testing::RecordingSockets sockets;
};

} // namespace

TEST_F(MessagingWindow, AFirstRunTicksTheBoxWithMinimiseAndClickingItOnSelectsMinimise)
{
    auto* box = window->control<QCheckBox>(QStringLiteral("chkSendMessage"));
    auto* close = window->control<QRadioButton>(QStringLiteral("optStartClose"));
    auto* minimise = window->control<QRadioButton>(QStringLiteral("optStartMinimize"));
    EXPECT_EQ(box->checkState(), Qt::Checked);
    EXPECT_TRUE(minimise->isChecked());
    EXPECT_FALSE(close->isChecked());

    box->click();
    ASSERT_EQ(box->checkState(), Qt::Unchecked);
    close->click();
    box->click();
    EXPECT_TRUE(minimise->isChecked());
    close->click();
    box->click();
    EXPECT_TRUE(close->isChecked()) << "off changes nothing";
}

TEST_F(MessagingWindow, CloseAndFileExitShutTheMessageSocket)
{
    for (const bool exit : {false, true}) {
        SCOPED_TRACE(exit ? "File > Exit" : "Close");
        if (!window)
            openMainWindow();
        armAndSend();
        if (exit)
            action(QStringLiteral("id_FileExit"))->trigger();
        else
            click(QStringLiteral("cmdCancel"));
        QApplication::processEvents();
        EXPECT_EQ(sockets.journal.value(0), QStringLiteral("close"));
        if (!exit) {
            EXPECT_EQ(sockets.journal, QStringList{QStringLiteral("close")});
        }
        window = host.mainWindow();
    }
}
