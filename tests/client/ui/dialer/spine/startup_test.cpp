// Start-up and shut-down as the user meets them: the logon loop, a second instance, a load that
// fails, a settings file that cannot be used, and a close whose Logoff keeps failing.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <functional>

#include "client/ui/dialer/engine/frm_login.h"
#include "program_fixture.h"

namespace kw::dialer::testing {
namespace {

using automation::Failure;
using automation::Variant;
using headless::ProcessEnded;
namespace fs = std::filesystem;

constexpr const char* kStillLoading =
    "The Kestrelway is still in the process of loading. Please wait a few moments and try to exit "
    "again";

// An engine that answers the lists.
class StartupTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        ScriptLists();
    }
    // The login dialog's next showing, answered by the user.
    void WhenLoginShows(std::function<void(frmLogin&)> user) {
        platform.AnswerNextModal("frmLogin",
                                 [this, user](forms::Form&) { user(app->Form<frmLogin>()); });
    }
};

TEST_F(StartupTest, TheFirstDialListIsAskedForTheChosenPairAndConnectWaitsForIt) {
    StoreUser("anna", "secret");
    ASSERT_TRUE(Start());
    ASSERT_EQ(engine->CountOf("BuildDialList"), 1);
    EXPECT_EQ(engine->CallsTo("BuildDialList")[0].args,
              (std::vector<Variant>{Variant("Home"), Variant("Corporate")}));
    EXPECT_EQ(Win().lblStatus.Caption(), "Getting dial list please wait..");
    EXPECT_FALSE(Win().btnConnect.Enabled());
}

TEST_F(StartupTest, RefusedStoredPasswordShowsTheLoginAgainEvenAfterCancel) {
    StoreUser("anna", "stale");
    engine->Then("Logon", Variant(false)).Then("Logon", Variant(false));
    WhenLoginShows([](frmLogin& login) { login.cmdCancel.UserClick(); });
    WhenLoginShows([](frmLogin& login) {
        login.txtPassword.UserSetText("fresh");
        login.cmdOK.UserClick();
    });
    ASSERT_TRUE(Start());
    EXPECT_EQ(platform.ModalsShown(), (std::vector<std::string>{"frmLogin", "frmLogin"}));
    const auto logons = engine->CallsTo("Logon");
    ASSERT_EQ(logons.size(), 3u);
    EXPECT_EQ(logons[0].args[0].ToString(), "anna") << "the stored pair is tried first";
    EXPECT_EQ(logons[1].args[1].ToString(), "stale") << "Cancel leaves the pair as it was";
    EXPECT_EQ(logons[2].args[1].ToString(), "fresh");
    EXPECT_EQ(engine->CountOf("GetPhoneList"), 1);
}

TEST_F(StartupTest, NoStoredUserAndCancelEndsTheProcessBeforeAnyListIsRead) {
    platform.SetLoggedOnUser("traveller");
    std::string offered;
    WhenLoginShows([&](frmLogin& login) {
        offered = login.txtUserName.Text();
        login.cmdCancel.UserClick();
    });
    EXPECT_FALSE(Start());
    EXPECT_EQ(offered, "traveller") << "the desktop's user is offered";
    EXPECT_TRUE(engine->Calls().empty()) << "no logon, no list";
}

TEST_F(StartupTest, NoStoredUserAndOkSavesThePairThroughTheEngineAndLogsOn) {
    WhenLoginShows([](frmLogin& login) {
        login.txtUserName.UserSetText("bob");
        login.txtPassword.UserSetText("pw");
        login.cmdOK.UserClick();
    });
    ASSERT_TRUE(Start());
    EXPECT_EQ(engine->CountOf("SaveUser"), 2) << "by the dialog and by the loop";
    ASSERT_EQ(engine->CountOf("Logon"), 1);
    EXPECT_EQ(engine->CallsTo("Logon")[0].args[0].ToString(), "bob");
}

TEST_F(StartupTest, FailedLoadAnswersEveryCloseWithTheLoadingMessage) {
    StoreUser("anna", "secret");
    engine->ThenFail("GetPhoneList", Failure(1019, "no device"));
    platform.AnswerBoxes([](const headless::BoxRecord&) { return forms::mb::kResultOk; });
    ASSERT_TRUE(Start());
    MainWin& win = Win();
    platform.ClearBoxes();
    win.btnCloseWin.UserClick();
    EXPECT_FALSE(win.UserClose());
    EXPECT_EQ(CountBoxesWithText(kStillLoading), 2);
    EXPECT_EQ(platform.Boxes().back().flags, forms::mb::kOkOnly | forms::mb::kSetForeground);
    EXPECT_TRUE(win.IsLoaded());
    EXPECT_EQ(engine->CountOf("Logoff"), 0);
}

TEST_F(StartupTest, SecondInstanceRestoresTheFirstAndMakesNoEngine) {
    platform.PreviousInstance() =
        headless::ForeignWindow{"ThunderRT5Form", "Kestrelway", forms::show::kMinimized};
    EXPECT_FALSE(Start());
    EXPECT_EQ(platform.PreviousInstance()->showState, forms::show::kNormal);
    EXPECT_EQ(enginesMade, 0);
    EXPECT_FALSE(app->Forms().IsLoaded<MainWin>());
}

TEST_F(StartupTest, LogoffFailingTenTimesDelaysTheCloseByTenSecondsAndNoMore) {
    StoreUser("anna", "secret");
    engine->Default("Logoff", Variant(false));
    StartIdle();
    EXPECT_THROW(Win().btnCloseWin.UserClick(), ProcessEnded);
    EXPECT_EQ(engine->CountOf("Logoff"), 10);
    EXPECT_EQ(platform.SleptMs(), 10000);
    EXPECT_EQ(platform.EndedWith(), 0);
}

TEST_F(StartupTest, CloseSavesTheLastLocationForTheNextStart) {
    StoreUser("anna", "secret");
    StartIdle();
    Win().cmboFrom.UserSelect(1);
    engine->RaiseGetGenericISPList("", Variant());
    EXPECT_THROW(Win().btnCloseWin.UserClick(), ProcessEnded);
    app = std::make_unique<Application>(platform);  // the next start comes back to the hotel
    ASSERT_TRUE(Start());
    EXPECT_EQ(Win().cmboFrom.Text(), "Hotel");
}

TEST_F(StartupTest, LastLocationBeyondTheListSelectsNothing) {
    StoreUser("anna", "secret");
    SetUserDword("LastSelectedLocation", 7);
    ASSERT_TRUE(Start());
    EXPECT_EQ(Win().cmboFrom.ListIndex(), -1);
    EXPECT_EQ(engine->CountOf("BuildDialList"), 0);
}

// A settings file the program cannot use is named once, with the reason, before the logon loop.
// Each case: its name, the hive under the test's folder ("folder.reg" a folder, "plain" a file,
// "locked.reg" of mode 0), and the reason given.
using UnusableSettingsTest = Cases<StartupTest, std::string, std::string, std::string>;

TEST_P(UnusableSettingsTest, IsNamedOnceWithTheReasonAndTheLogonLoopGoesOn) {
    const auto& [name, file, reason] = GetParam();
    if (name == "Unreadable" && ::geteuid() == 0) {
        GTEST_SKIP() << "root reads any file";
    }
    std::ofstream(dir / "plain") << "a file where a folder should be\n";
    std::ofstream(dir / "locked.reg") << "WINE REGISTRY Version 2\n";
    fs::permissions(dir / "locked.reg", fs::perms::none);
    fs::create_directories(dir / "folder.reg");
    const fs::path hive = dir / file;
    registry::Configure({hive.string(), (dir / "system.reg").string()});
    platform.AnswerBoxes([](const headless::BoxRecord&) { return forms::mb::kResultOk; });
    WhenLoginShows([](frmLogin& login) { login.cmdCancel.UserClick(); });
    ::testing::internal::CaptureStderr();
    Start();
    const std::string err = ::testing::internal::GetCapturedStderr();
    for (const std::string& told :
         {err, platform.Boxes().empty() ? "" : platform.Boxes()[0].text}) {
        EXPECT_NE(told.find(hive.string()), std::string::npos) << told;
        EXPECT_NE(told.find(reason), std::string::npos) << told;
    }
    int naming = 0;
    for (const auto& box : platform.Boxes()) {
        naming += box.text.find(hive.string()) != std::string::npos ? 1 : 0;
    }
    EXPECT_EQ(naming, 1) << "said once";
    EXPECT_EQ(CountBoxesWithText("Error creating registry keys"), 1)
        << "and the user key that cannot be made, once too";
    EXPECT_EQ(platform.ModalsShown(), std::vector<std::string>{"frmLogin"})
        << "the logon loop goes on";
}

INSTANTIATE_TEST_SUITE_P(Hives, UnusableSettingsTest,
                         ::testing::Values(std::tuple{"Folder", "folder.reg", "it is a folder"},
                                           std::tuple{"FileAsFolder", "plain/user.reg",
                                                      "a folder on its path is a file"},
                                           std::tuple{"Unreadable", "locked.reg",
                                                      "cannot be read"}),
                         [](const auto& param) { return std::get<0>(param.param); });

}  // namespace
}  // namespace kw::dialer::testing
