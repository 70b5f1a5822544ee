// unit: the systemd user service, printed or installed.
#include "cli/CtlUnit.h"

#include "cli/CtlSystem.h"
#include "cli/ServiceUnit.h"
#include "platform/System.h"
#include "watch/PrivateFile.h"

#include <QDir>
#include <QFileInfo>
#include <QTextStream>

namespace steward {

int ctlUnit(CtlSystem& system, const CtlOptions& options)
{
    ServiceUnitFacts facts;
    facts.program = system.ownProgram;
    facts.profileTemplate = !options.profile.isEmpty();
    if (!options.config.isEmpty()) {
        const QFileInfo config(options.config);
        if (!config.isFile()) {
            *system.err << "Could not find the configuration " << options.config << Qt::endl;
            return ctl_exit::Refused;
        }
        facts.config = config.absoluteFilePath();
    }
    const QString text = serviceUnitText(facts);
    if (!options.install) {
        *system.out << text;
        system.out->flush();
        return ctl_exit::Ok;
    }
    const QString path = QDir(system.unitFolder).filePath(facts.profileTemplate ? kProfileUnitName : kServiceUnitName);
    QString reason;
    if (!QDir().mkpath(system.unitFolder) || !writePrivateFile(path, text.toUtf8(), &reason)) {
        *system.err << "Could not write " << path
                    << (reason.isEmpty() ? QString() : QStringLiteral(" (") + reason + QLatin1Char(')')) << Qt::endl;
        return ctl_exit::Refused;
    }
    *system.out << "Wrote " << path << Qt::endl << "Start it now and at every boot with:" << Qt::endl;
    for (const QString& line : enableLines(system.names ? system.names->userName() : QString(), options.profile))
        *system.out << "  " << line << Qt::endl;
    return ctl_exit::Ok;
}

} // namespace steward
