#include "maps/StockMaps.h"

namespace steward {

namespace {
const QString kDuel = QStringLiteral("duel");
const QString kFfaTypes = QStringLiteral("ffa holocron jedimaster team");
const QString kCtfTypes = QStringLiteral("ctf cty team ffa holocron jedimaster");
const QString kRavenTypes = QStringLiteral("ffa holocron jedimaster duel team");
} // namespace

const QList<StockMap>& stockMapTable()
{
    static const QList<StockMap> table = {
        {QStringLiteral("duel_bespin"), QStringLiteral("Bespin Air Vanes"), kDuel},
        {QStringLiteral("duel_hangar"), QStringLiteral("Hangar Bay 72"), kDuel},
        {QStringLiteral("duel_temple"), QStringLiteral("Ceremonial Hall"), kDuel},
        {QStringLiteral("duel_training"), QStringLiteral("Lightsaber Training"), kDuel},
        {QStringLiteral("ffa_bespin"), QStringLiteral("Bespin Streets"), kFfaTypes},
        {QStringLiteral("ffa_deathstar"), QStringLiteral("Death Star"), kFfaTypes},
        {QStringLiteral("ffa_imperial"), QStringLiteral("Star Destroyer"), kFfaTypes},
        {QStringLiteral("ffa_ns_hideout"), QStringLiteral("Garbage Facility"), kFfaTypes},
        {QStringLiteral("ffa_ns_streets"), QStringLiteral("Nar Shaddaa Streets"), kFfaTypes},
        {QStringLiteral("ffa_yavin"), QStringLiteral("Massassi Temple"), kFfaTypes},
        {QStringLiteral("ctf_bespin"), QStringLiteral("Bespin Exhaust Shafts"), kCtfTypes},
        {QStringLiteral("ctf_imperial"), QStringLiteral("Garrison 27-D"), kCtfTypes},
        {QStringLiteral("ctf_ns_streets"), QStringLiteral("Warring Factions"), kCtfTypes},
        {QStringLiteral("ctf_yavin"), QStringLiteral("Temple Tournament"), kCtfTypes},
        {QStringLiteral("duel_bay"), QStringLiteral("Imperial Shuttle Bay"), kDuel},
        {QStringLiteral("duel_carbon"), QStringLiteral("Carbon Chamber"), kDuel},
        {QStringLiteral("duel_jedi"), QStringLiteral("Battleground Jedi 2.0"), kDuel},
        {QStringLiteral("duel_pit"), QStringLiteral("Trial Pit"), kDuel},
        {QStringLiteral("ffa_raven"), QStringLiteral("Imperial Labs: Raven"), kRavenTypes},
    };
    return table;
}

const StockMap* findStockMap(const QString& mapName)
{
    for (const StockMap& row : stockMapTable())
        if (row.mapName == mapName)
            return &row;
    return nullptr;
}

const StockSetInfo& stockSet(StockSet set)
{
    auto rows = [](std::initializer_list<const char*> names) {
        QList<StockMap> maps;
        for (const char* name : names)
            maps << *findStockMap(QString::fromLatin1(name));
        return maps;
    };
    static const StockSetInfo sets[] = {
        {QStringLiteral("ID_AllStandardMPMaps"), QStringLiteral("All Standard FFA Maps"), 0,
         rows({"ffa_bespin", "ffa_deathstar", "ffa_imperial", "ffa_ns_hideout", "ffa_ns_streets", "ffa_yavin",
               "ffa_raven"})},
        {QStringLiteral("ID_AllStandardSWMaps"), QStringLiteral("All Standard CTF Maps"), 5,
         rows({"ctf_bespin", "ctf_imperial", "ctf_ns_streets", "ctf_yavin"})},
        {QStringLiteral("ID_AllStandardCPMaps"), QStringLiteral("All Standard DUEL Maps"), 3,
         rows({"duel_bay", "duel_carbon", "duel_jedi", "duel_pit"})},
    };
    return sets[static_cast<int>(set)];
}

} // namespace steward
