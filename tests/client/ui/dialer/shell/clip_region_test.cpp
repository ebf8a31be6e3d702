// Shaping forms from their artwork, through the forms model on the headless platform.
#include "client/ui/dialer/shell/clip_region.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "client/ui/dialer/shell/bmp_builder.h"
#include "platform/automation/failure_number.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/headless/headless_platform.h"

namespace kw::dialer {
namespace {

using namespace testing;
using Rows = std::vector<std::string>;
constexpr long kPureGreen = 0x00FF00;  // red lowest

class CountingPlatform : public headless::HeadlessPlatform {
  public:
    int yields = 0;
    void DoEvents() override {
        ++yields;
        HeadlessPlatform::DoEvents();
    }
};

class Skinned : public forms::Form {
  public:
    explicit Skinned(forms::Platform& p) : Form(p, "Skinned") { SetForeColor(kPureGreen); }
    forms::Image Image1{*this, "Image1"};
};

class ClipToBitmapTest : public ::testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::create_directories(dir / "art");
        const auto bmp = MakeBmp(FromPicture({"#...#", ".....", "##..."}));
        std::ofstream(dir / "art/blob.bmp", std::ios::binary)
            .write(reinterpret_cast<const char*>(bmp.data()),
                   static_cast<std::streamsize>(bmp.size()));
        form.SetPicture("art/blob.bmp");
    }
    void TearDown() override { std::filesystem::remove_all(dir); }

    const std::filesystem::path dir =
        std::filesystem::temp_directory_path() /
        ("kw_clip_" + std::to_string(::getpid()) + "_" +
         ::testing::UnitTest::GetInstance()->current_test_info()->name());
    const ArtworkLibrary art{dir.string()};
    CountingPlatform platform;
    Skinned form{platform};
};

TEST_F(ClipToBitmapTest, TheFrameInsetCutsAwayCaptionAndFrame) {
    ClipToBitmap(form, true, nullptr, art, 2, 3);
    EXPECT_EQ(
        Picture(WindowRegion(form), 8, 7),
        (Rows{"########", "########", "########", "###...##", "##.....#", "####...#", "########"}));
    EXPECT_EQ(platform.yields, 3) << "one turn of the message loop per row";
    ClipToBitmap(form, false, nullptr, art, 2, 3);  // without it, from the origin
    EXPECT_EQ(Picture(WindowRegion(form), 5, 3), (Rows{"#...#", ".....", "##..."}));

    form.Image1.SetPicture("art/blob.bmp");
    form.Image1.Move(1, 2);
    ClipToBitmap(form, false, &form.Image1, art, 2, 3);
    EXPECT_EQ(WindowRegion(form).Bounds(), (Rect{1, 2, 6, 5}));
    EXPECT_FALSE(WindowRegion(form).Contains(1, 2));
}

TEST_F(ClipToBitmapTest, ForeColorIsTheOutsideColour) {
    form.SetForeColor(0x342C28);  // the slate of the picture
    ClipToBitmap(form, false, nullptr, art, 0, 0);
    EXPECT_EQ(Picture(WindowRegion(form), 5, 3), (Rows{".###.", "#####", "..###"}));
}

TEST_F(ClipToBitmapTest, MissingOrAbsentPictureFailsAndLeavesTheWindowAlone) {
    Skinned bare(platform);
    EXPECT_EQ(FailureNumber([&] { ClipToBitmap(bare, false, nullptr, art, 0, 0); }), 481);
    form.SetPicture("art/none.bmp");
    EXPECT_EQ(FailureNumber([&] { ClipToBitmap(form, false, nullptr, art, 0, 0); }), 53);
    EXPECT_FALSE(form.Region().has_value());
}

}  // namespace
}  // namespace kw::dialer
