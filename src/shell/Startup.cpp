#include "shell/Startup.h"

#include "shell/AppContext.h"
#include "shell/Constants.h"

namespace steward {

QString firstRunText()
{
    return QStringLiteral("As this is the first time you have run Arena Steward, a scan of your") + kTail + kCrLf +
           QStringLiteral("Jedi base folder for installed maps will be required, please be patient") + kTail;
}

StartupOutcome runStartup(AppContext& app, WindowHost& windows, const QString& commandLine)
{
    Q_UNUSED(app);
    Q_UNUSED(commandLine);
    windows.loadMainWindow();
    windows.showMainWindow();
    return StartupOutcome::MainWindowOpen;
}

StartupOutcome RestartProgram(AppContext& app, WindowHost& windows, const QString& commandLine)
{
    windows.closeAllForms();
    return runStartup(app, windows, commandLine);
}

} // namespace steward
