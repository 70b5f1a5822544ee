#include "generate/MapCycleWriter.h"

#include "platform/Clock.h"
#include "platform/Prompts.h"
#include "shell/AppContext.h"
#include "shell/Constants.h"
#include "shell/ServerProfile.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"
#include "support/Strings.h"
#include "support/TextFile.h"

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

QStringList mapCycleLines(AppContext& app, const QStringList& names, const QStringList& gravities, int count,
                          const QString& onlyMap)
{
    const QString slashes(63, QLatin1Char('/'));
    const QDateTime now = app.clock().now();
    QStringList lines = {
        QStringLiteral("// JK2 Map Cycle Configuration File"),
        slashes,
        QStringLiteral("// File Created by: Arena Steward ") + kVersionText + QStringLiteral("  [") + kContactAddress +
            QStringLiteral("]"),
        QStringLiteral("// File Created On: ") + app.clock().longDate(now.date()) + QStringLiteral(" at ") +
            app.clock().timeText(now.time()),
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

bool MakeMapCycle(AppContext& app, ServerProfile& profile, QString& cycleFileName, bool exportOnly, bool useSavedCycle)
{
    bool result = true;
    try {
        QString path;
        if (exportOnly) {
            path = cycleFileName;
        } else if (useSavedCycle) {
            cycleFileName = GetNamePart(profile.text(QStringLiteral("txtServerINI")));
            return true;
        } else {
            cycleFileName = QStringLiteral("jediMaps.cfg");
            QString folder = app.baseFolder();
            path = AddSlash(folder) + cycleFileName;
        }

        const Field& rotation = profile.field(QStringLiteral("lsvMapRotation"));
        const int count = rotation.count();
        QStringList names, gravities;
        for (int row = 0; row < count; ++row) {
            names << rotation.cell(row, 0);
            gravities << profile.text(QStringLiteral("txtSpeed"), 1);
        }
        const QString onlyMap = count == 1 ? rotation.cell(0, 0) : QString();
        MoveStartingMapFirst(names, gravities, count, profile.startingMap());

        TextFileWriter file(path);
        for (const QString& line : mapCycleLines(app, names, gravities, count, onlyMap))
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
                kTail + kCrLf + QStringLiteral("this is probably because an older configuration file has been selected.") +
                kTail + kCrLf +
                QStringLiteral("Please re-create a new map configuration file with Arena Steward and run again."),
            kProductTitle, Icon::Exclamation);
    } catch (const RuntimeError& e) {
        reportTagged(app, e, QStringLiteral("::Code.gbln_LoadMapCycle(Function)"));
    }
    return {};
}

} // namespace steward
