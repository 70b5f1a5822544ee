#include "wizard/AdvancedCycleSave.h"

#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "support/Errors.h"
#include "support/Strings.h"
#include "support/TextFile.h"
#include "wizard/AdvancedCycleWriter.h"

namespace steward {

bool saveAdvancedMapCycle(AppContext& app, const WizardState& state, const QString& path, const QString& fileTitle)
{
    try {
        const AdvancedMapCycle cycle = MakeAdvancedMapCycle(state.records, state.startingMap, fileTitle);
        TextFileWriter main(path);
        const QString folder = GetPathPart(path);
        for (const AdvancedCycleEntry& entry : cycle.entries) {
            main.line(entry.line);
            if (entry.companionName.isEmpty())
                continue;
            TextFileWriter companion(folder + entry.companionName);
            for (const QString& line : entry.companionLines)
                companion.line(line);
            companion.close();
        }
        for (const QString& line : cycle.tail)
            main.line(line);
        main.close();
        return true;
    } catch (const RuntimeError& e) {
        const QString source = e.source().isEmpty() ? app.programName : e.source();
        app.prompts().message(source, QStringLiteral("Error saving file"), Icon::Exclamation);
        return false;
    }
}

} // namespace steward
