#pragma once
// The start-up routine: finds the game, runs the first-run scan when due, and creates
// the main window. Also the ways the program restarts and closes its windows.
#include "platform/WindowHost.h"

#include <QString>

#include <functional>

namespace steward {

class AppContext;
class ServerProfile;

/// The three steps of the first-run scan. The program runs the map scanner's own; a
/// test may put others in their place.
struct FirstRunScan {
    std::function<bool(AppContext&, const QString& baseName, const QString& catalogueName, const QString& gameFolder)>
        scanForMaps;
    std::function<bool(AppContext&, const QString& baseName, const QString& gameFolder)> extractLevelShots;
    std::function<bool(AppContext&)> convertTgaToBmp;

    /// ScanForMaps, ExtractLevelShots and ConvertTgaToBmp of the map scanner.
    static FirstRunScan standard();
};

/// The settings keys that start-up reads and writes.
inline const QString kKeyPathToJedi = QStringLiteral("PathToJedi");
inline const QString kKeyPathToServer = QStringLiteral("PathToServer");
inline const QString kKeyRunOnce = QStringLiteral("RunOnce");

/// The game folder that a store without PathToJedi is given. It is a Windows path that
/// never exists here, so a first start always asks for the executable.
inline const QString kDefaultGameFolder =
    QStringLiteral("C:\\Program Files\\Lucas Arts\\Star Wars JK II Jedi Outcast\\gameadata");

/// The whole start-up routine. commandLine is the whole command line as one text; it
/// is kept in app.commandLine for a restart.
StartupOutcome runStartup(AppContext& app, WindowHost& windows, const QString& commandLine,
                          const FirstRunScan& scan = FirstRunScan::standard());

/// Closes all windows, lets pending events run, runs start-up again from the top with
/// the command line the process was started with, lets pending events run.
StartupOutcome RestartProgram(AppContext& app, WindowHost& windows,
                              const FirstRunScan& scan = FirstRunScan::standard());

/// The first-run text of the start-up routine.
QString firstRunText();

} // namespace steward
