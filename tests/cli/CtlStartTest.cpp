// start, and what the window's OK hands to the watcher: the same files and the same
// command line as OK on the same settings, and nothing at all after a refusal.
#include "cli/CtlFixture.h"
#include "commands/MainFormLoad.h"
#include "commands/OkCommand.h"
#include "commands/ProfileLoad.h"
#include "settings/ConfigurationFile.h"
#include "watch/ServerFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

class CtlStart : public CtlFixture {
protected:
    /// The user's road in the window: the settings were made and saved as the defaults;
    /// the window opens on them, the starting map is set again (the window never keeps
    /// it), then OK.
    void okInTheWindow(const std::function<void(ServerProfile&)>& more = {})
    {
        saveSettings(more);
        ServerProfile profile;
        attachProfileRules(*t.app, profile);
        FakeFormLoadHost form;
        MainFormLoad(*t.app, profile, form);
        if (!profile.isSet(F::chkUseINI))
            profile.setStartingMap(u"ffa_bespin"_s); // as ID_SetStartingMap sets it
        FakeWindowHost windows(*t.app);
        cmdOk_Click(*t.app, profile, windows);
        ASSERT_TRUE(t.prompts.shown.empty()) << t.prompts.texts().join(u'|').toStdString();
    }

    ServerFolder folder() const { return ServerFolder(t.programFolder(), u"duel_arena"_s); }
};

} // namespace

TEST_F(CtlStart, WritesWhatOkWritesAndStartsWhatOkStarts)
{
    okInTheWindow();
    ASSERT_EQ(t.launcher.started.size(), 1u);
    const LaunchRequest byWindow = t.launcher.started.front();
    const auto windowFiles = baseFiles();
    ASSERT_TRUE(windowFiles.contains(u"duel_arena.cfg"_s));
    ASSERT_TRUE(windowFiles.contains(u"BOTFile.cfg"_s));

    clearBase();
    ASSERT_EQ(ctl({u"start"_s}), 0) << err.toStdString();
    ASSERT_EQ(t.launcher.started.size(), 2u);
    const LaunchRequest byCtl = t.launcher.started.back();
    EXPECT_EQ(byCtl.program, byWindow.program);
    EXPECT_EQ(byCtl.arguments.join(u'|').toStdString(), byWindow.arguments.join(u'|').toStdString());
    EXPECT_EQ(byCtl.workingFolder, byWindow.workingFolder);
    const auto ctlFiles = baseFiles();
    EXPECT_EQ(ctlFiles.keys(), windowFiles.keys());
    for (const QString& name : windowFiles.keys())
        EXPECT_EQ(ctlFiles.value(name).toStdString(), windowFiles.value(name).toStdString()) << name.toStdString();
    EXPECT_TRUE(err.isEmpty()) << err.toStdString();
}

TEST_F(CtlStart, AWatchedOkStartsTheWatcherOnWhatItStarted)
{
    okInTheWindow([](ServerProfile& settings) {
        settings.setValue(F::chkRestartServer, 1);
        settings.setText(F::txtRestartLimit, u"3"_s);
        settings.setValue(F::chkSendMessage, 1);
    });
    const auto windowFiles = baseFiles();

    ASSERT_EQ(t.launcher.started.size(), 1u);
    const LaunchRequest watcher = t.launcher.started.front();
    EXPECT_EQ(watcher.program, system.ownProgram);
    EXPECT_EQ(watcher.arguments, QStringList({u"run"_s, u"--config"_s, folder().startedConfiguration(), u"--roster"_s,
                                              folder().startedRoster(), u"--no-messages"_s}));
    // The settings it started with hold passwords.
    EXPECT_EQ(QFileInfo(folder().startedConfiguration()).permissions() & 0x0077, 0);
    const auto started = readConfigurationFile(folder().startedConfiguration());
    EXPECT_TRUE(started.contains({u"RestartLimit"_s, u"3"_s}));
    EXPECT_TRUE(started.contains({u"PathToJedi"_s, t.gameFolder()}));

    // What the watcher runs from that file is what OK wrote: the same files.
    QFile::remove(t.storeFile());
    QFile::remove(t.programFolder() + u"/lastbots.csv"_s);
    clearBase();
    ASSERT_EQ(ctl({u"start"_s, u"--config"_s, watcher.arguments.at(2), u"--roster"_s, watcher.arguments.at(4)}), 0)
        << err.toStdString();
    EXPECT_EQ(baseFiles(), windowFiles);
    // Here the watcher started by start sends the messages itself.
    EXPECT_FALSE(t.launcher.started.back().arguments.contains(u"--no-messages"_s));
}

TEST_F(CtlStart, TheWindowsSettingsAloneHoldNoStartingMapAndSaySoWithTheWayOut)
{
    // The window keeps the starting map only while it runs: its settings alone are
    // refused as OK refuses them after a restart of the window.
    const auto rotationAlone = [](ServerProfile& settings) { settings.setValue(F::chkUseINI, 0); };
    saveSettings(rotationAlone);
    EXPECT_EQ(ctl({u"start"_s}), 2);
    EXPECT_EQ(err, u"No Starting map has been selected\n"_s);

    // After a start from the window its settings are at hand.
    okInTheWindow(rotationAlone);
    clearBase();
    EXPECT_EQ(ctl({u"start"_s}), 2);
    EXPECT_TRUE(err.endsWith(
        u"are in %1: give them with --config to start that again\n"_s.arg(folder().startedConfiguration())))
        << err.toStdString();
    EXPECT_EQ(ctl({u"start"_s, u"--config"_s, folder().startedConfiguration()}), 0) << err.toStdString();
}

TEST_F(CtlStart, ARefusalSaysWhyAndWritesNothing)
{
    using Settings = std::function<void(ServerProfile&)>;
    using Place = std::function<void(CtlStart&)>;
    const QString start = u"start"_s;
    const QString profile = u"--profile"_s;
    const QString config = u"--config"_s;
    const struct {
        const char* name;
        QStringList arguments;
        int exitCode;
        const char* says;
        Settings settings = {};
        Place place = {};
    } cases[] = {
        {"unknown option", {u"--bogus"_s, start}, 64, "Unknown option 'bogus'"},
        {"unknown command", {u"begin"_s}, 64, "Unknown command: begin"},
        {"no command", {}, 64, "No command given."},
        {"two commands", {start, u"stop"_s}, 64, "One command at a time"},
        {"bad delay", {u"run"_s, u"--restart-delay"_s, u"soon"_s}, 64, "--restart-delay"},
        {"bad profile name", {start, profile, u"../x"_s}, 64, "A profile name is 1 to 32 letters, digits, - and _"},
        {"missing profile", {start, profile, u"ctf"_s}, 2, "There is no profile named ctf"},
        {"missing settings file",
         {start},
         2,
         "No settings in",
         {},
         [](CtlStart& f) { QFile::remove(f.t.storeFile()); }},
        {"missing configuration", {start, config, u"/nowhere/x.asc"_s}, 2, "Could not find /nowhere/x.asc"},
        {"configuration that doesn't parse",
         {start, config, u"@/bad.asc"_s},
         2,
         "The configuration file ends in the middle of a setting",
         {},
         [](CtlStart& f) { writeFile(f.t.root() + u"/bad.asc"_s, "MsgOn,1\r\nLone"); }},
        {"missing executable",
         {start},
         2,
         "Could not find the server executable",
         {},
         [](CtlStart& f) { f.t.store->SaveSetting(u"PathToServer"_s, u"gone"_s); }},
        // /proc/self takes no new file from anyone, root included.
        {"unwritable base folder",
         {start},
         2,
         "can't be written",
         {},
         [](CtlStart& f) {
             QDir(f.t.baseFolder()).removeRecursively();
             QFile::link(u"/proc/self"_s, f.t.baseFolder());
         }},
        {"no maps",
         {start},
         2,
         "No maps have been selected",
         [](ServerProfile& p) {
             p.setValue(F::chkUseINI, 0);
             p.field(F::lsvMapRotation).setRows({});
         }},
        {"a saved cycle that is gone",
         {start},
         2,
         "Selected mapcycle file does not exist",
         {},
         [](CtlStart& f) { QFile::remove(f.savedCycle()); }},
        {"messages without a password",
         {start},
         2,
         "An rcon password is required to enable server messaging",
         [](ServerProfile& p) {
             p.setValue(F::chkSendMessage, 1);
             p.setText(F::txtServerConfig(14), QString());
         }},
        {"bots on a server with a password",
         {start},
         2,
         "Arena Steward does not support adding BOT's to a password enabled server\neither uncheck",
         [](ServerProfile& p) { p.setText(F::txtServerConfig(15), u"door"_s); }},
        {"a restart limit of 0",
         {start},
         2,
         "The restart limit must be a whole number from 1 to 1000",
         [](ServerProfile& p) {
             p.setValue(F::chkRestartServer, 1);
             p.setText(F::txtRestartLimit, u"0"_s);
         }},
        {"a restart window of letters",
         {u"run"_s},
         2,
         "The restart window must be a whole number of minutes from 1 to 1440",
         [](ServerProfile& p) {
             p.setValue(F::chkRestartServer, 1);
             p.setText(F::txtRestartWindow, u"ten"_s);
         }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        QFile::remove(t.baseFolder());
        clearBase();
        saveSettings(c.settings);
        if (c.place)
            c.place(*this);
        QStringList arguments = c.arguments;
        arguments.replaceInStrings(u"@"_s, t.root());

        EXPECT_EQ(ctl(arguments), c.exitCode);
        EXPECT_TRUE(err.contains(QString::fromUtf8(c.says))) << err.toStdString();
        EXPECT_TRUE(out.isEmpty()) << out.toStdString();
        EXPECT_TRUE(t.launcher.started.empty());
        if (QFileInfo(t.baseFolder()).isSymLink())
            QFile::remove(t.baseFolder());
        else
            EXPECT_TRUE(baseFiles().isEmpty()) << QStringList(baseFiles().keys()).join(u' ').toStdString();
    }
}

TEST_F(CtlStart, ASecondWatcherOfTheSameSessionIsRefused)
{
    saveSettings();
    ASSERT_TRUE(folder().make());
    QLockFile held(folder().lockFile());
    ASSERT_TRUE(held.tryLock(0));

    EXPECT_EQ(ctl({u"run"_s}), 2);
    EXPECT_TRUE(err.contains(
        u"The server of duel_arena.cfg is already watched by process %1"_s.arg(QCoreApplication::applicationPid())))
        << err.toStdString();
    EXPECT_TRUE(t.launcher.started.empty());
    EXPECT_TRUE(baseFiles().isEmpty());
}
