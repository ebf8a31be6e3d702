// Path, combo, country and colour helpers at their edges.
#include <gtest/gtest.h>

#include <string>

#include "client/ui/dialer/core/utilities.h"
#include "platform/automation/failure_number.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/headless/headless_platform.h"

namespace kw::dialer {
namespace {

TEST(PathTest, FileNameIsWhatFollowsTheLastSeparator) {
    EXPECT_EQ(FileNameFromPath("C:\\Program Files\\Kestrelway\\history.log"), "history.log");
    EXPECT_EQ(FileNameFromPath("/home/ana/.local/share/Kestrelway/rx.log"), "rx.log");
    EXPECT_EQ(FileNameFromPath("C:\\logs/today\\rx.log"), "rx.log");
    EXPECT_EQ(FileNameFromPath("/home/ana\\logs/rx.log"), "rx.log");
    EXPECT_EQ(FileNameFromPath("history.log"), "history.log");
    EXPECT_EQ(FileNameFromPath("C:history.log"), "C:history.log");  // a colon is no separator here
    EXPECT_EQ(FileNameFromPath("C:\\logs\\"), "");
    EXPECT_EQ(FileNameFromPath("/"), "");
    EXPECT_EQ(FileNameFromPath(""), "");
}

TEST(PathTest, DirectoryKeepsItsLastSeparatorOrColon) {
    EXPECT_EQ(DirectoryFromPath("C:\\logs\\history.log"), "C:\\logs\\");
    EXPECT_EQ(DirectoryFromPath("/home/ana/rx.log"), "/home/ana/");
    EXPECT_EQ(DirectoryFromPath("C:history.log"), "C:");
    EXPECT_EQ(DirectoryFromPath("C:\\"), "C:\\");
    EXPECT_EQ(DirectoryFromPath("/rx.log"), "/");
    EXPECT_EQ(DirectoryFromPath("history.log"), "");
    EXPECT_EQ(DirectoryFromPath(""), "");
    // The last one of either kind wins, whichever it is.
    EXPECT_EQ(DirectoryFromPath("/mnt/c:rx.log"), "/mnt/c:");
}

TEST(FindComboEntryTest, MissAndFirstEntryBothGiveZero) {
    headless::HeadlessPlatform platform;
    forms::Form form(platform, "FromPullout");
    forms::ComboBox cmboFrom(form, "cmboFrom");
    EXPECT_EQ(FindComboEntry(cmboFrom, "Home"), 0);
    EXPECT_EQ(FindComboEntry(cmboFrom, ""), 0);

    for (const char* name : {"Home", "Office", "Hotel", "Office"}) {
        cmboFrom.AddItem(name);
    }
    EXPECT_EQ(FindComboEntry(cmboFrom, "Home"), 0);
    EXPECT_EQ(FindComboEntry(cmboFrom, "Airport"), 0);
    EXPECT_EQ(FindComboEntry(cmboFrom, "Hotel"), 2);
    EXPECT_EQ(FindComboEntry(cmboFrom, "Office"), 1);  // the first of equal entries
    EXPECT_EQ(FindComboEntry(cmboFrom, "hotel"), 0);   // exact, case included
    EXPECT_EQ(FindComboEntry(cmboFrom, "Hotel "), 0);
    EXPECT_EQ(cmboFrom.ListIndex(), -1);  // looking selects nothing
}

TEST(CountryNameTest, TextBeforeTheBlankBeforeTheParenthesis) {
    EXPECT_EQ(CountryNameFromText("UNITED STATES (1)"), "UNITED STATES");
    EXPECT_EQ(CountryNameFromText("BOSNIA (HERZEGOVINA) (387)"), "BOSNIA");
    EXPECT_EQ(CountryNameFromText("FRANCE(33)"), "FRANC");  // no blank: a letter goes instead
    EXPECT_EQ(CountryNameFromText("X(1)"), "");
    EXPECT_EQ(CountryNameFromText(" (44)"), "");
}

TEST(CountryNameTest, EntryWithoutOrStartingWithParenthesisFails) {
    EXPECT_EQ(FailureNumber([] { CountryNameFromText("UNITED STATES"); }), 5);
    EXPECT_EQ(FailureNumber([] { CountryNameFromText(""); }), 5);
    EXPECT_EQ(FailureNumber([] { CountryNameFromText("(1) UNITED STATES"); }), 5);
}

TEST(SplitColourTest, RedIsTheLowestByte) {
    std::int16_t red = -1, green = -1, blue = -1;
    SplitColour(0x0000FF00, red, green, blue);  // the key colour of the artwork
    EXPECT_EQ(red, 0);
    EXPECT_EQ(green, 255);
    EXPECT_EQ(blue, 0);

    SplitColour(0x00C08040, red, green, blue);
    EXPECT_EQ(red, 0x40);
    EXPECT_EQ(green, 0x80);
    EXPECT_EQ(blue, 0xC0);

    SplitColour(0x00FFFFFF, red, green, blue);
    EXPECT_EQ(red, 255);
    EXPECT_EQ(green, 255);
    EXPECT_EQ(blue, 255);

    SplitColour(0, red, green, blue);
    EXPECT_EQ(red, 0);
    EXPECT_EQ(green, 0);
    EXPECT_EQ(blue, 0);

    // Whatever lies above the blue byte stays in blue.
    SplitColour(0x01000203, red, green, blue);
    EXPECT_EQ(red, 3);
    EXPECT_EQ(green, 2);
    EXPECT_EQ(blue, 256);
}

}  // namespace
}  // namespace kw::dialer
