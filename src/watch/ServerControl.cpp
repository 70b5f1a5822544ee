#include "watch/ServerControl.h"

#include <csignal>

namespace steward {

ControlOutcome stopRecordedServer(const QString& stateFile, int graceMs)
{
    std::optional<WatchState> state = readWatchState(stateFile);
    if (!state || serverCondition(*state) == ServerCondition::NotRunning)
        return ControlOutcome::NotRunning;
    if (state->watched && signalProcess(state->watcher, SIGTERM))
        return waitForEnd(state->watcher, 2 * graceMs) ? ControlOutcome::Done : ControlOutcome::NoEnd;
    if (!signalProcess(state->server, SIGTERM))
        return ControlOutcome::NotRunning;
    ControlOutcome outcome = ControlOutcome::Done;
    if (!waitForEnd(state->server, graceMs)) {
        signalProcess(state->server, SIGKILL);
        outcome = waitForEnd(state->server, graceMs) ? ControlOutcome::Done : ControlOutcome::NoEnd;
    }
    state->phase = WatchState::Phase::Stopped;
    state->stoppedReason = QStringLiteral("Stopped");
    writeWatchState(stateFile, *state);
    return outcome;
}

ControlOutcome restartWatchedServer(const QString& stateFile)
{
    const std::optional<WatchState> state = readWatchState(stateFile);
    if (!state || !state->watched || !signalProcess(state->watcher, SIGHUP))
        return ControlOutcome::NotRunning;
    return ControlOutcome::Done;
}

} // namespace steward
