#pragma once
// The computer's own address for the net_ip field: the host's name, looked up, the
// first address in dotted form.
#include <QByteArray>
#include <QList>
#include <QString>

namespace steward {

class AppContext;
class Field;
class ServerProfile;

/// The system's host name and address lookup.
class AddressLookup {
public:
    virtual ~AddressLookup() = default;
    /// The host's name; on failure false, with the system's error number.
    virtual bool hostName(QString& name, int& error) = 0;
    /// The IPv4 addresses of a name in the lookup's order, each as its bytes in network
    /// order; an empty list when the lookup finds nothing.
    virtual QList<QByteArray> addresses(const QString& name) = 0;
};

/// The first address of the host in dotted form, or an empty text after a plain box.
QString GetIPAddress(AppContext& app, AddressLookup& lookup);

/// The address button: fills txtServerConfig(16) with GetIPAddress, under the hourglass,
/// and returns that field, which the window gives the focus.
Field& cmdIP_Click(AppContext& app, ServerProfile& profile, AddressLookup& lookup);

} // namespace steward
