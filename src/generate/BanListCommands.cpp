#include "generate/BanListCommands.h"

#include "platform/Prompts.h"
#include "shell/AppContext.h"
#include "shell/Constants.h"
#include "shell/ServerProfile.h"

#include <algorithm>

namespace steward {

void cmdThreeWave_Click(AppContext& app, ServerProfile& profile, int index)
{
    Field& list = profile.field(QStringLiteral("lstBannedIPs"));
    switch (index) {
    case 2: {
        Field& input = profile.field(QStringLiteral("txtServerIP"));
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
        if (list.count() > 0 &&
            app.prompts().message(QStringLiteral("Clear list?"), kProductTitle, Icon::Question, Buttons::YesNo) ==
                Answer::Yes)
            list.setItems({});
        break;
    default:
        break;
    }
}

} // namespace steward
