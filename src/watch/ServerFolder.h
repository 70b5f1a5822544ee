#pragma once
// The program's own files of one server, in servers/<id>/ of the program's folder:
// the settings it was started with, the watcher's state, the server's output and the
// crash logs. The id comes from the session file's name.
#include <QDateTime>
#include <QString>
#include <QStringList>

namespace steward {

class ServerFolder {
public:
    /// The id of a session: the session file's name, lower-cased, without ".cfg", with
    /// every character but letters, digits, "-", "_" and "." made "_", and never
    /// beginning with ".", so that it always names one folder inside servers/.
    static QString idForSession(const QString& sessionName);

    ServerFolder(const QString& programFolder, const QString& id);

    const QString& id() const { return m_id; }
    QString path() const { return m_path; }
    /// Makes the folder (owner only); false with the reason when it can't be made.
    bool make(QString* error = nullptr) const;

    QString startedConfiguration() const { return file(QStringLiteral("started.asc")); }
    QString startedRoster() const { return file(QStringLiteral("started-bots.csv")); }
    QString stateFile() const { return file(QStringLiteral("state.json")); }
    QString serverLog() const { return file(QStringLiteral("server.log")); }
    QString lockFile() const { return file(QStringLiteral("watch.lock")); }
    /// crash-<yyyyMMdd-HHmmss>.log for a crash at that time.
    QString crashLog(const QDateTime& when) const;
    /// The crash log for a crash at that time that doesn't exist yet: a second crash
    /// within the same second gets "-2", and so on.
    QString newCrashLog(const QDateTime& when) const;
    /// The crash logs, oldest first.
    QStringList crashLogs() const;
    /// Removes the oldest crash logs beyond the newest `keep`.
    void pruneCrashLogs(int keep) const;

private:
    QString file(const QString& name) const { return m_path + QLatin1Char('/') + name; }
    QString m_id;
    QString m_path;
};

} // namespace steward
