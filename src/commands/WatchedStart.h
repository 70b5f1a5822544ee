#pragma once
// OK with "Restart the server when it stops unexpectedly" ticked: the settings it starts
// with go to servers/<session>/started.asc, and the watcher (arena-stewardctl run) is
// started on that file in a session of its own instead of the server. A server started
// without the watcher is recorded there too, so that status and stop find it.
#include "platform/System.h"

#include <QList>
#include <QPair>
#include <QString>

#include <optional>

namespace steward {

class AppContext;
class ServerFolder;
class ServerProfile;
struct SessionValues;

struct RestartSettings {
    int limit = 5;
    int windowMinutes = 10;
};

inline constexpr int kMaxRestartLimit = 1000;
inline constexpr int kMaxRestartWindowMinutes = 1440;

/// The folder of the server's own files: servers/<profile>/ for a named profile,
/// servers/<session>/ for the default one.
ServerFolder serverFolderFor(const AppContext& app, const QString& sessionName);

/// The profile, other than the one in use, whose running server was started on the
/// port; none when no other profile's server uses it.
std::optional<QString> portTakenBy(const AppContext& app, int port);
/// OK's check that no other profile's server runs on the profile's port: false after
/// the box that names that profile.
bool portFree(AppContext& app, const ServerProfile& profile);

/// The watcher's limits from the profile, or none with the text of the box that says
/// what is wrong.
std::optional<RestartSettings> restartSettings(const ServerProfile& profile, QString* problem = nullptr);

/// OK's check of the limits while the box is ticked: false after the box.
bool restartSettingsAccepted(AppContext& app, const ServerProfile& profile);

/// Every setting of the profile as the store keeps it, with the game's folder and
/// executable and the exact text of every box: a configuration file (.asc) that gives
/// back this profile as it is.
QList<QPair<QString, QString>> profileSettings(AppContext& app, ServerProfile& profile);

/// The settings a start starts with, in the server's folder: started.asc and the roster
/// beside it. A file that can't be written is a RuntimeError.
void writeStartedSettings(AppContext& app, ServerProfile& profile, const ServerFolder& folder);

/// Writes the started settings and starts the watcher on them, detached. A watcher
/// that can't be started raises the error of a missing program.
void startWatcher(AppContext& app, ServerProfile& profile, const SessionValues& session);

/// Records a server started without the watcher: its process, program and arguments,
/// and the settings it started with, so that status, stop and a later start from the
/// command line find them.
void recordDetachedStart(AppContext& app, ServerProfile& profile, const SessionValues& session,
                         const LaunchRequest& request, qint64 pid);

/// The session's address and port as the server was told them, for the state file.
QString sessionHost(const ServerProfile& profile);

} // namespace steward
