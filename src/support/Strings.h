#pragma once
// Small text and path helpers shared by every part of the program.
#include <QString>

namespace steward {

/// Appends "/" to path itself if its last character isn't one; returns the text. An
/// empty text becomes "/".
QString& AddSlash(QString& path);
QString withSlash(QString path);
/// The part behind the last "/"; a text without one comes back whole.
QString GetNamePart(const QString& path);
/// The part up to and with the last "/"; a text without one gives empty.
QString GetPathPart(const QString& path);
/// Blanks cut from both ends of a text; tabs and other white space stay.
QString trimBlanks(const QString& text);
/// Every occurrence of find replaced by replacement; an empty input gives empty.
QString IsClean(const QString& text, const QString& find, const QString& replacement);

/// The leading number of a text: the value of its longest numeric beginning, blanks
/// skipped, 0 if there is none ("12abc" is 12, "abc" is 0, " 3.5x" is 3.5).
double leadingNumber(const QString& text);
/// A number rounded to a 16-bit whole number, half to even; outside the range is error 6.
int toInt16(double value);
/// A number rounded to a 32-bit whole number, half to even; outside the range is error 6.
qint32 toInt32(double value);
/// A whole text converted to a 32-bit number: blanks around it allowed, anything else
/// that is not a number is error 13, a number outside the range error 6.
qint32 textToInt32(const QString& text);
/// True when the whole text, blanks around it allowed, is a number.
bool isNumeric(const QString& text);
/// A text converted to a Boolean: "True"/"False" in any case, or a number (non-zero is
/// true); anything else is error 13.
bool textToBool(const QString& text);

/// True when a normal, visible file matches the path, which may hold * and ? in its
/// name part. False for an empty path, a folder, a hidden file or no match.
bool FileExists(const QString& path);
/// The name of the first visible file that matches the pattern (a path whose name part
/// may hold wildcards; a pattern ending in "/" matches every file of the folder), or
/// an empty text.
QString firstMatchingFile(const QString& pattern);

} // namespace steward
