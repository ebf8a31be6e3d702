// The committed artwork: every picture the layout names exists as an 8-bit palette bitmap, the
// shaped forms have the sizes their geometry is built on, and every control the layout places
// lies inside the shape that its picture gives.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "client/ui/dialer/shell/artwork_layout.h"
#include "client/ui/dialer/shell/bitmap_file.h"
#include "client/ui/dialer/shell/bitmap_shape.h"

namespace kw::dialer {
namespace {

namespace L = layout;

BitmapBits Read(const std::string& picture) {
    return ReadBitmapFile(std::string(KW_ASSETS_DIR) + "/" + picture);
}

Region ShapeOf(const std::string& picture) {
    const BitmapBits bits = Read(picture);
    const std::uint8_t key = FindKeyIndex(bits.colours, RgbColour{0, 255, 0});
    return ShapeFromBitmap(bits, key, Rect{0, 0, bits.width, bits.height});
}

bool Inside(const Region& shape, const L::LayoutRect& r) {
    const Region box = Region::FromRect(r.x, r.y, r.Right(), r.Bottom());
    return Region::Combine(box, shape, RGN_DIFF).IsEmpty();
}

TEST(ArtworkTest, MainWindowControlsLieOnTheShapeAndTheNotchIsCut) {
    namespace M = L::mainwin;
    const Region shape = ShapeOf(M::kPicture);
    for (const L::LayoutRect& r :
         {M::imgLogoOn,        M::btnMinimize,       M::btnHelp,           M::btnCloseWin,
          M::lblFrom,          M::cmboFrom,          M::btnFromPullout,    M::lblTo,
          M::cmboTo,           M::btnToPullout,      M::imgModemDetected,  M::imgPhoneDialing,
          M::imgConnectingISP, M::imgAuthorizingISP, M::imgCreatingTunnel, M::imgAuthorizingTunnel,
          M::btnRxPullout,     M::btnConnect,        M::lblConnect,        M::imgConnectLight,
          M::Label4,           M::btnMorePullout,    M::lblStatus}) {
        EXPECT_TRUE(Inside(shape, r)) << r.x << "," << r.y << " " << r.w << "x" << r.h;
    }
    // The performance panel's handle shows through the bottom notch.
    EXPECT_FALSE(shape.Contains((M::kNotchLeft + M::kNotchRight) / 2, M::kHeight - 2));
    EXPECT_TRUE(shape.Contains(M::kNotchLeft - 4, M::kHeight - 8));
    // Between the tabs the edge steps back, so a drawer shows beside the window.
    EXPECT_FALSE(shape.Contains(M::kWidth - 2, M::btnFromPullout.Bottom() + 8));
}

TEST(ArtworkTest, PerformancePanelHandleShowsBelowTheMainWindowWhenRetracted) {
    namespace P = L::perfpulldown;
    const Region shape = ShapeOf(P::kPicture);
    for (const L::LayoutRect& r : {P::CMPanel, P::LeftBtn, P::RightBtn, P::downBtn, P::detachBtn}) {
        EXPECT_TRUE(Inside(shape, r)) << r.x << "," << r.y;
    }
    // Retracted, the panel stands 176 below the main window's outer top: what is visible below
    // the main window's bottom edge is the handle alone, never the corners of the body.
    const int mainBottom = L::kFrameHeight + L::mainwin::kHeight - 176;
    for (int y = mainBottom; y < P::kHeight; ++y) {
        EXPECT_FALSE(shape.Contains(2, y)) << y;
        EXPECT_FALSE(shape.Contains(P::kWidth - 3, y)) << y;
    }
    EXPECT_TRUE(shape.Contains(P::downBtn.x + 10, mainBottom + 4));
}

TEST(ArtworkTest, PanelsOfMoreStaySolidWhereTheirCutCombinesByExclusiveOr) {
    // Their shape is exclusive-ored with the main window and MorePullout: any outside pixel
    // there would turn into a visible patch of the panel's own picture.
    for (const char* picture :
         {L::logpullout::kPicture, L::prefpullout::kPicture, L::displaypullout::kPicture}) {
        SCOPED_TRACE(picture);
        const Region shape = ShapeOf(picture);
        EXPECT_TRUE(Inside(shape, L::panel::kUnderMore));
        EXPECT_TRUE(Inside(shape, L::LayoutRect{0, 0, 17, L::panel::kHeight}));
    }
}

TEST(ArtworkTest, SeparatePicturesExist) {
    namespace Pc = L::pictures;
    namespace P = L::perfpulldown;
    for (const char* picture :
         {Pc::kLightOff,       Pc::kModemDetected,   Pc::kPhoneDialing,      Pc::kConnectingISP,
          Pc::kAuthorizingISP, Pc::kCreatingTunnel,  Pc::kAuthorizingTunnel, Pc::kLogoOn,
          Pc::kConnectLightOn, Pc::kConnectLightOff, Pc::kYellowLightOn,     Pc::kYellowLightOff,
          Pc::kImage5,         Pc::kImage6,          Pc::kPushedButton,      Pc::kBtnHelp,
          Pc::kBtnMinimize,    Pc::kBtnCloseWin,     Pc::kBtnConnect,        Pc::kBtnReg,
          Pc::kBtnLeft,        Pc::kBtnRight,        Pc::kMoreBtnPressed,    Pc::kMoreLabels,
          Pc::kImage3,         Pc::kBtnRxPullout,    P::kImgLocation,        P::kVpnBytes,
          P::kISPBytes,        P::kLeftBtn,          P::kRightBtn,           P::kDownBtn,
          P::kDetachBtn}) {
        EXPECT_NO_THROW(Read(picture)) << picture;
    }
    EXPECT_EQ(Read(Pc::kImage5).width, L::mainwin::btnConnect.w);
}

}  // namespace
}  // namespace kw::dialer
