#pragma once
// The settings that a command of the program without a window works on: the window's
// settings file or a saved configuration (.asc), poured into a profile as the window's
// load pours them, with the game's folder and executable from the same settings.
#include "cli/CtlPrompts.h"
#include "model/ServerProfile.h"
#include "watch/ServerFolder.h"

#include <memory>

namespace steward {

class AppContext;
class SettingsStore;
struct CtlSystem;

class CtlSession {
public:
    /// The settings of the profile (empty or "default" for the default profile), or of
    /// the configuration file when one is given.
    CtlSession(CtlSystem& system, QString profile, QString configFile, QString rosterFile = {});
    ~CtlSession();

    /// Reads the settings; false after it said on standard error why it could not.
    bool load();
    /// The checks that the window's OK leaves to the moment of writing or starting, made
    /// before anything is written: a server type, the executable, a writable base
    /// folder, and bots without a password. False after it said what is wrong.
    bool readyToStart();

    AppContext& app() { return *m_app; }
    ServerProfile& profile() { return m_profile; }
    CtlPrompts& prompts() { return m_prompts; }
    /// The session file's name as the start writes it (lower case, "_" for blanks, ".cfg").
    QString sessionName() const;
    ServerFolder folder() const;
    /// The profile's name as the command line gives it: "default" for the default profile.
    QString profileName() const { return m_profileName.isEmpty() ? QStringLiteral("default") : m_profileName; }
    /// Says the text on standard error.
    void fail(const QString& text);

private:
    CtlSystem& m_system;
    QString m_profileName;
    QString m_configFile;
    QString m_rosterFile;
    CtlPrompts m_prompts;
    std::unique_ptr<SettingsStore> m_store;
    std::unique_ptr<AppContext> m_app;
    ServerProfile m_profile;
};

} // namespace steward
