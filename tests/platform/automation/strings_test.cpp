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

TEST(Strings, TrimRemovesSpacesOnlyAndLCaseLeavesBytesPastAscii) {
    const Text rows[] = {{Trim("  a b  "), "a b"},
                         {Trim(" \t "), "\t"},
                         {Trim("    "), ""},
                         {LCase("Dial-Up \xc3\x89"), "dial-up \xc3\x89"}};
    ExpectRows(rows);
}

TEST(Strings, LeftAndMidClipAndRejectBadArguments) {
    const Text rows[] = {{Left("abc", 2), "ab"},       {Left("abc", 10), "abc"},
                         {Mid("abcdef", 3), "cdef"},   {Mid("abcdef", 2, 3), "bcd"},
                         {Mid("abcdef", 5, 10), "ef"}, {Mid("abcdef", 7), ""},
                         {Mid("abcdef", 1, 0), ""}};
    ExpectRows(rows);
    for (auto call :
         {+[] { Left("abc", -1); }, +[] { Mid("abc", 0); }, +[] { Mid("abc", 1, -1); }}) {
        EXPECT_EQ(FailureNumber(call), err::kInvalidCall);
    }
}

// Positions count from one, and case counts.
TEST(Strings, InStrFindsFromItsStart) {
    const std::pair<long, long> rows[] = {{InStr("abcabc", "bc"), 2}, {InStr(3, "abcabc", "bc"), 5},
                                          {InStr("abc", "abcd"), 0},  {InStr("aB", "b"), 0},
                                          {InStr(4, "abc", "c"), 0},  {InStr(3, "abc", ""), 3},
                                          {InStr(5, "abc", ""), 0},   {InStr("", ""), 0}};
    ExpectRows(rows);
    EXPECT_EQ(FailureNumber([] { InStr(0, "abc", "a"); }), err::kInvalidCall);
}

}  // namespace
