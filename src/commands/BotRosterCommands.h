#pragma once
// The five buttons under the roster: Save, Load, Clear, Add and View.
#include <functional>

namespace steward {
class AppContext;
class ServerProfile;

/// cmdBOTs(index): 0 saves the roster to a bot list, 1 loads one in its place, 2 asks
/// and clears it, 3 opens the picker through showPicker, 4 writes BOTFile.cfg and opens
/// it in the desktop's editor. Save, Clear and View do nothing with an empty roster. A
/// file that can't be written or read escapes as a RuntimeError to the event's report.
void cmdBOTs_Click(AppContext& app, ServerProfile& profile, int index, const std::function<void()>& showPicker = {});

} // namespace steward
