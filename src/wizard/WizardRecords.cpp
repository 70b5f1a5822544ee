#include "wizard/WizardRecords.h"

#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"

namespace steward {

bool prepareMapWizard(AppContext& app, ServerProfile& profile, WizardState& state)
{
    const Field& rotation = profile.field(F::lsvMapRotation);
    const int upper = rotation.count() - 1;
    if (upper < 0) {
        app.prompts().message(QStringLiteral("There are no maps in the list, please select at least one map") + kTail,
                              kProductTitle, Icon::Information);
        return false;
    }

    QString gameType;
    for (Field* option : profile.array(F::optDefaultGameType)) {
        if (option->isSet()) {
            gameType = QStringLiteral("g_gametype ") + option->tag();
            break;
        }
    }

    // WizardStartingMap is the wizard's own: page 1 sets it, and a new start keeps it.
    const QString startingMap = state.startingMap;
    state = WizardState{};
    state.upper = upper;
    state.startingMap = startingMap;
    for (int row = 0; row <= upper; ++row) {
        WizardMapRecord record;
        record.MapName = rotation.cell(row, 0);
        record.GameType = gameType;
        state.records.append(record);
    }
    app.prompts().processEvents();
    return true;
}

} // namespace steward
