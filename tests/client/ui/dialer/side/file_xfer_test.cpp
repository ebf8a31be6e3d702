// The call-home transfer window as the engine's reports reach it, and the splash form.
#include <gtest/gtest.h>

#include "client/ui/dialer/side/frm_file_xfer.h"
#include "client/ui/dialer/side/frm_splash.h"
#include "client/ui/dialer/spine/program_fixture.h"
#include "platform/automation/safe_array.h"

namespace kw::dialer::testing {
namespace {

using automation::SafeArray;
using automation::Variant;

Variant Report(const std::string& path, std::int32_t file, std::int32_t files, double percent) {
    SafeArray a = SafeArray::OneDim(0, 8);
    a.Set(0, Variant(path));
    a.Set(1, Variant(file));
    a.Set(2, Variant(files));
    a.Set(3, Variant(std::int32_t{2048}));
    a.Set(4, Variant(std::int32_t{40960}));
    a.Set(5, Variant("18 seconds"));
    a.Set(6, Variant("Receiving"));
    a.Set(7, Variant(percent));
    a.Set(8, Variant("2 KB/sec"));
    return Variant(std::move(a));
}

class FileXferTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        StoreUser("anna", "secret");
        ScriptLists();
        StartIdle();
    }
    frmFileXfer& Xfer() { return app->Form<frmFileXfer>(); }
};

struct EndCase {
    double percent;
    std::int32_t file;
    std::int32_t files;
    bool staysOpen;
};

TEST_F(FileXferTest, OnlyTheEndOfTheLastFileHidesTheWindow) {
    for (const EndCase& c :
         {EndCase{100, 1, 3, true}, EndCase{100, 3, 3, false}, EndCase{99.9, 3, 3, true}}) {
        Xfer().Hide();
        engine->RaiseCHXferUpdate(Report("\\\\home\\a.dat", c.file, c.files, c.percent));
        EXPECT_EQ(Xfer().Visible(), c.staysOpen) << c.percent << " " << c.file << "/" << c.files;
    }
}

TEST_F(FileXferTest, AReportFillsEveryLabelAsItCame) {
    engine->RaiseCHXferUpdate(Report("\\\\home\\outbox\\a.dat", 1, 2, 5));
    frmFileXfer& x = Xfer();
    EXPECT_EQ(x.Caption(), "Call Home File Transfer");
    EXPECT_EQ(x.lblOneOf.Caption(), "1 of 2");
    EXPECT_EQ(x.lblFileName.Caption(), "a.dat");
    EXPECT_EQ(x.lblFileName.ToolTipText(), "\\\\home\\outbox\\a.dat");
    EXPECT_EQ(x.lblBytesCopied.Caption(), "(2048 bytes copied)");
    EXPECT_EQ(x.lblFileSize.Caption(), "40960 bytes");
    EXPECT_EQ(x.lblTimeLeft.Caption(), "18 seconds");
    EXPECT_EQ(x.lblPercent.Caption(), "5%");
    EXPECT_EQ(x.lblXferRate.Caption(), "2 KB/sec");
    EXPECT_DOUBLE_EQ(x.pbXferProgress.Value(), 5);
    EXPECT_EQ(x.xferElement6, "Receiving");
}

TEST_F(FileXferTest, AShortReportFails) {
    SafeArray a = SafeArray::OneDim(0, 7);
    for (std::int32_t i = 0; i <= 7; ++i) {
        a.Set(i, Variant(i));
    }
    EXPECT_THROW(Xfer().updateInfo(Variant(std::move(a))), automation::Failure);
}

TEST_F(FileXferTest, EachCancelAsksTheEngineOnceAndLeavesTheWindow) {
    engine->RaiseCHXferUpdate(Report("a.dat", 1, 2, 40));
    Xfer().btnCancel.UserClick();
    Xfer().btnCancel.UserClick();
    EXPECT_EQ(engine->CountOf("CancelFileTransfer"), 2);
    EXPECT_TRUE(Xfer().Visible());
    EXPECT_EQ(Xfer().lblPercent.Caption(), "40%");
}

TEST_F(FileXferTest, TheCountdownStandsStillUntilSomethingStartsIt) {
    engine->RaiseCHXferUpdate(Report("a.dat", 1, 2, 40));
    platform.Advance(5000);
    EXPECT_FALSE(Xfer().Timer1.TimerEnabled());
    EXPECT_EQ(Xfer().lblTimeLeft.Caption(), "18 seconds");
}

TEST_F(FileXferTest, TheSplashShowsTheProgramsVersionAndTitle) {
    app->Major = 2;
    app->Minor = 1;
    app->Revision = 14;
    frmSplash& splash = app->Form<frmSplash>();
    EXPECT_EQ(splash.lblVersion.Caption(), "Version 2.1.14");
    EXPECT_EQ(splash.lblProductName.Caption(), app->Title);
}

TEST_F(FileXferTest, TheSplashGoesAtAnyKeyAndAClickOnItsFrame) {
    for (int key : {int{'a'}, 13, 27, int{' '}}) {
        frmSplash& splash = app->Form<frmSplash>();
        splash.Show();
        splash.UserKeyPress(key);
        EXPECT_FALSE(splash.IsLoaded()) << key;
    }
    frmSplash& splash = app->Form<frmSplash>();
    splash.Show();
    splash.Frame1.UserClick();
    EXPECT_FALSE(splash.IsLoaded());
}

}  // namespace
}  // namespace kw::dialer::testing
