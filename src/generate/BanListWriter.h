#pragma once
// BAN.cfg: the server's list of banned addresses.
#include <QString>
#include <QStringList>

namespace steward {
class Clock;
class ServerProfile;
/// The lines of BAN.cfg with the first count items of the ban list; a position past the
/// list reads as an empty item, and empty items are left out.
QStringList banListLines(const ServerProfile& profile, int count, const Clock& clock, const QString& serverExecutable);
} // namespace steward
