#pragma once

#include <QIcon>
#include <QString>

namespace steward {

/// The id under which the desktop entry, the icon and the metainfo are installed.
QString desktopId();

/// The program's icon, built from the PNGs that ship inside the program.
QIcon programIcon();

/// Gives every window of the running application the program's icon and ties the
/// application to its desktop entry, so that task bars group it under the menu entry.
void applyDesktopIdentity();

} // namespace steward
