#include "watch/ServerLog.h"

#include "watch/PrivateFile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace steward {

ServerLog::ServerLog(QString fileName, qint64 limit) : m_fileName(std::move(fileName)), m_limit(limit)
{
    m_size = QFileInfo(m_fileName).size();
}

void ServerLog::rotateIfFull(qint64 adding)
{
    if (m_size + adding <= m_limit || m_size == 0)
        return;
    const QString old = m_fileName + QStringLiteral(".1");
    QFile::remove(old);
    QFile::rename(m_fileName, old);
    m_size = 0;
}

void ServerLog::append(const QByteArray& output)
{
    if (output.isEmpty())
        return;
    rotateIfFull(output.size());
    if (appendPrivateFile(m_fileName, output))
        m_size += output.size();

    qsizetype start = 0;
    for (;;) {
        const qsizetype end = output.indexOf('\n', start);
        if (end < 0)
            break;
        QByteArray line = m_partial + output.mid(start, end - start);
        m_partial.clear();
        if (line.endsWith('\r'))
            line.chop(1);
        m_lines.push_back(std::move(line));
        if (static_cast<int>(m_lines.size()) > kKeptLines)
            m_lines.pop_front();
        start = end + 1;
    }
    m_partial += output.mid(start);
    // A line without an end that grows without bound is cut; the file keeps it whole.
    if (m_partial.size() > 64 * 1024)
        m_partial = m_partial.right(64 * 1024);
}

void ServerLog::note(const QString& text)
{
    const QByteArray line = "--- arena-stewardctl " + QDateTime::currentDateTime().toString(Qt::ISODate).toUtf8() +
                            ": " + text.toUtf8() + '\n';
    rotateIfFull(line.size());
    if (appendPrivateFile(m_fileName, line))
        m_size += line.size();
}

QStringList ServerLog::lastLines() const
{
    QStringList lines;
    for (const QByteArray& line : m_lines)
        lines << QString::fromLocal8Bit(line);
    if (!m_partial.isEmpty())
        lines << QString::fromLocal8Bit(m_partial);
    while (lines.size() > kKeptLines)
        lines.removeFirst();
    return lines;
}

void ServerLog::clearLines()
{
    m_lines.clear();
    m_partial.clear();
}

} // namespace steward
