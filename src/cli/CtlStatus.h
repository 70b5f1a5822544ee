#pragma once
// status and stop of the server of a profile. Each returns the program's exit code.
#include "cli/CtlCommands.h"

namespace steward {

struct CtlSystem;

int ctlStatus(CtlSystem& system, const CtlOptions& options);
int ctlStop(CtlSystem& system, const CtlOptions& options);

} // namespace steward
