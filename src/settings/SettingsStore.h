#pragma once
// The per-user store of texts, under the application "ArenaSteward" and the section
// "_Steward". Values are plain strings in both directions.
#include <QList>
#include <QPair>
#include <QString>

class QSettings;

namespace steward {

inline const QString kAppName = QStringLiteral("ArenaSteward");
inline const QString kSection = QStringLiteral("_Steward");

class SettingsStore {
public:
    virtual ~SettingsStore() = default;
    virtual QString GetSetting(const QString& key, const QString& defaultValue = {}) const = 0;
    virtual void SaveSetting(const QString& key, const QString& value) = 0;
    virtual void DeleteSetting(const QString& key) = 0;
    virtual bool HasSetting(const QString& key) const = 0;
    /// All keys of the section with their values, in the order the store gives them.
    virtual QList<QPair<QString, QString>> GetAllSettings() const = 0;
};

/// The store as an INI file: $XDG_CONFIG_HOME/ArenaSteward/ArenaSteward.conf, group
/// "_Steward", created readable by its owner only.
class IniSettingsStore final : public SettingsStore {
public:
    /// The default file of the user, or an explicit file (tests).
    IniSettingsStore();
    explicit IniSettingsStore(const QString& fileName);
    ~IniSettingsStore() override;
    IniSettingsStore(const IniSettingsStore&) = delete;
    IniSettingsStore& operator=(const IniSettingsStore&) = delete;

    QString GetSetting(const QString& key, const QString& defaultValue = {}) const override;
    void SaveSetting(const QString& key, const QString& value) override;
    void DeleteSetting(const QString& key) override;
    bool HasSetting(const QString& key) const override;
    QList<QPair<QString, QString>> GetAllSettings() const override;

    QString fileName() const;

private:
    void restrictPermissions();
    QSettings* m_settings;
};

} // namespace steward
