#pragma once

#include <cstdint>

namespace kw::dialer::code {

// The engine's progress codes that the main window acts on.
inline constexpr std::int16_t kConnected = 1;
inline constexpr std::int16_t kLogoOff = 31;
inline constexpr std::int16_t kLineDown = 32;
inline constexpr std::int16_t kMonitorStart = 101;
inline constexpr std::int16_t kModemDetected = 102;
inline constexpr std::int16_t kDialing = 103;
inline constexpr std::int16_t kConnectingIsp = 104;
inline constexpr std::int16_t kAuthorizingIsp = 105;
inline constexpr std::int16_t kIspNote = 131;
inline constexpr std::int16_t kIspDown = 132;
inline constexpr std::int16_t kTunnelUp = 201;
inline constexpr std::int16_t kCreatingTunnel = 202;
inline constexpr std::int16_t kTunnelNote = 205;
inline constexpr std::int16_t kTunnelNote2 = 206;
// Its text is user^password.
inline constexpr std::int16_t kNewCredentials = 207;
inline constexpr std::int16_t kTunnelLogoOff = 231;
inline constexpr std::int16_t kTunnelDown = 232;
inline constexpr std::int16_t kEngineNote = 999;

}  // namespace kw::dialer::code
