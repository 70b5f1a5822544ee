#pragma once
// The game's stock maps: the table the scan recognises them by, and the three sets
// the rotation can be filled with.
#include <QList>
#include <QString>

namespace steward {

struct StockMap {
    QString mapName;
    QString longName;
    QString type;
};

/// The 19 stock maps in the order the scan compares them.
const QList<StockMap>& stockMapTable();
/// The row whose map name equals the name exactly, case and all, or nullptr.
const StockMap* findStockMap(const QString& mapName);

enum class StockSet { FreeForAll, CaptureTheFlag, Duel };

struct StockSetInfo {
    QString toolId;
    QString caption;
    int gameType; ///< the index of optDefaultGameType the set selects
    QList<StockMap> maps;
};

const StockSetInfo& stockSet(StockSet set);

} // namespace steward
