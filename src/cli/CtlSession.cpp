#include "cli/CtlSession.h"

#include "cli/CtlSystem.h"
#include "commands/CreateJediConfiguration.h"
#include "commands/ProfileLoad.h"
#include "commands/ServerControlCommands.h"
#include "generate/ServerCommandLine.h"
#include "generate/ServerConfigWriter.h"
#include "settings/ConfigurationFile.h"
#include "settings/MemorySettingsStore.h"
#include "settings/Profiles.h"
#include "settings/SettingsStore.h"
#include "settings/StartKeys.h"
#include "support/AppContext.h"
#include "support/Errors.h"
#include "support/Strings.h"

#include <QFileInfo>
#include <QTemporaryFile>
#include <QTextStream>

namespace steward {

CtlSession::CtlSession(CtlSystem& system, QString profile, QString configFile, QString rosterFile)
    : m_system(system),
      m_profileName(profile == kDefaultProfile ? QString() : std::move(profile)),
      m_configFile(std::move(configFile)),
      m_rosterFile(std::move(rosterFile)),
      m_prompts(*system.err)
{}

CtlSession::~CtlSession() = default;

void CtlSession::fail(const QString& text) { *m_system.err << text << Qt::endl; }

bool CtlSession::load()
{
    try {
        if (!m_configFile.isEmpty()) {
            m_store = std::make_unique<MemorySettingsStore>(readConfigurationFile(m_configFile));
        } else {
            const QString file =
                m_profileName.isEmpty()
                    ? m_system.settingsFile
                    : profileSettingsFile(QFileInfo(m_system.settingsFile).absolutePath(), m_profileName);
            if (!m_profileName.isEmpty() && !QFileInfo(file).isFile()) {
                fail(QStringLiteral("There is no profile named %1").arg(m_profileName));
                return false;
            }
            if (!QFileInfo(file).isFile()) {
                fail(QStringLiteral("No settings in %1: set the server up in Arena Steward first, "
                                    "or give a saved configuration with --config FILE.asc")
                         .arg(file));
                return false;
            }
            m_store = std::make_unique<IniSettingsStore>(file);
        }
    } catch (const RuntimeError& e) {
        fail(e.description());
        return false;
    }
    if (!m_rosterFile.isEmpty() && !QFileInfo(m_rosterFile).isFile()) {
        fail(QStringLiteral("Could not find the bot roster %1").arg(m_rosterFile));
        return false;
    }

    Services services;
    services.prompts = &m_prompts;
    services.clock = m_system.clock;
    services.names = m_system.names;
    services.launcher = m_system.launcher;
    services.store = m_store.get();
    services.sockets = m_system.sockets;
    services.blockingWait = m_system.blockingWait;
    m_app = std::make_unique<AppContext>(services, m_system.programFolder);
    m_app->profileName = m_profileName;
    m_app->watcherProgram = m_system.ownProgram;
    // Nobody stays behind to send the timed messages but the watcher.
    m_app->windowSendsMessages = false;

    m_app->gameFolder = trimBlanks(m_store->GetSetting(QStringLiteral("PathToJedi")));
    AddSlash(m_app->gameFolder);
    m_app->serverExecutable = m_store->GetSetting(QStringLiteral("PathToServer"));

    attachProfileRules(*m_app, m_profile);
    if (!loadProfileWithoutWindow(*m_app, m_profile, m_rosterFile) || m_prompts.refused())
        return false;
    restoreStartKeys(*m_store, m_profile);
    restoreExactTexts(*m_store, m_profile);
    return true;
}

bool CtlSession::readyToStart()
{
    if (!selectedServerType(m_profile)) {
        fail(QStringLiteral("No server type is ticked (Listen, LAN or Internet): there is nothing to start"));
        return false;
    }
    const QString executable = m_app->gameFolder + m_app->serverExecutable;
    const QFileInfo program(executable);
    if (m_app->serverExecutable.isEmpty() || !program.isFile()) {
        fail(QStringLiteral("Could not find the server executable %1").arg(executable));
        return false;
    }
    if (!program.isExecutable()) {
        fail(QStringLiteral("The server executable %1 can't be run (it is not executable)").arg(executable));
        return false;
    }
    const QFileInfo base(m_app->baseFolder());
    if (!base.isDir()) {
        fail(QStringLiteral("Could not find the base folder %1").arg(base.filePath()));
        return false;
    }
    // Tried rather than asked: a folder that the system won't write into, for whoever
    // runs this, refuses a file of ours.
    QTemporaryFile probe(base.filePath() + QStringLiteral("/.arena-steward-XXXXXX"));
    if (!probe.open()) {
        fail(QStringLiteral("The base folder %1 can't be written").arg(base.filePath()));
        return false;
    }
    if (sessionWantsBots(m_profile) && botsMeetAPassword(m_profile)) {
        fail(CtlPrompts::plainText(botsWithPasswordText()));
        return false;
    }
    return true;
}

QString CtlSession::sessionName() const { return sessionFileName(m_profile); }

ServerFolder CtlSession::folder() const { return serverFolderOf(*m_app, m_profile); }

} // namespace steward
