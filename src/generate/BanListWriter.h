#pragma once
namespace steward {
class AppContext;
class ServerProfile;
/// Writes BAN.cfg into the base folder with the count items of the ban list; true on success.
bool gbln_MakeBANList(AppContext& app, ServerProfile& profile, int count);
} // namespace steward
