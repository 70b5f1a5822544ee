#pragma once
// Writes the advanced map cycle of the wizard's records to the chosen file and its
// companion files beside it.
#include <QString>

namespace steward {

class AppContext;
struct WizardState;

/// The main file at path (fileTitle its name) and a companion file for each configured
/// map in the same folder. A failure shows the warning box "Error saving file" with the
/// failure's source as its text and gives false; what was written so far stays.
bool saveAdvancedMapCycle(AppContext& app, const WizardState& state, const QString& path, const QString& fileTitle);

} // namespace steward
