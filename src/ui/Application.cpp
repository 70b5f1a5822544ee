#include "ui/Application.h"

#include "platform/Clock.h"
#include "platform/System.h"
#include "settings/SettingsStore.h"
#include "shell/AppContext.h"
#include "shell/ServerProfile.h"
#include "shell/Startup.h"
#include "ui/QtPrompts.h"

#include <QApplication>
#include <QDir>
#include <QStandardPaths>
#include <QWidget>
#include <memory>

namespace steward {

namespace {
class PlaceholderHost final : public WindowHost {
public:
    ServerProfile* loadMainWindow() override
    {
        profile = std::make_unique<ServerProfile>();
        window = std::make_unique<QWidget>();
        window->setObjectName(QStringLiteral("frmMain"));
        window->setWindowTitle(QStringLiteral("Arena Steward"));
        return profile.get();
    }
    void showMainWindow() override { window->show(); }
    void unloadMainWindow() override { window.reset(); }
    void closeAllForms() override { window.reset(); }
    void unloadScanner() override {}
    void minimizeMainWindow() override {}
    std::unique_ptr<ServerProfile> profile;
    std::unique_ptr<QWidget> window;
};

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

    Services services{&prompts, &clock, &names, &launcher, &opener, &beeper, &instances, &store};
    AppContext app(services, programFolder);

    PlaceholderHost host;
    const StartupOutcome outcome = runStartup(app, host, commandLineText(argc, argv));
    if (outcome != StartupOutcome::MainWindowOpen)
        return 0;
    return QApplication::exec();
}

} // namespace steward
