#pragma once
#include <QString>
namespace steward {
class AppContext;
class ServerProfile;
/// Writes BOTFile.cfg into the base folder and shows the box that goes with it. True
/// when the file is to be used: false only when automatic bots have no number of
/// players, or when the file can't be written (shown in a box of its own).
bool gbln_MakeBOTConfig(AppContext& app, ServerProfile& profile);
/// The path of BOTFile.cfg in the base folder.
QString botConfigPath(const AppContext& app);
} // namespace steward
