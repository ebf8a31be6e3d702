// The pullouts as the user sees them: each in the outline of its own artwork, and every control
// standing on the part of it that shows, also after the cut that makes it come from beneath the
// main window or MorePullout.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "window_fixture.h"

namespace kw::dialer::testing {
namespace {

class PulloutFacesTest : public WindowFamilyTest {
  protected:
    // In the order their tabs open them: the main window's four, then MorePullout's three.
    std::vector<forms::Form*> Pullouts() {
        return FormsOf<FromPullout, ToPullout, RxPullout, MorePullout, LogPullout, PrefPullout,
                       DisplayPullout>();
    }

    // The picture that gives the form its outline: its own, or FromPullout's Image2.
    std::string ShapingPicture(const forms::Form& form) {
        if (&form == &Get<FromPullout>()) {
            return Get<FromPullout>().Image2.Picture();
        }
        return form.Picture();
    }

    void ExpectShapedByItsArtwork(forms::Form& form) {
        SCOPED_TRACE(form.Name());
        EXPECT_EQ(form.ForeColor(), 0x00FF00) << "pure green is the outside of every picture";
        const BitmapBits& art = app->Art().Bitmap(ShapingPicture(form));
        EXPECT_EQ(form.Width(), art.width);
        EXPECT_EQ(form.Height(), art.height);
        ASSERT_TRUE(form.Region().has_value()) << "a blank rectangle, not the artwork";
        const Region shape = WindowRegion(form);
        EXPECT_EQ(shape.Bounds(), (Rect{0, 0, art.width, art.height}));
        EXPECT_NE(shape, Region::FromRect(0, 0, art.width, art.height)) << "the corners are cut";
    }

    // Every control but the shaping picture itself, at its place on the form, lies inside the
    // form's present shape.
    void ExpectControlsInsideTheShape(forms::Form& form) {
        SCOPED_TRACE(form.Name());
        const Region shape = WindowRegion(form);
        int checked = 0;
        for (const forms::Control* c : form.Controls()) {
            if (c->Kind() == forms::ControlKind::Timer ||
                (c->Kind() == forms::ControlKind::Image && c->Picture() == ShapingPicture(form))) {
                continue;
            }
            int left = c->Left();
            int top = c->Top();
            for (const forms::Control* box = c->Container(); box; box = box->Container()) {
                left += box->Left();
                top += box->Top();
            }
            ASSERT_TRUE(c->Width() > 0 && c->Height() > 0) << c->Name() << " has no place";
            const Region area = Region::FromRect(left, top, left + c->Width(), top + c->Height());
            EXPECT_TRUE(Region::Combine(area, shape, RGN_DIFF).IsEmpty())
                << c->Name() << c->Index() << " sticks out of the shape";
            ++checked;
        }
        EXPECT_GT(checked, 2);
    }
};

TEST_F(PulloutFacesTest, EachPulloutLoadsInTheOutlineOfItsOwnArtwork) {
    for (forms::Form* form : Pullouts()) ExpectShapedByItsArtwork(*form);
    // The outline is the picture's: the wide drawers share one size, and yet each has its own.
    EXPECT_NE(WindowRegion(Get<FromPullout>()), WindowRegion(Get<MorePullout>()));
}

TEST_F(PulloutFacesTest, OpenedBesideTheMainWindowOrAboveMorePulloutNoControlIsCutAway) {
    MainWin& win = Win();
    MorePullout& more = Get<MorePullout>();
    const std::vector<forms::Control*> opens = {
        &win.btnFromPullout, &win.btnToPullout, &win.btnRxPullout, &win.btnMorePullout,
        &more.btnLog,        &more.btnPref,     &more.btnDisplay};
    for (std::size_t i = 0; i < opens.size(); ++i) {
        opens[i]->UserClick();
        ASSERT_TRUE(Pullouts()[i]->Visible()) << Pullouts()[i]->Name();
        ExpectControlsInsideTheShape(*Pullouts()[i]);
    }
}

TEST_F(PulloutFacesTest, AFrameIsFilledWithTheColourOfTheSkinBehindIt) {
    // Anything else than the skin around it would show as a patch.
    for (const forms::Control* frame :
         {static_cast<const forms::Control*>(&Get<PrefPullout>().frCallingCard),
          static_cast<const forms::Control*>(&Get<DisplayPullout>().SSFrame1),
          static_cast<const forms::Control*>(&Get<DisplayPullout>().SSFrame2)}) {
        const BitmapBits& art = app->Art().Bitmap(frame->Parent().Picture());
        const RgbColour skin = art.colours[art.At(frame->Left() + 1, frame->Top() + 8)];
        const long back = frame->BackColor();
        SCOPED_TRACE(frame->Name());
        EXPECT_NEAR(back & 0xFF, skin.red, 6);
        EXPECT_NEAR((back >> 8) & 0xFF, skin.green, 6);
        EXPECT_NEAR((back >> 16) & 0xFF, skin.blue, 6);
    }
}

}  // namespace
}  // namespace kw::dialer::testing
