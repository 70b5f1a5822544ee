#pragma once
// The three buttons of the IP Banning frame (add, delete the selected item, clear) and
// the writing of BAN.cfg.
namespace steward {
class AppContext;
class ServerProfile;
/// Index 2 adds txtServerIP to the list and empties it, 3 removes the first selected
/// item, 4 asks and clears the list. No file is touched.
void cmdThreeWave_Click(AppContext& app, ServerProfile& profile, int index);
/// Writes BAN.cfg into the base folder with the count items of the ban list; true on
/// success. A failure shows its description in a box titled "Function::gbln_MakeBANList".
bool gbln_MakeBANList(AppContext& app, ServerProfile& profile, int count);
} // namespace steward
