#pragma once
// unit: the systemd user service of a profile's server. Each returns the program's exit code.
#include "cli/CtlCommands.h"

namespace steward {

struct CtlSystem;

int ctlUnit(CtlSystem& system, const CtlOptions& options);

} // namespace steward
