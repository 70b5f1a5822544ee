#pragma once
#include "platform/AddressLookup.h"

namespace steward {

/// The host's name from gethostname, its addresses from the system's resolver, the
/// network cards from QNetworkInterface.
class HostAddressLookup final : public AddressLookup {
public:
    bool hostName(QString& name, int& error) override;
    QList<QByteArray> addresses(const QString& name) override;
    QList<QByteArray> interfaceAddresses() override;
};

} // namespace steward
