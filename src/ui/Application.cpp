#include "ui/Application.h"

#include "platform/Clock.h"
#include "platform/System.h"
#include "settings/SettingsStore.h"
#include "support/AppContext.h"
#include "commands/ProfileSet.h"
#include "commands/Startup.h"
#include "model/Constants.h"
#include "platform/Prompts.h"
#include "settings/Profiles.h"
#include "platform/HostAddressLookup.h"
#include "platform/UdpSocket.h"
#include "ui/CommandWiring.h"
#include "ui/DesktopIdentity.h"
#include "ui/DesktopOpener.h"
#include "ui/MainWindowHost.h"
#include "ui/frmMain.h"
#include "ui/QtPrompts.h"
#include "ui/frmScanner.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace steward {

QString commandLineText(const QStringList& arguments, QString* profile)
{
    QStringList words;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& word = arguments.at(i);
        if (word == QLatin1String("--profile") && i + 1 < arguments.size()) {
            *profile = arguments.at(++i);
            continue;
        }
        if (word.startsWith(QLatin1String("--profile="))) {
            *profile = word.mid(10);
            continue;
        }
        words << word;
    }
    return words.join(QLatin1Char(' '));
}

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
    ProfileSet profiles(profileSettingsFolder());

    QtDatagramSockets sockets;
    ThreadSleepWait blockingWait;

    Services services{&prompts,   &clock,  &names,  &launcher, &opener,      &beeper,
                      &instances, nullptr, nullptr, &sockets,  &blockingWait};
    AppContext app(services, programFolder);
    QString profile;
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const QString commandLine = commandLineText(arguments, &profile);
    profiles.use(app, QString());
    if (!profile.isEmpty() && profile != kDefaultProfile) {
        if (validProfileName(profile) && profiles.exists(profile))
            profiles.use(app, profile);
        else
            prompts.message(QStringLiteral("There is no profile named %1: the default profile opens").arg(profile) +
                                kTail,
                            kProductTitle, Icon::Exclamation);
    }
    // The watcher is installed beside the window's program; else it is looked for on the PATH.
    const QString watcher = QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("arena-stewardctl"));
    if (QFileInfo(watcher).isExecutable())
        app.watcherProgram = watcher;

    frmScannerProgress scanner;
    app.services.scanProgress = &scanner;

    QtWindowHost host(app, &prompts);
    host.addWindowSetup([&scanner](frmMain& window) { scanner.setOwner(&window); });
    HostAddressLookup addresses;
    CommandWiring wiring(app, host, addresses);
    wiring.setProfiles(&profiles);
    const StartupOutcome outcome = runStartup(app, host, commandLine);
    if (outcome != StartupOutcome::MainWindowOpen)
        return 0;
    quitWhenMainWindowGone(host);
    return QApplication::exec();
}

} // namespace steward
