#pragma once
// The timed server messages of one main window: the timer tmrServerMessage, the socket
// udpPeerA and the tick counter. They live as long as the window's profile.
#include <QObject>
#include <QTimer>

#include <memory>

namespace steward {

class AppContext;
class DatagramSocket;
class ServerProfile;

class ServerMessaging : public QObject {
    Q_OBJECT
public:
    /// Ticks of 65.535 seconds: the interval is the largest a 16-bit timer has.
    static constexpr int kTickMilliseconds = 65535;
    /// The wait between the two lines of a sending; it blocks the program.
    static constexpr int kLineGapMilliseconds = 2000;

    ~ServerMessaging() override;

    /// The profile's messaging, made on first use as a child of the profile.
    static ServerMessaging& of(AppContext& app, ServerProfile& profile);
    /// The profile's messaging if it has been made, else null.
    static ServerMessaging* find(const ServerProfile& profile);

    /// Closes the socket if it is open, points it at the server and starts the timer.
    /// A port text that is not a whole number raises error 13 before the timer starts.
    void arm();
    /// The tick: counts, and when the count equals the leading number of txtMsgTimer
    /// sends both lines two seconds apart and starts counting again. Every error is
    /// ignored.
    void tmrServerMessage_Timer();
    /// Closes the socket if it is open.
    void closeSocket();

    QTimer& tmrServerMessage() { return m_timer; }
    DatagramSocket& udpPeerA() { return *m_socket; }
    qint32 counter() const { return m_counter; }
    void setCounter(qint32 counter) { m_counter = counter; }

private:
    ServerMessaging(AppContext& app, ServerProfile& profile);
    void sendLine(const QString& password, int line);

    AppContext& m_app;
    ServerProfile& m_profile;
    QTimer m_timer;
    std::unique_ptr<DatagramSocket> m_socket;
    qint32 m_counter = 0;
};

} // namespace steward
