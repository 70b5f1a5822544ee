#pragma once
#include "support/LocalAddress.h"

namespace steward {

/// The host's name from gethostname, its addresses from the system's resolver.
class HostAddressLookup final : public AddressLookup {
public:
    bool hostName(QString& name, int& error) override;
    QList<QByteArray> addresses(const QString& name) override;
};

} // namespace steward
