#include "commands/ServerLaunch.h"

#include "commands/WatchedStart.h"
#include "generate/ServerConfigWriter.h"
#include "messaging/ArmMessaging.h"
#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "support/Strings.h"
#include "support/TextFile.h"
#include "support/DesktopOpen.h"

#include <QFileInfo>
#include <QUrl>

namespace steward {

namespace {
int retryCounter = 0;
} // namespace

int launchRetryCount() { return retryCounter; }
void setLaunchRetryCount(int count) { retryCounter = count; }

void EnsureDefaultCfg(AppContext& app)
{
    const QString path = app.baseFolder() + QStringLiteral("/Default.cfg");
    if (!FileExists(path))
        TextFileWriter{path}.close();
}

ServerCommand launchCommand(AppContext& app, const ServerProfile& profile, const SessionValues& session, int serverType)
{
    ServerCommandValues v;
    v.executable = app.serverExecutable;
    v.serverType = serverType;
    v.merc = session.merc;
    v.ip = session.ip;
    v.port = session.port;
    v.hunk = session.hunk;
    v.zone = session.zone;
    v.gameType = selectedGameType(profile);
    v.session = session.sessionName;
    return buildServerCommand(v);
}

LaunchRequest launchRequest(AppContext& app, const ServerCommand& command)
{
    LaunchRequest request;
    const QString inFolder = withSlash(app.gameFolder) + command.executable;
    request.program = !command.executable.isEmpty() && QFileInfo(inFolder).isFile() ? inFolder : command.executable;
    request.arguments = command.arguments;
    request.workingFolder = app.gameFolder;
    return request;
}

void runMessagingStep(AppContext& app, ServerProfile& profile,
                      const std::function<void(AppContext&, ServerProfile&)>& arm)
{
    for (;;) {
        try {
            retryCounter = toInt16(retryCounter + 1.0);
            if (profile.value(F::chkSendMessage) == 1)
                arm(app, profile);
            return;
        } catch (const RuntimeError& e) {
            if (e.number() != err::AddressInUse)
                throw;
            if (retryCounter > 1000)
                return;
        }
    }
}

bool startServerAfterConfiguration(AppContext& app, ServerProfile& profile, const SessionValues& session)
{
    // The server runs in the game's folder; nothing else tells it where the game lies.
    EnsureDefaultCfg(app);
    if (const auto serverType = selectedServerType(profile)) {
        const LaunchRequest request = launchRequest(app, launchCommand(app, profile, session, *serverType));
        if (profile.isSet(F::chkRestartServer) && !app.startsInsideWatcher) {
            startWatcher(app, profile, session);
        } else {
            QString reason;
            qint64 pid = 0;
            const bool started = app.services.launcher && app.services.launcher->startDetached(request, &reason, &pid);
            if (!started) {
                const bool present = request.program.contains(QLatin1Char('/')) && QFileInfo(request.program).isFile();
                raiseError(present ? err::PermissionDenied : err::FileNotFound, {}, request.program);
            }
            if (!app.startsInsideWatcher)
                recordDetachedStart(app, profile, session, request, pid);
        }
    }
    runMessagingStep(app, profile, ArmServerMessaging);
    return true;
}

bool showExportedConfiguration(AppContext& app, ServerProfile& profile, const SessionValues& session)
{
    profile.setFormPointer(pointer::Default);
    app.prompts().message(QStringLiteral("'") + session.sessionName + QStringLiteral("' has been created") + kTail,
                          kProductTitle, Icon::Information);
    const QString file =
        session.fileName.isEmpty() ? app.baseFolder() + QLatin1Char('/') + session.sessionName : session.fileName;
    openOnDesktop(app, QUrl::fromLocalFile(file));
    return true;
}

} // namespace steward
