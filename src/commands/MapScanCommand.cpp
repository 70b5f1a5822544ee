#include "commands/MapScanCommand.h"

#include "commands/MapCycleCommands.h"
#include "maps/MapScanChain.h"
#include "maps/MapScanner.h"
#include "maps/MapTree.h"
#include "maps/ScanProgress.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "platform/Prompts.h"
#include "support/AppContext.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/FileDialog.h"

namespace steward {

void mnuMapScan_Click(AppContext& app, ServerProfile& profile, const WineEnvironment& env)
{
    ScanProgress& progress = scanProgress(app);
    CCursor cursor(app.prompts());
    try {
        if (app.prompts().message(QStringLiteral("Scan for new maps?") + kTail, kProductTitle, Icon::Question,
                                  Buttons::YesNo) != Answer::Yes)
            return;
        QString folder = app.gameFolder;
        if (folder.isEmpty())
            folder = GetInstallPath(app, env);
        folder = cutFolderEnd(folder);

        cursor.SetCursor(pointer::Hourglass);
        auto end = [&] {
            progress.unload();
            app.prompts().processEvents();
            cursor.RestoreCursor();
        };
        const QString base = QStringLiteral("Base");
        MapScanChain chain;
        if (!ScanForMaps(app, base, QStringLiteral("Jedi"), folder, &chain) ||
            !ExtractLevelShots(app, base, folder, &chain) || !ConvertTgaToBmp(app, &chain)) {
            end();
            return;
        }
        LoadMapTree(app, profile, QStringLiteral("Jedi"), QStringLiteral("Jedi"));

        profile.field(F::lsvMapRotation).setRows({});
        setCheckFromCode(profile, F::chkUseINI, 0);
        for (FieldId label : {F::lblMapsSelected, F::lblLongMapName, F::lblMapType})
            profile.setText(label, QString());
        showPicture(profile, levelShotFolder(app) + QStringLiteral("/unknown.bmp"));

        progress.unload();
        app.prompts().processEvents();
        app.prompts().message(QStringLiteral("Map scan complete ") + kTail, kProductTitle, Icon::Information);
        cursor.RestoreCursor();
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::frmMain.mnuMapScan_Click(Sub)"));
        progress.unload();
        cursor.RestoreCursor();
    }
}

} // namespace steward
