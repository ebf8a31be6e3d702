// Shaping forms from their artwork, through the forms model on the headless platform.
#include "client/ui/dialer/shell/clip_region.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/automation/failure.h"
#include "platform/forms/controls.h"
#include "platform/forms/form.h"
#include "platform/headless/headless_platform.h"

namespace kw::dialer {
namespace {

constexpr long kPureGreen = 0x00FF00;  // red lowest: red 0, green 255, blue 0

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
    explicit Skinned(forms::Platform& p) : Form(p, "Skinned") {}
    forms::Image Image1{*this, "Image1"};
};

// A 5 by 3 picture, '#' pure green (index 3 in its palette), '.' slate.
void WritePicture(const std::string& path, const std::vector<std::string>& rows) {
    const int w = static_cast<int>(rows.front().size());
    const int h = static_cast<int>(rows.size());
    const int stride = (w + 3) / 4 * 4;
    std::vector<unsigned char> d = {'B', 'M'};
    auto put = [&d](long v, int bytes) {
        for (int i = 0; i < bytes; ++i) {
            d.push_back(static_cast<unsigned char>((v >> (8 * i)) & 0xff));
        }
    };
    const int offset = 14 + 40 + 4 * 4;
    put(offset + stride * h, 4);
    put(0, 4);
    put(offset, 4);
    put(40, 4);
    put(w, 4);
    put(h, 4);
    put(1, 2);
    put(8, 2);
    put(0, 4);
    put(stride * h, 4);
    put(0, 4);
    put(0, 4);
    put(4, 4);
    put(0, 4);
    // blue, green, red, 0: black, white, slate, green
    for (long bgr : {0x000000L, 0xFFFFFFL, 0x3C3228L, 0x00FF00L}) {
        put(bgr, 4);
    }
    for (int y = h - 1; y >= 0; --y) {
        for (char c : rows[static_cast<std::size_t>(y)]) {
            d.push_back(c == '#' ? 3 : 2);
        }
        for (int p = w; p < stride; ++p) {
            d.push_back(0);
        }
    }
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(d.data()),
                                                 static_cast<std::streamsize>(d.size()));
}

class ClipToBitmapTest : public ::testing::Test {
protected:
    void SetUp() override {
        dir = std::filesystem::temp_directory_path() /
              ("kw_clip_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
               "_" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(dir / "art");
        WritePicture((dir / "art/blob.bmp").string(), {"#...#", ".....", "##..."});
        form.SetForeColor(kPureGreen);
    }
    void TearDown() override { std::filesystem::remove_all(dir); }

    std::vector<std::string> Mask(const forms::Form& f, int w, int h) const {
        const Region r = WindowRegion(f);
        std::vector<std::string> rows;
        for (int y = 0; y < h; ++y) {
            std::string row;
            for (int x = 0; x < w; ++x) {
                row += r.Contains(x, y) ? '.' : '#';
            }
            rows.push_back(row);
        }
        return rows;
    }

    std::filesystem::path dir;
    CountingPlatform platform;
    Skinned form{platform};
};

TEST_F(ClipToBitmapTest, FormPictureWithFrameInsetCutsAwayCaptionAndFrame) {
    const ArtworkLibrary art(dir.string());
    form.SetPicture("art/blob.bmp");
    ClipToBitmap(form, true, nullptr, art, 2, 3);
    EXPECT_EQ(Mask(form, 8, 7), (std::vector<std::string>{
                                    "########",
                                    "########",
                                    "########",
                                    "###...##",
                                    "##.....#",
                                    "####...#",
                                    "########",
                                }));
    EXPECT_EQ(platform.yields, 3) << "one turn of the message loop per row";
}

TEST_F(ClipToBitmapTest, FormPictureWithoutInsetStartsAtTheOrigin) {
    const ArtworkLibrary art(dir.string());
    form.SetPicture("art/blob.bmp");
    ClipToBitmap(form, false, nullptr, art, 2, 3);
    EXPECT_EQ(Mask(form, 5, 3), (std::vector<std::string>{"#...#", ".....", "##..."}));
}

TEST_F(ClipToBitmapTest, ImageControlShapesAtItsPlace) {
    const ArtworkLibrary art(dir.string());
    form.Image1.SetPicture("art/blob.bmp");
    form.Image1.Move(1, 2);
    ClipToBitmap(form, false, &form.Image1, art, 2, 3);
    const Region r = WindowRegion(form);
    EXPECT_EQ(r.Bounds(), (Rect{1, 2, 6, 5}));
    EXPECT_FALSE(r.Contains(1, 2));
    EXPECT_TRUE(r.Contains(2, 2));
}

TEST_F(ClipToBitmapTest, ForeColorIsTheOutsideColour) {
    const ArtworkLibrary art(dir.string());
    form.SetPicture("art/blob.bmp");
    form.SetForeColor(0x28323C);  // the slate of the picture, red lowest
    ClipToBitmap(form, false, nullptr, art, 0, 0);
    EXPECT_EQ(Mask(form, 5, 3), (std::vector<std::string>{".###.", "#####", "..###"}));
    // A colour the palette lacks makes index 0 the key. No pixel uses it, but the padding byte
    // of each 5-pixel row is 0, so the column just right of the picture is toggled on.
    form.SetForeColor(0x0000FF);
    ClipToBitmap(form, false, nullptr, art, 0, 0);
    EXPECT_EQ(Mask(form, 7, 3), (std::vector<std::string>{"......#", "......#", "......#"}));
}

TEST_F(ClipToBitmapTest, MissingOrAbsentPictureFails) {
    const ArtworkLibrary art(dir.string());
    try {
        ClipToBitmap(form, false, nullptr, art, 0, 0);
        ADD_FAILURE() << "shaped without a picture";
    } catch (const automation::Failure& failure) {
        EXPECT_EQ(failure.Number(), 481);
    }
    form.SetPicture("art/none.bmp");
    try {
        ClipToBitmap(form, false, nullptr, art, 0, 0);
        ADD_FAILURE() << "shaped from a missing file";
    } catch (const automation::Failure& failure) {
        EXPECT_EQ(failure.Number(), 53);
    }
    EXPECT_FALSE(form.Region().has_value()) << "a failed shaping leaves the window as it was";
}

TEST_F(ClipToBitmapTest, PulloutCutAgainstTheMainWindowKeepsWhatShowsBeside) {
    // The choreography's cut: pullout minus the main window moved into pullout coordinates.
    const ArtworkLibrary art(dir.string());
    Skinned pullout(platform);
    pullout.SetForeColor(kPureGreen);
    pullout.SetPicture("art/blob.bmp");
    form.SetPicture("art/blob.bmp");
    ClipToBitmap(form, false, nullptr, art, 0, 0);
    ClipToBitmap(pullout, false, nullptr, art, 0, 0);
    Region main = WindowRegion(form);
    main.Offset(-3, 0);
    SetWindowRegion(pullout, Region::Combine(WindowRegion(pullout), main, RGN_DIFF));
    EXPECT_EQ(Mask(pullout, 5, 3), (std::vector<std::string>{"#...#", "##...", "##..."}));
}

}  // namespace
}  // namespace kw::dialer
