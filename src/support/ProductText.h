#pragma once
// The program's own name and version, and the fixed pieces of its messages and files.
#include <QString>

namespace steward {

inline const QString kVersionText = QStringLiteral("JUNE 13 2002 beta 1.4");
inline const QString kProductTitle = QStringLiteral("Arena Steward");
/// Nine blanks, appended to nearly every message to widen the box.
inline const QString kTail = QStringLiteral("         ");
inline const QString kCrLf = QStringLiteral("\r\n");
/// The author's contact address, written into the generated files.
inline const QString kContactAddress = QStringLiteral("arena.steward@example.org");

} // namespace steward
