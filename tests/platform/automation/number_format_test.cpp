// Classic number formats as the performance monitor shows them, and Str's sign position.
#include <gtest/gtest.h>

#include <string>

#include "platform/automation/number_format.h"

namespace kw::automation {
namespace {

TEST(NumberFormat, PrintsTheValueByTheFormat) {
    const struct {
        double value;
        const char* format;
        const char* expected;
    } cases[] = {
        {-1234, "#,##0", "-1,234"},
        {7, "000", "007"},
        {1234, "000", "1234"},
        {0.5, "0.#", "0.5"},
        {0, "0.#", "0."},      // the point stays when the "#" shows nothing
        {0.25, "0.#", "0.3"},  // rounded half away from zero
        {2.96, "0.#", "3."},
        // Positive, negative and zero sections: a value printed by its own section has no sign.
        {25, "R###;T###;Kb/s", "R25"},
        {-25, "R###;T###;Kb/s", "T25"},
        {0, "R###;T###;Kb/s", "Kb/s"},
        {-5, "R###", "-R5"},
        {0, "R###;T###", "R"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.value) + " with " + c.format);
        EXPECT_EQ(Format(c.value, c.format), c.expected);
    }
}

TEST(NumberFormat, StrPutsABlankBeforeANonNegativeNumber) {
    const std::pair<double, const char*> cases[] = {
        {2500, " 2500"}, {0, " 0"}, {-40, "-40"}, {1e20, " 1E+20"}};
    for (const auto& [value, expected] : cases) EXPECT_EQ(Str(value), expected) << value;
}

}  // namespace
}  // namespace kw::automation
