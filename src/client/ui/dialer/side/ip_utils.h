#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/forms/controls.h"

namespace kw::dialer {

// The four boxes of a dotted address, octet 0 first.
using IPBoxes = std::array<forms::TextBox*, 4>;

// The four boxes joined by points; four empty boxes give "...".
std::string ReadIPFields(const IPBoxes& boxes);
// Digits, backspace and the point pass; anything else beeps and becomes 0.
std::int16_t FilterIPKey(forms::Platform& platform, std::int16_t key);
// A key typed in box index: a point never lands in a box, it moves the caret to the next one (the
// previous one with backward) or is dropped at the last.
std::int16_t HandleIPKey(forms::Platform& platform, std::int16_t& index, std::int16_t& key,
                         const IPBoxes& boxes, bool backward);
// Spreads a dotted address over the boxes; the boxes past the last point found keep their text.
void WriteIPFields(const std::string& address, const IPBoxes& boxes);

}  // namespace kw::dialer
