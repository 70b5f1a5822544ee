#include "generate/BotConfigLines.h"

#include "generate/BotSkills.h"
#include "model/Constants.h"
#include "model/FieldIndexes.h"
#include "model/ServerProfile.h"
#include "support/Strings.h"

namespace steward {

namespace {

constexpr auto kBots = F::chkBOTs;

QString seta(const QString& key, const QString& value)
{
    return QStringLiteral("seta ") + key + QStringLiteral(" \"") + value + QLatin1Char('"');
}

QString flag(bool on) { return on ? QStringLiteral("1") : QStringLiteral("0"); }

QStringList heading(const BotConfigFacts& facts)
{
    const QString slashes(63, QLatin1Char('/'));
    return {
        QStringLiteral("// JK2 BOT Configuration File"),
        slashes,
        QStringLiteral("// File Created by: Arena Steward ver: ") + kVersionText,
        QStringLiteral("// File Created On: ") + facts.date + QStringLiteral(" at ") + facts.time,
        QStringLiteral("// ") + kContactAddress,
        slashes,
        QString(),
        QStringLiteral("// This file is automatically executed by ") + facts.serverExecutable,
        QString(),
        QString(),
    };
}

/// The lines shared by both modes with bots: chat, fast chat, challenge, ground-only
/// and think time. The chat key says "no chat", the box says "chat"; the jumping box
/// writes ground-only as it is ticked, and that sense is kept.
QStringList behaviour(const ServerProfile& profile)
{
    const bool chat = profile.value(kBots(3)) == 1;
    return {
        seta(QStringLiteral("bot_nochat"), flag(!chat)),
        seta(QStringLiteral("bot_fastchat"), flag(chat && profile.value(kBots(4)) == 1)),
        seta(QStringLiteral("bot_challenge"), flag(profile.value(kBots(1)) == 1)),
        seta(QStringLiteral("bot_groundonly"), flag(profile.value(kBots(2)) == 1)),
        seta(QStringLiteral("bot_thinktime"), profile.text(F::txtBOTThinkTime)),
    };
}

void automaticBots(const ServerProfile& profile, BotConfig& config)
{
    const QString players = profile.text(F::txtServerConfigSpin(ServerBox::MinClients));
    if (leadingNumber(players) == 0) {
        config.notice = BotConfigNotice::NoPlayerCount;
        config.use = false;
        return;
    }
    config.lines << seta(QStringLiteral("bot_enable"), QStringLiteral("1"))
                 << seta(QStringLiteral("bot_minplayers"), players) << behaviour(profile);
    const std::optional<int> skill = botSkillNumber(profile.text(F::cboBOT));
    if (!skill) {
        config.notice = BotConfigNotice::NoSkillLevel;
        return;
    }
    config.lines << seta(QStringLiteral("g_spSkill"), QString::number(*skill));
}

void rosterBots(const ServerProfile& profile, BotConfig& config)
{
    const QList<QStringList>& rows = profile.field(F::grdBOTList).rows();
    if (rows.size() <= 1) {
        config.notice = BotConfigNotice::NoRosterBots;
        return;
    }
    config.lines << seta(QStringLiteral("bot_enable"), QStringLiteral("1"))
                 << seta(QStringLiteral("bot_minplayers"), QStringLiteral("0")) << behaviour(profile) << QString();
    // A row with an unknown skill takes the number of the row above it, 0 in the first.
    int skill = 0;
    for (qsizetype r = 1; r < rows.size(); ++r) {
        const QStringList& row = rows.at(r);
        if (const std::optional<int> number = botSkillNumber(row.value(1)))
            skill = *number;
        config.lines << QStringLiteral("Addbot ") + row.value(3) + QLatin1Char(' ') + QString::number(skill) +
                            QLatin1Char(' ') + row.value(2) + QLatin1Char(' ') + row.value(4) + QLatin1Char(' ') +
                            row.value(0);
    }
}

} // namespace

BotConfig botConfigLines(const ServerProfile& profile, const BotConfigFacts& facts)
{
    BotConfig config;
    config.lines = heading(facts);
    const bool enabled = profile.value(kBots(0)) == 1;
    const bool roster = profile.value(kBots(5)) == 1;
    if (enabled && !roster) {
        automaticBots(profile, config);
    } else if (enabled && roster) {
        rosterBots(profile, config);
    } else {
        // The reverse order of the other modes.
        config.lines << seta(profile.tag(kBots(0)), QStringLiteral("0"))
                     << seta(QStringLiteral("bot_enable"), QStringLiteral("0"));
    }
    return config;
}

QString botConfigNoticeText(BotConfigNotice notice)
{
    switch (notice) {
    case BotConfigNotice::NoPlayerCount:
        return QStringLiteral("You have selected to enable BOT's but you have not specified how many, however,") +
               kTail + kCrLf +
               QStringLiteral(
                   "this does allows admins to manually add bots, e.g., /rcon addbot Desann red 4 25 Gnubee.") +
               kTail;
    case BotConfigNotice::NoSkillLevel:
        return QStringLiteral("Please select a BOT level") + kTail;
    case BotConfigNotice::NoRosterBots:
        return QStringLiteral("No custom BOT's have been added") + kTail;
    case BotConfigNotice::None:
        break;
    }
    return {};
}

} // namespace steward
