#include "console/CommandHistory.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

namespace steward {

namespace {
// A command that sets the password names it in the clear.
bool setsPassword(const QString& command)
{
    const QStringList words = command.simplified().split(QLatin1Char(' '));
    for (const QString& word : words.mid(0, 2))
        if (word.compare(QLatin1String("rconpassword"), Qt::CaseInsensitive) == 0 ||
            word.compare(QLatin1String("rcon_password"), Qt::CaseInsensitive) == 0)
            return true;
    return false;
}
} // namespace

QString CommandHistory::fileIn(const QString& programFolder)
{
    return QDir(programFolder).filePath(QStringLiteral("console-history.txt"));
}

void CommandHistory::load(const QString& file)
{
    m_entries.clear();
    QFile f(file);
    if (f.open(QIODevice::ReadOnly)) {
        // A history is small; anything that claims to be huge is not read past a limit.
        const QByteArray bytes = f.read(1024 * 1024);
        for (const QString& line : QString::fromUtf8(bytes).split(QLatin1Char('\n')))
            if (!line.trimmed().isEmpty())
                m_entries << line;
    }
    if (m_entries.size() > kCapacity)
        m_entries = m_entries.mid(m_entries.size() - kCapacity);
    m_position = static_cast<int>(m_entries.size());
}

bool CommandHistory::save(const QString& file) const
{
    QSaveFile f(file);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    f.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    for (const QString& entry : m_entries)
        f.write(entry.toUtf8() + '\n');
    return f.commit();
}

void CommandHistory::add(const QString& command, const QString& password)
{
    QString line = command;
    line.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\r'), QLatin1Char(' '));
    const bool holdsPassword = !password.trimmed().isEmpty() && line.contains(password.trimmed());
    if (!line.trimmed().isEmpty() && !holdsPassword && !setsPassword(line) &&
        (m_entries.isEmpty() || m_entries.last() != line)) {
        m_entries << line;
        if (m_entries.size() > kCapacity)
            m_entries.removeFirst();
    }
    m_position = static_cast<int>(m_entries.size());
}

QString CommandHistory::older()
{
    if (m_entries.isEmpty())
        return {};
    if (m_position > 0)
        --m_position;
    return m_entries.at(m_position);
}

QString CommandHistory::newer()
{
    if (m_position < m_entries.size())
        ++m_position;
    return m_position < m_entries.size() ? m_entries.at(m_position) : QString();
}

} // namespace steward
