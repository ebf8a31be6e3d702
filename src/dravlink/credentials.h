#pragma once

#include <optional>
#include <string>
#include <utility>

namespace dravlink {

// The user's VPN credentials as the engine keeps them: in the user's settings hive, under the
// client's own key, with a reference to the password kept among the engine's secrets.
inline constexpr const char* kCredentialsKey = "Software\\Ostvarra\\Kestrelway";

class Secrets;

// A password as older engines stored it (a reversible encoding) given back as typed; any other
// text as it stands. Only read, to move such values to the secrets.
std::string DecodeOldPassword(const std::string& stored);

// Writes "UserName" and "Password" (a reference) through the settings store; false on failure.
bool WriteCredentials(Secrets& secrets, const std::string& user, const std::string& plainPassword);
// The stored pair, the password revealed; nullopt when there is none. A password stored the old
// way is replaced by a reference on the way.
std::optional<std::pair<std::string, std::string>> ReadCredentials(Secrets& secrets);
// The tunnel server the user set in place of the destination's own; empty for none.
std::string ReadAlternateTunnelServer();

}  // namespace dravlink
