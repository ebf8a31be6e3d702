// A whole call on the headless platform with the engine simulator: start with a stored user,
// connect, watch the lights, take statistics, disconnect, and close.
#include <gtest/gtest.h>

#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/engine/frm_isp_login.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "client/ui/dialer/side/rx_pullout.h"
#include "dravlink/simulator.h"
#include "program_fixture.h"

namespace kw::dialer::testing {
namespace {

class SimulatedCallTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        UseEngine([this](const EngineContext& context) {
            dravlink::Options options;
            options.dataDir = dir / "dravlink";
            options.sampleDir = std::filesystem::path(KW_SOURCE_DIR) / "assets" / "dravlink";
            return std::make_shared<dravlink::Simulator>(context.platform, options);
        });
    }

    // Runs the clock until the condition holds, a virtual minute at most.
    template <class Condition>
    bool RunUntil(Condition done) {
        for (int ms = 0; ms < 60000 && !done(); ms += 100) {
            platform.Advance(100);
        }
        return done();
    }
};

TEST_F(SimulatedCallTest, AWholeCallFromStartToClose) {
    StoreUser("anna", "secret");
    SetUserDword(settings::kConnectHistorySetting, 1);
    SetUserString(settings::kConnectHistoryFileName, (dir / "history.log").string());
    ASSERT_TRUE(Start());
    MainWin& win = Win();
    ASSERT_FALSE(win.IsLoading);
    ASSERT_GE(win.cmboTo.ListCount(), 2);
    ASSERT_GE(win.cmboFrom.ListCount(), 1);
    ASSERT_TRUE(RunUntil([&] { return !win.IsGettingDialList; })) << "the dial list arrives";
    ASSERT_TRUE(win.btnConnect.Enabled());

    // A destination that asks nothing during its call.
    int lab = -1;
    for (int i = 0; i < win.cmboTo.ListCount(); ++i) {
        if (win.cmboTo.List(i) == "Engineering Lab") {
            lab = i;
        }
    }
    ASSERT_GE(lab, 0);
    win.cmboTo.UserSelect(lab);

    DisplayRecorder recorder;
    win.AddObserver(&recorder);
    BusListener codes;
    for (int id : {1, 32, 101, 102, 103, 104, 105, 201, 202, 231, 232, 132, 31}) {
        app->EventManagerObject.registerForEvent(id, &codes);
    }
    win.btnConnect.UserClick();
    ASSERT_TRUE(win.IsConnecting);
    ASSERT_TRUE(RunUntil([&] { return win.IsConnected; })) << win.lblStatus.Caption();
    EXPECT_EQ(win.lblConnect.Caption(), "Disconnect");
    EXPECT_TRUE(win.imgLogoOn.Visible());

    // The lights came on in the order their codes came.
    std::vector<std::string> expectedLights;
    for (std::int32_t id : codes.heard) {
        switch (id) {
            case 102:
                expectedLights.push_back("+imgModemDetected");
                break;
            case 103:
                expectedLights.push_back("+imgPhoneDialing");
                break;
            case 104:
                expectedLights.push_back("+imgConnectingISP");
                break;
            case 105:
                expectedLights.push_back("+imgAuthorizingISP");
                break;
            default:
                break;
        }
    }
    std::vector<std::string> lit;
    for (const auto& change : recorder.lights) {
        if (change == "+imgModemDetected" || change == "+imgPhoneDialing" ||
            change == "+imgConnectingISP" || change == "+imgAuthorizingISP") {
            lit.push_back(change);
        }
    }
    EXPECT_EQ(lit, expectedLights);
    EXPECT_EQ(codes.heard.back(), 1);

    // Statistics come once a second while the call stands.
    PerfPulldown& perf = app->Form<PerfPulldown>();
    EXPECT_TRUE(perf.Monitoring());
    const int before = perf.Samples();
    platform.Advance(5000);
    EXPECT_GE(perf.Samples() - before, 4);
    EXPECT_LE(perf.Samples() - before, 6);

    ASSERT_TRUE(win.btnConnect.AcceptsInput()) << win.btnConnect.Enabled() << win.Enabled();
    win.btnConnect.UserClick();
    ASSERT_TRUE(RunUntil([&] { return !win.IsConnected && !win.IsConnecting; }))
        << ::testing::PrintToString(codes.heard) << " " << win.lblStatus.Caption();
    EXPECT_EQ(codes.heard.back(), 32);
    EXPECT_EQ(win.lblConnect.Caption(), "Connect");
    EXPECT_FALSE(win.imgLogoOn.Visible());
    EXPECT_FALSE(perf.Monitoring());

    // The history holds the banner and one line per code, 207 aside.
    const std::string history = ReadFile(dir / "history.log");
    int lines = 0;
    for (std::size_t at = 0; (at = history.find("\r\n", at)) != std::string::npos; at += 2) {
        ++lines;
    }
    int codesWritten = 0;
    for (std::int32_t id : codes.heard) {
        codesWritten += id != 207 ? 1 : 0;
    }
    EXPECT_EQ(history.substr(19, 70), std::string(70, '*'));
    EXPECT_EQ(lines, 1 + codesWritten);

    win.RemoveObserver(&recorder);
    for (int id : {1, 32, 101, 102, 103, 104, 105, 201, 202, 231, 232, 132, 31}) {
        app->EventManagerObject.deregisterForEvent(id, &codes);
    }
    EXPECT_THROW(win.btnCloseWin.UserClick(), headless::ProcessEnded);
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
    std::shared_ptr<dravlink::Simulator> simulator;
    UseEngine([this, &simulator](const EngineContext& context) {
        dravlink::Options options;
        options.dataDir = dir / "dravlink";
        options.sampleDir = std::filesystem::path(KW_SOURCE_DIR) / "assets" / "dravlink";
        options.scenario = dravlink::scenario::kIspPassword;
        simulator = std::make_shared<dravlink::Simulator>(context.platform, options);
        return simulator;
    });
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
