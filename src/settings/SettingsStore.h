#pragma once
// The per-user store of texts, under the application "ArenaSteward" and the section
// "_Steward". Values are plain strings in both directions.
#include <QList>
#include <QPair>
#include <QMap>
#include <QString>
#include <QVariant>
#include <optional>

namespace steward {

inline const QString kAppName = QStringLiteral("ArenaSteward");
inline const QString kSection = QStringLiteral("_Steward");

class SettingsStore {
public:
    virtual ~SettingsStore() = default;
    virtual QString GetSetting(const QString& key, const QString& defaultValue = {}) const = 0;
    /// Creates or overwrites. A store that can't be written throws a RuntimeError.
    virtual void SaveSetting(const QString& key, const QString& value) = 0;
    /// Removes one key. A store that can't be written throws a RuntimeError.
    virtual void DeleteSetting(const QString& key) = 0;
    virtual bool HasSetting(const QString& key) const = 0;
    /// All keys of the section with their values, in the order the store gives them.
    virtual QList<QPair<QString, QString>> GetAllSettings() const = 0;

    /// Changes between beginBatch and endBatch may reach the file together at the end,
    /// which saves a file write for every key. Batches nest.
    virtual void beginBatch() {}
    /// Ends a batch; a store that can't be written throws here.
    virtual void endBatch() {}
};

/// Keeps a batch of changes open while it lives. commit() ends it and throws when the
/// changes can't be written; without a commit (on the way out of an error) the
/// changes made so far are written quietly.
class SettingsBatch {
public:
    explicit SettingsBatch(SettingsStore& store) : m_store(store) { m_store.beginBatch(); }
    ~SettingsBatch();
    SettingsBatch(const SettingsBatch&) = delete;
    SettingsBatch& operator=(const SettingsBatch&) = delete;
    void commit();

private:
    SettingsStore& m_store;
    bool m_done = false;
};

/// The store as an INI file: $XDG_CONFIG_HOME/ArenaSteward/ArenaSteward.conf, section
/// "_Steward", readable by its owner only. Every value reads back exactly as it was
/// saved (commas, semicolons, quotes, backslashes, blanks at either end, the empty
/// text), and a hand-edited unquoted value is taken as it stands. Every change is
/// applied to the file at once (or at the end of a batch), merged into the file as it
/// then is; a change that can't be written throws and is dropped.
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
    void beginBatch() override;
    void endBatch() override;

    QString fileName() const { return m_fileName; }

private:
    using FileMap = QMap<QString, QVariant>;
    FileMap readFile() const;
    /// The file with the changes of an open batch.
    FileMap current() const;
    void change(const QString& fileKey, const std::optional<QString>& value, const QString& what);
    void writePending(const QString& what);

    QString m_fileName;
    QMap<QString, std::optional<QString>> m_pending;
    int m_batchDepth = 0;
};

} // namespace steward
