// Path, combo, country and colour helpers at their edges.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "client/ui/dialer/core/utilities.h"
#include "platform/automation/failure_number.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/headless/headless_platform.h"

namespace kw::dialer {
namespace {

// Either slash separates; the directory keeps its last separator, or a colon when no slash
// follows it.
TEST(PathTest, FileNameAndDirectorySplitAtTheLastSeparator) {
    const struct {
        const char* path;
        const char* file;
        const char* directory;
    } cases[] = {
        {"C:\\Kestrelway\\history.log", "history.log", "C:\\Kestrelway\\"},
        {"/home/ana/rx.log", "rx.log", "/home/ana/"},
        {"C:\\logs/today\\rx.log", "rx.log", "C:\\logs/today\\"},
        {"/home/ana\\logs/rx.log", "rx.log", "/home/ana\\logs/"},
        {"history.log", "history.log", ""},
        {"C:history.log", "C:history.log", "C:"},
        {"/mnt/c:rx.log", "c:rx.log", "/mnt/c:"},
        {"C:\\logs\\", "", "C:\\logs\\"},
        {"/rx.log", "rx.log", "/"},
        {"", "", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(FileNameFromPath(c.path), c.file) << c.path;
        EXPECT_EQ(DirectoryFromPath(c.path), c.directory) << c.path;
    }
}

TEST(FindComboEntryTest, MissAndFirstEntryBothGiveZero) {
    headless::HeadlessPlatform platform;
    forms::Form form(platform, "FromPullout");
    forms::ComboBox cmboFrom(form, "cmboFrom");
    EXPECT_EQ(FindComboEntry(cmboFrom, "Home"), 0);
    for (const char* name : {"Home", "Office", "Hotel", "Office"}) {
        cmboFrom.AddItem(name);
    }
    EXPECT_EQ(FindComboEntry(cmboFrom, "Airport"), 0);
    EXPECT_EQ(FindComboEntry(cmboFrom, "Hotel"), 2);
    EXPECT_EQ(FindComboEntry(cmboFrom, "Office"), 1);  // the first of equal entries
    EXPECT_EQ(FindComboEntry(cmboFrom, "hotel"), 0);   // exact, case included
    EXPECT_EQ(cmboFrom.ListIndex(), -1);               // looking selects nothing
}

TEST(CountryNameTest, TextBeforeTheBlankBeforeTheParenthesisOrFailure5) {
    EXPECT_EQ(CountryNameFromText("UNITED STATES (1)"), "UNITED STATES");
    EXPECT_EQ(CountryNameFromText("BOSNIA (HERZEGOVINA) (387)"), "BOSNIA");
    EXPECT_EQ(CountryNameFromText("FRANCE(33)"), "FRANC");  // no blank: a letter goes instead
    EXPECT_EQ(CountryNameFromText(" (44)"), "");
    for (const char* text : {"UNITED STATES", "", "(1) UNITED STATES"}) {
        EXPECT_EQ(FailureNumber([&] { CountryNameFromText(text); }), 5) << text;
    }
}

TEST(SplitColourTest, RedIsTheLowestByteAndBlueKeepsWhatLiesAbove) {
    const struct {
        std::int32_t colour;
        std::int16_t red, green, blue;
    } cases[] = {{0x0000FF00, 0, 255, 0},  // the key colour of the artwork
                 {0x00C08040, 0x40, 0x80, 0xC0},
                 {0x01000203, 3, 2, 256}};
    for (const auto& c : cases) {
        std::int16_t red = -1, green = -1, blue = -1;
        SplitColour(c.colour, red, green, blue);
        EXPECT_EQ(std::vector<int>({red, green, blue}), std::vector<int>({c.red, c.green, c.blue}))
            << std::hex << c.colour;
    }
}

}  // namespace
}  // namespace kw::dialer
