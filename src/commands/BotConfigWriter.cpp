#include "commands/BotConfigWriter.h"

#include "generate/BotConfigLines.h"
#include "platform/Clock.h"
#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "support/TextFile.h"

namespace steward {

QString botConfigPath(const AppContext& app) { return app.baseFolder() + QStringLiteral("/BOTFile.cfg"); }

bool gbln_MakeBOTConfig(AppContext& app, ServerProfile& profile)
{
    try {
        const QDateTime now = app.clock().now();
        const BotConfig config = botConfigLines(
            profile, {app.serverExecutable, app.clock().longDate(now.date()), app.clock().timeText(now.time())});
        TextFileWriter file(botConfigPath(app));
        for (const QString& line : config.lines)
            file.line(line);
        file.close();
        const QString notice = botConfigNoticeText(config.notice);
        if (!notice.isEmpty())
            app.prompts().message(notice, kProductTitle,
                                  config.notice == BotConfigNotice::NoSkillLevel ? Icon::Information
                                                                                 : Icon::Exclamation);
        return config.use;
    } catch (const RuntimeError& e) {
        app.prompts().message(e.description(), QStringLiteral("Function::gbln_MakeBOTConfig"), Icon::Information);
        return false;
    }
}

} // namespace steward
