#pragma once

#include <initializer_list>

#include "client/ui/dialer/shell/artwork_layout.h"
#include "client/ui/dialer/shell/bitmap_file.h"
#include "platform/forms/control.h"
#include "platform/forms/form.h"

namespace kw::dialer::face {

// Colours in the red-lowest layout of the forms model. Text on the skin is light; boxes, combos
// and lists are the skin's dark wells with light text, as on the main window.
inline constexpr long kKeyColour = 0x00FF00;  // pure green, every shaped form's ForeColor
inline constexpr long kSkinText = 0xE0E0E0;
inline constexpr long kWellBack = 0x29221D;
inline constexpr long kWellText = 0xEBE8E6;

// Units. The model keeps screen pixels. A form's design is stated in the artwork's pixels, which
// the old toolkit held as twips at 15 twips per pixel: a design value v is v x 15 twips. Loaded at
// another density those twips stand at v x 15 / (twips per pixel) screen pixels until the form's
// ScaleForm multiplies them by (twips per pixel) / 15, which brings every control back to the
// artwork's pixels. An Image is sized from its picture, in pixels, so only its place is a design
// value and ScaleForm leaves its size alone. Place, PlaceIn and PlaceForm state a design this way
// and so run before the form's ScaleForm; every later move is in screen pixels.
int AtDensity(const forms::Platform& platform, int designPixels);

// Puts a control where the artwork leaves room for it.
void Place(forms::Control& control, const layout::LayoutRect& at);
// Puts a control into a frame: `at` is relative to the form, as the layout gives it, and the
// control's own place becomes relative to the frame standing at `frameAt`.
void PlaceIn(forms::Control& control, forms::Control& frame, const layout::LayoutRect& at,
             const layout::LayoutRect& frameAt);
// The form's design size, its window's outer size; the form keeps its place.
void PlaceForm(forms::Form& form, int width, int height);

// Light text over the artwork: labels, check boxes, option buttons, frame captions.
void OnSkin(std::initializer_list<forms::Control*> controls);
// The dark well of the skin: text boxes, combos, lists.
void InWell(std::initializer_list<forms::Control*> controls);
// A frame is filled plainly by its renderer: it takes the colour of the artwork's body where it
// stands (halfway down its left edge), so that it does not show as a patch. Runs before the form's
// ScaleForm, on the frame's design place.
void BlendFrame(forms::Control& frame, const BitmapBits& artwork);

}  // namespace kw::dialer::face
