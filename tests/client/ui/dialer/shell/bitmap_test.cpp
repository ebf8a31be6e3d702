#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "client/ui/dialer/shell/bitmap_file.h"
#include "client/ui/dialer/shell/bitmap_shape.h"
#include "platform/automation/failure.h"

namespace kw::dialer {
namespace {

constexpr RgbColour kGreen{0, 255, 0};

struct BmpSpec {
    int width = 0;
    int height = 0;          // rows as given, top to bottom
    bool topDown = false;    // how the file stores them
    int bitCount = 8;
    int compression = 0;
    std::vector<RgbColour> palette;
    std::vector<std::vector<std::uint8_t>> rows;  // top to bottom, `width` indices each
    std::uint8_t padding = 0;                     // value of the file's row padding bytes
};

void Put16(std::vector<std::uint8_t>& d, int v) {
    d.push_back(static_cast<std::uint8_t>(v & 0xff));
    d.push_back(static_cast<std::uint8_t>((v >> 8) & 0xff));
}
void Put32(std::vector<std::uint8_t>& d, std::int64_t v) {
    const auto u = static_cast<std::uint32_t>(v);
    for (int i = 0; i < 4; ++i) {
        d.push_back(static_cast<std::uint8_t>((u >> (8 * i)) & 0xff));
    }
}

std::vector<std::uint8_t> MakeBmp(const BmpSpec& s) {
    const int stride = (s.width + 3) / 4 * 4;
    const int paletteBytes = static_cast<int>(s.palette.size()) * 4;
    const int offset = 14 + 40 + paletteBytes;
    std::vector<std::uint8_t> d;
    d.push_back('B');
    d.push_back('M');
    Put32(d, offset + stride * s.height);
    Put32(d, 0);
    Put32(d, offset);
    Put32(d, 40);
    Put32(d, s.width);
    Put32(d, s.topDown ? -s.height : s.height);
    Put16(d, 1);
    Put16(d, s.bitCount);
    Put32(d, s.compression);
    Put32(d, stride * s.height);
    Put32(d, 2835);
    Put32(d, 2835);
    Put32(d, static_cast<std::int64_t>(s.palette.size()));
    Put32(d, 0);
    for (const RgbColour& c : s.palette) {
        d.insert(d.end(), {c.blue, c.green, c.red, 0});
    }
    for (int i = 0; i < s.height; ++i) {
        const auto& row = s.rows[static_cast<std::size_t>(s.topDown ? i : s.height - 1 - i)];
        d.insert(d.end(), row.begin(), row.end());
        for (int p = s.width; p < stride; ++p) {
            d.push_back(s.padding);
        }
    }
    return d;
}

// Rows from text: '#' is palette index 1 (green, the key), '.' index 2 (the artwork).
BmpSpec FromPicture(const std::vector<std::string>& picture) {
    BmpSpec s;
    s.width = static_cast<int>(picture.front().size());
    s.height = static_cast<int>(picture.size());
    s.palette = {{0, 0, 0}, kGreen, {40, 44, 52}};
    for (const std::string& line : picture) {
        std::vector<std::uint8_t> row;
        for (char c : line) {
            row.push_back(c == '#' ? 1 : 2);
        }
        s.rows.push_back(row);
    }
    return s;
}

Region ShapeOf(const BmpSpec& spec, Rect start) {
    const BitmapBits bits = ParseBitmap(MakeBmp(spec), "test.bmp");
    return ShapeFromBitmap(bits, FindKeyIndex(bits.colours, kGreen), start);
}

Rect At(int left, int top, const BmpSpec& s) {
    return Rect{left, top, left + s.width, top + s.height};
}

TEST(BitmapReaderTest, ReadsRowsTopToBottomWithEvenRowLength) {
    for (bool topDown : {false, true}) {
        BmpSpec s = FromPicture({"#..", "..#"});
        s.topDown = topDown;
        s.padding = 7;
        const BitmapBits bits = ParseBitmap(MakeBmp(s), "x.bmp");
        EXPECT_EQ(bits.width, 3);
        EXPECT_EQ(bits.height, 2);
        ASSERT_EQ(bits.BytesPerRow(), 4);
        EXPECT_EQ(bits.bits, (std::vector<std::uint8_t>{1, 2, 2, 7, 2, 2, 1, 7}))
            << "top-down " << topDown;
        EXPECT_EQ(bits.colours[1], kGreen);
        EXPECT_EQ(bits.colours[200], (RgbColour{0, 0, 0})) << "undefined entries are black";
    }
}

void ExpectRejected(const std::vector<std::uint8_t>& data, const std::string& fault) {
    try {
        ParseBitmap(data, "skin.bmp");
        ADD_FAILURE() << "accepted a bitmap that " << fault;
    } catch (const automation::Failure& failure) {
        EXPECT_EQ(failure.Number(), 321);
        EXPECT_NE(failure.Description().find("skin.bmp"), std::string::npos);
        EXPECT_NE(failure.Description().find(fault), std::string::npos) << failure.Description();
    }
}

TEST(BitmapReaderTest, RejectsWhatItCannotReadWithoutReadingPastTheData) {
    BmpSpec deep = FromPicture({"..", ".."});
    deep.bitCount = 24;
    ExpectRejected(MakeBmp(deep), "24 bits per pixel");

    BmpSpec rle = FromPicture({"..", ".."});
    rle.compression = 1;
    ExpectRejected(MakeBmp(rle), "compressed");

    const auto whole = MakeBmp(FromPicture({"....", "....", "...."}));
    ExpectRejected(std::vector<std::uint8_t>(whole.begin(), whole.end() - 1), "truncated");
    ExpectRejected(std::vector<std::uint8_t>(whole.begin(), whole.begin() + 60), "truncated");
    ExpectRejected(std::vector<std::uint8_t>(whole.begin(), whole.begin() + 20), "too short");

    auto badOffset = whole;
    badOffset[10] = 0xff;  // pixel data said to start far past the end
    badOffset[11] = 0xff;
    ExpectRejected(badOffset, "truncated");

    auto hugeHeader = whole;
    hugeHeader[15] = 0x10;  // header size 4136: past the end of the file
    ExpectRejected(hugeHeader, "header");

    auto notBmp = whole;
    notBmp[0] = 'X';
    ExpectRejected(notBmp, "signature");
}

TEST(BitmapReaderTest, MissingFileIsFileNotFound) {
    try {
        ReadBitmapFile("/nonexistent/dir/art.bmp");
        ADD_FAILURE();
    } catch (const automation::Failure& failure) {
        EXPECT_EQ(failure.Number(), 53);
        EXPECT_NE(failure.Description().find("art.bmp"), std::string::npos);
    }
}

TEST(ShapeTest, BitmapWithoutKeyPixelsGivesTheFullRectangle) {
    const BmpSpec s = FromPicture({"....", "....", "...."});
    EXPECT_EQ(ShapeOf(s, At(0, 0, s)), Region(At(0, 0, s)));
}

TEST(ShapeTest, RunsOfKeyPixelsArePunchedOutRowByRow) {
    // A rounded blob with a hole, a row that ends in key pixels and one that starts with them.
    const BmpSpec s = FromPicture({
        "#..##",
        ".....",
        "..#..",
        "...##",
    });
    const Region shape = ShapeOf(s, At(0, 0, s));
    std::string seen;
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 5; ++x) {
            seen += shape.Contains(x, y) ? '.' : '#';
        }
        seen += '|';
    }
    // Width 5 rounds to 6 bytes a row; the padding byte is 0, not the key, so nothing spills.
    EXPECT_EQ(seen, "#..##|.....|..#..|...##|");
    EXPECT_FALSE(shape.Contains(5, 0));
}

TEST(ShapeTest, AllKeyGivesAnEmptyShape) {
    BmpSpec s = FromPicture({"####", "####"});
    EXPECT_TRUE(ShapeOf(s, At(0, 0, s)).IsEmpty());
}

TEST(ShapeTest, MissingKeyColourMakesIndexZeroTransparent) {
    BmpSpec s = FromPicture({"....", "...."});
    s.palette = {{10, 10, 10}, {200, 0, 0}, {40, 44, 52}};  // no green anywhere
    s.rows[0][0] = 0;
    s.rows[1][3] = 0;
    const BitmapBits bits = ParseBitmap(MakeBmp(s), "t.bmp");
    const std::uint8_t key = FindKeyIndex(bits.colours, kGreen);
    EXPECT_EQ(key, 0);
    const Region shape = ShapeFromBitmap(bits, key, At(0, 0, s));
    EXPECT_FALSE(shape.Contains(0, 0));
    EXPECT_FALSE(shape.Contains(3, 1));
    EXPECT_EQ(shape.Area(), 6);
}

TEST(ShapeTest, FirstMatchingPaletteEntryIsTheKey) {
    std::array<RgbColour, 256> table{};
    table[0] = {1, 2, 3};
    table[7] = kGreen;
    table[9] = kGreen;
    EXPECT_EQ(FindKeyIndex(table, kGreen), 7);
}

TEST(ShapeTest, FrameInsetMovesTheShapeAndLeavesCaptionOutside) {
    const BmpSpec s = FromPicture({"#...", "....", "...#"});
    const int frameWidth = 3, frameHeight = 22;
    const Region shape = ShapeOf(s, At(frameWidth, frameHeight, s));
    EXPECT_EQ(shape.Bounds(), (Rect{3, 22, 7, 25}));
    EXPECT_FALSE(shape.Contains(3, 22));
    EXPECT_TRUE(shape.Contains(4, 22));
    EXPECT_FALSE(shape.Contains(6, 24));
    for (int y = 0; y < 22; ++y) {
        EXPECT_FALSE(shape.Contains(4, y)) << "caption row " << y;
    }
    // An image control's place works the same way.
    EXPECT_EQ(ShapeOf(s, At(11, 42, s)).Bounds(), (Rect{11, 42, 15, 45}));
}

TEST(ShapeTest, PaddingByteEqualToTheKeyTogglesThePixelBesideThePicture) {
    // Odd width: each row carries one padding byte, which is walked like a pixel.
    BmpSpec s = FromPicture({"...", "..#", "..."});
    s.padding = 1;  // the key index
    const Region shape = ShapeOf(s, At(0, 0, s));
    // Row 0: the padding run [3,4) lies outside the rectangle, so exclusive-or adds it.
    EXPECT_TRUE(shape.Contains(3, 0));
    // Row 1: one run [2,4) removes pixel 2 and adds pixel 3.
    EXPECT_FALSE(shape.Contains(2, 1));
    EXPECT_TRUE(shape.Contains(3, 1));
    EXPECT_EQ(shape.Area(), 9 - 1 + 3);
}

TEST(ShapeTest, YieldsAfterEveryRow) {
    const BmpSpec s = FromPicture({"..", "#.", ".#", ".."});
    const BitmapBits bits = ParseBitmap(MakeBmp(s), "t.bmp");
    std::vector<int> rows;
    ShapeFromBitmap(bits, 1, At(0, 0, s), [&](int row) { rows.push_back(row); });
    EXPECT_EQ(rows, (std::vector<int>{0, 1, 2, 3}));
}

TEST(ShapeTest, SameResultAsPunchingRunsOneByOne) {
    // The gathered runs must give what one exclusive-or per run gives.
    std::vector<std::string> picture;
    unsigned seed = 7;
    for (int y = 0; y < 30; ++y) {
        std::string line;
        for (int x = 0; x < 37; ++x) {
            seed = seed * 1103515245u + 12345u;
            line += (seed >> 16) % 3 == 0 ? '#' : '.';
        }
        picture.push_back(line);
    }
    BmpSpec s = FromPicture(picture);
    s.padding = 1;
    const BitmapBits bits = ParseBitmap(MakeBmp(s), "t.bmp");
    const Rect start = At(5, 9, s);
    Region slow(start);
    for (int y = 0; y < bits.height; ++y) {
        int runStart = -1;
        for (int x = 0; x <= bits.BytesPerRow(); ++x) {
            const bool key = x < bits.BytesPerRow() && bits.At(x, y) == 1;
            if (key && runStart < 0) {
                runStart = x;
            } else if (!key && runStart >= 0) {
                slow.CombineWith(Region::FromRect(5 + runStart, 9 + y, 5 + x, 9 + y + 1), RGN_XOR);
                runStart = -1;
            }
        }
    }
    EXPECT_EQ(ShapeFromBitmap(bits, 1, start), slow);
}

}  // namespace
}  // namespace kw::dialer
