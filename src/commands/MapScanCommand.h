#pragma once
// The map scan command of the Utilities menu.
#include "support/Registry.h"

namespace steward {

class AppContext;
class ServerProfile;

/// "Scan for Maps...": asks, scans, copies and converts the pictures, reloads the tree
/// and empties the rotation.
void mnuMapScan_Click(AppContext& app, ServerProfile& profile,
                      const WineEnvironment& env = WineEnvironment::fromProcess());

} // namespace steward
