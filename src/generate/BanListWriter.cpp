#include "generate/BanListWriter.h"

#include "platform/Clock.h"
#include "platform/Prompts.h"
#include "shell/AppContext.h"
#include "shell/Constants.h"
#include "shell/ServerProfile.h"
#include "support/Errors.h"
#include "support/TextFile.h"

namespace steward {

bool gbln_MakeBANList(AppContext& app, ServerProfile& profile, int count)
{
    try {
        TextFileWriter file(app.baseFolder() + QStringLiteral("/BAN.cfg"));
        const QString slashes(63, QLatin1Char('/'));
        const QDateTime now = app.clock().now();
        file.line(QStringLiteral("// JK2 BAN Configuration File"));
        file.line(slashes);
        file.line(QStringLiteral("// File Created by: Arena Steward ver: ") + kVersionText);
        file.line(QStringLiteral("// File Created On: ") + app.clock().longDate(now.date()) + QStringLiteral(" at ") +
                  app.clock().timeText(now.time()));
        file.line(QStringLiteral("// ") + kContactAddress);
        file.line(slashes);
        file.line();
        file.line(QStringLiteral("// This file is automatically executed by ") + app.serverExecutable);
        file.line();
        file.line();
        file.line(QStringLiteral("seta g_filterBan \"1\""));
        file.line(QStringLiteral("// Begin Banned IP's List"));
        const QStringList& items = profile.field(QStringLiteral("lstBannedIPs")).items();
        for (int i = 0; i < count; ++i) {
            // A position past the list reads as an empty item.
            const QString item = i < items.size() ? items.at(i) : QString();
            if (!item.isEmpty())
                file.line(QStringLiteral("addIP ") + item);
        }
        file.line(QStringLiteral("// End Banned IP's List"));
        file.close();
        return true;
    } catch (const RuntimeError& e) {
        app.prompts().message(e.description(), QStringLiteral("Function::gbln_MakeBANList"), Icon::Information);
        return false;
    }
}

} // namespace steward
