#pragma once
// The program's fixed texts and the addresses chosen for this build.
#include "support/ProductText.h"

#include <QString>

namespace steward {

// Addresses of this build.
inline const QString kProductSite = QStringLiteral("https://arena-steward.github.io");
inline const QString kProductForum = QStringLiteral("https://arena-steward.github.io/forum");
inline const QString kGameSite = QStringLiteral("http://www.jk2files.com");
inline const QString kOfficialGameSite =
    QStringLiteral("https://www.starwars.com/games-apps/star-wars-jedi-knight-ii-jedi-outcast");
inline const QString kModSite = QStringLiteral("https://jkhub.org");
inline const QString kCommunityForum = QStringLiteral("https://lucasforumsarchive.com");
inline const QString kModForum = QStringLiteral("https://jkhub.org/forums");
inline const QString kChatChannel = QStringLiteral("#JK2 @ irc.quakenet.org");
inline const QString kMaster1 = QStringLiteral("masterjk2.ravensoft.com");
inline const QString kMaster2 = QStringLiteral("master.jk2mv.org");
inline const QString kMaster3 = QStringLiteral("master.qtracker.com:27950");
inline const QString kMaster4 = QStringLiteral("master.jkhub.org");

/// The stock map names of the starting-map combo, in list order.
inline const char* const kStockStartingMaps[] = {
    "ctf_bespin",   "ctf_imperial",   "ctf_ns_streets", "ctf_yavin",  "duel_bay",
    "duel_carbon",  "duel_jedi",      "duel_pit",       "ffa_bespin", "ffa_deathstar",
    "ffa_imperial", "ffa_ns_hideout", "ffa_ns_streets", "ffa_raven",  "ffa_yavin",
};

} // namespace steward
