#include "commands/BotRosterCommands.h"

#include "bots/BotRoster.h"
#include "bots/BotRosterFile.h"
#include "commands/BotConfigWriter.h"
#include "platform/Prompts.h"
#include "platform/System.h"
#include "support/AppContext.h"
#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "support/FileDialog.h"
#include "support/DesktopOpen.h"

#include <QUrl>

namespace steward {

namespace {

/// "Clear current BOT list?": true on Yes.
bool askClear(AppContext& app)
{
    return app.prompts().message(QStringLiteral("Clear current BOT list?") + kTail, kProductTitle, Icon::Question,
                                 Buttons::YesNo) == Answer::Yes;
}

void saveList(AppContext& app, ServerProfile& profile)
{
    if (rosterBotCount(profile) == 0)
        return;
    CFileDialog dialog(app);
    dialog.DefaultExt = QStringLiteral("lst");
    dialog.DialogTitle = QStringLiteral("Save BOT list");
    dialog.FileName = QString();
    dialog.Filter = QStringLiteral("BOT list (*.lst)|*.lst");
    dialog.Flags = 0;
    dialog.InitialDir = app.programFolder;
    dialog.Show(false);
    if (dialog.FileName.isEmpty())
        return;
    saveRosterFile(dialog.FileName, rosterBots(profile), RosterForm::Tab);
    app.prompts().message(QLatin1Char('\'') + dialog.FileTitle + QStringLiteral("' has been saved") + kTail,
                          kProductTitle, Icon::Information);
}

void loadList(AppContext& app, ServerProfile& profile)
{
    CFileDialog dialog(app);
    dialog.DefaultExt = QStringLiteral("lst");
    dialog.DialogTitle = QStringLiteral("Load Arena Steward BOT List");
    dialog.Filter = QStringLiteral("Arena Steward BOT List files (*.lst)|*.lst");
    dialog.FilterIndex = 0;
    dialog.Flags = 12292; // the file must exist, no read-only box, ask about a missing file
    dialog.MaxFileSize = 255;
    dialog.InitialDir = app.programFolder;
    if (!dialog.Show(true))
        return;
    if (rosterBotCount(profile) > 0 && !askClear(app))
        return;
    replaceRosterBots(profile, {});
    replaceRosterBots(profile, loadRosterFile(dialog.FileName, RosterForm::Tab));
}

void viewFile(AppContext& app, ServerProfile& profile)
{
    if (rosterBotCount(profile) == 0)
        return;
    if (!gbln_MakeBOTConfig(app, profile))
        return;
    // The desktop's editor, through the system's "open" action.
    openOnDesktop(app, QUrl::fromLocalFile(botConfigPath(app)));
}

} // namespace

void cmdBOTs_Click(AppContext& app, ServerProfile& profile, int index, const std::function<void()>& showPicker)
{
    switch (index) {
    case 0:
        saveList(app, profile);
        break;
    case 1:
        loadList(app, profile);
        break;
    case 2:
        if (rosterBotCount(profile) > 0 && askClear(app))
            replaceRosterBots(profile, {});
        break;
    case 3:
        if (showPicker)
            showPicker();
        break;
    case 4:
        viewFile(app, profile);
        break;
    default:
        break;
    }
}

} // namespace steward
