#include "platform/ProcessIdentity.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QFile>
#include <QList>
#include <QThread>

#include <csignal>

namespace steward {

ProcessIdentity identifyProcess(qint64 pid)
{
    if (pid <= 0)
        return {};
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return {};
    const QByteArray text = stat.readAll();
    // The command name stands in parentheses and may hold blanks or parentheses itself:
    // the fields that follow begin after the last closing one.
    const qsizetype close = text.lastIndexOf(')');
    if (close < 0)
        return {};
    const QList<QByteArray> fields = text.mid(close + 2).split(' ');
    // fields[0] is the state (field 3); the start time is field 22.
    if (fields.size() < 20 || fields.at(0) == "Z" || fields.at(0) == "X")
        return {};
    bool ok = false;
    const qint64 ticks = fields.at(19).toLongLong(&ok);
    if (!ok)
        return {};
    return {pid, ticks};
}

bool stillRuns(const ProcessIdentity& recorded)
{
    return !recorded.isNull() && identifyProcess(recorded.pid) == recorded;
}

bool signalProcess(const ProcessIdentity& recorded, int signal)
{
    if (!stillRuns(recorded))
        return false;
    return ::kill(static_cast<pid_t>(recorded.pid), signal) == 0;
}

bool waitForEnd(const ProcessIdentity& recorded, int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    while (stillRuns(recorded)) {
        if (deadline.hasExpired())
            return false;
        QThread::msleep(20);
    }
    return true;
}

} // namespace steward
