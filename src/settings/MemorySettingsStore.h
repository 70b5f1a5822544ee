#pragma once
// A store held in memory: the settings of a configuration file (.asc) that a command
// runs from without touching the user's own store, and the settings of a profile on
// their way into such a file.
#include "settings/SettingsStore.h"

namespace steward {

class MemorySettingsStore final : public SettingsStore {
public:
    MemorySettingsStore() = default;
    explicit MemorySettingsStore(const QList<QPair<QString, QString>>& rows);

    QString GetSetting(const QString& key, const QString& defaultValue = {}) const override;
    void SaveSetting(const QString& key, const QString& value) override;
    void DeleteSetting(const QString& key) override;
    bool HasSetting(const QString& key) const override;
    /// In the order the keys were first saved.
    QList<QPair<QString, QString>> GetAllSettings() const override;

private:
    QList<QPair<QString, QString>> m_rows;
};

} // namespace steward
