#pragma once

#include <algorithm>
#include <iterator>
#include <string>

namespace dravlink {

// Scenario names, as engine.ini and the phone book spell them.
namespace scenario {
inline constexpr const char* kNormal = "normal";
inline constexpr const char* kBusy = "busy";
inline constexpr const char* kIspPassword = "isp-password";
inline constexpr const char* kTunnelUnreachable = "tunnel-unreachable";
inline constexpr const char* kNoNumbers = "no-numbers";
inline constexpr const char* kInvalidNumber = "invalid-number";
inline constexpr const char* kMotd = "motd";
inline constexpr const char* kQuestion = "question";
inline constexpr const char* kChoice = "choice";
inline constexpr const char* kInput = "input";
inline constexpr const char* kNewCredentials = "new-credentials";
inline constexpr const char* kCallHome = "call-home";
inline constexpr const char* kFastLink = "fast-link";
inline constexpr const char* kLongCall = "long-call";
inline constexpr const char* kAll[] = {
    kNormal,   kBusy,   kIspPassword, kTunnelUnreachable, kNoNumbers, kInvalidNumber, kMotd,
    kQuestion, kChoice, kInput,       kNewCredentials,    kCallHome,  kFastLink,      kLongCall};
}  // namespace scenario

inline bool IsScenario(const std::string& name) {
    return std::any_of(std::begin(scenario::kAll), std::end(scenario::kAll),
                       [&](const char* s) { return name == s; });
}

}  // namespace dravlink
