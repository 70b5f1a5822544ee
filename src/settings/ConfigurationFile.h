#pragma once
// Copies of the whole settings store in a configuration file (.asc), taking such a
// file back, and wiping the store. These work on the store, never on the profile: a
// changed store reaches the window only through a restart.

#include <QString>
#include <QList>
#include <QPair>
#include <QStringList>

namespace steward {

class AppContext;
class ServerProfile;

/// Writes every key of the store as a line "key,value" into a file the user chooses.
void SaveConfiguration(AppContext& app);

/// The Save tool of the configuration menu: the question about a changed
/// configuration (No leaves the change mark set), then SaveConfiguration.
void UtilitiesConfigurationSave(AppContext& app, ServerProfile& profile);

/// Reads a file the user chooses into the store. True when the store was filled and
/// the program is to restart; false when the user cancelled or the file failed (shown).
bool loadConfigurationIntoStore(AppContext& app);
/// After a warning, deletes every key of the store one by one. True when the program is
/// to restart into a first run; false when the user said No or nothing was deleted.
bool resetStore(AppContext& app);

/// The fields of a configuration file's text, read as a stream: a field ends at a
/// comma or a line end, blanks in front of it are skipped, and a field that opens
/// with a double quote runs to the next one. A value with a comma therefore splits in
/// two. Throws when the fields don't come in pairs (error 62) or there are none (9).
QStringList readConfigurationFields(const QString& text);

/// Writes the rows as "key,value" lines, readable by the owner only (they hold
/// passwords); rows without a key are left out. A file that can't be written is a
/// RuntimeError that names it.
void writeConfigurationFile(const QString& path, const QList<QPair<QString, QString>>& rows);
/// The key and value pairs of a configuration file, read whole. A file that can't be
/// read or doesn't parse is a RuntimeError that says why.
QList<QPair<QString, QString>> readConfigurationFile(const QString& path);

/// The warning text of the reset.
QString resetWarningText();

} // namespace steward
