#include "testkit/LaunchKit.h"

#include "testkit/TestApp.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>

namespace steward::testing {

StubServer::StubServer(const QString& gameFolder, const QString& name, const QString& recordFile, bool executable)
    : m_path(QDir(gameFolder).filePath(name)), m_record(recordFile)
{
    QFile::remove(m_record);
    const QByteArray rec = m_record.toLocal8Bit();
    const QByteArray script = "#!/bin/sh\n"
                              "rec='" +
                              rec +
                              "'\n"
                              "{ pwd -P; printf '%s\\n' \"$0\" \"$#\";"
                              " for a in \"$@\"; do printf '%s\\n' \"$a\"; done; }"
                              " > \"$rec.part\" && mv \"$rec.part\" \"$rec\"\n";
    writeFile(m_path, script);
    QFile::Permissions perms = QFile::ReadOwner | QFile::WriteOwner;
    if (executable)
        perms |= QFile::ExeOwner;
    QFile::setPermissions(m_path, perms);
}

std::optional<StartRecord> StubServer::waitForRecord(int timeoutMs) const
{
    QDeadlineTimer deadline(timeoutMs);
    while (!QFileInfo::exists(m_record)) {
        if (deadline.hasExpired())
            return std::nullopt;
        QThread::msleep(10);
    }
    QStringList lines = QString::fromLocal8Bit(fileBytes(m_record)).split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    if (lines.size() < 3)
        return std::nullopt;
    StartRecord r;
    r.workingFolder = lines.takeFirst();
    r.program = lines.takeFirst();
    const int count = lines.takeFirst().toInt();
    r.arguments = lines;
    if (r.arguments.size() != count)
        return std::nullopt;
    return r;
}

bool CountingLauncher::startDetached(const LaunchRequest& request, QString* error, qint64* pid)
{
    ++starts;
    requests.push_back(request);
    return m_real.startDetached(request, error, pid);
}

QString canonical(const QString& folder) { return QFileInfo(folder).canonicalFilePath(); }

} // namespace steward::testing
