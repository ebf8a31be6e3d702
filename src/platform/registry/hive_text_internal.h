#pragma once

// What the reading and the writing halves of the hive text share: the value types the text form
// names, the case folding of names, the digit tests, and the escaping of a name that may not be
// valid UTF-8. Private to the hive text code.

#include <cstdint>
#include <string>
#include <string_view>

namespace kw::registry::text::detail {

inline constexpr std::uint32_t kSz = 1;
inline constexpr std::uint32_t kExpandSz = 2;
inline constexpr std::uint32_t kBinary = 3;
inline constexpr std::uint32_t kDword = 4;
inline constexpr std::uint32_t kMultiSz = 7;

inline unsigned char Fold(unsigned char c) {
    return (c >= 'a' && c <= 'z') ? static_cast<unsigned char>(c - 'a' + 'A') : c;
}

inline bool IsHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

inline int HexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c - 'A' + 10;
}

inline bool IsOctalDigit(char c) {
    return c >= '0' && c <= '7';
}

// EscapeString, or for bytes that are not UTF-8 the same with each high byte written as \x.
std::string EscapeOrLatin1(std::string_view bytes, std::string_view delimiters);

}  // namespace kw::registry::text::detail
