#include "client/ui/dialer/shell/faces.h"

namespace kw::dialer::face {

void Place(forms::Control& control, const layout::LayoutRect& at) {
    control.Move(at.x, at.y, at.w, at.h);
}

void PlaceIn(forms::Control& control, forms::Control& frame, const layout::LayoutRect& at,
             const layout::LayoutRect& frameAt) {
    control.SetContainer(&frame);
    control.Move(at.x - frameAt.x, at.y - frameAt.y, at.w, at.h);
}

void OnSkin(std::initializer_list<forms::Control*> controls) {
    for (forms::Control* c : controls) {
        c->SetForeColor(kSkinText);
    }
}

void InWell(std::initializer_list<forms::Control*> controls) {
    for (forms::Control* c : controls) {
        c->SetBackColor(kWellBack);
        c->SetForeColor(kWellText);
    }
}

void BlendFrame(forms::Control& frame, const BitmapBits& artwork) {
    const int x = frame.Left() + 1;
    const int y = frame.Top() + frame.Height() / 2;
    if (x < 0 || y < 0 || x >= artwork.width || y >= artwork.height) {
        return;
    }
    const RgbColour c = artwork.colours[artwork.At(x, y)];
    frame.SetBackColor(static_cast<long>(c.red) | static_cast<long>(c.green) << 8 |
                       static_cast<long>(c.blue) << 16);
}

}  // namespace kw::dialer::face
