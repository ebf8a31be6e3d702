#pragma once

namespace kw::qt {

// A dark Fusion look for the widgets and boxes that the artwork does not draw, so that they sit
// well on a dark skin.
void UseDarkLook();

}  // namespace kw::qt
