// arena-stewardctl: Arena Steward without a window, for machines without a screen and
// for systemd. It needs no display: only Qt's core and network modules.
#include "cli/Ctl.h"
#include "cli/CtlSystem.h"
#include "platform/Clock.h"
#include "platform/System.h"
#include "platform/UdpSocket.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>
#include <QTextStream>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ArenaSteward"));
    QCoreApplication::setOrganizationName(QStringLiteral("ArenaSteward"));
    QCoreApplication::setApplicationVersion(QStringLiteral(STEWARD_VERSION));

    steward::SystemClock clock;
    steward::DetachedProcessLauncher launcher;
    steward::HostSystemNames names;
    steward::QtDatagramSockets sockets;
    steward::ThreadSleepWait blockingWait;
    QTextStream out(stdout);
    QTextStream err(stderr);

    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    steward::CtlSystem system;
    system.clock = &clock;
    system.launcher = &launcher;
    system.names = &names;
    system.sockets = &sockets;
    system.blockingWait = &blockingWait;
    system.programFolder = QDir(data).filePath(QStringLiteral("ArenaSteward"));
    system.settingsFile = QDir(config).filePath(QStringLiteral("ArenaSteward/ArenaSteward.conf"));
    system.unitFolder = QDir(config).filePath(QStringLiteral("systemd/user"));
    system.ownProgram = QCoreApplication::applicationFilePath();
    system.out = &out;
    system.err = &err;
    QDir().mkpath(system.programFolder);
    return steward::runCtl(QCoreApplication::arguments(), system);
}
