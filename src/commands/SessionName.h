#pragma once
// The session name that OK and the exports ask for: the check of its characters and
// the ".cfg" ending.
#include <QString>

namespace steward {

class AppContext;

/// False, after an exclamation box, when the name holds one of the characters \/:*?<>|.
bool ValidSessionName(AppContext& app, const QString& name);

/// The name with ".cfg" appended, unless its last four characters are ".cfg" in any
/// case. The name keeps its own case.
QString completeSessionName(const QString& name);

/// The name as the session file is written: blanks made "_", lower-cased.
QString sessionNameAsWritten(const QString& name);

/// The exclamation box with OK and the message tail, titled "Arena Steward".
void warn(AppContext& app, const QString& text);

} // namespace steward
