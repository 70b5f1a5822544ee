#pragma once
// The rules of the bot picker frmBOT, which adds one bot to the roster: the stock
// models on the tab "Standard", the installed models on the tab "Custom", and the row
// that OK makes of the picker's boxes.
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace steward {
class AppContext;
class ScanProgress;

struct StockBotModel {
    QString name; ///< the option button's caption, spelled as the game spells the model
    bool darkSide = false;
};

/// The 27 stock models, chkBOT(0) to chkBOT(26): 14 of the dark side, then 13 of the
/// light side.
const std::vector<StockBotModel>& stockBotModels();

/// "RED", "BLUE".
QStringList botTeams();

/// What the picker's boxes hold when OK is pressed.
struct PickerInput {
    QString name; ///< txtBOTName as it stands
    bool customTab = false;
    QString customModel; ///< the caption of lblTheSelectedBOT
    int stockIndex = -1; ///< the first selected chkBOT, -1 for none
    QString skill;
    QString team;
    QString ping;
};

/// The roster row NAME, SKILL, TEAM, MODEL, PING that OK appends, or none when the name
/// is blank: then OK does nothing. Blanks in the name become "_"; the model stays as it is.
std::optional<QStringList> pickedBotRow(const PickerInput& input);

/// The model that a click on the installed models' grid picks: the text of column 0 of
/// the clicked row, none for an empty cell or the heading "BOT Name".
QString pickedCustomModel(const QString& firstCell);

/// The Scan button: asks "Run a new BOT scan?" and scans the game's base folder. True
/// when the grid is to be loaded again from BOT.txt. A failed scan is thrown on.
bool runBotScan(AppContext& app, ScanProgress& progress);

} // namespace steward
