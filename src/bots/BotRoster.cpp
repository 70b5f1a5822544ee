#include "bots/BotRoster.h"

#include "bots/BotRosterFile.h"
#include "generate/BotSkills.h"
#include "support/AppContext.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace steward {

namespace {
constexpr auto kRoster = F::grdBOTList;
} // namespace

QStringList rosterHeadings()
{
    return {QStringLiteral("NAME"), QStringLiteral("SKILL"), QStringLiteral("TEAM"), QStringLiteral("MODEL"),
            QStringLiteral("PING")};
}

void SetupBotControls(AppContext& app, ServerProfile& profile)
{
    Q_UNUSED(app);
    profile.field(kRoster).setRows({rosterHeadings()});
    Field& skill = profile.field(F::cboBOT);
    skill.setItems(botSkillNames());
    skill.setText(defaultBotSkill());
}

int rosterBotCount(const ServerProfile& profile)
{
    return std::max(0, static_cast<int>(profile.field(kRoster).rows().size()) - 1);
}

QList<QStringList> rosterBots(const ServerProfile& profile)
{
    const QList<QStringList>& rows = profile.field(kRoster).rows();
    return rows.size() > 1 ? rows.mid(1) : QList<QStringList>();
}

void replaceRosterBots(ServerProfile& profile, const QList<QStringList>& rows)
{
    Field& grid = profile.field(kRoster);
    const QStringList heading = grid.rows().isEmpty() ? rosterHeadings() : grid.rows().first();
    grid.setRows(QList<QStringList>{heading} + rows);
}

void appendRosterBot(ServerProfile& profile, const QStringList& row)
{
    Field& grid = profile.field(kRoster);
    if (grid.rows().isEmpty())
        grid.addRow(rosterHeadings());
    grid.addRow(row);
}

void loadLastBots(AppContext& app, ServerProfile& profile)
{
    replaceRosterBots(profile, loadRosterFile(app.lastBotsFile(), RosterForm::Comma));
}

void saveLastBots(AppContext& app, ServerProfile& profile)
{
    try {
        if (!profile.field(kRoster).rows().isEmpty()) {
            QDir().mkpath(QFileInfo(app.lastBotsFile()).absolutePath());
            saveRosterFile(app.lastBotsFile(), rosterBots(profile), RosterForm::Comma);
        }
    } catch (const RuntimeError&) {
        // Leaving goes on whatever happens to the file.
    }
}

RosterRowColours rosterRowColours(const QString& team)
{
    const QRgb background = team == QLatin1String("BLUE") ? qRgb(0, 0, 255) : qRgb(255, 0, 0);
    return {background, qRgb(255, 255, 255)};
}

BotPageLayout botPageLayout(bool userDefined)
{
    return userDefined ? BotPageLayout{true, QPoint(2850, 450)} : BotPageLayout{false, QPoint(270, 2790)};
}

void chkBOTs_Click(ServerProfile& profile, int index)
{
    if (index != 5)
        return;
    const BotPageLayout layout = botPageLayout(profile.value(F::chkBOTs(5)) == 1);
    // The caption labels and the think time's spinner go with their fields; the roster's
    // buttons go with the roster.
    profile.field(F::cboBOT).setVisible(!layout.roster);
    profile.field(F::txtBOTThinkTime).setVisible(!layout.roster);
    profile.field(kRoster).setVisible(layout.roster);
}

} // namespace steward
