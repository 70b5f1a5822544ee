#pragma once
// The Profile menu: a new profile, renaming and deleting the one in use, and switching
// to another. A switch does what Close does to the profile in use (after asking to save
// changed settings) and opens the window again on the other profile.
#include "platform/WindowHost.h"

#include <QString>

namespace steward {

class AppContext;
class ProfileSet;
class ServerProfile;

/// Asks a name ("New Profile") and whether to start from the current settings, makes
/// the profile and switches to it.
StartupOutcome mnuProfileNew_Click(AppContext& app, ServerProfile& profile, WindowHost& windows, ProfileSet& profiles);
/// Asks a new name for the named profile in use and renames its settings and files.
StartupOutcome mnuProfileRename_Click(AppContext& app, ServerProfile& profile, WindowHost& windows,
                                      ProfileSet& profiles);
/// Asks, then deletes the named profile in use with its files and switches to the
/// default profile. The default profile can't be deleted.
StartupOutcome mnuProfileDelete_Click(AppContext& app, ServerProfile& profile, WindowHost& windows,
                                      ProfileSet& profiles);
/// Switches to the profile (mnuProfile_<name>); the one in use changes nothing.
StartupOutcome mnuProfileSwitch_Click(AppContext& app, ServerProfile& profile, WindowHost& windows,
                                      ProfileSet& profiles, const QString& name);

/// The main window's title: the program's name, then the named profile's.
QString mainWindowTitle(const QString& profileName);

} // namespace steward
