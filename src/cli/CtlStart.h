#pragma once
// start and run: the server started as OK starts it, and run watches it. Each returns the program's exit code.
#include "cli/CtlCommands.h"

namespace steward {

struct CtlSystem;

int ctlStart(CtlSystem& system, const CtlOptions& options);
int ctlRun(CtlSystem& system, const CtlOptions& options);

} // namespace steward
