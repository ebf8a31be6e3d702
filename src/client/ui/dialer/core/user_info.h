#pragma once

namespace kw::dialer {

class Application;

// Reads the stored VPN user, password, calling card and alternate tunnel server.
void LoadUserInfo(Application& app);
// Stores the pair through the engine and the card and tunnel server in the settings.
void SaveUserInfo(Application& app);

}  // namespace kw::dialer
