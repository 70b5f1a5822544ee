#pragma once
// The profiles of the settings folder and the one in use: its store is the program's
// store, its name the context's profile name.
#include <QString>
#include <QStringList>

#include <memory>

namespace steward {

class AppContext;
class IniSettingsStore;

class ProfileSet {
public:
    /// The profiles of the folder (the default profile's settings file lies in it).
    explicit ProfileSet(QString settingsFolder);
    ~ProfileSet();
    ProfileSet(const ProfileSet&) = delete;
    ProfileSet& operator=(const ProfileSet&) = delete;

    /// Puts the profile in use (empty or "default" for the default profile): its store
    /// becomes the program's store.
    void use(AppContext& app, const QString& name);
    /// The named profile in use; empty for the default.
    const QString& current() const { return m_current; }
    /// "default" and then the named profiles, sorted.
    QStringList names() const;
    bool exists(const QString& name) const;
    QString settingsFile(const QString& name) const;
    const QString& folder() const { return m_folder; }

private:
    QString m_folder;
    QString m_current;
    std::unique_ptr<IniSettingsStore> m_store;
};

} // namespace steward
