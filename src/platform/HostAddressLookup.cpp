#include "platform/HostAddressLookup.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QNetworkInterface>

#include <cerrno>
#include <unistd.h>

namespace steward {

namespace {
QByteArray addressBytes(const QHostAddress& address)
{
    const quint32 v4 = address.toIPv4Address();
    const char bytes[4] = {static_cast<char>(v4 >> 24), static_cast<char>(v4 >> 16), static_cast<char>(v4 >> 8),
                           static_cast<char>(v4)};
    return QByteArray(bytes, 4);
}
} // namespace

bool HostAddressLookup::hostName(QString& name, int& error)
{
    char buffer[256] = {};
    if (::gethostname(buffer, sizeof buffer - 1) == -1) {
        error = errno;
        return false;
    }
    name = QString::fromLocal8Bit(buffer);
    return true;
}

QList<QByteArray> HostAddressLookup::addresses(const QString& name)
{
    QList<QByteArray> result;
    const QHostInfo info = QHostInfo::fromName(name);
    if (info.error() != QHostInfo::NoError)
        return result;
    for (const QHostAddress& address : info.addresses()) {
        // The lookup of the host's name gives IPv4 addresses only.
        if (address.protocol() != QAbstractSocket::IPv4Protocol)
            continue;
        result << addressBytes(address);
    }
    return result;
}

QList<QByteArray> HostAddressLookup::interfaceAddresses()
{
    QList<QByteArray> result;
    const auto wanted = QNetworkInterface::IsUp | QNetworkInterface::IsRunning;
    for (const QNetworkInterface& card : QNetworkInterface::allInterfaces()) {
        if ((card.flags() & wanted) != wanted || card.flags().testFlag(QNetworkInterface::IsLoopBack))
            continue;
        for (const QNetworkAddressEntry& entry : card.addressEntries())
            if (entry.ip().protocol() == QAbstractSocket::IPv4Protocol && !entry.ip().isLoopback())
                result << addressBytes(entry.ip());
    }
    return result;
}

} // namespace steward
