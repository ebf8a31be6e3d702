// Whole calls on the headless platform with the engine simulator: start with a stored user,
// connect, answer the engine, disconnect.
#include <gtest/gtest.h>

#include "client/ui/dialer/engine/frm_isp_login.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "client/ui/dialer/side/rx_pullout.h"
#include "program_fixture.h"

namespace kw::dialer::testing {
namespace {

class SimulatedCallTest : public ProgramTest {
  protected:
    // A stored user started on the simulator, the dial list arrived, connected to the lab: a
    // destination that asks nothing during its call unless the scenario does.
    void StartAndConnect(const std::string& scenario) {
        UseSimulator(scenario);
        StoreUser("anna", "secret");
        ASSERT_TRUE(Start());
        MainWin& win = Win();
        ASSERT_TRUE(RunUntil([&] { return !win.IsGettingDialList; })) << "the dial list arrives";
        ASSERT_NO_FATAL_FAILURE(Choose(win.cmboTo, "Engineering Lab"));
        win.btnConnect.UserClick();
        ASSERT_TRUE(RunUntil([&] { return win.IsConnected; })) << win.lblStatus.Caption();
    }
    BusListener codes;  // outlives the program: never deregisters
};

TEST_F(SimulatedCallTest, DisconnectEndsOnCode32WithTheWindowAtRest) {
    StartAndConnect("");
    MainWin& win = Win();
    EXPECT_TRUE(app->Form<PerfPulldown>().Monitoring());
    app->EventManagerObject.registerForEvent(32, &codes);
    win.btnConnect.UserClick();
    ASSERT_TRUE(RunUntil([&] { return !win.IsConnected && !win.IsConnecting; }))
        << win.lblStatus.Caption();
    EXPECT_EQ(codes.heard, std::vector<std::int32_t>{32});
    EXPECT_EQ(win.lblConnect.Caption(), "Connect");
    EXPECT_FALSE(win.imgLogoOn.Visible());
    EXPECT_FALSE(app->Form<PerfPulldown>().Monitoring());
}

// The dialog's loop keeps the engine's timers running while the user types: the call waits.
TEST_F(SimulatedCallTest, AnIspPasswordAskedDuringTheCallIsTypedAndTheCallComesUp) {
    platform.AnswerNextModal("frmISPLogin", [&](forms::Form&) {
        frmISPLogin& dialog = app->Form<frmISPLogin>();
        platform.Advance(4000);  // the user takes four seconds to type
        EXPECT_FALSE(Win().IsConnected) << "the call waits for the answer";
        dialog.txtUserName.UserSetText("anna@bluewave");
        dialog.txtPassword.UserSetText("n3w");
        dialog.cmdOK.UserClick();
    });
    StartAndConnect(dravlink::scenario::kIspPassword);
    EXPECT_EQ(platform.ModalsShown().back(), "frmISPLogin");
    EXPECT_NE(app->Form<RxPullout>().txtStatus.Text().find("accepted the login for anna@bluewave"),
              std::string::npos);
}

}  // namespace
}  // namespace kw::dialer::testing
