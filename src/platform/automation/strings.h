#pragma once

#include <string>
#include <string_view>

namespace kw::automation {

// The classic string functions, with their edge behaviour: positions count from 1, Trim removes
// blanks (spaces) only, out-of-range lengths are clipped, a negative length or a start below 1
// fails with 5.
std::string Trim(std::string_view s);
std::string Left(std::string_view s, long length);
std::string Mid(std::string_view s, long start);
std::string Mid(std::string_view s, long start, long length);
// Position of find in s from start (1-based), 0 when absent. Start past the end of s gives 0
// (so an empty s always gives 0); otherwise an empty find gives start.
long InStr(std::string_view s, std::string_view find);
long InStr(long start, std::string_view s, std::string_view find);
std::string LCase(std::string_view s);

}  // namespace kw::automation
