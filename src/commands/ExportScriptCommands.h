#pragma once
// The batch file and the shell script of the Export menu: the session name's checks,
// the save dialog and the boxes around the scripts' writers.
#include "generate/ExportScripts.h"

namespace steward {

class AppContext;
class ServerProfile;

/// The session name both scripts start: refused with its box when it is empty or holds
/// a forbidden character (false), else completed with ".cfg" and blanks turned to "_".
bool scriptSessionName(AppContext& app, const ScriptValues& values, QString& session);

void mnuBatchFile_Click(AppContext& app, ServerProfile& profile);
void mnuLinux_Click(AppContext& app, ServerProfile& profile);

} // namespace steward
