// Classic number formats as the performance monitor shows them, and Str's sign position.
#include <gtest/gtest.h>

#include <string>

#include "platform/automation/number_format.h"

namespace kw::automation {
namespace {

struct FormatCase {
    double value;
    const char* format;
    const char* expected;
};

class FormatTest : public ::testing::TestWithParam<FormatCase> {};

TEST_P(FormatTest, PrintsTheValueByTheFormat) {
    const FormatCase& c = GetParam();
    EXPECT_EQ(Format(c.value, c.format), c.expected) << c.value << " with " << c.format;
}

INSTANTIATE_TEST_SUITE_P(DigitPlaces, FormatTest,
                         ::testing::Values(
                             // "#" shows no digit for zero at all.
                             FormatCase{28800, "###,###", "28,800"}, FormatCase{0, "###,###", ""},
                             FormatCase{999, "###,###", "999"},
                             // More digits than places: the leftmost place takes them.
                             FormatCase{123456789, "###,###", "123,456,789"},
                             FormatCase{1234567, "#,###,###,##0", "1,234,567"},
                             FormatCase{0, "#,###,###,##0", "0"},
                             FormatCase{2147483647, "#,###,###,##0", "2,147,483,647"},
                             FormatCase{-1234, "#,##0", "-1,234"}, FormatCase{12, "#,##0", "12"},
                             FormatCase{7, "000", "007"}, FormatCase{1234, "000", "1234"},
                             FormatCase{0, "00", "00"}, FormatCase{59, "00", "59"}));

INSTANTIATE_TEST_SUITE_P(Fractions, FormatTest,
                         ::testing::Values(FormatCase{0.5, "0.#", "0.5"},
                                           // The point stays when the "#" shows nothing.
                                           FormatCase{1, "0.#", "1."}, FormatCase{0, "0.#", "0."},
                                           // Rounded half away from zero.
                                           FormatCase{0.25, "0.#", "0.3"},
                                           FormatCase{2.96, "0.#", "3."}));

// Positive, negative and zero sections: a negative value printed by its own section has no sign.
INSTANTIATE_TEST_SUITE_P(Sections, FormatTest,
                         ::testing::Values(FormatCase{25, "R###;T###;Kb/s", "R25"},
                                           FormatCase{-25, "R###;T###;Kb/s", "T25"},
                                           FormatCase{0, "R###;T###;Kb/s", "Kb/s"},
                                           FormatCase{2, "R###;T###;Mb/s", "R2"},
                                           FormatCase{-5, "R###", "-R5"},
                                           FormatCase{0, "R###;T###", "R"}));

struct StrCase {
    double value;
    const char* expected;
};

class StrTest : public ::testing::TestWithParam<StrCase> {};

TEST_P(StrTest, PutsABlankBeforeANonNegativeNumber) {
    EXPECT_EQ(Str(GetParam().value), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Numbers, StrTest,
                         ::testing::Values(StrCase{2500, " 2500"}, StrCase{0, " 0"},
                                           StrCase{0.25, " .25"}, StrCase{-0.25, "-.25"},
                                           StrCase{-40, "-40"}, StrCase{1.5, " 1.5"},
                                           StrCase{1e20, " 1E+20"}));

}  // namespace
}  // namespace kw::automation
