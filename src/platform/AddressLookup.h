#pragma once
// The system's host name, its address lookup and the addresses of the network cards.
#include <QByteArray>
#include <QList>
#include <QString>

namespace steward {

class AddressLookup {
public:
    virtual ~AddressLookup() = default;
    /// The host's name; on failure false, with the system's error number.
    virtual bool hostName(QString& name, int& error) = 0;
    /// The IPv4 addresses of a name in the lookup's order, each as its bytes in network
    /// order; an empty list when the lookup finds nothing.
    virtual QList<QByteArray> addresses(const QString& name) = 0;
    /// The IPv4 addresses of the network interfaces that are up, running and not
    /// loopback, in the system's order, each as its bytes in network order. A lookup
    /// that knows no network cards gives none.
    virtual QList<QByteArray> interfaceAddresses() { return {}; }
};

} // namespace steward
