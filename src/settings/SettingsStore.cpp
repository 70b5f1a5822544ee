#include "settings/SettingsStore.h"

#include "settings/PlainIniFormat.h"
#include "support/Errors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>
#include <QStandardPaths>

namespace steward {

namespace {
QString defaultStoreFile()
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QDir(config).filePath(kAppName + QStringLiteral("/") + kAppName + QStringLiteral(".conf"));
}

constexpr QFileDevice::Permissions kOwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

// The file's own key of a setting of the section.
QString fileKey(const QString& key) { return kSection + QLatin1Char('/') + encodeStoreKey(key); }
const QString kSectionPrefix = kSection + QLatin1Char('/');
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

IniSettingsStore::FileMap IniSettingsStore::readFile() const
{
    // A file that can't be read holds no settings; reading never fails.
    FileMap map;
    QFile file(m_fileName);
    if (file.open(QIODevice::ReadOnly))
        readPlainIni(file, map);
    return map;
}

IniSettingsStore::FileMap IniSettingsStore::current() const
{
    FileMap map = readFile();
    for (auto it = m_pending.cbegin(); it != m_pending.cend(); ++it) {
        if (it.value())
            map.insert(it.key(), *it.value());
        else
            map.remove(it.key());
    }
    return map;
}

QString IniSettingsStore::GetSetting(const QString& key, const QString& defaultValue) const
{
    const FileMap map = current();
    const auto it = map.constFind(fileKey(key));
    return it == map.cend() ? defaultValue : it.value().toString();
}

bool IniSettingsStore::HasSetting(const QString& key) const { return current().contains(fileKey(key)); }

QList<QPair<QString, QString>> IniSettingsStore::GetAllSettings() const
{
    QList<QPair<QString, QString>> all;
    const FileMap map = current();
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        const QString& full = it.key();
        if (!full.startsWith(kSectionPrefix) || full.indexOf(QLatin1Char('/'), kSectionPrefix.size()) >= 0)
            continue;
        all.append({decodeStoreKey(full.mid(kSectionPrefix.size())), it.value().toString()});
    }
    return all;
}

void IniSettingsStore::SaveSetting(const QString& key, const QString& value)
{
    if (key.isEmpty())
        raiseError(err::InvalidProcedureCall, QStringLiteral("A setting needs a name"));
    change(fileKey(key), value, QStringLiteral("the setting '%1'").arg(key));
}

void IniSettingsStore::DeleteSetting(const QString& key)
{
    change(fileKey(key), std::nullopt, QStringLiteral("the setting '%1'").arg(key));
}

void IniSettingsStore::change(const QString& fileKey, const std::optional<QString>& value, const QString& what)
{
    m_pending.insert(fileKey, value);
    if (m_batchDepth == 0)
        writePending(what);
}

void IniSettingsStore::beginBatch() { ++m_batchDepth; }

void IniSettingsStore::endBatch()
{
    if (m_batchDepth == 0 || --m_batchDepth > 0)
        return;
    writePending(QStringLiteral("the settings"));
}

void IniSettingsStore::writePending(const QString& what)
{
    // The changes are applied to the file as it is now, so that another instance's
    // keys are kept; a change that can't be written is dropped, never kept for later.
    const auto pending = std::exchange(m_pending, {});
    if (pending.isEmpty())
        return;

    QDir().mkpath(QFileInfo(m_fileName).absolutePath());
    QLockFile lock(m_fileName + QStringLiteral(".lock"));
    lock.tryLock(5000); // without the lock (a folder that can't be written) the write fails below

    FileMap map = readFile();
    for (auto it = pending.cbegin(); it != pending.cend(); ++it) {
        if (it.value())
            map.insert(it.key(), *it.value());
        else
            map.remove(it.key());
    }

    // The file holds passwords: it is made readable by its owner only before anything
    // is written into it, and the replacement keeps the permissions of the old file.
    if (!QFileInfo::exists(m_fileName)) {
        QFile empty(m_fileName);
        if (empty.open(QIODevice::WriteOnly))
            empty.setPermissions(kOwnerOnly);
    }
    QSaveFile file(m_fileName);
    const bool written = file.open(QIODevice::WriteOnly) && writePlainIni(file, map) && file.commit();
    if (QFileInfo(m_fileName).isFile())
        QFile::setPermissions(m_fileName, kOwnerOnly);
    if (!written)
        raiseError(err::PathFileAccess, QStringLiteral("Could not write %1 to %2").arg(what, m_fileName));
}

} // namespace steward
