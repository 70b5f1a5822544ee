#pragma once
// The roster grdBOTList: the user-defined bots the server starts with. Row 0 is the
// heading NAME, SKILL, TEAM, MODEL, PING; each row below it is one bot. The roster lives
// between runs in lastbots.csv in the program's folder.
#include <QList>
#include <QPoint>
#include <QRgb>
#include <QString>
#include <QStringList>

namespace steward {
class AppContext;
class ServerProfile;

/// Fills the bot page's controls when the main window loads: the roster's heading row
/// alone, and the skill list with "Hurt Me Plenty " selected.
void SetupBotControls(AppContext& app, ServerProfile& profile);
/// Loads lastbots.csv from the program's folder into the roster (the caller has seen
/// that it exists).
void loadLastBots(AppContext& app, ServerProfile& profile);
/// The roster's part of leaving by "&Close": every data row to lastbots.csv in comma
/// form; an empty roster gives an empty file. Errors are ignored.
void saveLastBots(AppContext& app, ServerProfile& profile);

/// "NAME", "SKILL", "TEAM", "MODEL", "PING".
QStringList rosterHeadings();
/// The number of bots: the rows below the heading.
int rosterBotCount(const ServerProfile& profile);
/// The bots, without the heading.
QList<QStringList> rosterBots(const ServerProfile& profile);
/// Cuts the roster to its heading row, then appends these rows.
void replaceRosterBots(ServerProfile& profile, const QList<QStringList>& rows);
/// Appends one bot: NAME, SKILL, TEAM, MODEL, PING.
void appendRosterBot(ServerProfile& profile, const QStringList& row);

/// The colours of a row: pure blue behind a row whose TEAM is exactly "BLUE", pure red
/// behind every other; white text on both.
struct RosterRowColours {
    QRgb background;
    QRgb text;
};
RosterRowColours rosterRowColours(const QString& team);

/// The BOT page in its two layouts: with "Enable User Defined BOT's" the roster and its
/// five buttons, otherwise the skill level and think time. Positions in twips.
struct BotPageLayout {
    bool roster = false;
    QPoint rosterPosition;
};
BotPageLayout botPageLayout(bool userDefined);

/// The click of chkBOTs: index 5 switches the page's layout as its value says; the
/// other indexes do nothing.
void chkBOTs_Click(ServerProfile& profile, int index);

} // namespace steward
