// At a screen density other than the design's, every control still stands on its place on the
// artwork: the form is laid out at the density and ScaleForm brings it back to the artwork's
// pixels, the lights keeping the size of their pictures.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "client/ui/dialer/shell/artwork_layout.h"
#include "window_fixture.h"

namespace kw::dialer::testing {
namespace {

using layout::LayoutRect;

class DensityTest : public WindowFamilyTest, public ::testing::WithParamInterface<int> {
  protected:
    void SetUp() override {
        // Before the program starts, as the screen's density is known before any form loads.
        platform.SetTwipsPerPixel(GetParam());
        WindowFamilyTest::SetUp();
    }

    static const forms::Control& Named(const forms::Form& form, const std::string& name) {
        for (const forms::Control* c : form.Controls()) {
            if (c->Name() == name) {
                return *c;
            }
        }
        throw std::runtime_error(name + " is not on " + form.Name());
    }

    static void ExpectAt(const forms::Form& form,
                         const std::vector<std::pair<std::string, LayoutRect>>& places) {
        for (const auto& [name, at] : places) {
            const forms::Control& c = Named(form, name);
            EXPECT_EQ((std::vector<int>{c.Left(), c.Top(), c.Width(), c.Height()}),
                      (std::vector<int>{at.x, at.y, at.w, at.h}))
                << form.Name() << "." << name;
        }
    }
};

TEST_P(DensityTest, EveryControlOfTheMainWindowStandsOnItsArtworkPlace) {
    namespace at = layout::mainwin;
    const MainWin& win = Win();
    ExpectAt(win, {{"imgLogoOn", at::imgLogoOn},
                   {"btnMinimize", at::btnMinimize},
                   {"lblMinButton", at::lblMinButton},
                   {"btnHelp", at::btnHelp},
                   {"lblHelpButton", at::lblHelpButton},
                   {"btnCloseWin", at::btnCloseWin},
                   {"lblCloseButton", at::lblCloseButton},
                   {"lblFrom", at::lblFrom},
                   {"cmboFrom", at::cmboFrom},
                   {"btnFromPullout", at::btnFromPullout},
                   {"lblTo", at::lblTo},
                   {"cmboTo", at::cmboTo},
                   {"btnToPullout", at::btnToPullout},
                   {"imgModemDetected", at::imgModemDetected},
                   {"imgPhoneDialing", at::imgPhoneDialing},
                   {"imgConnectingISP", at::imgConnectingISP},
                   {"imgAuthorizingISP", at::imgAuthorizingISP},
                   {"imgCreatingTunnel", at::imgCreatingTunnel},
                   {"imgAuthorizingTunnel", at::imgAuthorizingTunnel},
                   {"btnRxPullout", at::btnRxPullout},
                   {"btnConnect", at::btnConnect},
                   {"lblConnect", at::lblConnect},
                   {"imgConnectLight", at::imgConnectLight},
                   {"Label4", at::Label4},
                   {"btnMorePullout", at::btnMorePullout},
                   {"lblStatus", at::lblStatus}});
    // The window keeps the artwork's size inside the frame its shape cuts away.
    EXPECT_EQ(win.Width(), at::kWidth + 2 * FrameWidth());
    EXPECT_EQ(win.Height(), at::kHeight + FrameHeight() + FrameWidth());
}

TEST_P(DensityTest, APulloutAndTheControlsOfItsFrameStandOnTheirArtworkPlaces) {
    namespace at = layout::prefpullout;
    Win().btnMorePullout.UserClick();
    Get<MorePullout>().btnPref.UserClick();
    const PrefPullout& pref = Get<PrefPullout>();
    ASSERT_TRUE(pref.Visible());
    EXPECT_EQ(pref.Width(), layout::panel::kWidth);
    EXPECT_EQ(pref.Height(), layout::panel::kHeight);
    auto inFrame = [](const LayoutRect& r) {
        return LayoutRect{r.x - at::frCallingCard.x, r.y - at::frCallingCard.y, r.w, r.h};
    };
    ExpectAt(pref, {{"Image1", at::Image1},
                    {"Label1", at::Label1},
                    {"frCallingCard", at::frCallingCard},
                    {"Label3", inFrame(at::Label3)},
                    {"cmboCallingCards", inFrame(at::cmboCallingCards)},
                    {"btnSave", inFrame(at::btnSave)},
                    {"Label2", inFrame(at::Label2)},
                    {"txtCardNumber", inFrame(at::txtCardNumber)},
                    {"chkConfirmDial", at::chkConfirmDial},
                    {"chkAutoDial", at::chkAutoDial},
                    {"Text2", at::Text2},
                    {"Label4", at::Label4}});
}

TEST_P(DensityTest, TheMonitorKeepsItsPictureSizeAndItsPanelPlace) {
    namespace at = layout::perfpulldown;
    const PerfPulldown& perf = Get<PerfPulldown>();
    ASSERT_TRUE(perf.IsLoaded());
    ExpectAt(perf, {{"Image1", at::Image1},
                    {"LeftBtn", at::LeftBtn},
                    {"RightBtn", at::RightBtn},
                    {"downBtn", at::downBtn},
                    {"detachBtn", at::detachBtn}});
    const forms::Control& panel = perf.CMPanel0;
    EXPECT_EQ((std::vector<int>{panel.Left(), panel.Top(), panel.Width(), panel.Height()}),
              (std::vector<int>{at::CMPanel.x, at::CMPanel.y, at::CMPanel.w, at::CMPanel.h}));
}

// Finer than the design's 15 twips per pixel: 120 and 144 dots per inch.
INSTANTIATE_TEST_SUITE_P(Densities, DensityTest, ::testing::Values(12, 10),
                         [](const ::testing::TestParamInfo<int>& param) {
                             return std::to_string(param.param) + "TwipsPerPixel";
                         });

}  // namespace
}  // namespace kw::dialer::testing
