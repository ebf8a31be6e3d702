#pragma once

namespace kw::dialer {

class Application;

// Reads the stored VPN user, password, calling card and alternate tunnel server.
void LoadUserInfo(Application& app);
// Stores the pair through the engine and the card and tunnel server in the settings.
void SaveUserInfo(Application& app);
// When the user's settings file cannot be used (a folder in its place, a file that cannot be
// read), says so once, on stderr and in a box naming the file and the reason; true then.
bool ReportUnusableSettings(Application& app);

}  // namespace kw::dialer
