#pragma once
// The game's connectionless protocol as the server console speaks it: the getstatus and
// rcon requests, and the statusResponse and print replies. Replies come from the
// network and are untrusted: anything that cannot be read whole gives no result.
#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

#include <optional>

namespace steward {

/// The largest reply that is read at all.
inline constexpr int kMaxReplyBytes = 16 * 1024;
/// More player lines than this make a status reply unreadable (the engine has 64 slots).
inline constexpr int kMaxStatusPlayers = 256;

/// Four 0xFF bytes and "getstatus".
QByteArray getstatusDatagram();
/// Four 0xFF bytes, "rcon ", the password, a blank and the command, as Latin-1 bytes.
/// Line breaks in the command become blanks, so that one datagram is one command line.
QByteArray rconDatagram(const QString& password, const QString& command);

struct PlayerStatus {
    QString name; ///< with the game's colour codes
    int score = 0;
    int ping = 0;
};

struct ServerStatus {
    /// The server's info pairs in the order of the reply.
    QList<QPair<QString, QString>> cvars;
    QList<PlayerStatus> players;

    /// The value of a key, compared without regard to case; empty when missing.
    QString value(const QString& key) const;
    QString hostName() const { return value(QStringLiteral("sv_hostname")); }
    QString mapName() const { return value(QStringLiteral("mapname")); }
    QString maxClients() const { return value(QStringLiteral("sv_maxclients")); }
    QString gameTypeNumber() const { return value(QStringLiteral("g_gametype")); }
};

enum class ReplyKind { Status, Print, Unreadable };

/// What a datagram is, judged by its header only.
ReplyKind replyKind(const QByteArray& datagram);

/// A statusResponse: the header line, one info string of \key\value pairs, then one line
/// per player: score, ping and the quoted name. None when any part cannot be read.
std::optional<ServerStatus> parseStatusResponse(const QByteArray& datagram);

/// The text of a print reply (Latin-1), or none when it is not one.
std::optional<QString> parsePrintReply(const QByteArray& datagram);

/// One row of the player table that the rcon command "status" prints.
struct StatusTableRow {
    int client = 0;
    int score = 0;
    int ping = 0;
    QString name; ///< as printed, blanks and a closing "^7" cut off
};
/// The player table in the printed text of "status": the columns are cut where the line
/// of dashes under the header has them. Rows that cannot be read are left out; a text
/// without the table gives none.
QList<StatusTableRow> parseStatusTable(const QString& printText);

/// The notes the server gives for a refused command.
enum class RconNote { None, BadPassword, NoPassword };
RconNote rconNote(const QString& printText);
/// The one-line note shown for a refused command; empty for None.
QString rconNoteText(RconNote note);

/// The game type's name for its number ("0" is "Free For All"); the number itself for
/// one the game does not have.
QString gameTypeName(const QString& number);

} // namespace steward
