#pragma once
// What a start needs beyond the settings that the store keeps: the starting map, auto
// cycling with its map, and the other fields that the window begins every run with
// afresh (the first master server, the bots' think time and skill, the stats log), and
// the exact texts of the boxes. A start's own copy of its settings (started.asc)
// carries them under keys of their own, so that the program without a window starts
// again what the window started. The store never holds them.
namespace steward {

class SettingsStore;
class ServerProfile;

void saveStartKeys(SettingsStore& store, const ServerProfile& profile);
/// Sets each field whose key the store holds, as the user's change would.
void restoreStartKeys(const SettingsStore& store, ServerProfile& profile);

/// The exact text of every text box and list box, under "Exact <field>" keys with the
/// text percent-encoded: a start's own copy of its settings (started.asc) gives back
/// what the window held, where the store's own keys change an empty box into a blank
/// or a comma into "%".
void saveExactTexts(SettingsStore& store, const ServerProfile& profile);
/// Sets each field named by an "Exact" key of the store to its text.
void restoreExactTexts(const SettingsStore& store, ServerProfile& profile);

} // namespace steward
