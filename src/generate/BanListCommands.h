#pragma once
// The three buttons of the IP Banning frame: add, delete the selected item, clear.
namespace steward {
class AppContext;
class ServerProfile;
/// Index 2 adds txtServerIP to the list and empties it, 3 removes the first selected
/// item, 4 asks and clears the list. No file is touched.
void cmdThreeWave_Click(AppContext& app, ServerProfile& profile, int index);
} // namespace steward
