#pragma once
// Writing the profile to the settings store, the change mark that offers it, and the
// question that asks for it.
namespace steward {
class AppContext;
class ServerProfile;

/// Writes every stored key of the profile in one pass, in a fixed order, with no test
/// for change and without deleting anything. A failure is reported with the tag
/// "::Code.SaveMainSettings(Sub)"; the keys behind it keep their old values.
void SaveMainSettings(AppContext& app, ServerProfile& profile);

/// What the "&Defaults" button does: saves, says "Settings have been saved" whatever
/// the save did, and clears the change mark.
void saveAsDefaults(AppContext& app, ServerProfile& profile);

/// A key press reached the main window (any of its controls), whether or not it
/// changed anything: the change mark is set. Mouse changes don't set it.
void noteKeyPress(ServerProfile& profile);

/// The question "Configuration has changed, set as default?" of the OK button, asked
/// only while the change mark is set. Yes saves as saveAsDefaults does; after
/// either answer the mark is cleared.
void askSaveChangedConfiguration_Ok(AppContext& app, ServerProfile& profile);

/// The same question before a configuration file is saved: Yes saves, No leaves the
/// change mark set.
void askSaveChangedConfiguration_Save(AppContext& app, ServerProfile& profile);

} // namespace steward
