#include "client/ui/dialer/shell/faces.h"

#include <cmath>

namespace kw::dialer::face {

namespace {
constexpr double kDesignTwipsPerPixel = 15.0;

void PlaceDesign(forms::Control& control, int x, int y, int w, int h) {
    const forms::Platform& platform = control.Parent().GetPlatform();
    if (control.Kind() == forms::ControlKind::Image) {
        control.Move(AtDensity(platform, x), AtDensity(platform, y), w, h);
    } else {
        control.Move(AtDensity(platform, x), AtDensity(platform, y), AtDensity(platform, w),
                     AtDensity(platform, h));
    }
}
}  // namespace

int AtDensity(const forms::Platform& platform, int designPixels) {
    // Rounded, not cut: from a density finer than the design's, ScaleForm's rounding then lands on
    // the design value exactly.
    return static_cast<int>(
        std::lround(designPixels * kDesignTwipsPerPixel / platform.TwipsPerPixelX()));
}

void Place(forms::Control& control, const layout::LayoutRect& at) {
    PlaceDesign(control, at.x, at.y, at.w, at.h);
}

void PlaceIn(forms::Control& control, forms::Control& frame, const layout::LayoutRect& at,
             const layout::LayoutRect& frameAt) {
    control.SetContainer(&frame);
    PlaceDesign(control, at.x - frameAt.x, at.y - frameAt.y, at.w, at.h);
}

void PlaceForm(forms::Form& form, int width, int height) {
    const forms::Platform& platform = form.GetPlatform();
    form.Move(form.Left(), form.Top(), AtDensity(platform, width), AtDensity(platform, height));
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
    // Before the form's ScaleForm the frame stands at its design place at this density; the
    // artwork is in its own pixels.
    const forms::Platform& platform = frame.Parent().GetPlatform();
    auto onArtwork = [&platform](int v) {
        return static_cast<int>(std::lround(v * platform.TwipsPerPixelX() / kDesignTwipsPerPixel));
    };
    const int x = onArtwork(frame.Left()) + 1;
    const int y = onArtwork(frame.Top()) + onArtwork(frame.Height()) / 2;
    if (x < 0 || y < 0 || x >= artwork.width || y >= artwork.height) {
        return;
    }
    const RgbColour c = artwork.colours[artwork.At(x, y)];
    frame.SetBackColor(static_cast<long>(c.red) | static_cast<long>(c.green) << 8 |
                       static_cast<long>(c.blue) << 16);
}

}  // namespace kw::dialer::face
