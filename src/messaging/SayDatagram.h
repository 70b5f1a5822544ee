#pragma once
// The datagram that puts one line in front of every player through the server's
// remote console.
#include <QByteArray>
#include <QString>

namespace steward {

/// Four 0xFF bytes, "rcon ", the password as it stands, " say " and the text; with an
/// empty password "rcon say " and the text. No terminator. Each character is one
/// Latin-1 byte; a character outside Latin-1 becomes "?".
QByteArray sayDatagram(const QString& password, const QString& text);

} // namespace steward
