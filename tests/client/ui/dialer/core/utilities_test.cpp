// Path and country helpers at their edges.
#include <gtest/gtest.h>

#include <string>

#include "client/ui/dialer/core/utilities.h"
#include "platform/automation/failure_number.h"

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

TEST(CountryNameTest, TextBeforeTheBlankBeforeTheParenthesisOrFailure5) {
    EXPECT_EQ(CountryNameFromText("UNITED STATES (1)"), "UNITED STATES");
    EXPECT_EQ(CountryNameFromText("BOSNIA (HERZEGOVINA) (387)"), "BOSNIA");
    EXPECT_EQ(CountryNameFromText("FRANCE(33)"), "FRANC");  // no blank: a letter goes instead
    EXPECT_EQ(CountryNameFromText(" (44)"), "");
    for (const char* text : {"UNITED STATES", "", "(1) UNITED STATES"}) {
        EXPECT_EQ(FailureNumber([&] { CountryNameFromText(text); }), 5) << text;
    }
}

}  // namespace
}  // namespace kw::dialer
