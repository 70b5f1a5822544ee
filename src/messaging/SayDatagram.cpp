#include "messaging/SayDatagram.h"

namespace steward {

QByteArray sayDatagram(const QString& password, const QString& text)
{
    QByteArray datagram(4, '\xff');
    datagram += "rcon ";
    if (!password.isEmpty()) {
        datagram += password.toLatin1();
        datagram += ' ';
    }
    datagram += "say ";
    datagram += text.toLatin1();
    return datagram;
}

} // namespace steward
