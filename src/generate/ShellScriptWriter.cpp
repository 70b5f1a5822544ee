#include "generate/ExportScripts.h"

#include "generate/SessionName.h"
#include "platform/Clock.h"
#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/FileDialog.h"
#include "support/Strings.h"
#include "support/TextFile.h"

namespace steward {

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

void mnuLinux_Click(AppContext& app, ServerProfile& profile)
{
    try {
        const ScriptValues values = readScriptValues(profile);
        QString session;
        if (!scriptSessionName(app, values, session))
            return;
        session = session.toLower();

        app.prompts().message(
            QStringLiteral("The following shell script is a guide and will need paths adjusted to point to your JK2 "
                           "folder") +
                kTail + kCrLf +
                QStringLiteral("Place this file in your Jedi Knight II folder that contains the jk2ded executable and "
                               "execute it from there.") +
                kTail + kCrLf + QStringLiteral("Don't forget to include the ") + session +
                QStringLiteral(" file, place that in your main folder") + kTail + kCrLf +
                QStringLiteral("along with your map cycle configuration."),
            kProductTitle, Icon::Information);

        CFileDialog dialog(app);
        dialog.DialogTitle = QStringLiteral("Save Linux Shell Script");
        dialog.Flags = 2;
        dialog.Filter = QStringLiteral("Linux Shell Script (*.sh)|*.sh");
        dialog.InitialDir = withSlash(app.gameFolder);
        if (!dialog.Show(false) || dialog.FileName.isEmpty())
            return;

        TextFileWriter file(dialog.FileName);
        for (const QString& line : shellScriptLines(app, values, session, dialog.FileTitle))
            file.line(line);
        file.close();
        app.prompts().message(QStringLiteral("Shell script has been Saved") + kTail,
                              QStringLiteral("Linux Shell Script"), Icon::Information);
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::frmMain.mnuLinux_Click(Function)"));
    }
}

} // namespace steward
