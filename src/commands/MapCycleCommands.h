#pragma once
// The window's commands around the map cycle: exporting it, choosing a saved
// advanced cycle instead of the rotation, and showing that file.
#include <QString>

namespace steward {
class AppContext;
class ServerProfile;

/// "Map Cycle": checks the rotation, asks for a file and writes the cycle there.
void mnuExportMapCycle_Click(AppContext& app, ServerProfile& profile);
/// The click of chkUseINI, after its value changed. Has no effect while the main
/// window loads.
void chkUseINI_Click(AppContext& app, ServerProfile& profile);
/// A double click on txtServerINI: the file opens in the desktop's viewer.
void txtServerINI_DblClick(AppContext& app, ServerProfile& profile);
/// Writes the map cycle of the rotation. exportOnly: cycleFileName is the full path
/// to write. Otherwise with useSavedCycle nothing is written and cycleFileName takes
/// the name of the saved cycle in txtServerINI; without it the file is jediMaps.cfg in
/// the base folder and cycleFileName takes that name. False after a failure, which
/// has been shown.
bool MakeMapCycle(AppContext& app, ServerProfile& profile, QString& cycleFileName, bool exportOnly, bool useSavedCycle);

/// The starting map of a saved advanced cycle: its last line from the third character
/// on, when that line starts with "//". Empty, after a warning, otherwise.
QString gbln_LoadMapCycle(AppContext& app, ServerProfile& profile, const QString& cycleFile);
/// The click of chkMapAutoCycle, after its value changed.
void chkMapAutoCycle_Click(AppContext& app, ServerProfile& profile);

/// Registers the click routines of chkUseINI and chkMapAutoCycle with the profile, so
/// that setting either box from code runs its routine as a click does.
void attachClickRoutines(AppContext& app, ServerProfile& profile);

} // namespace steward
