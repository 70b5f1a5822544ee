#pragma once
// The window's commands around the map cycle: exporting it, choosing a saved
// advanced cycle instead of the rotation, and showing that file.
namespace steward {
class AppContext;
class ServerProfile;

/// "Map Cycle": checks the rotation, asks for a file and writes the cycle there.
void mnuExportMapCycle_Click(AppContext& app, ServerProfile& profile);
/// The click of chkUseINI, after its value changed. Has no effect while the main
/// window loads or while the map wizard hands over its cycle.
void chkUseINI_Click(AppContext& app, ServerProfile& profile);
/// A double click on txtServerINI: the file opens in the desktop's viewer.
void txtServerINI_DblClick(AppContext& app, ServerProfile& profile);
} // namespace steward
