#include "settings/MemorySettingsStore.h"

namespace steward {

MemorySettingsStore::MemorySettingsStore(const QList<QPair<QString, QString>>& rows)
{
    for (const auto& [key, value] : rows)
        SaveSetting(key, value);
}

QString MemorySettingsStore::GetSetting(const QString& key, const QString& defaultValue) const
{
    for (const auto& [k, value] : m_rows)
        if (k == key)
            return value;
    return defaultValue;
}

void MemorySettingsStore::SaveSetting(const QString& key, const QString& value)
{
    for (auto& row : m_rows) {
        if (row.first == key) {
            row.second = value;
            return;
        }
    }
    m_rows.append({key, value});
}

void MemorySettingsStore::DeleteSetting(const QString& key)
{
    m_rows.removeIf([&key](const QPair<QString, QString>& row) { return row.first == key; });
}

bool MemorySettingsStore::HasSetting(const QString& key) const
{
    for (const auto& row : m_rows)
        if (row.first == key)
            return true;
    return false;
}

QList<QPair<QString, QString>> MemorySettingsStore::GetAllSettings() const { return m_rows; }

} // namespace steward
