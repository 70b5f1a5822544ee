#include "ui/Application.h"

#include "platform/Clock.h"
#include "platform/System.h"
#include "settings/SettingsStore.h"
#include "support/AppContext.h"
#include "commands/Startup.h"
#include "platform/HostAddressLookup.h"
#include "platform/UdpSocket.h"
#include "ui/CommandWiring.h"
#include "ui/DesktopIdentity.h"
#include "ui/DesktopOpener.h"
#include "ui/MainWindowHost.h"
#include "ui/frmMain.h"
#include "ui/QtPrompts.h"
#include "ui/ScannerWindow.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace steward {

namespace {
QString commandLineText(int argc, char** argv)
{
    QStringList words;
    for (int i = 1; i < argc; ++i)
        words << QString::fromLocal8Bit(argv[i]);
    return words.join(QLatin1Char(' '));
}
} // namespace

int runApplication(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("ArenaSteward"));
    QApplication::setOrganizationName(QStringLiteral("ArenaSteward"));
    applyDesktopIdentity();

    const QString dataHome = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString programFolder = QDir(dataHome).filePath(QStringLiteral("ArenaSteward"));
    QDir().mkpath(programFolder);

    QtPrompts prompts;
    SystemClock clock;
    HostSystemNames names;
    DetachedProcessLauncher launcher;
    DesktopOpener opener;
    QtBeeper beeper;
    LockFileInstanceGuard instances;
    IniSettingsStore store;

    QtDatagramSockets sockets;
    ThreadSleepWait blockingWait;

    Services services{&prompts, &clock, &names, &launcher, &opener, &beeper, &instances, &store, nullptr, &sockets,
                      &blockingWait};
    AppContext app(services, programFolder);
    // The watcher is installed beside the window's program; else it is looked for on the PATH.
    const QString watcher = QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("arena-stewardctl"));
    if (QFileInfo(watcher).isExecutable())
        app.watcherProgram = watcher;

    ScannerWindowProgress scanner;
    app.services.scanProgress = &scanner;

    QtWindowHost host(app, &prompts);
    host.addWindowSetup([&scanner](frmMain& window) { scanner.setOwner(&window); });
    HostAddressLookup addresses;
    CommandWiring wiring(app, host, addresses);
    const StartupOutcome outcome = runStartup(app, host, commandLineText(argc, argv));
    if (outcome != StartupOutcome::MainWindowOpen)
        return 0;
    quitWhenMainWindowGone(host);
    return QApplication::exec();
}

} // namespace steward
