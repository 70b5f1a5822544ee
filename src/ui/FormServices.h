#pragma once
// Placing a window: centre it on its screen, make its own close button do nothing, keep
// it above other windows. A failure is reported in the plain box titled with the
// routine's name, and the routine ends.
class QWidget;

namespace steward {

class AppContext;

/// Moves the form to the middle of its screen.
void CenterForm(AppContext& app, QWidget* form);
/// The form's close button no longer works: close requests from the window manager are
/// ignored, and the form is left by its own buttons.
void DisableCloseMenu(AppContext& app, QWidget* form);
/// Places the form above all other windows, or takes it back among them. Position and
/// size stay.
void FormOnTop(AppContext& app, QWidget* form, bool onTop);

/// True when DisableCloseMenu has been applied to the form.
bool closeMenuDisabled(const QWidget* form);

} // namespace steward
