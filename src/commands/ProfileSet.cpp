#include "commands/ProfileSet.h"

#include "settings/Profiles.h"
#include "settings/SettingsStore.h"
#include "support/AppContext.h"

#include <QFileInfo>

namespace steward {

ProfileSet::ProfileSet(QString settingsFolder) : m_folder(std::move(settingsFolder)) {}

ProfileSet::~ProfileSet() = default;

void ProfileSet::use(AppContext& app, const QString& name)
{
    m_current = name == kDefaultProfile ? QString() : name;
    m_store = std::make_unique<IniSettingsStore>(settingsFile(m_current));
    app.services.store = m_store.get();
    app.profileName = m_current;
}

QStringList ProfileSet::names() const { return QStringList{kDefaultProfile} + namedProfiles(m_folder); }

bool ProfileSet::exists(const QString& name) const
{
    if (name.isEmpty() || name == kDefaultProfile)
        return true;
    return QFileInfo(settingsFile(name)).isFile();
}

QString ProfileSet::settingsFile(const QString& name) const { return profileSettingsFile(m_folder, name); }

} // namespace steward
