#pragma once
// The server console's traffic: getstatus and rcon requests on one UDP socket, answered
// asynchronously. Status replies are matched to the oldest request still in flight, so
// the round trip is that request's age; print replies are handed on in the order they
// arrive. A request without an answer within the timeout is reported once.
#include "console/ConsoleProtocol.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QObject>
#include <QTimer>
#include <QUdpSocket>

#include <deque>

namespace steward {

class ConsoleClient : public QObject {
    Q_OBJECT
public:
    static constexpr int kDefaultTimeoutMs = 2000;

    explicit ConsoleClient(QObject* parent = nullptr);
    ~ConsoleClient() override;

    void setTimeout(int milliseconds) { m_timeoutMs = milliseconds; }
    int timeout() const { return m_timeoutMs; }

    /// Sends getstatus. An empty host is this computer; a name is looked up first.
    void requestStatus(const QString& host, quint16 port);
    /// Sends one rcon command with the password.
    void sendCommand(const QString& host, quint16 port, const QString& password, const QString& command);
    /// Ends all traffic: the socket closes, requests in flight and lookups are forgotten
    /// and nothing more is reported.
    void stop();

    /// The local port of the socket, 0 before the first request.
    quint16 localPort() const { return m_socket ? m_socket->localPort() : 0; }
    int statusInFlight() const { return static_cast<int>(m_status.size()); }
    int commandsInFlight() const { return static_cast<int>(m_commands.size()); }

signals:
    void statusArrived(const steward::ServerStatus& status, int roundTripMs);
    void statusUnanswered();
    /// The text of one print datagram.
    void printArrived(const QString& text);
    void commandUnanswered();
    /// A datagram from the server that could not be read.
    void unreadableReply();
    /// The host name could not be looked up.
    void hostNotFound(const QString& host);

private:
    struct Request {
        QByteArray datagram;
        bool isStatus = false;
    };
    struct InFlight {
        qint64 sentAt = 0;
        bool answered = false;
    };

    void send(const QString& host, quint16 port, const Request& request);
    void sendTo(const QHostAddress& address, quint16 port, const Request& request);
    void readReplies();
    void handle(const QByteArray& datagram);
    void sweep();
    void armSweep();

    QUdpSocket* m_socket = nullptr;
    QTimer m_sweep;
    QElapsedTimer m_clock;
    int m_timeoutMs = kDefaultTimeoutMs;
    QHostAddress m_target;
    quint16 m_targetPort = 0;
    std::deque<InFlight> m_status;
    std::deque<InFlight> m_commands;
    QString m_cachedName;
    QHostAddress m_cachedAddress;
    int m_lookupId = -1;
    quint64 m_generation = 0;
};

} // namespace steward
