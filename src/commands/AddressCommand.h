#pragma once
// The address button of the server page.
namespace steward {

class AddressLookup;
class AppContext;
class Field;
class ServerProfile;

/// Fills txtServerConfig(16) with GetIPAddress, under the hourglass, and returns that
/// field, which the window gives the focus.
Field& cmdIP_Click(AppContext& app, ServerProfile& profile, AddressLookup& lookup);

} // namespace steward
