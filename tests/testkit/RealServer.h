#pragma once
// What the tests against a real Quake 3 engine dedicated server share: Debian's
// openarena-server (its engine and game data), the rule for a missing one, and the two
// questions asked of a running server over UDP on 127.0.0.1.
#include <QByteArray>
#include <QString>
#include <functional>

namespace steward::testing {

extern const QString kRealEngine;   ///< the engine, /usr/lib/ioquake3/ioq3ded
extern const QString kRealGameData; ///< its game data, with baseoa in it

/// True when no real server is here. Where STEWARD_REQUIRE_REAL_SERVER=1 asks for one (CI),
/// that is also a failure of the test; elsewhere the caller skips.
bool realServerMissing();
/// The server's status answer on the port, asked again until done accepts it or the time is
/// up; the last answer, empty when none came.
QByteArray awaitStatus(
    quint16 port, int milliseconds,
    const std::function<bool(const QByteArray&)>& done = [](const QByteArray& s) { return !s.isEmpty(); });
/// What the server prints for a remote console command, with the password "secret".
QByteArray rcon(quint16 port, const QByteArray& command);

} // namespace steward::testing
