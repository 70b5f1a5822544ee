#pragma once
// The central report of a run-time error: one entry in the log beside the program,
// one critical box, and where asked the error passed on to the caller.
#include <QString>

namespace steward {

class AppContext;
class RuntimeError;

/// Writes text to the log and returns true on success; never reports a failure.
/// stamp writes the time-stamp line, separator the line of 78 hyphens, overwrite
/// empties the file first. An empty logFile takes the last log file, or else
/// ProgramFolder/ProgramName.log.
bool WriteLog(AppContext& app, const QString& text, const QString& logFile = {}, bool stamp = true,
              bool separator = true, bool overwrite = false);

/// Folds the error object into the arguments, logs, shows the critical box and, with
/// raise, throws the error again for the caller.
void RaiseError(AppContext& app, QString description, QString source, int number, bool show, bool raise, bool log,
                const RuntimeError* error, const QString& logFile = {});

/// The usual report of a tagged routine: source is ProgramName and the tag, with show
/// and raise as the routine's row of the tag table says.
void reportTagged(AppContext& app, const RuntimeError& error, const QString& tag, bool show = true, bool raise = false);

/// The plain box of the small helper routines: "Error: N. description", titled with
/// the routine's name, no icon.
void reportPlain(AppContext& app, const RuntimeError& error, const QString& routine);

/// The information box of the untagged event routines: the description, titled with
/// the error's source (ProgramName for an error without one).
void reportInformation(AppContext& app, const RuntimeError& error);

/// The 78 hyphens of a log entry.
QString logSeparator();

} // namespace steward
