#include "testkit/LaunchKit.h"

#include "commands/ExportServer.h"
#include "commands/ServerLaunch.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <functional>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {

constexpr auto kCfg = F::txtServerConfig;

class ExportServer : public ::testing::Test {
protected:
    ExportServer()
    {
        t.app->services.launcher = &launcher;
        profile.setValue(F::chkMapAutoCycle, 1);
    }
    TestApp t;
    CountingLauncher launcher;
    ServerProfile profile;
};

} // namespace

TEST_F(ExportServer, EachFailedCheckHasItsOwnWordingAndPage)
{
    const auto manualCycle = [](ServerProfile& p) { p.setValue(F::chkMapAutoCycle, 0); };
    const QString gone = t.root() + QStringLiteral("/gone.cfg");
    const struct {
        const char* name;
        std::function<void(ServerProfile&)> setup;
        QString text;
        int page;
    } cases[] = {
        {"no session", [](ServerProfile& p) { p.setText(kCfg(1), {}); }, QStringLiteral("A Session name is required"),
         0},
        {"forbidden character", [](ServerProfile& p) { p.setText(kCfg(1), QStringLiteral("a<b")); },
         QStringLiteral("Invalid session name, you cannot use \\/:*?<>| in a session name"), 3},
        {"saved list missing",
         [&](ServerProfile& p) {
             manualCycle(p);
             p.setValue(F::chkUseINI, 1);
             p.setText(F::txtServerINI, gone);
         },
         QStringLiteral("Selected Map List ") + gone + QStringLiteral(" is missing, please define a new map list"), 2},
        {"no maps", manualCycle, QStringLiteral("No Maps have been selected"), 2},
        {"no starting map",
         [&](ServerProfile& p) {
             manualCycle(p);
             p.field(F::lsvMapRotation).addRow({QStringLiteral("ffa_bespin")});
         },
         QStringLiteral("No Starting Map has been selected"), 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        profile.resetAll();
        profile.setValue(F::chkMapAutoCycle, 1);
        profile.setValue(F::vsMainTab, 3);
        t.prompts.shown.clear();
        c.setup(profile);
        mnuExportServer_Click(*t.app, profile);
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation, c.text + kTail, Buttons::Ok}));
        EXPECT_EQ(profile.value(F::vsMainTab), c.page);
    }
    EXPECT_TRUE(t.opener.opened.empty());
}

TEST_F(ExportServer, TheWrittenFileIsAnnouncedAndOpenedAndNothingStarts)
{
    profile.setText(kCfg(1), QStringLiteral("My Server"));
    profile.setConfigurationChanged(true);
    profile.setFormPointer(pointer::Hourglass);
    mnuExportServer_Click(*t.app, profile);

    ASSERT_FALSE(t.prompts.shown.empty());
    EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Information,
                                         QStringLiteral("'my_server.cfg' has been created") + kTail, Buttons::Ok}));
    ASSERT_EQ(t.opener.opened.size(), 1u);
    EXPECT_EQ(t.opener.opened.front(), QUrl::fromLocalFile(t.baseFolder() + QStringLiteral("/my_server.cfg")));
    EXPECT_EQ(launcher.starts, 0);
    EXPECT_TRUE(profile.configurationChanged()) << "an export leaves the change mark alone";
    EXPECT_EQ(profile.formPointer(), pointer::Default);
}
