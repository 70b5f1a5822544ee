#pragma once
// Pours the settings store into the profile when the main window loads.
#include <QString>
#include <QStringList>

namespace steward {
class AppContext;
class ServerProfile;

/// Reads every stored key into its field in a fixed order; each assignment acts as the
/// user's change, so the option rules attached to the profile run. The first failure
/// is reported with the tag "::Code.GetMainSettings(Sub)" and ends the reading: the
/// fields behind it keep their state.
void GetMainSettings(AppContext& app, ServerProfile& profile);

/// What the store gives when a key is missing: the first-run texts of the fields that
/// have a literal default.
QString defaultMsg1();
QString defaultMsg2();

/// A value stored as clean text, read back as the decoded text: one blank is the empty
/// text, and every "%" becomes ",".
QString decodeCleanText(const QString& stored);

/// A list value split at ";": pieces that are empty or blank are left out, the others
/// are kept as they stand, blanks around them included.
QStringList splitStoredList(const QString& stored);

} // namespace steward
