#pragma once
// What the subcommands of arena-stewardctl share: their options and the program's exit
// codes. The subcommands are in CtlStart.h, CtlStatus.h and CtlUnit.h.
#include <QString>

namespace steward {

/// The exit codes.
namespace ctl_exit {
inline constexpr int Ok = 0;
/// status: the server runs but doesn't answer; run: the watch ended after a crash.
inline constexpr int Silent = 1;
inline constexpr int Failed = 1;
/// The start was refused, with the reason on standard error.
inline constexpr int Refused = 2;
inline constexpr int NotRunning = 3;
inline constexpr int Usage = 64;
} // namespace ctl_exit

struct CtlOptions {
    /// The named profile; empty for the default one.
    QString profile;
    QString config;
    QString roster;
    bool noMessages = false;
    bool json = false;
    bool install = false;
    int restartDelayMs = 5000;
    int timeoutMs = 1000;
};

} // namespace steward
