#pragma once
// A host without a name: every address lookup of a window test fails quietly.
#include "platform/AddressLookup.h"

namespace steward::testing {

class NoAddressLookup : public AddressLookup {
public:
    bool hostName(QString&, int&) override { return false; }
    QList<QByteArray> addresses(const QString&) override { return {}; }
};

} // namespace steward::testing
