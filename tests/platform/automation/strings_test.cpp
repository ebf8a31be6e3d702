#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "platform/automation/failure_number.h"
#include "platform/automation/strings.h"

using namespace kw::automation;

namespace {

// Each row: what a call gave, and what it should have given.
template <class T, std::size_t N>
void ExpectRows(const std::pair<T, T> (&rows)[N]) {
    for (std::size_t i = 0; i < N; ++i) {
        SCOPED_TRACE("row " + std::to_string(i));
        EXPECT_EQ(rows[i].first, rows[i].second);
    }
}

using Text = std::pair<std::string, std::string>;
using Position = std::pair<long, long>;

TEST(Strings, TrimRemovesSpacesOnly) {
    const Text rows[] = {{Trim("  a b  "), "a b"},
                         {LTrim("  a "), "a "},
                         {RTrim(" a  "), " a"},
                         {Trim(" \t "), "\t"},
                         {Trim("    "), ""}};
    ExpectRows(rows);
}

TEST(Strings, LeftRightMidClipAndRejectBadArguments) {
    const Text rows[] = {{Left("abc", 2), "ab"},       {Left("abc", 10), "abc"},
                         {Right("abc", 2), "bc"},      {Right("abc", 10), "abc"},
                         {Right("abc", 0), ""},        {Mid("abcdef", 3), "cdef"},
                         {Mid("abcdef", 2, 3), "bcd"}, {Mid("abcdef", 5, 10), "ef"},
                         {Mid("abcdef", 7), ""},       {Mid("abcdef", 1, 0), ""}};
    ExpectRows(rows);
    for (auto call : {+[] { Left("abc", -1); }, +[] { Right("abc", -1); }, +[] { Mid("abc", 0); },
                      +[] { Mid("abc", 1, -1); }}) {
        EXPECT_EQ(FailureNumber(call), err::kInvalidCall);
    }
}

TEST(Strings, InStrAndInStrRevCountFromOne) {
    // Case counts; InStrRev finds only what ends by its start.
    const Position rows[] = {{InStr("abcabc", "bc"), 2},
                             {InStr(3, "abcabc", "bc"), 5},
                             {InStr("abc", "abcd"), 0},
                             {InStr("aB", "b"), 0},
                             {InStr(4, "abc", "c"), 0},
                             {InStr(3, "abc", ""), 3},
                             {InStr(5, "abc", ""), 0},
                             {InStr("", ""), 0},
                             {InStrRev("a\\b\\c", "\\"), 4},
                             {InStrRev("abcabc", "abc", 5), 1},
                             {InStrRev("abcabc", "abc", 6), 4},
                             {InStrRev("abc", ""), 3},
                             {InStrRev("abc", "", 2), 2},
                             {InStrRev("abc", "a", 4), 0},
                             {InStrRev("", ""), 0},
                             {InStrRev("ab", "abc"), 0}};
    ExpectRows(rows);
    EXPECT_EQ(FailureNumber([] { InStr(0, "abc", "a"); }), err::kInvalidCall);
    EXPECT_EQ(FailureNumber([] { InStrRev("abc", "a", 0); }), err::kInvalidCall);
}

TEST(Strings, CaseLenReplace) {
    // Bytes past ASCII keep their case; Replace goes left to right without overlap.
    const Text rows[] = {{UCase("Dial-Up 2\xc3\xa9"), "DIAL-UP 2\xc3\xa9"},
                         {LCase("Dial-Up"), "dial-up"},
                         {Replace("a,b,,c", ",", ";"), "a;b;;c"},
                         {Replace("aaa", "aa", "b"), "ba"},
                         {Replace("abc", "", "x"), "abc"},
                         {Replace("xx", "x", "xx"), "xxxx"}};
    ExpectRows(rows);
    EXPECT_EQ(Len("a b"), 3);
}

TEST(Strings, ValReadsTheLeadingNumberOfAText) {
    // Blanks anywhere are ignored.
    const std::pair<const char*, double> rows[] = {
        {"12abc", 12.0},  {"abc", 0.0},  {"", 0.0},       {" 1 2 3", 123.0}, {"-3.5x", -3.5},
        {"1.2.3", 1.2},   {".5", 0.5},   {"1e3", 1000.0}, {"1e", 1.0},       {"&H10", 16.0},
        {"&HFFFF", -1.0}, {"&O10", 8.0}, {"&H", 0.0},     {"-", 0.0}};
    for (const auto& [text, value] : rows) EXPECT_EQ(Val(text), value) << text;
    EXPECT_EQ(FailureNumber([] { Val("1e999"); }), err::kOverflow);
}

}  // namespace
