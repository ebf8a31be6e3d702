#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "client/ui/dialer/shell/bitmap_file.h"
#include "client/ui/dialer/shell/bitmap_shape.h"
#include "client/ui/dialer/shell/bmp_builder.h"
#include "platform/automation/failure.h"

namespace kw::dialer {
namespace {

using namespace testing;
using Rows = std::vector<std::string>;

Region ShapeOf(const BmpImage& bmp, int left = 0, int top = 0) {
    const BitmapBits bits = ParseBitmap(MakeBmp(bmp), "test.bmp");
    return ShapeFromBitmap(bits, FindKeyIndex(bits.colours, kGreen),
                           Rect{left, top, left + bmp.width, top + bmp.height});
}

TEST(BitmapReaderTest, ReadsRowsTopToBottomWithEvenRowLength) {
    for (bool topDown : {false, true}) {
        BmpImage s = FromPicture({"#..", "..#"});
        s.topDown = topDown;
        s.padding = 7;
        const BitmapBits bits = ParseBitmap(MakeBmp(s), "x.bmp");
        EXPECT_EQ(bits.width, 3);
        EXPECT_EQ(bits.height, 2);
        ASSERT_EQ(bits.BytesPerRow(), 4);
        EXPECT_EQ(bits.bits, (std::vector<std::uint8_t>{1, 2, 2, 7, 2, 2, 1, 7})) << topDown;
        EXPECT_EQ(bits.colours[1], kGreen);
        EXPECT_EQ(bits.colours[200], (RgbColour{0, 0, 0})) << "undefined entries are black";
    }
}

TEST(BitmapReaderTest, RejectsWhatItCannotReadWithoutReadingPastTheData) {
    BmpImage deep = FromPicture({"..", ".."});
    deep.bitCount = 24;
    BmpImage rle = FromPicture({"..", ".."});
    rle.compression = 1;
    const auto whole = MakeBmp(FromPicture({"....", "....", "...."}));
    auto badOffset = whole;
    badOffset[10] = badOffset[11] = 0xff;  // pixel data said to start far past the end
    auto hugeHeader = whole;
    hugeHeader[15] = 0x10;  // header size 4136: past the end of the file
    auto notBmp = whole;
    notBmp[0] = 'X';
    const std::pair<std::vector<std::uint8_t>, std::string> cases[] = {
        {MakeBmp(deep), "24 bits per pixel"},
        {MakeBmp(rle), "compressed"},
        {{whole.begin(), whole.end() - 1}, "truncated"},
        {{whole.begin(), whole.begin() + 60}, "truncated"},
        {{whole.begin(), whole.begin() + 20}, "too short"},
        {badOffset, "truncated"},
        {hugeHeader, "header"},
        {notBmp, "signature"},
    };
    for (const auto& [data, fault] : cases) {
        try {
            ParseBitmap(data, "skin.bmp");
            ADD_FAILURE() << "accepted a bitmap that is " << fault;
        } catch (const automation::Failure& failure) {
            EXPECT_EQ(failure.Number(), 321);
            EXPECT_NE(failure.Description().find("skin.bmp"), std::string::npos);
            EXPECT_NE(failure.Description().find(fault), std::string::npos)
                << failure.Description();
        }
    }
}

TEST(ShapeTest, KeyPixelsArePunchedOutRowByRow) {
    // No key: the full rectangle. A hole, rows that end or start in key pixels. All key: empty.
    // Width 5 rounds to 6 bytes a row; the padding byte is 0, not the key, so nothing spills.
    for (const Rows& picture :
         {Rows{"....", "...."}, Rows{"#..##", ".....", "..#..", "...##"}, Rows{"####", "####"}}) {
        const BmpImage s = FromPicture(picture);
        const Region shape = ShapeOf(s);
        Rows expected = picture;
        for (auto& row : expected) row += '#';
        EXPECT_EQ(Picture(shape, s.width + 1, s.height), expected);
    }
    EXPECT_TRUE(ShapeOf(FromPicture({"####", "####"})).IsEmpty());
    EXPECT_EQ(ShapeOf(FromPicture({"....", "...."}), 3, 22), Region(Rect{3, 22, 7, 24}));
}

TEST(ShapeTest, TheFirstGreenIsTheKeyAndWithoutOneIndexZeroIsTransparent) {
    std::array<RgbColour, 256> table{};
    table[7] = table[9] = kGreen;
    EXPECT_EQ(FindKeyIndex(table, kGreen), 7);

    BmpImage s = FromPicture({"....", "...."});
    s.palette = {{10, 10, 10}, {200, 0, 0}, kSlate};  // no green anywhere
    s.rows[0][0] = s.rows[1][3] = 0;
    EXPECT_EQ(Picture(ShapeOf(s), 4, 2), (Rows{"#...", "...#"}));
}

TEST(ShapeTest, PaddingByteEqualToTheKeyTogglesThePixelBesideThePicture) {
    // Odd width: each row carries one padding byte, walked like a pixel. Row 0: the padding run
    // lies outside the rectangle, so exclusive-or adds it; row 1: one run removes 2 and adds 3.
    BmpImage s = FromPicture({"...", "..#", "..."});
    s.padding = 1;  // the key index
    EXPECT_EQ(Picture(ShapeOf(s), 5, 3), (Rows{"....#", "..#.#", "....#"}));
}

}  // namespace
}  // namespace kw::dialer
