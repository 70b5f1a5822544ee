#pragma once
// The BOT page of the main window bound to the roster's routines: the roster's rows
// coloured by team, its five buttons shown and hidden with it, and the page's layout
// following "Enable User Defined BOT's".
namespace steward {

class AppContext;
class frmMain;

/// Binds the page of a new main window; call before the window's load.
void bindBotPage(AppContext& app, frmMain& window);

} // namespace steward
