#include "settings/Profiles.h"

#include "settings/SettingsStore.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace steward {

bool validProfileName(const QString& name)
{
    if (name.isEmpty() || name.size() > 32 || name.compare(kDefaultProfile, Qt::CaseInsensitive) == 0)
        return false;
    for (const QChar c : name) {
        const bool plain =
            (c >= QLatin1Char('a') && c <= QLatin1Char('z')) || (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) ||
            (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('-') || c == QLatin1Char('_');
        if (!plain)
            return false;
    }
    return true;
}

QString profileNameRule()
{
    return QStringLiteral("A profile name is 1 to 32 letters, digits, - and _, and not \"default\"");
}

QString profileSettingsFolder()
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QDir(config).filePath(kAppName);
}

QString profileSettingsFile(const QString& folder, const QString& name)
{
    if (name.isEmpty() || name == kDefaultProfile)
        return QDir(folder).filePath(kAppName + QStringLiteral(".conf"));
    return QDir(folder).filePath(QStringLiteral("profiles/") + name + QStringLiteral(".conf"));
}

QStringList namedProfiles(const QString& folder)
{
    QStringList names;
    const QFileInfoList files = QDir(QDir(folder).filePath(QStringLiteral("profiles")))
                                    .entryInfoList({QStringLiteral("*.conf")}, QDir::Files, QDir::Name);
    for (const QFileInfo& file : files)
        if (validProfileName(file.completeBaseName()))
            names << file.completeBaseName();
    return names;
}

} // namespace steward
