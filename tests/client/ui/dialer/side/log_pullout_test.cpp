// The log options, and what a call leaves in the logs and in the Prescriber.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/side/log_pullout.h"
#include "client/ui/dialer/side/rx_pullout.h"
#include "client/ui/dialer/spine/program_fixture.h"
#include "platform/automation/variant.h"

namespace kw::dialer::testing {
namespace {

using automation::Variant;

class LogOptionsTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        StoreUser("anna", "secret");
        ScriptLists();
    }
    LogPullout& Logs() {
        LogPullout& logs = app->Form<LogPullout>();
        logs.Show();
        return logs;
    }
    std::string Stored(const char* name) {
        return UserSetting(name, Variant(std::string{})).ToString();
    }
};

TEST_F(LogOptionsTest, AFreshInstallStoresBothDefaultPathsWithTheLogsOff) {
    StartIdle();
    LogPullout& logs = Logs();
    EXPECT_EQ(Stored(settings::kConnectHistoryFileName), app->InstallDir + "/history.log");
    EXPECT_EQ(Stored(settings::kPrescriberLogFileName), app->InstallDir + "/rx.log");
    EXPECT_EQ(logs.txtHistoryLog.Text(), "history.log");
    EXPECT_EQ(logs.txtRxLog.Text(), "rx.log");
    EXPECT_EQ(logs.ConnectLogCheck.Value(), forms::check::kUnchecked);
    EXPECT_EQ(logs.PrescriberLogCheck.Value(), forms::check::kUnchecked);
    for (forms::Control* c : std::vector<forms::Control*>{&logs.txtHistoryLog, &logs.btnConnectHist,
                                                          &logs.txtRxLog, &logs.btnPrescriberLog}) {
        EXPECT_FALSE(c->Enabled()) << c->Name();
    }
}

TEST_F(LogOptionsTest, ThePrescriberBoxOnAFreshInstallRewritesTheHistorySettingInstead) {
    StartIdle();
    Logs().PrescriberLogCheck.UserClick();
    EXPECT_TRUE(Logs().txtRxLog.Enabled());
    EXPECT_TRUE(UserSetting(settings::kPrescriberLogSetting, Variant()).IsEmpty());
    EXPECT_EQ(UserSetting(settings::kConnectHistorySetting, Variant(std::int32_t{-1})).ToLong(), 0)
        << "the history box's value, not the Prescriber's";
}

TEST_F(LogOptionsTest, TheFileChoiceStartsInTheStoredFolderAndStoresTheChosenPath) {
    SetUserDword(settings::kConnectHistorySetting, 1);
    SetUserString(settings::kConnectHistoryFileName, "/var/logs/history.log");
    StartIdle();
    platform.AnswerNextFileDialog("/home/anna/calls.log");
    Logs().btnConnectHist.UserClick();
    EXPECT_EQ(platform.FileDialogs().back().initialDir, "/var/logs/");
    EXPECT_EQ(platform.FileDialogs().back().flags, 0x282000) << "a new log's name may be typed";
    EXPECT_EQ(Logs().txtHistoryLog.Text(), "calls.log");
    EXPECT_EQ(Stored(settings::kConnectHistoryFileName), "/home/anna/calls.log");
}

TEST_F(LogOptionsTest, CancellingTheFileChoiceChangesNothingAndSaysNothing) {
    SetUserDword(settings::kPrescriberLogSetting, 1);
    StartIdle();
    const std::size_t boxes = platform.Boxes().size();
    platform.AnswerNextFileDialog(std::nullopt);
    Logs().btnPrescriberLog.UserClick();
    EXPECT_EQ(platform.FileDialogs().back().initialDir, app->InstallDir + "/");
    EXPECT_EQ(Stored(settings::kPrescriberLogFileName), app->InstallDir + "/rx.log");
    EXPECT_EQ(Logs().txtRxLog.Text(), "rx.log");
    EXPECT_EQ(platform.Boxes().size(), boxes);
}

TEST_F(LogOptionsTest, TypedTextIsNeverStored) {
    SetUserDword(settings::kConnectHistorySetting, 1);
    StartIdle();
    Logs().txtHistoryLog.UserSetText("typed.log");
    EXPECT_EQ(Stored(settings::kConnectHistoryFileName), app->InstallDir + "/history.log");
}

TEST_F(LogOptionsTest, UncheckingDuringACallLeavesThatCallsLogOpen) {
    LogBothTo();
    StartIdle();
    Win().btnConnect.UserClick();
    Logs().ConnectLogCheck.UserClick();
    engine->RaiseProgressUpdate(1, "Connected");
    EXPECT_NE(Win().ConnectHistoryFile, 0);
    EXPECT_EQ(LogLines("history.log").back().substr(19), ": Connected");
}

TEST_F(LogOptionsTest, ClearDuringACallEmptiesOnlyThePrescriber) {
    LogBothTo();
    StartIdle();
    Win().btnConnect.UserClick();
    engine->RaiseStatusUpdate("Checking the line");
    app->Form<RxPullout>().ToggleRxPullout();
    app->Form<RxPullout>().Command2.UserClick();
    EXPECT_EQ(app->Form<RxPullout>().txtStatus.Text(), "");
    EXPECT_NE(Win().PrescriberLogFile, 0);
    engine->RaiseStatusUpdate("Tunnel healthy");
    EXPECT_EQ(app->Form<RxPullout>().txtStatus.Text(), "Tunnel healthy\r\n");
    EXPECT_EQ(LogLines("rx.log").size(), 3u);
}

TEST_F(LogOptionsTest, BothLogFilesArePrivateToTheUser) {
    LogBothTo();
    StartIdle();
    Win().btnConnect.UserClick();
    engine->RaiseStatusUpdate("Checking the line");
    for (const char* name : {"history.log", "rx.log"}) {
        struct stat st {};
        ASSERT_EQ(::stat((dir / name).c_str(), &st), 0) << name;
        EXPECT_EQ(st.st_mode & 0777, 0600u) << name;
    }
}

}  // namespace
}  // namespace kw::dialer::testing
