#pragma once
// Names for the indexes of the field arrays that mean something to the code, to go with
// the typed names of FieldNames.h: F::txtServerConfig(ServerBox::Port).
namespace steward {

/// The members of the server boxes that the code reads by their meaning, as in
/// F::txtServerConfig(ServerBox::Port).
namespace ServerBox {
inline constexpr int Motd = 0;            ///< g_motd
inline constexpr int Session = 1;         ///< the session (the configuration file's name)
inline constexpr int HostName = 2;        ///< sv_hostname
inline constexpr int Admin = 3;           ///< the admin's name
inline constexpr int Port = 12;           ///< net_port
inline constexpr int RemotePassword = 14; ///< rconPassword
inline constexpr int ServerPassword = 15; ///< g_password
inline constexpr int Address = 16;        ///< net_ip, the bound address
/// Members of txtServerConfigSpin.
inline constexpr int HunkMegs = 5;   ///< com_hunkMegs
inline constexpr int MinClients = 6; ///< sv_minclients, the players that bots fill up to
inline constexpr int ZoneMegs = 11;  ///< com_zoneMegs
inline constexpr int SoundMegs = 12; ///< com_soundMegs
} // namespace ServerBox

} // namespace steward
