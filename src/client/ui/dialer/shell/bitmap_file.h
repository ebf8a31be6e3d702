#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kw::dialer {

struct RgbColour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    bool operator==(const RgbColour&) const = default;
};

// An 8-bit palette bitmap as the shaping code reads it: rows top to bottom, each row
// BytesPerRow() bytes long (the width rounded up to an even number, padding included), and the
// full 256-entry colour table (entries the file does not define are black).
struct BitmapBits {
    int width = 0;
    int height = 0;
    std::array<RgbColour, 256> colours{};
    std::vector<std::uint8_t> bits;

    int BytesPerRow() const { return (width + 1) / 2 * 2; }
    std::uint8_t At(int x, int y) const {
        return bits[static_cast<std::size_t>(y) * static_cast<std::size_t>(BytesPerRow()) +
                    static_cast<std::size_t>(x)];
    }
};

// Reads an uncompressed 8-bit palette BMP (BITMAPINFOHEADER or a later header, bottom-up or
// top-down). Anything else fails with Failure 321 (invalid file format) naming the file and the
// fault; a file that cannot be opened fails with 53.
BitmapBits ReadBitmapFile(const std::string& path);

// The same from bytes already in memory; `name` is only used in failure descriptions.
BitmapBits ParseBitmap(const std::vector<std::uint8_t>& data, const std::string& name);

}  // namespace kw::dialer
