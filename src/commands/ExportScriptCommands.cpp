#include "commands/ExportScriptCommands.h"

#include "commands/SessionName.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/FileDialog.h"
#include "support/Strings.h"
#include "support/TextFile.h"

namespace steward {

bool scriptSessionName(AppContext& app, const ScriptValues& values, QString& session)
{
    if (values.session.isEmpty()) {
        warn(app, QStringLiteral("A Session name is required"));
        return false;
    }
    if (!ValidSessionName(app, values.session))
        return false;
    session = completeSessionName(values.session).replace(QLatin1Char(' '), QLatin1Char('_'));
    return true;
}

void mnuBatchFile_Click(AppContext& app, ServerProfile& profile)
{
    try {
        const ScriptValues values = readScriptValues(profile);
        QString session;
        if (!scriptSessionName(app, values, session))
            return;

        CFileDialog dialog(app);
        dialog.DialogTitle = QStringLiteral("Save Batch File");
        dialog.Flags = 2;
        dialog.Filter = QStringLiteral("Batch File (*.bat)|*.bat");
        dialog.InitialDir = withSlash(app.gameFolder);
        if (!dialog.Show(false) || dialog.FileName.isEmpty())
            return;

        TextFileWriter file(dialog.FileName);
        file.line(batchFileLine(app.serverExecutable, values, session));
        file.close();
        app.prompts().message(QStringLiteral("'") + dialog.FileName + QStringLiteral("' has been Saved") + kTail,
                              QStringLiteral("Batch File"), Icon::Information);
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::frmMain.mnuBatchFile_Click(Function)"));
    }
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
