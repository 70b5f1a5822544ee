#pragma once
// The server's output as the watcher keeps it: appended to server.log (owner only),
// which is moved to server.log.1 when it passes its size, and the last lines held in
// memory for a crash log.
#include <QByteArray>
#include <QString>
#include <QStringList>

#include <deque>

namespace steward {

class ServerLog {
public:
    static constexpr qint64 kDefaultLimit = 10 * 1024 * 1024;
    static constexpr int kKeptLines = 200;

    explicit ServerLog(QString fileName, qint64 limit = kDefaultLimit);

    /// Output as it comes; lines may arrive in pieces.
    void append(const QByteArray& output);
    /// A line of the watcher's own, marked as such.
    void note(const QString& text);
    /// The last lines of output, oldest first (a line not yet ended included).
    QStringList lastLines() const;
    /// Forgets the lines held in memory (a new run of the server).
    void clearLines();

private:
    void rotateIfFull(qint64 adding);

    QString m_fileName;
    qint64 m_limit;
    qint64 m_size = 0;
    std::deque<QByteArray> m_lines;
    QByteArray m_partial;
};

} // namespace steward
