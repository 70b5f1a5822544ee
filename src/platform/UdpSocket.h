#pragma once
// The real UDP socket on QUdpSocket, and the real blocking wait.
#include "platform/System.h"

#include <QHostAddress>
#include <QUdpSocket>

namespace steward {

/// A QUdpSocket that binds to an ephemeral local port at its first send. The remote
/// host may be an address or a name; a name is looked up by Qt at each send, and its
/// first IPv4 address is preferred.
class QtDatagramSocket final : public DatagramSocket {
public:
    bool isOpen() const override;
    void close() override;
    void setRemoteHost(const QString& host) override { m_host = host; }
    QString remoteHost() const override { return m_host; }
    void setRemotePort(int port) override { m_port = port; }
    int remotePort() const override { return m_port; }
    bool send(const QByteArray& datagram) override;

private:
    QUdpSocket m_socket;
    QString m_host;
    int m_port = 0;
};

class QtDatagramSockets final : public DatagramSockets {
public:
    std::unique_ptr<DatagramSocket> create() override;
};

/// Sleeps the calling thread: nothing else runs during the wait.
class ThreadSleepWait final : public BlockingWait {
public:
    void wait(int milliseconds) override;
};

/// The address a host text stands for: the text itself when it is an address, else the
/// first IPv4 address of the name's lookup, else its first address; null when none.
QHostAddress resolveHost(const QString& host);

} // namespace steward
