#pragma once
// The physical floor of the map catalogue's work: what any program must read and
// inflate from the base folder's archives, and nothing more.
#include <cstdint>
#include <string>

namespace steward::bench {

/// The stock maps of the game, recognised by name in every archive but assets1.pk3.
inline constexpr const char* kStockMapNames[] = {
    "duel_bespin",   "duel_hangar",  "duel_temple",    "duel_training",  "ffa_bespin",
    "ffa_deathstar", "ffa_imperial", "ffa_ns_hideout", "ffa_ns_streets", "ffa_yavin",
    "ctf_bespin",    "ctf_imperial", "ctf_ns_streets", "ctf_yavin",      "duel_bay",
    "duel_carbon",   "duel_jedi",    "duel_pit",       "ffa_raven",
};

struct FloorCount {
    int archives = 0;       ///< pk3 files whose directory was read
    int scripts = 0;        ///< arena scripts inflated (one per archive with a custom map)
    int shots = 0;          ///< levelshots/*.tga and *.jpg entries read or inflated
    int tgaShots = 0;       ///< of which tga
    std::int64_t bytes = 0; ///< bytes that came out of them
    std::string error;      ///< the first archive the floor could not read, and why
};

/// For each pk3 of the folder: reads the end of the central directory and the central
/// directory once, then reads and inflates the first arena script of an archive with a
/// custom map and every level shot. Writes nothing, parses nothing, decodes no picture.
/// Knows stored and deflated entries without zip64: the benchmark's own archives.
FloorCount physicalFloor(const std::string& baseFolder);

} // namespace steward::bench
