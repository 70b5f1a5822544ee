#pragma once
// The rotation lsvMapRotation: the maps the server plays, in order, one of them marked
// as the starting map. Its rows hold the map name, the long name, the type, an empty
// cell and, in the mark column, the name of the row's mark picture.
#include "maps/StockMaps.h"
#include "model/RotationRows.h"

#include <QString>
#include <QStringList>

namespace steward {
class AppContext;
class ServerProfile;
class Field;

/// FirstMapType of the main window: stored and cleared, and read by nothing else.
QString firstMapType(const ServerProfile& profile);
void setFirstMapType(ServerProfile& profile, const QString& type);

/// The three stock sets of the tree's pop-up menu.
void AddStandardMaps(AppContext& app, ServerProfile& profile, StockSet set);
/// The commands of the rotation's pop-up menu.
void ID_SetStartingMap(AppContext& app, ServerProfile& profile);
void ID_SortAscending(ServerProfile& profile);
void ID_SortDescending(ServerProfile& profile);
void ID_RemoveMap(AppContext& app, ServerProfile& profile);
void ID_ClearList(AppContext& app, ServerProfile& profile);

/// Shows or hides the tree, the preview, the rotation and their labels (a field's
/// caption label goes with the field).
void ShowMapControls(ServerProfile& profile, bool visible);

/// Swap a row's text with the row above or below; nothing at the first or last row.
void m_MoveUpInList(AppContext& app, ServerProfile& profile, int index);
void m_MoveDownInList(AppContext& app, ServerProfile& profile, int index);

/// True when the rotation's pop-up menu opens: the grid has a row.
bool rotationMenuOpens(const ServerProfile& profile);

} // namespace steward
