#include "watch/ServerFolder.h"

#include "watch/PrivateFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace steward {

QString ServerFolder::idForSession(const QString& sessionName)
{
    QString id = sessionName.toLower();
    if (id.endsWith(QLatin1String(".cfg")))
        id.chop(4);
    for (QChar& c : id) {
        const bool plain = (c >= QLatin1Char('a') && c <= QLatin1Char('z')) ||
                           (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('-') ||
                           c == QLatin1Char('_') || c == QLatin1Char('.');
        if (!plain)
            c = QLatin1Char('_');
    }
    if (id.isEmpty() || id.startsWith(QLatin1Char('.')))
        id.prepend(QLatin1Char('_'));
    return id;
}

ServerFolder::ServerFolder(const QString& programFolder, const QString& id)
    : m_id(id), m_path(programFolder + QStringLiteral("/servers/") + id)
{}

bool ServerFolder::make(QString* error) const { return makePrivateFolder(m_path, error); }

QString ServerFolder::crashLog(const QDateTime& when) const
{
    return file(QStringLiteral("crash-%1.log").arg(when.toString(QStringLiteral("yyyyMMdd-HHmmss"))));
}

QString ServerFolder::newCrashLog(const QDateTime& when) const
{
    const QString first = crashLog(when);
    QString name = first;
    for (int n = 2; QFileInfo::exists(name); ++n)
        name = first.left(first.size() - 4) + QStringLiteral("-%1.log").arg(n);
    return name;
}

QStringList ServerFolder::crashLogs() const
{
    QStringList logs;
    const QFileInfoList found = QDir(m_path).entryInfoList({QStringLiteral("crash-*.log")}, QDir::Files);
    QFileInfoList sorted = found;
    // By the time they were written; the names sort the same way but for "-10" after "-9".
    std::sort(sorted.begin(), sorted.end(), [](const QFileInfo& a, const QFileInfo& b) {
        const qint64 ta = a.lastModified().toMSecsSinceEpoch();
        const qint64 tb = b.lastModified().toMSecsSinceEpoch();
        return ta != tb                                     ? ta < tb
               : a.fileName().size() != b.fileName().size() ? a.fileName().size() < b.fileName().size()
                                                            : a.fileName() < b.fileName();
    });
    for (const QFileInfo& info : sorted)
        logs << info.absoluteFilePath();
    return logs;
}

void ServerFolder::pruneCrashLogs(int keep) const
{
    QStringList logs = crashLogs();
    while (logs.size() > keep)
        QFile::remove(logs.takeFirst());
}

} // namespace steward
