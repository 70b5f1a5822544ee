#include "platform/UdpSocket.h"

#include <QHostInfo>
#include <QThread>

namespace steward {

QHostAddress resolveHost(const QString& host)
{
    if (host.isEmpty())
        return {};
    QHostAddress address;
    if (address.setAddress(host))
        return address;
    const QList<QHostAddress> found = QHostInfo::fromName(host).addresses();
    for (const QHostAddress& a : found)
        if (a.protocol() == QAbstractSocket::IPv4Protocol)
            return a;
    return found.isEmpty() ? QHostAddress() : found.first();
}

bool QtDatagramSocket::isOpen() const { return m_socket.state() != QAbstractSocket::UnconnectedState; }

void QtDatagramSocket::close() { m_socket.close(); }

bool QtDatagramSocket::send(const QByteArray& datagram)
{
    if (m_port <= 0 || m_port > 65535)
        return false;
    const QHostAddress address = resolveHost(m_host);
    if (address.isNull())
        return false;
    if (!isOpen() &&
        !m_socket.bind(QHostAddress(address.protocol() == QAbstractSocket::IPv6Protocol ? QHostAddress::AnyIPv6
                                                                                        : QHostAddress::AnyIPv4),
                       0))
        return false;
    return m_socket.writeDatagram(datagram, address, static_cast<quint16>(m_port)) == datagram.size();
}

std::unique_ptr<DatagramSocket> QtDatagramSockets::create() { return std::make_unique<QtDatagramSocket>(); }

void ThreadSleepWait::wait(int milliseconds)
{
    if (milliseconds > 0)
        QThread::msleep(static_cast<unsigned long>(milliseconds));
}

} // namespace steward
