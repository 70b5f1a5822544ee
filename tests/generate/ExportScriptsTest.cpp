#include "testkit/LaunchKit.h"

#include "commands/ExportScriptCommands.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/ErrorBox.h"
#include "testkit/BoxExpect.h"
#include "testkit/TestApp.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

namespace {

constexpr auto kCfg = F::txtServerConfig;
constexpr auto kSpin = F::txtServerConfigSpin;

class ExportScripts : public ::testing::Test {
protected:
    ExportScripts()
    {
        t.app->services.launcher = &launcher;
        t.app->serverExecutable = QStringLiteral("jk2ded.exe");
        profile.setText(kCfg(1), QStringLiteral("My Cfg"));
    }
    QString target(const char* name) const { return t.root() + QLatin1Char('/') + QLatin1String(name); }

    TestApp t;
    CountingLauncher launcher;
    ServerProfile profile;
};

struct ScriptCase {
    const char* name;
    const char* port;
    const char* ip;
    const char* zone;
    const char* hunk;
    const char* sound;
    bool merc;
    const char* batchLine;
    const char* shellLine;
};

const char kDefaultBatch[] =
    "\"jk2ded.exe\" +set com_zoneMegs 16 +set com_hunkMegs 32 +set com_soundmegs 16 +set vm_game 0 +set dedicated 2 "
    "+set net_port 28070 +exec My_Cfg.cfg";
const char kDefaultShell[] =
    "./jk2ded +set fs_basepath ./ +set com_zoneMegs 16 +set com_hunkMegs 32 +set com_soundmegs 16 +set vm_game 2 "
    "+set vm_cgame 2 +set vm_ui 2 +set dedicated 2 +set ttycon 0 +set net_port 28070 +exec my_cfg.cfg";

const ScriptCase kScriptCases[] = {
    {"defaults", "28070", "", "16", "32", "16", false, kDefaultBatch, kDefaultShell},
    {"port 0 and memory as leading numbers", "0", "", "016", "32.5", "", false,
     "\"jk2ded.exe\" +set com_zoneMegs 16 +set com_hunkMegs 32.5 +set com_soundmegs 0 +set vm_game 0 +set dedicated 2 "
     "+set net_port 28070 +exec My_Cfg.cfg",
     "./jk2ded +set fs_basepath ./ +set com_zoneMegs 16 +set com_hunkMegs 32.5 +set com_soundmegs 0 +set vm_game 2 "
     "+set vm_cgame 2 +set vm_ui 2 +set dedicated 2 +set ttycon 0 +set net_port 28070 +exec my_cfg.cfg"},
    {"port of letters", "abc", "", "16", "32", "16", false, kDefaultBatch, kDefaultShell},
    {"port with a number ahead of letters, Merc and an address", "123abc", "10.1.2.3", "24", "64", "8", true,
     "\"jk2ded.exe\" +set g_jediVmerc 1 +set com_zoneMegs 24 +set com_hunkMegs 64 +set com_soundmegs 8 +set vm_game 0 "
     "+set dedicated 2 +set net_port 123abc +set net_ip 10.1.2.3 +exec My_Cfg.cfg",
     "./jk2ded +set fs_basepath ./ +set g_jediVmerc 1 +set com_zoneMegs 24 +set com_hunkMegs 64 +set com_soundmegs 8 "
     "+set vm_game 2 +set vm_cgame 2 +set vm_ui 2 +set dedicated 2 +set ttycon 0 +set net_port 123abc +exec "
     "my_cfg.cfg"},
};

void apply(ServerProfile& p, const ScriptCase& c)
{
    p.setText(kCfg(12), QString::fromLatin1(c.port));
    p.setText(kCfg(16), QString::fromLatin1(c.ip));
    p.setText(kSpin(11), QString::fromLatin1(c.zone));
    p.setText(kSpin(5), QString::fromLatin1(c.hunk));
    p.setText(kSpin(12), QString::fromLatin1(c.sound));
    p.setValue(F::chkQuake3Specific(18), c.merc ? 1 : 0);
}

} // namespace

TEST_F(ExportScripts, TheBatchFileIsOneLineWithItsOwnCommand)
{
    for (const ScriptCase& c : kScriptCases) {
        SCOPED_TRACE(c.name);
        apply(profile, c);
        t.prompts.shown.clear();
        const QString file = target("run.bat");
        t.prompts.chooseFile(file);
        mnuBatchFile_Click(*t.app, profile);
        EXPECT_EQ(fileBytes(file), crlfText({QString::fromLatin1(c.batchLine)}));
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(),
                          {QStringLiteral("Batch File"), Icon::Information,
                           QStringLiteral("'") + file + QStringLiteral("' has been Saved") + kTail, Buttons::Ok}));
    }
}

TEST_F(ExportScripts, TheShellScriptIsWrittenWithCrLfAndNoAddress)
{
    for (const ScriptCase& c : kScriptCases) {
        SCOPED_TRACE(c.name);
        apply(profile, c);
        t.prompts.shown.clear();
        const QString file = target("start server.sh");
        t.prompts.chooseFile(file);
        mnuLinux_Click(*t.app, profile);
        const QString hashes(61, QLatin1Char('#'));
        EXPECT_EQ(fileBytes(file), crlfText({
                                       "#!/bin/sh",
                                       hashes,
                                       "# File Created by: Arena Steward ver: JUNE 13 2002 beta 1.4",
                                       "# File Created On: Thursday, June 13, 2002 at 9:05 PM",
                                       "# " + kContactAddress,
                                       hashes,
                                       "# Remember to change the path below to point to your JK2 folder",
                                       "# To run this file, open a terminal window and cd to the folder",
                                       "# you copied this file to and type;",
                                       "# sh start server.sh",
                                       hashes,
                                       "cd /home/quillon/Star Wars JK II Jedi Outcast",
                                       QString::fromLatin1(c.shellLine),
                                   }));
        ASSERT_EQ(t.prompts.shown.size(), 2u);
        EXPECT_TRUE(isBox(t.prompts.last(), {QStringLiteral("Linux Shell Script"), Icon::Information,
                                             QStringLiteral("Shell script has been Saved") + kTail, Buttons::Ok}));
    }
}

TEST_F(ExportScripts, CancellingTouchesNoFileAndSaysNothingButTheShellScriptsIntroduction)
{
    const QString existing = target("keep.bat");
    writeFile(existing, "old\r\n");
    t.prompts.cancelNextDialog();
    mnuBatchFile_Click(*t.app, profile);
    EXPECT_TRUE(t.prompts.shown.empty());
    t.prompts.cancelNextDialog();
    mnuLinux_Click(*t.app, profile);
    ASSERT_EQ(t.prompts.shown.size(), 1u);
    EXPECT_TRUE(
        isBox(t.prompts.last(),
              {kProductTitle, Icon::Information,
               "The following shell script is a guide and will need paths adjusted to point to your JK2 folder" +
                   kTail + "\r\n" +
                   "Place this file in your Jedi Knight II folder that contains the jk2ded executable and "
                   "execute it from there." +
                   kTail + "\r\n" + "Don't forget to include the my_cfg.cfg file, place that in your main folder" +
                   kTail + "\r\n" + "along with your map cycle configuration.",
               Buttons::Ok}));
    EXPECT_EQ(fileBytes(existing), QByteArray("old\r\n"));
    EXPECT_EQ(QDir(t.root()).entryList(QDir::Files), QStringList({"keep.bat"}));

    // Both dialogs ask in the game folder.
    const std::pair<const char*, const char*> expected[] = {
        {"Save Batch File", "Batch File (*.bat)|*.bat"}, {"Save Linux Shell Script", "Linux Shell Script (*.sh)|*.sh"}};
    ASSERT_EQ(t.prompts.dialogs.size(), 2u);
    for (size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(t.prompts.dialogs[i].state.DialogTitle, QString::fromLatin1(expected[i].first));
        EXPECT_EQ(t.prompts.dialogs[i].state.Filter, QString::fromLatin1(expected[i].second));
        EXPECT_EQ(t.prompts.dialogs[i].state.InitialDir, t.gameFolder());
    }
}

TEST_F(ExportScripts, TheSessionIsCheckedBeforeAnyDialog)
{
    using Command = void (*)(AppContext&, ServerProfile&);
    for (const Command command : {Command(mnuBatchFile_Click), Command(mnuLinux_Click)}) {
        profile.setText(kCfg(1), {});
        t.prompts.shown.clear();
        command(*t.app, profile);
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(), {kProductTitle, Icon::Exclamation,
                                             QStringLiteral("A Session name is required") + kTail, Buttons::Ok}));

        profile.setText(kCfg(1), QStringLiteral("a:b"));
        t.prompts.shown.clear();
        command(*t.app, profile);
        ASSERT_EQ(t.prompts.shown.size(), 1u);
        EXPECT_TRUE(isBox(t.prompts.last(),
                          {kProductTitle, Icon::Exclamation,
                           QStringLiteral("Invalid session name, you cannot use \\/:*?<>| in a session name") + kTail,
                           Buttons::Ok}));
    }
    EXPECT_TRUE(t.prompts.dialogs.empty());
}

TEST_F(ExportScripts, ScriptsIgnoreTheServerTypeTheMapsAndTheChangeMark)
{
    profile.setValue(F::chkServerType(0), 1);
    profile.setValue(F::chkMapAutoCycle, 0); // and the rotation is empty
    profile.setConfigurationChanged(true);
    profile.setText(kCfg(1), QStringLiteral("Duel Night.CFG"));
    const QString file = target("run.bat");
    t.prompts.chooseFile(file);
    mnuBatchFile_Click(*t.app, profile);
    const QString line = QString::fromLatin1(fileBytes(file));
    EXPECT_TRUE(line.contains(QStringLiteral(" +set dedicated 2 "))) << line.toStdString();
    EXPECT_TRUE(line.endsWith(QStringLiteral(" +exec Duel_Night.CFG\r\n"))) << line.toStdString();
    EXPECT_TRUE(profile.configurationChanged());
    EXPECT_EQ(launcher.starts, 0);
}

TEST_F(ExportScripts, AFileThatCannotBeWrittenIsReportedWithTheHandlersTag)
{
    t.prompts.chooseFile(t.root() + QStringLiteral("/no such folder/run.bat"));
    mnuBatchFile_Click(*t.app, profile);
    t.prompts.chooseFile(t.root() + QStringLiteral("/no such folder/run.sh"));
    mnuLinux_Click(*t.app, profile);
    ASSERT_EQ(t.prompts.shown.size(), 3u);
    EXPECT_TRUE(
        isBox(t.prompts.shown[0],
              errorBox(err::PathNotFound,
                       QStringLiteral("arena-steward::frmMain.mnuBatchFile_Click(Function) (%1/no such folder/run.bat)")
                           .arg(t.root()))));
    EXPECT_TRUE(
        isBox(t.prompts.shown[2],
              errorBox(err::PathNotFound,
                       QStringLiteral("arena-steward::frmMain.mnuLinux_Click(Function) (%1/no such folder/run.sh)")
                           .arg(t.root()))));
}

TEST(ScriptNumbers, MemoryValuesBecomeTheirShortestText)
{
    const std::pair<double, const char*> cases[] = {{16, "16"}, {0, "0"}, {32.5, "32.5"}, {-4, "-4"}, {1024, "1024"}};
    for (const auto& [value, text] : cases)
        EXPECT_EQ(shortestNumberText(value), QString::fromLatin1(text));
}
