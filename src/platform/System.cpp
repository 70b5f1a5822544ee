#include "platform/System.h"

#include <QDir>
#include <QLockFile>
#include <QProcess>
#include <QStandardPaths>
#include <QSysInfo>

#include <pwd.h>
#include <unistd.h>

namespace steward {

namespace {
// The system's answers come in a buffer of 100 characters, cut at the first NUL.
QString cutAsBuffer(QString text)
{
    const auto nul = text.indexOf(QChar(0));
    if (nul >= 0)
        text.truncate(nul);
    return text.left(99);
}
} // namespace

QString HostSystemNames::computerName() const { return cutAsBuffer(QSysInfo::machineHostName()); }

QString HostSystemNames::userName() const
{
    if (const passwd* pw = getpwuid(geteuid()); pw && pw->pw_name)
        return cutAsBuffer(QString::fromLocal8Bit(pw->pw_name));
    return cutAsBuffer(qEnvironmentVariable("USER"));
}

bool DetachedProcessLauncher::startDetached(const LaunchRequest& request, QString* error, qint64* pid)
{
    QProcess process;
    process.setProgram(request.program);
    process.setArguments(request.arguments);
    process.setWorkingDirectory(request.workingFolder);
    process.setStandardInputFile(QProcess::nullDevice());
    if (process.startDetached(pid))
        return true;
    if (error)
        *error = process.errorString();
    return false;
}

struct LockFileInstanceGuard::Impl {
    QLockFile lock;
    bool tried = false;
    bool held = false;
    explicit Impl(const QString& path) : lock(path) {}
};

LockFileInstanceGuard::LockFileInstanceGuard(const QString& lockName)
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty())
        folder = QDir::tempPath();
    d = new Impl(QDir(folder).filePath(lockName));
    d->lock.setStaleLockTime(0);
}

LockFileInstanceGuard::~LockFileInstanceGuard()
{
    if (d->held)
        d->lock.unlock();
    delete d;
}

bool LockFileInstanceGuard::otherInstanceRunning()
{
    if (!d->tried) {
        d->tried = true;
        d->held = d->lock.tryLock(0);
    }
    return !d->held;
}

} // namespace steward
