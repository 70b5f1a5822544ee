#include "generate/MapCycleWriter.h"

#include "model/Constants.h"
#include "model/ServerProfile.h"
#include "platform/Clock.h"

namespace steward {

void MoveStartingMapFirst(QStringList& names, QStringList& gravities, int count, const QString& startingMap)
{
    QStringList newNames{QString()};
    QStringList newGravities{QString()};
    int first = -1;
    for (int i = 0; i < count; ++i) {
        if (names.value(i) == startingMap) {
            newNames[0] = names.value(i);
            newGravities[0] = gravities.value(i);
            first = i;
            break;
        }
    }
    for (int i = 0; i < count; ++i) {
        if (i == first)
            continue;
        newNames << names.value(i);
        newGravities << gravities.value(i);
    }
    names = newNames;
    gravities = newGravities;
}

QStringList mapCycleLines(const Clock& clock, const QStringList& names, const QStringList& gravities, int count,
                          const QString& onlyMap)
{
    const QString slashes(63, QLatin1Char('/'));
    const QDateTime now = clock.now();
    QStringList lines = {
        QStringLiteral("// JK2 Map Cycle Configuration File"),
        slashes,
        QStringLiteral("// File Created by: Arena Steward ") + kVersionText + QStringLiteral("  [") + kContactAddress +
            QStringLiteral("]"),
        QStringLiteral("// File Created On: ") + clock.longDate(now.date()) + QStringLiteral(" at ") +
            clock.timeText(now.time()),
        slashes,
        QString(),
    };
    if (count == 1) {
        lines << QStringLiteral("Map ") + onlyMap << QStringLiteral("set g_gravity \"800\"")
              << QStringLiteral("set nextmap map_restart") << QString() << QStringLiteral("// EOF");
        return lines;
    }
    for (int n = 1; n <= count; ++n) {
        const int next = n < count ? n + 1 : 1;
        lines << QStringLiteral("set m") + QString::number(n) + QStringLiteral(" \"map ") + names.value(n - 1) +
                     QStringLiteral(";set g_gravity \"") + gravities.value(n - 1) +
                     QStringLiteral("\";set nextmap vstr m") + QString::number(next) + QLatin1Char('"');
    }
    lines << QString() << QStringLiteral("vstr m1") << QStringLiteral("// EOF");
    return lines;
}

QStringList rotationCycleLines(const ServerProfile& profile, const Clock& clock)
{
    const Field& rotation = profile.field(F::lsvMapRotation);
    const int count = rotation.count();
    QStringList names, gravities;
    for (int row = 0; row < count; ++row) {
        names << rotation.cell(row, 0);
        gravities << profile.text(F::txtSpeed(1));
    }
    const QString onlyMap = count == 1 ? rotation.cell(0, 0) : QString();
    MoveStartingMapFirst(names, gravities, count, profile.startingMap());
    return mapCycleLines(clock, names, gravities, count, onlyMap);
}

} // namespace steward
