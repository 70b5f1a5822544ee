#pragma once
namespace steward {
class AppContext;
class ServerProfile;
/// Writes BOTFile.cfg into the base folder; true on success.
bool gbln_MakeBOTConfig(AppContext& app, ServerProfile& profile);
} // namespace steward
