#include "cli/CtlFixture.h"

#include "bots/BotRoster.h"
#include "settings/SaveSettings.h"

#include <QDir>
#include <QFile>

namespace steward::testing {

CtlFixture::CtlFixture()
{
    system.clock = &t.clock;
    system.launcher = &t.launcher;
    system.names = &t.names;
    system.sockets = &t.sockets;
    system.blockingWait = &t.blockingWait;
    system.programFolder = t.programFolder();
    system.settingsFile = t.storeFile();
    system.unitFolder = t.root() + QStringLiteral("/units");
    system.ownProgram = QStringLiteral(STEWARD_CTL_PROGRAM);
    system.out = &m_out;
    system.err = &m_err;
    t.app->watcherProgram = system.ownProgram;
    const QString executable = t.gameFolder() + t.app->serverExecutable;
    writeFile(executable, "#!/bin/sh\n");
    QFile::setPermissions(executable, QFile::permissions(executable) | QFileDevice::ExeOwner);
}

int CtlFixture::ctl(const QStringList& arguments)
{
    out.clear();
    err.clear();
    const int code = runCtl(QStringList{QStringLiteral("arena-stewardctl")} + arguments, system);
    m_out.flush();
    m_err.flush();
    return code;
}

void CtlFixture::serverSettings(ServerProfile& profile)
{
    profile.setValue(F::chkServerType(1), 1);
    profile.setText(F::txtServerConfig(1), QStringLiteral("Duel Arena"));
    profile.setText(F::txtServerConfig(2), QStringLiteral("Steward Test Arena"));
    profile.setText(F::txtServerConfig(12), QStringLiteral("28070"));
    profile.setText(F::txtServerConfig(14), QStringLiteral("secret"));
    profile.field(F::lsvMapRotation).setRows({{QStringLiteral("ffa_bespin")}, {QStringLiteral("ffa_deathstar")}});
    profile.setStartingMap(QStringLiteral("ffa_bespin"));
    // A saved cycle names its own starting map, which the settings file keeps.
    writeFile(savedCycle(), "set m1 \"map ffa_bespin\"\r\nvstr m1\r\n//ffa_bespin\r\n");
    profile.setValue(F::chkUseINI, 1);
    profile.setText(F::txtServerINI, savedCycle());
    profile.setValue(F::chkBOTs(0), 1);
    profile.setValue(F::chkBOTs(5), 1);
    appendRosterBot(profile, {QStringLiteral("Kyle"), QStringLiteral("Hardcore"), QStringLiteral("RED"),
                              QStringLiteral("kyle"), QStringLiteral("50")});
}

QString CtlFixture::savedCycle() const { return t.root() + QStringLiteral("/saved.cfg"); }

void CtlFixture::saveAsTheWindow(ServerProfile& profile)
{
    SaveMainSettings(*t.app, profile);
    saveLastBots(*t.app, profile);
    t.store->SaveSetting(QStringLiteral("PathToJedi"), t.gameFolder());
    t.store->SaveSetting(QStringLiteral("PathToServer"), t.app->serverExecutable);
    t.store->SaveSetting(QStringLiteral("RunOnce"), QStringLiteral("1"));
}

QMap<QString, QByteArray> CtlFixture::baseFiles() const
{
    QMap<QString, QByteArray> files;
    const QDir base(t.baseFolder());
    for (const QString& name : base.entryList(QDir::Files | QDir::Hidden))
        files.insert(name, fileBytes(base.filePath(name)));
    return files;
}

void CtlFixture::clearBase()
{
    QDir(t.baseFolder()).removeRecursively();
    QDir().mkpath(t.baseFolder());
}

void CtlFixture::saveSettings(const std::function<void(ServerProfile&)>& more)
{
    ServerProfile settings;
    serverSettings(settings);
    if (more)
        more(settings);
    saveAsTheWindow(settings);
}

} // namespace steward::testing
