#pragma once
// The computer's own address for the net_ip field: the host's name, looked up, the
// first address in dotted form.
#include "platform/AddressLookup.h"

#include <QString>

namespace steward {

class AppContext;

/// The first address of the host in dotted form, or an empty text after a plain box.
/// When the host's name gives loopback addresses only, the first address of a network
/// card that is up takes their place; with no such card the loopback address stays.
QString GetIPAddress(AppContext& app, AddressLookup& lookup);

} // namespace steward
