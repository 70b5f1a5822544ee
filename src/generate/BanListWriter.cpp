#include "generate/BanListWriter.h"

#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "platform/Clock.h"

namespace steward {

QStringList banListLines(const ServerProfile& profile, int count, const Clock& clock, const QString& serverExecutable)
{
    const QString slashes(63, QLatin1Char('/'));
    const QDateTime now = clock.now();
    QStringList lines = {
        QStringLiteral("// JK2 BAN Configuration File"),
        slashes,
        QStringLiteral("// File Created by: Arena Steward ver: ") + kVersionText,
        QStringLiteral("// File Created On: ") + clock.longDate(now.date()) + QStringLiteral(" at ") +
            clock.timeText(now.time()),
        QStringLiteral("// ") + kContactAddress,
        slashes,
        QString(),
        QStringLiteral("// This file is automatically executed by ") + serverExecutable,
        QString(),
        QString(),
        QStringLiteral("seta g_filterBan \"1\""),
        QStringLiteral("// Begin Banned IP's List"),
    };
    const QStringList& items = profile.field(F::lstBannedIPs).items();
    for (int i = 0; i < count; ++i) {
        const QString item = i < items.size() ? items.at(i) : QString();
        if (!item.isEmpty())
            lines << QStringLiteral("addIP ") + item;
    }
    lines << QStringLiteral("// End Banned IP's List");
    return lines;
}

} // namespace steward
