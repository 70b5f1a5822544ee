#pragma once
// The steps of the main window's load that fill the profile, shared by the window and
// by the program without one.
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

namespace steward {

class AppContext;
class ServerProfile;

/// The rules that tie fields together (option rules, the click routines of the map
/// boxes, the messaging box), attached before the store is poured into the profile.
void attachProfileRules(AppContext& app, ServerProfile& profile);

/// Runs the load's steps in order. An index out of range (35600) turns the window to
/// page 2 and the load goes on with the next step; any other error is reported with the
/// load's tag and ends the load. False after such an error.
bool runLoadSteps(AppContext& app, ServerProfile& profile, const std::vector<std::function<void()>>& steps);

/// Every config file of the base folder into each of the four config lists.
void fillConfigLists(AppContext& app, ServerProfile& profile);
/// The files of the base folder whose lower-cased names end in "cfg", under their own
/// spelling, in the order of the folder listing (by name, case ignored). A missing
/// folder gives none.
QStringList baseFolderConfigs(const AppContext& app);
/// The stock starting maps into their list, which opens on its entry 1.
void fillStockStartingMaps(ServerProfile& profile);

/// The load without a window: the store into the profile, the bot controls, the config
/// lists, the stock starting maps and the roster (from rosterFile when given, else
/// lastbots.csv). False after an error it reported.
bool loadProfileWithoutWindow(AppContext& app, ServerProfile& profile, const QString& rosterFile = {});

} // namespace steward
