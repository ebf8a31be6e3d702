// At a screen density other than the design's, every control still stands on its place on the
// artwork: the form is laid out at the density and ScaleForm brings it back to the artwork's
// pixels, the lights keeping the size of their pictures.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "client/ui/dialer/shell/artwork_layout.h"
#include "window_fixture.h"

namespace kw::dialer::testing {
namespace {

using layout::LayoutRect;
using Places = std::vector<std::pair<std::string, LayoutRect>>;
// A control's name and its place in the layout, under one name.
#define PLACE(name) \
    { #name, at::name }

class DensityTest : public WindowFamilyTest, public ::testing::WithParamInterface<int> {
  protected:
    void SetUp() override {
        // Before the program starts, as the screen's density is known before any form loads.
        platform.SetTwipsPerPixel(GetParam());
        WindowFamilyTest::SetUp();
    }

    static void ExpectAt(const forms::Form& form, const Places& places) {
        for (const auto& [name, at] : places) {
            const forms::Control* c = form.FindControl(name, -1);
            ASSERT_NE(c, nullptr) << name << " is not on " << form.Name();
            EXPECT_EQ((std::vector<int>{c->Left(), c->Top(), c->Width(), c->Height()}),
                      (std::vector<int>{at.x, at.y, at.w, at.h}))
                << form.Name() << "." << name;
        }
    }
};

TEST_P(DensityTest, APulloutAndTheControlsOfItsFrameStandOnTheirArtworkPlaces) {
    namespace at = layout::prefpullout;
    Win().btnMorePullout.UserClick();
    Get<MorePullout>().btnPref.UserClick();
    const PrefPullout& pref = Get<PrefPullout>();
    ASSERT_TRUE(pref.Visible());
    EXPECT_EQ(pref.Width(), layout::panel::kWidth);
    EXPECT_EQ(pref.Height(), layout::panel::kHeight);
    ExpectAt(pref, {PLACE(Image1), PLACE(Label1), PLACE(frCallingCard), PLACE(chkConfirmDial),
                    PLACE(chkAutoDial), PLACE(Text2), PLACE(Label4)});
    // Inside the frame, from the frame's corner.
    Places inFrame = {PLACE(Label3), PLACE(cmboCallingCards), PLACE(btnSave), PLACE(Label2),
                      PLACE(txtCardNumber)};
    for (auto& [name, r] : inFrame) {
        r = LayoutRect{r.x - at::frCallingCard.x, r.y - at::frCallingCard.y, r.w, r.h};
    }
    ExpectAt(pref, inFrame);
}

TEST_P(DensityTest, TheMonitorKeepsItsPictureSizeAndItsPanelPlace) {
    namespace at = layout::perfpulldown;
    const PerfPulldown& perf = Get<PerfPulldown>();
    ExpectAt(perf,
             {PLACE(Image1), PLACE(LeftBtn), PLACE(RightBtn), PLACE(downBtn), PLACE(detachBtn)});
    const forms::Control& panel = perf.CMPanel0;
    EXPECT_EQ((std::vector<int>{panel.Left(), panel.Top(), panel.Width(), panel.Height()}),
              (std::vector<int>{at::CMPanel.x, at::CMPanel.y, at::CMPanel.w, at::CMPanel.h}));
}

// Finer than the design's 15 twips per pixel: 120 and 144 dots per inch.
INSTANTIATE_TEST_SUITE_P(Densities, DensityTest, ::testing::Values(12, 10),
                         [](const ::testing::TestParamInfo<int>& param) {
                             return std::to_string(param.param) + "TwipsPerPixel";
                         });

#undef PLACE

}  // namespace
}  // namespace kw::dialer::testing
