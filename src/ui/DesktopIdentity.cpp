#include "ui/DesktopIdentity.h"

#include <QApplication>

static void initIconResources() { Q_INIT_RESOURCE(icons); }

namespace steward {

QString desktopId() { return QStringLiteral("io.github.arena_steward.ArenaSteward"); }

QIcon programIcon()
{
    initIconResources();
    QIcon icon;
    for (const char* size : {"48x48", "128x128", "256x256"})
        icon.addFile(QStringLiteral(":/icons/%1/%2.png").arg(QLatin1String(size), desktopId()));
    return icon;
}

void applyDesktopIdentity()
{
    QApplication::setDesktopFileName(desktopId());
    QApplication::setWindowIcon(programIcon());
}

} // namespace steward
