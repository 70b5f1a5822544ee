#pragma once
// The seams to the operating system other than the user: names, processes, the
// "open" action, the beep and the test for another running instance.
#include <QString>
#include <QStringList>
#include <QUrl>

#include <memory>

namespace steward {

class SystemNames {
public:
    virtual ~SystemNames() = default;
    virtual QString computerName() const = 0;
    virtual QString userName() const = 0;
};

/// A program to start: the program, its arguments and the working folder. Never a shell text.
struct LaunchRequest {
    QString program;
    QStringList arguments;
    QString workingFolder;
};

class ProcessLauncher {
public:
    virtual ~ProcessLauncher() = default;
    /// Starts the program detached, in a session of its own; nothing waits for it. On
    /// failure returns false and puts the reason into error; on success puts the
    /// process id into pid when asked.
    virtual bool startDetached(const LaunchRequest& request, QString* error, qint64* pid = nullptr) = 0;
};

/// The desktop's "open" action on a file, folder, web or mail address.
class Opener {
public:
    virtual ~Opener() = default;
    virtual bool open(const QUrl& url) = 0;
};

class Beeper {
public:
    virtual ~Beeper() = default;
    virtual void beep() = 0;
};

/// Tells whether another instance of the program is running.
class InstanceGuard {
public:
    virtual ~InstanceGuard() = default;
    virtual bool otherInstanceRunning() = 0;
};

/// A UDP socket that sends datagrams to one remote host and port. It opens itself at
/// its first send; replies are never read.
class DatagramSocket {
public:
    virtual ~DatagramSocket() = default;
    virtual bool isOpen() const = 0;
    virtual void close() = 0;
    virtual void setRemoteHost(const QString& host) = 0;
    virtual QString remoteHost() const = 0;
    virtual void setRemotePort(int port) = 0;
    virtual int remotePort() const = 0;
    /// Sends one datagram to the remote host, whose name is looked up at each send.
    /// False when it could not be sent.
    virtual bool send(const QByteArray& datagram) = 0;
};

/// Makes the UDP sockets of the windows.
class DatagramSockets {
public:
    virtual ~DatagramSockets() = default;
    virtual std::unique_ptr<DatagramSocket> create() = 0;
};

/// A wait that blocks the whole program: no event runs meanwhile.
class BlockingWait {
public:
    virtual ~BlockingWait() = default;
    virtual void wait(int milliseconds) = 0;
};

/// The real system names: the host name and the login name of the user.
class HostSystemNames final : public SystemNames {
public:
    QString computerName() const override;
    QString userName() const override;
};

/// Starts processes with QProcess::startDetached.
class DetachedProcessLauncher final : public ProcessLauncher {
public:
    bool startDetached(const LaunchRequest& request, QString* error, qint64* pid = nullptr) override;
};

/// A lock file in the runtime folder, held while this object lives.
class LockFileInstanceGuard final : public InstanceGuard {
public:
    explicit LockFileInstanceGuard(const QString& lockName = QStringLiteral("arena-steward.lock"));
    ~LockFileInstanceGuard() override;
    LockFileInstanceGuard(const LockFileInstanceGuard&) = delete;
    LockFileInstanceGuard& operator=(const LockFileInstanceGuard&) = delete;
    bool otherInstanceRunning() override;

private:
    struct Impl;
    Impl* d;
};

} // namespace steward
