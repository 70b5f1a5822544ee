#include "wizard/AdvancedCycleWriter.h"

namespace steward {

namespace {
const QString kDuelGameType = QStringLiteral("g_gametype 3");

QString mapLine(const WizardMapRecord& r, int n, int count, const QString& fileTitle)
{
    const bool last = n == count;
    const QString next = last ? QStringLiteral("; set nextmap vstr m1")
                              : QStringLiteral("; set nextmap vstr m") + QString::number(n + 1);
    QString body = QStringLiteral("set ") + r.GameType;
    if (!r.Configured) {
        body += QStringLiteral(";map ") + r.MapName;
    } else {
        // The configured last line has a blank after its semicolon; the others don't.
        body += (last ? QStringLiteral("; map ") : QStringLiteral(";map ")) + r.MapName + QStringLiteral(";set ") +
                r.Gravity + QStringLiteral("; exec ") + QString::number(n) + fileTitle;
    }
    return QStringLiteral("set m") + QString::number(n) + QStringLiteral(" \"") + body + next + QLatin1Char('"');
}
} // namespace

QList<WizardMapRecord> BuildCycleRecords(const QList<WizardMapRecord>& records, const QString& startingMap)
{
    QList<WizardMapRecord> ordered{WizardMapRecord{}};
    int first = -1;
    for (int i = 0; i < records.size(); ++i) {
        if (records.at(i).MapName == startingMap) {
            ordered[0] = records.at(i);
            first = i;
            break;
        }
    }
    for (int i = 0; i < records.size(); ++i)
        if (i != first)
            ordered << records.at(i);
    return ordered;
}

QStringList companionLines(const WizardMapRecord& r)
{
    QStringList lines;
    for (const QString* text : {&r.Warmup, &r.TimeLimit, &r.FragLimit, &r.CaptureLimit, &r.DuelFragLimit, &r.RunSpeed,
                                &r.FriendlyFire, &r.PrivateDuel, &r.FriendlySaber, &r.SaberLock})
        lines << QStringLiteral("set ") + *text;
    // Saber Only counts for Duel alone, whatever the box says for another game type.
    lines << (r.GameType == kDuelGameType && r.DuelNoWeapons ? QStringLiteral("set g_duelweapondisable 65531")
                                                             : QStringLiteral("set g_duelweapondisable 0"));
    lines << (r.ForceDisabled ? QStringLiteral("set g_forcePowerDisable 262143")
                              : QStringLiteral("set g_forcePowerDisable 0"));
    return lines;
}

AdvancedMapCycle MakeAdvancedMapCycle(const QList<WizardMapRecord>& records, const QString& startingMap,
                                      const QString& fileTitle)
{
    const QList<WizardMapRecord> ordered = BuildCycleRecords(records, startingMap);
    const int count = static_cast<int>(records.size());
    AdvancedMapCycle cycle;
    for (int n = 1; n <= count; ++n) {
        const WizardMapRecord& r = ordered.at(n - 1);
        AdvancedCycleEntry entry;
        entry.line = mapLine(r, n, count, fileTitle);
        if (r.Configured) {
            entry.companionName = QString::number(n) + fileTitle;
            entry.companionLines = companionLines(r);
        }
        cycle.entries << entry;
    }
    cycle.tail = {QString(), QStringLiteral("vstr m1"), QStringLiteral("// ***    DO NOT DELETE MAP NAME ***"),
                  QStringLiteral("// ***      REQ BY ARENA STEWARD   ***"),
                  QStringLiteral("//") + ordered.value(0).MapName};
    return cycle;
}

} // namespace steward
