#include "generate/ExportScripts.h"

#include "generate/SessionName.h"
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

QString shortestNumberText(double value)
{
    return QString::number(value, 'g', 15).toUpper();
}

ScriptValues readScriptValues(const ServerProfile& profile)
{
    constexpr auto cfg = F::txtServerConfig;
    constexpr auto spin = F::txtServerConfigSpin;
    ScriptValues v;
    v.port = profile.text(cfg(12));
    if (leadingNumber(v.port) == 0)
        v.port = QStringLiteral("28070");
    v.zone = shortestNumberText(leadingNumber(profile.text(spin(11))));
    v.hunk = shortestNumberText(leadingNumber(profile.text(spin(5))));
    v.sound = shortestNumberText(leadingNumber(profile.text(spin(12))));
    v.ip = profile.text(cfg(16));
    v.session = profile.text(cfg(1));
    v.merc = profile.isSet(F::chkQuake3Specific(18));
    return v;
}

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

} // namespace steward
