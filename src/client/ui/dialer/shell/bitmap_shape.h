#pragma once

#include <cstdint>
#include <functional>

#include "client/ui/dialer/shell/bitmap_file.h"
#include "client/ui/dialer/shell/region.h"

namespace kw::dialer {

// The palette index of the outside colour: the first entry equal to `key`, 0 when none is.
std::uint8_t FindKeyIndex(const std::array<RgbColour, 256>& colours, RgbColour key);

// The window shape of a bitmap: `start` (the bitmap's rectangle where the window puts it) with
// one rectangle per run of `key` bytes exclusive-ored into it. Rows are walked over all their
// bytes, padding included, so a padding byte equal to the key toggles the pixel just right of
// the picture. `afterRow`, when given, runs after each row (the shaping yields to the message
// loop there).
//
// The runs of a bitmap never overlap, so their exclusive-or is their union: the runs are
// gathered row by row into one region and combined with the rectangle once.
Region ShapeFromBitmap(const BitmapBits& bitmap, std::uint8_t key, const Rect& start,
                       const std::function<void(int row)>& afterRow = {});

}  // namespace kw::dialer
