#pragma once
// A process told apart from any later one that gets the same id: the id and the moment
// the process began, both read from /proc. A recorded identity is signalled only while
// that very process still runs, so a stale pid that now belongs to another program is
// never touched.
#include <QtGlobal>

namespace steward {

struct ProcessIdentity {
    qint64 pid = 0;
    /// When the process began, in clock ticks after boot (the 22nd field of /proc/<pid>/stat).
    qint64 startTicks = 0;

    bool isNull() const { return pid <= 0; }
    friend bool operator==(const ProcessIdentity&, const ProcessIdentity&) = default;
};

/// The identity of the process with this id now, or a null identity when none runs
/// (a zombie counts as gone).
ProcessIdentity identifyProcess(qint64 pid);

/// Whether the recorded process still runs: same id, same start.
bool stillRuns(const ProcessIdentity& recorded);

/// Sends the signal to the recorded process when it still runs; false otherwise.
bool signalProcess(const ProcessIdentity& recorded, int signal);

/// Waits up to the time for the recorded process to end; true when it has.
bool waitForEnd(const ProcessIdentity& recorded, int milliseconds);

} // namespace steward
