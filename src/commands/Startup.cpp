#include "commands/Startup.h"

#include "maps/MapScanChain.h"
#include "maps/MapScanner.h"
#include "platform/Prompts.h"
#include "platform/System.h"
#include "settings/SettingsStore.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "support/FileDialog.h"
#include "support/Strings.h"

#include <optional>

namespace steward {

namespace {

const QString kCheckSwitch = QStringLiteral("-check");
const QString kBaseName = QStringLiteral("Base");
const QString kCatalogueName = QStringLiteral("Jedi");

// Finds GameFolder and ServerExecutable from the store, or asks for the executable.
// False when the user cancelled the dialog: the process then ends.
bool locateGame(AppContext& app)
{
    SettingsStore& store = app.store();

    const QString stored = store.GetSetting(kKeyPathToJedi);
    if (!stored.isEmpty()) {
        app.gameFolder = stored;
    } else {
        app.gameFolder = kDefaultGameFolder;
        store.SaveSetting(kKeyPathToJedi, app.gameFolder);
    }

    app.gameFolder = trimBlanks(app.gameFolder);
    if (app.gameFolder.endsWith(QChar(0)))
        app.gameFolder.chop(1);
    // AddSlash works on GameFolder itself: from here on it ends in "/".
    const QString folder = AddSlash(app.gameFolder);

    app.serverExecutable = store.GetSetting(kKeyPathToServer);

    // With no executable named the pattern is the folder itself, which any file of an
    // existing folder matches: such a store is accepted as it stands.
    if (!firstMatchingFile(folder + app.serverExecutable).isEmpty())
        return true;

    CFileDialog dialog(app);
    dialog.DialogTitle = QStringLiteral("Select Star Wars JK II Jedi Outcast");
    dialog.DefaultExt = QStringLiteral("exe");
    dialog.Filter = QStringLiteral("Jedi Knight 2 Executable (*.exe)|*.exe|All files (*)|*");
    dialog.Flags = 0;
    dialog.InitialDir = folder;
    dialog.Show(true);

    if (dialog.FileName.isEmpty()) {
        app.prompts().message(QStringLiteral("User cancelled!") + kTail, kProductTitle, Icon::Exclamation);
        return false;
    }

    app.gameFolder = GetPathPart(dialog.FileName);
    AddSlash(app.gameFolder);
    store.SaveSetting(kKeyPathToJedi, app.gameFolder);
    app.serverExecutable = dialog.FileTitle;
    store.SaveSetting(kKeyPathToServer, app.serverExecutable);
    return true;
}

// The first-run scan, each step only after the one before succeeded. False when a step
// failed: it has told the user why, and the process ends with RunOnce left as it was.
bool runFirstScan(AppContext& app, WindowHost& windows, CCursor& cursor, const FirstRunScan& scan,
                  const QString& firstRun)
{
    app.prompts().message(firstRun, kProductTitle, Icon::Information);
    cursor.SetCursor(pointer::Hourglass);

    bool done = scan.scanForMaps(app, kBaseName, kCatalogueName, app.gameFolder);
    if (done)
        done = scan.extractLevelShots(app, kBaseName, app.gameFolder);
    if (done)
        done = scan.convertTgaToBmp(app);

    if (!done) {
        windows.unloadScanner();
        return false;
    }
    app.store().SaveSetting(kKeyRunOnce, QStringLiteral("1"));
    cursor.RestoreCursor();
    windows.unloadScanner();
    app.prompts().message(QStringLiteral("Map Scan complete.") + kTail, kProductTitle, Icon::Information);
    return true;
}

// Another instance refuses this one only while messaging is on in the settings the
// load has just restored. True when this instance must end.
bool refuseSecondInstance(AppContext& app, WindowHost& windows, const ServerProfile& profile)
{
    InstanceGuard* guard = app.services.instances;
    if (!guard || !guard->otherInstanceRunning())
        return false;
    if (!profile.isSet(F::chkSendMessage))
        return false;
    app.prompts().message(QStringLiteral("Arena Steward is already running") + kTail, kProductTitle, Icon::Information);
    windows.unloadMainWindow();
    return true;
}

} // namespace

FirstRunScan FirstRunScan::standard()
{
    // The three steps run as one chain: the first starts it, the last ends it.
    auto chain = std::make_shared<std::unique_ptr<MapScanChain>>();
    return {
        [chain](AppContext& app, const QString& baseName, const QString& catalogueName, const QString& gameFolder) {
            *chain = std::make_unique<MapScanChain>();
            return ScanForMaps(app, baseName, catalogueName, gameFolder, chain->get());
        },
        [chain](AppContext& app, const QString& baseName, const QString& gameFolder) {
            return ExtractLevelShots(app, baseName, gameFolder, chain->get());
        },
        [chain](AppContext& app) {
            const bool done = ConvertTgaToBmp(app, chain->get());
            chain->reset();
            return done;
        },
    };
}

QString firstRunText()
{
    return QStringLiteral("As this is the first time you have run Arena Steward, a scan of your") + kTail + kCrLf +
           QStringLiteral("Jedi base folder for installed maps will be required, please be patient") + kTail;
}

StartupOutcome runStartup(AppContext& app, WindowHost& windows, const QString& commandLine, const FirstRunScan& scan)
{
    app.commandLine = commandLine;
    std::optional<CCursor> cursor;
    bool loading = false;
    bool shown = false;

    try {
        const QString firstRun = firstRunText();

        // Only the exact switch counts: nothing trims the command line. With it the game
        // is not looked for at all and the window opens with the globals as they are.
        if (commandLine.toLower() != kCheckSwitch) {
            if (!locateGame(app))
                return StartupOutcome::EndProcess;

            cursor.emplace(app.prompts());

            if (app.store().GetSetting(kKeyRunOnce, QStringLiteral("0")) == QLatin1String("0")) {
                if (!runFirstScan(app, windows, *cursor, scan, firstRun))
                    return StartupOutcome::EndProcess;
            }
        }

        loading = true;
        ServerProfile* profile = windows.loadMainWindow();
        if (refuseSecondInstance(app, windows, *profile))
            return StartupOutcome::EndProcess;
        windows.showMainWindow();
        shown = true;

        app.prompts().processEvents();
    } catch (const RuntimeError& e) {
        windows.unloadScanner();
        app.prompts().message(e.description(), kProductTitle, Icon::Exclamation);
        // A window that failed on its way up is not left behind hidden.
        if (loading && !shown)
            windows.unloadMainWindow();
    }

    if (cursor) {
        cursor->RestoreCursor();
        cursor.reset();
    }
    return shown ? StartupOutcome::MainWindowOpen : StartupOutcome::Returned;
}

StartupOutcome RestartProgram(AppContext& app, WindowHost& windows, const FirstRunScan& scan)
{
    windows.closeAllForms();
    app.prompts().processEvents();
    const QString commandLine = app.commandLine;
    const StartupOutcome outcome = runStartup(app, windows, commandLine, scan);
    if (outcome == StartupOutcome::EndProcess)
        return outcome;
    app.prompts().processEvents();
    return outcome;
}

} // namespace steward
