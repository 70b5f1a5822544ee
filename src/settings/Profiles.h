#pragma once
// Named profiles: a complete set of settings under a name, for several servers on one
// machine. The unnamed default profile is the settings file itself; a named profile
// keeps its settings in profiles/<name>.conf beside it, and its own program files (the
// bot roster, the watcher's files) in servers/<name>/ of the program's folder. The map
// catalogue and the level shots stay shared.
#include <QString>
#include <QStringList>

namespace steward {

/// The name that stands for the default profile (its menu entry, the command line).
inline const QString kDefaultProfile = QStringLiteral("default");

/// Letters, digits, "-" and "_", 1 to 32 of them; "default" in any case is the default
/// profile's and no other's.
bool validProfileName(const QString& name);
/// What validProfileName asks, as a box says it.
QString profileNameRule();

/// The folder of the settings files: the default profile's file lies in it.
QString profileSettingsFolder();
/// The settings file of a profile in the folder; the default's for an empty name or
/// "default".
QString profileSettingsFile(const QString& folder, const QString& name);
/// The named profiles of the folder, sorted, without the default.
QStringList namedProfiles(const QString& folder);

} // namespace steward
