#include "messaging/ServerMessaging.h"

#include "messaging/SayDatagram.h"
#include "model/FieldIndexes.h"
#include "platform/System.h"
#include "platform/UdpSocket.h"
#include "support/AppContext.h"
#include "model/ServerProfile.h"
#include "support/Errors.h"
#include "support/Strings.h"

#include <limits>

namespace steward {

namespace {

constexpr auto kConfig = F::txtServerConfig;

// Runs one statement of the tick; whatever goes wrong, the tick goes on with the next.
template <typename Statement>
void ignoringErrors(Statement statement)
{
    try {
        statement();
    } catch (...) {
    }
}

} // namespace

ServerMessaging::ServerMessaging(AppContext& app, ServerProfile& profile)
    : QObject(&profile), m_app(app), m_profile(profile)
{
    setObjectName(QStringLiteral("ServerMessaging"));
    m_timer.setObjectName(QStringLiteral("tmrServerMessage"));
    m_socket = app.services.sockets ? app.services.sockets->create() : QtDatagramSockets().create();
    connect(&m_timer, &QTimer::timeout, this, &ServerMessaging::tmrServerMessage_Timer);
}

ServerMessaging::~ServerMessaging() = default;

ServerMessaging& ServerMessaging::of(AppContext& app, ServerProfile& profile)
{
    if (ServerMessaging* existing = find(profile))
        return *existing;
    return *new ServerMessaging(app, profile);
}

ServerMessaging* ServerMessaging::find(const ServerProfile& profile)
{
    return profile.findChild<ServerMessaging*>(QStringLiteral("ServerMessaging"), Qt::FindDirectChildrenOnly);
}

void ServerMessaging::closeSocket()
{
    if (m_socket->isOpen())
        m_socket->close();
}

void ServerMessaging::arm()
{
    closeSocket();
    QString host = trimBlanks(m_profile.text(kConfig(ServerBox::Address)));
    if (host.isEmpty() && m_app.services.names)
        host = m_app.services.names->computerName();
    m_socket->setRemoteHost(host);
    m_socket->setRemotePort(textToInt32(m_profile.text(kConfig(ServerBox::Port))));
    m_timer.setInterval(kTickMilliseconds);
    m_timer.start();
}

void ServerMessaging::sendLine(const QString& password, int line)
{
    const QString text = m_profile.text(F::txtMsg(line));
    if (!text.isEmpty())
        m_socket->send(sayDatagram(password, text));
}

void ServerMessaging::tmrServerMessage_Timer()
{
    // A counter at its top stays there: the addition overflows and is skipped.
    ignoringErrors([this] {
        if (m_counter == std::numeric_limits<qint32>::max())
            raiseError(err::Overflow);
        ++m_counter;
    });
    // The interval is compared as the number it starts with: "2.5" or "abc" never equal
    // a count, and an interval lowered below the count is never met again.
    bool due = false;
    ignoringErrors(
        [this, &due] { due = leadingNumber(m_profile.text(F::txtMsgTimer)) == static_cast<double>(m_counter); });
    if (!due)
        return;
    QString password;
    ignoringErrors([this, &password] { password = m_profile.text(kConfig(ServerBox::RemotePassword)); });
    ignoringErrors([this, &password] { sendLine(password, 0); });
    ignoringErrors([this] {
        if (m_app.services.blockingWait)
            m_app.services.blockingWait->wait(kLineGapMilliseconds);
        else
            ThreadSleepWait().wait(kLineGapMilliseconds);
    });
    ignoringErrors([this, &password] { sendLine(password, 1); });
    m_counter = 0;
}

} // namespace steward
