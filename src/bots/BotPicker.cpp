#include "bots/BotPicker.h"

#include "bots/BotModelScan.h"
#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "support/Strings.h"

namespace steward {

const std::vector<StockBotModel>& stockBotModels()
{
    static const std::vector<StockBotModel> models = [] {
        const char* dark[] = {"Desann",   "Tavion",          "Shadowtrooper", "Reborn",      "Galak",
                              "Reelo",    "Chiss",           "trandoshan",    "Weequay",     "Rodian",
                              "Imperial", "Imperial_worker", "Swamptrooper",  "Stormtrooper"};
        const char* light[] = {"Luke", "Prisoner",   "Monmothma", "Jan",   "Jedi",     "Morgan", "Jeditrainer",
                               "Kyle", "Bespin_cop", "Gran",      "Lando", "Ugnaught", "Rebel"};
        std::vector<StockBotModel> all;
        for (const char* name : dark)
            all.push_back({QString::fromLatin1(name), true});
        for (const char* name : light)
            all.push_back({QString::fromLatin1(name), false});
        return all;
    }();
    return models;
}

QStringList botTeams() { return {QStringLiteral("RED"), QStringLiteral("BLUE")}; }

std::optional<QStringList> pickedBotRow(const PickerInput& input)
{
    if (trimBlanks(input.name).isEmpty())
        return std::nullopt;
    QString model;
    if (input.customTab)
        model = input.customModel;
    else if (input.stockIndex >= 0 && input.stockIndex < static_cast<int>(stockBotModels().size()))
        model = stockBotModels().at(static_cast<size_t>(input.stockIndex)).name;
    QString name = input.name;
    name.replace(QLatin1Char(' '), QLatin1Char('_'));
    return QStringList{name, input.skill, input.team, model, input.ping};
}

QString pickedCustomModel(const QString& firstCell)
{
    return firstCell == QLatin1String("BOT Name") ? QString() : firstCell;
}

bool runBotScan(AppContext& app, ScanProgress& progress)
{
    if (app.prompts().message(QStringLiteral("Run a new BOT scan?") + kTail, kProductTitle, Icon::Question,
                              Buttons::YesNo) != Answer::Yes)
        return false;
    return ScanBotModels(app, progress, app.gameFolder, QStringLiteral("Base")) &&
           FileExists(app.programFile(kBotListFile));
}

} // namespace steward
