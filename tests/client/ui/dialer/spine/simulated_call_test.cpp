// A whole call on the headless platform with the engine simulator: start with a stored user,
// connect, watch the lights, take statistics, disconnect, and close.
#include <gtest/gtest.h>

#include "client/ui/dialer/engine/frm_isp_login.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "client/ui/dialer/side/rx_pullout.h"
#include "program_fixture.h"

namespace kw::dialer::testing {
namespace {

class SimulatedCallTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        UseSimulator();
    }
};

// A stored user calls the lab, a destination that asks nothing during its call, and the call
// comes up.
class LabCallTest : public SimulatedCallTest {
  protected:
    void SetUp() override {
        SimulatedCallTest::SetUp();
        StoreUser("anna", "secret");
        ASSERT_TRUE(Start());
        MainWin& win = Win();
        ASSERT_TRUE(RunUntil([&] { return !win.IsGettingDialList; })) << "the dial list arrives";
        for (int i = 0; i < win.cmboTo.ListCount(); ++i) {
            if (win.cmboTo.List(i) == "Engineering Lab") {
                win.cmboTo.UserSelect(i);
            }
        }
        ASSERT_EQ(win.cmboTo.Text(), "Engineering Lab");
        for (int id : {1, 31, 32, 101, 102, 103, 104, 105, 132, 201, 202, 207, 231, 232}) {
            app->EventManagerObject.registerForEvent(id, &codes);
        }
        win.btnConnect.UserClick();
        ASSERT_TRUE(RunUntil([&] { return win.IsConnected; })) << win.lblStatus.Caption();
    }
    void Disconnect() {
        MainWin& win = Win();
        ASSERT_TRUE(win.btnConnect.AcceptsInput());
        win.btnConnect.UserClick();
        ASSERT_TRUE(RunUntil([&] { return !win.IsConnected && !win.IsConnecting; }))
            << ::testing::PrintToString(codes.heard) << " " << win.lblStatus.Caption();
    }

    BusListener codes;
};

TEST_F(LabCallTest, TheCallEndsOnCode1WithTheButtonAtDisconnect) {
    EXPECT_EQ(codes.heard.back(), 1);
    EXPECT_EQ(Win().lblConnect.Caption(), "Disconnect");
    EXPECT_TRUE(Win().imgLogoOn.Visible());
}

TEST_F(LabCallTest, StatisticsComeOnceASecondWhileTheCallStands) {
    PerfPulldown& perf = app->Form<PerfPulldown>();
    EXPECT_TRUE(perf.Monitoring());
    const int before = perf.Samples();
    platform.Advance(5000);
    EXPECT_GE(perf.Samples() - before, 4);
    EXPECT_LE(perf.Samples() - before, 6);
}

TEST_F(LabCallTest, DisconnectEndsOnCode32WithTheWindowAtRest) {
    Disconnect();
    EXPECT_EQ(codes.heard.back(), 32);
    EXPECT_EQ(Win().lblConnect.Caption(), "Connect");
    EXPECT_FALSE(Win().imgLogoOn.Visible());
    EXPECT_FALSE(app->Form<PerfPulldown>().Monitoring());
}

TEST_F(LabCallTest, CloseAfterTheCallEndsTheProcessAndUnloadsTheWindow) {
    Disconnect();
    EXPECT_THROW(Win().btnCloseWin.UserClick(), headless::ProcessEnded);
    EXPECT_EQ(platform.EndedWith(), 0);
    EXPECT_FALSE(app->Forms().IsLoaded<MainWin>());
}

}  // namespace
}  // namespace kw::dialer::testing

namespace kw::dialer::testing {
namespace {

// Hands every event on to the window and counts the statistics that pass.
class CountingSink : public DravlinkEvents {
  public:
    explicit CountingSink(DravlinkEvents& window) : window_(window) {}
    int statistics = 0;
    void CHXferUpdate(automation::Variant& a, automation::Variant& b) override {
        window_.CHXferUpdate(a, b);
    }
    void ErrorEvent(std::string& m) override { window_.ErrorEvent(m); }
    void GetConnectionStatistics(automation::Variant& isp, automation::Variant& vpn) override {
        ++statistics;
        window_.GetConnectionStatistics(isp, vpn);
    }
    void GetGenericISPList(std::string& m, automation::Variant& l) override {
        window_.GetGenericISPList(m, l);
    }
    void GetUserInfo(std::string& p, automation::Variant& c, std::string& a) override {
        window_.GetUserInfo(p, c, a);
    }
    void GetUserInput(std::string& p, std::string& d, std::string& a) override {
        window_.GetUserInput(p, d, a);
    }
    void GetUsernamePassword(std::string& p, std::string& u) override {
        window_.GetUsernamePassword(p, u);
    }
    void GetUserOk(std::string& m) override { window_.GetUserOk(m); }
    void GetUserYesNo(std::string& q, bool& a) override { window_.GetUserYesNo(q, a); }
    void GetUserNowLaterNever(std::string& q, std::string& a) override {
        window_.GetUserNowLaterNever(q, a);
    }
    void DravDebug(std::string& t) override { window_.DravDebug(t); }
    void ProgressUpdate(std::int16_t c, std::string& t) override { window_.ProgressUpdate(c, t); }
    void StatusUpdate(std::string& t) override { window_.StatusUpdate(t); }

  private:
    DravlinkEvents& window_;
};

TEST_F(SimulatedCallTest, AnIspPasswordAskedDuringTheCallWhileStatisticsKeepComing) {
    UseSimulator(dravlink::scenario::kIspPassword);
    StoreUser("anna", "secret");
    ASSERT_TRUE(Start());
    MainWin& win = Win();
    ASSERT_TRUE(RunUntil([&] { return !win.IsGettingDialList; }));
    CountingSink sink(win.l_DravlinkObj);
    simulator->Advise(&sink);

    int duringDialog = 0;
    platform.AnswerNextModal("frmISPLogin", [&](forms::Form&) {
        frmISPLogin& dialog = app->Form<frmISPLogin>();
        const int before = sink.statistics;
        platform.Advance(4000);  // the user takes four seconds to type
        duringDialog = sink.statistics - before;
        EXPECT_FALSE(win.IsConnected) << "the call waits for the answer";
        dialog.txtUserName.UserSetText("anna@bluewave");
        dialog.txtPassword.UserSetText("n3w");
        dialog.cmdOK.UserClick();
    });
    win.btnConnect.UserClick();
    ASSERT_TRUE(RunUntil([&] { return win.IsConnected; })) << win.lblStatus.Caption();
    EXPECT_EQ(platform.ModalsShown().back(), "frmISPLogin");
    EXPECT_GE(duringDialog, 3) << "statistics kept arriving while the dialog was open";
    EXPECT_NE(app->Form<RxPullout>().txtStatus.Text().find("accepted the login for anna@bluewave"),
              std::string::npos);
    simulator->Advise(&win.l_DravlinkObj);
}

}  // namespace
}  // namespace kw::dialer::testing
