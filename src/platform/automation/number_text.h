#pragma once

#include <optional>
#include <string_view>

namespace kw::automation::detail {

// A number read from text. overflow: the text is a well-formed number beyond what a Double
// (or, for &H/&O forms, a Long) holds.
struct NumberText {
    double value = 0.0;
    bool overflow = false;
};

// The whole text as a number, blanks around it allowed: [sign]digits[.digits][E|D[sign]digits],
// or &H hex / &O octal. Nothing when the text is not a number.
std::optional<NumberText> ParseNumber(std::string_view text);

// The number at the start of text; length is what it took.
std::optional<NumberText> ScanNumber(std::string_view text, std::size_t& length);

}  // namespace kw::automation::detail
