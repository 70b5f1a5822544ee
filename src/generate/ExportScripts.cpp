#include "generate/ExportScripts.h"

#include "model/FieldIndexes.h"
#include "platform/Clock.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "support/Strings.h"

namespace steward {

QString shortestNumberText(double value) { return QString::number(value, 'g', 15).toUpper(); }

ScriptValues readScriptValues(const ServerProfile& profile)
{
    constexpr auto cfg = F::txtServerConfig;
    constexpr auto spin = F::txtServerConfigSpin;
    ScriptValues v;
    v.port = profile.text(cfg(ServerBox::Port));
    if (leadingNumber(v.port) == 0)
        v.port = QStringLiteral("28070");
    v.zone = shortestNumberText(leadingNumber(profile.text(spin(ServerBox::ZoneMegs))));
    v.hunk = shortestNumberText(leadingNumber(profile.text(spin(ServerBox::HunkMegs))));
    v.sound = shortestNumberText(leadingNumber(profile.text(spin(ServerBox::SoundMegs))));
    v.ip = profile.text(cfg(ServerBox::Address));
    v.session = profile.text(cfg(ServerBox::Session));
    v.merc = profile.isSet(F::chkQuake3Specific(18));
    return v;
}

QString batchFileLine(const QString& executable, const ScriptValues& v, const QString& session)
{
    QString line = QLatin1Char('"') + executable + QLatin1Char('"');
    line += v.merc ? QStringLiteral(" +set g_jediVmerc 1 +set com_zoneMegs ") : QStringLiteral(" +set com_zoneMegs ");
    line += v.zone + QStringLiteral(" +set com_hunkMegs ") + v.hunk + QStringLiteral(" +set com_soundmegs ") + v.sound;
    line += QStringLiteral(" +set vm_game 0 +set dedicated 2 +set net_port ") + v.port;
    if (!v.ip.isEmpty())
        line += QStringLiteral(" +set net_ip ") + v.ip;
    return line + QStringLiteral(" +exec ") + session;
}

QStringList shellScriptLines(AppContext& app, const ScriptValues& v, const QString& session, const QString& fileTitle)
{
    const QString hashes(61, QLatin1Char('#'));
    const QDateTime now = app.clock().now();
    QString start = v.merc ? QStringLiteral("./jk2ded +set fs_basepath ./ +set g_jediVmerc 1 +set com_zoneMegs ")
                           : QStringLiteral("./jk2ded +set fs_basepath ./ +set com_zoneMegs ");
    start += v.zone + QStringLiteral(" +set com_hunkMegs ") + v.hunk + QStringLiteral(" +set com_soundmegs ") + v.sound;
    start += QStringLiteral(" +set vm_game 2 +set vm_cgame 2 +set vm_ui 2 +set dedicated 2 +set ttycon 0") +
             QStringLiteral(" +set net_port ");
    start += v.port + QStringLiteral(" +exec ") + session;
    return {
        QStringLiteral("#!/bin/sh"),
        hashes,
        QStringLiteral("# File Created by: Arena Steward ver: ") + kVersionText,
        QStringLiteral("# File Created On: ") + app.clock().longDate(now.date()) + QStringLiteral(" at ") +
            app.clock().timeText(now.time()),
        QStringLiteral("# ") + kContactAddress,
        hashes,
        QStringLiteral("# Remember to change the path below to point to your JK2 folder"),
        QStringLiteral("# To run this file, open a terminal window and cd to the folder"),
        QStringLiteral("# you copied this file to and type;"),
        QStringLiteral("# sh ") + fileTitle,
        hashes,
        QStringLiteral("cd /home/quillon/Star Wars JK II Jedi Outcast"),
        start,
    };
}

} // namespace steward
