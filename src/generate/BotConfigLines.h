#pragma once
// The lines of BOTFile.cfg, worked out from the bot page of a profile: automatic bots
// (the engine fills the server up to a number of players), the roster's bots (one
// Addbot line per row) or no bots.
#include <QString>
#include <QStringList>

namespace steward {

class ServerProfile;

/// What the file's heading needs besides the profile.
struct BotConfigFacts {
    QString serverExecutable;
    QString date; ///< the day in the system's long date format
    QString time; ///< the time in the system's time format
};

/// The box that goes with a file, if any.
enum class BotConfigNotice {
    None,
    NoPlayerCount, ///< automatic bots without a number of players: the file is not to be used
    NoSkillLevel,  ///< cboBOT holds none of the five skill names: g_spSkill is left out
    NoRosterBots,  ///< the roster has no row
};

struct BotConfig {
    QStringList lines;
    BotConfigNotice notice = BotConfigNotice::None;
    /// False only for NoPlayerCount: the caller then leaves the file unused.
    bool use = true;
};

/// The whole file for the profile as it stands.
BotConfig botConfigLines(const ServerProfile& profile, const BotConfigFacts& facts);

/// The text of a notice's box (with the nine-blank tail behind each line), or empty.
QString botConfigNoticeText(BotConfigNotice notice);

} // namespace steward
