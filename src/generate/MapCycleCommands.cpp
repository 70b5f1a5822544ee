#include "generate/MapCycleCommands.h"

#include "generate/MapCycleWriter.h"
#include "maps/MapRotation.h"
#include "platform/Prompts.h"
#include "platform/System.h"
#include "shell/AppContext.h"
#include "shell/Constants.h"
#include "shell/ServerProfile.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/FileDialog.h"

#include <QUrl>

namespace steward {

namespace {
void showFile(AppContext& app, const QString& path)
{
    if (app.services.opener)
        app.services.opener->open(QUrl::fromLocalFile(path));
}
} // namespace

void mnuExportMapCycle_Click(AppContext& app, ServerProfile& profile)
{
    try {
        QString missing;
        if (profile.field(QStringLiteral("lsvMapRotation")).count() == 0)
            missing = QStringLiteral("No Maps have been selected");
        else if (profile.startingMap().isEmpty())
            missing = QStringLiteral("No Starting Map has been selected");
        if (!missing.isEmpty()) {
            app.prompts().message(missing + kTail, kProductTitle, Icon::Exclamation);
            if (profile.value(QStringLiteral("vsMainTab")) != 2)
                profile.setValue(QStringLiteral("vsMainTab"), 2);
            return;
        }

        CFileDialog dialog(app);
        dialog.DialogTitle = QStringLiteral("Save Arena Steward Map Cycle");
        dialog.Flags = 2;
        dialog.Filter = QStringLiteral("Arena Steward Map Cycle (*.cfg)|*.cfg");
        dialog.InitialDir = app.baseFolder();
        dialog.FileName = QString();
        dialog.Show(false);
        QString path = dialog.FileName;
        if (path.isEmpty())
            return;
        if (MakeMapCycle(app, profile, path, true, false))
            showFile(app, path);
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::frmMain.mnuExportMapCycle_Click(Function)"));
    }
}

void chkUseINI_Click(AppContext& app, ServerProfile& profile)
{
    if (app.formLoading || app.wizardSettingCycle)
        return;
    try {
        const QString box = QStringLiteral("chkUseINI");
        const QString file = QStringLiteral("txtServerINI");
        if (!profile.isSet(box)) {
            profile.setText(file, QString());
            ShowMapControls(profile, true);
            return;
        }
        setCheckFromCode(app, profile, QStringLiteral("chkMapAutoCycle"), 0);

        CFileDialog dialog(app);
        dialog.DialogTitle = QStringLiteral("Select Advanced Map Cycle");
        dialog.Flags = 4096;
        dialog.Filter = QStringLiteral("JK2 Advanced Map Cycle (*.cfg)|*.cfg");
        dialog.InitialDir = app.baseFolder();
        dialog.FileName = QString();
        dialog.Show(true);
        if (!dialog.FileName.isEmpty()) {
            profile.setText(file, dialog.FileName);
            profile.field(QStringLiteral("lsvMapRotation")).setRows({});
            ShowMapControls(profile, false);
        } else {
            profile.setText(file, QString());
            setCheckFromCode(app, profile, box, 0);
            ShowMapControls(profile, true);
        }
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::frmMain.chkUseINI_Click(Sub)"));
    }
}

void txtServerINI_DblClick(AppContext& app, ServerProfile& profile)
{
    try {
        const QString path = profile.text(QStringLiteral("txtServerINI")).trimmed();
        if (!path.isEmpty())
            showFile(app, path);
    } catch (const RuntimeError&) {
        // Failures are ignored here.
    }
}

} // namespace steward
