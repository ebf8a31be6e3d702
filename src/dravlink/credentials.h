#pragma once

#include <optional>
#include <string>
#include <utility>

namespace dravlink {

// The user's VPN credentials as the engine keeps them: in the user's settings hive, under the
// client's own key, with the password in an encoding of the engine's (not as typed).
inline constexpr const char* kCredentialsKey = "Software\\Ostvarra\\Kestrelway";

std::string EncodePassword(const std::string& plain);
// Gives the text back as it stands when it is not in the engine's encoding.
std::string DecodePassword(const std::string& stored);
bool IsEncodedPassword(const std::string& stored);

// Writes "UserName" and "Password" (encoded) through the settings store; false on failure.
bool WriteCredentials(const std::string& user, const std::string& plainPassword);
// The stored pair, the password decoded; nullopt when there is none.
std::optional<std::pair<std::string, std::string>> ReadCredentials();
// The tunnel server the user set in place of the destination's own; empty for none.
std::string ReadAlternateTunnelServer();

}  // namespace dravlink
