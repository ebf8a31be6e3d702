#include <gtest/gtest.h>

#include "platform/automation/failure_number.h"
#include "platform/automation/strings.h"

using namespace kw::automation;

namespace {

TEST(Strings, TrimRemovesSpacesOnly) {
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(LTrim("  a "), "a ");
    EXPECT_EQ(RTrim(" a  "), " a");
    EXPECT_EQ(Trim(" \t "), "\t");
    EXPECT_EQ(Trim("    "), "");
}

TEST(Strings, LeftRightMidClipAndRejectBadArguments) {
    EXPECT_EQ(Left("abc", 2), "ab");
    EXPECT_EQ(Left("abc", 10), "abc");
    EXPECT_EQ(Right("abc", 2), "bc");
    EXPECT_EQ(Right("abc", 10), "abc");
    EXPECT_EQ(Right("abc", 0), "");
    EXPECT_EQ(Mid("abcdef", 3), "cdef");
    EXPECT_EQ(Mid("abcdef", 2, 3), "bcd");
    EXPECT_EQ(Mid("abcdef", 5, 10), "ef");
    EXPECT_EQ(Mid("abcdef", 7), "");
    EXPECT_EQ(Mid("abcdef", 1, 0), "");
    EXPECT_EQ(FailureNumber([] { Left("abc", -1); }), err::kInvalidCall);
    EXPECT_EQ(FailureNumber([] { Right("abc", -1); }), err::kInvalidCall);
    EXPECT_EQ(FailureNumber([] { Mid("abc", 0); }), err::kInvalidCall);
    EXPECT_EQ(FailureNumber([] { Mid("abc", 1, -1); }), err::kInvalidCall);
}

TEST(Strings, InStrAndInStrRevCountFromOne) {
    EXPECT_EQ(InStr("abcabc", "bc"), 2);
    EXPECT_EQ(InStr(3, "abcabc", "bc"), 5);
    EXPECT_EQ(InStr("abc", "abcd"), 0);
    EXPECT_EQ(InStr("aB", "b"), 0);  // case counts
    EXPECT_EQ(InStr(4, "abc", "c"), 0);
    EXPECT_EQ(InStr(3, "abc", ""), 3);
    EXPECT_EQ(InStr(5, "abc", ""), 0);
    EXPECT_EQ(InStr("", ""), 0);
    EXPECT_EQ(FailureNumber([] { InStr(0, "abc", "a"); }), err::kInvalidCall);

    EXPECT_EQ(InStrRev("a\\b\\c", "\\"), 4);
    EXPECT_EQ(InStrRev("abcabc", "abc", 5), 1);  // the last one would end past 5
    EXPECT_EQ(InStrRev("abcabc", "abc", 6), 4);
    EXPECT_EQ(InStrRev("abc", ""), 3);
    EXPECT_EQ(InStrRev("abc", "", 2), 2);
    EXPECT_EQ(InStrRev("abc", "a", 4), 0);
    EXPECT_EQ(InStrRev("", ""), 0);
    EXPECT_EQ(InStrRev("ab", "abc"), 0);
    EXPECT_EQ(FailureNumber([] { InStrRev("abc", "a", 0); }), err::kInvalidCall);
}

TEST(Strings, CaseLenReplace) {
    EXPECT_EQ(UCase("Dial-Up 2\xc3\xa9"), "DIAL-UP 2\xc3\xa9");  // bytes past ASCII untouched
    EXPECT_EQ(LCase("Dial-Up"), "dial-up");
    EXPECT_EQ(Len("a b"), 3);
    EXPECT_EQ(Replace("a,b,,c", ",", ";"), "a;b;;c");
    EXPECT_EQ(Replace("aaa", "aa", "b"), "ba");  // left to right, no overlap
    EXPECT_EQ(Replace("abc", "", "x"), "abc");
    EXPECT_EQ(Replace("xx", "x", "xx"), "xxxx");
}

TEST(Strings, ValReadsTheLeadingNumberOfAText) {
    for (auto [text, value] : {std::pair{"12abc", 12.0},
                               {"abc", 0.0},
                               {"", 0.0},
                               {" 1 2 3", 123.0},
                               {"-3.5x", -3.5},
                               {"1.2.3", 1.2},
                               {".5", 0.5},
                               {"1e3", 1000.0},
                               {"1e", 1.0},
                               {"07", 7.0},
                               {"&H10", 16.0},
                               {"&HFFFF", -1.0},
                               {"&O10", 8.0},
                               {"&H", 0.0},
                               {"-", 0.0}}) {
        EXPECT_EQ(Val(text), value) << text;  // blanks anywhere are ignored
    }
    EXPECT_EQ(FailureNumber([] { Val("1e999"); }), err::kOverflow);
}

}  // namespace
