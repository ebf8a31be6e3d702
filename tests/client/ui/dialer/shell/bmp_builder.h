#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "client/ui/dialer/shell/bitmap_file.h"
#include "client/ui/dialer/shell/region.h"

namespace kw::dialer::testing {

constexpr RgbColour kGreen{0, 255, 0};
constexpr RgbColour kSlate{40, 44, 52};

// An 8-bit palette bitmap as a file holds it.
struct BmpImage {
    int width = 0;
    int height = 0;
    bool topDown = false;  // how the file stores the rows
    int bitCount = 8;
    int compression = 0;
    std::vector<RgbColour> palette;
    std::vector<std::vector<std::uint8_t>> rows;  // top to bottom, `width` indices each
    std::uint8_t padding = 0;                     // value of the file's row padding bytes
};

inline std::vector<std::uint8_t> MakeBmp(const BmpImage& s) {
    const int stride = (s.width + 3) / 4 * 4;
    const auto offset = static_cast<std::int64_t>(14 + 40 + s.palette.size() * 4);
    std::vector<std::uint8_t> d = {'B', 'M'};
    auto put = [&d](std::int64_t v, int bytes) {
        for (int i = 0; i < bytes; ++i)
            d.push_back(static_cast<std::uint8_t>((v >> (8 * i)) & 0xff));
    };
    for (std::int64_t v : {offset + stride * s.height, std::int64_t{0}, offset, std::int64_t{40},
                           std::int64_t{s.width}, std::int64_t{s.topDown ? -s.height : s.height}}) {
        put(v, 4);
    }
    put(1, 2);
    put(s.bitCount, 2);
    for (std::int64_t v :
         {std::int64_t{s.compression}, std::int64_t{stride * s.height}, std::int64_t{2835},
          std::int64_t{2835}, static_cast<std::int64_t>(s.palette.size()), std::int64_t{0}}) {
        put(v, 4);
    }
    for (const RgbColour& c : s.palette) d.insert(d.end(), {c.blue, c.green, c.red, 0});
    for (int i = 0; i < s.height; ++i) {
        const auto& row = s.rows[static_cast<std::size_t>(s.topDown ? i : s.height - 1 - i)];
        d.insert(d.end(), row.begin(), row.end());
        d.insert(d.end(), static_cast<std::size_t>(stride - s.width), s.padding);
    }
    return d;
}

// Rows from text: '#' is palette index 1 (green, the key), '.' index 2 (slate, the artwork).
inline BmpImage FromPicture(const std::vector<std::string>& picture) {
    BmpImage s;
    s.width = static_cast<int>(picture.front().size());
    s.height = static_cast<int>(picture.size());
    s.palette = {{0, 0, 0}, kGreen, kSlate};
    for (const std::string& line : picture) {
        std::vector<std::uint8_t> row;
        for (char c : line) row.push_back(c == '#' ? 1 : 2);
        s.rows.push_back(row);
    }
    return s;
}

// A region drawn as text over [0,w) x [0,h): '.' inside, '#' outside.
inline std::vector<std::string> Picture(const Region& r, int w, int h) {
    std::vector<std::string> rows(static_cast<std::size_t>(h), std::string(w, '#'));
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            if (r.Contains(x, y))
                rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] = '.';
        }
    }
    return rows;
}

}  // namespace kw::dialer::testing
