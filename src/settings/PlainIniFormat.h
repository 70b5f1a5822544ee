#pragma once
// The file format behind the settings store: INI sections and key=value lines whose
// values are plain texts. The stock INI reader of QSettings turns an unquoted "a,b"
// into a list, cuts a value at ";" and eats backslashes; this one keeps the text. What
// it writes, the stock reader reads the same.
//
// Written: every value in double quotes, with \\, \", \r, \n, \t and \xHH escapes
// inside; keys as they come (the store keeps them percent-encoded).
// Read: a value that is one quoted string loses its quotes and escapes; any other
// value is taken as it stands between "=" and the line end, blanks around it trimmed.
// Lines starting with ";" or "#" are comments. A file that is not UTF-8 is read as
// Latin-1.
#include <QSettings>

namespace steward {

/// Reads the whole file into keys "section/key" (top-level keys without a section).
bool readPlainIni(QIODevice& device, QSettings::SettingsMap& map);
/// Writes the keys section by section, top-level keys under [General].
bool writePlainIni(QIODevice& device, const QSettings::SettingsMap& map);

/// A value as the file holds it, and back.
QString quotePlainIniValue(const QString& value);
QString unquotePlainIniValue(const QString& raw);

/// The form of a key in the file: percent-encoded, so that "/", "\", blanks and "="
/// in a key name reach the file and come back unchanged.
QString encodeStoreKey(const QString& key);
QString decodeStoreKey(const QString& encoded);

} // namespace steward
