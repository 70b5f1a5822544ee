#pragma once
// The rules of the option fields: the four bit masks that follow their check boxes,
// the options that act on other options, the duel note and the starting-map combo.
// They run on every change of a field's state, whether the user, the settings store
// or another rule made it.
#include "model/FieldNames.h"

#include <QString>

namespace steward {

class AppContext;
class ServerProfile;

/// Connects every rule below to the changed signals of the profile's fields and sets
/// the duel note and the starting-map combo to match their options. Call it once for
/// a new profile, before the store is read into it; a second call does nothing.
///
/// cboStartingMap is shown and hidden as a field; the window hides its caption label
/// lblServerConfig(34) with it. After the start only the click of chkMapAutoCycle
/// (chkMapAutoCycle_Click) shows and hides it: that click also clears chkUseINI
/// through chkUseINI's own click, which a rule on the bare value would get ahead of.
void attachOptionRules(AppContext& app, ServerProfile& profile);

/// The mask of the boxes first..last of an array: the sum of the Tags of the ticked
/// boxes, "0" when none is ticked. With saberOnly, the box of loop index 2 ticked
/// alone gives "65531" (everything but the saber disabled).
QString maskText(const ServerProfile& profile, FieldArray array, int first, int last, bool saberOnly);

// The handlers, by the index of the box that changed.
void chkWeaponFlags_Click(ServerProfile& profile, int index);
void chkPowerUpFlags_Click(ServerProfile& profile, int index);
void chkDMFlags_Click(ServerProfile& profile, int index);
void chkQuake3Specific_Click(ServerProfile& profile, int index);
void chkServerType_Click(AppContext& app, ServerProfile& profile, int index);
void optDefaultGameType_Click(ServerProfile& profile, int index);

} // namespace steward
