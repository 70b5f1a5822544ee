#include "console/ConsoleClient.h"

#include <QHostInfo>
#include <QNetworkDatagram>

namespace steward {

namespace {

// An IPv4 address and its IPv6-mapped form are the same sender.
bool sameHost(const QHostAddress& a, const QHostAddress& b) { return a.isEqual(b, QHostAddress::TolerantConversion); }

} // namespace

ConsoleClient::ConsoleClient(QObject* parent) : QObject(parent)
{
    m_clock.start();
    m_sweep.setInterval(50);
    connect(&m_sweep, &QTimer::timeout, this, &ConsoleClient::sweep);
}

ConsoleClient::~ConsoleClient() { stop(); }

void ConsoleClient::requestStatus(const QString& host, quint16 port)
{
    send(host, port, Request{getstatusDatagram(), true});
}

void ConsoleClient::sendCommand(const QString& host, quint16 port, const QString& password, const QString& command)
{
    send(host, port, Request{rconDatagram(password, command), false});
}

void ConsoleClient::stop()
{
    ++m_generation;
    if (m_lookupId >= 0) {
        QHostInfo::abortHostLookup(m_lookupId);
        m_lookupId = -1;
    }
    m_sweep.stop();
    m_status.clear();
    m_commands.clear();
    if (m_socket) {
        m_socket->close();
        m_socket->deleteLater();
        m_socket = nullptr;
    }
}

void ConsoleClient::send(const QString& host, quint16 port, const Request& request)
{
    const QString name = host.trimmed();
    QHostAddress address;
    if (name.isEmpty())
        address = QHostAddress(QHostAddress::LocalHost);
    else if (!address.setAddress(name) && name == m_cachedName)
        address = m_cachedAddress;
    if (!address.isNull()) {
        sendTo(address, port, request);
        return;
    }
    // A name is looked up without blocking; the request goes once the answer is in.
    const quint64 generation = m_generation;
    m_lookupId = QHostInfo::lookupHost(name, this, [this, name, port, request, generation](const QHostInfo& info) {
        if (generation != m_generation)
            return;
        m_lookupId = -1;
        QHostAddress found;
        for (const QHostAddress& a : info.addresses())
            if (found.isNull() ||
                (a.protocol() == QAbstractSocket::IPv4Protocol && found.protocol() != QAbstractSocket::IPv4Protocol))
                found = a;
        if (found.isNull()) {
            emit hostNotFound(name);
            return;
        }
        m_cachedName = name;
        m_cachedAddress = found;
        sendTo(found, port, request);
    });
}

void ConsoleClient::sendTo(const QHostAddress& address, quint16 port, const Request& request)
{
    if (!m_socket) {
        m_socket = new QUdpSocket(this);
        connect(m_socket, &QUdpSocket::readyRead, this, &ConsoleClient::readReplies);
    }
    if (m_socket->state() == QAbstractSocket::UnconnectedState)
        m_socket->bind(QHostAddress(QHostAddress::Any), 0);
    if (!sameHost(address, m_target) || port != m_targetPort) {
        // Replies of an earlier target no longer count.
        m_status.clear();
        m_commands.clear();
        m_target = address;
        m_targetPort = port;
    }
    (request.isStatus ? m_status : m_commands).push_back(InFlight{m_clock.elapsed(), false});
    armSweep();
    m_socket->writeDatagram(request.datagram, address, port);
}

void ConsoleClient::readReplies()
{
    while (m_socket && m_socket->hasPendingDatagrams()) {
        const qint64 size = m_socket->pendingDatagramSize();
        const QNetworkDatagram datagram = m_socket->receiveDatagram(kMaxReplyBytes + 1);
        if (!sameHost(datagram.senderAddress(), m_target) || datagram.senderPort() != m_targetPort)
            continue;
        if (size > kMaxReplyBytes) {
            emit unreadableReply();
            continue;
        }
        handle(datagram.data());
    }
}

void ConsoleClient::handle(const QByteArray& datagram)
{
    switch (replyKind(datagram)) {
    case ReplyKind::Status: {
        const auto status = parseStatusResponse(datagram);
        if (!status) {
            emit unreadableReply();
            return;
        }
        // The oldest request in flight is the one this answers; an answer with none in
        // flight is late, and its request has already been reported as unanswered.
        if (m_status.empty())
            return;
        const int roundTrip = static_cast<int>(m_clock.elapsed() - m_status.front().sentAt);
        m_status.pop_front();
        emit statusArrived(*status, roundTrip);
        return;
    }
    case ReplyKind::Print: {
        const auto text = parsePrintReply(datagram);
        for (InFlight& command : m_commands)
            if (!command.answered) {
                command.answered = true;
                break;
            }
        emit printArrived(*text);
        return;
    }
    case ReplyKind::Unreadable:
        emit unreadableReply();
        return;
    }
}

void ConsoleClient::armSweep()
{
    if (!m_sweep.isActive())
        m_sweep.start();
}

void ConsoleClient::sweep()
{
    const qint64 now = m_clock.elapsed();
    int statusLost = 0;
    int commandsLost = 0;
    while (!m_status.empty() && now - m_status.front().sentAt >= m_timeoutMs) {
        m_status.pop_front();
        ++statusLost;
    }
    while (!m_commands.empty() && now - m_commands.front().sentAt >= m_timeoutMs) {
        if (!m_commands.front().answered)
            ++commandsLost;
        m_commands.pop_front();
    }
    if (m_status.empty() && m_commands.empty())
        m_sweep.stop();
    const quint64 generation = m_generation;
    for (int i = 0; i < statusLost && generation == m_generation; ++i)
        emit statusUnanswered();
    for (int i = 0; i < commandsLost && generation == m_generation; ++i)
        emit commandUnanswered();
}

} // namespace steward
