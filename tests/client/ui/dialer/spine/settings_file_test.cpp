// A settings file the program cannot use is named once, with the reason, before the logon loop.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

#include "client/ui/dialer/engine/frm_login.h"
#include "program_fixture.h"

namespace kw::dialer::testing {
namespace {

namespace fs = std::filesystem;

class SettingsFileTest : public ProgramTest {
  protected:
    // Starts with the user's hive at `hive`, cancelling the login; gives what went to stderr.
    std::string StartWithHive(const fs::path& hive) {
        registry::Configure({hive.string(), (dir / "system.reg").string()});
        ScriptLists();
        platform.AnswerBoxes([](const headless::BoxRecord&) { return forms::mb::kResultOk; });
        platform.AnswerNextModal(
            "frmLogin", [this](forms::Form&) { app->Form<frmLogin>().cmdCancel.UserClick(); });
        ::testing::internal::CaptureStderr();
        Start();
        return ::testing::internal::GetCapturedStderr();
    }
    int BoxesNaming(const std::string& text) const {
        int count = 0;
        for (const auto& box : platform.Boxes()) {
            count += box.text.find(text) != std::string::npos ? 1 : 0;
        }
        return count;
    }
};

struct Unusable {
    const char* name;
    const char* hive;  // under the test's folder: "folder.reg/", "plain", "locked.reg" (mode 0)
    const char* reason;
};

class UnusableSettingsTest : public SettingsFileTest,
                             public ::testing::WithParamInterface<Unusable> {};

TEST_P(UnusableSettingsTest, IsNamedOnceWithTheReasonAndTheLogonLoopGoesOn) {
    if (std::string(GetParam().name) == "Unreadable" && ::geteuid() == 0) {
        GTEST_SKIP() << "root reads any file";
    }
    std::ofstream(dir / "plain") << "a file where a folder should be\n";
    std::ofstream(dir / "locked.reg") << "WINE REGISTRY Version 2\n";
    fs::permissions(dir / "locked.reg", fs::perms::none);
    fs::create_directories(dir / "folder.reg");
    const fs::path hive = dir / GetParam().hive;
    const std::string err = StartWithHive(hive);
    EXPECT_NE(err.find(hive.string()), std::string::npos) << err;
    EXPECT_NE(err.find(GetParam().reason), std::string::npos) << err;
    ASSERT_FALSE(platform.Boxes().empty());
    const auto& first = platform.Boxes().front();
    EXPECT_NE(first.text.find(hive.string()), std::string::npos) << first.text;
    EXPECT_NE(first.text.find(GetParam().reason), std::string::npos) << first.text;
    EXPECT_EQ(BoxesNaming(hive.string()), 1) << "said once";
    EXPECT_EQ(platform.ModalsShown(), std::vector<std::string>{"frmLogin"})
        << "the logon loop goes on";
}

INSTANTIATE_TEST_SUITE_P(Hives, UnusableSettingsTest,
                         ::testing::Values(Unusable{"Folder", "folder.reg", "it is a folder"},
                                           Unusable{"FileAsFolder", "plain/user.reg",
                                                    "a folder on its path is a file"},
                                           Unusable{"Unreadable", "locked.reg", "cannot be read"}),
                         [](const auto& param) { return std::string(param.param.name); });

TEST_F(SettingsFileTest, AUsableFileSaysNothing) {
    const std::string err = StartWithHive(dir / "user.reg");
    EXPECT_EQ(BoxesNaming("settings file"), 0);
    EXPECT_EQ(err.find("settings file"), std::string::npos) << err;
}

}  // namespace
}  // namespace kw::dialer::testing
