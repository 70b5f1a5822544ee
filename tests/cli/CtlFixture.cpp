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
    system.unitFolder = t.root() + u"/units"_s;
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
    const int code = runCtl(QStringList{u"arena-stewardctl"_s} + arguments, system);
    m_out.flush();
    m_err.flush();
    return code;
}

void CtlFixture::serverSettings(ServerProfile& profile)
{
    profile.setValue(F::chkServerType(1), 1);
    profile.setText(F::txtServerConfig(1), u"Duel Arena"_s);
    profile.setText(F::txtServerConfig(2), u"Steward Test Arena"_s);
    profile.setText(F::txtServerConfig(12), u"28070"_s);
    profile.setText(F::txtServerConfig(14), u"secret"_s);
    profile.field(F::lsvMapRotation).setRows({{u"ffa_bespin"_s}, {u"ffa_deathstar"_s}});
    profile.setStartingMap(u"ffa_bespin"_s);
    // A saved cycle names its own starting map, which the settings file keeps.
    writeFile(savedCycle(), "set m1 \"map ffa_bespin\"\r\nvstr m1\r\n//ffa_bespin\r\n");
    profile.setValue(F::chkUseINI, 1);
    profile.setText(F::txtServerINI, savedCycle());
    profile.setValue(F::chkBOTs(0), 1);
    profile.setValue(F::chkBOTs(5), 1);
    appendRosterBot(profile, {u"Kyle"_s, u"Hardcore"_s, u"RED"_s, u"kyle"_s, u"50"_s});
}

QString CtlFixture::savedCycle() const { return t.root() + u"/saved.cfg"_s; }

void CtlFixture::saveAsTheWindow(ServerProfile& profile)
{
    SaveMainSettings(*t.app, profile);
    saveLastBots(*t.app, profile);
    t.store->SaveSetting(u"PathToJedi"_s, t.gameFolder());
    t.store->SaveSetting(u"PathToServer"_s, t.app->serverExecutable);
    t.store->SaveSetting(u"RunOnce"_s, u"1"_s);
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
