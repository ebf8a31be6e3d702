#pragma once

#include <string>
#include <string_view>

namespace kw::automation {

// Format with a classic number format: "0" a digit always, "#" a digit only when there is one
// (so zero shows no digit at all), "," between digit places groups by thousands, "." the decimal
// point, anything else printed as it stands. Up to three sections separated by ";" serve
// positive, negative and zero values; a negative value printed by its own section loses its sign.
// Literals standing between digit places follow the digits.
std::string Format(double value, std::string_view format);

// Str: the number as text with its sign position, a blank before a non-negative number, and no
// zero before the decimal point (" 2500", " .25", "-40").
std::string Str(double value);

}  // namespace kw::automation
