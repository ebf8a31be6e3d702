#include "client/ui/dialer/shell/bitmap_shape.h"

#include <vector>

namespace kw::dialer {

std::uint8_t FindKeyIndex(const std::array<RgbColour, 256>& colours, RgbColour key) {
    for (std::size_t i = 0; i < colours.size(); ++i) {
        if (colours[i] == key) {
            return static_cast<std::uint8_t>(i);
        }
    }
    return 0;
}

Region ShapeFromBitmap(const BitmapBits& bitmap, std::uint8_t key, const Rect& start,
                       const std::function<void(int row)>& afterRow) {
    const int stride = bitmap.BytesPerRow();
    Region::RowBuilder runs;
    std::vector<int> spans;
    for (int y = 0; y < bitmap.height; ++y) {
        spans.clear();
        const std::uint8_t* row =
            bitmap.bits.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(stride);
        bool open = false;
        for (int x = 0; x < stride; ++x) {
            if (row[x] == key) {
                if (!open) {
                    spans.push_back(start.left + x);
                    open = true;
                }
            } else if (open) {
                spans.push_back(start.left + x);
                open = false;
            }
        }
        if (open) {
            spans.push_back(start.left + stride);
        }
        runs.AddRow(start.top + y, spans);
        if (afterRow) {
            afterRow(y);
        }
    }
    return Region::Combine(Region(start), runs.Finish(), RGN_XOR);
}

}  // namespace kw::dialer
