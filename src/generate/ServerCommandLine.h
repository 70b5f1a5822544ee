#pragma once
// The command line that starts the game or dedicated server. It is built as a list of
// arguments, never as a text for a shell: each value from the profile is one argument
// of its own, whatever blanks or other characters it holds. The display text is the
// same line as one text, the executable and the arguments joined by single blanks.
#include <QString>
#include <QStringList>
#include <optional>

namespace steward {

class ServerProfile;

struct ServerCommand {
    QString executable;    ///< ServerExecutable as it stands, without folder
    QStringList arguments; ///< one per word of the fixed text, one per value
    /// The whole command line as one text.
    QString text() const;
};

/// What the command line is made of.
struct ServerCommandValues {
    QString executable;
    int serverType = 2; ///< 0 Listen, 1 LAN, 2 Internet
    bool merc = false;
    QString ip;          ///< empty for none
    qint32 port = 28070; ///< 0 or less for none
    int hunk = 0;
    int zone = 0;
    QString gameType; ///< the Tag of the selected game type, empty for none
    QString session;  ///< the session file's name
};

/// The first selected of chkServerType(0) to (2), or none.
std::optional<int> selectedServerType(const ServerProfile& profile);

/// The Tag of the first selected of optDefaultGameType(0) to (6), or an empty text.
QString selectedGameType(const ServerProfile& profile);

/// The command line for these values. Internet with Merc has no form with the port
/// alone: with an empty address it keeps the address form, with an empty address
/// argument, and drops the port.
ServerCommand buildServerCommand(const ServerCommandValues& values);

} // namespace steward
