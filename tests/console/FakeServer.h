#pragma once
// A small game server on a real UDP socket on 127.0.0.1: it records each request and
// answers with the datagrams its answer function gives, after an optional delay.
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QNetworkDatagram>
#include <QTimer>
#include <QUdpSocket>

#include <functional>

namespace steward::testing {

class FakeServer : public QObject {
public:
    FakeServer()
    {
        m_socket.bind(QHostAddress::LocalHost, 0);
        connect(&m_socket, &QUdpSocket::readyRead, this, [this] {
            while (m_socket.hasPendingDatagrams()) {
                const QNetworkDatagram d = m_socket.receiveDatagram();
                requests.append(d.data());
                if (!answer)
                    continue;
                const QList<QByteArray> replies = answer(d.data());
                const QHostAddress to = d.senderAddress();
                const quint16 port = static_cast<quint16>(d.senderPort());
                QTimer::singleShot(delayMs, this, [this, replies, to, port] {
                    for (const QByteArray& r : replies)
                        m_socket.writeDatagram(r, to, port);
                });
            }
        });
    }
    quint16 port() const { return m_socket.localPort(); }
    QUdpSocket& socket() { return m_socket; }
    /// The replies to a request; none leaves it unanswered.
    std::function<QList<QByteArray>(const QByteArray&)> answer;
    int delayMs = 0;
    QList<QByteArray> requests;

private:
    QUdpSocket m_socket;
};

/// Runs events until the condition holds or the time is up; the condition's last value.
inline bool waitUntil(const std::function<bool()>& condition, int milliseconds = 3000)
{
    const QDeadlineTimer deadline(milliseconds);
    while (!condition() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return condition();
}

/// Runs events for a while.
inline void runEvents(int milliseconds)
{
    waitUntil([] { return false; }, milliseconds);
}

} // namespace steward::testing
