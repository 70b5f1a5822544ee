#include "commands/BanListCommands.h"

#include "generate/BanListWriter.h"
#include "platform/Clock.h"
#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "support/TextFile.h"

#include <algorithm>

namespace steward {

void cmdThreeWave_Click(AppContext& app, ServerProfile& profile, int index)
{
    Field& list = profile.field(F::lstBannedIPs);
    switch (index) {
    case 2: {
        Field& input = profile.field(F::txtServerIP);
        list.addItem(input.text());
        input.setText(QString());
        break;
    }
    case 3: {
        // The first selected item from the top, and that one only.
        const QList<int>& selected = list.selection();
        const auto first = std::min_element(selected.begin(), selected.end());
        if (first != selected.end())
            list.removeItem(*first);
        break;
    }
    case 4:
        if (list.count() > 0 && app.prompts().message(QStringLiteral("Clear list?"), kProductTitle, Icon::Question,
                                                      Buttons::YesNo) == Answer::Yes)
            list.setItems({});
        break;
    default:
        break;
    }
}

bool gbln_MakeBANList(AppContext& app, ServerProfile& profile, int count)
{
    try {
        const QStringList lines = banListLines(profile, count, app.clock(), app.serverExecutable);
        TextFileWriter file(app.baseFolder() + QStringLiteral("/BAN.cfg"));
        for (const QString& line : lines)
            file.line(line);
        file.close();
        return true;
    } catch (const RuntimeError& e) {
        app.prompts().message(e.description(), QStringLiteral("Function::gbln_MakeBANList"), Icon::Information);
        return false;
    }
}

} // namespace steward
