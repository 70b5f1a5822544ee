#include "settings/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QStringList>

namespace steward {

namespace {
QString defaultStoreFile()
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QDir(config).filePath(kAppName + QStringLiteral("/") + kAppName + QStringLiteral(".conf"));
}

// A hand-edited file may hold "a,b" without quotes, which the INI reader takes as a
// list; the store hands back the text as it stands in the file.
QString asText(const QVariant& value)
{
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList().join(QLatin1Char(','));
    return value.toString();
}
} // namespace

IniSettingsStore::IniSettingsStore() : IniSettingsStore(defaultStoreFile()) {}

IniSettingsStore::IniSettingsStore(const QString& fileName)
    : m_settings(new QSettings(fileName, QSettings::IniFormat))
{
    QDir().mkpath(QFileInfo(fileName).absolutePath());
    m_settings->beginGroup(kSection);
}

IniSettingsStore::~IniSettingsStore()
{
    m_settings->sync();
    restrictPermissions();
    delete m_settings;
}

QString IniSettingsStore::fileName() const { return m_settings->fileName(); }

QString IniSettingsStore::GetSetting(const QString& key, const QString& defaultValue) const
{
    if (!m_settings->contains(key))
        return defaultValue;
    return asText(m_settings->value(key));
}

void IniSettingsStore::SaveSetting(const QString& key, const QString& value)
{
    m_settings->setValue(key, value);
    m_settings->sync();
    restrictPermissions();
}

void IniSettingsStore::DeleteSetting(const QString& key)
{
    m_settings->remove(key);
    m_settings->sync();
}

bool IniSettingsStore::HasSetting(const QString& key) const { return m_settings->contains(key); }

QList<QPair<QString, QString>> IniSettingsStore::GetAllSettings() const
{
    QList<QPair<QString, QString>> all;
    const QStringList keys = m_settings->childKeys();
    all.reserve(keys.size());
    for (const QString& key : keys)
        all.append({key, asText(m_settings->value(key))});
    return all;
}

void IniSettingsStore::restrictPermissions()
{
    // The file holds passwords.
    QFile file(m_settings->fileName());
    if (file.exists())
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

} // namespace steward
