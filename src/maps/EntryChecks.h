#pragma once
// The checks that an archive's level shots and scripts pass before they become files
// in the program's folder, and the log entry of one that is refused.
#include <QString>

namespace steward {
class AppContext;

namespace err {
/// An entry whose name can't become a file name of the program's folder.
inline constexpr int RefusedEntryName = 31002;
/// A level shot larger than the program takes.
inline constexpr int RefusedPicture = 31003;
} // namespace err

/// The most bytes that a file name of an entry may have.
inline constexpr int kLongestEntryName = 255;

/// Why an entry's file name (without its folders) can't become a file of the
/// program's folder: a control character, a folder separator, or more than 255 bytes.
/// Empty when the name is fine.
QString entryNameProblem(const QString& name);

/// A name as a log entry shows it: control characters as \xHH escapes.
QString printableName(const QString& name);

/// The log entry of a level shot or script that the scan leaves out; the scan goes on.
void logRefusal(AppContext& app, int number, const QString& routineTag, const QString& description);

} // namespace steward
