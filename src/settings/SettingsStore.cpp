#include "settings/SettingsStore.h"

#include "settings/PlainIniFormat.h"
#include "support/Errors.h"

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

constexpr QFileDevice::Permissions kOwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

std::unique_ptr<QSettings> openSettings(const QString& fileName)
{
    auto settings = std::make_unique<QSettings>(fileName, plainIniFormat());
    settings->beginGroup(kSection);
    return settings;
}
} // namespace

SettingsBatch::~SettingsBatch()
{
    if (m_done)
        return;
    try {
        m_store.endBatch();
    } catch (const RuntimeError&) {
        // Already on the way out of an error; that one is reported.
    }
}

void SettingsBatch::commit()
{
    m_done = true;
    m_store.endBatch();
}

IniSettingsStore::IniSettingsStore() : IniSettingsStore(defaultStoreFile()) {}

IniSettingsStore::IniSettingsStore(const QString& fileName) : m_fileName(fileName)
{
    QDir().mkpath(QFileInfo(fileName).absolutePath());
}

IniSettingsStore::~IniSettingsStore() = default;

QSettings& IniSettingsStore::settings(std::unique_ptr<QSettings>& local) const
{
    // Outside a batch every call has a QSettings of its own: its error status can't be
    // reset, and one failed write must not make every later one look failed.
    if (m_batch)
        return *m_batch;
    local = openSettings(m_fileName);
    return *local;
}

QString IniSettingsStore::GetSetting(const QString& key, const QString& defaultValue) const
{
    std::unique_ptr<QSettings> local;
    const QSettings& s = settings(local);
    const QString encoded = encodeStoreKey(key);
    if (!s.contains(encoded))
        return defaultValue;
    return s.value(encoded).toString();
}

bool IniSettingsStore::HasSetting(const QString& key) const
{
    std::unique_ptr<QSettings> local;
    return settings(local).contains(encodeStoreKey(key));
}

QList<QPair<QString, QString>> IniSettingsStore::GetAllSettings() const
{
    std::unique_ptr<QSettings> local;
    const QSettings& s = settings(local);
    QList<QPair<QString, QString>> all;
    const QStringList keys = s.childKeys();
    all.reserve(keys.size());
    for (const QString& key : keys)
        all.append({decodeStoreKey(key), s.value(key).toString()});
    return all;
}

void IniSettingsStore::SaveSetting(const QString& key, const QString& value)
{
    if (key.isEmpty())
        raiseError(err::InvalidProcedureCall, QStringLiteral("A setting needs a name"));
    if (m_batch) {
        m_batch->setValue(encodeStoreKey(key), value);
        return;
    }
    prepareWrite();
    const auto s = openSettings(m_fileName);
    s->setValue(encodeStoreKey(key), value);
    s->sync();
    finishWrite(s->status(), QStringLiteral("the setting '%1'").arg(key));
}

void IniSettingsStore::DeleteSetting(const QString& key)
{
    if (m_batch) {
        m_batch->remove(encodeStoreKey(key));
        return;
    }
    prepareWrite();
    const auto s = openSettings(m_fileName);
    s->remove(encodeStoreKey(key));
    s->sync();
    finishWrite(s->status(), QStringLiteral("the setting '%1'").arg(key));
}

void IniSettingsStore::beginBatch()
{
    if (m_batchDepth++ > 0)
        return;
    prepareWrite();
    m_batch = openSettings(m_fileName);
}

void IniSettingsStore::endBatch()
{
    if (m_batchDepth == 0 || --m_batchDepth > 0)
        return;
    const std::unique_ptr<QSettings> s = std::move(m_batch);
    s->sync();
    finishWrite(s->status(), QStringLiteral("the settings"));
}

void IniSettingsStore::prepareWrite() const
{
    // The file holds passwords: it is made readable by its owner only before anything
    // is written into it, and a replaced file keeps the permissions of the old one.
    QDir().mkpath(QFileInfo(m_fileName).absolutePath());
    if (!QFileInfo::exists(m_fileName)) {
        QFile file(m_fileName);
        if (file.open(QIODevice::WriteOnly))
            file.setPermissions(kOwnerOnly);
    }
}

void IniSettingsStore::finishWrite(int status, const QString& what) const
{
    if (QFileInfo(m_fileName).isFile())
        QFile::setPermissions(m_fileName, kOwnerOnly);
    if (status != QSettings::NoError)
        raiseError(err::PathFileAccess, QStringLiteral("Could not write %1 to %2").arg(what, m_fileName));
}

} // namespace steward
