#pragma once
// The rotation lsvMapRotation: the maps the server plays, in order, one of them marked
// as the starting map. Its rows hold the map name, the long name, the type, an empty
// cell and, in the mark column, the name of the row's mark picture.
#include "maps/StockMaps.h"

#include <QString>
#include <QStringList>

namespace steward {
class AppContext;
class ServerProfile;
class Field;

/// The cell that names the mark picture of column 0.
inline constexpr int kMarkColumn = 4;
inline const QString kMarkNotSelected = QStringLiteral("imgMapNotSelected");
inline const QString kMarkSelected = QStringLiteral("imgSelectedMap");

/// A new row of the rotation, with the common mark.
QStringList rotationRow(const QString& mapName, const QString& longName, const QString& type);
/// The mark picture of a row: one of the two names, or empty for a row without one.
QString rotationMark(const Field& grid, int row);
void setRotationMark(Field& grid, int row, const QString& mark);
/// The current row of the grid: its current position, 0 when it has none, -1 when
/// the grid is empty.
int currentRotationRow(const Field& grid);

/// FirstMapType of the main window: stored and cleared, and read by nothing else.
QString firstMapType(const ServerProfile& profile);
void setFirstMapType(ServerProfile& profile, const QString& type);

/// Sets a check box from code; when its value changes its click runs, as for the
/// user's click (chkUseINI and chkMapAutoCycle).
void setCheckFromCode(AppContext& app, ServerProfile& profile, const QString& name, int value);

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
/// The click of chkMapAutoCycle, after its value changed.
void chkMapAutoCycle_Click(AppContext& app, ServerProfile& profile);
/// Fills the four cboConfig lists with the cfg files of the base folder.
void FillConfigLists(AppContext& app, ServerProfile& profile);

/// Swap a row's text with the row above or below; nothing at the first or last row.
void m_MoveUpInList(AppContext& app, ServerProfile& profile, int index);
void m_MoveDownInList(AppContext& app, ServerProfile& profile, int index);

/// True when the rotation's pop-up menu opens: the grid has a row.
bool rotationMenuOpens(const ServerProfile& profile);
/// Runs a tool of the map pop-up menus or the map commands of the menu bar; false
/// for an id that isn't one of them.
bool runMapTool(AppContext& app, ServerProfile& profile, const QString& toolId);

} // namespace steward
