#include "commands/MapCycleCommands.h"

#include "generate/MapCycleWriter.h"
#include "maps/MapRotation.h"
#include "platform/Prompts.h"
#include "platform/System.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/FileDialog.h"
#include "support/TextFile.h"
#include "support/Strings.h"
#include "support/DesktopOpen.h"

#include <QUrl>

namespace steward {

namespace {
void showFile(AppContext& app, const QString& path) { openOnDesktop(app, QUrl::fromLocalFile(path)); }
} // namespace

void mnuExportMapCycle_Click(AppContext& app, ServerProfile& profile)
{
    try {
        QString missing;
        if (profile.field(F::lsvMapRotation).count() == 0)
            missing = QStringLiteral("No Maps have been selected");
        else if (profile.startingMap().isEmpty())
            missing = QStringLiteral("No Starting Map has been selected");
        if (!missing.isEmpty()) {
            app.prompts().message(missing + kTail, kProductTitle, Icon::Exclamation);
            if (profile.value(F::vsMainTab) != 2)
                profile.setValue(F::vsMainTab, 2);
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
    if (profile.isLoading())
        return;
    try {
        constexpr auto box = F::chkUseINI;
        constexpr auto file = F::txtServerINI;
        if (!profile.isSet(box)) {
            profile.setText(file, QString());
            ShowMapControls(profile, true);
            return;
        }
        setCheckFromCode(profile, F::chkMapAutoCycle, 0);

        CFileDialog dialog(app);
        dialog.DialogTitle = QStringLiteral("Select Advanced Map Cycle");
        dialog.Flags = 4096;
        dialog.Filter = QStringLiteral("JK2 Advanced Map Cycle (*.cfg)|*.cfg");
        dialog.InitialDir = app.baseFolder();
        dialog.FileName = QString();
        dialog.Show(true);
        if (!dialog.FileName.isEmpty()) {
            profile.setText(file, dialog.FileName);
            profile.field(F::lsvMapRotation).setRows({});
            ShowMapControls(profile, false);
        } else {
            profile.setText(file, QString());
            setCheckFromCode(profile, box, 0);
            ShowMapControls(profile, true);
        }
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::frmMain.chkUseINI_Click(Sub)"));
    }
}

void txtServerINI_DblClick(AppContext& app, ServerProfile& profile)
{
    try {
        const QString path = profile.text(F::txtServerINI).trimmed();
        if (!path.isEmpty())
            showFile(app, path);
    } catch (const RuntimeError&) {
        // Failures are ignored here.
    }
}

bool MakeMapCycle(AppContext& app, ServerProfile& profile, QString& cycleFileName, bool exportOnly, bool useSavedCycle)
{
    bool result = true;
    try {
        QString path;
        if (exportOnly) {
            path = cycleFileName;
        } else if (useSavedCycle) {
            cycleFileName = GetNamePart(profile.text(F::txtServerINI));
            return true;
        } else {
            cycleFileName = QStringLiteral("jediMaps.cfg");
            QString folder = app.baseFolder();
            path = AddSlash(folder) + cycleFileName;
        }

        const QStringList lines = rotationCycleLines(profile, app.clock());
        TextFileWriter file(path);
        for (const QString& line : lines)
            file.line(line);
        file.close();
    } catch (const RuntimeError& e) {
        result = false;
        app.prompts().message(e.description(), kProductTitle, Icon::Exclamation);
    }
    return result;
}

QString gbln_LoadMapCycle(AppContext& app, ServerProfile& profile, const QString& cycleFile)
{
    Q_UNUSED(profile);
    try {
        const QStringList lines = readLines(cycleFile);
        const QString last = lines.isEmpty() ? QString() : lines.last();
        if (!last.isEmpty() && last.startsWith(QLatin1String("//")))
            return last.mid(2, 999);
        app.prompts().message(
            QStringLiteral("Arena Steward was unable to set a starting map from the selected configuration file") +
                kTail + kCrLf +
                QStringLiteral("this is probably because an older configuration file has been selected.") + kTail +
                kCrLf +
                QStringLiteral("Please re-create a new map configuration file with Arena Steward and run again."),
            kProductTitle, Icon::Exclamation);
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::Code.gbln_LoadMapCycle(Function)"));
    }
    return {};
}

void chkMapAutoCycle_Click(AppContext& app, ServerProfile& profile)
{
    Q_UNUSED(app);
    const bool checked = profile.isSet(F::chkMapAutoCycle);
    ShowMapControls(profile, !checked);
    if (checked)
        setCheckFromCode(profile, F::chkUseINI, 0);
    profile.field(F::cboStartingMap).setVisible(checked);
}

void attachClickRoutines(AppContext& app, ServerProfile& profile)
{
    profile.onClick(F::chkUseINI, [&app, &profile] { chkUseINI_Click(app, profile); });
    profile.onClick(F::chkMapAutoCycle, [&app, &profile] { chkMapAutoCycle_Click(app, profile); });
}

} // namespace steward
