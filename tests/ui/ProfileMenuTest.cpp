#include "commands/ProfileSet.h"
#include "model/ServerProfile.h"
#include "settings/SettingsStore.h"
#include "ui/Application.h"
#include "ui/WiredMainWindow.h"

#include <QAction>
#include <QMenu>

using namespace steward;
using namespace steward::testing;

namespace {

class ProfileMenu : public WiredMainWindow {
protected:
    void SetUp() override
    {
        writeFile(t.gameFolder() + QStringLiteral("jk2mvded"), "#!/bin/sh\n");
        for (const QString& name : {QString(), QStringLiteral("ctf")}) {
            IniSettingsStore store(profiles.settingsFile(name));
            store.SaveSetting(QStringLiteral("PathToJedi"), t.gameFolder());
            store.SaveSetting(QStringLiteral("PathToServer"), QStringLiteral("jk2mvded"));
            store.SaveSetting(QStringLiteral("RunOnce"), QStringLiteral("1"));
            store.SaveSetting(QStringLiteral("ServerInfo12"),
                              name.isEmpty() ? QStringLiteral("Default Arena") : QStringLiteral("Flag Arena"));
        }
        profiles.use(*t.app, QString());
        wiring.setProfiles(&profiles);
        openMainWindow();
    }

    ProfileSet profiles{t.root() + QStringLiteral("/config")};
};

} // namespace

TEST_F(ProfileMenu, OffersEveryProfileAndSwitchesTheWindowToIt)
{
    auto* menu = window->menuBar()->findChild<QMenu*>(QStringLiteral("mnuProfile"));
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->title(), QStringLiteral("&Profile"));
    const struct {
        const char* name;
        const char* text;
    } entries[] = {{"mnuProfileNew", "New Profile..."},
                   {"mnuProfileRename", "Rename Profile..."},
                   {"mnuProfileDelete", "Delete Profile..."},
                   {"mnuProfile_default", "default"},
                   {"mnuProfile_ctf", "ctf"}};
    for (const auto& e : entries) {
        QAction* a = action(QString::fromLatin1(e.name));
        ASSERT_NE(a, nullptr) << e.name;
        EXPECT_EQ(a->text(), QString::fromLatin1(e.text));
    }
    EXPECT_TRUE(action(QStringLiteral("mnuProfile_default"))->isChecked());
    EXPECT_FALSE(action(QStringLiteral("mnuProfile_ctf"))->isChecked());
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Arena Steward"));
    EXPECT_EQ(profile->text(F::txtServerConfig(2)), QStringLiteral("Default Arena"));

    action(QStringLiteral("mnuProfile_ctf"))->trigger();
    QApplication::processEvents();
    ASSERT_NE(host.mainWindow(), nullptr);
    EXPECT_EQ(host.mainWindow()->windowTitle(), QStringLiteral("Arena Steward - ctf"));
    EXPECT_EQ(host.mainWindow()->profile().text(F::txtServerConfig(2)), QStringLiteral("Flag Arena"));
    EXPECT_TRUE(action(QStringLiteral("mnuProfile_ctf"))->isChecked());
}

TEST(ProfileArgument, IsTakenOutOfTheCommandLineThatStartUpReads)
{
    const struct {
        QStringList arguments;
        const char* commandLine;
        const char* profile;
    } cases[] = {
        {{}, "", ""},
        {{QStringLiteral("-check")}, "-check", ""},
        {{QStringLiteral("--profile"), QStringLiteral("ctf")}, "", "ctf"},
        {{QStringLiteral("--profile=duel"), QStringLiteral("-check")}, "-check", "duel"},
        {{QStringLiteral("-check"), QStringLiteral("--profile")}, "-check --profile", ""},
    };
    for (const auto& c : cases) {
        QString profile;
        EXPECT_EQ(commandLineText(c.arguments, &profile), QString::fromLatin1(c.commandLine));
        EXPECT_EQ(profile, QString::fromLatin1(c.profile));
    }
}
