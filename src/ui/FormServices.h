#pragma once
// Placing a window: centre it on its screen, make its own close button do nothing, keep
// it above other windows. A failure is reported in the plain box titled with the
// routine's name, and the routine ends.
class QWidget;

namespace steward {

class AppContext;

/// Moves the form to the middle of its screen.
void CenterForm(AppContext& app, QWidget* form);
/// The form's close button no longer works: every close request is ignored except the
/// program's own unload of the form (unloadForm), so the form is left by its own buttons.
void DisableCloseMenu(AppContext& app, QWidget* form);
/// Places the form above all other windows, or takes it back among them. Position and
/// size stay.
void FormOnTop(AppContext& app, QWidget* form, bool onTop);

/// True when DisableCloseMenu has been applied to the form.
bool closeMenuDisabled(const QWidget* form);

/// Unloads a form: closes it, even with its close button disabled, and destroys it. The
/// way for a form's own buttons and for the program to get rid of a form.
void unloadForm(QWidget* form);
/// True from the moment the program began to unload the form.
bool isUnloading(const QWidget* form);

} // namespace steward
