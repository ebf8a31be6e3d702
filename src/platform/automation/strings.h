#pragma once

#include <string>
#include <string_view>

namespace kw::automation {

// The classic string functions, with their edge behaviour: positions count from 1, Trim removes
// blanks (spaces) only, out-of-range lengths are clipped, a negative length or a start below 1
// fails with 5.
std::string Trim(std::string_view s);
std::string LTrim(std::string_view s);
std::string RTrim(std::string_view s);
std::string Left(std::string_view s, long length);
std::string Right(std::string_view s, long length);
std::string Mid(std::string_view s, long start);
std::string Mid(std::string_view s, long start, long length);
// Position of find in s from start (1-based), 0 when absent. Start past the end of s gives 0
// (so an empty s always gives 0); otherwise an empty find gives start.
long InStr(std::string_view s, std::string_view find);
long InStr(long start, std::string_view s, std::string_view find);
// Position of the last find in s that ends at or before start (-1: the end of s), 0 when absent;
// an empty find gives start. Start past the end gives 0; below 1 (other than -1) fails with 5.
long InStrRev(std::string_view s, std::string_view find);
long InStrRev(std::string_view s, std::string_view find, long start);
std::string UCase(std::string_view s);
std::string LCase(std::string_view s);
long Len(std::string_view s);
std::string Replace(std::string_view s, std::string_view find, std::string_view with);
// Val: the leading number of a text, 0 when none. Blanks, tabs and line feeds are ignored
// wherever they are ("1 2" is 12); &H and &O forms are read; a number too large fails with 6.
double Val(std::string_view s);

}  // namespace kw::automation
